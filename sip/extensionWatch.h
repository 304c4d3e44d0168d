#pragma once
// An extension that the phone watches.
#include "sip/extensionState.h"
#include "sip/subscription.h"

class ExtensionWatch : public SubscriptionNews
{
public:
    ExtensionWatch(const tagSipStack& stack, const tagSipWatch& watch, std::function<void()> changed);
    uint32_t line() const { return m_watch.nLine; }
    const char* number() const { return m_watch.szNumber; }
    const ExtensionState& state() const { return m_state; }
    void start(const Registration& line) { m_subscription.start(line, m_watch.szNumber); }
    // Nothing is known.
    void stop();
    // The account is another.
    void forgive() { m_subscription.forgive(); }
    // What the phone does not know yet.
    void tell();

    void onBegun() override { m_state.begin(); }
    bool onNote(const sip_t& message) override;
    void onEmptyNote() override;
    void onLost() override;

private:
    const tagSipStack& m_stack;
    const tagSipWatch m_watch;
    const std::function<void()> m_changed;
    ExtensionState m_state;
    SIP_LAMP_STATE m_eTold = SIP_LAMP_UNKNOWN;
    Subscription m_subscription;
};
