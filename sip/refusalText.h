#pragma once
// What a refusal says beside its number.
#include <cstdint>
#include <string>

namespace refusalText {

constexpr uint32_t kUnknownBody = 415;
constexpr uint32_t kMediaDoNotFit = 399; // a warning that does not say why (RFC 3261, 20.43)

const char* phraseOf(uint32_t status);
// The value of a Reason header (RFC 3326).
std::string reasonOf(uint32_t status);
// Header lines, without the last one's end; warning: 0 for none.
std::string linesOf(uint32_t status, uint32_t warning);

} // namespace refusalText
