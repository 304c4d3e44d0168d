#include "sip/sipCall.h"
#include "sip/phoneLink.h"
#include "sip/refusalText.h"
#include "sip/registration.h"
#include "sip/sipAddress.h"
#include "sip/sipCaller.h"
#include "sip/stackMemory.h"
#include <algorithm>
#include <sofia-sip/nta_tag.h>
#include <sofia-sip/sip_header.h>
#include <sofia-sip/sip_status.h>
#include <sofia-sip/sip_tag.h>
#include <sofia-sip/url.h>
#include <utility>

namespace {

constexpr uint32_t kReleaseMs = 5000;
constexpr const char* kAnsweredHere = "INVITE, NOTIFY, UPDATE, REFER, INFO, PRACK";
constexpr const char* kSdpType = "application/sdp";
constexpr const char* kRetryAfterSeconds = "2";

// No server has said anything.
constexpr uint32_t kNothingHeard = 408;
constexpr uint32_t kNoCommonMedia = 488;
constexpr uint32_t kUseProxy = 305; // names no place where somebody is, but a way

// Where nothing can be refused any more.
std::string sdpOf(const sip_t* message)
{
    return callBody::read(message).sdp;
}

// Of a description, without what says who has written it, and how often.
std::string bodyOf(const std::string& sdp)
{
    const size_t origin = sdp.find("\no=");
    const size_t end = origin == std::string::npos ? origin : sdp.find('\n', origin + 1);
    return end == std::string::npos ? sdp : sdp.substr(0, origin) + sdp.substr(end);
}

// The replies to requests of this side that stand in the way of an INVITE.
bool isRequestWithin(nua_event_t event)
{
    return event == nua_r_info || event == nua_r_update || event == nua_r_refer || event == nua_r_notify;
}

} // namespace

SipCall::SipCall(const tagSipStack& stack, uint32_t id)
    : m_stack(stack), m_nId(id), m_bIncoming(id >= SIP_CALL_FIRST_INCOMING),
      m_offer(stack.pRoot, !m_bIncoming, [this](const std::string& sdp) { sendOffer(sdp); }),
      m_session(stack.pRoot, [this] { refresh(); }), m_limit(stack.pRoot), m_silent(stack.pRoot),
      m_phone(stack.pRoot), m_asked(stack.pRoot)
{
}

SipCall::~SipCall()
{
    release();
}

void SipCall::dial(const Registration& line, const tagSipDial& dial, const tagCallOrigin& origin,
                   tagCallHooks hooks)
{
    m_hooks = std::move(hooks);
    m_nLine = line.line();
    m_own = line.ownAddress();
    m_server = line.server();
    m_answers = std::make_unique<ChallengeAnswers>(line.key(), line.realm());
    m_setup = std::make_unique<CallSetup>(m_stack, line, dial, origin);
    m_dialog = std::make_unique<floodGuard::Dialog>(m_setup->callId(), m_nLine);
    m_dialog->setAsking(true);
    m_remote = m_setup->target();
    m_ownSdp = dial.szSdp;
    m_eStep = STEP_RINGING;
    m_limit.start(m_stack.setup.nRingSeconds * 1000, [this] { ringsTooLong(); });
    invite();
}

void SipCall::invite()
{
    m_pHandle = m_setup->invite(this);
    if (m_pHandle)
        m_silent.start(m_stack.setup.nSilentMs, [this] { nextServer(); });
    else
        end(SIP_BROKEN, 0, "The number makes no address that the line can call");
}

// The last server has all the time that the call has: it may only be slow.
void SipCall::nextServer()
{
    m_silent.stop();
    if (m_hooks.serverFails)
        m_hooks.serverFails();
    if (!m_setup->hasNext()) {
        tellUnderWay(0);
        return;
    }
    inviteAnew();
}

void SipCall::inviteAnew()
{
    // What this server may still make of the call is cancelled, or hung up.
    nua_handle_destroy(std::exchange(m_pHandle, nullptr));
    m_answers->forget();
    m_early.forget();
    invite();
}

