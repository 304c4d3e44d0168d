#include "players/deviceSound.h"
#include "players/soundChain.h"
#include "players/soundSink.h"
#include "players/soundSource.h"
#include "support/host/trace.h"
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <gst/app/gstappsrc.h>
#include <gst/base/gstbasesink.h>
#include <gst/base/gstbasesrc.h>

namespace {

constexpr gint64 kDeviceUs = 60000;
constexpr gint64 kDeviceStepUs = 10000;
const char* const kProbe = "hxCallEcho";
constexpr guint64 kMaxWaiting = 3 * sizeof(short) * callSession::FRAME_SAMPLES;

const char* const kSound = "audio/x-raw,format=S16LE,layout=interleaved,rate=16000,channels=1";

bool canBe(GstPad* pad, const char* wanted)
{
    GstCaps* caps = gst_caps_from_string(wanted);
    GstCaps* possible = gst_pad_query_caps(pad, caps);
    const bool can = !gst_caps_is_empty(possible);
    gst_caps_unref(possible);
    gst_caps_unref(caps);
    return can;
}

// Behind those that bins show. The caller's.
GstPad* padOf(GstElement* device, const char* name)
{
    GstPad* pad = gst_element_get_static_pad(device, name);
    while (pad && GST_IS_GHOST_PAD(pad)) {
        GstPad* target = gst_ghost_pad_get_target(GST_GHOST_PAD(pad));
        gst_object_unref(pad);
        pad = target;
    }
    return pad;
}

bool takesFrames(GstElement* sink)
{
    GstPad* pad = padOf(sink, "sink");
    const bool takes = pad && canBe(pad, kSound);
    gst_clear_object(&pad);
    return takes;
}

// Only who makes the sound chooses how it is: what reads a file has what is there.
bool makesFrames(GstElement* source)
{
    GstPad* pad = padOf(source, "src");
    GstElement* maker = pad ? gst_pad_get_parent_element(pad) : nullptr;
    const bool makes = maker && GST_IS_BASE_SRC(maker) && canBe(pad, kSound);
    gst_clear_object(&maker);
    gst_clear_object(&pad);
    return makes;
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
    m_pHeard = soundChain::newPad(kSound, GST_PAD_SINK);
    gst_pad_set_element_private(m_pHeard, this);
    gst_pad_set_chain_function(m_pHeard, onHeard);
    gst_pad_set_active(m_pHeard, TRUE);
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

// Each part on the way costs time with each frame: these two are there for a device that has other sound.
GstElement* deviceSound::addConverter(GstElement* from)
{
    GstElement* convert = add("audioconvert");
    GstElement* resample = add("audioresample");
    const bool isLinked = convert && resample && gst_element_link_many(from, convert, resample, nullptr);
    return isLinked ? resample : nullptr;
}

void deviceSound::buildLoudspeaker(GstElement* sink, bool echo)
{
    shorten(sink);
    const bool isDirect = takesFrames(sink);
    gst_bin_add(GST_BIN(m_pPipeline), sink);
    GstElement* out = add("appsrc");
    if (!out)
        return;
    GstCaps* caps = gst_caps_from_string(kSound);
    g_object_set(out, "caps", caps, "format", GST_FORMAT_TIME, "is-live", TRUE, "do-timestamp", TRUE,
                 "emit-signals", FALSE, "max-bytes", kMaxWaiting, "leaky-type", GST_APP_LEAKY_TYPE_DOWNSTREAM,
                 nullptr);
    gst_caps_unref(caps);
    GstElement* last = out;
    GstElement* probe = echo ? add("webrtcechoprobe", kProbe) : nullptr;
    if (probe && gst_element_link(last, probe))
        last = probe;
    if (!isDirect)
        last = addConverter(last);
    if (last && gst_element_link(last, sink))
        m_pLoudspeaker = out;
}

void deviceSound::buildMicrophone(GstElement* source, bool echo)
{
    shorten(source);
    const bool isDirect = makesFrames(source);
    gst_bin_add(GST_BIN(m_pPipeline), source);
    GstElement* last = isDirect ? source : addConverter(source);
    GstElement* clean = echo ? add("webrtcdsp") : nullptr;
    if (!last || (echo && !clean))
        return;
    if (clean) {
        g_object_set(clean, "probe", kProbe, "echo-cancel", m_pLoudspeaker != nullptr, "delay-agnostic", TRUE,
                     nullptr);
        gst_element_link(last, clean);
        last = clean;
    }
    GstPad* end = gst_element_get_static_pad(last, "src");
    gst_pad_link(end, m_pHeard);
    gst_object_unref(end);
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
        gst_pad_set_active(m_pHeard, FALSE);
        gst_clear_object(&m_pHeard);
        gst_clear_object(&m_pPipeline);
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_heard.clear();
}

GstFlowReturn deviceSound::onHeard(GstPad* pad, GstObject*, GstBuffer* buffer)
{
    auto* self = static_cast<deviceSound*>(gst_pad_get_element_private(pad));
    GstMapInfo map;
    if (gst_buffer_map(buffer, &map, GST_MAP_READ)) {
        const std::lock_guard<std::mutex> lock(self->m_mutex);
        self->m_heard.put(reinterpret_cast<const short*>(map.data), map.size / sizeof(short));
        gst_buffer_unmap(buffer, &map);
    }
    gst_buffer_unref(buffer);
    return GST_FLOW_OK;
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
