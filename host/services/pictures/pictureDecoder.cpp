#include "host/services/pictures/pictureDecoder.h"
#include "host/services/pictures/jpegRows.h"
#include "host/services/pictures/pictureHeader.h"
#include "host/services/pictures/pictureSource.h"
#include "host/services/pictures/pngRows.h"
#include "host/services/pictures/pngUnpacked.h"
#include <QImageReader>
#include <QTransform>
#include <algorithm>

namespace {

const QSize kSmallest(1, 1);
constexpr int kLongest = 8; // rooms of a picture that is read to be cut

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
    case tagPictureShape::COVER:
        return size.scaled(shape.room, Qt::KeepAspectRatioByExpanding)
            .boundedTo(shape.room * kLongest)
            .boundedTo(size)
            .expandedTo(kSmallest);
    default:
        return size;
    }
}

qint64 pixelsOf(const tagPictureHeader& header)
{
    return qint64(header.size.width()) * header.size.height();
}

bool isTooLarge(const tagPictureHeader& header, const tagPictureShape& shape, const tagPictureLimits& limits)
{
    const bool isWhole = shape.eFit == tagPictureShape::AS_IS;
    return pixelsOf(header) > (isWhole ? limits.nAsIsPixels : limits.nPixels) ||
           header.nWorkBytes > limits.nWorkBytes;
}

QImage forScreen(const QImage& image)
{
    return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                         : QImage::Format_RGB32);
}

QImage finished(const QImage& image, const QSize& size)
{
    if (image.isNull())
        return image;
    return forScreen(
        image.size() == size ? image : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

// Of one that covers its room, the middle; whole: its size in the file, in which it has its shape.
QImage cut(const QImage& image, const QSize& whole, const tagPictureShape& shape)
{
    if (shape.eFit != tagPictureShape::COVER || image.isNull())
        return image;
    const QSizeF part = QSizeF(shape.room).scaled(whole, Qt::KeepAspectRatio);
    const int width = qBound(1, qRound(image.width() * part.width() / whole.width()), image.width());
    const int height = qBound(1, qRound(image.height() * part.height() / whole.height()), image.height());
    const QRect middle((image.width() - width) / 2, (image.height() - height) / 2, width, height);
    return finished(image.copy(middle), shape.room);
}

QImage readPngByTwo(PictureSource& source, const QSize& least)
{
    PngUnpacked unpacked(source);
    return unpacked.start() ? PngRows(source, &unpacked).read(least) : QImage();
}

// Whether one is damaged, the plain way says.
QImage readPng(PictureSource& source, const QSize& least, bool isLarge)
{
    const QImage image = isLarge ? readPngByTwo(source, least) : QImage();
    if (!image.isNull() || source.isGivenUp())
        return image;
    source.seek(0);
    return PngRows(source).read(least);
}

QImage decodePng(PictureSource& source, const tagPictureHeader& header, const tagPictureShape& shape,
                 const tagPictureLimits& limits)
{
    const QSize size = shaped(header.size, shape);
    const bool isLarge = pixelsOf(header) > limits.nAlonePixels;
    return cut(finished(readPng(source, size, isLarge), size), header.size, shape);
}

QImageIOHandler::Transformations turnOf(PictureSource& source, const tagPictureHeader& header)
{
    QImageReader reader(&source, header.format());
    reader.setAutoDetectImageFormat(false);
    const QImageIOHandler::Transformations turn = reader.transformation();
    source.seek(0);
    return turn;
}

QImage turned(const QImage& image, QImageIOHandler::Transformations turn)
{
    const QImage mirrored = image.mirrored(turn & QImageIOHandler::TransformationMirror,
                                           turn & QImageIOHandler::TransformationFlip);
    return turn & QImageIOHandler::TransformationRotate90 ? mirrored.transformed(QTransform().rotate(90))
                                                          : mirrored;
}

QImage decodeJpeg(PictureSource& source, const tagPictureHeader& header, const tagPictureShape& shape)
{
    const QSize size = shaped(header.shownSize(), shape);
    const QSize asRead = header.isTurned() ? size.transposed() : size;
    const QImage image = turned(finished(JpegRows(source).read(asRead), asRead), header.turn);
    return cut(image, header.shownSize(), shape);
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
    source.forgetEnd();
    QImage image;
    const bool isWhole = reader.read(&image) && !isCutShort(source, header) && !source.isGivenUp();
    return isWhole ? cut(finished(image, shaped(header.size, shape)), header.size, shape) : QImage();
}

QImage decode(PictureSource& source, const tagPictureHeader& header, const tagPictureShape& shape,
              const tagPictureLimits& limits)
{
    switch (header.eKind) {
    case tagPictureHeader::PNG:
        return decodePng(source, header, shape, limits);
    case tagPictureHeader::JPEG:
        return decodeJpeg(source, header, shape);
    default:
        return decodeOther(source, header, shape);
    }
}

} // namespace

tagDecodedPicture pictureDecode(const char* path, const tagPictureShape& shape,
                                const tagPictureLimits& limits, const std::atomic<bool>* cancel)
{
    PictureSource source(cancel, limits.nCpuMs);
    if (!source.openPath(path))
        return {};
    if (source.size() > limits.nFileBytes)
        return {PICTURE_TOO_LARGE, QImage(), QSize()};
    tagPictureHeader header = pictureReadHeader(source);
    if (header.eKind == tagPictureHeader::NONE || header.size.isEmpty())
        return {source.isGivenUp() ? PICTURE_TOO_SLOW : PICTURE_DAMAGED, QImage(), QSize()};
    if (isTooLarge(header, shape, limits))
        return {PICTURE_TOO_LARGE, QImage(), QSize()};
    if (header.eKind == tagPictureHeader::JPEG)
        header.turn = turnOf(source, header);
    const QImage image = decode(source, header, shape, limits);
    if (image.isNull())
        return {source.isGivenUp() ? PICTURE_TOO_SLOW : PICTURE_DAMAGED, QImage(), QSize()};
    return {PICTURE_READ, image, header.shownSize()};
}
