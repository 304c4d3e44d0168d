#pragma once
// The other side of a stream: where it is, by agreement and by what comes from there. One thread at a time.
#include "players/callNegotiation.h"
#include <netinet/in.h>

class rtpPeer
{
public:
    // True when it is another place than before.
    bool agree(const tagAgreedStream& agreed);
    // Something comes from its address. What another program of this machine sends to the machine's own
    // address comes from there, wherever it is itself.
    bool isAt(const sockaddr_in& from) const;
    // The same, and from its port once that is known: where it is behind a router it sends from another port
    // than it knows of. Another address may be anybody's.
    bool is(const sockaddr_in& from) const;
    // A packet that is part of the call has come from there.
    void latch(const sockaddr_in& from);
    // Who has begun goes on, until another one has taken his place; begins: that is now.
    bool isSource(quint32 source, bool& begins);
    quint32 source() const { return m_nSource; }
    const sockaddr_in& rtp() const { return m_rtp; }
    const sockaddr_in& rtcp() const { return m_rtcp; } // its port 0: none

private:
    tagAgreedStream m_agreed;
    sockaddr_in m_rtp = {};
    sockaddr_in m_rtcp = {};
    bool m_bLatched = false;
    bool m_bSource = false;
    quint32 m_nSource = 0;
    int m_nOther = 0; // packets in a row that have another one
};
