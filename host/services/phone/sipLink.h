#pragma once
// The socket on which the phone serves its SIP user agent, "/rundata/run/hxSip.link", and the agent's
// process: it is started, started again when it dies or says what no agent of ours says, and ended with the
// phone. It connects, is told how it behaves, answers with SIP_HELLO, and is there. User-interface thread.
#include "host/services/players/keptProcess.h"
#include "sip/sipWire.h"
#include <QByteArray>
#include <QSocketNotifier>
#include <QTimer>
#include <functional>
#include <memory>

// Told by the link.
struct tagSipLinkNews
{
    std::function<void()> opened; // an agent is there
    // One of its records, which is sound; valid during the call.
    std::function<void(const sipWire::Reader& record)> took;
    std::function<void()> closed; // it is not there any more, or could not be had
};

class sipLink : public QObject
{
public:
    enum : int {
        BYTES_A_TURN = 65536, // of the event loop
        RECORDS_A_TURN = 32,
        WAITING_MAX = 4 << 20, // bytes that an agent may leave unread
        HELLO_MS = 10000,      // from its connection until it is there
        END_MS = 2500,         // to hang up and unregister
        PING_MS = 5000,        // between questions whether it is alive
        PINGS_LOST_MAX = 2,    // one that has said nothing since is ended with the next
        AGAIN_MS = 5000        // the longest without an agent, and so without lines
    };

    explicit sipLink(tagSipLinkNews news);
    ~sipLink() override;
    // False when nobody can be served.
    bool listen(const tagSipSetup& setup);
    bool isServed() const { return m_nListener >= 0; }
    // Once. Without this call whoever is the same user may be the agent.
    void startAgent();
    // Has it hang up and unregister, and waits for that. Nothing is told any more.
    void stop();

    bool isOpen() const { return m_bOpen; }
    template <typename Record>
    void tell(const Record& record)
    {
        send(&record, sizeof record);
    }
    void tellBytes(const void* record, size_t size) { send(record, size); }
    // What it said makes no sense: it is ended.
    void discard(const char* why);

private:
    void acceptOne();
    bool isAgent(int socket) const;
    void receive();
    void takeRecords();
    void take();
    void send(const void* record, size_t size);
    void flush();
    void drop();
    void ping();

    tagSipLinkNews m_news;
    tagSipSetup m_setup = {};
    std::unique_ptr<keptProcess> m_pProcess;
    int m_nListener = -1;
    int m_nLink = -1;
    bool m_bOpen = false;
    std::unique_ptr<QSocketNotifier> m_pAccept;
    std::unique_ptr<QSocketNotifier> m_pRead;
    std::unique_ptr<QSocketNotifier> m_pWrite;
    QTimer m_rest;  // of the records that wait
    QTimer m_hello; // that does not come
    QTimer m_ping;
    int m_nPings = 0; // since it has said anything
    sipWire::Reader m_reader;
    QByteArray m_waiting;
};
