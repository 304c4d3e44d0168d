#pragma once
// The two ports of a stream, while a STUN server is asked by which addresses others see them: before anything
// else comes there. It takes a bounded time, and nobody waits in it. One thread.
#include "players/callNegotiation.h"
#include "players/callSockets.h"
#include "sip/stunQuery.h"

class mappedPorts
{
public:
    enum : int { LOOK_MS = 5 }; // between two steps

    // loopback: the place may be one of this machine's loopback interface.
    mappedPorts(std::unique_ptr<callSockets> sockets, const sockaddr_in& server, bool loopback);
    // What is due, and what has come. True when there is nothing more to wait for.
    bool step();
    // Where the other side is to send; empty when that is not known. The reports go where the stream does
    // when nothing else is known of them.
    tagMappedPlace place() const;
    // The ports are the caller's.
    std::unique_ptr<callSockets> take() { return std::move(m_sockets); }

private:
    bool isServer(const sockaddr_in& from) const;
    bool step(bool rtcp, StunQuery& query);

    std::unique_ptr<callSockets> m_sockets;
    const sockaddr_in m_server;
    const bool m_bLoopback;
    StunQuery m_rtp;
    StunQuery m_rtcp;
};
