#include "bench/soundMeasure.h"
#include <algorithm>
#include <cmath>
#include <complex>

using namespace soundMeasure;

namespace {

constexpr int kHeadBytes = 12;
constexpr int kAlaw = 8;
constexpr double kPi = 3.141592653589793;
constexpr double kQuietSeconds = 0.3;
constexpr float kBurst = 0.25f; // of the loudest
constexpr int kTaps = 48;       // of the filter, on each side, for each time slower

constexpr double kStepSeconds = 0.01; // of the first look at how much later it is heard
constexpr double kEarliest = -2;
constexpr double kLatest = 6;
constexpr double kPieceSeconds = 0.5;
constexpr double kAroundSeconds = 0.3; // in which a piece may be laid
constexpr double kNearness = 0.1;
constexpr int kFewRate = 4000;
constexpr double kFrameSeconds = 0.032;
constexpr double kFloor = 1e-6;  // of the strongest part of a frame: 60 dB below it nothing is heard
constexpr double kActive = 1e-4; // of the strongest frame
constexpr double kLowHertz = 200;
constexpr double kHighShare = 0.425; // of the rate

float linear(unsigned char law)
{
    law ^= 0x55;
    const int exponent = (law >> 4) & 7;
    const int mantissa = (law & 15) * 16 + 8;
    const int value = exponent == 0 ? mantissa : (mantissa + 256) << (exponent - 1);
    return float(law & 0x80 ? value : -value) / 32768;
}

double power(const Samples& samples, ptrdiff_t from, ptrdiff_t count)
{
    double sum = 0;
    for (ptrdiff_t i = std::max<ptrdiff_t>(0, from); i < from + count && i < ptrdiff_t(samples.size()); ++i)
        sum += double(samples[size_t(i)]) * samples[size_t(i)];
    return sum;
}

std::vector<double> envelope(const Samples& samples, int rate)
{
    const auto step = ptrdiff_t(kStepSeconds * rate);
    std::vector<double> steps;
    double mean = 0;
    for (ptrdiff_t at = 0; at + step <= ptrdiff_t(samples.size()); at += step) {
        steps.push_back(std::sqrt(power(samples, at, step)));
        mean += steps.back();
    }
    for (double& each : steps)
        each -= mean / double(steps.size());
    return steps;
}

// Samples by which it is heard later than it was said, to a step.
ptrdiff_t roughDelay(const Samples& said, const Samples& heard, int rate)
{
    const std::vector<double> one = envelope(said, rate);
    const std::vector<double> other = envelope(heard, rate);
    double most = -HUGE_VAL;
    ptrdiff_t best = 0;
    for (auto lag = ptrdiff_t(kEarliest / kStepSeconds); lag <= ptrdiff_t(kLatest / kStepSeconds); ++lag) {
        double sum = 0;
        for (ptrdiff_t i = 0; i < ptrdiff_t(one.size()); ++i) {
            if (i + lag >= 0 && i + lag < ptrdiff_t(other.size()))
                sum += one[size_t(i)] * other[size_t(i + lag)];
        }
        if (sum > most) {
            most = sum;
            best = lag;
        }
    }
    return best * ptrdiff_t(kStepSeconds * rate);
}

float at(const Samples& samples, ptrdiff_t index)
{
    return index >= 0 && index < ptrdiff_t(samples.size()) ? samples[size_t(index)] : 0;
}

// The lag of a piece at which both fit best; of those of a lasting tone the one that is nearest.
ptrdiff_t bestDelay(const Samples& said, const Samples& heard, ptrdiff_t from, ptrdiff_t count,
                    ptrdiff_t middle, ptrdiff_t around)
{
    double most = -HUGE_VAL;
    ptrdiff_t best = middle;
    double there = power(heard, from + middle - around, count);
    for (ptrdiff_t lag = middle - around; lag <= middle + around; ++lag) {
        double sum = 0;
        for (ptrdiff_t i = from; i < from + count; ++i)
            sum += double(at(said, i)) * at(heard, i + lag);
        const double near = 1 - kNearness * double(std::abs(lag - middle)) / double(around);
        const double fits = near * sum / std::sqrt(std::max(there, 0.0) + 1e-6);
        if (fits > most) {
            most = fits;
            best = lag;
        }
        const double goes = at(heard, from + lag);
        const double comes = at(heard, from + lag + count);
        there += comes * comes - goes * goes;
    }
    return best;
}

// A sound, and what is left of it at a quarter of its rate or so, in which places are found sooner.
struct tagLayers
{
    tagLayers(const Samples& samples, int times) : full(samples), few(slower(samples, times)) {}
    const Samples& full;
    Samples few;
};

ptrdiff_t fineDelay(const tagLayers& said, const tagLayers& heard, ptrdiff_t from, ptrdiff_t count, int rate,
                    ptrdiff_t rough)
{
    const ptrdiff_t times = rate / kFewRate;
    const auto around = ptrdiff_t(kAroundSeconds * kFewRate);
    const ptrdiff_t near =
        times * bestDelay(said.few, heard.few, from / times, count / times, rough / times, around);
    return bestDelay(said.full, heard.full, from, count, near, 2 * times);
}

void transform(std::vector<std::complex<double>>& values)
{
    const size_t count = values.size();
    if (count == 1)
        return;
    std::vector<std::complex<double>> even(count / 2), odd(count / 2);
    for (size_t i = 0; i < count / 2; ++i) {
        even[i] = values[2 * i];
        odd[i] = values[2 * i + 1];
    }
    transform(even);
    transform(odd);
    for (size_t i = 0; i < count / 2; ++i) {
        const auto turned = std::polar(1.0, -2 * kPi * double(i) / double(count)) * odd[i];
        values[i] = even[i] + turned;
        values[i + count / 2] = even[i] - turned;
    }
}

std::vector<double> spectrum(const Samples& samples, ptrdiff_t from, int count)
{
    std::vector<std::complex<double>> values(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i)
        values[size_t(i)] = at(samples, from + i) * (0.5 - 0.5 * std::cos(2 * kPi * i / count));
    transform(values);
    std::vector<double> powers;
    for (int i = 0; i < count / 2; ++i)
        powers.push_back(std::norm(values[size_t(i)]));
    return powers;
}

double frameDistance(const std::vector<double>& said, const std::vector<double>& heard, double gain, int rate)
{
    const double floor = kFloor * *std::max_element(said.begin(), said.end());
    const double width = rate / 2.0 / double(said.size());
    double sum = 0;
    int count = 0;
    for (size_t i = size_t(kLowHertz / width); double(i) * width < kHighShare * rate; ++i, ++count) {
        const double apart = 10 * std::log10(std::max(said[i], floor) / std::max(heard[i] / gain, floor));
        sum += apart * apart;
    }
    return std::sqrt(sum / count);
}

} // namespace

