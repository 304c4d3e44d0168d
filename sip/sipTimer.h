#pragma once
// Calls once, after a time; never after it was stopped or destroyed.
#include <cstdint>
#include <functional>
#include <sofia-sip/su_wait.h>

class SipTimer
{
public:
    explicit SipTimer(su_root_t* root);
    ~SipTimer();
    SipTimer(const SipTimer&) = delete;
    SipTimer& operator=(const SipTimer&) = delete;

    // In place of what was to come.
    void start(uint32_t ms, std::function<void()> call);
    void stop();
    bool isRunning() const { return m_call != nullptr; }

private:
    static void onTime(su_root_magic_t*, su_timer_t*, su_timer_arg_t* self);

    su_timer_t* m_pTimer;
    std::function<void()> m_call;
};
