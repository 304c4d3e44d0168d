#include "players/g711.h"
#include <algorithm>
#include <array>

namespace {

constexpr int kSign = 0x80;     // of what is 0 or more
constexpr int kEvenBits = 0x55; // are turned round on the line, so that silence has changes
constexpr int kMuBias = 33;     // of 14-bit samples
constexpr int kMuMost = 0x1fff;

unsigned char packedA(short sample)
{
    int magnitude = (sample < 0 ? ~sample : sample) >> 4;
    int segment = 0;
    while (magnitude > 31) {
        magnitude >>= 1;
        ++segment;
    }
    const int code = magnitude + (segment << 4);
    return static_cast<unsigned char>((code | (sample < 0 ? 0 : kSign)) ^ kEvenBits);
}

short unpackedA(unsigned char code)
{
    const int plain = (code ^ kEvenBits) & 0x7f;
    const int segment = plain >> 4;
    const int step = ((plain & 15) << 4) + 8;
    const int magnitude = segment == 0 ? step : (step + 256) << (segment - 1);
    return short(code & kSign ? magnitude : -magnitude);
}

unsigned char packedMu(short sample)
{
    const int magnitude = std::min(((sample < 0 ? ~sample : sample) >> 2) + kMuBias, kMuMost);
    int segment = 0;
    while (magnitude >> (segment + 6) != 0)
        ++segment;
    const int code = (segment << 4) | ((magnitude >> (segment + 1)) & 15);
    return static_cast<unsigned char>(~code & (sample < 0 ? 0x7f : 0xff));
}

short unpackedMu(unsigned char code)
{
    const int plain = ~code & 0x7f;
    const int magnitude = ((((plain & 15) << 1) + kMuBias) << (plain >> 4)) - kMuBias;
    return short(code & kSign ? magnitude * 4 : -magnitude * 4);
}

std::array<short, 256> tableOf(short (*unpack)(unsigned char))
{
    std::array<short, 256> table;
    for (size_t code = 0; code < table.size(); ++code)
        table[code] = unpack(static_cast<unsigned char>(code));
    return table;
}

} // namespace

unsigned char g711::packed(SOUND_CODEC codec, short sample)
{
    return codec == SOUND_CODEC::PCMU ? packedMu(sample) : packedA(sample);
}

short g711::unpacked(SOUND_CODEC codec, unsigned char code)
{
    static const std::array<short, 256> kOfA = tableOf(unpackedA);
    static const std::array<short, 256> kOfMu = tableOf(unpackedMu);
    return codec == SOUND_CODEC::PCMU ? kOfMu[code] : kOfA[code];
}
