#pragma once
// One HTTP transfer into a file.
#include "support/host/task.h"
#include "support/text/chString.h"
#include <QObject>

class QNetworkReply;

// Fetches strRemoteUrl into strLocalFile (a device path). Good only with status 200 and the full
// length; stalled for 30 seconds it fails. The file is complete and in place, and untouched by a
// failed transfer, before the callback is told.
class HX_HOST_API HttpAction : public QObject, public taskAction
{
    Q_OBJECT
public:
    HttpAction();
    ~HttpAction() override;
    int exec() override;

    chString strRemoteUrl; // set before posting
    chString strLocalFile; // set before posting
    int nResult = 0;       // after completion: 0 failed, anything else succeeded

public slots:
    virtual void httpFinished(QNetworkReply* reply);
};
