#include "players/pictureSource.h"
#include "support/host/trace.h"
#include <QByteArray>
#include <cstdlib>
#include <glib/gstdio.h>

namespace {

constexpr int kCameras = 4;
constexpr int kReadAndWrite = 6; // as modes of files have it
const char* const kNone = "none";

// Empty: the system's cameras.
QByteArray described()
{
    const char* text = getenv("HX_PICTURE_SOURCE");
    return text ? text : "";
}

// Empty when there is none.
QByteArray camera()
{
    for (int i = 0; i < kCameras; ++i) {
        const QByteArray path = "/dev/video" + QByteArray::number(i);
        if (g_access(path.constData(), kReadAndWrite) == 0)
            return path;
    }
    return {};
}

} // namespace

bool pictureSourceIsThere()
{
    return described().isEmpty() ? !camera().isEmpty() : described() != kNone;
}

GstElement* newPictureSource()
{
    if (!pictureSourceIsThere())
        return nullptr;
    if (described().isEmpty()) {
        GstElement* source = gst_element_factory_make("v4l2src", nullptr);
        if (source)
            g_object_set(source, "device", camera().constData(), nullptr);
        return source;
    }
    GError* error = nullptr;
    GstElement* source = gst_parse_bin_from_description(described().constData(), TRUE, &error);
    if (error)
        nuxTrace(TRACE_NOTE, "HX_PICTURE_SOURCE: %s", error->message);
    g_clear_error(&error);
    return source;
}
