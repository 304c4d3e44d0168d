#include "sip/sipCall.h"
#include "sip/phoneLink.h"
#include "sip/registration.h"
#include "sip/sipAddress.h"
#include "sip/sipCaller.h"
#include <sofia-sip/nta_tag.h>
#include <sofia-sip/sip_status.h>
#include <sofia-sip/sip_tag.h>
#include <sofia-sip/url.h>
#include <utility>

namespace {

constexpr uint32_t kReleaseMs = 5000;
constexpr const char* kSdpType = "application/sdp";

std::string sdpOf(const sip_t* message)
{
    if (!message || !message->sip_payload || !message->sip_payload->pl_data)
        return "";
    return std::string(message->sip_payload->pl_data, message->sip_payload->pl_len);
}

bool isTooLarge(const std::string& sdp)
{
    return sdp.size() >= SIP_SDP_SIZE;
}

std::string inBrackets(const std::string& address)
{
    return "<" + address + ">";
}

} // namespace

SipCall::SipCall(const tagSipStack& stack, uint32_t id)
    : m_stack(stack), m_nId(id), m_bIncoming(id >= SIP_CALL_FIRST_INCOMING), m_limit(stack.pRoot),
      m_offer(stack.pRoot)
{
}

SipCall::~SipCall()
{
    release();
}

void SipCall::dial(const Registration& line, const tagSipDial& dial, const std::string& replaces)
{
    m_own = line.ownAddress();
    m_server = line.server();
    m_answers = std::make_unique<ChallengeAnswers>(line.key(), line.realm());
    const std::string target = sipAddress::target(dial.szTarget, m_server);
    const std::string to = inBrackets(target), hop = line.hop();
    const std::string way = std::string("transport=") + line.transportName();
    const bool isAnonymous = dial.bAnonymous != 0;
    const std::string from = isAnonymous ? "\"Anonymous\" <sip:anonymous@anonymous.invalid>" : m_own;
    const std::string identity = "P-Preferred-Identity: " + m_own;
    m_pHandle = nua_handle(m_stack.pNua, this, NUTAG_URL(target.c_str()), SIPTAG_TO_STR(to.c_str()),
                           SIPTAG_FROM_STR(from.c_str()), TAG_END());
    if (!m_pHandle) {
        end(SIP_BROKEN, 0, "The number makes no address");
        return;
    }
    m_eStep = STEP_RINGING;
    m_limit.start(m_stack.setup.nRingSeconds * 1000, [this] { ringsTooLong(); });
    nua_invite(m_pHandle, NUTAG_PROXY(hop.c_str()), NUTAG_AUTO302(0),
               NUTAG_M_USERNAME(line.contact().c_str()), NUTAG_M_PARAMS(way.c_str()),
               SIPTAG_CONTENT_TYPE_STR(kSdpType), SIPTAG_PAYLOAD_STR(dial.szSdp),
               TAG_IF(!replaces.empty(), SIPTAG_REPLACES_STR(replaces.c_str())),
               TAG_IF(!replaces.empty(), SIPTAG_REQUIRE_STR("replaces")),
               TAG_IF(isAnonymous, SIPTAG_PRIVACY_STR("id")),
               TAG_IF(isAnonymous, SIPTAG_HEADER_STR(identity.c_str())), TAG_END());
}

void SipCall::arrive(const Registration& line, const tagStackEvent& event)
{
    m_pHandle = event.pHandle;
    nua_handle_bind(m_pHandle, this);
    m_own = line.ownAddress();
    m_server = line.server();
    m_answers = std::make_unique<ChallengeAnswers>(line.key(), line.realm());
    m_remoteSdp = sdpOf(event.pMessage);
    m_eStep = STEP_RINGING;
    m_limit.start(m_stack.setup.nRingSeconds * 1000, [this] { ringsTooLong(); });
    auto arrived = sipWire::make<tagSipArrived>(SIP_ARRIVED, m_nId);
    arrived.nLine = line.line();
    sipCaller::read(*event.pMessage, arrived);
    sipWire::setText(arrived.szSdp, m_remoteSdp);
    m_stack.pPhone->tell(arrived);
}

void SipCall::respond(uint32_t status, const std::string& sdp)
{
    const char* phrase = sip_status_phrase(int(status));
    nua_respond(m_pHandle, int(status), phrase ? phrase : "Refused",
                TAG_IF(!sdp.empty(), SIPTAG_CONTENT_TYPE_STR(kSdpType)),
                TAG_IF(!sdp.empty(), SIPTAG_PAYLOAD_STR(sdp.c_str())), TAG_END());
}

