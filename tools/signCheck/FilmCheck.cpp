#include "tools/signCheck/FilmCheck.h"
#include "players/filmParts.h"
#include "players/filmStreams.h"
#include <gst/pbutils/pbutils.h>
#include <mutex>

namespace {

constexpr int kMaxMs = 5000;
const char* const kPlayed = "phones show H.264, MPEG-4 part 2 and H.263";

// The kinds of a file's streams, as people call them.
struct Kinds
{
    QStringList pictures, sounds;
    bool isFilm = false; // something could be taken apart
};

// Streams that come while the file is taken apart.
class StreamList
{
public:
    explicit StreamList(const QByteArray& file);
    ~StreamList();
    Kinds read();

private:
    static void onPad(GstElement* parser, GstPad* pad, gpointer self);
    void note(GstPad* pad);

    GstElement* m_pPipeline = gst_pipeline_new(nullptr);
    std::mutex m_mutex;
    Kinds m_kinds;
};

QString nameOf(const GstCaps* caps)
{
    gchar* text = gst_pb_utils_get_codec_description(caps);
    const QString name = QString::fromUtf8(text);
    g_free(text);
    return name.section('(', 0, 0).trimmed();
}

// Before the first picture has come, a parser may know no more than what it could be; null for anything.
GstCaps* kindOf(GstPad* pad)
{
    GstCaps* caps = gst_pad_get_current_caps(pad);
    if (!caps)
        caps = gst_pad_query_caps(pad, nullptr);
    if (caps && !gst_caps_is_empty(caps) && !gst_caps_is_any(caps))
        return gst_caps_fixate(caps);
    gst_clear_caps(&caps);
    return nullptr;
}

int onChoice(GstElement*, GstPad*, GstCaps*, GstElementFactory* factory, gpointer)
{
    return filmParts::choose(factory);
}

StreamList::StreamList(const QByteArray& file)
{
    GstElement* source = gst_element_factory_make("filesrc", nullptr);
    GstElement* parser = gst_element_factory_make("parsebin", nullptr);
    gst_bin_add_many(GST_BIN(m_pPipeline), source, parser, nullptr);
    gst_element_link(source, parser);
    g_object_set(source, "location", file.constData(), nullptr);
    g_signal_connect(parser, "autoplug-select", G_CALLBACK(onChoice), nullptr);
    g_signal_connect(parser, "pad-added", G_CALLBACK(onPad), this);
}

StreamList::~StreamList()
{
    gst_element_set_state(m_pPipeline, GST_STATE_NULL);
    gst_object_unref(m_pPipeline);
}

void StreamList::onPad(GstElement*, GstPad* pad, gpointer self)
{
    static_cast<StreamList*>(self)->note(pad);
}

void StreamList::note(GstPad* pad)
{
    GstCaps* caps = kindOf(pad);
    if (caps) {
        const char* kind = gst_structure_get_name(gst_caps_get_structure(caps, 0));
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (g_str_has_prefix(kind, "video/") || g_str_has_prefix(kind, "image/"))
            m_kinds.pictures.append(nameOf(caps));
        else if (g_str_has_prefix(kind, "audio/"))
            m_kinds.sounds.append(nameOf(caps));
    }
    gst_clear_caps(&caps);
    GstElement* drain = gst_element_factory_make("fakesink", nullptr);
    gst_bin_add(GST_BIN(m_pPipeline), drain);
    gst_element_sync_state_with_parent(drain);
    GstPad* sink = gst_element_get_static_pad(drain, "sink");
    gst_pad_link(pad, sink);
    gst_object_unref(sink);
}

Kinds StreamList::read()
{
    gst_element_set_state(m_pPipeline, GST_STATE_PAUSED);
    GstBus* bus = gst_element_get_bus(m_pPipeline);
    GstMessage* message = gst_bus_timed_pop_filtered(
        bus, GstClockTime(kMaxMs) * GST_MSECOND,
        GstMessageType(GST_MESSAGE_ASYNC_DONE | GST_MESSAGE_ERROR | GST_MESSAGE_EOS));
    const bool isDone = message && GST_MESSAGE_TYPE(message) == GST_MESSAGE_ASYNC_DONE;
    gst_clear_message(&message);
    gst_object_unref(bus);
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_kinds.isFilm = isDone && !(m_kinds.pictures.isEmpty() && m_kinds.sounds.isEmpty());
    return m_kinds;
}

} // namespace

QStringList filmFaults(const QByteArray& file)
{
    MOV_SDP played = {};
    filmStreams::describeFile(file, kMaxMs, played);
    const bool hasPicture = played.szVidName[0] != 0;
    const bool hasSound = played.szAudName[0] != 0;
    if (hasPicture && hasSound)
        return {};
    const Kinds kinds = StreamList(file).read();
    if (!kinds.isFilm)
        return {"no phone can read it as a film"};
    QStringList faults;
    if (!hasPicture && kinds.pictures.isEmpty())
        faults.append("it has no picture");
    else if (!hasPicture)
        faults.append(QString("its picture is %1; %2").arg(kinds.pictures.first(), kPlayed));
    if (!hasSound && !kinds.sounds.isEmpty())
        faults.append(QString("its sound is %1, which no phone plays").arg(kinds.sounds.first()));
    return faults;
}
