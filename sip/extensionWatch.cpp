#include "sip/extensionWatch.h"
#include "sip/bodyParts.h"
#include "sip/eventBody.h"
#include "sip/phoneLink.h"

namespace {

constexpr const char* kType = "application/dialog-info+xml";
constexpr tagEventPackage kPackage = {"dialog", kType, nullptr, 600};

} // namespace

ExtensionWatch::ExtensionWatch(const tagSipStack& stack, const tagSipWatch& watch,
                               std::function<void()> changed)
    : m_stack(stack), m_watch(watch), m_changed(std::move(changed)), m_subscription(stack, kPackage, *this)
{
}

void ExtensionWatch::stop()
{
    m_subscription.stop();
    m_state.forget();
    m_changed();
}

bool ExtensionWatch::onNote(const sip_t& message)
{
    bool isWhole = false;
    if (bodyParts::bareType(eventBody::typeOf(message)) == kType)
        isWhole = m_state.take(eventBody::bytes(message), eventBody::size(message));
    else
        m_state.forget();
    m_changed();
    return isWhole;
}

void ExtensionWatch::onEmptyNote()
{
    m_state.takeNothing();
    m_changed();
}

void ExtensionWatch::onLost()
{
    m_state.forget();
    m_changed();
}

void ExtensionWatch::tell()
{
    const SIP_LAMP_STATE lamp = m_state.lamp();
    if (lamp == m_eTold)
        return;
    m_eTold = lamp;
    auto record = sipWire::make<tagSipLamp>(SIP_LAMP, m_watch.head.nId);
    record.eLamp = lamp;
    m_stack.pPhone->tell(record);
}
