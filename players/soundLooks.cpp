#include "players/soundLooks.h"
#include <algorithm>

bool soundLooks::isDue(qint64 nowMs, const QByteArray& places, bool isDescribed) const
{
    if (!m_bLooked || places != m_places)
        return true;
    if (isDescribed)
        return nowMs - m_nLast >= FIRST_MS;
    return !places.isEmpty() && nowMs - m_nLast >= m_nDelayMs;
}

void soundLooks::inVain(qint64 nowMs, const QByteArray& places)
{
    const bool isSame = m_bLooked && places == m_places;
    m_nDelayMs = isSame ? std::min<int>(2 * m_nDelayMs, LAST_MS) : FIRST_MS;
    m_bLooked = true;
    m_nLast = nowMs;
    m_places = places;
}
