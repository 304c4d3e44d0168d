#pragma once
// Names that the machine itself knows ("/etc/hosts"), which go before what name servers say, as everywhere
// else on it. The stack, which knows name servers alone, is told them when it looks for an address.
#include <string>
#include <vector>

struct sres_cache; // of the stack

namespace knownHosts {

// Numeric ones; empty where the name is not among them.
std::vector<std::string> addressesOf(const std::string& name);
// That every resolver of this program keeps what it knows in; null where there is no memory for it.
sres_cache* cache();

} // namespace knownHosts
