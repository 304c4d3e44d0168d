#include "players/jitterBuffer.h"
#include <algorithm>

namespace {

constexpr qint64 kWindowUs = 4000000;   // in which the quickest packet is looked for
constexpr qint64 kReserveUs = 10000;    // above the latest packet of late
constexpr qint64 kDecay = 250;          // packets in which the memory of a late one fades
constexpr qint64 kSlackUs = 3000;       // of whoever takes the packets
constexpr qint64 kTooLongUs = 45000;    // held beyond the delay: one packet is left out
constexpr qint64 kCatchUpUs = 400000;   // between two that are left out
constexpr qint64 kJump = 3000;          // numbers; more is another stream
constexpr qint64 kTimeJumpUs = 2000000; // the same of its time against the clock
constexpr int kLateOnes = 10;           // all too late: the network takes longer than before
constexpr qint64 kGap = 25;             // packets; nobody waits for more

} // namespace

void jitterBuffer::clear()
{
    const tagCounts counts = m_counts;
    *this = jitterBuffer();
    m_counts = counts;
}

qint64 jitterBuffer::extended(quint16 sequence) const
{
    return m_nLast + qint16(quint16(sequence - quint16(m_nLast)));
}

// What the network adds to the quickest packet's way says how long packets have to be held.
void jitterBuffer::measure(qint64 time, qint64 nowUs)
{
    const qint64 way = nowUs - time;
    if (nowUs - m_nWindow > kWindowUs) {
        m_nWindow = nowUs;
        m_nFastestBefore = m_nFastestNew;
        m_nFastestNew = way;
    }
    m_nFastestNew = std::min(m_nFastestNew, way);
    m_nFastest = std::min(m_nFastestBefore, m_nFastestNew);
    const qint64 late = way - m_nFastest;
    m_nLateness = std::max(late, m_nLateness - m_nLateness / kDecay);
    m_nDelay = std::clamp<qint64>(m_nLateness + kReserveUs, LEAST_MS * 1000, MOST_MS * 1000);
}

void jitterBuffer::put(quint16 sequence, quint32 time, int clock, const tagHeldPacket& packet, qint64 nowUs)
{
    qint64 number = m_bAny ? extended(sequence) : sequence;
    qint64 streamUs = m_bAny ? m_nTime + qint64(qint32(time - m_nRtpTime)) * 1000000 / clock : 0;
    if (m_bAny &&
        (std::abs(number - m_nLast) > kJump || std::abs(nowUs - streamUs - m_nFastest) > kTimeJumpUs)) {
        clear();
        number = sequence;
        streamUs = 0;
    }
    if (!m_bAny) {
        m_bAny = true;
        m_nLast = number;
        m_nFastest = m_nFastestBefore = m_nFastestNew = nowUs - streamUs;
        m_nWindow = nowUs;
    } else if (number == m_nLast + 1 && streamUs > m_nTime) {
        m_nPacket = std::clamp<qint64>(streamUs - m_nTime, 5000, 120000);
    }
    measure(streamUs, nowUs);
    if (number >= m_nLast) {
        m_nLast = number;
        m_nRtpTime = time;
        m_nTime = streamUs;
    }
    hold(number, streamUs, packet);
}

void jitterBuffer::putSilent(quint16 sequence, const tagHeldPacket& packet, qint64 nowUs)
{
    const qint64 number = m_bAny ? extended(sequence) : sequence;
    if (!m_bAny || std::abs(number - m_nLast) > kJump)
        return; // it plays no sound that anything could follow
    m_nLast = std::max(m_nLast, number);
    hold(number, nowUs - m_nFastest, packet);
}

void jitterBuffer::hold(qint64 number, qint64 streamUs, const tagHeldPacket& packet)
{
    if (m_bPlays && number < m_nNext) {
        ++m_counts.nLate;
        if (++m_nLateOnes >= kLateOnes)
            clear();
        return;
    }
    m_nLateOnes = 0;
    m_packets.emplace(number, tagEntry{streamUs, packet}); // a second one of the number goes
    while (m_packets.size() > MAX_PACKETS)
        m_packets.erase(m_packets.begin());
}

// After the delay has become less, or pauses were filled. One at a time: it can be heard.
void jitterBuffer::catchUp(qint64 nowUs)
{
    const auto first = m_packets.begin();
    const bool isLong = first != m_packets.end() && nowUs - dueUs(first->second.nTime) > kTooLongUs;
    if (!isLong || nowUs - m_nCaughtUp < kCatchUpUs || m_packets.size() < 2)
        return;
    m_nCaughtUp = nowUs;
    m_nNext = first->first + 1;
    m_packets.erase(first);
    ++m_counts.nDropped;
}

jitterBuffer::TAKEN jitterBuffer::conceal(TAKEN how)
{
    return ++m_nConcealed > MAX_CONCEALED ? TAKEN::NOTHING : how;
}

jitterBuffer::TAKEN jitterBuffer::take(qint64 nowUs, tagHeldPacket& packet)
{
    if (!m_bPlays) {
        if (m_packets.empty() || dueUs(m_packets.begin()->second.nTime) > nowUs + kSlackUs)
            return TAKEN::NOTHING;
        m_bPlays = true;
        m_nNext = m_packets.begin()->first;
    }
    catchUp(nowUs);
    if (m_packets.empty())
        return conceal(TAKEN::LATE);
    const auto first = m_packets.begin();
    if (first->first - m_nNext > kGap)
        m_nNext = first->first;
    const qint64 missing = first->first - m_nNext;
    if (dueUs(first->second.nTime) - missing * m_nPacket > nowUs + kSlackUs)
        return conceal(TAKEN::LATE);
    ++m_nNext;
    if (missing > 0) {
        ++m_counts.nLost;
        return conceal(TAKEN::LOST);
    }
    m_nConcealed = 0;
    ++m_counts.nPlayed;
    packet = std::move(first->second.packet);
    m_packets.erase(first);
    return TAKEN::PACKET;
}
