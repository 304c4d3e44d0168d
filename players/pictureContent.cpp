#include "players/pictureContent.h"

namespace pictureContent {
namespace {

enum : int { LAST_UNIT = 23, TOGETHER = 24, PART = 28 };               // kinds of H.264's packets
enum : int { FIRST_PART = 0x80, LAST_PART = 0x40 };                    // of a unit
enum : int { MORE = 0x80, NUMBER = 0x80, LAYER = 0x40, TIMES = 0x30 }; // marks before a VP8 picture

bool isUnit(int kind)
{
    return kind >= 1 && kind <= LAST_UNIT;
}

bool areTogether(const unsigned char* data, size_t size)
{
    size_t at = 1;
    while (at + 2 < size) {
        const size_t length = size_t(data[at]) << 8 | data[at + 1];
        at += 2;
        if (length == 0 || length > size - at || !isUnit(data[at] & 0x1f))
            return false;
        at += length;
    }
    return at == size && size > 1;
}

bool isH264(const unsigned char* data, size_t size)
{
    const int kind = size > 1 ? data[0] & 0x1f : 0;
    if (kind == TOGETHER)
        return areTogether(data, size);
    if (kind != PART)
        return isUnit(kind);
    const bool isWholeUnit = (data[1] & FIRST_PART) && (data[1] & LAST_PART);
    return size > 2 && isUnit(data[1] & 0x1f) && !isWholeUnit;
}

bool isVp8(const unsigned char* data, size_t size)
{
    size_t marks = 1;
    if (size > 1 && (data[0] & MORE)) {
        marks = 2;
        if (data[1] & NUMBER)
            marks += size > 2 && (data[2] & MORE) ? 2 : 1;
        marks += (data[1] & LAYER ? 1 : 0) + (data[1] & TIMES ? 1 : 0);
    }
    return size > marks;
}

} // namespace

bool isWhole(PICTURE_CODEC codec, const unsigned char* data, size_t size)
{
    return codec == PICTURE_CODEC::VP8 ? isVp8(data, size) : isH264(data, size);
}

} // namespace pictureContent
