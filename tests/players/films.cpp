#include "tests/players/films.h"
#include <QDir>
#include <QFileInfo>
#include <QPainter>
#include <functional>
#include <gst/app/gstappsrc.h>
#include <gtest/gtest.h>

namespace {

constexpr int kFrames = 25; // a second
constexpr int kBits = 8;    // of a number
constexpr int kStrips = kBits + 2;

// How a film's pictures look and how many there are.
struct tagContent
{
    int nFrames;
    QSize size;
    int nRate; // pictures
    int nSeconds;
    std::function<QImage(int)> imageOf;
    GstClockTime timeOf(int number) const
    {
        return gst_util_uint64_scale(guint64(number), guint64(nSeconds) * GST_SECOND, guint64(nRate));
    }
};

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

GstBuffer* pictureOf(const tagContent& content, int number)
{
    const QImage image = content.imageOf(number).convertToFormat(QImage::Format_RGB32);
    GstBuffer* picture = gst_buffer_new_allocate(nullptr, gsize(image.sizeInBytes()), nullptr);
    gst_buffer_fill(picture, 0, image.constBits(), gsize(image.sizeInBytes()));
    GST_BUFFER_PTS(picture) = content.timeOf(number);
    GST_BUFFER_DURATION(picture) = content.timeOf(1);
    return picture;
}

void setPlace(GstElement* maker, const QString& file)
{
    QDir().mkpath(QFileInfo(file).path());
    GstElement* out = gst_bin_get_by_name(GST_BIN(maker), "out");
    g_object_set(out, "location", file.toUtf8().constData(), nullptr);
    gst_object_unref(out);
}

void pushPictures(GstElement* maker, const tagContent& content)
{
    GstElement* source = gst_bin_get_by_name(GST_BIN(maker), "colours");
    GstCaps* caps =
        gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "BGRx", "width", G_TYPE_INT,
                            content.size.width(), "height", G_TYPE_INT, content.size.height(), "framerate",
                            GST_TYPE_FRACTION, content.nRate, content.nSeconds, nullptr);
    g_object_set(source, "caps", caps, "format", GST_FORMAT_TIME, "max-bytes", guint64(0), nullptr);
    gst_caps_unref(caps);
    for (int number = 0; number < content.nFrames; ++number)
        gst_app_src_push_buffer(GST_APP_SRC(source), pictureOf(content, number));
    gst_app_src_end_of_stream(GST_APP_SRC(source));
    gst_object_unref(source);
}

QImage plain(QSize size, QRgb colour)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

// A light strip, a dark one, and the number's bits, the highest first.
QImage numbered(QSize size, int number)
{
    QImage image = plain(size, 0xff202020);
    QPainter painter(&image);
    const int bits = 1 << (kBits + 1) | number;
    for (int strip = 0; strip < kStrips; ++strip) {
        if (bits >> (kStrips - 1 - strip) & 1)
            painter.fillRect(QRect(QPoint(size.width() * strip / kStrips, 0),
                                   QPoint(size.width() * (strip + 1) / kStrips - 1, size.height())),
                             QColor(0xe0, 0xe0, 0xe0));
    }
    return image;
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

namespace {

void make(const QString& file, const QString& pipeline, const tagContent& content)
{
    gst_init(nullptr, nullptr);
    const QString whole = pipeline.arg("appsrc name=colours ! videoconvert ! video/x-raw,format=I420");
    GError* error = nullptr;
    GstElement* maker = gst_parse_launch(whole.toUtf8().constData(), &error);
    ASSERT_FALSE(error) << (error ? error->message : "");
    setPlace(maker, file);
    int count = 0;
    stampPictures(maker, &count);
    pushPictures(maker, content);
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

} // namespace

void makeFilm(const QString& file, const QString& pipeline, const tagColours& colours)
{
    const auto imageOf = [&](int number) {
        return plain(colours.size, colours.colours[number / colours.nFrames]);
    };
    make(file, pipeline, {int(colours.nFrames * colours.colours.size()), colours.size, kFrames, 1, imageOf});
}

void makeNumberedFilm(const QString& file, const QString& pipeline, const tagNumbered& film)
{
    make(file, pipeline, {film.nFrames, film.size, film.nRate, film.nSeconds, [&](int number) {
                              return numbered(film.size, number);
                          }});
}

QImage numberedPicture(QSize size, int number)
{
    return numbered(size, number);
}

int numberIn(const QImage& picture)
{
    int bits = 0;
    for (int strip = 0; strip < kStrips; ++strip) {
        const QRgb colour =
            picture.pixel(picture.width() * (2 * strip + 1) / (2 * kStrips), picture.height() / 2);
        bits = bits << 1 | (qGray(colour) > 128);
    }
    return bits >> kBits == 2 ? bits & ((1 << kBits) - 1) : -1;
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
