#include "players/soundVolume.h"
#include <algorithm>

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
    if (volume->m_present < 0)
        volume->m_present = volume->m_wanted;
    if (volume->m_present == 1 && volume->m_wanted == 1)
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
    volume->apply(reinterpret_cast<float*>(map.data), map.size / sizeof(float), rate, channels);
    gst_buffer_unmap(buffer, &map);
    return GST_PAD_PROBE_OK;
}

void soundVolume::apply(float* samples, gsize count, int rate, int channels)
{
    const float wanted = m_wanted;
    const float step = 1000.0f / float(RAMP_MS) / float(rate);
    for (gsize i = 0; i + gsize(channels) <= count; i += gsize(channels)) {
        m_present = std::clamp(wanted, m_present - step, m_present + step);
        for (int channel = 0; channel < channels; ++channel)
            samples[i + gsize(channel)] *= m_present;
    }
}
