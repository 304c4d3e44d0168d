#include "players/mediaStream.h"
#include "players/soundEnd.h"
#include "players/soundSink.h"
#include "support/host/trace.h"
#include <gst/app/gstappsink.h>

struct tagDecoder
{
    const char* pName; // of the stream
    const char* pDepayloader;
    const char* pDecoder;
};

namespace {

constexpr tagDecoder kDecoders[] = {
    {"H264", "rtph264depay", "avdec_h264"},       {"MP4V-ES", "rtpmp4vdepay", "avdec_mpeg4"},
    {"H263-1998", "rtph263pdepay", "avdec_h263"}, {"H263-2000", "rtph263pdepay", "avdec_h263"},
    {"H263", "rtph263depay", "avdec_h263"},       {"mpeg4-generic", "rtpmp4gdepay", "avdec_aac"},
    {"MP4A-LATM", "rtpmp4adepay", "avdec_aac"},   {"PCMA", "rtppcmadepay", "alawdec"},
    {"PCMU", "rtppcmudepay", "mulawdec"},
};

constexpr int kReceiveBytes = 1 << 20; // in the socket
constexpr int kPacketBytes = 16384;    // larger than those of the player
constexpr guint kWaitingBytes = 8 << 20;
constexpr int kDecodeThreads = 1; // more cost more, and keep the last pictures of a film back
// Pictures decoded before their time: all that come at once, so that the decoder rarely wakes, unless they
// are very large.
constexpr guint kAhead = 16;
constexpr guint kAheadBytes = 8 << 20;

const tagDecoder* decoderOf(const QByteArray& name)
{
    for (const tagDecoder& decoder : kDecoders) {
        if (qstricmp(decoder.pName, name.constData()) == 0)
            return &decoder;
    }
    return nullptr;
}

// The time that all pipelines count from.
GstClockTime commonStart(GstClock* clock)
{
    static const GstClockTime start = gst_clock_get_time(clock);
    return start;
}

// Pictures may lie in memory as the decoder likes it: it makes no copy then.
GstPadProbeReturn onQuery(GstPad*, GstPadProbeInfo* info, gpointer)
{
    GstQuery* query = GST_PAD_PROBE_INFO_QUERY(info);
    if (GST_QUERY_TYPE(query) != GST_QUERY_ALLOCATION)
        return GST_PAD_PROBE_OK;
    gst_query_add_allocation_meta(query, GST_VIDEO_META_API_TYPE, nullptr);
    return GST_PAD_PROBE_HANDLED;
}

} // namespace

mediaStream::mediaStream(const tagIncoming& incoming, playClock& clock, const PictureHandler& onPicture)
    : m_incoming(incoming), m_onPicture(onPicture), m_times(clock, incoming.stream.nRate, bool(onPicture))
{
}

mediaStream::~mediaStream()
{
    m_watch.reset();
    if (!m_pPipeline)
        return;
    gst_element_set_state(m_pPipeline, GST_STATE_NULL);
    gst_object_unref(m_pPipeline);
}

bool mediaStream::start()
{
    m_pPipeline = gst_pipeline_new(nullptr);
    m_watch = std::make_unique<busWatch>(m_pPipeline, m_incoming.stream.name, [this](busWatch::EVENT event) {
        m_bFailed = m_bFailed || event == busWatch::EVENT::FAILED;
    });
    if (build()) {
        joinClock();
        m_bFailed = gst_element_set_state(m_pPipeline, GST_STATE_PAUSED) == GST_STATE_CHANGE_FAILURE;
    } else {
        m_bFailed = true;
    }
    if (m_bFailed)
        nuxTrace(TRACE_NOTE, "the stream %s on port %d cannot be shown", m_incoming.stream.name.constData(),
                 m_incoming.nPort);
    return !m_bFailed;
}

bool mediaStream::takeFrom(int port)
{
    if (port == m_nFrom)
        return true;
    if (m_nFrom != 0 || !loopbackTakeFrom(m_socket.get(), port))
        return false;
    m_nFrom = port;
    if (!m_bUnheard)
        gst_element_set_state(m_pPipeline, GST_STATE_PLAYING);
    return true;
}

GstElement* mediaStream::add(const char* name)
{
    GstElement* element = gst_element_factory_make(name, nullptr);
    if (!element || !gst_bin_add(GST_BIN(m_pPipeline), element)) {
        nuxTrace(TRACE_NOTE, "the element %s is missing", name);
        return nullptr;
    }
    return element;
}

bool mediaStream::build()
{
    const tagDecoder* kind = decoderOf(m_incoming.stream.name);
    GstElement* depayloader = kind ? buildReceiver(*kind) : nullptr;
    if (!depayloader)
        return false;
    return m_onPicture ? buildPicture(*kind, depayloader) : buildSound(*kind, depayloader);
}

