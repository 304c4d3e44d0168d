#pragma once
// Whether what a packet of pictures carries is what its first bytes say. The toolkit's parts, which take it
// apart, read and write beyond one that ends too early. Any thread.
#include "players/pictureCodec.h"
#include <cstddef>

namespace pictureContent {

// H.264 (RFC 6184): a unit, several together, or a part of one; nothing else is agreed on. VP8 (RFC 7741).
bool isWhole(PICTURE_CODEC codec, const unsigned char* data, size_t size);

} // namespace pictureContent
