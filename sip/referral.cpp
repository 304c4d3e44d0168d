#include "sip/referral.h"
#include "sip/refusals.h"
#include "sip/stackMemory.h"
#include <cstring>
#include <sofia-sip/nua_tag.h>
#include <sofia-sip/sip_header.h>
#include <sofia-sip/sip_status.h>
#include <sofia-sip/sip_tag.h>
#include <sofia-sip/url.h>
#include <strings.h>

namespace {

// One header line among those that an address asks for; empty where it is not there.
std::string headerIn(const std::string& lines, const char* name)
{
    size_t at = 0;
    while (at < lines.size()) {
        const size_t end = std::min(lines.find('\n', at), lines.size());
        const std::string line = lines.substr(at, end - at);
        if (strncasecmp(line.c_str(), name, strlen(name)) == 0 && line[strlen(name)] == ':')
            return line.substr(strlen(name) + 1);
        at = end + 1;
    }
    return "";
}

bool isForInvite(const url_t* url)
{
    char method[16] = "";
    return url_param(url->url_params, "method", method, sizeof method) == 0 ||
           strcasecmp(method, "INVITE") == 0;
}

// The stack keeps one, and the others among what is damaged.
bool hasSeveral(const sip_t& message)
{
    const auto* each = reinterpret_cast<const sip_header_t*>(message.sip_error);
    while (each && each->sh_class != sip_refer_to_class)
        each = each->sh_next;
    return each != nullptr;
}

std::string nameOfEvent(tagi_t* tags)
{
    const sip_event_t* event = nullptr;
    tl_gets(tags, NUTAG_REFER_EVENT_REF(event), TAG_END());
    if (!event || !event->o_type)
        return "refer";
    return std::string(event->o_type) + (event->o_id ? std::string(";id=") + event->o_id : "");
}

} // namespace

Referral::Referral(const tagSipStack& stack, const tagStackEvent& event)
    : m_pHandle(event.pHandle), m_pRequest(std::make_unique<SavedRequest>(stack.pNua)),
      m_event(nameOfEvent(event.pTags))
{
    read(*event.pMessage);
}

Referral::~Referral()
{
    refuse(603);
}

void Referral::read(const sip_t& message)
{
    StackMemory memory;
    const sip_refer_to_t* to = message.sip_refer_to;
    if (!to || to->r_next || hasSeveral(message)) {
        m_nProblem = 400;
        return;
    }
    url_t url = *to->r_url;
    const char* query =
        url.url_headers ? url_query_as_header_string(memory.home(), url.url_headers) : nullptr;
    url.url_headers = nullptr;
    const char* text = url_as_string(memory.home(), &url);
    if (url.url_type != url_sip && url.url_type != url_sips)
        m_nProblem = 416;
    else if (!isForInvite(&url))
        m_nProblem = 501;
    else if (!text || strlen(text) >= SIP_TARGET_SIZE)
        m_nProblem = 414;
    if (m_nProblem)
        return;
    m_target = text;
    const std::string asked = query ? headerIn(query, "Replaces") : "";
    // As it is read, so that nothing else comes along with it.
    const sip_replaces_t* replaces =
        asked.empty() ? nullptr : sip_replaces_make(memory.home(), asked.c_str());
    if (replaces)
        m_replaces = sip_header_as_string(memory.home(), reinterpret_cast<const sip_header_t*>(replaces));
    else if (!asked.empty())
        m_nProblem = 400;
    if (message.sip_referred_by)
        m_referredBy = sip_header_as_string(memory.home(),
                                            reinterpret_cast<const sip_header_t*>(message.sip_referred_by));
}

void Referral::respond(uint32_t status)
{
    const char* phrase = sip_status_phrase(int(status));
    nua_respond(m_pHandle, int(status), phrase ? phrase : "Refused", NUTAG_WITH(m_pRequest->message()),
                TAG_END());
    m_pRequest.reset();
}

void Referral::refuse(uint32_t status)
{
    // Some of them would end the call itself.
    if (isWaiting())
        respond(refusals::endCallOfReferrer(int(status)) ? 603 : status);
}

void Referral::accept()
{
    if (!isWaiting())
        return;
    respond(202);
    m_bTelling = true;
    tell(100, "Trying");
}

void Referral::tell(uint32_t status, const std::string& phrase)
{
    if (!m_bTelling)
        return;
    m_bTelling = status < 200;
    const std::string body = "SIP/2.0 " + std::to_string(status) + " " + phrase + "\r\n";
    nua_notify(m_pHandle, SIPTAG_EVENT_STR(m_event.c_str()),
               SIPTAG_SUBSCRIPTION_STATE_STR(m_bTelling ? "active" : "terminated;reason=noresource"),
               SIPTAG_CONTENT_TYPE_STR("message/sipfrag"), SIPTAG_PAYLOAD_STR(body.c_str()), TAG_END());
}
