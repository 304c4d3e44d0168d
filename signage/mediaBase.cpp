#include "signage/mediaBase.h"
#include "support/text/chCharacter.h"
#include <algorithm>
#include <climits>
#include <cstdlib>

namespace {

constexpr long kLongest = INT_MAX / 1000;

bool isHexadecimal(const char* text)
{
    return text[0] == '0' && chUpper(text[1]) == 'X';
}

} // namespace

mediaBase::~mediaBase() = default;

void mediaBase::SetDuration(const char* seconds)
{
    const char* text = seconds ? seconds : "";
    const long value = strtol(text, nullptr, isHexadecimal(text) ? 16 : 10);
    m_nDuration = int(std::clamp(value, -kLongest, kLongest) * 1000);
}
