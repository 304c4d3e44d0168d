#pragma once
// How far a sound that was heard is from the one that was said.
#include "bench/soundRelay.h"
#include <vector>

namespace soundMeasure {

using Samples = std::vector<float>;

// What packets of A-law carry, one behind the other as they came.
struct tagWire
{
    Samples samples;
    std::vector<int64_t> times; // of each sample, us: a packet comes when its first sample does
};
tagWire alawOf(const std::vector<SoundRelay::tagPassed>& packets);

// Where bursts begin that have silence before them.
std::vector<size_t> beginnings(const Samples& samples, int rate);

// A whole fraction of the rate.
Samples slower(const Samples& samples, int times);

// The log-spectral distance, in dB (A. H. Gray and J. D. Markel, "Distance measures for speech processing",
// IEEE Transactions on ASSP 24, 1976): the mean of the frames in which something is said. Loudness counts for
// nothing; each half of a second is laid where it fits best.
double distance(const Samples& said, const Samples& heard, int rate);

} // namespace soundMeasure
