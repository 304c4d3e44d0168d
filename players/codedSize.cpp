#include "players/codedSize.h"
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace codedSize {
namespace {

constexpr int kSetOfSequence = 7; // kind of a unit: what a sequence of pictures is like
constexpr int kBlock = 16;        // pixels
constexpr int kMaxZeros = 31;     // of one number
constexpr uint32_t kMaxCycle = 255;
constexpr size_t kVp8KeyHead = 10;

// The bits of a unit, without the bytes that keep start codes out of it.
class Bits
{
public:
    Bits(const unsigned char* data, size_t size)
    {
        m_bytes.reserve(size);
        int zeros = 0;
        for (size_t i = 0; i < size; ++i) {
            const bool isPadding = zeros >= 2 && data[i] == 3;
            zeros = data[i] == 0 ? zeros + 1 : 0;
            if (!isPadding)
                m_bytes.push_back(data[i]);
        }
    }
    bool isGood() const { return m_bGood; }
    uint32_t bit()
    {
        if (m_nAt >= m_bytes.size() * 8) {
            m_bGood = false;
            return 0;
        }
        const uint32_t value = m_bytes[m_nAt / 8] >> (7 - m_nAt % 8) & 1;
        ++m_nAt;
        return value;
    }
    uint32_t bits(int count)
    {
        uint32_t value = 0;
        for (int i = 0; i < count; ++i)
            value = value << 1 | bit();
        return value;
    }
    // As many zeros before the one as there are bits behind it.
    uint32_t number()
    {
        int zeros = 0;
        while (m_bGood && bit() == 0)
            ++zeros;
        if (zeros > kMaxZeros) {
            m_bGood = false;
            return 0;
        }
        return uint32_t((uint64_t(1) << zeros) - 1 + bits(zeros));
    }
    int32_t signedNumber()
    {
        const uint32_t value = number();
        return value % 2 ? int32_t(value / 2 + 1) : -int32_t(value / 2);
    }

private:
    std::vector<unsigned char> m_bytes;
    size_t m_nAt = 0;
    bool m_bGood = true;
};

bool hasColourFormat(uint32_t profile)
{
    static constexpr uint32_t kProfiles[] = {100, 110, 122, 244, 44, 83, 86, 118, 128, 138, 139, 134, 135};
    return std::find(std::begin(kProfiles), std::end(kProfiles), profile) != std::end(kProfiles);
}

void skipList(Bits& bits, int size)
{
    int last = 8;
    int next = 8;
    for (int i = 0; i < size && bits.isGood(); ++i) {
        if (next != 0)
            next = (last + bits.signedNumber()) & 0xff;
        last = next == 0 ? last : next;
    }
}

// False when it has more colours, or bits, than a picture here may.
bool readColourFormat(Bits& bits)
{
    const uint32_t colours = bits.number();
    const uint32_t brightness = bits.number();
    const uint32_t colour = bits.number();
    if (colours > 1 || brightness != 0 || colour != 0)
        return false;
    bits.bit();
    const bool hasLists = bits.bit() != 0;
    for (int i = 0; hasLists && i < 8; ++i) {
        if (bits.bit())
            skipList(bits, i < 6 ? 16 : 64);
    }
    return true;
}

// False when there are too many numbers.
bool readOrder(Bits& bits)
{
    bits.number(); // of pictures until they are counted anew
    const uint32_t kind = bits.number();
    if (kind == 0)
        bits.number();
    if (kind != 1)
        return true;
    bits.bit();
    bits.signedNumber();
    bits.signedNumber();
    const uint32_t cycle = bits.number();
    for (uint32_t i = 0; i < cycle && cycle <= kMaxCycle; ++i)
        bits.signedNumber();
    return cycle <= kMaxCycle;
}

bool sequenceFits(const unsigned char* data, size_t size, const tagBounds& bounds)
{
    Bits bits(data, size);
    const uint32_t profile = bits.bits(8);
    bits.bits(16); // marks, and the level
    bits.number(); // its name
    if ((hasColourFormat(profile) && !readColourFormat(bits)) || !readOrder(bits))
        return false;
    bits.number(); // pictures that are kept
    bits.bit();
    const uint64_t wide = uint64_t(bits.number()) + 1;
    const uint64_t high = uint64_t(bits.number()) + 1;
    const uint64_t fields = bits.bit() ? 1 : 2;
    return bits.isGood() && wide * kBlock <= uint64_t(bounds.nWidth) &&
           high * fields * kBlock <= uint64_t(bounds.nHeight);
}

// Behind the next start code; the end where there is none.
const unsigned char* nextUnit(const unsigned char* from, const unsigned char* end)
{
    for (const unsigned char* one = end - from > 2 ? from + 2 : end; one < end;) {
        one = static_cast<const unsigned char*>(memchr(one, 1, size_t(end - one)));
        if (!one)
            return end;
        if (one[-1] == 0 && one[-2] == 0)
            return one + 1;
        ++one;
    }
    return end;
}

bool unitsFit(const unsigned char* data, size_t size, const tagBounds& bounds)
{
    const unsigned char* const end = data + size;
    for (const unsigned char* unit = nextUnit(data, end); unit < end;) {
        const unsigned char* const next = nextUnit(unit, end);
        if ((*unit & 0x1f) == kSetOfSequence && !sequenceFits(unit + 1, size_t(next - unit - 1), bounds))
            return false;
        unit = next;
    }
    return true;
}

bool frameFits(const unsigned char* data, size_t size, const tagBounds& bounds)
{
    const bool isKey = size > 0 && (data[0] & 1) == 0;
    if (!isKey)
        return true;
    const auto sideAt = [data](size_t at) { return (data[at] | data[at + 1] << 8) & 0x3fff; };
    return size >= kVp8KeyHead && sideAt(6) <= bounds.nWidth && sideAt(8) <= bounds.nHeight;
}

} // namespace

bool fits(PICTURE_CODEC codec, const unsigned char* data, size_t size, const tagBounds& bounds)
{
    return codec == PICTURE_CODEC::VP8 ? frameFits(data, size, bounds) : unitsFit(data, size, bounds);
}

} // namespace codedSize
