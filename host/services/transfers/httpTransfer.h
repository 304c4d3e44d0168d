#pragma once
// One HTTP transfer into a file. Lives on the network thread.
#include "host/services/transfers/httpService.h"
#include "support/file/chAtomicFile.h"
#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QTimer>
#include <functional>

class httpTransfer : public QObject
{
public:
    enum : int {
        STALL_MS = 30000,         // without a byte
        MOST_MS = 30 * 60 * 1000, // in all
        MAX_REDIRECTS = 5         // where redirectRule allows it
    };
    static constexpr qint64 MAX_SIZE = 256 << 20; // bytes

    using DoneCall = std::function<void(httpTransfer* transfer, bool good)>;
    // room: of the disk, shared by all transfers; outlives them.
    httpTransfer(const tagHttpJob& job, diskRoom& room, DoneCall done);
    ~httpTransfer() override;

    // hasConnection: false while it waits for one, which is no stall of the server.
    void start(QNetworkAccessManager& manager, bool hasConnection);
    // Ends it, and nobody is told.
    void giveUp();
    // The reply is finished: puts the file in its place if all is well, and tells. Does so once.
    void conclude();

    const tagHttpJob& job() const { return m_job; }
    QNetworkReply* reply() const { return m_pReply; }
    // MD5 of what was stored, as text; empty when nobody wants it.
    QByteArray checkSum() const;
    // Scheme, host and port.
    static QByteArray serverOf(const QByteArray& url);

private:
    void begin(const QUrl& url);
    QUrl redirectTarget() const;
    void followTo(const QUrl& target);
    void onHead();
    void onData();
    void onFinished();
    void fail(const char* reason);
    bool isAnswerGood();
    bool openFile();
    bool store(const QByteArray& bytes);
    int status() const;
    qint64 announcedSize() const;
    qint64 sizeLimit() const;
    const char* whatIsWrong();
    const char* tlsFailure();

    tagHttpJob m_job;
    QByteArray m_folder; // of its file, device path
    diskRoom& m_room;
    DoneCall m_done;
    QNetworkAccessManager* m_pManager = nullptr;
    QNetworkReply* m_pReply = nullptr;
    int m_nRedirects = 0;
    QTimer m_stall;
    QTimer m_end;
    chAtomicFile m_file;
    bool m_bOpen = false;
    qint64 m_nReceived = 0;
    QCryptographicHash m_hash{QCryptographicHash::Md5};
    const char* m_szFailure = nullptr;
    QByteArray m_tlsFailure;
};
