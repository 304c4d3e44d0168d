#include "players/pictureRate.h"
#include <algorithm>

namespace {

constexpr int kBorne = 2;  // percent that get lost without our doing
constexpr int kMuch = 10;  // percent
constexpr int kSteps = 12; // back up, of the most

} // namespace

void pictureRate::setMost(int most)
{
    const int before = m_nMost;
    m_nMost = most <= 0 ? int(USUAL_KBIT) : std::clamp<int>(most, LEAST_KBIT, MOST_KBIT);
    if (m_nMost != before)
        m_nKbit = m_nMost;
}

bool pictureRate::told(int lossInPercent)
{
    const int before = m_nKbit;
    if (lossInPercent >= kMuch)
        m_nKbit = m_nKbit * (200 - std::min(lossInPercent, 100)) / 200;
    else if (lossInPercent <= kBorne)
        m_nKbit += m_nMost / kSteps;
    m_nKbit = std::clamp<int>(m_nKbit, LEAST_KBIT, m_nMost);
    return m_nKbit != before;
}
