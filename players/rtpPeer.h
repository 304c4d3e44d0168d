#pragma once
// The other side of a stream: where it is, by agreement and by what comes from there. One thread at a time.
#include "players/callNegotiation.h"
#include "players/rtpPacket.h"
#include <netinet/in.h>

class rtpPeer
{
public:
    // True when it is another place than before.
    bool agree(const tagAgreedStream& agreed);
    // Something comes from its address. What another program of this machine sends to the machine's own
    // address comes from there, wherever it is itself.
    bool isAt(const sockaddr_in& from) const;
    // The same, and from a port that may be its own: where it is behind a router it sends from another port
    // than it knows of. Another address may be anybody's.
    bool is(const sockaddr_in& from) const;
    // Of a packet as agreed from a place that may be the other side's: false while it counts for nothing. The
    // agreed port counts at once and always; another one after a row of packets, or at once where
    // they are sealed, and from then on as long as it goes on: when it is quiet, the next row may come from
    // elsewhere.
    bool takes(const sockaddr_in& from, const tagRtpHead& head, qint64 nowUs);
    // Who has begun goes on, until another one has taken his place; begins: that is now.
    bool isSource(quint32 source, bool& begins);
    quint32 source() const { return m_nSource; }
    const sockaddr_in& rtp() const { return m_rtp; }
    const sockaddr_in& rtcp() const { return m_rtcp; } // its port 0: none

private:
    bool isInRow(const sockaddr_in& from, const tagRtpHead& head);
    bool isSealed() const { return m_agreed.eSuite != CRYPTO_SUITE::NONE; }
    // Its place is one that nobody agreed on.
    bool isOnTrial() const { return m_bLatched && m_rtp.sin_port != m_agreedRtp.sin_port; }

    tagAgreedStream m_agreed;
    sockaddr_in m_agreedRtp = {};
    sockaddr_in m_rtp = {};
    sockaddr_in m_rtcp = {};
    bool m_bLatched = false;
    qint64 m_nTookUs = 0; // the last packet of a place on trial
    bool m_bSource = false;
    quint32 m_nSource = 0;
    int m_nOther = 0; // packets in a row that have another one
    struct tagRow
    {
        int nPackets = 0;
        quint16 nPort = 0; // as sockaddr_in has it
        quint32 nSource = 0;
        quint16 nNext = 0;
    } m_row; // from a port that nobody agreed on
};
