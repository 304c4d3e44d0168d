#include "players/playClock.h"
#include <algorithm>

namespace {

constexpr qint64 kLate = 120 * 1000000ll; // well below the reserve
// A picture comes before its turn where others refer to it, in a film of one in some seconds long before.
constexpr qint64 kEarly = 60000 * 1000000ll;

} // namespace

void playClock::arrived(quint32 source, qint64 streamNs, qint64 nowNs)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const bool isNew = !m_present.bSet || source != m_present.nSource;
    const qint64 late = nowNs - (streamNs + m_present.nOffset);
    if (!isNew && late <= kLate && late >= -kEarly)
        return;
    if (isNew)
        m_before = m_present;
    m_present = {true, source, nowNs - streamNs};
}

qint64 playClock::due(quint32 source, qint64 streamNs)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const bool isBefore = m_before.bSet && source == m_before.nSource && source != m_present.nSource;
    const tagPlay& play = isBefore ? m_before : m_present;
    return std::max<qint64>(0, streamNs + play.nOffset + RESERVE);
}
