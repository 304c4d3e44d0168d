#include "players/filmStreams.h"
#include "players/loopback.h"
#include "support/host/trace.h"

namespace {

constexpr int kSoundPayload = 96;
constexpr int kPcmaPayload = 8;
constexpr int kPicturePayload = 97;
constexpr int kPcmaRate = 8000;                // Hz
constexpr int kPacketBytes = 15000;            // the loopback takes large packets, and few are cheap
constexpr guint kSendBytes = 1 << 20;          // in the socket
constexpr guint64 kQueueTime = 3 * GST_SECOND; // a file may keep sound and picture so far apart
constexpr guint kQueueBytes = 8 << 20;
// What is due within one such time goes out at its beginning: few wake-ups cost little, and the receiver
// keeps everything until it is due anyway.
constexpr GstClockTime kTurn = 120 * GST_MSECOND;

bool isKind(const GstStructure* kind, const char* name)
{
    return gst_structure_has_name(kind, name);
}

int intOf(const GstStructure* kind, const char* field)
{
    int value = 0;
    gst_structure_get_int(kind, field, &value);
    return value;
}

GstCaps* capsOf(GstPad* pad)
{
    GstCaps* caps = gst_pad_get_current_caps(pad);
    return caps ? caps : gst_pad_query_caps(pad, nullptr);
}

tagStream streamOf(GstElement* payloader)
{
    tagStream stream;
    GstPad* pad = payloader ? gst_element_get_static_pad(payloader, "src") : nullptr;
    GstCaps* caps = pad ? gst_pad_get_current_caps(pad) : nullptr;
    if (caps)
        stream = rtpDescription::fromCaps(caps);
    gst_clear_caps(&caps);
    gst_clear_object(&pad);
    return stream;
}

// The beginning of the turn that a packet belongs to; the packet still lasts until its own time, so that the
// end of the film comes when it did.
void sendWithItsTurn(GstBuffer* packet, const GstSegment* segment)
{
    const GstClockTime due = gst_segment_to_running_time(segment, GST_FORMAT_TIME, GST_BUFFER_PTS(packet));
    if (!GST_CLOCK_TIME_IS_VALID(due))
        return;
    const GstClockTime turn =
        gst_segment_position_from_running_time(segment, GST_FORMAT_TIME, due - due % kTurn);
    if (!GST_CLOCK_TIME_IS_VALID(turn) || turn > GST_BUFFER_PTS(packet))
        return;
    GST_BUFFER_DURATION(packet) = GST_BUFFER_PTS(packet) - turn;
    GST_BUFFER_PTS(packet) = GST_BUFFER_DTS(packet) = turn;
}

GstPadProbeReturn onPacket(GstPad* pad, GstPadProbeInfo* info, gpointer)
{
    GstEvent* event = gst_pad_get_sticky_event(pad, GST_EVENT_SEGMENT, 0);
    if (!event)
        return GST_PAD_PROBE_OK;
    const GstSegment* segment = nullptr;
    gst_event_parse_segment(event, &segment);
    if (info->type & GST_PAD_PROBE_TYPE_BUFFER_LIST) {
        // The packets of one picture: their time is that of the first.
        GstBufferList* list = gst_buffer_list_make_writable(GST_PAD_PROBE_INFO_BUFFER_LIST(info));
        if (gst_buffer_list_length(list) > 0)
            sendWithItsTurn(gst_buffer_list_get_writable(list, 0), segment);
        info->data = list;
    } else {
        GstBuffer* packet = gst_buffer_make_writable(GST_PAD_PROBE_INFO_BUFFER(info));
        sendWithItsTurn(packet, segment);
        info->data = packet;
    }
    gst_event_unref(event);
    return GST_PAD_PROBE_OK;
}

void linkDecoded(GstElement*, GstPad* pad, gpointer into)
{
    GstPad* sink = gst_element_get_static_pad(GST_ELEMENT(into), "sink");
    if (!gst_pad_is_linked(sink))
        gst_pad_link(pad, sink);
    gst_object_unref(sink);
}

} // namespace

