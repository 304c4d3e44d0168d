// What microphones deliver comes out in frames, however much of it comes at once, and does not wait for long.
#include "players/deviceSound.h"
#include "players/heardFrames.h"
#include "tests/calls/callStand.h"
#include <algorithm>
#include <cstdlib>

namespace {

constexpr int kFrame = callSession::FRAME_SAMPLES;

// A microphone that counts, so that each sample tells when it was heard; from 1 on.
class Microphone
{
public:
    explicit Microphone(heardFrames& to) : m_to(to) {}
    void hear(int count)
    {
        std::vector<short> samples;
        for (int i = 0; i < count; ++i)
            samples.push_back(short(m_nHeard++ % kNumbers + 1));
        m_to.put(samples.data(), samples.size());
    }
    // Time passes, of so many samples.
    void pass(int samples, int step)
    {
        for (m_nDue += samples; m_nDue >= step; m_nDue -= step)
            hear(step);
    }
    // Takes a frame: how long ago its first sample was heard; -1: it is silent.
    int age()
    {
        short frame[kFrame];
        m_to.take(frame);
        if (frame[0] == 0)
            return -1;
        for (int i = 1; i < kFrame; ++i)
            EXPECT_EQ(frame[i], frame[i - 1] % kNumbers + 1);
        return int((m_nHeard - (frame[0] - 1) + kNumbers) % kNumbers);
    }

private:
    static constexpr qint64 kNumbers = 32000;
    heardFrames& m_to;
    qint64 m_nHeard = 0;
    int m_nDue = 0;
};

struct tagAges
{
    int nSilent = 0;
    int nOldest = 0;
};

// So many frames; step: samples at once, each for so many as they last.
tagAges play(Microphone& microphone, int frames, int step, int perFrame = kFrame)
{
    tagAges ages;
    for (int i = 0; i < frames; ++i) {
        microphone.pass(perFrame, step);
        const int age = microphone.age();
        ages.nSilent += age < 0;
        ages.nOldest = std::max(ages.nOldest, age);
    }
    return ages;
}

class MicrophoneSound : public CallStand
{
};

} // namespace

TEST_F(MicrophoneSound, WhatComesAtOnceIsHeardWhole)
{
    for (const int step : {1600, 2048, 4096, 8192}) {
        heardFrames heard;
        Microphone microphone(heard);
        play(microphone, 200, step); // it begins
        EXPECT_EQ(play(microphone, 1000, step).nSilent, 0) << step;
    }
}

TEST_F(MicrophoneSound, ASteadyOneWaitsForNoMoreThanItsSteps)
{
    for (const int step : {80, 160, 320}) {
        heardFrames heard;
        Microphone microphone(heard);
        const tagAges ages = play(microphone, 1000, step);
        EXPECT_LE(ages.nSilent, 1) << step;
        EXPECT_LE(ages.nOldest, int(heardFrames::AHEAD)) << step;
    }
}

TEST_F(MicrophoneSound, OneThatIsFasterThanTheClockDoesNotGetLate)
{
    heardFrames heard;
    Microphone microphone(heard);
    const tagAges ages = play(microphone, 5000, 160, kFrame + 2);
    EXPECT_LE(ages.nSilent, 1);
    EXPECT_LE(ages.nOldest, int(heardFrames::MOST_WAITING) + 3 * kFrame);
}

TEST_F(MicrophoneSound, WhatCameWhileNobodyTookItIsLeftOutSoon)
{
    heardFrames heard;
    Microphone microphone(heard);
    play(microphone, 100, 160);
    microphone.hear(12 * kFrame);
    play(microphone, 2 * heardFrames::LOOKED_AT, 160);
    EXPECT_LE(play(microphone, 100, 160).nOldest, int(heardFrames::AHEAD) + kFrame);
    microphone.hear(30000);
    microphone.hear(30000);
    EXPECT_LE(microphone.age(), int(heardFrames::MOST));
}

TEST_F(MicrophoneSound, AFileStandsInForOne)
{
    setenv("HX_SOUND_SOURCE",
           "audiotestsrc is-live=true samplesperbuffer=2048 ! audio/x-raw,rate=16000 ! identity", 1);
    setenv("HX_SOUND_SINK", "fakesink", 1);
    setenv("HX_SOUND_PROCESSING", "off", 1);
    deviceSound devices;
    devices.open();
    int silent = 0, said = 0;
    for (int i = 0; i < 150; ++i) {
        short frame[kFrame];
        devices.read(frame);
        const bool isSilent = std::all_of(frame, frame + kFrame, [](short sample) { return sample == 0; });
        silent += said > 0 && isSilent;
        said += !isSilent;
        timespec rest = {0, 20000000};
        nanosleep(&rest, nullptr);
    }
    for (const char* name : {"HX_SOUND_SINK", "HX_SOUND_SOURCE", "HX_SOUND_PROCESSING"})
        unsetenv(name);
    EXPECT_GT(said, 50);
    EXPECT_LT(silent, said / 5); // two thirds, when only the end of what comes at once is kept
}
