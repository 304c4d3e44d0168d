#include "players/rtpPeer.h"
#include <arpa/inet.h>

namespace {

constexpr int kOtherSource = 5; // packets; then the other side is another one
constexpr int kOtherPort = 5;   // packets in a row; fewer may be sent blindly
constexpr qint64 kQuietUs = 400000;

sockaddr_in placeOf(const QByteArray& address, int port)
{
    sockaddr_in place = {};
    place.sin_family = AF_INET;
    place.sin_port = htons(uint16_t(port));
    inet_pton(AF_INET, address.constData(), &place.sin_addr);
    return place;
}

} // namespace

bool rtpPeer::agree(const tagAgreedStream& agreed)
{
    const bool isOther = agreed.peer != m_agreed.peer || agreed.nPort != m_agreed.nPort || !m_bLatched;
    m_agreed = agreed;
    if (isOther) {
        m_rtp = m_agreedRtp = placeOf(agreed.peer, agreed.nPort);
        m_bLatched = m_bSource = false;
        m_row = {};
    }
    m_rtcp = m_bLatched && agreed.nRtcpPort == agreed.nPort ? m_rtp : placeOf(agreed.peer, agreed.nRtcpPort);
    return isOther;
}

bool rtpPeer::isAt(const sockaddr_in& from) const
{
    const bool isHere = ntohl(m_agreedRtp.sin_addr.s_addr) >> 24 == 127;
    return from.sin_addr.s_addr == m_agreedRtp.sin_addr.s_addr ||
           (isHere && from.sin_addr.s_addr == placeOf(m_agreed.own, 0).sin_addr.s_addr);
}

bool rtpPeer::is(const sockaddr_in& from) const
{
    return isAt(from) && (!m_bLatched || isOnTrial() || isSealed() || from.sin_port == m_rtp.sin_port ||
                          from.sin_port == m_agreedRtp.sin_port);
}

// Whoever guesses packets hits the numbers of one row hardly ever.
bool rtpPeer::isInRow(const sockaddr_in& from, const tagRtpHead& head)
{
    const bool isNext = m_row.nPackets > 0 && m_row.nPort == from.sin_port && m_row.nSource == head.nSource &&
                        m_row.nNext == head.nSequence;
    m_row = {isNext ? m_row.nPackets + 1 : 1, from.sin_port, head.nSource, quint16(head.nSequence + 1)};
    return m_row.nPackets >= kOtherPort;
}

// Whose seal is right needs no further proof. Who has only thrown a row at every port of this machine does
// not keep the place of who goes on speaking.
bool rtpPeer::takes(const sockaddr_in& from, const tagRtpHead& head, qint64 nowUs)
{
    if (m_bLatched && from.sin_port == m_rtp.sin_port) {
        m_nTookUs = nowUs;
        return true;
    }
    const bool isAgreed = from.sin_port == m_agreedRtp.sin_port;
    const bool isFree = !m_bLatched || (isOnTrial() && nowUs - m_nTookUs > kQuietUs);
    if (!isAgreed && !isSealed() && (!isFree || !isInRow(from, head)))
        return false;
    m_bLatched = true;
    m_nTookUs = nowUs;
    m_row = {};
    m_bSource = false; // who has spoken so far was somebody else
    m_rtp = from;
    if (m_agreed.nRtcpPort == m_agreed.nPort)
        m_rtcp = from;
    return true;
}

bool rtpPeer::isSource(quint32 source, bool& begins)
{
    begins = false;
    if (m_bSource && source == m_nSource) {
        m_nOther = 0;
        return true;
    }
    if (m_bSource && ++m_nOther < kOtherSource)
        return false;
    begins = m_bSource = true;
    m_nOther = 0;
    m_nSource = source;
    return true;
}
