#include "tests/kit/plain/signTexts.h"
#include "tests/kit/plain/pictureFiles.h"
#include <QBuffer>

namespace {

QByteArray encoded(const QImage& image, const char* format, int quality)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format, quality);
    return bytes;
}

QByteArray fileMedia(const char* type, const QByteArray& file, const QByteArray& seconds,
                     const QByteArray& attributes)
{
    return QByteArray("<media type=\"") + type + "\" path=\"" + file + "\" duration=\"" + seconds + "\" " +
           attributes + "/>";
}

} // namespace

QByteArray kit::signLayout(const QByteArray& regions, const QByteArray& attributes)
{
    return "<layout width=\"800\" height=\"480\" " + attributes + ">" + regions + "</layout>";
}

QByteArray kit::signRegion(const QRect& rect, const QByteArray& media)
{
    return QString("<region left=\"%1\" top=\"%2\" width=\"%3\" height=\"%4\">")
               .arg(rect.left())
               .arg(rect.top())
               .arg(rect.width())
               .arg(rect.height())
               .toUtf8() +
           media + "</region>";
}

QByteArray kit::signImage(const QByteArray& file, const SignSeconds& seconds, const QByteArray& attributes)
{
    return fileMedia("image", file, seconds.text, attributes);
}

QByteArray kit::signVideo(const QByteArray& file, const SignSeconds& seconds, const QByteArray& attributes)
{
    return fileMedia("video", file, seconds.text, attributes);
}

QByteArray kit::signText(const QByteArray& html, const SignSeconds& seconds, const QByteArray& attributes)
{
    return "<media type=\"text\" duration=\"" + seconds.text + "\" " + attributes + "><text><![CDATA[" +
           html + "]]></text></media>";
}

QByteArray kit::signPicture(const QColor& colour, const QSize& size, const char* format)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return encoded(image, format, -1);
}

QByteArray kit::signPhoto(int number, int bytes)
{
    static QByteArray base;
    for (int quality = 90; base.isEmpty() || base.size() > bytes - 16; quality -= 5)
        base = encoded(photo(QSize(640, 400)), "JPG", quality);
    // What follows the end of a picture is not looked at.
    return base + QByteArray::number(number).rightJustified(bytes - base.size(), '0');
}
