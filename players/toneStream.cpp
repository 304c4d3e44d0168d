#include "players/toneStream.h"
#include "players/filmParts.h"
#include "players/soundEnd.h"
#include "players/soundSink.h"
#include "support/host/trace.h"
#include <cstring>
#include <gst/app/gstappsrc.h>
#include <gst/audio/audio.h>

namespace {

int onChoice(GstElement*, GstPad*, GstCaps*, GstElementFactory* factory, gpointer)
{
    const bool isPart = filmParts::choose(factory) == filmParts::TAKE;
    return isPart ? filmParts::TAKE : filmParts::chooseForSound(factory);
}

// The first sound of the file is the tone.
void onDecoded(GstElement*, GstPad* pad, gpointer into)
{
    GstPad* sink = gst_element_get_static_pad(GST_ELEMENT(into), "sink");
    if (!gst_pad_is_linked(sink))
        gst_pad_link(pad, sink);
    gst_object_unref(sink);
}

GstCaps* sampleCaps()
{
    return gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING, GST_AUDIO_NE(F32), "layout",
                               G_TYPE_STRING, "interleaved", "rate", G_TYPE_INT, int(toneStream::SAMPLE_RATE),
                               "channels", G_TYPE_INT, 1, nullptr);
}

GstBuffer* bufferOf(const std::vector<float>& samples)
{
    const gsize size = samples.size() * sizeof(float);
    GstBuffer* buffer = gst_buffer_new_allocate(nullptr, size, nullptr);
    gst_buffer_fill(buffer, 0, samples.data(), size);
    GST_BUFFER_PTS(buffer) = 0;
    GST_BUFFER_DURATION(buffer) =
        gst_util_uint64_scale_int(samples.size(), GST_SECOND, toneStream::SAMPLE_RATE);
    return buffer;
}

} // namespace

toneStream::~toneStream()
{
    m_watch.reset();
    if (!m_pPipeline)
        return;
    gst_element_set_state(m_pPipeline, GST_STATE_NULL);
    gst_object_unref(m_pPipeline);
}

GstElement* toneStream::add(const char* name)
{
    GstElement* element = gst_element_factory_make(name, nullptr);
    if (!element || !gst_bin_add(GST_BIN(m_pPipeline), element)) {
        nuxTrace(TRACE_NOTE, "the element %s is missing", name);
        return nullptr;
    }
    return element;
}

GstElement* toneStream::build()
{
    GstElement* sink = newSoundSink();
    if (!sink)
        return nullptr;
    m_pPipeline = gst_pipeline_new(nullptr);
    m_watch =
        std::make_unique<busWatch>(m_pPipeline, m_name, [this](busWatch::EVENT event) { onEvent(event); });
    return addSoundEnd(m_pPipeline, sink, m_volume);
}

bool toneStream::startFile(const QByteArray& file, bool loop)
{
    m_bLoop = loop;
    GstElement* end = build();
    if (!m_pPipeline)
        return true;
    GstElement* source = add("filesrc");
    GstElement* decoder = add("decodebin");
    if (!end || !source || !decoder || !gst_element_link(source, decoder))
        return false;
    g_object_set(source, "location", file.constData(), nullptr);
    g_signal_connect(decoder, "autoplug-select", G_CALLBACK(onChoice), nullptr);
    g_signal_connect(decoder, "pad-added", G_CALLBACK(onDecoded), end);
    return play(GST_STATE_PAUSED);
}

bool toneStream::startSamples(const std::vector<float>& samples)
{
    GstElement* end = build();
    if (!m_pPipeline)
        return true;
    GstElement* source = add("appsrc");
    if (!end || !source || !gst_element_link(source, end))
        return false;
    GstCaps* caps = sampleCaps();
    g_object_set(source, "caps", caps, "format", GST_FORMAT_TIME, nullptr);
    gst_caps_unref(caps);
    if (!play(GST_STATE_PLAYING))
        return false;
    gst_app_src_push_buffer(GST_APP_SRC(source), bufferOf(samples));
    gst_app_src_end_of_stream(GST_APP_SRC(source));
    return true;
}

bool toneStream::play(GstState first)
{
    return gst_element_set_state(m_pPipeline, first) != GST_STATE_CHANGE_FAILURE;
}

void toneStream::onEvent(busWatch::EVENT event)
{
    switch (event) {
    case busWatch::EVENT::READY:
        begin();
        break;
    case busWatch::EVENT::SEGMENT:
    case busWatch::EVENT::END:
        if (!m_bLoop)
            over(false);
        else if (m_turn.elapsed() < SHORTEST_TURN_MS ||
                 !turn(event == busWatch::EVENT::SEGMENT
                           ? GST_SEEK_FLAG_SEGMENT
                           : GstSeekFlags(GST_SEEK_FLAG_SEGMENT | GST_SEEK_FLAG_FLUSH)))
            over(true);
        break;
    case busWatch::EVENT::FAILED:
        over(true);
        break;
    }
}

// A turn that is asked for before anything has sounded ends without the end of the stream.
void toneStream::begin()
{
    if (m_bLoop && !m_bSeeks) {
        m_bSeeks = true;
        turn(GstSeekFlags(GST_SEEK_FLAG_SEGMENT | GST_SEEK_FLAG_FLUSH));
    }
    m_turn.start();
    gst_element_set_state(m_pPipeline, GST_STATE_PLAYING);
}

bool toneStream::turn(GstSeekFlags flags)
{
    m_turn.start();
    return gst_element_seek(m_pPipeline, 1.0, GST_FORMAT_TIME, flags, GST_SEEK_TYPE_SET, 0,
                            GST_SEEK_TYPE_NONE, 0);
}

void toneStream::over(bool failed)
{
    const EndCall onEnd = std::move(m_onEnd);
    m_onEnd = nullptr;
    if (onEnd)
        onEnd(failed);
}
