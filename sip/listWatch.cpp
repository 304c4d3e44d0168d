#include "sip/listWatch.h"
#include "sip/eventBody.h"
#include "sip/phoneLink.h"
#include <algorithm>

namespace {

constexpr tagEventPackage kPackage = {
    "dialog", "application/dialog-info+xml, application/rlmi+xml, multipart/related", "eventlist", 600};

} // namespace

ListWatch::ListWatch(const tagSipStack& stack, uint32_t line, std::string address,
                     std::function<void()> changed)
    : m_stack(stack), m_nLine(line), m_address(std::move(address)), m_changed(std::move(changed)),
      m_subscription(stack, kPackage, *this)
{
}

void ListWatch::stop()
{
    m_subscription.stop();
    m_book.forget();
    m_changed();
}

bool ListWatch::onNote(const sip_t& message)
{
    const bool isWhole =
        m_book.take(eventBody::typeOf(message), eventBody::bytes(message), eventBody::size(message));
    m_changed();
    return isWhole;
}

void ListWatch::onLost()
{
    m_book.lose();
    m_changed();
}

bool ListWatch::isToldWith(const std::vector<tagListMember>& members) const
{
    return std::equal(members.begin(), members.end(), m_told.begin(), m_told.end(),
                      [](const tagListMember& member, const tagTold& told) {
                          return member.number == told.number && member.name == told.name;
                      });
}

void ListWatch::tell()
{
    const std::vector<tagListMember>& members = m_book.members();
    const bool isAnother = !isToldWith(members);
    if (isAnother) {
        auto record = sipWire::make<tagSipList>(SIP_LIST, m_nLine);
        record.nMembers = uint32_t(members.size());
        m_told.clear();
        for (const tagListMember& member : members)
            m_told.push_back({member.number, member.name, SIP_LAMP_UNKNOWN});
        m_stack.pPhone->tell(record);
    }
    for (size_t i = 0; i < m_told.size(); ++i) {
        if (isAnother || m_told[i].eLamp != members[i].state.lamp())
            tellMember(i);
    }
}

void ListWatch::tellMember(size_t index)
{
    tagTold& told = m_told[index];
    told.eLamp = m_book.members()[index].state.lamp();
    auto record = sipWire::make<tagSipMember>(SIP_MEMBER, m_nLine);
    record.nIndex = uint32_t(index);
    record.eLamp = told.eLamp;
    sipWire::setText(record.szNumber, told.number);
    sipWire::setText(record.szName, told.name);
    m_stack.pPhone->tell(record);
}
