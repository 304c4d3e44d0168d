#pragma once
// One subscription at the server of a line (RFC 6665): asked for, refreshed, and asked for anew when the
// server has lost it. Who is refused asks again after long, or when the account is another.
#include "sip/challengeAnswers.h"
#include "sip/floodGuard.h"
#include "sip/sipStack.h"
#include "sip/sipTimer.h"
#include <chrono>
#include <memory>
#include <string>

class Registration;

struct tagEventPackage
{
    const char* szEvent;
    const char* szAccept;
    const char* szSupported; // what may stand in notes under "Require"; null: nothing
    uint32_t nExpires;       // seconds
};

// Hears of a subscription.
class SubscriptionNews
{
public:
    virtual ~SubscriptionNews() = default;
    // Another one: notes begin anew.
    virtual void onBegun() = 0;
    // A note with a body; false when the whole state is to be asked for.
    virtual bool onNote(const sip_t& message) = 0;
    // A note without one, of a subscription that holds.
    virtual void onEmptyNote() {}
    // Nobody tells any more, until the next note.
    virtual void onLost() = 0;
};

class Subscription : public StackOwner
{
public:
    Subscription(const tagSipStack& stack, const tagEventPackage& package, SubscriptionNews& news);
    ~Subscription() override;

    // At the server of a line that is registered, until stop(). target: a number there, or an address.
    void start(const Registration& line, const std::string& target);
    void stop();
    // A refusal holds no more.
    void forgive();
    void onStack(const tagStackEvent& event) override;

private:
    void subscribe();
    void renew();
    void onReply(const tagStackEvent& event);
    void onNote(const tagStackEvent& event);
    void onEnd(const sip_subscription_state_t& state);
    void wait(uint32_t leastMs);
    void atOnce();
    void refuse();
    void drop();

    const tagSipStack& m_stack;
    const tagEventPackage m_package;
    SubscriptionNews& m_news;
    std::unique_ptr<ChallengeAnswers> m_answers;
    std::unique_ptr<floodGuard::Dialog> m_dialog;
    nua_handle_t* m_pHandle = nullptr;
    uint32_t m_nLine = 0;
    std::string m_own;
    std::string m_target;
    std::string m_hop;
    std::string m_contact;
    SipTimer m_silent; // the server says nothing
    SipTimer m_again;
    SipTimer m_renew;
    std::chrono::steady_clock::time_point m_begun;
    uint32_t m_nDelayMs = 0;
    bool m_bStarted = false;
    bool m_bRefused = false;
    bool m_bNoted = false; // this one has told something
};
