#include "tools/sceneRender/noise.h"
#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

double corner(int64_t x, int64_t y, unsigned seed)
{
    uint32_t bits = uint32_t(x) * 0x9e3779b1u ^ uint32_t(y) * 0x85ebca77u ^ seed * 0xc2b2ae3du;
    bits = (bits ^ bits >> 15) * 0x2c1b3c6du;
    bits = (bits ^ bits >> 12) * 0x297a2d39u;
    return double((bits ^ bits >> 15) & 0xffffff) / 0xffffff;
}

double ease(double share)
{
    return share * share * (3 - 2 * share);
}

double between(double from, double to, double share)
{
    return from + (to - from) * share;
}

} // namespace

double noiseAt(double x, unsigned seed)
{
    const double cell = std::floor(x);
    return between(corner(int64_t(cell), 0, seed), corner(int64_t(cell) + 1, 0, seed), ease(x - cell));
}

double noiseAt(double x, double y, unsigned seed)
{
    const double cellX = std::floor(x), cellY = std::floor(y);
    const int64_t i = int64_t(cellX), j = int64_t(cellY);
    const double along = ease(x - cellX);
    return between(between(corner(i, j, seed), corner(i + 1, j, seed), along),
                   between(corner(i, j + 1, seed), corner(i + 1, j + 1, seed), along), ease(y - cellY));
}

double fractalNoise(double x, unsigned seed, int octaves)
{
    double sum = 0, most = 0, strength = 1;
    for (int i = 0; i < octaves; ++i, x *= 2, strength /= 2) {
        sum += strength * noiseAt(x, seed + unsigned(i));
        most += strength;
    }
    return sum / most;
}

double fractalNoise(double x, double y, unsigned seed, int octaves)
{
    double sum = 0, most = 0, strength = 1;
    for (int i = 0; i < octaves; ++i, x *= 2, y *= 2, strength /= 2) {
        sum += strength * noiseAt(x, y, seed + unsigned(i));
        most += strength;
    }
    return sum / most;
}

double smoothStep(double from, double to, double value)
{
    return ease(std::clamp((value - from) / (to - from), 0.0, 1.0));
}
