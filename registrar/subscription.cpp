#include "registrar/subscription.h"
#include "registrar/forwardedRequest.h"
#include <sofia-sip/sip_header.h>
#include <sofia-sip/sip_tag.h>

Subscription::Subscription(nta_agent_t* agent, OwnDialog dialog, std::string event, bool isList, Body body)
    : m_pAgent(agent), m_dialog(std::move(dialog)), m_event(std::move(event)), m_bList(isList),
      m_body(std::move(body))
{
}

Subscription::~Subscription()
{
    nta_outgoing_destroy(m_pNotice);
}

void Subscription::last(long seconds, long now)
{
    m_nEnds = now + seconds;
}

void Subscription::tell(long now)
{
    if (m_bGone)
        return;
    m_bWaits = m_pNotice != nullptr;
    if (m_bWaits)
        return;
    msg_t* message = m_dialog.request("NOTIFY");
    if (!message) {
        m_bGone = true;
        return;
    }
    const tagEventBody body = m_body(m_nVersion++);
    const bool isKnown = !body.type.empty();
    const std::string state = now < m_nEnds ? (isKnown ? "active" : "pending") + std::string(";expires=") +
                                                  std::to_string(m_nEnds - now)
                                            : "terminated;reason=timeout";
    m_pNotice = nta_outgoing_mcreate(
        m_pAgent, ReplyTaker::call, this, nullptr, message, SIPTAG_EVENT_STR(m_event.c_str()),
        SIPTAG_SUBSCRIPTION_STATE_STR(state.c_str()), TAG_IF(m_bList, SIPTAG_REQUIRE_STR("eventlist")),
        TAG_IF(isKnown, SIPTAG_CONTENT_TYPE_STR(body.type.c_str())),
        TAG_IF(isKnown, SIPTAG_PAYLOAD_STR(body.text.c_str())), TAG_END());
    if (!m_pNotice) {
        msg_destroy(message);
        m_bGone = true;
    }
}

void Subscription::onReply(nta_outgoing_t* request, const sip_t* reply)
{
    if (request != m_pNotice || !reply || !reply->sip_status || reply->sip_status->st_status < 200)
        return;
    m_bGone = reply->sip_status->st_status >= 300;
    nta_outgoing_destroy(m_pNotice);
    m_pNotice = nullptr;
    if (m_bWaits)
        tell(pbxNow());
}
