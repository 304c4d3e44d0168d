#include "registrar/eventDesk.h"
#include "registrar/pbxText.h"
#include <algorithm>
#include <sofia-sip/sip_extra.h>
#include <sofia-sip/sip_header.h>
#include <sofia-sip/sip_status.h>
#include <sofia-sip/sip_tag.h>

namespace {

constexpr unsigned kMostMessages = 99;
constexpr const char* kEvents = "dialog, message-summary";

std::string eventOf(const sip_event_t& event)
{
    // The id tells subscriptions of one dialog apart; it comes back as it is.
    return pbxText::of(event.o_type) + (event.o_id ? std::string(";id=") + event.o_id : "");
}

} // namespace

void EventDesk::attach(nta_agent_t* agent, const std::string& place, long most)
{
    m_pAgent = agent;
    m_place = place;
    m_nMost = most;
    if (!agent)
        m_watches.clear();
}

void EventDesk::subscribe(nta_incoming_t* request, const sip_t& message, const std::string& user, long now)
{
    const long seconds =
        message.sip_expires ? std::min(long(message.sip_expires->ex_delta), m_nMost) : m_nMost;
    m_pFresh = nullptr;
    int status = 423;
    if (seconds == 0 || seconds >= LEAST_SECONDS)
        status = message.sip_to->a_tag ? refresh(message, user, seconds, now)
                                       : begin(request, message, user, seconds, now);
    const std::string contact = "<sip:" + m_place + ">", time = std::to_string(seconds);
    const std::string least = std::to_string(LEAST_SECONDS);
    const char* phrase = sip_status_phrase(status);
    nta_incoming_treply(request, status, phrase ? phrase : "Refused",
                        TAG_IF(status == 200, SIPTAG_CONTACT_STR(contact.c_str())),
                        TAG_IF(status == 200, SIPTAG_EXPIRES_STR(time.c_str())),
                        TAG_IF(status == 423, SIPTAG_MIN_EXPIRES_STR(least.c_str())),
                        TAG_IF(status == 421, SIPTAG_REQUIRE_STR("eventlist")),
                        TAG_IF(status == 489, SIPTAG_ALLOW_EVENTS_STR(kEvents)), TAG_END());
    if (m_pFresh)
        m_pFresh->subscription->tell(now);
}

int EventDesk::kindOf(const sip_t& message, const std::string& user, KIND& kind) const
{
    const std::string event = message.sip_event ? pbxText::of(message.sip_event->o_type) : "";
    const std::string watched = pbxText::user(message.sip_request->rq_url);
    if (event == "message-summary") {
        kind = KIND::MESSAGES;
        return watched == user ? 200 : 403;
    }
    if (event != "dialog")
        return 489;
    kind = watched == kListName ? KIND::LIST : KIND::DIALOGS;
    if (kind == KIND::LIST)
        return sip_has_supported(message.sip_supported, "eventlist") ? 200 : 421;
    return m_accounts.find(watched) ? 200 : 404;
}

int EventDesk::begin(nta_incoming_t* request, const sip_t& message, const std::string& user, long seconds,
                     long now)
{
    KIND kind = KIND::DIALOGS;
    const int status = kindOf(message, user, kind);
    if (status != 200)
        return status;
    const auto own = std::count_if(m_watches.begin(), m_watches.end(),
                                   [&](const tagWatch& each) { return each.user == user; });
    if (m_watches.size() >= MAX_SUBSCRIPTIONS || size_t(own) >= MAX_OF_ONE)
        return 503;
    OwnDialog dialog(m_pAgent, m_place, request);
    if (!dialog.isGood())
        return 400;
    const std::string watched = pbxText::user(message.sip_request->rq_url);
    auto subscription = std::make_unique<Subscription>(
        m_pAgent, std::move(dialog), eventOf(*message.sip_event), kind == KIND::LIST,
        [this, kind, watched](unsigned version) { return bodyOf(kind, watched, version); });
    subscription->last(seconds, now);
    m_watches.push_back({user, watched, kind, std::move(subscription)});
    m_pFresh = &m_watches.back();
    return 200;
}

int EventDesk::refresh(const sip_t& message, const std::string& user, long seconds, long now)
{
    for (tagWatch& watch : m_watches) {
        OwnDialog& dialog = watch.subscription->dialog();
        if (watch.user != user || watch.subscription->isOver(now) || !dialog.holds(message))
            continue;
        if (!dialog.isNewer(message))
            return 500;
        dialog.follow(message);
        watch.subscription->last(seconds, now);
        m_pFresh = &watch;
        return 200;
    }
    return 481;
}

tagEventBody EventDesk::bodyOf(KIND kind, const std::string& watched, unsigned version) const
{
    if (kind == KIND::LIST)
        return eventBody::list(m_calls, m_accounts, m_isThere, watched, m_place, version);
    if (kind == KIND::DIALOGS)
        return m_isThere(watched) ? eventBody::dialogs(m_calls, watched, m_place, version) : tagEventBody();
    const auto count = m_messages.find(watched);
    return eventBody::messages(watched, m_place, count == m_messages.end() ? 0 : count->second);
}

void EventDesk::tell(KIND kind, const std::string& watched, long now)
{
    for (tagWatch& watch : m_watches) {
        if (watch.eKind == kind && (kind == KIND::LIST || watch.watched == watched) &&
            !watch.subscription->isOver(now))
            watch.subscription->tell(now);
    }
}

void EventDesk::userChanged(const std::string& user, long now)
{
    if (user.empty())
        return;
    tell(KIND::DIALOGS, user, now);
    tell(KIND::LIST, kListName, now);
}

void EventDesk::addMessage(const std::string& user, long now)
{
    unsigned& count = m_messages[user];
    count = std::min(count + 1, kMostMessages);
    tell(KIND::MESSAGES, user, now);
}

void EventDesk::clearMessages(const std::string& user, long now)
{
    m_messages.erase(user);
    tell(KIND::MESSAGES, user, now);
}

void EventDesk::sweep(long now)
{
    m_watches.remove_if([&](const tagWatch& watch) { return watch.subscription->isOver(now); });
}
