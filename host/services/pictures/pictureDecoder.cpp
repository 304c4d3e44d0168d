#include "host/services/pictures/pictureDecoder.h"
#include "host/services/pictures/pictureHeader.h"
#include "host/services/pictures/pictureSource.h"
#include "host/services/pictures/pngRows.h"
#include <QImageReader>
#include <algorithm>

namespace {

const QSize kSmallest(1, 1);

QSize shaped(const QSize& size, const tagPictureShape& shape)
{
    const QSize fitted = size.scaled(shape.room, Qt::KeepAspectRatio).expandedTo(kSmallest);
    switch (shape.eFit) {
    case tagPictureShape::INSIDE:
        return fitted.boundedTo(size);
    case tagPictureShape::SIDES:
        return size.boundedTo(shape.room);
    case tagPictureShape::EXACT:
        return shape.room;
    case tagPictureShape::FITTED:
        return fitted;
    default:
        return size;
    }
}

bool isTooLarge(const tagPictureHeader& header, const tagPictureShape& shape, const tagPictureLimits& limits)
{
    const qint64 pixels = qint64(header.size.width()) * header.size.height();
    const bool isWhole = shape.eFit == tagPictureShape::AS_IS;
    return pixels > (isWhole ? limits.nAsIsPixels : limits.nPixels) || header.nWorkBytes > limits.nWorkBytes;
}

QImage decodePng(PictureSource& source, const tagPictureHeader& header, const tagPictureShape& shape)
{
    return PngRows(source).read(shaped(header.size, shape));
}

// What a decoder makes of the missing part of a file is no picture.
bool isCutShort(const PictureSource& source, const tagPictureHeader& header)
{
    const bool asksForNoMore = header.eKind == tagPictureHeader::BMP;
    return source.isAskedBeyondEnd() || (asksForNoMore && source.isReadShort());
}

QImage decodeOther(PictureSource& source, const tagPictureHeader& header, const tagPictureShape& shape)
{
    QImageReader reader(&source, header.format());
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    const bool isTurned = reader.transformation() & QImageIOHandler::TransformationRotate90;
    const QSize size = shaped(isTurned ? header.size.transposed() : header.size, shape);
    // Scaled while it is read, where that makes it smaller.
    const QSize asRead = isTurned ? size.transposed() : size;
    if (asRead != header.size)
        reader.setScaledSize(asRead);
    source.forgetEnd();
    QImage image;
    const bool isRead = reader.read(&image);
    return isRead && !isCutShort(source, header) && !source.isGivenUp() ? image : QImage();
}

QImage forScreen(const QImage& image)
{
    return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                         : QImage::Format_RGB32);
}

QImage finished(const QImage& image, const QSize& size)
{
    return forScreen(
        image.size() == size ? image : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

} // namespace

tagDecodedPicture pictureDecode(const char* path, const tagPictureShape& shape,
                                const tagPictureLimits& limits, const std::atomic<bool>* cancel)
{
    PictureSource source(cancel, limits.nCpuMs);
    if (!source.openPath(path))
        return {};
    if (source.size() > limits.nFileBytes)
        return {PICTURE_TOO_LARGE, QImage()};
    const tagPictureHeader header = pictureReadHeader(source);
    if (header.eKind == tagPictureHeader::NONE || header.size.isEmpty())
        return {source.isGivenUp() ? PICTURE_TOO_SLOW : PICTURE_DAMAGED, QImage()};
    if (isTooLarge(header, shape, limits))
        return {PICTURE_TOO_LARGE, QImage()};
    const bool isPng = header.eKind == tagPictureHeader::PNG;
    const QImage image = isPng ? decodePng(source, header, shape) : decodeOther(source, header, shape);
    if (image.isNull())
        return {source.isGivenUp() ? PICTURE_TOO_SLOW : PICTURE_DAMAGED, QImage()};
    return {PICTURE_READ, isPng ? finished(image, shaped(header.size, shape)) : forScreen(image)};
}