void SipCall::ring(const std::string& sdp)
{
    if (m_bIncoming && m_eStep == STEP_RINGING)
        respond(sdp.empty() ? 180 : 183, sdp);
}

void SipCall::answer(const std::string& sdp)
{
    if (!m_bIncoming || m_eStep != STEP_RINGING)
        return;
    m_eStep = STEP_TALKING;
    m_limit.stop();
    respond(200, sdp);
}

void SipCall::refuse(uint32_t status)
{
    if (!m_bIncoming || m_eStep != STEP_RINGING)
        return;
    respond(status);
    end(SIP_REFUSED, status, "");
    releaseSoon();
}

void SipCall::deflect(const std::string& target)
{
    if (!m_bIncoming || m_eStep != STEP_RINGING)
        return;
    const std::string address = sipAddress::target(target, m_server);
    nua_respond(m_pHandle, SIP_302_MOVED_TEMPORARILY, SIPTAG_CONTACT_STR(inBrackets(address).c_str()),
                TAG_END());
    end(SIP_REDIRECTED, 302, "", address);
    releaseSoon();
}

void SipCall::hangUp()
{
    if (m_eStep == STEP_RINGING && m_bIncoming) {
        refuse(480);
    } else if (m_eStep == STEP_RINGING) {
        nua_cancel(m_pHandle, TAG_END());
        end(SIP_HUNG_UP, 0, "");
        releaseSoon();
    } else if (m_eStep == STEP_TALKING) {
        nua_bye(m_pHandle, TAG_END());
        end(SIP_HUNG_UP, 0, "");
        releaseSoon();
    }
}

void SipCall::ringsTooLong()
{
    if (m_bIncoming)
        respond(480);
    else
        nua_cancel(m_pHandle, TAG_END());
    end(SIP_UNANSWERED, 480, "Nobody has answered");
    releaseSoon();
}

void SipCall::setMedia(const std::string& sdp)
{
    if (m_eStep != STEP_TALKING)
        return;
    if (m_bOffered) {
        m_bOffered = false;
        m_offer.stop();
        respond(sdp.empty() ? 488 : 200, sdp);
    } else if (!m_bOffering && !sdp.empty()) {
        m_bOffering = true;
        nua_invite(m_pHandle, SIPTAG_CONTENT_TYPE_STR(kSdpType), SIPTAG_PAYLOAD_STR(sdp.c_str()), TAG_END());
    }
}

void SipCall::transfer(const std::string& target)
{
    if (m_eStep != STEP_TALKING)
        return;
    const std::string address = inBrackets(sipAddress::target(target, m_server));
    m_limit.start(m_stack.setup.nRingSeconds * 1000, [this] { onTransfer(408); });
    nua_refer(m_pHandle, SIPTAG_REFER_TO_STR(address.c_str()), SIPTAG_REFERRED_BY_STR(m_own.c_str()),
              TAG_END());
}

void SipCall::sendTone(char tone, uint32_t ms)
{
    if (m_eStep != STEP_TALKING)
        return;
    const std::string body = std::string("Signal=") + tone + "\r\nDuration=" + std::to_string(ms) + "\r\n";
    nua_info(m_pHandle, SIPTAG_CONTENT_TYPE_STR("application/dtmf-relay"), SIPTAG_PAYLOAD_STR(body.c_str()),
             TAG_END());
}

void SipCall::onStack(const tagStackEvent& event)
{
    if (event.pHandle != m_pHandle)
        return;
    const uint32_t status = uint32_t(event.nStatus);
    if ((status == 401 || status == 407) && !hasEnded() && m_answers->answer(m_pHandle, event.pMessage))
        return;
    switch (event.eEvent) {
    case nua_r_invite:
        if (m_eStep == STEP_TALKING)
            onMediaReply(event);
        else
            onInviteReply(event);
        break;
    case nua_i_invite:
        onOffer(event);
        break;
    case nua_i_ack:
        if (m_eStep == STEP_TALKING)
            talk(sdpOf(event.pMessage));
        break;
    case nua_i_cancel:
        if (sipCaller::isAnsweredElsewhere(event.pMessage))
            end(SIP_ELSEWHERE, 0, "Another phone has answered");
        else
            end(SIP_CANCELLED, 0, "");
        break;
    case nua_i_bye:
        end(SIP_HUNG_UP, 0, "");
        break;
    case nua_r_refer:
        if (status >= 300)
            onTransfer(status);
        break;
    case nua_i_notify:
        if (sipCaller::statusOfTransfer(event.pMessage) >= 200)
            onTransfer(sipCaller::statusOfTransfer(event.pMessage));
        break;
    case nua_i_state: {
        int state = nua_callstate_init;
        tl_gets(event.pTags, NUTAG_CALLSTATE_REF(state), TAG_END());
        if (state == nua_callstate_terminated) {
            end(SIP_BROKEN, status >= 100 && status <= 699 ? status : 0, event.szPhrase);
            release();
        }
        break;
    }
    default:
        break;
    }
}

