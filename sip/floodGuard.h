#pragma once
// Every call that comes in, and every other request, costs memory for as long as the standard has it
// remembered, half a minute where nobody acknowledges the answer. Whoever sends more than a phone has use for
// is not heard, before anything is kept of it and without an answer. The servers of the lines may send more,
// and much more of what is acknowledged: what strangers send takes nothing away from them.
#include <cstdint>
#include <sofia-sip/msg_types.h>
#include <string>
#include <vector>

namespace floodGuard {

// Before the stack is made.
bool install();
// Numeric addresses of the servers of a line, in place of those before.
void setServers(uint32_t line, const std::vector<std::string>& hosts);
bool isServer(uint32_t line, const std::string& host);
// The numeric address that a message has come from; empty when there is none.
std::string sourceOf(msg_t* message);

} // namespace floodGuard
