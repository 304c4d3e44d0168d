#pragma once
// How large the pictures are that coded ones announce, read before a decoder takes memory for them. Any
// thread.
#include "players/pictureCodec.h"
#include <cstddef>

namespace codedSize {

struct tagBounds
{
    int nWidth;
    int nHeight;
};

// One picture: H.264 with start codes (annex B) of any number of units, or a VP8 frame. False when something
// in it announces pictures that are larger, have more than eight bits or more than half the colours, or
// cannot be read.
bool fits(PICTURE_CODEC codec, const unsigned char* data, size_t size, const tagBounds& bounds);

} // namespace codedSize
