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

// Where the phone has offered, the caller's answer comes with it: none later would be one (RFC 3262, 5).
void SipCall::onEarlyAcknowledged(const tagStackEvent& event)
{
    if (!m_bEarlyWaits || event.nStatus >= 300 || hasEnded())
        return;
    const std::string sdp = m_bWantsEarly ? callBody::read(event.pMessage).sdp : "";
    if (m_bWantsEarly && (sdp.empty() || sdp.size() >= SIP_SDP_SIZE)) {
        respond(488, "", refusalText::kMediaDoNotFit);
        end(SIP_REFUSED, SIP_488_NOT_ACCEPTABLE);
        releaseSoon();
        return;
    }
    m_bEarlyWaits = false;
    m_bAgreedEarly = true;
    if (m_bWantsEarly) {
        m_remoteSdp = sdp;
        auto early = sipWire::make<tagSipMedia>(SIP_EARLY, m_nId);
        sipWire::setText(early.szSdp, sdp);
        m_stack.pPhone->tell(early);
    }
    if (m_answer)
        sendAnswer();
}
