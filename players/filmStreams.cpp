#include "players/filmStreams.h"
#include "players/filmParts.h"
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
constexpr guint64 kAtOnce = 1; // no packet waits for more pictures than its own

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

// The sound of films is sent in these rates, which every decoder of it knows.
GstCaps* codedSoundCaps()
{
    return gst_caps_from_string("audio/x-raw,channels=[1,2],rate={8000,11025,12000,16000,22050,24000,32000,"
                                "44100,48000}");
}

int sentChannels(GstElement* payloader)
{
    GstPad* pad = gst_element_get_static_pad(payloader, "sink");
    GstCaps* caps = gst_pad_get_current_caps(pad);
    const int channels = caps ? intOf(gst_caps_get_structure(caps, 0), "channels") : 0;
    gst_clear_caps(&caps);
    gst_object_unref(pad);
    return channels;
}

int sentTurns(GstElement* payloader)
{
    GstPad* pad = gst_element_get_static_pad(payloader, "sink");
    const int turns = filmParts::quarterTurns(pad);
    gst_object_unref(pad);
    return turns;
}

bool tellsTimesToShow(GstElement* parser)
{
    bool tells = false;
    GstIterator* parts = gst_bin_iterate_recurse(GST_BIN(parser));
    GValue item = G_VALUE_INIT;
    while (gst_iterator_next(parts, &item) == GST_ITERATOR_OK) {
        GstElementFactory* factory = gst_element_get_factory(GST_ELEMENT(g_value_get_object(&item)));
        tells = tells || (factory && filmParts::tellsTimesToShow(factory));
        g_value_reset(&item);
    }
    g_value_unset(&item);
    gst_iterator_free(parts);
    return tells;
}

int onChoice(GstElement*, GstPad*, GstCaps*, GstElementFactory* factory, gpointer)
{
    return filmParts::choose(factory);
}

int onSoundChoice(GstElement*, GstPad*, GstCaps*, GstElementFactory* factory, gpointer)
{
    return filmParts::chooseForSound(factory);
}

void linkDecoded(GstElement*, GstPad* pad, gpointer into)
{
    GstPad* sink = gst_element_get_static_pad(GST_ELEMENT(into), "sink");
    if (!gst_pad_is_linked(sink))
        gst_pad_link(pad, sink);
    gst_object_unref(sink);
}

// What is in a stream that nobody wants goes no further: the drain would hold the first of it until all
// streams have begun, and with it those that come after it in the file.
GstPadProbeReturn dropContent(GstPad*, GstPadProbeInfo* info, gpointer)
{
    const bool isContent = !GST_IS_EVENT(GST_PAD_PROBE_INFO_DATA(info)) ||
                           GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) == GST_EVENT_GAP;
    return isContent ? GST_PAD_PROBE_DROP : GST_PAD_PROBE_OK;
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
    g_signal_connect(parser, "autoplug-select", G_CALLBACK(onChoice), nullptr);
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

void filmStreams::onPad(GstElement* parser, GstPad* pad, gpointer self)
{
    auto* film = static_cast<filmStreams*>(self);
    if (!tellsTimesToShow(parser))
        film->m_pictureTimes.setDecodeOrder();
    film->addStream(pad);
}

// What comes first: by then all streams of the film are known.
GstPadProbeReturn filmStreams::onDrained(GstPad*, GstPadProbeInfo*, gpointer self)
{
    static_cast<filmStreams*>(self)->failWithoutStreams();
    return GST_PAD_PROBE_REMOVE;
}

// Or everybody would wait for what never comes.
void filmStreams::failWithoutStreams()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_pSound && !m_pPicture)
        GST_ELEMENT_ERROR(m_pPipeline, STREAM, WRONG_TYPE, ("no stream that can be played"), (nullptr));
}

void filmStreams::addStream(GstPad* pad)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    GstCaps* caps = capsOf(pad);
    const GstStructure* kind = caps && !gst_caps_is_empty(caps) && !gst_caps_is_any(caps)
                                   ? gst_caps_get_structure(caps, 0)
                                   : nullptr;
    const bool isTaken = kind && (addPicture(pad, kind) || addSound(pad, caps));
    if (!isTaken)
        addDrain(pad);
    gst_clear_caps(&caps);
}

bool filmStreams::addPicture(GstPad* pad, const GstStructure* kind)
{
    if (m_pPicture || (m_bSend && (m_target.nPicturePort == 0 || !m_target.pPictureSocket)))
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
    m_pPicture = addPayloader(name, kPicturePayload);
    if (!m_pPicture)
        return false;
    // Whoever joins late, or decoded another film before, learns the parameters from the stream.
    if (g_object_class_find_property(G_OBJECT_GET_CLASS(m_pPicture), "config-interval"))
        g_object_set(m_pPicture, "config-interval", -1, nullptr);
    if (isKind(kind, "video/mpeg"))
        g_object_set(m_pPicture, "max-ptime", gint64(kAtOnce), nullptr);
    return link(pad, {add("queue"), m_pPicture, addEnd(m_pPicture, false)});
}

