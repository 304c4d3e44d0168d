#pragma once
// The way of the INVITE that begins a call. What belongs to the call from there on goes where the other side
// has said (RFC 3261, 12.2.1.1), which the stack would still send this way. A call that comes in has the way
// too that one from here would take: it is what is left where the other side cannot be reached as it says.
#include <string>

namespace openingHop {

// An address as "NUTAG_PROXY" has it that serves no request within a call. name: how the server is called
// elsewhere.
std::string of(const std::string& hop, const std::string& name);

} // namespace openingHop