filmStreams::filmStreams(const QByteArray& file, const tagTarget* target)
    : m_bSend(target), m_target(target ? *target : tagTarget())
{
    m_pPipeline = gst_pipeline_new(nullptr);
    GstElement* source = add("filesrc");
    GstElement* parser = add("parsebin");
    if (!source || !parser || !gst_element_link(source, parser)) {
        gst_clear_object(&m_pPipeline);
        return;
    }
    g_object_set(source, "location", file.constData(), nullptr);
    g_signal_connect(parser, "pad-added", G_CALLBACK(onPad), this);
}

filmStreams::~filmStreams()
{
    if (!m_pPipeline)
        return;
    gst_element_set_state(m_pPipeline, GST_STATE_NULL);
    gst_object_unref(m_pPipeline);
}

GstElement* filmStreams::add(const char* name)
{
    GstElement* element = gst_element_factory_make(name, nullptr);
    if (!element || !gst_bin_add(GST_BIN(m_pPipeline), element)) {
        nuxTrace(TRACE_NOTE, "the element %s is missing", name);
        return nullptr;
    }
    return element;
}

void filmStreams::onPad(GstElement*, GstPad* pad, gpointer self)
{
    static_cast<filmStreams*>(self)->addStream(pad);
}

void filmStreams::addStream(GstPad* pad)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    GstCaps* caps = capsOf(pad);
    const GstStructure* kind = caps && !gst_caps_is_empty(caps) && !gst_caps_is_any(caps)
                                   ? gst_caps_get_structure(caps, 0)
                                   : nullptr;
    const bool isTaken = kind && (addPicture(pad, kind) || addSound(pad, kind));
    if (!isTaken)
        addDrain(pad);
    gst_clear_caps(&caps);
}

bool filmStreams::addPicture(GstPad* pad, const GstStructure* kind)
{
    if (m_pPicture || (m_bSend && m_target.nPicturePort == 0))
        return false;
    const char* name = nullptr;
    if (isKind(kind, "video/x-h264"))
        name = "rtph264pay";
    else if (isKind(kind, "video/mpeg") && intOf(kind, "mpegversion") == 4)
        name = "rtpmp4vpay";
    else if (isKind(kind, "video/x-h263"))
        name = "rtph263ppay";
    else
        return false;
    m_pPicture = addPayloader(name, kPicturePayload, 0);
    if (!m_pPicture)
        return false;
    // Whoever joins late, or decoded another film before, learns the parameters from the stream.
    if (g_object_class_find_property(G_OBJECT_GET_CLASS(m_pPicture), "config-interval"))
        g_object_set(m_pPicture, "config-interval", -1, nullptr);
    return link(pad, {add("queue"), m_pPicture, addEnd(false)});
}

bool filmStreams::addSound(GstPad* pad, const GstStructure* kind)
{
    const bool isSound = g_str_has_prefix(gst_structure_get_name(kind), "audio/");
    if (!isSound || m_pSound || (m_bSend && m_target.nSoundPort == 0))
        return false;
    const int channels = intOf(kind, "channels");
    const int version = intOf(kind, "mpegversion");
    if (isKind(kind, "audio/mpeg") && (version == 4 || version == 2)) {
        m_pSound = addPayloader("rtpmp4gpay", kSoundPayload, channels);
        return m_pSound && link(pad, {add("queue"), add("aacparse"), m_pSound, addEnd(true)});
    }
    if (isKind(kind, "audio/x-alaw") && intOf(kind, "rate") == kPcmaRate && channels == 1) {
        m_pSound = addPayloader("rtppcmapay", kPcmaPayload, channels);
        return m_pSound && link(pad, {add("queue"), m_pSound, addEnd(true)});
    }
    return addPcma(pad);
}

// Sound of any other kind goes out as what every receiver knows.
bool filmStreams::addPcma(GstPad* pad)
{
    m_pSound = addPayloader("rtppcmapay", kPcmaPayload, 1);
    GstElement* convert = add("audioconvert");
    GstElement* resample = add("audioresample");
    GstElement* encode = add("alawenc");
    GstElement* end = addEnd(true);
    if (!m_pSound || !convert || !resample || !encode || !end ||
        !gst_element_link_many(convert, resample, encode, m_pSound, end, nullptr))
        return false;
    for (GstElement* element : {convert, resample, encode, m_pSound, end})
        gst_element_sync_state_with_parent(element);
    addDecoder(pad, convert);
    return true;
}

