#pragma once
// Why there is no TLS with a server: the stack closes the connection, and says nothing of it.
#include <cstdint>
#include <string>

namespace tlsCheck {

// Why the authorities in the folder of certificates cannot be used, for a person; empty: they can.
std::string problemOf(const std::string& folder);
// How many problems with servers there were.
uint64_t count();
// The last one with a server of that name or numeric address, beyond the first so many, for a person; empty:
// none. port 0: any.
std::string problemWith(const std::string& host, uint32_t port, uint64_t beyond);

} // namespace tlsCheck
