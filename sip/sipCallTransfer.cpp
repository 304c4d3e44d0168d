// Calls that are put through, by either side, and calls that take the place of another one.
#include "sip/phoneLink.h"
#include "sip/sipAddress.h"
#include "sip/sipCall.h"
#include "sip/sipCaller.h"
#include <sofia-sip/sip_tag.h>
#include <strings.h>
#include <utility>

namespace {

constexpr uint32_t kNoOutcome = 487;
constexpr uint32_t kNothingHeard = 408; // with nobody who was called
constexpr const char* kElsewhere = "SIP;cause=200;text=\"Call completed elsewhere\"";

} // namespace

void SipCall::tellProgress(uint32_t status, const std::string& phrase)
{
    // It may be replaced while it runs.
    const auto tell = m_hooks.progress;
    if (status >= 200)
        m_hooks.progress = nullptr;
    if (tell)
        tell(status, phrase);
}

void SipCall::transfer(const std::string& target)
{
    if (m_eStep != STEP_TALKING)
        return;
    m_hooks.connected = nullptr;
    refer(sipAddress::inBrackets(sipAddress::target(target, m_server)));
}

void SipCall::connectTo(const SipCall& other, std::function<void()> connected)
{
    const std::string address =
        other.isTalking() ? sipDialog::addressReplacing(other.m_remote, other.m_pHandle) : "";
    if (m_eStep != STEP_TALKING || address.empty()) {
        onTransfer(481, false);
        return;
    }
    m_hooks.connected = std::move(connected);
    refer(sipAddress::inBrackets(address));
}

void SipCall::refer(const std::string& address)
{
    m_bReferred = false;
    m_limit.start(m_stack.setup.nRingSeconds * 1000, [this] { onTransfer(408, m_bReferred); });
    m_offer.requestGoes();
    nua_refer(m_pHandle, SIPTAG_REFER_TO_STR(address.c_str()), SIPTAG_REFERRED_BY_STR(m_own.c_str()),
              TAG_END());
}

void SipCall::onReferred(const tagStackEvent& event)
{
    auto referral = std::make_unique<Referral>(m_stack, event);
    if (referral->problem()) {
        referral->refuse(referral->problem());
        return;
    }
    if (m_eStep != STEP_TALKING || (m_referral && !m_referral->isOver()))
        return;
    m_referral = std::move(referral);
    m_asked.start(m_stack.setup.nOfferMs, [this] { m_referral->refuse(603); });
    auto referred = sipWire::make<tagSipReferred>(SIP_REFERRED, m_nId);
    referred.bReplaces = !m_referral->replaces().empty();
    sipWire::setText(referred.szTarget, m_referral->target());
    m_stack.pPhone->tell(referred);
}

const Referral* SipCall::acceptReferral()
{
    if (m_referral && m_referral->isTelling() && std::exchange(m_bMoved, false)) {
        m_asked.stop();
        return m_referral.get();
    }
    if (!m_referral || !m_referral->isWaiting())
        return nullptr;
    m_asked.stop();
    m_offer.requestGoes(); // which tells that it begins
    m_referral->accept();
    return m_referral.get();
}

void SipCall::tellReferral(uint32_t status, const std::string& phrase)
{
    if (!m_referral || hasEnded() || !m_referral->isTelling())
        return;
    m_bMoved = status >= 300 && status < 400;
    if (m_bMoved)
        m_asked.start(m_stack.setup.nOfferMs, [this, status, phrase] { sendReferral(status, phrase); });
    else
        sendReferral(status, phrase);
}

void SipCall::sendReferral(uint32_t status, const std::string& phrase)
{
    m_bMoved = false;
    m_offer.requestGoes();
    m_referral->tell(status, phrase);
}

bool SipCall::isMeantBy(const sip_replaces_t& replaces, uint32_t line) const
{
    return m_nLine == line &&
           sipDialog::isNamedBy(m_bIncoming && !hasEnded() ? sipDialog::nameOf(m_pHandle) : m_name, replaces);
}

bool SipCall::isTrusted(const std::string& source) const
{
    return floodGuard::isServer(m_nLine, source) || (!m_source.empty() && source == m_source);
}

uint32_t SipCall::refusalToReplace(bool onlyEarly) const
{
    if (hasEnded())
        return 603;
    if (m_eStep == STEP_RINGING && m_bIncoming)
        return 481;
    return m_eStep == STEP_TALKING && onlyEarly ? 486 : 0;
}

void SipCall::beReplaced()
{
    if (hasEnded())
        return;
    if (m_eStep == STEP_TALKING)
        sendBye();
    else
        nua_cancel(m_pHandle, SIPTAG_REASON_STR(kElsewhere), TAG_END()); // it is no missed call there
    end(SIP_REPLACED, 0, "Another call has taken its place");
    releaseSoon();
}

// A server that is gone does not end what two say to each other without it.
void SipCall::onReferReply(const tagStackEvent& event)
{
    const uint32_t status = uint32_t(event.nStatus);
    m_bReferred = m_bReferred || (status >= 200 && status < 300);
    if (isGone(event))
        giveUp(event);
    else if (status >= 300)
        onTransfer(floodGuard::isFromNetwork(m_stack, event) ? status : kNothingHeard, false);
}

void SipCall::onTransferNote(const tagStackEvent& event)
{
    const uint32_t status = sipCaller::statusOfTransfer(event.pMessage);
    const sip_subscription_state_t* state = event.pMessage ? event.pMessage->sip_subscription_state : nullptr;
    const bool isLast = state && state->ss_substate && strcasecmp(state->ss_substate, "terminated") == 0;
    if (status >= 200)
        onTransfer(status, true);
    else if (isLast && m_bReferred)
        onTransfer(kNoOutcome, true);
}

void SipCall::onTransfer(uint32_t status, bool isTaken)
{
    m_limit.stop();
    m_bReferred = false;
    auto record = sipWire::make<tagSipStatus>(SIP_TRANSFERRED, m_nId);
    record.nStatus = status;
    record.bTaken = isTaken;
    m_stack.pPhone->tell(record);
    const auto connected = std::exchange(m_hooks.connected, nullptr);
    if (connected && status < 300)
        connected();
}
