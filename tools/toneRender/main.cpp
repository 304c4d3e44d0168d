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
    const bool saved = Save(folder + "Classic.wav", Classic()) && Save(folder + "Chime.wav", Chime()) &&
                       Save(folder + "Marimba.wav", Marimba());
    return saved ? 0 : 1;
}
