#include "host/services/clock/sntpPacket.h"
#include <QtEndian>

namespace {

// Places in the packet.
constexpr int kFirst = 0; // leap indicator, version, mode
constexpr int kStratum = 1;
constexpr int kRootDelay = 4;
constexpr int kRootDispersion = 8;
constexpr int kReferenceId = 12;
constexpr int kReferenceTime = 16;
constexpr int kOriginTime = 24;
constexpr int kReceiveTime = 32;
constexpr int kTransmitTime = 40;

constexpr int kVersion = 4;
constexpr int kOldestVersion = 1;
constexpr int kModeClient = 3;
constexpr int kModeServer = 4;
constexpr int kLeapUnsynchronised = 3;
constexpr int kStratumLimit = 16; // not synchronised
constexpr int kCodeSize = 4;
constexpr quint64 kDistanceLimit = quint64(16) << 16; // seconds with a fraction of 16 bits

constexpr quint64 kFractions = quint64(1) << 32; // of a second
constexpr qint64 kMsPerSecond = 1000;
constexpr qint64 kSecondsFrom1900To1970 = 2208988800LL;
// Nobody means a time before this program was written.
constexpr qint64 kFirstMs = 1735689600LL * kMsPerSecond; // 2025
// Nor one after the years that can be typed on the phone, whichever zone it is in: the last is 2038.
constexpr qint64 kSecondsAhead = 14LL * 3600; // of the first zone that has a new year
constexpr qint64 kLastMs = (2177452800LL - kSecondsAhead) * kMsPerSecond;

quint8 byteAt(const QByteArray& packet, int at)
{
    return static_cast<quint8>(packet[at]);
}

quint32 shortAt(const QByteArray& packet, int at)
{
    return qFromBigEndian<quint32>(packet.constData() + at);
}

quint64 timeAt(const QByteArray& packet, int at)
{
    return qFromBigEndian<quint64>(packet.constData() + at);
}

// Milliseconds between two times that are near to each other, whatever era they are of.
qint64 msBetween(quint64 from, quint64 to)
{
    const qint64 difference = static_cast<qint64>(to - from);
    return difference / qint64(kFractions) * kMsPerSecond +
           difference % qint64(kFractions) * kMsPerSecond / qint64(kFractions);
}

// The counter of seconds begins anew in 2036: small numbers are of the second round.
qint64 utcMs(quint64 time)
{
    const quint64 counted = time >> 32;
    const qint64 seconds = qint64(counted >> 31 ? counted : counted + kFractions) - kSecondsFrom1900To1970;
    return seconds * kMsPerSecond + qint64((time & (kFractions - 1)) * kMsPerSecond / kFractions);
}

QByteArray kissCode(const QByteArray& packet)
{
    QByteArray code = packet.mid(kReferenceId, kCodeSize);
    for (char& c : code)
        c = c >= 0x20 && c < 0x7F ? c : '?';
    return code;
}

// Why the server's own clock cannot be trusted; empty when it can.
QByteArray faultOfServer(const QByteArray& packet)
{
    if (byteAt(packet, kFirst) >> 6 == kLeapUnsynchronised)
        return "its clock is not synchronised";
    if (byteAt(packet, kStratum) >= kStratumLimit)
        return "its stratum is " + QByteArray::number(byteAt(packet, kStratum));
    const qint32 delay = static_cast<qint32>(shortAt(packet, kRootDelay));
    if (delay < 0)
        return "its root delay is negative";
    if (quint64(delay) / 2 + shortAt(packet, kRootDispersion) >= kDistanceLimit)
        return "its clock is too far from its source";
    const quint64 reference = timeAt(packet, kReferenceTime);
    if (reference != 0 && msBetween(timeAt(packet, kTransmitTime), reference) > 0)
        return "its clock was set in its future";
    return {};
}

// Why its times cannot be those of this exchange; empty when they can.
QByteArray faultOfTimes(const QByteArray& packet, qint64 tripMs)
{
    const quint64 received = timeAt(packet, kReceiveTime), sent = timeAt(packet, kTransmitTime);
    if (received == 0 || sent == 0)
        return "it says no time";
    const qint64 heldMs = msBetween(received, sent);
    if (heldMs < 0)
        return "it answered before it was asked";
    if (heldMs > tripMs + SNTP_SLACK_MS)
        return "it took longer than the answer did";
    if (utcMs(sent) < kFirstMs)
        return "its time is long past";
    if (utcMs(sent) >= kLastMs)
        return "its time is too far ahead";
    return {};
}

} // namespace

QByteArray sntpQuestion(quint64 number)
{
    QByteArray packet(SNTP_PACKET_SIZE, '\0');
    packet[kFirst] = char(kVersion << 3 | kModeClient);
    qToBigEndian(number, packet.data() + kTransmitTime);
    return packet;
}

tagSntpAnswer sntpJudge(const QByteArray& datagram, quint64 number, qint64 tripMs)
{
    if (datagram.size() < SNTP_PACKET_SIZE)
        return {SNTP_NOT_OURS, "an answer of " + QByteArray::number(datagram.size()) + " bytes"};
    if (timeAt(datagram, kOriginTime) != number)
        return {SNTP_NOT_OURS, "an answer to another question"};
    const int mode = byteAt(datagram, kFirst) & 7, version = byteAt(datagram, kFirst) >> 3 & 7;
    if (mode != kModeServer)
        return {SNTP_REFUSED, "its mode is " + QByteArray::number(mode)};
    if (version < kOldestVersion || version > kVersion)
        return {SNTP_REFUSED, "its version is " + QByteArray::number(version)};
    if (byteAt(datagram, kStratum) == 0)
        return {SNTP_KISS, kissCode(datagram)};
    for (const QByteArray& fault : {faultOfServer(datagram), faultOfTimes(datagram, tripMs)}) {
        if (!fault.isEmpty())
            return {SNTP_REFUSED, fault};
    }
    const quint64 received = timeAt(datagram, kReceiveTime), sent = timeAt(datagram, kTransmitTime);
    // Half of what the way took both ways has gone by since it was sent.
    const qint64 wayMs = qMax(qint64(0), tripMs - msBetween(received, sent));
    return {SNTP_GOOD, {}, utcMs(sent) + wayMs / 2};
}
