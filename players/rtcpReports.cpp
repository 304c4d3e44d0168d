#include "players/rtcpReports.h"
#include <QtEndian>
#include <algorithm>
#include <cmath>
#include <ctime>

namespace {

enum : int { OLD_FIR = 192, SENDER = 200, RECEIVER = 201, NAMES = 202, BYE = 203, PICTURES = 206 };
enum : int { PLI = 1, FIR = 4 }; // of PICTURES
constexpr int kBlock = 24;
constexpr int kHead = 8; // with the source
constexpr int kSenderInfo = 20;
constexpr int kFeedback = 12; // with both sources
constexpr int kFirEntry = 8;
constexpr quint64 kSecondsFrom1900 = 2208988800u;
constexpr int kMaxRoundTripMs = 60000;

template <typename Number>
void put(QByteArray& packet, Number number)
{
    const Number big = qToBigEndian(number);
    packet.append(reinterpret_cast<const char*>(&big), sizeof big);
}

quint32 wordAt(const unsigned char* at)
{
    return qFromBigEndian<quint32>(at);
}

// Seconds in the upper half, their parts in the lower one.
quint64 timeOfDay()
{
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    return (quint64(now.tv_sec) + kSecondsFrom1900) << 32 | (quint64(now.tv_nsec) << 32) / 1000000000u;
}

QByteArray headOf(int type, int count, qsizetype bytes, quint32 source)
{
    QByteArray head;
    put(head, quint8(0x80 | count));
    put(head, quint8(type));
    put(head, quint16(bytes / 4 - 1));
    put(head, source);
    return head;
}

} // namespace

rtcpReports::rtcpReports(quint32 source, const QByteArray& name) : m_nSource(source), m_name(name.left(64)) {}

void rtcpReports::sent(quint32 time, int bytes)
{
    ++m_nSentPackets;
    m_nSentBytes += bytes;
    m_nSentTime = time;
}

void rtcpReports::took(const tagRtpHead& head, int clock, qint64 nowUs, bool timed)
{
    if (!m_bTakes || head.nSource != m_nPeer) {
        m_bTakes = true;
        m_nPeer = head.nSource;
        m_nFirst = m_nHighest = head.nSequence;
        m_nReceived = m_nExpectedBefore = m_nReceivedBefore = 0;
        m_nClock = 0;
        m_jitter = 0;
    }
    m_nHighest = std::max(m_nHighest, m_nHighest + qint16(quint16(head.nSequence - quint16(m_nHighest))));
    ++m_nReceived;
    if (!timed)
        return;
    const qint64 way = nowUs * clock / 1000000 - head.nTime;
    if (m_nClock == clock)
        m_jitter += (double(std::abs(qint64(qint32(quint32(way - m_nWay))))) - m_jitter) / 16;
    m_nClock = clock;
    m_nWay = way;
}

QByteArray rtcpReports::blockAboutPeer(qint64 nowUs)
{
    const qint64 should = expected() - m_nExpectedBefore;
    const qint64 lost = should - (m_nReceived - m_nReceivedBefore);
    m_nExpectedBefore = expected();
    m_nReceivedBefore = m_nReceived;
    const qint64 part = should > 0 && lost > 0 ? std::min<qint64>(255, lost * 256 / should) : 0;
    const qint64 all = std::clamp<qint64>(expected() - m_nReceived, -0x800000, 0x7fffff);
    QByteArray block;
    put(block, m_nPeer);
    put(block, quint32(quint32(part) << 24 | (quint32(all) & 0xffffff)));
    put(block, quint32(m_nHighest));
    put(block, quint32(m_jitter));
    put(block, m_nLastReport);
    put(block, m_nLastReport ? quint32((nowUs - m_nLastReportUs) * 65536 / 1000000) : 0u);
    return block;
}