void SipCall::arrive(const Registration& line, const tagStackEvent& event, const tagSdpBody& body,
                     uint32_t replaced, tagCallHooks hooks)
{
    m_hooks = std::move(hooks);
    m_pHandle = event.pHandle;
    nua_handle_bind(m_pHandle, this);
    msg_t* request = nua_current_request(m_stack.pNua);
    m_source = floodGuard::sourceOf(request);
    const std::string hop = line.hopTo(m_source, floodGuard::portOf(request));
    nua_set_hparams(m_pHandle, TAG_IF(!hop.empty(), NUTAG_PROXY(hop.c_str())), NUTAG_AUTO302(0), TAG_END());
    m_nLine = line.line();
    m_own = line.ownAddress();
    m_server = line.server();
    m_dialog = std::make_unique<floodGuard::Dialog>(event.pMessage->sip_call_id->i_id, m_nLine);
    m_remote = sipCaller::address(*event.pMessage);
    m_answers = std::make_unique<ChallengeAnswers>(line.key(), line.realm());
    m_remoteSdp = body.bUnknown ? "" : body.sdp;
    m_session.agree(*event.pMessage);
    m_eStep = STEP_RINGING;
    limitRinging(*event.pMessage);
    auto arrived = sipWire::make<tagSipArrived>(SIP_ARRIVED, m_nId);
    arrived.nLine = m_nLine;
    arrived.nReplaces = replaced;
    arrived.nRefusal = body.bUnknown ? refusalText::kUnknownBody : 0;
    m_bWantsEarly =
        !body.bUnknown && m_remoteSdp.empty() && sip_has_feature(event.pMessage->sip_require, "100rel");
    arrived.bWantsEarly = m_bWantsEarly;
    m_bAcknowledges = sip_has_feature(event.pMessage->sip_require, "100rel") ||
                      sip_has_feature(event.pMessage->sip_supported, "100rel");
    // What comes with the acknowledgement of an early answer is the agent's to answer.
    if (m_bAcknowledges)
        nua_set_hparams(m_pHandle, NUTAG_APPL_METHOD(kAnsweredHere), TAG_END());
    sipCaller::read(*event.pMessage, floodGuard::isServer(m_nLine, m_source), arrived);
    sipWire::setText(arrived.szSdp, m_remoteSdp);
    m_stack.pPhone->tell(arrived);
}

// The caller may have less time than the phone.
void SipCall::limitRinging(const sip_t& invite)
{
    const sip_expires_t* expires = invite.sip_expires;
    const bool isSooner = expires && expires->ex_date == 0 && expires->ex_delta < m_stack.setup.nRingSeconds;
    if (!isSooner) {
        m_limit.start(m_stack.setup.nRingSeconds * 1000, [this] { ringsTooLong(); });
        return;
    }
    m_limit.start(uint32_t(expires->ex_delta) * 1000, [this] {
        respond(487);
        end(SIP_CANCELLED, 0, "The caller waits no longer");
        releaseSoon();
    });
}

void SipCall::respond(uint32_t status, const std::string& sdp, uint32_t warning)
{
    const std::string lines = refusalText::linesOf(status, warning);
    nua_respond(m_pHandle, int(status), refusalText::phraseOf(status),
                TAG_IF(!lines.empty(), SIPTAG_HEADER_STR(lines.c_str())),
                TAG_IF(!sdp.empty(), SIPTAG_CONTENT_TYPE_STR(kSdpType)),
                TAG_IF(!sdp.empty(), SIPTAG_PAYLOAD_STR(sdp.c_str())), TAG_END());
}

