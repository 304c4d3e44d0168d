#pragma once
// A registrar of the loopback interface on a thread of its own: it asks each phone for its password, says
// that messages wait, and leads the calls of the phones to one place.
#include "tests/sip/udpPeer.h"
#include <QByteArray>
#include <QElapsedTimer>
#include <QMap>
#include <atomic>
#include <mutex>
#include <thread>

class SipExchange
{
public:
    // What is registered with it lasts that many seconds; all calls go to the phone at that port.
    SipExchange(int seconds, uint32_t called);
    ~SipExchange();
    SipExchange(const SipExchange&) = delete;
    SipExchange& operator=(const SipExchange&) = delete;

    uint32_t port() const { return m_socket.port(); }
    static QByteArray passwordOf(const QByteArray& user) { return "pw-" + user; }
    // What the phone of a user calls itself there ("user@host:port"); empty without one.
    QByteArray contactOf(const QByteArray& user) const;
    // Users that have a phone; false when ms go by with fewer.
    bool waitForPhones(int count, int ms) const;
    // Registrations and subscriptions that were begun or renewed.
    int renewals() const { return m_nRenewals; }
    // Milliseconds from start() of the clock to the last first registration of a user.
    void startClock();
    double lastCameMs() const;

private:
    void run();
    void takeRequest(const QByteArray& request);
    void takeRegister(const QByteArray& request);
    void takeSubscribe(const QByteArray& request);
    void leadOn(QByteArray request);
    void leadBack(const QByteArray& reply);

    const int m_nSeconds;
    const uint32_t m_nCalled;
    UdpPeer m_socket;
    int m_nNotes = 0;
    std::atomic<int> m_nRenewals{0};
    std::atomic<bool> m_bEnds{false};
    mutable std::mutex m_mutex;
    QMap<QByteArray, QByteArray> m_contacts;
    QElapsedTimer m_clock;
    double m_lastCameMs = 0;
    std::thread m_thread;
};
