#include "players/pictureDecoder.h"
#include "players/callDesk.h"
#include "players/h264Pictures.h"
#include "players/lateEnds.h"
#include "players/paceBudget.h"
#include "players/vp8Pictures.h"
#include <atomic>
#include <ctime>
#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>
#include <mutex>
#include <utility>

namespace {

constexpr qint64 kMsUs = 1000;

// Pictures that need the one before are left out with it, until one comes that does not.
class Skipping
{
public:
    void begin(qint64 nowUs)
    {
        m_bSkips = true;
        m_nSinceUs = nowUs;
    }
    bool leavesOut(qint64 nowUs, bool isKey)
    {
        m_bSkips = m_bSkips && !isKey && nowUs - m_nSinceUs < pictureDecoder::SKIP_MS * kMsUs;
        return m_bSkips;
    }

private:
    bool m_bSkips = false;
    qint64 m_nSinceUs = 0;
};

} // namespace

struct pictureDecoder::tagInside
{
    ~tagInside();
    void onCoded(const QByteArray& coded, bool isKey);
    bool mayDecode(GstBuffer* buffer);
    static GstPadProbeReturn onDecode(GstPad* pad, GstPadProbeInfo* info, gpointer inside);
    static GstFlowReturn onSample(GstAppSink* sink, gpointer inside);

    PICTURE_CODEC eCodec = PICTURE_CODEC::NONE;
    std::mutex mutex; // of the next one
    PictureHandler onPicture;
    GstElement* pPipeline = nullptr;
    GstElement* pSource = nullptr; // of the pipeline
    std::atomic<bool> bFailed{false};
    std::atomic<bool> bLeftOut{false};
    // Of who puts packets.
    std::unique_ptr<codedPictures> coded;
    paceBudget pictures{RATE, AT_ONCE};
    Skipping skipping;
    // Of the pipeline's thread.
    paceBudget work{WORK_MS, WORK_AT_ONCE_MS};
    Skipping late;
    double workedMs = -1;
};

namespace {

// Null for NONE.
std::unique_ptr<codedPictures> codedOf(PICTURE_CODEC codec, codedPictures::CodedHandler onCoded)
{
    if (codec == PICTURE_CODEC::H264)
        return std::make_unique<h264Pictures>(std::move(onCoded));
    if (codec == PICTURE_CODEC::VP8)
        return std::make_unique<vp8Pictures>(std::move(onCoded));
    return nullptr;
}

QByteArray textOf(PICTURE_CODEC codec)
{
    const bool isVp8 = codec == PICTURE_CODEC::VP8;
    return QByteArray("appsrc name=packets is-live=true format=time caps=") +
           (isVp8 ? "video/x-vp8 ! vp8dec name=decoder threads=1"
                  : "video/x-h264,stream-format=byte-stream,alignment=au ! avdec_h264 name=decoder "
                    "max-threads=1") +
           " ! appsink name=pictures caps=video/x-raw sync=false async=false qos=false emit-signals=false "
           "enable-last-sample=false max-buffers=2 drop=true";
}

GstBusSyncReply onMessage(GstBus*, GstMessage* message, gpointer failed)
{
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR)
        *static_cast<std::atomic<bool>*>(failed) = true;
    gst_message_unref(message);
    return GST_BUS_DROP;
}

double threadMs()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

} // namespace

pictureDecoder::tagInside::~tagInside()
{
    if (!pPipeline)
        return;
    gst_element_set_state(pPipeline, GST_STATE_NULL);
    if (pSource)
        gst_object_unref(pSource);
    gst_object_unref(pPipeline);
}

// Of who puts packets.
void pictureDecoder::tagInside::onCoded(const QByteArray& picture, bool isKey)
{
    const qint64 now = callDesk::nowUs();
    auto* source = GST_APP_SRC(pSource);
    const bool isSkipped = skipping.leavesOut(now, isKey);
    const bool isFull = gst_app_src_get_current_level_bytes(source) > guint64(MAX_WAITING) ||
                        gst_app_src_get_current_level_buffers(source) > guint64(MAX_PICTURES);
    if (isSkipped || isFull || !pictures.take(now)) {
        if (!isSkipped)
            skipping.begin(now);
        bLeftOut = true;
        return;
    }
    GstBuffer* buffer = gst_buffer_new_memdup(picture.constData(), gsize(picture.size()));
    GST_BUFFER_PTS(buffer) = GstClockTime(now) * GST_USECOND;
    if (!isKey)
        GST_BUFFER_FLAG_SET(buffer, GST_BUFFER_FLAG_DELTA_UNIT);
    if (gst_app_src_push_buffer(source, buffer) != GST_FLOW_OK)
        bLeftOut = true;
}

