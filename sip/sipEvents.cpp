#include "sip/sipEvents.h"
#include "sip/floodGuard.h"
#include "sip/phoneLink.h"
#include "sip/registration.h"

namespace {

constexpr uint32_t kPaceMs = 100;
constexpr size_t kWaitingBytes = 64 << 10; // that the phone has not read yet

tagRinging ringingOf(const ExtensionState& state, const std::string& number)
{
    tagRinging found;
    if (state.lamp() == SIP_LAMP_UNKNOWN)
        return found;
    const tagDialog* dialog = state.ringing();
    found.eRings = dialog ? tagRinging::RINGS : tagRinging::NOTHING_RINGS;
    if (dialog && dialog->identity.find("@anonymous.invalid") == std::string::npos) {
        found.identity = dialog->identity;
        found.name = dialog->name;
    }
    if (!dialog || dialog->callId.empty() || dialog->localTag.empty() || dialog->remoteTag.empty())
        return found;
    // It is the other end of the call that is asked: what is local there is remote at the extension.
    found.target = dialog->target.empty() ? number : dialog->target;
    found.replaces =
        dialog->callId + ";to-tag=" + dialog->remoteTag + ";from-tag=" + dialog->localTag + ";early-only";
    return found;
}

} // namespace

SipEvents::SipEvents(const tagSipStack& stack, LineOf lineOf)
    : m_stack(stack), m_lineOf(std::move(lineOf)), m_pace(stack.pRoot)
{
}

void SipEvents::take(const sipWire::Reader& record)
{
    const uint32_t id = record.head().nId;
    switch (record.head().eKind) {
    case SIP_WATCH:
        watch(record.as<tagSipWatch>());
        break;
    case SIP_UNWATCH:
        m_watches.erase(id);
        break;
    case SIP_WATCH_LIST:
        watchList(id, record.as<tagSipTarget>().szTarget);
        break;
    default:
        break;
    }
}

void SipEvents::watch(const tagSipWatch& watch)
{
    m_watches.erase(watch.head.nId);
    if (m_watches.size() >= SIP_WATCHES_MAX)
        return;
    auto& made = m_watches[watch.head.nId] =
        std::make_unique<ExtensionWatch>(m_stack, watch, [this] { changed(); });
    const Registration* line = m_lineOf(watch.nLine);
    if (line && line->isRegistered())
        made->start(*line);
}

void SipEvents::watchList(uint32_t line, const std::string& address)
{
    std::unique_ptr<ListWatch>& list = m_lists[line];
    if (list) { // what was on it is on it no more
        list->stop();
        list->tell();
        list.reset();
    }
    if (address.empty())
        return;
    list = std::make_unique<ListWatch>(m_stack, line, address, [this] { changed(); });
    const Registration* server = m_lineOf(line);
    if (server && server->isRegistered())
        list->start(*server);
}

template <typename Do>
void SipEvents::forEach(uint32_t line, Do act)
{
    if (m_messages[line])
        act(*m_messages[line]);
    if (m_lists[line])
        act(*m_lists[line]);
    for (auto& watch : m_watches) {
        if (watch.second->line() == line)
            act(*watch.second);
    }
}

void SipEvents::lineChanged(uint32_t line, SIP_LINE_STATE state)
{
    const Registration* server = state == SIP_LINE_REGISTERED ? m_lineOf(line) : nullptr;
    if (server && !m_messages[line])
        m_messages[line] = std::make_unique<WaitingMessages>(m_stack, line, [this] { changed(); });
    forEach(line, [&](auto& each) {
        if (server)
            each.start(*server);
        else
            each.stop();
    });
}

void SipEvents::accountChanges(uint32_t line)
{
    forEach(line, [](auto& each) {
        each.stop();
        each.forgive();
    });
}

int SipEvents::takeNote(uint32_t line, const sip_t& message)
{
    const char* event = message.sip_event ? message.sip_event->o_type : nullptr;
    if (!event || std::string(event) != "message-summary" || !m_messages[line])
        return 489;
    if (!floodGuard::isServer(line, floodGuard::sourceOf(nua_current_request(m_stack.pNua))))
        return 403;
    return m_messages[line]->take(message) ? 200 : 400;
}

tagRinging SipEvents::ringing(uint32_t line, const std::string& number) const
{
    for (const auto& watch : m_watches) {
        if (watch.second->line() == line && watch.second->number() == number)
            return ringingOf(watch.second->state(), number);
    }
    if (m_lists[line]) {
        for (const tagListMember& member : m_lists[line]->members()) {
            if (member.number == number)
                return ringingOf(member.state, number);
        }
    }
    return {};
}

void SipEvents::end()
{
    m_bEnded = true;
    for (uint32_t line = 0; line < SIP_LINE_COUNT; ++line)
        forEach(line, [](auto& each) { each.stop(); });
}

void SipEvents::changed()
{
    m_bChanged = true;
    if (!m_pace.isRunning())
        tell();
}

// A server that tells of ever new states does not fill the link to a phone that is slow.
void SipEvents::tell()
{
    if (m_bEnded)
        return;
    m_pace.start(kPaceMs, [this] {
        if (m_bChanged)
            tell();
    });
    if (m_stack.pPhone->waiting() > kWaitingBytes)
        return;
    m_bChanged = false;
    for (uint32_t line = 0; line < SIP_LINE_COUNT; ++line)
        forEach(line, [](auto& each) { each.tell(); });
}
