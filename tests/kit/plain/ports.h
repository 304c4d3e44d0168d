#pragma once
// Ports for the programs that a test starts.
#include <cstdint>

namespace kit {

// Free on the loopback interface for datagrams and connections alike, and so is the next one, which some
// programs take along. No other test of this machine is given it while this one lives.
uint32_t freePort();

} // namespace kit