QByteArray rtcpReports::names() const
{
    QByteArray item;
    put(item, quint8(1)); // the name that tells a side from others
    put(item, quint8(m_name.size()));
    item += m_name;
    item.append(4 - item.size() % 4, 0);
    return headOf(NAMES, 1, kHead + item.size(), m_nSource) + item;
}

QByteArray rtcpReports::report(qint64 nowUs)
{
    const bool isFirst = m_nNext == 0;
    // Not all at once where many calls begin together.
    const qint64 every = isFirst ? qint64(FIRST_MS) : EVERY_MS * qint64(75 + m_nSource % 50) / 100;
    m_nNext = nowUs + every * 1000;
    const QByteArray block = m_bTakes ? blockAboutPeer(nowUs) : QByteArray();
    const int count = m_bTakes ? 1 : 0;
    if (m_nSentPackets == m_nSentBefore)
        return headOf(RECEIVER, count, kHead + block.size(), m_nSource) + block + names();
    m_nSentBefore = m_nSentPackets;
    QByteArray info;
    put(info, timeOfDay());
    put(info, m_nSentTime);
    put(info, quint32(m_nSentPackets));
    put(info, quint32(m_nSentBytes));
    return headOf(SENDER, count, kHead + info.size() + block.size(), m_nSource) + info + block + names();
}

QByteArray rtcpReports::farewell()
{
    return headOf(RECEIVER, 0, kHead, m_nSource) + names() + headOf(BYE, 1, kHead, m_nSource);
}

QByteArray rtcpReports::pictureLost(bool fir)
{
    QByteArray about;
    put(about, fir ? 0u : m_nPeer);
    if (fir) {
        put(about, m_nPeer);
        put(about, quint32(++m_nFirNumber) << 24);
    }
    return headOf(RECEIVER, 0, kHead, m_nSource) + names() +
           headOf(PICTURES, fir ? FIR : PLI, kHead + about.size(), m_nSource) + about;
}

bool rtcpReports::wantsPicture(const unsigned char* packet, int length) const
{
    const int kind = packet[0] & 0x1f;
    if (packet[1] == OLD_FIR)
        return true;
    if (packet[1] != PICTURES || length < kFeedback)
        return false;
    if (kind == PLI)
        return wordAt(packet + kHead) == m_nSource;
    for (int at = kFeedback; kind == FIR && at + kFirEntry <= length; at += kFirEntry) {
        if (wordAt(packet + at) == m_nSource)
            return true;
    }
    return false;
}

void rtcpReports::readBlocks(const unsigned char* blocks, int count)
{
    for (int i = 0; i < count; ++i) {
        const unsigned char* block = blocks + i * kBlock;
        if (wordAt(block) != m_nSource)
            continue;
        ++m_nReportsRead;
        m_nLossThere = block[4] * 100 / 256;
        const quint32 report = wordAt(block + 16);
        if (report == 0)
            continue;
        const quint32 trip = quint32(timeOfDay() >> 16) - report - wordAt(block + 20);
        const int ms = int(qint64(trip) * 1000 / 65536);
        if (ms <= kMaxRoundTripMs)
            m_nRoundTripMs = ms;
    }
}

void rtcpReports::read(const unsigned char* packet, int size, qint64 nowUs)
{
    int at = 0;
    while (size - at >= kHead && packet[at] >> 6 == 2) {
        const unsigned char* one = packet + at;
        const int length = 4 * (qFromBigEndian<quint16>(one + 2) + 1);
        if (length < kHead || length > size - at)
            return;
        const int count = one[0] & 0x1f;
        const int before = one[1] == SENDER ? kHead + kSenderInfo : kHead;
        const bool isReport = one[1] == SENDER || one[1] == RECEIVER;
        if (isReport && length >= before + count * kBlock) {
            if (one[1] == SENDER) {
                m_nLastReport = quint32(qFromBigEndian<quint64>(one + kHead) >> 16);
                m_nLastReportUs = nowUs;
            }
            readBlocks(one + before, count);
        }
        if (wantsPicture(one, length))
            ++m_nPicturesWanted;
        at += length;
    }
}
