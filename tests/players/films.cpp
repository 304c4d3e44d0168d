#include "tests/players/films.h"
#include <QDir>
#include <QFileInfo>
#include <gst/app/gstappsrc.h>
#include <gtest/gtest.h>

namespace {

constexpr int kFrames = 25; // a second

// Some coders give no times: each picture gets that of its number.
GstPadProbeReturn stamp(GstPad* pad, GstPadProbeInfo* info, gpointer count)
{
    GstEvent* event = gst_pad_get_sticky_event(pad, GST_EVENT_SEGMENT, 0);
    const GstSegment* segment = nullptr;
    gst_event_parse_segment(event, &segment);
    const GstClockTime start = segment->start;
    gst_event_unref(event);
    GstBuffer* picture = gst_buffer_make_writable(GST_PAD_PROBE_INFO_BUFFER(info));
    const GstClockTime frame = GST_SECOND / kFrames;
    const auto number = guint64((*static_cast<int*>(count))++);
    GST_BUFFER_PTS(picture) = GST_BUFFER_DTS(picture) = start + frame * number;
    GST_BUFFER_DURATION(picture) = frame;
    info->data = picture;
    return GST_PAD_PROBE_OK;
}

void stampPictures(GstElement* maker, int* count)
{
    GstElement* stamped = gst_bin_get_by_name(GST_BIN(maker), "stamp");
    if (!stamped)
        return;
    GstPad* pad = gst_element_get_static_pad(stamped, "sink");
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, stamp, count, nullptr);
    gst_object_unref(pad);
    gst_object_unref(stamped);
}

GstBuffer* pictureOf(QRgb colour, QSize size, int number)
{
    GstBuffer* picture = gst_buffer_new_allocate(nullptr, gsize(size.width() * size.height() * 4), nullptr);
    GstMapInfo map;
    gst_buffer_map(picture, &map, GST_MAP_WRITE);
    std::fill_n(reinterpret_cast<QRgb*>(map.data), size.width() * size.height(), colour);
    gst_buffer_unmap(picture, &map);
    GST_BUFFER_PTS(picture) = GST_SECOND / kFrames * guint64(number);
    GST_BUFFER_DURATION(picture) = GST_SECOND / kFrames;
    return picture;
}

void setPlace(GstElement* maker, const QString& file)
{
    QDir().mkpath(QFileInfo(file).path());
    GstElement* out = gst_bin_get_by_name(GST_BIN(maker), "out");
    g_object_set(out, "location", file.toUtf8().constData(), nullptr);
    gst_object_unref(out);
}

void pushPictures(GstElement* maker, const tagColours& colours)
{
    GstElement* source = gst_bin_get_by_name(GST_BIN(maker), "colours");
    GstCaps* caps = gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "BGRx", "width", G_TYPE_INT,
                                        colours.size.width(), "height", G_TYPE_INT, colours.size.height(),
                                        "framerate", GST_TYPE_FRACTION, kFrames, 1, nullptr);
    g_object_set(source, "caps", caps, "format", GST_FORMAT_TIME, "max-bytes", guint64(0), nullptr);
    gst_caps_unref(caps);
    int number = 0;
    for (const QRgb colour : colours.colours) {
        for (int i = 0; i < colours.nFrames; ++i)
            gst_app_src_push_buffer(GST_APP_SRC(source), pictureOf(colour, colours.size, number++));
    }
    gst_app_src_end_of_stream(GST_APP_SRC(source));
    gst_object_unref(source);
}

QString sound(const tagColours& colours, int rate, int channels)
{
    return QString(" audiotestsrc samplesperbuffer=%1 num-buffers=%2 ! audio/x-raw,rate=%3,channels=%4 ! "
                   "audioconvert ! ")
        .arg(rate / kFrames)
        .arg(colours.nFrames * colours.colours.size())
        .arg(rate)
        .arg(channels);
}

} // namespace

void makeFilm(const QString& file, const QString& pipeline, const tagColours& colours)
{
    gst_init(nullptr, nullptr);
    const QString whole = pipeline.arg("appsrc name=colours ! videoconvert ! video/x-raw,format=I420");
    GError* error = nullptr;
    GstElement* maker = gst_parse_launch(whole.toUtf8().constData(), &error);
    ASSERT_FALSE(error) << (error ? error->message : "");
    setPlace(maker, file);
    int count = 0;
    stampPictures(maker, &count);
    pushPictures(maker, colours);
    gst_element_set_state(maker, GST_STATE_PLAYING);
    GstBus* bus = gst_element_get_bus(maker);
    GstMessage* message =
        gst_bus_timed_pop_filtered(bus, 20 * GST_SECOND, GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
    EXPECT_TRUE(message && GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS) << qPrintable(whole);
    gst_clear_message(&message);
    gst_object_unref(bus);
    gst_element_set_state(maker, GST_STATE_NULL);
    gst_object_unref(maker);
}

void makeH264(const QString& file, const tagColours& colours)
{
    makeFilm(file,
             "mp4mux name=m ! filesink name=out %1 ! x264enc key-int-max=25 speed-preset=veryfast ! "
             "h264parse ! m." +
                 sound(colours, 44100, 2) + "avenc_aac ! aacparse ! m.",
             colours);
}

void makeMpeg4(const QString& file, const tagColours& colours)
{
    makeFilm(file,
             "mp4mux name=m ! filesink name=out %1 ! avenc_mpeg4 bitrate=800000 ! identity name=stamp ! m." +
                 sound(colours, 44100, 2) + "avenc_aac ! aacparse ! m.",
             colours);
}

void makeH263(const QString& file, const tagColours& colours)
{
    tagColours small = colours;
    small.size = QSize(352, 288);
    makeFilm(file,
             "avimux name=m ! filesink name=out %1 ! avenc_h263 bitrate=800000 ! identity name=stamp ! m." +
                 sound(colours, 8000, 1) + "alawenc ! m.",
             small);
}
