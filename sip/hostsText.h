#pragma once
// The machine's own list of names: a line has an address and the names that it has.
#include <string>
#include <vector>

namespace hostsText {

enum : int { MAX_ADDRESSES = 8 };

// Numeric ones, in their order; empty where the name is not there.
std::vector<std::string> addressesOf(const std::string& text, const std::string& name);

// What there is room for, without a line that would be cut.
std::string wholeLines(std::string text, size_t most);

} // namespace hostsText
