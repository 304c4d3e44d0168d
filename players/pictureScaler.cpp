#include "players/pictureScaler.h"
#include <QRect>
#include <cstring>

namespace {

// The toolkit scales fields beyond the end of its memory: both of a picture are scaled as one.
GstVideoInfo wholePicture(const GstVideoInfo& from)
{
    GstVideoInfo whole = from;
    whole.interlace_mode = GST_VIDEO_INTERLACE_MODE_PROGRESSIVE;
    GST_VIDEO_INFO_FIELD_ORDER(&whole) = GST_VIDEO_FIELD_ORDER_UNKNOWN;
    return whole;
}

// Where the picture goes in an area of that size, in its own shape.
QRect shapeIn(const GstVideoInfo& from, const QSize& size)
{
    const qint64 width = qint64(from.width) * from.par_n;
    const qint64 height = qint64(from.height) * from.par_d;
    QRect area(QPoint(0, 0), size);
    if (width <= 0 || height <= 0)
        return area;
    const QSize shown = width * size.height() > height * size.width()
                            ? QSize(size.width(), int(qMax<qint64>(1, height * size.width() / width)))
                            : QSize(int(qMax<qint64>(1, width * size.height() / height)), size.height());
    QRect inside(QPoint(0, 0), shown);
    inside.moveCenter(area.center());
    return inside;
}

GstStructure* optionsFor(const QRect& inside)
{
    return gst_structure_new(
        "options", GST_VIDEO_CONVERTER_OPT_DEST_X, G_TYPE_INT, inside.x(), GST_VIDEO_CONVERTER_OPT_DEST_Y,
        G_TYPE_INT, inside.y(), GST_VIDEO_CONVERTER_OPT_DEST_WIDTH, G_TYPE_INT, inside.width(),
        GST_VIDEO_CONVERTER_OPT_DEST_HEIGHT, G_TYPE_INT, inside.height(), GST_VIDEO_CONVERTER_OPT_FILL_BORDER,
        G_TYPE_BOOLEAN, TRUE, GST_VIDEO_CONVERTER_OPT_RESAMPLER_METHOD, GST_TYPE_VIDEO_RESAMPLER_METHOD,
        GST_VIDEO_RESAMPLER_METHOD_LINEAR, GST_VIDEO_CONVERTER_OPT_THREADS, G_TYPE_UINT, 1u, nullptr);
}

} // namespace

pictureScaler::~pictureScaler()
{
    drop();
}

void pictureScaler::drop()
{
    if (m_pConverter)
        gst_video_converter_free(m_pConverter);
    m_pConverter = nullptr;
}

bool pictureScaler::prepare(const GstVideoInfo& pictures, const QSize& size, bool keepShape)
{
    // Each of them would be one field.
    if (GST_VIDEO_INFO_INTERLACE_MODE(&pictures) == GST_VIDEO_INTERLACE_MODE_ALTERNATE)
        return false;
    const GstVideoInfo from = wholePicture(pictures);
    if (m_pConverter && size == m_size && keepShape == m_bKeepShape &&
        gst_video_info_is_equal(&from, &m_from))
        return true;
    drop();
    m_from = from;
    m_size = size;
    m_bKeepShape = keepShape;
    gst_video_info_set_format(&m_to, GST_VIDEO_FORMAT_BGRx, guint(size.width()), guint(size.height()));
    // Only shape and colours change.
    m_to.fps_n = from.fps_n;
    m_to.fps_d = from.fps_d;
    const QRect inside = keepShape ? shapeIn(from, size) : QRect(QPoint(0, 0), size);
    m_pConverter = gst_video_converter_new(&m_from, &m_to, optionsFor(inside));
    m_bQuick =
        inside == QRect(0, 0, from.width, from.height) && inside.size() == size && m_quick.prepare(from);
    return m_pConverter != nullptr;
}

void pictureScaler::paint(const GstVideoFrame& picture, unsigned char* pixels, int lineBytes) const
{
    GstVideoFrame from = picture;
    from.info.interlace_mode = m_from.interlace_mode;
    from.flags = GST_VIDEO_FRAME_FLAG_NONE;
    if (lineBytes == 0 && m_bQuick && m_quick.paint(from, pixels))
        return;
    GstVideoFrame to = {};
    to.info = m_to;
    if (lineBytes != 0)
        to.info.stride[0] = lineBytes;
    to.data[0] = pixels;
    gst_video_converter_frame(m_pConverter, &from, &to);
}
