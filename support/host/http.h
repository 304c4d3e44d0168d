#pragma once
// One HTTP transfer into a file.
#include "support/host/task.h"
#include "support/text/chString.h"
#include <QObject>

class QNetworkReply;

// Fetches strRemoteUrl into strLocalFile (a device path). Good only with status 200 and the full
// length; stalled for 30 seconds, or dripping for longer than its time, it fails. The file is complete
// and in place, and untouched by a failed transfer, before the callback is told. A server elsewhere cannot
// send it on to an address of this machine's own (loopback, link-local).
class HX_HOST_API HttpAction : public QObject, public taskAction
{
    Q_OBJECT
public:
    HttpAction();
    ~HttpAction() override;
    int exec() override;
    // Gives up what it was posted for and leaves nothing of it. Its callback is not told, unless an
    // unfinished file (see below) had come whole already: that is there then, and its owner's. On the thread
    // that posted it.
    void Abandon();

    chString strRemoteUrl; // set before posting
    chString strLocalFile; // set before posting
    // Set before posting. Bytes; a longer answer fails as soon as that is known. 0: the host's own limit.
    long long nSizeLimit = 0;
    // Set before posting. Milliseconds from the first byte sent to the last one received; 0: half an hour.
    int nTimeLimit = 0;
    // Set before posting. 0: the file may be lost with the power until its owner calls fileFlushFolder.
    int bFlush = 1;
    // Set before posting. 1: strCheckSum is wanted.
    int bCheckSum = 0;
    // Set before posting. 1: the name of the file says that it is on its way: the file may grow under it, and
    // no other action fetches into it meanwhile. It is gone when the transfer fails.
    int bUnfinished = 0;
    // Set before posting. 1: one of many files; it goes behind everything that has no such mark, and over
    // other connections.
    int bGivesWay = 0;
    int nResult = 0;      // after completion: 0 failed, anything else succeeded
    chString strCheckSum; // after a success: MD5 of the file as md5GetFileCheckSum tells it

public slots:
    // The bytes have come, or fail to; the file is not in its place yet. Called on a thread of the host's.
    // reply: null where the host does not fetch through the toolkit, as the reference host.
    virtual void httpFinished(QNetworkReply* reply);
};
