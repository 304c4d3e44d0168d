#include "players/pictureEncoder.h"
#include "players/callDesk.h"
#include "support/host/trace.h"
#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>

namespace {

// Units in packets of their own have to be small.
constexpr int kSlicesOfSmall = 30;
constexpr int kPayload = 96; // until it is given the one that is agreed
// Below any rate that is agreed: a range of one rate is none to the toolkit.
const QByteArray kLeastRate = "1/2";

QByteArray number(int value)
{
    return QByteArray::number(value);
}

QByteArray encoderText(const tagPictureFormat& format, const tagPictureBounds& bounds, int kbit)
{
    const int distance = bounds.nRate * pictureEncoder::KEY_SECONDS;
    if (format.eCodec == PICTURE_CODEC::VP8)
        return "vp8enc name=encoder deadline=1 cpu-used=16 end-usage=cbr threads=1 lag-in-frames=0 "
               "error-resilient=default buffer-size=600 buffer-initial-size=300 buffer-optimal-size=400 "
               "keyframe-max-dist=" +
               number(distance) + " target-bitrate=" + number(kbit * 1000) + " ! rtpvp8pay";
    const int slices = format.nMode == 0 ? kSlicesOfSmall : 1;
    return "openh264enc name=encoder complexity=low deblocking=off rate-control=bitrate multi-thread=1 "
           "scene-change-detection=false gop-size=" +
           number(distance) + " num-slices=" + number(slices) + " bitrate=" + number(kbit * 1000) +
           " ! video/x-h264,profile=constrained-baseline ! rtph264pay config-interval=-1";
}

GstPadProbeReturn onRaw(GstPad* pad, GstPadProbeInfo* info, gpointer handler)
{
    GstCaps* caps = gst_pad_get_current_caps(pad);
    GstVideoInfo video;
    GstVideoFrame frame;
    if (caps && gst_video_info_from_caps(&video, caps) &&
        gst_video_frame_map(&frame, &video, GST_PAD_PROBE_INFO_BUFFER(info), GST_MAP_READ)) {
        (*static_cast<pictureEncoder::PictureHandler*>(handler))(frame);
        gst_video_frame_unmap(&frame);
    }
    gst_clear_caps(&caps);
    return GST_PAD_PROBE_OK;
}

} // namespace

QList<QByteArray> pictureEncoder::parts()
{
    return {"appsrc",     "videorate", "videoconvertscale", "openh264enc",
            "rtph264pay", "vp8enc",    "rtpvp8pay",         "appsink"};
}

std::unique_ptr<pictureEncoder> pictureEncoder::make(pictureCamera& camera, const tagAgreedPicture& agreed,
                                                     int kbit, PacketHandler onPacket,
                                                     PictureHandler onPicture, QByteArray& fault)
{
    std::unique_ptr<pictureEncoder> made(new pictureEncoder(camera));
    made->m_format = agreed.send;
    made->m_bounds = agreed.bounds;
    made->m_onPacket = std::move(onPacket);
    made->m_onPicture = std::move(onPicture);
    made->m_nSentUs = callDesk::nowUs();
    if (made->build(kbit))
        return made;
    fault = made->fault();
    return nullptr;
}

// What comes first is the cause of what follows.
GstBusSyncReply pictureEncoder::onMessage(GstBus*, GstMessage* message, gpointer self)
{
    auto* encoder = static_cast<pictureEncoder*>(self);
    const std::lock_guard<std::mutex> lock(encoder->m_mutex);
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR && encoder->m_fault.isEmpty()) {
        GError* error = nullptr;
        gst_message_parse_error(message, &error, nullptr);
        encoder->m_fault = error ? error->message : "it has failed";
        g_clear_error(&error);
    } else if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS && encoder->m_fault.isEmpty()) {
        encoder->m_fault = "it has ended";
    }
    gst_message_unref(message);
    return GST_BUS_DROP;
}

QByteArray pictureEncoder::fault() const
{
    const QByteArray ofCamera = m_camera.fault();
    if (!ofCamera.isEmpty())
        return ofCamera;
    const std::lock_guard<std::mutex> lock(m_mutex);
    const bool isSilent = callDesk::nowUs() - m_nSentUs > SILENT_MS * qint64(1000);
    return m_fault.isEmpty() && isSilent ? QByteArray("nothing is made of its pictures") : m_fault;
}

pictureEncoder::~pictureEncoder()
{
    m_camera.leave(this);
    if (!m_pPipeline)
        return;
    gst_element_set_state(m_pPipeline, GST_STATE_NULL);
    if (m_pSource)
        gst_object_unref(m_pSource);
    if (m_pEncoder)
        gst_object_unref(m_pEncoder);
    gst_object_unref(m_pPipeline);
}

