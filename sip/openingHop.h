#pragma once
// The way of the INVITE that begins a call. What belongs to the call from there on goes where the other side
// has said (RFC 3261, 12.2.1.1), which the stack would still send this way.
#include <string>

namespace openingHop {

// An address as "NUTAG_PROXY" has it that serves no request within a call.
std::string of(const std::string& hop);

} // namespace openingHop
