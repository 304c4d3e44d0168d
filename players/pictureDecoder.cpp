#include "players/pictureDecoder.h"
#include "players/callDesk.h"
#include "players/codedSize.h"
#include "players/paceBudget.h"
#include "players/pictureContent.h"
#include "players/rtpPacket.h"
#include <atomic>
#include <cstring>
#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>

struct pictureDecoder::tagInside
{
    PICTURE_CODEC eCodec = PICTURE_CODEC::NONE;
    PictureHandler onPicture;
    GstElement* pPipeline = nullptr;
    GstElement* pSource = nullptr; // of the pipeline
    std::atomic<bool> bFailed{false};
    // Of the pipeline's thread.
    gsize nGathered = 0; // bytes since the last whole picture
    paceBudget pictures{RATE, AT_ONCE};
};

namespace {

constexpr int kPayload = 96; // whatever was agreed: the stream has one format here

QByteArray textOf(PICTURE_CODEC codec)
{
    const bool isVp8 = codec == PICTURE_CODEC::VP8;
    const QByteArray name = pictureCodec(codec)->pName;
    return "appsrc name=packets is-live=true do-timestamp=true format=time "
           "caps=application/x-rtp,media=video,clock-rate=90000,encoding-name=" +
           name + ",payload=" + QByteArray::number(kPayload) + " ! " +
           (isVp8 ? "rtpvp8depay ! vp8dec name=decoder threads=1"
                  : "rtph264depay ! h264parse ! video/x-h264,stream-format=byte-stream,alignment=au ! "
                    "avdec_h264 name=decoder max-threads=1") +
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

GstFlowReturn onSample(GstAppSink* sink, gpointer handler)
{
    GstSample* sample = gst_app_sink_pull_sample(sink);
    GstVideoInfo info;
    GstVideoFrame frame;
    if (sample && gst_video_info_from_caps(&info, gst_sample_get_caps(sample)) &&
        info.width <= pictureDecoder::MAX_WIDTH && info.height <= pictureDecoder::MAX_HEIGHT &&
        gst_video_frame_map(&frame, &info, gst_sample_get_buffer(sample), GST_MAP_READ)) {
        (*static_cast<pictureDecoder::PictureHandler*>(handler))(frame);
        gst_video_frame_unmap(&frame);
    }
    if (sample)
        gst_sample_unref(sample);
    return GST_FLOW_OK;
}

} // namespace

// A picture may come in parts without an end, of which the toolkit would keep all.
GstPadProbeReturn pictureDecoder::onPart(GstPad*, GstPadProbeInfo* info, gpointer inside)
{
    auto* self = static_cast<tagInside*>(inside);
    self->nGathered += gst_buffer_get_size(GST_PAD_PROBE_INFO_BUFFER(info));
    if (self->nGathered > gsize(MAX_PICTURE))
        self->bFailed = true;
    return self->bFailed ? GST_PAD_PROBE_DROP : GST_PAD_PROBE_OK;
}

// Before the decoder takes memory, and time, for it.
GstPadProbeReturn pictureDecoder::onWhole(GstPad*, GstPadProbeInfo* info, gpointer inside)
{
    auto* self = static_cast<tagInside*>(inside);
    self->nGathered = 0;
    GstMapInfo map;
    if (!gst_buffer_map(GST_PAD_PROBE_INFO_BUFFER(info), &map, GST_MAP_READ))
        return GST_PAD_PROBE_DROP;
    if (!self->pictures.take(callDesk::nowUs()) ||
        !codedSize::fits(self->eCodec, map.data, map.size, {MAX_WIDTH, MAX_HEIGHT}))
        self->bFailed = true;
    gst_buffer_unmap(GST_PAD_PROBE_INFO_BUFFER(info), &map);
    return self->bFailed ? GST_PAD_PROBE_DROP : GST_PAD_PROBE_OK;
}

QList<QByteArray> pictureDecoder::parts()
{
    return {"appsrc", "rtph264depay", "h264parse", "avdec_h264", "rtpvp8depay", "vp8dec", "appsink"};
}

std::unique_ptr<pictureDecoder> pictureDecoder::make(PICTURE_CODEC codec, PictureHandler onPicture)
{
    std::unique_ptr<pictureDecoder> made(new pictureDecoder);
    made->m_inside = std::make_unique<tagInside>();
    made->m_inside->eCodec = codec;
    made->m_inside->onPicture = std::move(onPicture);
    if (codec == PICTURE_CODEC::NONE || !made->build())
        return nullptr;
    return made;
}

pictureDecoder::~pictureDecoder()
{
    if (!m_inside || !m_inside->pPipeline)
        return;
    gst_element_set_state(m_inside->pPipeline, GST_STATE_NULL);
    if (m_inside->pSource)
        gst_object_unref(m_inside->pSource);
    gst_object_unref(m_inside->pPipeline);
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
    GstElement* sink = gst_bin_get_by_name(bin, "pictures");
    const auto watch = [this](GstElement* element, const char* name, GstPadProbeCallback probe) {
        GstPad* pad = gst_element_get_static_pad(element, name);
        gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, probe, m_inside.get(), nullptr);
        gst_object_unref(pad);
    };
    watch(m_inside->pSource, "src", onPart);
    watch(decoder, "sink", onWhole);
    GstAppSinkCallbacks callbacks = {};
    callbacks.new_sample = onSample;
    gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, &m_inside->onPicture, nullptr);
    gst_object_unref(sink);
    gst_object_unref(decoder);
    GstBus* bus = gst_element_get_bus(m_inside->pPipeline);
    gst_bus_set_sync_handler(bus, onMessage, &m_inside->bFailed, nullptr);
    gst_object_unref(bus);
    return gst_element_set_state(m_inside->pPipeline, GST_STATE_PLAYING) != GST_STATE_CHANGE_FAILURE;
}

bool pictureDecoder::hasFailed() const
{
    return m_inside->bFailed;
}

qint64 pictureDecoder::waiting() const
{
    return qint64(gst_app_src_get_current_level_bytes(GST_APP_SRC(m_inside->pSource)));
}

bool pictureDecoder::put(const QByteArray& packet)
{
    auto* source = GST_APP_SRC(m_inside->pSource);
    const bool isFull =
        waiting() > MAX_WAITING || gst_app_src_get_current_level_buffers(source) > guint64(MAX_PACKETS);
    if (hasFailed() || isFull)
        return false;
    const auto* bytes = reinterpret_cast<const unsigned char*>(packet.constData());
    tagRtpHead head;
    int start = 0;
    int length = 0;
    if (!rtpPacket::read(bytes, int(packet.size()), head, start, length) ||
        !pictureContent::isWhole(m_inside->eCodec, bytes + start, size_t(length)))
        return false;
    // The toolkit gets a head without anything that might lie.
    head.nPayload = kPayload;
    unsigned char made[rtpPacket::MAX_BYTES];
    rtpPacket::write(head, made);
    memcpy(made + rtpPacket::HEAD_BYTES, bytes + start, size_t(length));
    GstBuffer* buffer = gst_buffer_new_memdup(made, gsize(rtpPacket::HEAD_BYTES + length));
    return gst_app_src_push_buffer(source, buffer) == GST_FLOW_OK;
}
