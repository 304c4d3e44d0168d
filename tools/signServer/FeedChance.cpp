#include "tools/signServer/FeedChance.h"
#include <cmath>

namespace {

constexpr quint64 kStart = 0xcbf29ce484222325;
constexpr quint64 kPrime = 0x100000001b3;

quint64 Mixed(quint64 value)
{
    value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9;
    value = (value ^ (value >> 27)) * 0x94d049bb133111eb;
    return value ^ (value >> 31);
}

quint64 WithText(quint64 seed, const char* text)
{
    for (; *text; ++text)
        seed = (seed ^ static_cast<unsigned char>(*text)) * kPrime;
    return seed;
}

} // namespace

FeedChance::FeedChance(const QByteArray& name) : m_seed(WithText(kStart, name.constData())) {}

double FeedChance::At(const char* topic, qint64 at) const
{
    constexpr int kUsedBits = 53;
    const quint64 bits = Mixed(Mixed(WithText(m_seed, topic)) + static_cast<quint64>(at) * kPrime);
    return std::ldexp(double(bits >> (64 - kUsedBits)), -kUsedBits);
}

double FeedChance::Smooth(const char* topic, double at, double period) const
{
    const double place = at / period, before = std::floor(place), way = place - before;
    const double eased = way * way * (3 - 2 * way);
    const double from = At(topic, qint64(before)), to = At(topic, qint64(before) + 1);
    return 2 * (from + (to - from) * eased) - 1;
}
