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
        refill(nowUs);
        if (m_left < 1)
            return false;
        m_left -= 1;
        return true;
    }
    // What was taken is known only now; false while it was too much.
    bool spend(int64_t nowUs, double amount)
    {
        refill(nowUs);
        m_left = std::max(m_left - amount, -m_atOnce);
        return m_left > 0;
    }

private:
    void refill(int64_t nowUs)
    {
        m_left = std::min(m_atOnce,
                          m_left + double(std::max<int64_t>(0, nowUs - m_nBeforeUs)) * m_perSecond / 1e6);
        m_nBeforeUs = nowUs;
    }

    const double m_perSecond;
    const double m_atOnce;
    double m_left;
    int64_t m_nBeforeUs = 0;
};
