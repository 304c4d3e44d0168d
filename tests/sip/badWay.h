#pragma once
// A way between the phone and its server that loses, doubles and reorders what goes over it. Each of the two
// takes it for the other.
#include "tests/sip/udpPeer.h"
#include <atomic>
#include <random>
#include <thread>

class BadWay
{
public:
    // phonePort: 0 for whoever speaks first.
    BadWay(uint32_t phonePort, uint32_t serverPort);
    ~BadWay();
    BadWay(const BadWay&) = delete;
    BadWay& operator=(const BadWay&) = delete;

    // Where the phone finds its server.
    uint32_t front() const { return m_front.port(); }
    // Where the server finds the phone.
    uint32_t back() const { return m_back.port(); }
    // Of both directions together.
    int lost() const { return m_nLost; }
    int doubled() const { return m_nDoubled; }
    int late() const { return m_nLate; }
    // Until then everything arrives, once and in order.
    void setBad(bool bad) { m_bBad = bad; }
    // Nothing arrives any more, and nobody is told.
    void setCut(bool cut) { m_bCut = cut; }

private:
    void carry(UdpPeer& in, UdpPeer& out, uint32_t port, QByteArray& late);

    UdpPeer m_front, m_back;
    std::atomic<uint32_t> m_nPhone;
    QByteArray m_fromPhone, m_fromServer; // that goes on after the next one
    std::mt19937 m_random{1};
    std::atomic<int> m_nLost{0};
    std::atomic<int> m_nDoubled{0};
    std::atomic<int> m_nLate{0};
    std::atomic<bool> m_bBad{false};
    std::atomic<bool> m_bCut{false};
    std::atomic<bool> m_bEnds{false};
    std::thread m_thread;
};
