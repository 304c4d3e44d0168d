#include "players/mappedPorts.h"
#include "players/callDesk.h"

namespace {

constexpr int kMaxTaken = 50; // packets in one step

qint64 nowMs()
{
    return callDesk::nowUs() / 1000;
}

} // namespace

mappedPorts::mappedPorts(std::unique_ptr<callSockets> sockets, const sockaddr_in& server, bool loopback)
    : m_sockets(std::move(sockets)), m_server(server), m_bLoopback(loopback),
      m_rtp(StunQuery::OF_A_CALL, nowMs()), m_rtcp(StunQuery::OF_A_CALL, nowMs())
{
}

bool mappedPorts::isServer(const sockaddr_in& from) const
{
    return from.sin_addr.s_addr == m_server.sin_addr.s_addr && from.sin_port == m_server.sin_port;
}

bool mappedPorts::step(bool rtcp, StunQuery& query)
{
    unsigned char packet[stunMessage::MAX_BYTES];
    for (int i = 0; i < kMaxTaken; ++i) {
        sockaddr_in from = {};
        qint64 ageUs = 0;
        const int size = m_sockets->take(rtcp, packet, sizeof packet, from, ageUs);
        if (size == 0)
            break;
        if (size > 0 && isServer(from))
            query.take(packet, size_t(size));
    }
    if (query.isDue(nowMs()))
        m_sockets->send(rtcp, query.request().data(), int(query.request().size()), m_server);
    return query.isOver(nowMs());
}

bool mappedPorts::step()
{
    const bool isRtpOver = step(false, m_rtp);
    const bool isRtcpOver = step(true, m_rtcp);
    return isRtpOver && isRtcpOver;
}

// A server that names what nobody may send to is of no use.
tagMappedPlace mappedPorts::place() const
{
    const auto isOfUse = [this](const tagStunPlace& place) {
        return callNegotiation::mayHearUs(place.host.c_str(), place.nPort, m_bLoopback);
    };
    tagMappedPlace place;
    if (!isOfUse(m_rtp.place()))
        return place;
    place.address = place.rtcpAddress = m_rtp.place().host.c_str();
    place.nPort = place.nRtcpPort = m_rtp.place().nPort;
    if (isOfUse(m_rtcp.place())) {
        place.rtcpAddress = m_rtcp.place().host.c_str();
        place.nRtcpPort = m_rtcp.place().nPort;
    }
    return place;
}
