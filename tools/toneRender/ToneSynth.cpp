#include "tools/toneRender/ToneSynth.h"
#include <algorithm>
#include <cmath>

namespace {

const double Turn = 6.283185307179586;
const double Attack = 0.004;  // seconds; a click-free beginning
const double Quiet = 6.9;     // e^-6.9 is a thousandth
const double Headroom = 0.85; // of full scale

} // namespace

ToneSynth::ToneSynth(double seconds) : m_mix(size_t(seconds * SampleRate), 0.0) {}

void ToneSynth::Strike(double at, double hertz, double decay, double bright, double loud)
{
    const size_t first = size_t(at * SampleRate);
    for (size_t i = first; i < m_mix.size(); ++i) {
        const double t = double(i - first) / SampleRate;
        if (t > decay)
            break;
        const double shape = std::min(1.0, t / Attack) * std::exp(-Quiet * t / decay);
        const double wave =
            std::sin(Turn * hertz * t) +
            bright * std::exp(-Quiet * t / decay) * std::sin(Turn * 2.0 * hertz * t) +
            0.5 * bright * std::exp(-3 * Quiet * t / decay) * std::sin(Turn * 3.0 * hertz * t);
        m_mix[i] += loud * shape * wave;
    }
}

std::vector<int16_t> ToneSynth::Samples() const
{
    double peak = 1e-9;
    for (double value : m_mix)
        peak = std::max(peak, std::fabs(value));
    std::vector<int16_t> samples;
    samples.reserve(m_mix.size());
    for (double value : m_mix)
        samples.push_back(int16_t(std::lround(value / peak * Headroom * 32767)));
    return samples;
}
