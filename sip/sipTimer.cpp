#include "sip/sipTimer.h"
#include <utility>

SipTimer::SipTimer(su_root_t* root) : m_pTimer(su_timer_create(su_root_task(root), 0)) {}

SipTimer::~SipTimer()
{
    su_timer_destroy(m_pTimer);
}

void SipTimer::start(uint32_t ms, std::function<void()> call)
{
    stop();
    m_call = std::move(call);
    su_timer_set_interval(m_pTimer, onTime, reinterpret_cast<su_timer_arg_t*>(this), ms);
}

void SipTimer::stop()
{
    su_timer_reset(m_pTimer);
    m_call = nullptr;
}

void SipTimer::onTime(su_root_magic_t*, su_timer_t*, su_timer_arg_t* self)
{
    // It may be started again, or its owner go, by what it calls.
    const auto call = std::exchange(reinterpret_cast<SipTimer*>(self)->m_call, nullptr);
    if (call)
        call();
}
