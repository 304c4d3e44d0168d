#pragma once
// What a microphone has heard, until frames are taken: devices deliver in steps of their own, some a tenth of
// a second at once. Little of it waits for long, however much comes at a time. One thread.
#include "players/callSession.h"
#include <vector>

class heardFrames
{
public:
    enum : int {
        // Before the first frame is given: the device's steps.
        AHEAD = 2 * callSession::FRAME_SAMPLES,
        // What has been there all the time, for so many frames, is too much.
        LOOKED_AT = 50,
        MOST_WAITING = 3 * callSession::FRAME_SAMPLES,
        // Nobody takes any more, or the device is a file that is read at once.
        MOST = soundCoder::SAMPLE_RATE
    };
    void put(const short* samples, size_t count);
    // Of callSession::FRAME_SAMPLES; silence where there is none.
    void take(short* frame);
    void clear();

private:
    void dropSurplus();

    std::vector<short> m_samples;
    bool m_bHears = false;  // enough is there for the next frames
    size_t m_nLeast = MOST; // of what was left, since the last look
    int m_nFrames = 0;      // since then
};
