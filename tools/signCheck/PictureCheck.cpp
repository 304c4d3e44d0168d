#include "tools/signCheck/PictureCheck.h"
#include "host/services/pictures/pictureDecoder.h"
#include "media/PhotoFile.h"
#include "media/jpegHeader.h"
#include "support/file/fileTools.h"
#include "support/file/path.h"

namespace {

const char* const kKinds = "phones show .jpg, .jpeg, .jpe, .jfif, .png, .bmp and .gif";

bool isOfAKind(const QByteArray& file)
{
    static const char* const kinds[] = {".jpg", ".jpeg", ".jpe", ".jfif", ".bmp",
                                        ".gif", ".png",  ".tif", ".tiff"};
    const char* extension = pathGetFileExtensionPos(file.constData());
    return std::any_of(std::begin(kinds), std::end(kinds),
                       [extension](const char* kind) { return qstricmp(extension, kind) == 0; });
}

QString tooLarge(const QByteArray& file)
{
    jpegHeader header;
    if (header.Read(file.constData()))
        return QString("it is a JPEG of %1 by %2; 1920 by 1024 is the largest that a phone shows")
            .arg(header.GetWidth())
            .arg(header.GetHeight());
    return QString("it has %1 bytes; no phone shows a picture of its kind of more than %2")
        .arg(fileSize(file.constData()))
        .arg(IMAGE_SIZE_LIMIT);
}

// Phones read a picture for the region in which it shows; here for all of the screen.
QStringList decoderFaults(const QByteArray& file)
{
    const tagPictureShape shape = {QSize(800, 480), tagPictureShape::SIDES};
    switch (pictureDecode(file.constData(), shape, tagPictureLimits(), nullptr).eResult) {
    case PICTURE_READ:
        return {};
    case PICTURE_TOO_LARGE:
        return {"it has more pixels than a phone takes"};
    case PICTURE_TOO_SLOW:
        return {"it takes so long to read that phones give it up"};
    default:
        return {QString("no phone can read it as a picture: it is damaged, cut short or of another kind; %1")
                    .arg(kKinds)};
    }
}

} // namespace

QStringList pictureFaults(const QByteArray& file)
{
    if (!isOfAKind(file))
        return {QString("its name ends in no kind of picture; %1").arg(kKinds)};
    const IMAGE_CHECK check = PhotoFile::GetImageType(file.constData(), IMAGE_SIZE_LIMIT);
    if (check == IMAGE_TOO_LARGE)
        return {tooLarge(file)};
    if (check == IMAGE_DAMAGED)
        return {"it is a damaged JPEG, or none"};
    return decoderFaults(file);
}
