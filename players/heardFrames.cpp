#include "players/heardFrames.h"
#include <algorithm>

void heardFrames::put(const short* samples, size_t count)
{
    m_samples.insert(m_samples.end(), samples, samples + count);
    if (m_samples.size() > MOST)
        m_samples.erase(m_samples.begin(), m_samples.end() - MOST);
}

void heardFrames::take(short* frame)
{
    constexpr size_t kFrame = callSession::FRAME_SAMPLES;
    m_bHears = m_samples.size() >= (m_bHears ? kFrame : size_t(AHEAD));
    if (!m_bHears) {
        std::fill(frame, frame + kFrame, short(0));
    } else {
        std::copy_n(m_samples.begin(), kFrame, frame);
        m_samples.erase(m_samples.begin(), m_samples.begin() + kFrame);
    }
    dropSurplus();
}

// A device that is faster than the clock fills it slowly, and one that delivers much at once leaves little
// before the next time.
void heardFrames::dropSurplus()
{
    m_nLeast = std::min(m_nLeast, m_samples.size());
    if (++m_nFrames < LOOKED_AT)
        return;
    if (m_nLeast > MOST_WAITING)
        m_samples.erase(m_samples.begin(),
                        m_samples.begin() + qptrdiff(m_nLeast - callSession::FRAME_SAMPLES));
    m_nLeast = MOST;
    m_nFrames = 0;
}

void heardFrames::clear()
{
    *this = heardFrames();
}
