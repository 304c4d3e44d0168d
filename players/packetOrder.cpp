#include "players/packetOrder.h"

namespace {

constexpr qint64 kFarAway = 3000; // packets: whoever is there has begun anew

} // namespace

void packetOrder::clear()
{
    m_packets.clear();
    m_bAny = false;
}

void packetOrder::put(quint16 sequence, const QByteArray& packet, qint64 nowUs)
{
    qint64 number =
        m_bAny ? m_nNext + qint16(quint16(sequence - quint16(m_nNext))) : qint64(sequence) + 0x10000;
    if (m_bAny && (number > m_nNext + kFarAway || number < m_nNext - kFarAway)) {
        clear();
        number = qint64(sequence) + 0x10000;
    }
    if (!m_bAny)
        m_nNext = number;
    m_bAny = true;
    if (number >= m_nNext && m_packets.size() < MAX_PACKETS)
        m_packets.insert({number, {packet, nowUs}});
}

bool packetOrder::take(qint64 nowUs, QByteArray& packet, bool& lost)
{
    if (m_packets.empty())
        return false;
    const auto first = m_packets.begin();
    lost = first->first != m_nNext;
    if (lost && nowUs - first->second.nCame < WAIT_MS * 1000 && m_packets.size() < MAX_PACKETS)
        return false;
    m_nNext = first->first + 1;
    packet = std::move(first->second.packet);
    m_packets.erase(first);
    return true;
}
