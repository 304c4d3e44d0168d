#include "tests/kit/plain/pictureFiles.h"
#include <QBuffer>
#include <QImage>
#include <QtEndian>

#include <zlib.h>

namespace {

constexpr int kStrip = 50;             // rows
constexpr int kBlackBytes = 1 << 20;   // that are repeated
constexpr int kGray = 0, kColours = 2; // kinds of PNG

QByteArray big32(quint32 number)
{
    QByteArray bytes(4, 0);
    qToBigEndian(number, bytes.data());
    return bytes;
}

QByteArray chunk(const QByteArray& name, const QByteArray& data)
{
    const QByteArray body = name + data;
    const auto sum = crc32(0, reinterpret_cast<const Bytef*>(body.constData()), uInt(body.size()));
    return big32(quint32(data.size())) + body + big32(quint32(sum));
}

// In pieces that stand for themselves, so that the same one comes as often as it is wanted.
class Packed
{
public:
    Packed() : m_bytes(QByteArray::fromHex("7801")) {}

    void add(const QByteArray& data, qint64 times)
    {
        const QByteArray piece = packed(data);
        const auto sum = adler32(1, reinterpret_cast<const Bytef*>(data.constData()), uInt(data.size()));
        for (qint64 i = 0; i < times; ++i) {
            m_bytes += piece;
            m_sum = adler32_combine(m_sum, sum, data.size());
        }
    }
    QByteArray whole() const { return m_bytes + QByteArray::fromHex("0300") + big32(quint32(m_sum)); }

private:
    static QByteArray packed(const QByteArray& data)
    {
        z_stream stream = {};
        deflateInit2(&stream, 6, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
        QByteArray out(qsizetype(deflateBound(&stream, uLong(data.size()))) + 64, 0);
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.constData()));
        stream.avail_in = uInt(data.size());
        stream.next_out = reinterpret_cast<Bytef*>(out.data());
        stream.avail_out = uInt(out.size());
        deflate(&stream, Z_FULL_FLUSH);
        out.truncate(qsizetype(stream.total_out));
        deflateEnd(&stream);
        return out;
    }

    QByteArray m_bytes;
    uLong m_sum = 1;
};

QByteArray png(const QSize& size, int kind, bool isInterlaced, const QByteArray& data)
{
    const char depthAndKind[] = {8, char(kind), 0, 0, char(isInterlaced)};
    return QByteArray("\x89PNG\r\n\x1a\n", 8) +
           chunk("IHDR", big32(quint32(size.width())) + big32(quint32(size.height())) +
                             QByteArray(depthAndKind, sizeof depthAndKind)) +
           chunk("IDAT", data) + chunk("IEND", QByteArray());
}

// Bytes of the rows of one pass: pixels of a row, and one in front.
qint64 passBytes(const QSize& size, int x, int y, int stepX, int stepY)
{
    const qint64 width = (size.width() - x + stepX - 1) / stepX;
    const qint64 height = (size.height() - y + stepY - 1) / stepY;
    return width > 0 && height > 0 ? (width + 1) * height : 0;
}

qint64 grayBytes(const QSize& size, bool isInterlaced)
{
    if (!isInterlaced)
        return passBytes(size, 0, 0, 1, 1);
    return passBytes(size, 0, 0, 8, 8) + passBytes(size, 4, 0, 8, 8) + passBytes(size, 0, 4, 4, 8) +
           passBytes(size, 2, 0, 4, 4) + passBytes(size, 0, 2, 2, 4) + passBytes(size, 1, 0, 2, 2) +
           passBytes(size, 0, 1, 1, 2);
}

} // namespace

QByteArray kit::pngOfOneColour(const QSize& size, bool isInterlaced)
{
    const qint64 bytes = grayBytes(size, isInterlaced);
    Packed packed;
    packed.add(QByteArray(kBlackBytes, 0), bytes / kBlackBytes);
    packed.add(QByteArray(qsizetype(bytes % kBlackBytes), 0), 1);
    return png(size, kGray, isInterlaced, packed.whole());
}

QByteArray kit::pngPhoto(const QSize& size)
{
    QByteArray strip;
    unsigned grain = 1;
    for (int y = 0; y < kStrip; ++y) {
        strip += char(y % 5); // all ways of writing a row
        for (int x = 0; x < 3 * size.width(); ++x) {
            grain = grain * 1664525u + 1013904223u;
            strip += char(int(grain >> 30) - 2);
        }
    }
    Packed packed;
    packed.add(strip, size.height() / kStrip);
    return png(size, kColours, false, packed.whole());
}

QByteArray kit::pngMended(const QByteArray& png)
{
    QByteArray mended = png.left(8);
    while (mended.size() + 12 <= png.size()) {
        const auto at = mended.size();
        const auto count = qsizetype(qFromBigEndian<quint32>(png.constData() + at));
        if (count > png.size() - at - 12)
            break;
        mended += chunk(png.mid(at + 4, 4), png.mid(at + 8, count));
    }
    return mended + png.mid(mended.size());
}

QImage kit::photo(const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    unsigned grain = 1;
    for (int y = 0; y < size.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            grain = grain * 1664525u + 1013904223u;
            const int noise = int(grain >> 28);
            line[x] = qRgb((x / 8 + noise) & 255, (y / 8 + noise) & 255, ((x + y) / 16 + noise) & 255);
        }
    }
    return image;
}

QByteArray kit::jpegPhoto(const QSize& size)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    photo(size).save(&buffer, "JPG", 85);
    return bytes;
}

QByteArray kit::gifOfScreen(const QSize& screen)
{
    QByteArray size(4, 0);
    qToLittleEndian(quint16(screen.width()), size.data());
    qToLittleEndian(quint16(screen.height()), size.data() + 2);
    return "GIF89a" + size +
           QByteArray::fromHex("800000"
                               "000000ffffff"
                               "2c000000000100010000"
                               "02024401003b");
}
