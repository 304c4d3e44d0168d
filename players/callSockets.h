#pragma once
// The two ports of a call's sound: an even one for RTP, the next one for its RTCP. One thread at a time.
#include "players/loopback.h"
#include <netinet/in.h>

class callSockets
{
public:
    enum : int { FIRST_PORT = 36000, LAST_PORT = 37998 };

    // Null when all ports are taken.
    static std::unique_ptr<callSockets> open();

    int port() const { return m_nPort; }
    // To wait for what comes there.
    int descriptor(bool rtcp) const;
    // What waits there, without waiting for it; the size, 0 when nothing does, -1: nothing of use. from: who
    // sent it; ageUs: how long ago it came.
    int take(bool rtcp, unsigned char* packet, int size, sockaddr_in& from, qint64& ageUs);
    void send(bool rtcp, const unsigned char* packet, int size, const sockaddr_in& to);

private:
    callSockets() = default;
    GSocket* socketOf(bool rtcp) const { return rtcp ? m_rtcp.get() : m_rtp.get(); }

    LoopbackSocket m_rtp; // of all interfaces
    LoopbackSocket m_rtcp;
    int m_nPort = 0;
};