GstElement* mediaStream::buildReceiver(const tagDecoder& kind)
{
    GstCaps* caps = rtpDescription::toCaps(m_incoming.stream, bool(m_onPicture));
    m_socket = loopbackSocket(m_incoming.nPort);
    if (!caps || !m_socket) {
        gst_clear_caps(&caps);
        return nullptr;
    }
    GstElement* source = add("udpsrc");
    GstElement* waiting = add("queue");
    GstElement* depayloader = add(kind.pDepayloader);
    if (source)
        g_object_set(source, "socket", m_socket.get(), "caps", caps, "buffer-size", kReceiveBytes, "mtu",
                     guint(kPacketBytes), "auto-multicast", FALSE, nullptr);
    gst_caps_unref(caps);
    if (!source || !waiting || !depayloader || !gst_element_link_many(source, waiting, depayloader, nullptr))
        return nullptr;
    // The loopback keeps the order of packets; they wait here until they are due.
    g_object_set(waiting, "max-size-buffers", 0u, "max-size-bytes", kWaitingBytes, "max-size-time",
                 guint64(0), nullptr);
    GstPad* from = gst_element_get_static_pad(source, "src");
    GstPad* to = gst_element_get_static_pad(depayloader, "sink");
    m_times.watch(from, to);
    gst_object_unref(from);
    gst_object_unref(to);
    return depayloader;
}

bool mediaStream::buildPicture(const tagDecoder& kind, GstElement* depayloader)
{
    GstElement* decoder = add(kind.pDecoder);
    GstElement* ahead = add("queue");
    GstElement* sink = add("appsink");
    GstElement* turned = decoder ? addTurn(decoder) : nullptr;
    if (!turned || !ahead || !sink || !gst_element_link(depayloader, decoder) ||
        !gst_element_link_many(turned, ahead, sink, nullptr))
        return false;
    if (m_incoming.bDecodeOrder)
        m_order.watch(decoder);
    if (g_object_class_find_property(G_OBJECT_GET_CLASS(decoder), "max-threads"))
        g_object_set(decoder, "max-threads", kDecodeThreads, nullptr);
    GstCaps* caps = gst_caps_new_empty_simple("video/x-raw");
    g_object_set(sink, "caps", caps, nullptr);
    gst_caps_unref(caps);
    g_object_set(ahead, "max-size-buffers", kAhead, "max-size-bytes", kAheadBytes, "max-size-time",
                 guint64(0), nullptr);
    GstPad* pad = gst_element_get_static_pad(ahead, "sink");
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM, onQuery, nullptr, nullptr);
    gst_object_unref(pad);
    g_object_set(sink, "sync", TRUE, "async", FALSE, "qos", FALSE, "enable-last-sample", FALSE,
                 "emit-signals", FALSE, nullptr);
    GstAppSinkCallbacks callbacks = {};
    callbacks.new_sample = [](GstAppSink* from, gpointer self) {
        static_cast<mediaStream*>(self)->onPicture(GST_ELEMENT(from));
        return GST_FLOW_OK;
    };
    gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, this, nullptr);
    return true;
}

// The element from which pictures come upright.
GstElement* mediaStream::addTurn(GstElement* decoder)
{
    static const char* const kMethods[] = {"none",
                                           "clockwise",
                                           "rotate-180",
                                           "counterclockwise",
                                           "horizontal-flip",
                                           "upper-right-diagonal",
                                           "vertical-flip",
                                           "upper-left-diagonal"};
    if (m_incoming.nQuarterTurns == 0)
        return decoder;
    GstElement* turn = add("videoflip");
    if (!turn || !gst_element_link(decoder, turn))
        return nullptr;
    gst_util_set_object_arg(G_OBJECT(turn), "method", kMethods[m_incoming.nQuarterTurns]);
    return turn;
}

void mediaStream::onPicture(GstElement* sink)
{
    GstSample* sample = gst_app_sink_pull_sample(GST_APP_SINK(sink));
    if (!sample)
        return;
    if (streamTimes::isUnseen(gst_sample_get_buffer(sample))) {
        gst_sample_unref(sample);
        return;
    }
    GstVideoInfo info;
    GstVideoFrame frame;
    if (gst_video_info_from_caps(&info, gst_sample_get_caps(sample)) &&
        gst_video_frame_map(&frame, &info, gst_sample_get_buffer(sample), GST_MAP_READ)) {
        m_onPicture(frame);
        gst_video_frame_unmap(&frame);
    }
    gst_sample_unref(sample);
}

bool mediaStream::buildSound(const tagDecoder& kind, GstElement* depayloader)
{
    GstElement* sink = newSoundSink();
    if (!sink) {
        // Nobody hears it: the port is held, so that nobody else has it and the player meets no error, and
        // the system drops what comes.
        m_bUnheard = true;
        GstElement* silence = add("fakesink");
        if (silence)
            g_object_set(silence, "sync", FALSE, "async", FALSE, nullptr);
        return silence && gst_element_link(depayloader, silence);
    }
    GstElement* decoder = add(kind.pDecoder);
    GstElement* end = addSoundEnd(m_pPipeline, sink, m_volume);
    return decoder && end && gst_element_link_many(depayloader, decoder, end, nullptr);
}

void mediaStream::joinClock()
{
    GstClock* clock = gst_system_clock_obtain();
    gst_pipeline_use_clock(GST_PIPELINE(m_pPipeline), clock);
    gst_element_set_start_time(m_pPipeline, GST_CLOCK_TIME_NONE);
    gst_element_set_base_time(m_pPipeline, commonStart(clock));
    // The reserve is in the times of the packets already.
    gst_pipeline_set_latency(GST_PIPELINE(m_pPipeline), 0);
    gst_object_unref(clock);
}
