#pragma once
// So many of something a second, and some of them at once: what is beyond that is too much. Times are
// microseconds of one clock. One thread.
#include <algorithm>
#include <cstdint>

class paceBudget
{
public:
    paceBudget(int perSecond, int atOnce) : m_perSecond(perSecond), m_atOnce(atOnce), m_left(atOnce) {}
    // One more; false when it is too much.
    bool take(int64_t nowUs)
    {
        m_left = std::min(m_atOnce,
                          m_left + double(std::max<int64_t>(0, nowUs - m_nBeforeUs)) * m_perSecond / 1e6);
        m_nBeforeUs = nowUs;
        if (m_left < 1)
            return false;
        m_left -= 1;
        return true;
    }

private:
    const double m_perSecond;
    const double m_atOnce;
    double m_left;
    int64_t m_nBeforeUs = 0;
};
