#include "sip/waitingMessages.h"
#include "sip/bodyParts.h"
#include "sip/eventBody.h"
#include "sip/phoneLink.h"
#include "sip/registration.h"

namespace {

constexpr const char* kType = "application/simple-message-summary";
constexpr tagEventPackage kPackage = {"message-summary", kType, nullptr, 3600};

} // namespace

WaitingMessages::WaitingMessages(const tagSipStack& stack, uint32_t line, std::function<void()> changed)
    : m_stack(stack), m_nLine(line), m_changed(std::move(changed)), m_subscription(stack, kPackage, *this)
{
}

void WaitingMessages::start(const Registration& line)
{
    m_subscription.start(line, line.address());
}

void WaitingMessages::stop()
{
    m_subscription.stop();
    m_bKnown = false;
    m_changed();
}

bool WaitingMessages::take(const sip_t& message)
{
    if (bodyParts::bareType(eventBody::typeOf(message)) != kType ||
        !messageSummary::read(eventBody::bytes(message), eventBody::size(message), m_counts))
        return false;
    m_bKnown = true;
    m_changed();
    return true;
}

bool WaitingMessages::onNote(const sip_t& message)
{
    const bool isTaken = take(message);
    m_bAskedFor = m_bAskedFor || isTaken;
    return isTaken;
}

void WaitingMessages::onLost()
{
    if (m_bAskedFor)
        m_bKnown = false;
    m_bAskedFor = false;
    m_changed();
}

void WaitingMessages::tell()
{
    if (m_bKnown == m_bToldKnown && (!m_bKnown || m_counts == m_told))
        return;
    m_bToldKnown = m_bKnown;
    m_told = m_counts;
    auto record = sipWire::make<tagSipMessages>(SIP_MESSAGES, m_nLine);
    record.bKnown = m_bKnown;
    record.nNew = m_bKnown ? m_counts.nNew : 0;
    record.nOld = m_bKnown ? m_counts.nOld : 0;
    m_stack.pPhone->tell(record);
}
