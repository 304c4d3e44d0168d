#include "host/services/pictures/pictureHeader.h"
#include "host/services/pictures/gifBlocks.h"
#include "host/services/pictures/pictureSource.h"
#include <QtEndian>
#include <algorithm>
#include <cstring>

namespace {

constexpr int kPixelBytes = 4;
constexpr int kPngHeader = 33; // signature and first chunk
constexpr int kBmpHeader = 26;
constexpr int kMostSegments = 4096; // of a JPEG, before its picture

int big16(const uchar* bytes)
{
    return qFromBigEndian<quint16>(bytes);
}

qint64 wholeBytes(const QSize& size)
{
    return qint64(size.width()) * size.height() * kPixelBytes;
}

QSize sizeOf(quint32 width, quint32 height)
{
    return QSize(int(std::min(width, 0x7fffffffu)), int(std::min(height, 0x7fffffffu)));
}

tagPictureHeader readPng(PictureSource& source)
{
    tagPictureHeader header;
    uchar bytes[kPngHeader];
    if (!source.readAt(0, bytes, sizeof bytes) || memcmp(bytes + 12, "IHDR", 4) != 0)
        return header;
    header.eKind = tagPictureHeader::PNG;
    header.size = sizeOf(qFromBigEndian<quint32>(bytes + 16), qFromBigEndian<quint32>(bytes + 20));
    const bool isInterlaced = bytes[28] != 0;
    header.nWorkBytes = isInterlaced ? wholeBytes(header.size) : 0;
    return header;
}

tagPictureHeader readBmp(PictureSource& source)
{
    tagPictureHeader header;
    uchar bytes[kBmpHeader];
    if (!source.readAt(0, bytes, sizeof bytes))
        return header;
    header.eKind = tagPictureHeader::BMP;
    const bool isOld = qFromLittleEndian<quint32>(bytes + 14) == 12;
    if (isOld) {
        header.size = QSize(qFromLittleEndian<quint16>(bytes + 18), qFromLittleEndian<quint16>(bytes + 20));
    } else {
        const auto height = qint64(qFromLittleEndian<qint32>(bytes + 22)); // negative: from the top
        header.size = sizeOf(qFromLittleEndian<quint32>(bytes + 18), quint32(qAbs(height)));
    }
    header.nWorkBytes = wholeBytes(header.size);
    return header;
}

// A decoder keeps the coefficients of the whole picture when they do not come in one round.
qint64 coefficientBytes(const uchar* frame, int components)
{
    constexpr int kBytes = 2;
    int most = 1, all = 0;
    for (int i = 0; i < components; ++i) {
        const int sampling = (frame[7 + 3 * i] >> 4) * (frame[7 + 3 * i] & 15);
        most = std::max(most, sampling);
        all += sampling;
    }
    return qint64(big16(frame + 1)) * big16(frame + 3) * kBytes * all / most;
}

bool isFrame(int marker)
{
    return marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
}

// From marker to marker, up to where the picture begins.
tagPictureHeader readJpeg(PictureSource& source)
{
    enum { SCAN = 0xda, FILL = 0xff, LEAST_FRAME = 6 };
    tagPictureHeader header;
    uchar frame[6 + 3 * 255] = {};
    qint64 at = 2;
    for (int i = 0; i < kMostSegments; ++i) {
        uchar head[4];
        if (!source.readAt(at, head, sizeof head) || head[0] != FILL)
            return header;
        const int length = big16(head + 2);
        if (head[1] == FILL) {
            ++at;
            continue;
        }
        if (isFrame(head[1])) {
            const int known = std::min<int>(length - 2, sizeof frame);
            if (known < LEAST_FRAME || !source.readAt(at + 4, frame, known) || known < 6 + 3 * frame[5])
                return header;
            header.size = QSize(big16(frame + 3), big16(frame + 1));
            const bool isProgressive = (head[1] & 3) == 2;
            header.nWorkBytes = isProgressive ? coefficientBytes(frame, frame[5]) : 0;
        } else if (head[1] == SCAN) {
            uchar components = 0;
            if (header.size.isEmpty() || !source.readAt(at + 4, &components, 1))
                return header;
            if (components < frame[5])
                header.nWorkBytes = coefficientBytes(frame, frame[5]);
            header.eKind = tagPictureHeader::JPEG;
            return header;
        }
        at += 2 + length;
    }
    return header;
}

} // namespace

const char* tagPictureHeader::format() const
{
    static const char* const names[] = {"", "jpeg", "png", "bmp", "gif"};
    return names[eKind];
}

tagPictureHeader pictureReadHeader(PictureSource& source)
{
    uchar start[8];
    if (!source.readAt(0, start, sizeof start))
        return tagPictureHeader();
    if (start[0] == 0xff && start[1] == 0xd8)
        return readJpeg(source);
    if (memcmp(start, "\x89PNG\r\n\x1a\n", 8) == 0)
        return readPng(source);
    if (memcmp(start, "BM", 2) == 0)
        return readBmp(source);
    tagPictureHeader header;
    if (memcmp(start, "GIF8", 4) == 0) {
        header.size = gifReadSize(source);
        header.eKind = header.size.isEmpty() ? tagPictureHeader::NONE : tagPictureHeader::GIF;
        // The decoder keeps a copy of the screen.
        header.nWorkBytes = 2 * wholeBytes(header.size);
    }
    return header;
}
