#include "players/sequenceParameters.h"
#include <algorithm>
#include <cstdint>
#include <vector>

namespace sequenceParameters {
namespace {

constexpr int kBlock = 16;          // pixels
constexpr int kMaxZeros = 31;       // of one number
constexpr uint32_t kMaxSide = 1024; // blocks, so that sizes in pixels are numbers
constexpr uint32_t kMaxCycle = 255;
constexpr uint32_t kMaxName = 31;
constexpr uint32_t kHigh = 100; // the profile, which tells colours and bits

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
        if (zeros > kMaxZeros)
            m_bGood = false;
        return m_bGood ? uint32_t((uint64_t(1) << zeros) - 1 + bits(zeros)) : 0;
    }
    // What is more than that cannot be read.
    uint32_t numberTo(uint32_t most)
    {
        const uint32_t value = number();
        if (value > most)
            m_bGood = false;
        return m_bGood ? value : 0;
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

// Of those that calls have: baseline, main, extended and high.
bool isKnown(uint32_t profile)
{
    return profile == 66 || profile == 77 || profile == 88 || profile == kHigh;
}

void skipList(Bits& bits, int size)
{
    int last = 8;
    int next = 8;
    for (int i = 0; i < size && bits.isGood(); ++i) {
        if (next != 0)
            next = (last + bits.signedNumber() % 256) & 0xff;
        last = next == 0 ? last : next;
    }
}

// False when it has other colours, or more bits, than a picture of a call.
bool readColours(Bits& bits)
{
    const uint32_t colours = bits.number();
    const uint32_t brightness = bits.number();
    const uint32_t colour = bits.number();
    if (colours != 1 || brightness != 0 || colour != 0)
        return false;
    const bool isLossless = bits.bit() != 0;
    const bool hasLists = bits.bit() != 0;
    for (int i = 0; hasLists && i < 8; ++i) {
        if (bits.bit())
            skipList(bits, i < 6 ? 16 : 64);
    }
    return !isLossless;
}

void readOrder(Bits& bits)
{
    bits.numberTo(12); // bits of the numbers of pictures
    const uint32_t kind = bits.numberTo(2);
    if (kind == 0)
        bits.numberTo(12);
    if (kind != 1)
        return;
    bits.bit();
    bits.signedNumber();
    bits.signedNumber();
    const uint32_t cycle = bits.numberTo(kMaxCycle);
    for (uint32_t i = 0; i < cycle && bits.isGood(); ++i)
        bits.signedNumber();
}

} // namespace

std::optional<tagPictures> read(const unsigned char* unit, size_t size)
{
    if (size > MAX_BYTES)
        return std::nullopt;
    Bits bits(unit, size);
    const uint32_t profile = bits.bits(8);
    bits.bits(16); // marks, and the level
    bits.numberTo(kMaxName);
    if (!isKnown(profile) || (profile == kHigh && !readColours(bits)))
        return std::nullopt;
    readOrder(bits);
    tagPictures pictures;
    pictures.nKept = int(bits.numberTo(MAX_KEPT));
    bits.bit(); // some may be missing
    pictures.nWidth = (int(bits.numberTo(kMaxSide - 1)) + 1) * kBlock;
    pictures.nHeight = (int(bits.numberTo(kMaxSide - 1)) + 1) * kBlock;
    const bool isWhole = bits.bit() != 0;
    // What is cut off at the sides, and what is told besides.
    bits.bit();
    if (bits.bit()) {
        for (int side = 0; side < 4; ++side)
            bits.numberTo(kMaxSide * kBlock);
    }
    bits.bit();
    if (!bits.isGood() || !isWhole)
        return std::nullopt;
    return pictures;
}

} // namespace sequenceParameters
