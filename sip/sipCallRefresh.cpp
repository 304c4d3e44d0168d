// How a call says, from time to time, that it is still there.
#include "sip/sipCall.h"

// An offer of either side does the same.
void SipCall::refresh()
{
    if (m_eStep != STEP_TALKING || m_offered || !m_offer.isIdle())
        return;
    if (!m_session.peerKnowsUpdate()) {
        refreshByInvite();
        return;
    }
    m_offer.requestGoes();
    nua_update(m_pHandle, NUTAG_SESSION_TIMER(m_session.seconds()), TAG_END());
}

void SipCall::refreshByInvite()
{
    if (!m_offered && m_offer.isIdle() && !m_ownSdp.empty())
        m_offer.want(m_ownSdp);
}

void SipCall::onUpdateReply(const tagStackEvent& event)
{
    if (event.nStatus < 200 || m_eStep != STEP_TALKING)
        return;
    m_answers->reset();
    if (event.nStatus < 300 && event.pMessage)
        m_session.agree(*event.pMessage);
    else if (event.nStatus != 408 && event.nStatus != 481)
        refreshByInvite();
}
