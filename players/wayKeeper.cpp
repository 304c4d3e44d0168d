#include "players/wayKeeper.h"
#include "sip/stunMessage.h"
#include <utility>

namespace {

bool isSame(const sockaddr_in& one, const sockaddr_in& other)
{
    return one.sin_addr.s_addr == other.sin_addr.s_addr && one.sin_port == other.sin_port;
}

} // namespace

// An indication of STUN (RFC 6263, 4.4): nobody answers it, and it is no packet of RTP to who knows none.
void wayKeeper::step(const tagWayOut& way, qint64 nowUs)
{
    const sockaddr_in& to = way.peer.rtp();
    const bool hasSpoken = std::exchange(m_bSent, false);
    if (to.sin_port == 0 || to.sin_addr.s_addr == INADDR_ANY || way.agreed.nRtcpPort == way.agreed.nPort)
        return;
    const bool isNew = !isSame(to, std::exchange(m_to, to));
    const bool isOpen = hasSpoken || (isNew && way.agreed.bSends);
    if (!isOpen && !isNew && nowUs - m_nLastUs < QUIET_MS * 1000ll)
        return;
    m_nLastUs = nowUs;
    stunMessage::Id id;
    if (isOpen || !stunMessage::newId(id))
        return;
    const stunMessage::Request sign = stunMessage::indication(id);
    way.sockets.send(false, sign.data(), int(sign.size()), to);
}
