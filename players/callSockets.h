#pragma once
// The two ports of a call's sound: an even one for RTP, the next one for its RTCP. One thread at a time.
#include <QByteArray>
#include <memory>
#include <netinet/in.h>

class callSockets
{
public:
    enum : int { FIRST_PORT = 36000, LAST_PORT = 37998 };

    // Null when all ports are taken.
    static std::unique_ptr<callSockets> open();
    ~callSockets();
    callSockets(const callSockets&) = delete;
    callSockets& operator=(const callSockets&) = delete;

    int port() const { return m_nPort; }
    // What waits there, without waiting for it; the size, 0 when nothing does, -1: nothing of use. from: who
    // sent it; ageUs: how long ago it came.
    int take(bool rtcp, unsigned char* packet, int size, sockaddr_in& from, qint64& ageUs);
    void send(bool rtcp, const unsigned char* packet, int size, const sockaddr_in& to);

private:
    callSockets() = default;
    int m_rtp = -1;
    int m_rtcp = -1;
    int m_nPort = 0;
};
