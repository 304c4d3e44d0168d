#include "tools/signDemo/FilmFile.h"
#include <QFile>
#include <QtEndian>
#include <cstdio>
#include <cstring>
#include <gst/app/gstappsrc.h>
#include <gst/gst.h>

namespace {

int Complain(const char* what)
{
    std::fprintf(stderr, "film: %s\n", what);
    return 0;
}

GstElement* MakePipeline(const QByteArray& file, const FilmSource& film)
{
    // Sound is small and goes in first as a whole; pictures wait for the encoder.
    gchar* text = g_strdup_printf(
        "appsrc name=video format=time block=true max-bytes=8000000 "
        "caps=video/x-raw,format=BGRx,width=%d,height=%d,framerate=%d/1 "
        "! videoconvert ! x264enc threads=1 bitrate=1100 key-int-max=%d bframes=0 speed-preset=medium "
        "! video/x-h264,profile=constrained-baseline ! h264parse ! mp4mux name=mux faststart=true "
        "! filesink name=file "
        "appsrc name=audio format=time max-bytes=0 "
        "caps=audio/x-raw,format=S16LE,rate=%d,channels=1,layout=interleaved "
        "! audioconvert ! audioresample ! audio/x-raw,rate=44100,channels=2 ! avenc_aac bitrate=96000 "
        "! aacparse ! mux.",
        film.width, film.height, film.frameRate, film.frameRate, film.soundRate);
    GError* error = nullptr;
    GstElement* pipeline = gst_parse_launch(text, &error);
    g_free(text);
    if (error) {
        Complain(error->message);
        g_error_free(error);
        if (pipeline)
            gst_object_unref(pipeline);
        return nullptr;
    }
    GstElement* sink = gst_bin_get_by_name(GST_BIN(pipeline), "file");
    g_object_set(sink, "location", file.constData(), nullptr);
    gst_object_unref(sink);
    return pipeline;
}

int Push(GstElement* source, const void* bytes, size_t size, GstClockTime at, GstClockTime lasts)
{
    GstBuffer* buffer = gst_buffer_new_allocate(nullptr, size, nullptr);
    gst_buffer_fill(buffer, 0, bytes, size);
    GST_BUFFER_PTS(buffer) = at;
    GST_BUFFER_DURATION(buffer) = lasts;
    return gst_app_src_push_buffer(GST_APP_SRC(source), buffer) == GST_FLOW_OK;
}

int PushSound(GstElement* pipeline, const FilmSource& film)
{
    GstElement* source = gst_bin_get_by_name(GST_BIN(pipeline), "audio");
    const size_t size = film.sound.size() * sizeof(int16_t);
    const int pushed = Push(source, film.sound.data(), size, 0,
                            gst_util_uint64_scale(film.sound.size(), GST_SECOND, guint64(film.soundRate)));
    gst_app_src_end_of_stream(GST_APP_SRC(source));
    gst_object_unref(source);
    return pushed;
}

int PushFrames(GstElement* pipeline, const FilmSource& film)
{
    GstElement* source = gst_bin_get_by_name(GST_BIN(pipeline), "video");
    const GstClockTime lasts = GST_SECOND / guint64(film.frameRate);
    int pushed = 1;
    for (int i = 0; i < film.frames && pushed; ++i) {
        const QImage image = film.frame(i);
        pushed = Push(source, image.constBits(), size_t(image.sizeInBytes()), guint64(i) * lasts, lasts);
    }
    gst_app_src_end_of_stream(GST_APP_SRC(source));
    gst_object_unref(source);
    return pushed;
}

int WaitForEnd(GstElement* pipeline)
{
    GstBus* bus = gst_element_get_bus(pipeline);
    GstMessage* message = gst_bus_timed_pop_filtered(bus, GST_CLOCK_TIME_NONE,
                                                     GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
    const int good = GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS;
    if (!good) {
        GError* error = nullptr;
        gst_message_parse_error(message, &error, nullptr);
        Complain(error->message);
        g_error_free(error);
    }
    gst_message_unref(message);
    gst_object_unref(bus);
    return good;
}

quint32 NumberAt(const QByteArray& bytes, qsizetype at)
{
    return qFromBigEndian<quint32>(bytes.constData() + at);
}

// The boxes of an MP4 file from `at` to `end`: in those that tell when they were made, nothing is left of it.
void ForgetTimes(QByteArray& bytes, qsizetype at, qsizetype end)
{
    constexpr qsizetype kHead = 8, kFlags = 4;
    while (at + kHead + kFlags <= end) {
        const qsizetype size = qsizetype(NumberAt(bytes, at));
        if (size < kHead + kFlags || at + size > end)
            return;
        const QByteArray name = bytes.mid(at + 4, 4);
        if (name == "moov" || name == "trak" || name == "mdia") {
            ForgetTimes(bytes, at + kHead, at + size);
        } else if (name == "mvhd" || name == "tkhd" || name == "mdhd") {
            const qsizetype two = bytes[at + kHead] == 0 ? 8 : 16; // made, and changed
            bytes.replace(at + kHead + kFlags, two, QByteArray(two, 0));
        }
        at += size;
    }
}

// The same pictures make the same file, whenever it is made.
int ForgetTimes(const QByteArray& file)
{
    QFile film(QFile::decodeName(file));
    if (!film.open(QIODevice::ReadWrite))
        return Complain("the file cannot be read again");
    QByteArray bytes = film.readAll();
    ForgetTimes(bytes, 0, bytes.size());
    return film.seek(0) && film.write(bytes) == bytes.size() ? 1 : Complain("the file cannot be written");
}

} // namespace

int WriteFilm(const QByteArray& file, const FilmSource& film)
{
    gst_init(nullptr, nullptr);
    GstElement* pipeline = MakePipeline(file, film);
    if (!pipeline)
        return 0;
    gst_element_set_state(pipeline, GST_STATE_PLAYING);
    // A push fails when the pipeline has; the bus knows why.
    if (PushSound(pipeline, film))
        PushFrames(pipeline, film);
    const int written = WaitForEnd(pipeline);
    gst_element_set_state(pipeline, GST_STATE_NULL);
    gst_object_unref(pipeline);
    return written && ForgetTimes(file);
}
