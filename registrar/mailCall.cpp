#include "registrar/mailCall.h"
#include "registrar/pbxText.h"
#include <sofia-sip/sip_header.h>
#include <sofia-sip/sip_status.h>
#include <sofia-sip/sip_tag.h>
#include <sstream>

namespace {

constexpr int kNowhere = 9; // the port that throws away

std::string offerOf(nta_incoming_t* call)
{
    msg_t* message = nta_incoming_getrequest(call);
    const sip_payload_t* payload = sip_object(message)->sip_payload;
    const std::string text =
        payload && payload->pl_data ? std::string(payload->pl_data, payload->pl_len) : "";
    msg_destroy(message);
    return text;
}

} // namespace

MailCall::MailCall(su_root_t* root, nta_agent_t* agent, const std::string& place, nta_incoming_t* call)
    : m_pAgent(agent), m_pCall(call), m_dialog(agent, place, call), m_limit(root)
{
    const std::string answer = answerTo(offerOf(call));
    m_bAnswered = m_dialog.isGood() && !answer.empty();
    if (!m_bAnswered) {
        nta_incoming_treply(call, SIP_488_NOT_ACCEPTABLE, TAG_END());
        m_bOver = true;
        return;
    }
    const std::string contact = "<" + m_dialog.ownAddress() + ">";
    nta_incoming_treply(call, SIP_200_OK, SIPTAG_CONTACT_STR(contact.c_str()),
                        SIPTAG_CONTENT_TYPE_STR("application/sdp"), SIPTAG_PAYLOAD_STR(answer.c_str()),
                        TAG_END());
    m_limit.start(TALK_MS, [this] { hangUp(); });
}

MailCall::~MailCall()
{
    nta_outgoing_destroy(m_pBye);
    nta_incoming_destroy(m_pCall);
}

std::string MailCall::answerTo(const std::string& offer)
{
    std::istringstream lines(offer);
    std::string line, media;
    bool hasSound = false;
    while (std::getline(lines, line)) {
        std::istringstream words(line);
        std::string kind, port, protocol, format;
        words >> kind >> port >> protocol >> format;
        if (kind.rfind("m=", 0) != 0 || format.empty())
            continue;
        const bool isTaken = kind == "m=audio" && protocol == "RTP/AVP" && !hasSound;
        hasSound = hasSound || isTaken;
        media += kind + " " + std::to_string(isTaken ? kNowhere : 0) + " " + protocol + " " + format +
                 "\r\n" + (isTaken ? "a=recvonly\r\n" : "");
    }
    return hasSound ? "v=0\r\no=- 1 1 IN IP4 127.0.0.1\r\ns=-\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\n" + media
                    : "";
}

void MailCall::take(nta_incoming_t* request)
{
    const bool isBye = nta_incoming_method(request) == sip_method_bye;
    if (isBye)
        nta_incoming_treply(request, SIP_200_OK, TAG_END());
    else
        nta_incoming_treply(request, SIP_488_NOT_ACCEPTABLE, TAG_END());
    m_bOver = m_bOver || isBye;
}

void MailCall::hangUp()
{
    if (m_bOver)
        return;
    msg_t* message = m_dialog.request("BYE");
    m_pBye = message ? nta_outgoing_mcreate(m_pAgent, ReplyTaker::call, this, nullptr, message, TAG_END())
                     : nullptr;
    if (!m_pBye) {
        if (message)
            msg_destroy(message);
        m_bOver = true;
    }
}

void MailCall::onReply(nta_outgoing_t*, const sip_t* reply)
{
    m_bOver = m_bOver || !reply || !reply->sip_status || reply->sip_status->st_status >= 200;
}