tagWire soundMeasure::alawOf(const std::vector<SoundRelay::tagPassed>& packets)
{
    tagWire wire;
    for (const SoundRelay::tagPassed& passed : packets) {
        if (passed.packet.size() <= kHeadBytes || (passed.packet[1] & 0x7f) != kAlaw)
            continue;
        for (qsizetype i = kHeadBytes; i < passed.packet.size(); ++i) {
            wire.samples.push_back(linear(static_cast<unsigned char>(passed.packet[i])));
            wire.times.push_back(passed.nUs + (i - kHeadBytes) * 125);
        }
    }
    return wire;
}

std::vector<size_t> soundMeasure::beginnings(const Samples& samples, int rate)
{
    float most = 0;
    for (const float sample : samples)
        most = std::max(most, std::fabs(sample));
    std::vector<size_t> all;
    size_t last = 0;
    for (size_t i = 0; i < samples.size(); ++i) {
        if (std::fabs(samples[i]) < kBurst * most)
            continue;
        if (i - last > size_t(kQuietSeconds * rate))
            all.push_back(i);
        last = i;
    }
    return all;
}

Samples soundMeasure::slower(const Samples& samples, int times)
{
    if (times == 1)
        return samples;
    const int side = kTaps * times / 2;
    std::vector<double> filter;
    double sum = 0;
    for (int i = -side; i <= side; ++i) {
        const double x = kPi * i / times;
        filter.push_back((i == 0 ? 1 : std::sin(x) / x) * (0.5 + 0.5 * std::cos(kPi * i / (side + 1))));
        sum += filter.back();
    }
    Samples result;
    for (ptrdiff_t middle = 0; middle < ptrdiff_t(samples.size()); middle += times) {
        double value = 0;
        for (int i = -side; i <= side; ++i)
            value += filter[size_t(i + side)] * at(samples, middle + i);
        result.push_back(float(value / sum));
    }
    return result;
}

double soundMeasure::distance(const Samples& said, const Samples& heard, int rate)
{
    ptrdiff_t lag = roughDelay(said, heard, rate);
    const auto piece = ptrdiff_t(kPieceSeconds * rate);
    const tagLayers saidLayers(said, rate / kFewRate);
    const tagLayers heardLayers(heard, rate / kFewRate);
    const int frame = int(kFrameSeconds * rate);
    int bins = 1;
    while (2 * bins <= frame)
        bins *= 2;

    struct tagFrame
    {
        ptrdiff_t said;
        ptrdiff_t heard;
        double power;
    };
    std::vector<tagFrame> frames;
    double most = 0;
    for (ptrdiff_t from = 0; from + piece <= ptrdiff_t(said.size()); from += piece) {
        lag = fineDelay(saidLayers, heardLayers, from, piece, rate, lag);
        for (ptrdiff_t start = from; start < from + piece; start += bins / 2) {
            frames.push_back({start, start + lag, power(said, start, bins)});
            most = std::max(most, frames.back().power);
        }
    }
    // Most frames are as they were said: the middle one knows how much louder they are.
    std::vector<double> gains;
    for (const tagFrame& each : frames) {
        if (each.power > 100 * kActive * most)
            gains.push_back(power(heard, each.heard, bins) / each.power);
    }
    if (gains.empty())
        return HUGE_VAL;
    std::nth_element(gains.begin(), gains.begin() + ptrdiff_t(gains.size() / 2), gains.end());
    const double gain = std::max(gains[gains.size() / 2], 1e-12);
    double sum = 0;
    int count = 0;
    for (const tagFrame& each : frames) {
        if (each.power < kActive * most)
            continue;
        sum += frameDistance(spectrum(said, each.said, bins), spectrum(heard, each.heard, bins), gain, rate);
        ++count;
    }
    return sum / count;
}
