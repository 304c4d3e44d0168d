#include "players/rtpPacket.h"
#include <QtEndian>

namespace {

constexpr int kVersion = 2;
constexpr int kFirstRtcp = 192;
constexpr int kLastRtcp = 223;
constexpr int kRtcpHead = 8;

} // namespace

bool rtpPacket::isRtcp(const unsigned char* packet, int size)
{
    return size >= kRtcpHead && packet[0] >> 6 == kVersion && packet[1] >= kFirstRtcp &&
           packet[1] <= kLastRtcp;
}

bool rtpPacket::read(const unsigned char* packet, int size, tagRtpHead& head, int& start, int& length)
{
    if (size < HEAD_BYTES || size > MAX_BYTES || packet[0] >> 6 != kVersion)
        return false;
    const bool isPadded = (packet[0] & 0x20) != 0;
    const bool isExtended = (packet[0] & 0x10) != 0;
    int at = HEAD_BYTES + 4 * (packet[0] & 0x0f);
    if (isExtended) {
        if (size < at + 4)
            return false;
        at += 4 + 4 * qFromBigEndian<quint16>(packet + at + 2);
    }
    const int padding = isPadded ? packet[size - 1] : 0;
    if (at > size || (isPadded && padding == 0) || padding > size - at)
        return false;
    head.bMarker = (packet[1] & 0x80) != 0;
    head.nPayload = packet[1] & 0x7f;
    head.nSequence = qFromBigEndian<quint16>(packet + 2);
    head.nTime = qFromBigEndian<quint32>(packet + 4);
    head.nSource = qFromBigEndian<quint32>(packet + 8);
    start = at;
    length = size - at - padding;
    return true;
}

void rtpPacket::write(const tagRtpHead& head, unsigned char* packet)
{
    packet[0] = kVersion << 6;
    packet[1] = static_cast<unsigned char>((head.bMarker ? 0x80 : 0) | (head.nPayload & 0x7f));
    qToBigEndian<quint16>(head.nSequence, packet + 2);
    qToBigEndian<quint32>(head.nTime, packet + 4);
    qToBigEndian<quint32>(head.nSource, packet + 8);
}
