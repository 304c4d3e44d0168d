// Writes the phone's own ring tones as WAV files: hxToneRender FOLDER
#include "tools/toneRender/ToneSynth.h"
#include <cstdio>
#include <fstream>
#include <string>

namespace {

void PutNumber(std::string& out, uint32_t value, int bytes)
{
    for (int i = 0; i < bytes; ++i)
        out.push_back(char(value >> (8 * i) & 0xff));
}

std::string WaveFile(const std::vector<int16_t>& samples)
{
    const uint32_t bytes = uint32_t(samples.size() * 2);
    std::string out = "RIFF";
    PutNumber(out, 36 + bytes, 4);
    out += "WAVEfmt ";
    PutNumber(out, 16, 4);
    PutNumber(out, 1, 2); // plain samples
    PutNumber(out, 1, 2); // one channel
    PutNumber(out, ToneSynth::SampleRate, 4);
    PutNumber(out, ToneSynth::SampleRate * 2, 4);
    PutNumber(out, 2, 2);
    PutNumber(out, 16, 2);
    out += "data";
    PutNumber(out, bytes, 4);
    for (int16_t sample : samples)
        PutNumber(out, uint16_t(sample), 2);
    return out;
}

// Two short trills and a pause, as a desk phone rings.
ToneSynth Classic()
{
    ToneSynth tone(3.0);
    for (double burst : {0.0, 0.6}) {
        for (int i = 0; i < 8; ++i)
            tone.Strike(burst + i * 0.05, i % 2 ? 950 : 760, 0.16, 0.3, 0.8);
    }
    return tone;
}

// Four falling bells.
ToneSynth Chime()
{
    ToneSynth tone(3.2);
    const double notes[] = {1318.5, 1046.5, 1174.7, 784.0};
    for (int i = 0; i < 4; ++i)
        tone.Strike(i * 0.38, notes[i], 1.7, 0.25, 0.8);
    return tone;
}

// A broken chord on wooden bars, played twice.
ToneSynth Marimba()
{
    ToneSynth tone(2.8);
    const double notes[] = {523.3, 659.3, 784.0, 1046.5, 784.0, 659.3};
    for (int i = 0; i < 12; ++i)
        tone.Strike(i * 0.16, notes[i % 6], 0.42, 0.5, i % 6 == 3 ? 1.0 : 0.75);
    return tone;
}

// A run up the five notes of a bamboo flute's scale, and its answer.
ToneSynth Breeze()
{
    ToneSynth tone(3.4);
    const double notes[] = {587.3, 659.3, 784.0, 880.0, 1174.7, 880.0, 1046.5, 1174.7, 1318.5, 1568.0};
    for (int i = 0; i < 10; ++i)
        tone.Strike(i * 0.11 + (i < 5 ? 0 : 0.45), notes[i], i % 5 == 4 ? 1.5 : 0.6, 0.12,
                    i % 5 == 4 ? 0.9 : 0.6);
    return tone;
}

// Two chords of a music box in three-four time.
ToneSynth Celesta()
{
    ToneSynth tone(3.6);
    const double bars[4][4] = {{523.3, 784.0, 1046.5, 1318.5},
                               {440.0, 659.3, 1046.5, 1318.5},
                               {349.2, 698.5, 880.0, 1396.9},
                               {392.0, 784.0, 987.8, 1174.7}};
    for (int bar = 0; bar < 4; ++bar) {
        const double at = bar * 0.66;
        tone.Strike(at, bars[bar][0], 1.2, 0.2, 0.55);
        for (int beat = 0; beat < 3; ++beat)
            tone.Strike(at + beat * 0.22, bars[bar][1 + beat], 0.9, 0.35, beat == 0 ? 0.7 : 0.5);
    }
    return tone;
}

// A long broken chord, up and down again, as strings that ring on.
ToneSynth Harp()
{
    ToneSynth tone(3.8);
    const double notes[] = {196.0, 293.7,  392.0, 493.9, 587.3, 784.0,
                            987.8, 1174.7, 987.8, 784.0, 587.3, 493.9};
    for (int i = 0; i < 12; ++i)
        tone.Strike(i * 0.13, notes[i], 2.0, 0.3, i == 7 ? 0.8 : 0.55);
    return tone;
}

// Soft pairs of beats with their echoes, for an office.
ToneSynth Pulse()
{
    ToneSynth tone(3.0);
    for (int pair = 0; pair < 2; ++pair) {
        for (int echo = 0; echo < 3; ++echo) {
            const double at = pair * 0.95 + echo * 0.24, loud = 0.8 / (1 << echo);
            tone.Strike(at, pair ? 783.99 : 659.3, 0.34, 0.15, loud);
            tone.Strike(at + 0.12, pair ? 987.8 : 880.0, 0.42, 0.15, loud);
        }
    }
    return tone;
}

// Slow bells over a deep one.
ToneSynth Sunrise()
{
    ToneSynth tone(4.2);
    tone.Strike(0, 261.6, 3.4, 0.2, 0.6);
    const double notes[] = {659.3, 784.0, 1046.5, 987.8, 784.0, 1318.5};
    for (int i = 0; i < 6; ++i)
        tone.Strike(0.1 + i * 0.34, notes[i], 2.0, 0.2, 0.5 + 0.07 * i);
    return tone;
}

struct Tone
{
    const char* name;
    ToneSynth (*make)();
};

const Tone kTones[] = {{"Classic", Classic}, {"Chime", Chime}, {"Marimba", Marimba}, {"Breeze", Breeze},
                       {"Celesta", Celesta}, {"Harp", Harp},   {"Pulse", Pulse},     {"Sunrise", Sunrise}};

int Save(const std::string& file, const ToneSynth& tone)
{
    std::ofstream out(file, std::ios::binary);
    out << WaveFile(tone.Samples());
    out.close();
    if (!out)
        std::fprintf(stderr, "hxToneRender: %s cannot be written\n", file.c_str());
    return out ? 1 : 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: hxToneRender FOLDER\n");
        return 1;
    }
    const std::string folder = std::string(argv[1]) + "/";
    for (const Tone& tone : kTones) {
        if (!Save(folder + tone.name + ".wav", tone.make()))
            return 1;
    }
    return 0;
}
