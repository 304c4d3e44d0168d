// imageScale.exx: scales a picture for the phone, which starts it for each that it imports in a size of its
// own. A picture that takes too long, or too much memory, ends this process and no other.
#include "host/services/pictures/pictureDecoder.h"
#include "support/file/atomicSave.h"
#include "support/file/path.h"
#include "tools/imageScale/ScaleOrder.h"
#include <QBuffer>
#include <QCoreApplication>
#include <QImage>
#include <QPainter>
#include <cstdio>
#include <strings.h>
#include <sys/resource.h>

namespace {

constexpr rlim_t kMostSeconds = 20; // of the processor; on a disk that hangs the phone gives it up
constexpr rlim_t kMostMemory = 512u << 20;
constexpr int kQuality = 90;

const char* formatOf(const std::string& path)
{
    static const char* const jpegs[] = {".jpg", ".jpeg", ".jpe", ".jfif"};
    const char* extension = pathGetFileExtensionPos(path.c_str());
    for (const char* jpeg : jpegs) {
        if (strcasecmp(extension, jpeg) == 0)
            return "JPG";
    }
    return strcasecmp(extension, ".bmp") == 0 ? "BMP" : "PNG";
}

// What can be seen through has white behind it where its kind cannot keep that.
QImage onWhite(const QImage& image)
{
    if (!image.hasAlphaChannel())
        return image;
    QImage result(image.size(), QImage::Format_RGB32);
    result.fill(Qt::white);
    QPainter(&result).drawImage(0, 0, image);
    return result;
}

bool save(const QImage& image, const std::string& path)
{
    const char* format = formatOf(path);
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    const QImage saved = *format == 'P' ? image : onWhite(image);
    return saved.save(&bytes, format, *format == 'J' ? kQuality : -1) &&
           fileSaveAtomic(path.c_str(), bytes.data().constData(), size_t(bytes.data().size()));
}

bool scale(const ScaleOrder& order)
{
    tagPictureShape shape;
    shape.room = QSize(order.nWidth, order.nHeight);
    shape.eFit = tagPictureShape::EXACT;
    const tagDecodedPicture picture =
        pictureDecode(order.strSource.c_str(), shape, tagPictureLimits(), nullptr);
    return picture.eResult == PICTURE_READ && save(picture.image, order.strTarget);
}

// The address sanitizer takes room for itself that no program uses.
void setBounds()
{
    const rlimit time = {kMostSeconds, kMostSeconds};
    setrlimit(RLIMIT_CPU, &time);
#ifndef __SANITIZE_ADDRESS__
    const rlimit memory = {kMostMemory, kMostMemory};
    setrlimit(RLIMIT_AS, &memory);
#endif
}

} // namespace

int main(int argc, char** argv)
{
    ScaleOrder order;
    if (argc != 2 || !order.parse(argv[1])) {
        std::fprintf(stderr, "usage: imageScale.exx \"@&@SOURCE @&@WIDTH @&@HEIGHT @&@TARGET @&@VERDICT\"\n"
                             "Writes 1 into VERDICT when it has scaled the picture, else 0.\n");
        return 2;
    }
    setBounds();
    QCoreApplication application(argc, argv);
    const bool done = scale(order);
    return fileSaveAtomic(order.strVerdict.c_str(), done ? "1" : "0", 1) && done ? 0 : 1;
}
