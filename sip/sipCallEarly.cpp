// What the caller acknowledges while it rings, and the answer of the user that waits for that.
#include "sip/phoneLink.h"
#include "sip/refusalText.h"
#include "sip/sipCall.h"
#include <sofia-sip/sip_status.h>
#include <utility>

void SipCall::sendAnswer()
{
    const std::string sdp = *std::exchange(m_answer, {});
    m_eStep = STEP_TALKING;
    m_limit.stop();
    if (!sdp.empty() && !m_bMovedEarly)
        m_ownSdp = sdp;
    // An answer to the caller's first offer would be out of date.
    respond(200, m_bMovedEarly ? "" : sdp);
    if (m_hooks.answered)
        m_hooks.answered();
}

// The stack counts on the call that rings when it is told of the reply to what the PRACK has offered.
bool SipCall::isAnswerKept() const
{
    return m_bEarlyWaits || (m_offered && m_eOfferedBy == BY_PRACK);
}

// Where the phone has offered, the caller's answer comes with it: none later would be one (RFC 3262, 5).
// Where his own offer is answered he may make another one by it. The stack would take whatever it brings.
void SipCall::onEarlyAcknowledged(const tagStackEvent& event)
{
    if (event.nStatus >= 200 || hasEnded())
        return;
    auto request = std::make_unique<SavedRequest>(m_stack.pNua);
    const tagSdpBody body = callBody::read(event.pMessage);
    const bool waited = std::exchange(m_bEarlyWaits, false);
    m_bAgreedEarly = m_bAgreedEarly || waited;
    const bool isAnswer = waited && m_bWantsEarly;
    const bool isOffer = !isAnswer && m_bAgreedEarly && (body.bUnknown || !body.sdp.empty());
    if (!isOffer)
        respondTo(*request, 200);
    else if (body.bUnknown)
        respondTo(*request, refusalText::kUnknownBody);
    else if (callBody::isTooLarge(body.sdp))
        respondTo(*request, 488);
    else if (m_offered)
        respondTo(*request, 500);
    else
        takeOffer(std::move(request), body.sdp, BY_PRACK);
    if (isAnswer)
        onEarlyAnswer(body.sdp);
    if (m_answer && !isAnswerKept())
        sendAnswer();
}

void SipCall::onEarlyAnswer(const std::string& sdp)
{
    if (sdp.empty() || callBody::isTooLarge(sdp)) {
        m_answer.reset();
        respond(488, "", refusalText::kMediaDoNotFit);
        end(SIP_REFUSED, SIP_488_NOT_ACCEPTABLE);
        releaseSoon();
        return;
    }
    m_remoteSdp = sdp;
    auto early = sipWire::make<tagSipMedia>(SIP_EARLY, m_nId);
    sipWire::setText(early.szSdp, sdp);
    m_stack.pPhone->tell(early);
}
