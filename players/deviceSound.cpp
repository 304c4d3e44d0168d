#include "players/deviceSound.h"
#include "players/soundSink.h"
#include "players/soundSource.h"
#include "support/host/trace.h"
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>
#include <gst/base/gstbasesink.h>

namespace {

constexpr gint64 kDeviceUs = 60000;
constexpr gint64 kDeviceStepUs = 10000;
const char* const kProbe = "hxCallEcho";
constexpr guint64 kMaxWaiting = 3 * sizeof(short) * callSession::FRAME_SAMPLES;

GstCaps* soundCaps()
{
    return gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING, "S16LE", "layout", G_TYPE_STRING,
                               "interleaved", "rate", G_TYPE_INT, int(soundCoder::SAMPLE_RATE), "channels",
                               G_TYPE_INT, 1, nullptr);
}

// What suppresses noise suppresses a measured tone as well.
bool isProcessed()
{
    const char* wish = getenv("HX_SOUND_PROCESSING");
    return !wish || strcmp(wish, "off") != 0;
}

// A device of its own choice keeps a fifth of a second, which is heard as a pause in talk. One that waits for
// the first frame before it begins has the next ones behind it from then on.
void shorten(GstElement* device)
{
    if (!GST_IS_BIN(device))
        return;
    GstIterator* children = gst_bin_iterate_recurse(GST_BIN(device));
    GValue item = G_VALUE_INIT;
    while (gst_iterator_next(children, &item) == GST_ITERATOR_OK) {
        GObject* part = G_OBJECT(g_value_get_object(&item));
        const GParamSpec* known = g_object_class_find_property(G_OBJECT_GET_CLASS(part), "buffer-time");
        if (known && known->value_type == G_TYPE_INT64)
            g_object_set(part, "buffer-time", kDeviceUs, "latency-time", kDeviceStepUs, nullptr);
        if (GST_IS_BASE_SINK(part))
            gst_base_sink_set_async_enabled(GST_BASE_SINK(part), FALSE);
        g_value_reset(&item);
    }
    g_value_unset(&item);
    gst_iterator_free(children);
}

} // namespace

deviceSound::~deviceSound()
{
    close();
}

GstElement* deviceSound::add(const char* name, const char* called)
{
    GstElement* element = gst_element_factory_make(name, called);
    if (!element || !gst_bin_add(GST_BIN(m_pPipeline), element)) {
        nuxTrace(TRACE_NOTE, "the element %s is missing", name);
        return nullptr;
    }
    return element;
}

void deviceSound::open()
{
    if (m_pPipeline)
        return;
    GstElement* sink = newSoundSink();
    GstElement* source = newSoundSource();
    if (!sink && !source)
        return;
    m_pPipeline = gst_pipeline_new(nullptr);
    m_watch = std::make_unique<busWatch>(m_pPipeline, QByteArray(), [this](busWatch::EVENT event) {
        if (event == busWatch::EVENT::FAILED)
            onFailure();
    });
    m_watch->setFirst();
    // Frames come by the clock of this machine, and so do those of the other side.
    GstClock* clock = gst_system_clock_obtain();
    gst_pipeline_use_clock(GST_PIPELINE(m_pPipeline), clock);
    gst_object_unref(clock);
    const bool echo = sink && source && isProcessed();
    if (sink)
        buildLoudspeaker(sink, echo);
    if (source)
        buildMicrophone(source, isProcessed());
    gst_element_set_state(m_pPipeline, GST_STATE_PLAYING);
    m_bSource = source != nullptr;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_pOut = m_pLoudspeaker;
}

// A device that only says that it works takes the other one with it.
void deviceSound::onFailure()
{
    const bool hadSource = m_bSource;
    close();
    if (!hadSource) {
        nuxTrace(TRACE_NOTE, "the loudspeaker has failed, calls are silent");
        return;
    }
    soundSourceFailed();
    open();
}

