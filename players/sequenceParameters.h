#pragma once
// What an H.264 stream's pictures are like, read of a set of a sequence (ITU-T H.264, 7.3.2.1.1) before any
// decoder sees it. Any thread.
#include <cstddef>
#include <optional>

namespace sequenceParameters {

enum : int {
    MAX_BYTES = 1024, // of a set; more is none
    MAX_KEPT = 16     // pictures that others are made of
};

struct tagPictures
{
    int nWidth = 0; // as coded, and not as shown
    int nHeight = 0;
    int nKept = 0;
};

// unit: without its first byte, the kind. Nothing for what cannot be read, and for pictures that no call is
// shown: more than eight bits, other than half the colours, fields instead of whole pictures.
std::optional<tagPictures> read(const unsigned char* unit, size_t size);

} // namespace sequenceParameters
