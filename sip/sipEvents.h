#pragma once
// What the servers of the lines tell of: messages that wait, extensions, lists of extensions. The phone hears
// of changes, and no more often than it can take.
#include "sip/extensionWatch.h"
#include "sip/listWatch.h"
#include "sip/sipWire.h"
#include "sip/waitingMessages.h"
#include <array>
#include <map>
#include <memory>

// Of a call that rings at another extension.
struct tagRinging
{
    enum RINGS { NOT_KNOWN, NOTHING_RINGS, RINGS } eRings = NOT_KNOWN;
    std::string target;   // who is to be asked for it
    std::string replaces; // what names it (RFC 3891); empty: the server does not tell
    std::string identity; // who calls there; empty: not told
    std::string name;
};

class SipEvents
{
public:
    // lineOf: null where a line has no account.
    using LineOf = std::function<const Registration*(uint32_t line)>;
    SipEvents(const tagSipStack& stack, LineOf lineOf);

    // SIP_WATCH to SIP_WATCH_LIST.
    void take(const sipWire::Reader& record);
    void lineChanged(uint32_t line, SIP_LINE_STATE state);
    // It is about to be another.
    void accountChanges(uint32_t line);
    // A note for a line that nobody here has subscribed to; it counts from the line's own server. The status
    // of the reply.
    int takeNote(uint32_t line, const sip_t& message);
    tagRinging ringing(uint32_t line, const std::string& number) const;
    // Nothing is asked or told any more.
    void end();

private:
    void watch(const tagSipWatch& watch);
    void watchList(uint32_t line, const std::string& address);
    template <typename Do>
    void forEach(uint32_t line, Do act);
    void changed();
    void tell();

    const tagSipStack& m_stack;
    const LineOf m_lineOf;
    std::array<std::unique_ptr<WaitingMessages>, SIP_LINE_COUNT> m_messages;
    std::array<std::unique_ptr<ListWatch>, SIP_LINE_COUNT> m_lists;
    std::map<uint32_t, std::unique_ptr<ExtensionWatch>> m_watches;
    SipTimer m_pace;
    bool m_bChanged = false;
    bool m_bEnded = false;
};
