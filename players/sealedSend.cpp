#include "players/sealedSend.h"
#include "players/rtpPacket.h"
#include <cstring>

namespace {

// The size of what goes out, 0 when it must not.
int sealed(const tagWayOut& way, unsigned char* packet, int size, bool isReport)
{
    if (way.agreed.eSuite == CRYPTO_SUITE::NONE)
        return size;
    return way.pSeal ? way.pSeal->seal(packet, size, isReport) : 0;
}

} // namespace

bool sealedSend(const tagWayOut& way, unsigned char* packet, int size)
{
    const int whole = sealed(way, packet, size, false);
    if (whole > 0)
        way.sockets.send(false, packet, whole, way.peer.rtp());
    return whole > 0;
}

void sealedSendReport(const tagWayOut& way, const QByteArray& report)
{
    unsigned char packet[rtpPacket::MAX_BYTES + secureRtp::MAX_MORE];
    if (way.peer.rtcp().sin_port == 0 || report.size() > rtpPacket::MAX_BYTES)
        return;
    memcpy(packet, report.constData(), size_t(report.size()));
    const int whole = sealed(way, packet, int(report.size()), true);
    if (whole > 0)
        way.sockets.send(way.agreed.nRtcpPort != way.agreed.nPort, packet, whole, way.peer.rtcp());
}