// Whoever makes pictures that take long, or many of them, gets no more than a part of a processor, and what
// has waited too long is of no use.
bool pictureDecoder::tagInside::mayDecode(GstBuffer* buffer)
{
    const qint64 now = callDesk::nowUs();
    const double worked = threadMs();
    const bool isTooMuch = !work.spend(now, workedMs < 0 ? 0 : worked - workedMs);
    workedMs = worked;
    const bool isLate = now - qint64(GST_BUFFER_PTS(buffer) / GST_USECOND) > LATE_MS * kMsUs;
    const bool isSkipped = late.leavesOut(now, !GST_BUFFER_FLAG_IS_SET(buffer, GST_BUFFER_FLAG_DELTA_UNIT));
    if ((isTooMuch || isLate) && !isSkipped)
        late.begin(now);
    if (!isSkipped && !isTooMuch && !isLate)
        return true;
    bLeftOut = true;
    return false;
}

GstPadProbeReturn pictureDecoder::tagInside::onDecode(GstPad*, GstPadProbeInfo* info, gpointer inside)
{
    return static_cast<tagInside*>(inside)->mayDecode(GST_PAD_PROBE_INFO_BUFFER(info)) ? GST_PAD_PROBE_OK
                                                                                       : GST_PAD_PROBE_DROP;
}

GstFlowReturn pictureDecoder::tagInside::onSample(GstAppSink* sink, gpointer inside)
{
    auto* self = static_cast<tagInside*>(inside);
    GstSample* sample = gst_app_sink_pull_sample(sink);
    GstVideoInfo info;
    GstVideoFrame frame;
    if (sample && gst_video_info_from_caps(&info, gst_sample_get_caps(sample)) && info.width <= MAX_WIDTH &&
        info.height <= MAX_HEIGHT &&
        gst_video_frame_map(&frame, &info, gst_sample_get_buffer(sample), GST_MAP_READ)) {
        const std::lock_guard<std::mutex> lock(self->mutex);
        if (self->onPicture)
            self->onPicture(frame);
        gst_video_frame_unmap(&frame);
    }
    if (sample)
        gst_sample_unref(sample);
    return GST_FLOW_OK;
}

QList<QByteArray> pictureDecoder::parts()
{
    return {"appsrc", "avdec_h264", "vp8dec", "appsink"};
}

lateEnds& pictureDecoder::ends()
{
    static lateEnds ends;
    return ends;
}

std::unique_ptr<pictureDecoder> pictureDecoder::make(PICTURE_CODEC codec, PictureHandler onPicture)
{
    std::unique_ptr<pictureDecoder> made(new pictureDecoder);
    made->m_inside = std::make_shared<tagInside>();
    tagInside* inside = made->m_inside.get();
    inside->eCodec = codec;
    inside->onPicture = std::move(onPicture);
    inside->coded =
        codedOf(codec, [inside](const QByteArray& coded, bool isKey) { inside->onCoded(coded, isKey); });
    if (!inside->coded || !made->build())
        return nullptr;
    return made;
}

pictureDecoder::~pictureDecoder()
{
    {
        const std::lock_guard<std::mutex> lock(m_inside->mutex);
        m_inside->onPicture = nullptr;
    }
    ends().add([inside = std::exchange(m_inside, nullptr)]() mutable { inside.reset(); });
}

bool pictureDecoder::build()
{
    GError* error = nullptr;
    m_inside->pPipeline = gst_parse_launch(textOf(m_inside->eCodec).constData(), &error);
    const bool isMade = m_inside->pPipeline && !error;
    g_clear_error(&error);
    if (!isMade)
        return false;
    GstBin* bin = GST_BIN(m_inside->pPipeline);
    m_inside->pSource = gst_bin_get_by_name(bin, "packets");
    GstElement* decoder = gst_bin_get_by_name(bin, "decoder");
    GstPad* pad = gst_element_get_static_pad(decoder, "sink");
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, tagInside::onDecode, m_inside.get(), nullptr);
    gst_object_unref(pad);
    gst_object_unref(decoder);
    GstElement* sink = gst_bin_get_by_name(bin, "pictures");
    GstAppSinkCallbacks callbacks = {};
    callbacks.new_sample = tagInside::onSample;
    gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, m_inside.get(), nullptr);
    gst_object_unref(sink);
    GstBus* bus = gst_element_get_bus(m_inside->pPipeline);
    gst_bus_set_sync_handler(bus, onMessage, &m_inside->bFailed, nullptr);
    gst_object_unref(bus);
    return gst_element_set_state(m_inside->pPipeline, GST_STATE_PLAYING) != GST_STATE_CHANGE_FAILURE;
}

bool pictureDecoder::hasFailed() const
{
    return m_inside->bFailed;
}

bool pictureDecoder::isRefused() const
{
    return m_inside->coded->isRefused();
}

qint64 pictureDecoder::waiting() const
{
    return qint64(gst_app_src_get_current_level_bytes(GST_APP_SRC(m_inside->pSource)));
}

bool pictureDecoder::put(const QByteArray& packet)
{
    if (hasFailed())
        return false;
    const bool isWhole = m_inside->coded->put(packet);
    return !m_inside->bLeftOut.exchange(false) && isWhole;
}
