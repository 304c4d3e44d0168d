#pragma once
// How many messages wait, as a server writes it (RFC 3842).
#include <cstddef>
#include <cstdint>

struct tagMessageCounts
{
    uint32_t nNew = 0; // 0 to SIP_MESSAGES_MAX
    uint32_t nOld = 0;
    bool operator==(const tagMessageCounts& other) const { return nNew == other.nNew && nOld == other.nOld; }
};

namespace messageSummary {

enum : size_t { BYTES_MAX = 4096 };

// Those of voice messages; where they are not counted, waiting ones are one. False for what is damaged.
bool read(const char* bytes, size_t size, tagMessageCounts& counts);

} // namespace messageSummary
