#pragma once
// How loud the sound of a stream is. A change takes a moment, so that it does not click.
#include <atomic>
#include <gst/gst.h>

class soundVolume
{
public:
    enum : int { LOUDEST = 100, RAMP_MS = 40 }; // from silence to the loudest

    // level: 0 to LOUDEST, on the scale on which people hear equal steps. Any thread.
    void set(int level, bool mute);
    // Applies it to what comes out of the pad: samples of 32-bit floats, the channels of a moment together.
    // The pad lives shorter than this.
    void watch(GstPad* pad);
    // Applies it to these, of one channel. One thread at a time, and not beside watch().
    void apply(short* samples, size_t count, int rate);

private:
    static GstPadProbeReturn onSamples(GstPad* pad, GstPadProbeInfo* info, gpointer self);
    bool changesNothing();
    template <typename Sample>
    void scale(Sample* samples, size_t count, int rate, int channels);

    std::atomic<float> m_wanted{1};
    float m_present = -1; // -1: nothing has sounded yet; of the thread that applies it
};
