#pragma once
// What comes in is looked at here before anything is made of it.
//
// Every call that comes in, and every other request, costs memory for as long as the standard has it
// remembered, half a minute where nobody acknowledges the answer. Whoever sends more than a phone has use for
// is not heard, before anything is kept of it and without an answer. The servers of the lines may send more,
// and much more of what is acknowledged: what strangers send takes nothing away from them.
// Nobody but those servers is told what proves the password: challenges of others are not seen.
#include "sip/sipStack.h"
#include <cstdint>
#include <sofia-sip/msg_types.h>
#include <string>
#include <vector>

namespace floodGuard {

// A call or a subscription of a line: its requests are heard.
class Dialog
{
public:
    Dialog(std::string callId, uint32_t line);
    ~Dialog();
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;

    const std::string& callId() const { return m_callId; }
    uint32_t line() const { return m_nLine; }
    // What begins it is on its way through the server: who replies to it speaks for the server.
    void setAsking(bool isAsking) { m_bAsking = isAsking; }
    bool isAsking() const { return m_bAsking; }

private:
    const std::string m_callId;
    const uint32_t m_nLine;
    bool m_bAsking = false;
};

// Before the stack is made.
bool install();
// Numeric addresses of the servers of a line, in place of those before.
void setServers(uint32_t line, const std::vector<std::string>& hosts);
bool isServer(uint32_t line, const std::string& host);
// Of any line.
bool isServer(const std::string& host);
// The numeric address that a message has come from; empty when there is none.
std::string sourceOf(msg_t* message);
// The port there; 0 when there is none.
uint32_t portOf(msg_t* message);
// Of the reply that is told now; what the stack itself makes up has no message, or one from nowhere.
bool isFromNetwork(const tagSipStack& stack, const tagStackEvent& event);

} // namespace floodGuard
