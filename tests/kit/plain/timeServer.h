#pragma once
// A time server on the loopback interface, on a thread of its own: it answers what it is told to answer.
#include <QByteArray>
#include <QList>
#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

namespace kit {

// The fields of an answer; what is not set is that of a good server.
struct tagTimeAnswer
{
    long long nUtc = 0; // seconds
    quint8 nLeap = 0;
    quint8 nVersion = 4;
    quint8 nMode = 4;
    quint8 nStratum = 2;
    QByteArray strReference = "LOCL";
    quint32 nRootDelay = 0x1000; // seconds with a fraction of 16 bits
    quint32 nRootDispersion = 0x1000;
    long long nSetUtc = -1;      // when the server's own clock was set; -1: before that
    long long nReceivedUtc = -1; // -1: then
    bool bHasSent = true;        // false: the time of sending is zero
    bool bHasReceived = true;
    bool bRepeatsNumber = true;
    int nSize = 48;
};

class TimeServer
{
public:
    // Good from the start.
    explicit TimeServer(long long utc = 0);
    ~TimeServer();
    TimeServer(const TimeServer&) = delete;
    TimeServer& operator=(const TimeServer&) = delete;

    quint16 port() const { return m_nPort; }
    int asked() const { return m_nAsked; }
    QByteArray lastQuestion() const;
    // One datagram for each, in their order; none: silence.
    void answer(const QList<tagTimeAnswer>& answers);
    void answer(long long utc);
    // The answers come from another address.
    void answerFromElsewhere(bool elsewhere) { m_bElsewhere = elsewhere; }

    static QByteArray packet(const tagTimeAnswer& answer, const QByteArray& question);

private:
    void serve();

    int m_nSocket = -1;
    int m_nElsewhere = -1;
    int m_aStop[2] = {-1, -1};
    quint16 m_nPort = 0;
    std::atomic<int> m_nAsked{0};
    std::atomic<bool> m_bElsewhere{false};
    mutable std::mutex m_lock;
    QList<tagTimeAnswer> m_answers;
    QByteArray m_question;
    std::thread m_thread;
};

} // namespace kit