bool filmStreams::addSound(GstPad* pad, GstCaps* caps)
{
    const GstStructure* kind = gst_caps_get_structure(caps, 0);
    const bool isSound = g_str_has_prefix(gst_structure_get_name(kind), "audio/");
    if (!isSound || m_pSound || (m_bSend && (m_target.nSoundPort == 0 || !m_target.pSoundSocket)))
        return false;
    const int version = intOf(kind, "mpegversion");
    if (isKind(kind, "audio/mpeg") && (version == 4 || version == 2)) {
        m_pSound = addPayloader("rtpmp4gpay", kSoundPayload);
        return m_pSound && link(pad, {add("queue"), add("aacparse"), m_pSound, addEnd(m_pSound, true)});
    }
    if (isKind(kind, "audio/x-alaw") && intOf(kind, "rate") == kPcmaRate && intOf(kind, "channels") == 1) {
        m_pSound = addPayloader("rtppcmapay", kPcmaPayload);
        return m_pSound && link(pad, {add("queue"), m_pSound, addEnd(m_pSound, true)});
    }
    return addCodedSound(pad);
}

// Sound of any other kind goes out as AAC, which keeps its quality and which every receiver knows.
bool filmStreams::addCodedSound(GstPad* pad)
{
    GstElement* decoder = add("decodebin");
    GstElement* convert = add("audioconvert");
    GstElement* resample = add("audioresample");
    GstElement* form = add("capsfilter");
    GstElement* coder = add("avenc_aac");
    GstElement* parser = add("aacparse");
    m_pSound = addPayloader("rtpmp4gpay", kSoundPayload);
    GstElement* end = m_pSound ? addEnd(m_pSound, true) : nullptr;
    if (!decoder || !convert || !resample || !form || !coder || !parser || !end ||
        !gst_element_link_many(convert, resample, form, coder, parser, m_pSound, end, nullptr))
        return false;
    GstCaps* coded = codedSoundCaps();
    g_object_set(form, "caps", coded, nullptr);
    gst_caps_unref(coded);
    for (GstElement* element : {end, m_pSound, parser, coder, form, resample, convert})
        gst_element_sync_state_with_parent(element);
    g_signal_connect(decoder, "autoplug-select", G_CALLBACK(onSoundChoice), nullptr);
    g_signal_connect(decoder, "pad-added", G_CALLBACK(linkDecoded), convert);
    return link(pad, {add("queue"), decoder});
}

GstElement* filmStreams::addPayloader(const char* name, int payload)
{
    GstElement* payloader = add(name);
    // Both streams count from the same instant, so that the receiver can put them together again.
    if (payloader)
        g_object_set(payloader, "pt", guint(payload), "timestamp-offset", 0u, "ssrc", m_target.nSource, "mtu",
                     guint(kPacketBytes), "perfect-rtptime", FALSE, nullptr);
    return payloader;
}

GstElement* filmStreams::addEnd(GstElement* payloader, bool isSound)
{
    GstElement* end = add(m_bSend ? "udpsink" : "fakesink");
    if (!end)
        return nullptr;
    if (m_bSend)
        g_object_set(end, "host", loopbackAddress().constData(), "port",
                     int(isSound ? m_target.nSoundPort : m_target.nPicturePort), "socket",
                     isSound ? m_target.pSoundSocket : m_target.pPictureSocket, "close-socket", FALSE,
                     "buffer-size", int(kSendBytes), "qos", FALSE, "enable-last-sample", FALSE, nullptr);
    (isSound ? m_soundTimes : m_pictureTimes).watch(payloader, end);
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
    gst_pad_add_probe(sink, GST_PAD_PROBE_TYPE_BUFFER, onDrained, this, nullptr);
    gst_pad_add_probe(sink, GST_PAD_PROBE_TYPE_DATA_DOWNSTREAM, dropContent, nullptr, nullptr);
    gst_pad_link(pad, sink);
    gst_object_unref(sink);
}

bool filmStreams::describe(PLAYER_STREAMS& streams)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    tagStream sound = streamOf(m_pSound);
    const tagStream picture = streamOf(m_pPicture);
    streams = {};
    if (!sound.name.isEmpty())
        sound.nChannels = sentChannels(m_pSound);
    if (!picture.name.isEmpty()) {
        streams.nQuarterTurns = uint16_t(sentTurns(m_pPicture));
        streams.bDecodeOrder = m_pictureTimes.isDecodeOrder();
    }
    streams.nSoundFrom = uint16_t(loopbackPort(m_target.pSoundSocket));
    streams.nPictureFrom = uint16_t(loopbackPort(m_target.pPictureSocket));
    rtpDescription::store(sound, picture, streams.sdp);
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
    PLAYER_STREAMS streams = {};
    const bool described = ready && film.describe(streams);
    sdp = streams.sdp;
    if (described)
        return true;
    nuxTrace(TRACE_NOTE, "%s: no stream that can be played", file.constData());
    return false;
}
