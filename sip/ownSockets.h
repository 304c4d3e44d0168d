#pragma once
// The stack's sockets, for what it offers no way to: found among the files that the process has open.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

// A numeric host; empty: there is none.
struct tagSocketEnd
{
    std::string host;
    uint32_t nPort = 0;
};

namespace ownSockets {

// Whom a connection is with.
tagSocketEnd otherEnd(int socket);

// The UDP port at which the stack listens, whoever chose it; 0: there is none.
uint32_t ownPort();
// A datagram from the UDP port of the stack. Numeric host.
void send(uint32_t ownPort, const std::string& host, uint32_t port, const void* bytes, size_t size);
// Tells where nobody takes what was sent to, as far as the network says so. Null: nobody is told any more.
void onUnreachable(std::function<void(const tagSocketEnd& end)> tell);
// Ends the connections to a server that says nothing: what is sent next makes a new one. host: numeric, or
// empty for any at that port.
void closeConnections(const std::string& host, uint32_t port);

} // namespace ownSockets
