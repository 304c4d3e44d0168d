#pragma once
// The stack's sockets, for what it offers no way to: found among the files that the process has open.
#include <cstdint>
#include <string>

namespace ownSockets {

// A sign of life from the UDP port of the stack, which keeps open what lies between. Numeric host.
void keepOpen(uint32_t ownPort, const std::string& host, uint32_t port);
// Ends the connections to a server that says nothing: what is sent next makes a new one. host: numeric, or
// empty for any at that port.
void closeConnections(const std::string& host, uint32_t port);

} // namespace ownSockets
