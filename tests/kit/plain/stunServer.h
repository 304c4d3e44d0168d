#pragma once
// A server that says where questions come from (STUN), on a thread of its own: good, or bad in the ways that
// a test wants. It is made in the network of the thread that makes it.
#include <QByteArray>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <thread>

namespace kit {

struct tagStunWays
{
    bool bSilent = false;
    int nDeaf = 0;     // so many questions are not heard
    int nLateMs = 0;   // until it answers
    bool bOld = false; // the address stands there unmasked, as RFC 3489 has it
    bool bRefuses = false;
    bool bElsewhere = false;   // somebody else answers first, and lies, from another port and another machine
    bool bWrongNumber = false; // an answer to another question comes first, and lies
    bool bBroken = false;      // an answer comes first that is cut short, lies and names too long a part
    QByteArray address;        // that it says; empty: where the question came from
    uint16_t nPort = 0;
};

class StunServer
{
public:
    explicit StunServer(const char* host = "127.0.0.1");
    ~StunServer();
    StunServer(const StunServer&) = delete;
    StunServer& operator=(const StunServer&) = delete;

    uint16_t port() const { return m_nPort; }
    void behave(const tagStunWays& ways);
    // Questions that have come, and from which port the last one.
    int asked() const { return m_nAsked; }
    int lastPort() const { return m_nLastPort; }

    // What liars say.
    static QByteArray lie() { return "127.0.0.66"; }
    enum : uint16_t { LIE_PORT = 6666 };
    // An answer to the question.
    static QByteArray answer(const QByteArray& question, const QByteArray& address, uint16_t port, bool old);

private:
    void serve();

    int m_nSocket;
    int m_nElsewhere;
    int m_nOther; // machine, the same port
    uint16_t m_nPort = 0;
    std::atomic<bool> m_bEnds{false};
    std::atomic<int> m_nAsked{0};
    std::atomic<int> m_nLastPort{0};
    std::mutex m_lock;
    tagStunWays m_ways;
    std::thread m_thread;
};

} // namespace kit