void deviceSound::buildLoudspeaker(GstElement* sink, bool echo)
{
    shorten(sink);
    GstElement* out = add("appsrc");
    GstElement* probe = echo ? add("webrtcechoprobe", kProbe) : nullptr;
    GstElement* convert = add("audioconvert");
    GstElement* resample = add("audioresample");
    gst_bin_add(GST_BIN(m_pPipeline), sink);
    if (!out || !convert || !resample)
        return;
    GstCaps* caps = soundCaps();
    g_object_set(out, "caps", caps, "format", GST_FORMAT_TIME, "is-live", TRUE, "do-timestamp", TRUE,
                 "emit-signals", FALSE, "max-bytes", kMaxWaiting, "leaky-type", GST_APP_LEAKY_TYPE_DOWNSTREAM,
                 nullptr);
    gst_caps_unref(caps);
    if ((!probe || gst_element_link(out, probe)) &&
        gst_element_link_many(probe ? probe : out, convert, resample, sink, nullptr))
        m_pLoudspeaker = out;
}

void deviceSound::buildMicrophone(GstElement* source, bool echo)
{
    shorten(source);
    gst_bin_add(GST_BIN(m_pPipeline), source);
    GstElement* convert = add("audioconvert");
    GstElement* resample = add("audioresample");
    GstElement* clean = echo ? add("webrtcdsp") : nullptr;
    GstElement* sink = add("appsink");
    if (!convert || !resample || (echo && !clean) || !sink)
        return;
    GstCaps* caps = soundCaps();
    g_object_set(sink, "caps", caps, "sync", FALSE, "async", FALSE, "enable-last-sample", FALSE, nullptr);
    gst_caps_unref(caps);
    if (clean)
        g_object_set(clean, "probe", kProbe, "echo-cancel", m_pLoudspeaker != nullptr, "delay-agnostic", TRUE,
                     nullptr);
    GstAppSinkCallbacks callbacks = {};
    callbacks.new_sample = [](GstAppSink* from, gpointer self) {
        static_cast<deviceSound*>(self)->onHeard(GST_ELEMENT(from));
        return GST_FLOW_OK;
    };
    gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, this, nullptr);
    gst_element_link_many(source, convert, resample, clean ? clean : sink, nullptr);
    if (clean)
        gst_element_link(clean, sink);
}

void deviceSound::close()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_pOut = nullptr;
    }
    m_watch.reset();
    m_pLoudspeaker = nullptr;
    if (m_pPipeline) {
        gst_element_set_state(m_pPipeline, GST_STATE_NULL);
        gst_object_unref(m_pPipeline);
        m_pPipeline = nullptr;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_heard.clear();
}

void deviceSound::onHeard(GstElement* from)
{
    GstSample* sample = gst_app_sink_pull_sample(GST_APP_SINK(from));
    GstBuffer* buffer = sample ? gst_sample_get_buffer(sample) : nullptr;
    GstMapInfo map;
    if (buffer && gst_buffer_map(buffer, &map, GST_MAP_READ)) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto* samples = reinterpret_cast<const short*>(map.data);
        m_heard.put(samples, map.size / sizeof(short));
        gst_buffer_unmap(buffer, &map);
    }
    if (sample)
        gst_sample_unref(sample);
}

void deviceSound::read(short* frame)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_heard.take(frame);
}

void deviceSound::write(const short* frame)
{
    constexpr gsize kBytes = sizeof(short) * callSession::FRAME_SAMPLES;
    GstBuffer* buffer = gst_buffer_new_allocate(nullptr, kBytes, nullptr);
    GstMapInfo map;
    if (gst_buffer_map(buffer, &map, GST_MAP_WRITE)) {
        auto* samples = reinterpret_cast<short*>(map.data);
        std::copy_n(frame, callSession::FRAME_SAMPLES, samples);
        m_volume.apply(samples, callSession::FRAME_SAMPLES, soundCoder::SAMPLE_RATE);
        gst_buffer_unmap(buffer, &map);
    }
    GST_BUFFER_DURATION(buffer) = callSession::FRAME_MS * GST_MSECOND;
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_pOut)
        gst_app_src_push_buffer(GST_APP_SRC(m_pOut), buffer);
    else
        gst_buffer_unref(buffer);
}
