#pragma once
// What waits in the voice mail of a line: the server is asked, and may tell without being asked.
#include "sip/messageSummary.h"
#include "sip/subscription.h"

class WaitingMessages : public SubscriptionNews
{
public:
    WaitingMessages(const tagSipStack& stack, uint32_t line, std::function<void()> changed);
    void start(const Registration& line);
    // Nothing is known.
    void stop();
    // The account is another.
    void forgive() { m_subscription.forgive(); }
    // A note that nobody asked for; false when it is damaged.
    bool take(const sip_t& message);
    // What the phone does not know yet.
    void tell();

    void onBegun() override {}
    bool onNote(const sip_t& message) override;
    void onLost() override;

private:
    const tagSipStack& m_stack;
    const uint32_t m_nLine;
    const std::function<void()> m_changed;
    tagMessageCounts m_counts;
    tagMessageCounts m_told;
    bool m_bKnown = false;
    bool m_bToldKnown = false;
    bool m_bAskedFor = false; // what is known was asked for
    Subscription m_subscription;
};
