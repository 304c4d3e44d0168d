#pragma once
// One HTTP transfer into a file. Lives on the network thread.
#include "host/services/transfers/checkSums.h"
#include "host/services/transfers/httpRequest.h"
#include "host/services/transfers/httpService.h"
#include "support/file/chAtomicFile.h"
#include <QElapsedTimer>
#include <QTimer>
#include <functional>
#include <memory>

class httpTransfer : public QObject, private httpRequest::Listener
{
public:
    enum : int {
        STALL_MS = 30000,         // without a byte
        MOST_MS = 30 * 60 * 1000, // in all
        MAX_REDIRECTS = 5         // where redirectRule allows it
    };
    static constexpr qint64 MAX_SIZE = 256 << 20; // bytes
    static constexpr qsizetype BLOCK = 256 << 10; // bytes that are written at once

    using DoneCall = std::function<void(httpTransfer* transfer, bool good)>;
    // room: of the disk; sums: counts what comes. Both are shared by all transfers and outlive them. done:
    // called once, and not from start().
    httpTransfer(const tagHttpJob& job, diskRoom& room, checkSums& sums, DoneCall done);

    // loop: outlives this.
    void start(httpLoop& loop);
    // Ends it in a moment as failed. reason: for the log, outlives this.
    void fail(const char* reason);
    // Ends it, and nobody is told.
    void giveUp();

    const tagHttpJob& job() const { return m_job; }
    // False when nobody wants the sum of what was stored.
    bool isCounted() const { return m_sum != nullptr; }
    // Once, when all is stored. told: with the sum as text, on the thread of the sums.
    void countLast(checkSums::ToldCall told);
    // Scheme, host and port.
    static QByteArray serverOf(const QByteArray& url);

private:
    bool onHead() override;
    bool onBytes(const char* bytes, size_t size) override;
    void onEnd() override;
    void begin(const QUrl& url);
    QUrl redirectTarget() const;
    void followTo(QUrl target);
    void look();
    bool refuse(const char* reason);
    void conclude();
    void findFailure();
    bool openFile();
    bool store(const char* bytes, size_t size);
    void beginBlock();
    bool writeBlock();
    qint64 sizeLimit() const;
    const char* whatIsWrong();
    const char* whyNoAnswer();

    tagHttpJob m_job;
    QByteArray m_folder; // of its file, device path
    diskRoom& m_room;
    checkSums& m_sums;
    checkSums::Sum m_sum;
    DoneCall m_done;
    httpLoop* m_pLoop = nullptr;
    std::unique_ptr<httpRequest> m_request;
    QUrl m_redirect; // where the answer sends it on to
    int m_nRedirects = 0;
    httpRequest::REACH m_eReach = httpRequest::EVERYWHERE;
    QTimer m_stall;
    QElapsedTimer m_heard; // since the last byte
    QTimer m_end;
    chAtomicFile m_file;
    bool m_bOpen = false;
    qint64 m_nReceived = 0;
    QByteArray m_block;     // received and not written
    QByteArray m_uncounted; // written last: most files are one block, which is counted and told in one go
    const char* m_szFailure = nullptr;
    QByteArray m_tlsFailure;
};