void filmStreams::addDecoder(GstPad* pad, GstElement* into)
{
    GstElement* queue = add("queue");
    GstElement* decoder = add("decodebin");
    if (!queue || !decoder)
        return;
    g_signal_connect(decoder, "pad-added", G_CALLBACK(linkDecoded), into);
    link(pad, {queue, decoder});
}

GstElement* filmStreams::addPayloader(const char* name, int payload, int channels)
{
    GstElement* payloader = add(name);
    if (!payloader)
        return nullptr;
    // Both streams count from the same instant, so that the receiver can put them together again.
    g_object_set(payloader, "pt", guint(payload), "timestamp-offset", 0u, "ssrc", m_target.nSource, "mtu",
                 guint(kPacketBytes), "perfect-rtptime", FALSE, nullptr);
    if (channels > 0)
        m_nChannels = channels;
    return payloader;
}

GstElement* filmStreams::addEnd(bool isSound)
{
    GstElement* end = add(m_bSend ? "udpsink" : "fakesink");
    if (!end || !m_bSend)
        return end;
    const int port = isSound ? m_target.nSoundPort : m_target.nPicturePort;
    g_object_set(end, "host", loopbackAddress().constData(), "port", port, "buffer-size", int(kSendBytes),
                 "qos", FALSE, "enable-last-sample", FALSE, nullptr);
    GstPad* pad = gst_element_get_static_pad(end, "sink");
    gst_pad_add_probe(pad, GstPadProbeType(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_BUFFER_LIST),
                      onPacket, nullptr, nullptr);
    gst_object_unref(pad);
    return end;
}

bool filmStreams::link(GstPad* pad, const QList<GstElement*>& chain)
{
    if (chain.contains(nullptr))
        return false;
    g_object_set(chain.first(), "max-size-buffers", 0u, "max-size-time", kQueueTime, "max-size-bytes",
                 kQueueBytes, nullptr);
    for (qsizetype i = 0; i + 1 < chain.size(); ++i) {
        if (!gst_element_link(chain[i], chain[i + 1]))
            return false;
    }
    for (qsizetype i = chain.size() - 1; i >= 0; --i)
        gst_element_sync_state_with_parent(chain[i]);
    GstPad* sink = gst_element_get_static_pad(chain.first(), "sink");
    const bool linked = gst_pad_link(pad, sink) == GST_PAD_LINK_OK;
    gst_object_unref(sink);
    return linked;
}

// A stream that nobody wants must not stop the others.
void filmStreams::addDrain(GstPad* pad)
{
    GstElement* drain = add("fakesink");
    if (!drain)
        return;
    g_object_set(drain, "async", FALSE, "sync", FALSE, nullptr);
    gst_element_sync_state_with_parent(drain);
    GstPad* sink = gst_element_get_static_pad(drain, "sink");
    gst_pad_link(pad, sink);
    gst_object_unref(sink);
}

bool filmStreams::describe(MOV_SDP& sdp)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    tagStream sound = streamOf(m_pSound);
    sound.nChannels = sound.name.isEmpty() ? 0 : m_nChannels;
    const tagStream picture = streamOf(m_pPicture);
    rtpDescription::store(sound, picture, sdp);
    return !sound.name.isEmpty() || !picture.name.isEmpty();
}

bool filmStreams::describeFile(const QByteArray& file, int maxMs, MOV_SDP& sdp)
{
    filmStreams film(file, nullptr);
    if (!film.pipeline())
        return false;
    gst_element_set_state(film.pipeline(), GST_STATE_PAUSED);
    GstBus* bus = gst_element_get_bus(film.pipeline());
    GstMessage* message = gst_bus_timed_pop_filtered(
        bus, GstClockTime(maxMs) * GST_MSECOND,
        GstMessageType(GST_MESSAGE_ASYNC_DONE | GST_MESSAGE_ERROR | GST_MESSAGE_EOS));
    const bool ready = message && GST_MESSAGE_TYPE(message) == GST_MESSAGE_ASYNC_DONE;
    gst_clear_message(&message);
    gst_object_unref(bus);
    if (ready && film.describe(sdp))
        return true;
    nuxTrace(TRACE_NOTE, "%s: no stream that can be played", file.constData());
    return false;
}
