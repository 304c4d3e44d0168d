// What the other side of a call offers of media, and what the phone says to that.
#include "sip/phoneLink.h"
#include "sip/refusalText.h"
#include "sip/sipCall.h"
#include <utility>

// Its media run by that offer: what was agreed on before is offered to it once more, and nobody else hears
// of it.
void SipCall::takeBack(bool hasTaken)
{
    const bool wasBefore = m_eTakenBack == AS_BEFORE;
    m_phone.stop();
    m_eTakenBack = NOT_TAKEN_BACK;
    if (wasBefore)
        talk(""); // the phone waits for what its answer came to
    if (wasBefore || !hasTaken)
        return;
    offerToPhone();
}

void SipCall::offerToPhone()
{
    m_eTakenBack = AS_BEFORE;
    m_phone.start(m_stack.setup.nOfferMs, [this] { m_eTakenBack = NOT_TAKEN_BACK; });
    auto offer = sipWire::make<tagSipMedia>(SIP_OFFER, m_nId);
    sipWire::setText(offer.szSdp, m_remoteSdp);
    m_stack.pPhone->tell(offer);
}

// The stack itself refuses a second INVITE, and one that meets an INVITE from here.
void SipCall::onOffer(const tagStackEvent& event)
{
    const tagSdpBody body = callBody::read(event.pMessage);
    const std::string& sdp = body.sdp;
    const bool isUpdate = event.eEvent == nua_i_update;
    const bool isFirstOfferHere = !m_bIncoming || (m_bWantsEarly && m_bEarlyWaits);
    auto request = std::make_unique<SavedRequest>(m_stack.pNua);
    uint32_t status = 0;
    if (body.bUnknown)
        status = refusalText::kUnknownBody;
    else if (isUpdate && sdp.empty())
        status = 200;
    else if (hasEnded() || callBody::isTooLarge(sdp))
        status = 488;
    else if (m_eStep == STEP_RINGING && !m_bAgreedEarly)
        status = isFirstOfferHere ? 491 : 500; // it is not answered yet
    else if (m_offered || m_eTakenBack != NOT_TAKEN_BACK)
        status = 500;
    else if (isUpdate && m_offer.isUnderWay())
        status = 491;
    if (status) {
        respondTo(*request, status);
        if (status < 300)
            m_session.agree(*event.pMessage);
        return;
    }
    takeOffer(std::move(request), sdp, isUpdate ? BY_UPDATE : BY_INVITE);
}

// The phone is asked.
void SipCall::takeOffer(std::unique_ptr<SavedRequest> request, const std::string& sdp, OFFERED_BY by)
{
    m_offered = std::move(request);
    m_eOfferedBy = by;
    m_agreedSdp = m_remoteSdp;
    if (!sdp.empty())
        m_remoteSdp = sdp;
    m_phone.start(m_stack.setup.nOfferMs, [this] { respondToOffer(500); });
    auto offer = sipWire::make<tagSipMedia>(SIP_OFFER, m_nId);
    sipWire::setText(offer.szSdp, sdp);
    m_stack.pPhone->tell(offer);
}

void SipCall::respondToOffer(uint32_t status, const std::string& sdp)
{
    m_phone.stop();
    respondTo(*m_offered, status, sdp);
    if (status < 300) {
        m_ownSdp = sdp;
        if (m_eOfferedBy != BY_PRACK) // which says nothing of that
            m_session.agree(m_offered->sip());
        if (m_eStep == STEP_RINGING && !m_bIncoming)
            m_early.take(sipDialog::nameOf(m_offered->sip()).localTag, m_remoteSdp);
    } else {
        m_remoteSdp = m_agreedSdp;
    }
    m_offered.reset();
    if (m_answer && !isAnswerKept())
        sendAnswer();
}

void SipCall::setMedia(const std::string& sdp)
{
    if (m_eStep != STEP_TALKING && !(m_eStep == STEP_RINGING && m_offered))
        return;
    if (m_eTakenBack != NOT_TAKEN_BACK) {
        takeBack(!sdp.empty());
        return;
    }
    if (!m_offered) {
        if (!sdp.empty())
            m_offer.want(sdp);
        return;
    }
    m_bMovedEarly = m_bMovedEarly || (m_eStep == STEP_RINGING && m_bIncoming && !sdp.empty());
    respondToOffer(sdp.empty() ? 488 : 200, sdp);
    if (m_eOfferedBy == BY_UPDATE && !sdp.empty() && m_eStep == STEP_TALKING)
        talk("");
}

// The other side may try again.
void SipCall::delayMedia()
{
    if (m_eStep == STEP_TALKING && m_eTakenBack != NOT_TAKEN_BACK)
        takeBack(false);
    else if (!hasEnded() && m_offered)
        respondToOffer(500);
}