void SipCall::respondTo(const SavedRequest& request, uint32_t status, const std::string& sdp)
{
    const std::string lines = refusalText::linesOf(status, status == 488 ? refusalText::kMediaDoNotFit : 0);
    nua_respond(m_pHandle, int(status), refusalText::phraseOf(status), NUTAG_WITH(request.message()),
                TAG_IF(status == 500, SIPTAG_RETRY_AFTER_STR(kRetryAfterSeconds)),
                TAG_IF(!lines.empty(), SIPTAG_HEADER_STR(lines.c_str())),
                TAG_IF(!sdp.empty(), SIPTAG_CONTENT_TYPE_STR(kSdpType)),
                TAG_IF(!sdp.empty(), SIPTAG_PAYLOAD_STR(sdp.c_str())), TAG_END());
}

void SipCall::ring(const std::string& sdp)
{
    if (!m_bIncoming || m_eStep != STEP_RINGING)
        return;
    // Whoever wants the offer has it with the first answer that he acknowledges (RFC 3262, 5): without one
    // that is the last.
    if (m_bWantsEarly && sdp.empty())
        return;
    if (!sdp.empty()) {
        m_ownSdp = sdp;
        m_bEarlyWaits = m_bAcknowledges;
    }
    respond(sdp.empty() || m_bWantsEarly ? 180 : 183, sdp);
}

void SipCall::answer(const std::string& sdp)
{
    if (!m_bIncoming || m_eStep != STEP_RINGING)
        return;
    m_answer = sdp;
    if (!isAnswerKept())
        sendAnswer();
}

void SipCall::refuse(uint32_t status, uint32_t warning)
{
    if (m_eStep == STEP_TALKING && m_referral)
        m_referral->refuse(status);
    if (!m_bIncoming || m_eStep != STEP_RINGING)
        return;
    respond(status, "", warning);
    end(SIP_REFUSED, status, "");
    releaseSoon();
}

void SipCall::deflect(const std::string& target)
{
    if (!m_bIncoming || m_eStep != STEP_RINGING)
        return;
    const std::string address = sipAddress::target(target, m_server);
    nua_respond(m_pHandle, SIP_302_MOVED_TEMPORARILY,
                SIPTAG_CONTACT_STR(sipAddress::inBrackets(address).c_str()), TAG_END());
    end(SIP_REDIRECTED, 302, "", address);
    releaseSoon();
}

