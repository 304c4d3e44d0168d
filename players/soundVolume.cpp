#include "players/soundVolume.h"
#include <algorithm>
#include <cmath>

namespace {

float scaled(float sample, float by)
{
    return sample * by;
}

short scaled(short sample, float by)
{
    return short(std::lrint(float(sample) * by));
}

} // namespace

void soundVolume::set(int level, bool mute)
{
    const float part = float(std::clamp<int>(level, 0, LOUDEST)) / LOUDEST;
    m_wanted = mute ? 0 : part * part * part;
}

void soundVolume::watch(GstPad* pad)
{
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, onSamples, this, nullptr);
}

GstPadProbeReturn soundVolume::onSamples(GstPad* pad, GstPadProbeInfo* info, gpointer self)
{
    auto* volume = static_cast<soundVolume*>(self);
    if (volume->changesNothing())
        return GST_PAD_PROBE_OK;
    int rate = 0;
    int channels = 0;
    GstCaps* caps = gst_pad_get_current_caps(pad);
    const GstStructure* kind = caps ? gst_caps_get_structure(caps, 0) : nullptr;
    const bool isKnown = kind && gst_structure_get_int(kind, "rate", &rate) &&
                         gst_structure_get_int(kind, "channels", &channels) && rate > 0 && channels > 0;
    gst_clear_caps(&caps);
    GstBuffer* buffer = gst_buffer_make_writable(GST_PAD_PROBE_INFO_BUFFER(info));
    info->data = buffer;
    GstMapInfo map;
    if (!isKnown || !gst_buffer_map(buffer, &map, GST_MAP_READWRITE))
        return GST_PAD_PROBE_DROP;
    volume->scale(reinterpret_cast<float*>(map.data), map.size / sizeof(float), rate, channels);
    gst_buffer_unmap(buffer, &map);
    return GST_PAD_PROBE_OK;
}

void soundVolume::apply(short* samples, size_t count, int rate)
{
    if (!changesNothing())
        scale(samples, count, rate, 1);
}

bool soundVolume::changesNothing()
{
    if (m_present < 0)
        m_present = m_wanted;
    return m_present == 1 && m_wanted == 1;
}

template <typename Sample>
void soundVolume::scale(Sample* samples, size_t count, int rate, int channels)
{
    const float wanted = m_wanted;
    const float step = 1000.0f / float(RAMP_MS) / float(rate);
    for (size_t i = 0; i + size_t(channels) <= count; i += size_t(channels)) {
        m_present = std::clamp(wanted, m_present - step, m_present + step);
        for (int channel = 0; channel < channels; ++channel)
            samples[i + size_t(channel)] = scaled(samples[i + size_t(channel)], m_present);
    }
}
