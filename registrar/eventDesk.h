#pragma once
// Tells phones of the calls of extensions ("dialog"; the list of all under the name "blf") and of waiting
// messages ("message-summary").
#include "registrar/subscription.h"
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <string>

class EventDesk
{
public:
    enum : size_t { MAX_SUBSCRIPTIONS = 400, MAX_OF_ONE = 60 };
    enum : long { LEAST_SECONDS = 60 };
    static constexpr const char* kListName = "blf";

    // isThere: whether a user has a phone here.
    EventDesk(const AccountBook& accounts, const CallBook& calls,
              std::function<bool(const std::string& user)> isThere)
        : m_accounts(accounts), m_calls(calls), m_isThere(std::move(isThere))
    {
    }

    // Before the first request, and null before the stack ends; most: the seconds that a watch is granted.
    void attach(nta_agent_t* agent, const std::string& place, long most);
    // A SUBSCRIBE of that user, who is known; it is answered.
    void subscribe(nta_incoming_t* request, const sip_t& message, const std::string& user, long now);
    // His calls, or whether he has a phone here.
    void userChanged(const std::string& user, long now);
    void addMessage(const std::string& user, long now);
    // All were heard.
    void clearMessages(const std::string& user, long now);
    void sweep(long now);

private:
    enum class KIND { DIALOGS, LIST, MESSAGES };
    struct tagWatch
    {
        std::string user; // who watches
        std::string watched;
        KIND eKind;
        std::unique_ptr<Subscription> subscription;
    };

    // 200, or why not.
    int begin(nta_incoming_t* request, const sip_t& message, const std::string& user, long seconds, long now);
    int kindOf(const sip_t& message, const std::string& user, KIND& kind) const;
    int refresh(const sip_t& message, const std::string& user, long seconds, long now);
    tagEventBody bodyOf(KIND kind, const std::string& watched, unsigned version) const;
    void tell(KIND kind, const std::string& watched, long now);

    const AccountBook& m_accounts;
    const CallBook& m_calls;
    const std::function<bool(const std::string&)> m_isThere;
    nta_agent_t* m_pAgent = nullptr;
    std::string m_place;
    long m_nMost = 0;
    std::list<tagWatch> m_watches;
    tagWatch* m_pFresh = nullptr; // is told for the first time when its request was answered
    std::map<std::string, unsigned> m_messages;
};