void SipCall::hangUp(uint32_t why)
{
    if (m_eStep == STEP_RINGING && m_bIncoming) {
        refuse(480);
    } else if (m_eStep == STEP_RINGING) {
        nua_cancel(m_pHandle, TAG_END());
        end(SIP_HUNG_UP, 0, "");
        releaseSoon();
    } else if (m_eStep == STEP_TALKING) {
        sendBye(why);
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

// The other side may have hung up, of which this one is told next: by then the stack would begin another call
// with him. An offer that bears the names of the one that is over begins none.
void SipCall::sendOffer(const std::string& sdp)
{
    if (!nua_handle_has_active_call(m_pHandle))
        return;
    StackMemory memory;
    const tagDialogName name = sipDialog::nameOf(m_pHandle);
    sip_to_t* to = sip_to_dup(memory.home(), nua_handle_remote(m_pHandle));
    const bool isNamed = to && !name.callId.empty() && !name.remoteTag.empty() &&
                         (to->a_tag || sip_to_tag(memory.home(), to, name.remoteTag.c_str()) == 0);
    nua_invite(m_pHandle, NUTAG_SESSION_TIMER(m_session.seconds()), TAG_IF(isNamed, SIPTAG_TO(to)),
               TAG_IF(isNamed, SIPTAG_CALL_ID_STR(name.callId.c_str())), SIPTAG_CONTENT_TYPE_STR(kSdpType),
               SIPTAG_PAYLOAD_STR(sdp.c_str()), TAG_END());
}

void SipCall::onStack(const tagStackEvent& event)
{
    if (event.pHandle != m_pHandle)
        return;
    const uint32_t status = uint32_t(event.nStatus);
    const bool isAsked = (status == 401 || status == 407) && (!hasEnded() || event.eEvent == nua_r_bye);
    if (isAsked && m_answers->answer(m_pHandle, event.pMessage))
        return;
    switch (event.eEvent) {
    case nua_r_invite:
        onInviteReply(event);
        break;
    case nua_r_update:
        onUpdateReply(event);
        break;
    case nua_r_refer:
        onReferReply(event);
        break;
    case nua_r_info:
        onToneReply(event);
        break;
    case nua_r_bye:
        onByeReply(status);
        break;
    case nua_i_state:
        onState(event);
        break;
    default:
        onRequest(event);
    }
    if (isRequestWithin(event.eEvent) && status >= 200)
        m_offer.requestIsAnswered();
}

void SipCall::onRequest(const tagStackEvent& event)
{
    const bool isOpen = event.nStatus < 200; // the stack has not answered it itself
    switch (event.eEvent) {
    case nua_i_invite:
        onOffer(event);
        break;
    case nua_i_update:
        if (isOpen)
            onOffer(event);
        break;
    case nua_i_refer:
        if (isOpen)
            onReferred(event);
        break;
    case nua_i_prack:
        onEarlyAcknowledged(event);
        break;
    case nua_i_ack:
        if (m_eStep == STEP_TALKING)
            talk(sdpOf(event.pMessage));
        break;
    case nua_i_cancel:
        onCancel(event);
        break;
    case nua_i_bye:
        end(m_answer ? SIP_CANCELLED : SIP_HUNG_UP, 0, "");
        break;
    case nua_i_notify:
        onTransferNote(event);
        break;
    default:
        break;
    }
}

// The stack itself hangs up only where this is the answer to an offer.
bool SipCall::isGone(const tagStackEvent& event) const
{
    const bool isNoCall = event.nStatus == 481 || event.nStatus == 408;
    return m_eStep == STEP_TALKING && isNoCall && floodGuard::isFromNetwork(m_stack, event);
}

void SipCall::giveUp(const tagStackEvent& event)
{
    sendBye();
    end(SIP_BROKEN, uint32_t(event.nStatus), event.szPhrase);
    releaseSoon();
}

void SipCall::onState(const tagStackEvent& event)
{
    const uint32_t status = uint32_t(event.nStatus);
    int state = nua_callstate_init;
    tl_gets(event.pTags, NUTAG_CALLSTATE_REF(state), TAG_END());
    // The stack gives up a call by itself, and waits for a reply to that.
    if (state >= nua_callstate_terminating && !hasEnded()) {
        end(m_answer ? SIP_CANCELLED : SIP_BROKEN, status >= 100 && status <= 699 ? status : 0,
            event.szPhrase);
        releaseSoon();
    }
    if (state == nua_callstate_terminated && !m_bByeGoes)
        release();
}

void SipCall::onInviteReply(const tagStackEvent& event)
{
    const bool isTaken = event.nStatus >= 200 && event.nStatus < 300;
    if (hasEnded() && isTaken && !m_bByeGoes)
        sendBye(); // the answer has crossed the end of the call
    else if (m_eStep == STEP_TALKING)
        onMediaReply(event);
    else if (!hasEnded())
        onSetupReply(event);
}

void SipCall::onSetupReply(const tagStackEvent& event)
{
    const uint32_t status = uint32_t(event.nStatus);
    const std::string sdp = sdpOf(event.pMessage);
    if (status < 100)
        return;
    if (floodGuard::isFromNetwork(m_stack, event)) {
        m_bHeard = true;
        m_silent.stop();
        m_name = sipDialog::nameOf(*event.pMessage);
        m_source = floodGuard::sourceOf(nua_current_request(m_stack.pNua));
    }
    if (status == 100) {
        if (m_bSilenceTold)
            tellUnderWay(status);
        return;
    }
    if (status >= 200) {
        onFinalReply(event);
        return;
    }
    // What was agreed on early is not always told again.
    if (!sdp.empty() && !callBody::isTooLarge(sdp)) {
        m_remoteSdp = sdp;
        m_early.take(sipDialog::nameOf(*event.pMessage).remoteTag, sdp);
        m_bAgreedEarly = m_bAgreedEarly || event.pMessage->sip_rseq;
    }
    tellUnderWay(status, callBody::isTooLarge(sdp) ? "" : sdp);
    tellProgress(status, event.szPhrase);
}

void SipCall::tellUnderWay(uint32_t status, const std::string& sdp)
{
    m_bSilenceTold = status == 0;
    auto progress = sipWire::make<tagSipProgress>(SIP_PROGRESS, m_nId);
    progress.nStatus = status;
    sipWire::setText(progress.szSdp, sdp);
    m_stack.pPhone->tell(progress);
}

void SipCall::onFinalReply(const tagStackEvent& event)
{
    const uint32_t status = uint32_t(event.nStatus);
    const bool isReply = floodGuard::isFromNetwork(m_stack, event);
    const bool isDown = status == 503 || !isReply;
    if (status >= 300 && isDown && m_setup->hasNext()) {
        nextServer();
        return;
    }
    if (isReply && m_setup->demandReliable(*event.pMessage)) {
        inviteAnew();
        return;
    }
    if (status < 300) {
        onTaken(event);
        return;
    }
    tellProgress(status, event.szPhrase);
    if (isDown && m_hooks.serverFails)
        m_hooks.serverFails();
    const bool isMoved = status < 400 && status != kUseProxy;
    const std::vector<std::string> places =
        isMoved && isReply ? m_setup->movedTo(*event.pMessage) : std::vector<std::string>();
    if (!places.empty()) {
        onMoved(places, status, event.szPhrase);
    } else if (isReply) {
        end(SIP_REFUSED, status <= 699 ? status : 0, event.szPhrase);
    } else {
        end(SIP_BROKEN, m_bHeard ? 0 : kNothingHeard, event.szPhrase);
    }
    releaseSoon();
}

// Half an address leads somewhere else: one that no record holds is left out.
void SipCall::onMoved(std::vector<std::string> places, uint32_t status, const std::string& phrase)
{
    const auto isTooLong = [](const std::string& place) { return place.size() >= SIP_TARGET_SIZE; };
    places.erase(std::remove_if(places.begin(), places.end(), isTooLong), places.end());
    if (places.empty()) {
        end(SIP_REFUSED, SIP_414_REQUEST_URI_TOO_LONG);
        return;
    }
    for (size_t i = 1; i < places.size(); ++i) {
        auto place = sipWire::make<tagSipTarget>(SIP_PLACE, m_nId);
        sipWire::setText(place.szTarget, places[i]);
        m_stack.pPhone->tell(place);
    }
    end(SIP_REDIRECTED, status, phrase, places.front());
}

// Who answers without a description holds by what he has said early, and not by what another one has, where
// the number rings too.
void SipCall::onTaken(const tagStackEvent& event)
{
    const std::string sdp = sdpOf(event.pMessage);
    if (sdp.empty() && !m_early.isEmpty()) {
        m_remoteSdp = m_early.of(sipDialog::nameOf(*event.pMessage).remoteTag);
        if (m_remoteSdp.empty()) {
            sendBye(kNoCommonMedia);
            end(SIP_REFUSED, kNoCommonMedia, "Nothing was said of media");
            releaseSoon();
            return;
        }
    }
    tellProgress(uint32_t(event.nStatus), event.szPhrase);
    m_answers->reset();
    m_dialog->setAsking(false);
    m_limit.stop();
    m_eStep = STEP_TALKING;
    m_session.agree(*event.pMessage);
    talk(sdp);
}

// Of an offer in the call: one that is not taken leaves everything as it was.
void SipCall::onMediaReply(const tagStackEvent& event)
{
    if (event.nStatus < 200 || !m_offer.isUnderWay())
        return;
    m_answers->reset();
    const bool isTaken = event.nStatus < 300;
    const bool isRefresh = m_offer.sent() == m_ownSdp;
    if (isTaken) {
        m_ownSdp = m_offer.sent();
        m_session.agree(*event.pMessage);
    }
    if (!m_offer.settle(uint32_t(event.nStatus)))
        return;
    // The phone hears of the answer to its own offer, which is next.
    if (isRefresh && !m_offer.isIdle())
        return;
    const std::string sdp = sdpOf(event.pMessage);
    const bool hasMoved = !sdp.empty() && !callBody::isTooLarge(sdp) && bodyOf(sdp) != bodyOf(m_remoteSdp);
    if (isTaken && isRefresh && hasMoved && m_eTakenBack == NOT_TAKEN_BACK) {
        // The phone has made no offer that this could be the answer to.
        m_remoteSdp = sdp;
        offerToPhone();
        return;
    }
    if (isTaken)
        talk(sdpOf(event.pMessage));
    else
        m_stack.pPhone->tell(sipWire::make<tagSipMedia>(SIP_TALK, m_nId));
}

// Of a request that the phone has not answered: the whole call while it rings, else what is offered.
void SipCall::onCancel(const tagStackEvent& event)
{
    if (m_eStep == STEP_TALKING && m_offered) {
        m_offered.reset();
        m_remoteSdp = m_agreedSdp;
        m_eTakenBack = TAKEN_BACK;
        m_phone.start(m_stack.setup.nOfferMs, [this] { m_eTakenBack = NOT_TAKEN_BACK; });
    }
    if (m_eStep != STEP_RINGING)
        return;
    if (sipCaller::isAnsweredElsewhere(event.pMessage))
        end(SIP_ELSEWHERE, 0, "Another phone has answered");
    else
        end(SIP_CANCELLED, 0, "");
}

void SipCall::talk(const std::string& sdp)
{
    if (!sdp.empty() && !callBody::isTooLarge(sdp))
        m_remoteSdp = sdp;
    m_name = sipDialog::nameOf(m_pHandle);
    auto record = sipWire::make<tagSipMedia>(SIP_TALK, m_nId);
    sipWire::setText(record.szSdp, m_remoteSdp);
    m_stack.pPhone->tell(record);
}

void SipCall::end(SIP_ENDING ending, uint32_t status, const std::string& reason, const std::string& target)
{
    if (hasEnded())
        return;
    m_eStep = STEP_ENDED;
    stopTimers();
    tellProgress(status >= 300 ? status : 487, reason.empty() ? "Ended" : reason);
    auto record = sipWire::make<tagSipEnded>(SIP_ENDED, m_nId);
    record.eEnding = ending;
    record.nStatus = status;
    sipWire::setText(record.szReason, reason);
    sipWire::setText(record.szTarget, target);
    m_stack.pPhone->tell(record);
}

// It may be asked for the password as often as whatever went before.
void SipCall::sendBye(uint32_t why)
{
    m_answers->reset();
    m_bByeGoes = true;
    const std::string reason = why ? refusalText::reasonOf(why) : "";
    nua_bye(m_pHandle, TAG_IF(why, SIPTAG_REASON_STR(reason.c_str())), TAG_END());
}

// The call may have ended for the stack long before that, by an offer that was under way. Above all replies
// are the stack's own words for a BYE that it has not sent.
void SipCall::onByeReply(uint32_t status)
{
    const bool isFinal = status >= 200 && status <= 699;
    if (isFinal && std::exchange(m_bByeGoes, false) && hasEnded())
        release();
}

void SipCall::releaseSoon()
{
    m_limit.start(kReleaseMs, [this] { release(); });
}

void SipCall::stopTimers()
{
    m_limit.stop();
    m_silent.stop();
    m_phone.stop();
    m_asked.stop();
    m_offer.stop();
    m_session.stop();
}

void SipCall::release()
{
    stopTimers();
    m_offered.reset();
    m_referral.reset();
    m_dialog.reset();
    if (m_pHandle)
        nua_handle_destroy(std::exchange(m_pHandle, nullptr));
}