bool pictureEncoder::isFor(const tagAgreedPicture& agreed) const
{
    return pictureFormat::isSame(m_format, agreed.send) && m_bounds.nWidth == agreed.bounds.nWidth &&
           m_bounds.nHeight == agreed.bounds.nHeight && m_bounds.nRate == agreed.bounds.nRate;
}

bool pictureEncoder::build(int kbit)
{
    const QByteArray text =
        "appsrc name=camera is-live=true format=time max-bytes=0 max-buffers=1 leaky-type=downstream ! "
        "videorate drop-only=true skip-to-first=true ! videoconvertscale ! video/x-raw,format=I420,width=" +
        number(m_bounds.nWidth) + ",height=" + number(m_bounds.nHeight) +
        ",pixel-aspect-ratio=1/1,framerate=[" + kLeastRate + "," + number(m_bounds.nRate) + "/1] ! " +
        encoderText(m_format, m_bounds, kbit) + " mtu=" + number(PACKET_BYTES) + " pt=" + number(kPayload) +
        " ! appsink name=packets sync=false async=false emit-signals=false enable-last-sample=false";
    GError* error = nullptr;
    m_pPipeline = gst_parse_launch(text.constData(), &error);
    if (error)
        nuxTrace(TRACE_NOTE, "no picture can be sent: %s", error->message);
    const bool isMade = m_pPipeline && !error;
    g_clear_error(&error);
    if (!isMade)
        return false;
    m_pSource = gst_bin_get_by_name(GST_BIN(m_pPipeline), "camera");
    GstElement* sink = gst_bin_get_by_name(GST_BIN(m_pPipeline), "packets");
    m_pEncoder = gst_bin_get_by_name(GST_BIN(m_pPipeline), "encoder");
    watchPictures(m_pEncoder);
    GstAppSinkCallbacks callbacks = {};
    callbacks.new_sample = [](GstAppSink* from, gpointer self) {
        static_cast<pictureEncoder*>(self)->takePacket(GST_ELEMENT(from));
        return GST_FLOW_OK;
    };
    gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, this, nullptr);
    gst_object_unref(sink);
    GstBus* bus = gst_element_get_bus(m_pPipeline);
    gst_bus_set_sync_handler(bus, onMessage, this, nullptr);
    gst_object_unref(bus);
    return gst_element_set_state(m_pPipeline, GST_STATE_PLAYING) != GST_STATE_CHANGE_FAILURE &&
           m_camera.take(
               this, [this](GstSample* sample) { gst_app_src_push_sample(GST_APP_SRC(m_pSource), sample); });
}

void pictureEncoder::watchPictures(GstElement* encoder)
{
    GstPad* pad = gst_element_get_static_pad(encoder, "sink");
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, onRaw, &m_onPicture, nullptr);
    gst_object_unref(pad);
}

void pictureEncoder::takePacket(GstElement* sink)
{
    GstSample* sample = gst_app_sink_pull_sample(GST_APP_SINK(sink));
    if (!sample)
        return;
    m_nSentUs = callDesk::nowUs();
    GstMapInfo map;
    const auto take = [&](GstBuffer* buffer) {
        if (!gst_buffer_map(buffer, &map, GST_MAP_READ))
            return;
        m_onPacket(map.data, int(map.size));
        gst_buffer_unmap(buffer, &map);
    };
    GstBufferList* list = gst_sample_get_buffer_list(sample);
    for (guint i = 0; list && i < gst_buffer_list_length(list); ++i)
        take(gst_buffer_list_get(list, i));
    if (!list && gst_sample_get_buffer(sample))
        take(gst_sample_get_buffer(sample));
    gst_sample_unref(sample);
}

void pictureEncoder::askKeyPicture()
{
    GstPad* pad = gst_element_get_static_pad(m_pEncoder, "src");
    gst_pad_send_event(pad, gst_video_event_new_upstream_force_key_unit(GST_CLOCK_TIME_NONE, TRUE, 0));
    gst_object_unref(pad);
}

void pictureEncoder::setKbit(int kbit)
{
    const bool isVp8 = m_format.eCodec == PICTURE_CODEC::VP8;
    if (isVp8)
        g_object_set(m_pEncoder, "target-bitrate", kbit * 1000, nullptr);
    else
        g_object_set(m_pEncoder, "bitrate", guint(kbit) * 1000, nullptr);
}
