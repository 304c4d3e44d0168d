#pragma once
// The list of extensions that the server of a line keeps.
#include "sip/memberBook.h"
#include "sip/subscription.h"
#include <string>
#include <vector>

class ListWatch : public SubscriptionNews
{
public:
    // address: not empty.
    ListWatch(const tagSipStack& stack, uint32_t line, std::string address, std::function<void()> changed);
    const std::vector<tagListMember>& members() const { return m_book.members(); }
    void start(const Registration& line) { m_subscription.start(line, m_address); }
    // There is none.
    void stop();
    // The account is another.
    void forgive() { m_subscription.forgive(); }
    // What the phone does not know yet.
    void tell();

    void onBegun() override { m_book.begin(); }
    bool onNote(const sip_t& message) override;
    void onLost() override;

private:
    struct tagTold
    {
        std::string number;
        std::string name;
        SIP_LAMP_STATE eLamp;
    };
    bool isToldWith(const std::vector<tagListMember>& members) const;
    void tellMember(size_t index);

    const tagSipStack& m_stack;
    const uint32_t m_nLine;
    const std::string m_address;
    const std::function<void()> m_changed;
    MemberBook m_book;
    std::vector<tagTold> m_told;
    Subscription m_subscription;
};
