#pragma once
// A ring tone as a row of struck notes, mixed to 16-bit mono samples.
#include <cstdint>
#include <vector>

class ToneSynth
{
public:
    static constexpr int SampleRate = 16000; // samples a second

    explicit ToneSynth(double seconds);
    // A note that is struck at second `at` and dies away to nothing audible over `decay` seconds.
    // bright: share of the overtones, 0 is a pure tone. loud: 0 to 1.
    void Strike(double at, double hertz, double decay, double bright, double loud);
    // Scaled so that the loudest sample stands a little under full scale.
    std::vector<int16_t> Samples() const;

private:
    std::vector<double> m_mix;
};