void SipCall::onInviteReply(const tagStackEvent& event)
{
    const uint32_t status = uint32_t(event.nStatus);
    const std::string sdp = sdpOf(event.pMessage);
    if (hasEnded() || status < 100)
        return;
    if (status < 200) {
        auto progress = sipWire::make<tagSipProgress>(SIP_PROGRESS, m_nId);
        progress.nStatus = status;
        sipWire::setText(progress.szSdp, isTooLarge(sdp) ? "" : sdp);
        m_stack.pPhone->tell(progress);
    } else if (status < 300) {
        m_answers->reset();
        m_limit.stop();
        m_eStep = STEP_TALKING;
        talk(sdp);
    } else if (status < 400 && event.pMessage && event.pMessage->sip_contact) {
        su_home_t home[1] = {SU_HOME_INIT(home)};
        const char* target = url_as_string(home, event.pMessage->sip_contact->m_url);
        end(SIP_REDIRECTED, status, event.szPhrase, target ? target : "");
        su_home_deinit(home);
        releaseSoon();
    } else {
        // What the stack itself makes up has no message.
        end(event.pMessage ? SIP_REFUSED : SIP_BROKEN, status <= 699 ? status : 0, event.szPhrase);
        releaseSoon();
    }
}

// Of an offer in the call: one that is not taken leaves everything as it was.
void SipCall::onMediaReply(const tagStackEvent& event)
{
    if (event.nStatus < 200 || !m_bOffering)
        return;
    m_bOffering = false;
    m_answers->reset();
    if (event.nStatus < 300)
        talk(sdpOf(event.pMessage));
    else
        m_stack.pPhone->tell(sipWire::make<tagSipMedia>(SIP_TALK, m_nId));
}

void SipCall::onOffer(const tagStackEvent& event)
{
    const std::string sdp = sdpOf(event.pMessage);
    if (m_eStep != STEP_TALKING || isTooLarge(sdp)) {
        respond(488);
        return;
    }
    m_bOffered = true;
    if (!sdp.empty())
        m_remoteSdp = sdp;
    m_offer.start(m_stack.setup.nOfferMs, [this] {
        m_bOffered = false;
        respond(488);
    });
    auto offer = sipWire::make<tagSipMedia>(SIP_OFFER, m_nId);
    sipWire::setText(offer.szSdp, sdp);
    m_stack.pPhone->tell(offer);
}

void SipCall::onTransfer(uint32_t status)
{
    m_limit.stop();
    auto record = sipWire::make<tagSipStatus>(SIP_TRANSFERRED, m_nId);
    record.nStatus = status;
    m_stack.pPhone->tell(record);
}

void SipCall::talk(const std::string& sdp)
{
    if (!sdp.empty() && !isTooLarge(sdp))
        m_remoteSdp = sdp;
    auto record = sipWire::make<tagSipMedia>(SIP_TALK, m_nId);
    sipWire::setText(record.szSdp, m_remoteSdp);
    m_stack.pPhone->tell(record);
}

void SipCall::end(SIP_ENDING ending, uint32_t status, const std::string& reason, const std::string& target)
{
    if (hasEnded())
        return;
    m_eStep = STEP_ENDED;
    m_limit.stop();
    m_offer.stop();
    auto record = sipWire::make<tagSipEnded>(SIP_ENDED, m_nId);
    record.eEnding = ending;
    record.nStatus = status;
    sipWire::setText(record.szReason, reason);
    sipWire::setText(record.szTarget, target);
    m_stack.pPhone->tell(record);
}

void SipCall::releaseSoon()
{
    m_limit.start(kReleaseMs, [this] { release(); });
}

void SipCall::release()
{
    m_limit.stop();
    m_offer.stop();
    if (m_pHandle)
        nua_handle_destroy(std::exchange(m_pHandle, nullptr));
}
