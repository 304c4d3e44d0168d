#include "host/services/pictures/gifBlocks.h"
#include "host/services/pictures/gifPixels.h"
#include "host/services/pictures/pictureSource.h"
#include <QtEndian>
#include <algorithm>

namespace {

enum { EXTENSION = 0x21, FRAME = 0x2c, TRAILER = 0x3b, HAS_COLOURS = 0x80, SCREEN = 13 };

constexpr int kBlock = 64 * 1024;

// Reads forward through a block of memory.
class Walk
{
public:
    explicit Walk(PictureSource& source) : m_source(source) {}

    // -1 behind the end.
    int next()
    {
        if (m_nAt - m_nFrom >= m_nKnown && !fill())
            return -1;
        return m_block[m_nAt++ - m_nFrom];
    }
    int next16()
    {
        const int low = next();
        const int high = next();
        return low < 0 || high < 0 ? -1 : low | high << 8;
    }
    void skip(qint64 count) { m_nAt += count; }
    // The pieces up to the empty one. False when the file ends before.
    bool skipPieces()
    {
        int length = next();
        for (; length > 0; length = next())
            skip(length);
        return length == 0;
    }
    // The same, read by somebody.
    bool readPieces(GifPixels& pixels)
    {
        int length = next();
        for (; length > 0; length = next()) {
            for (int i = 0; i < length; ++i) {
                const int byte = next();
                if (byte < 0)
                    return false;
                pixels.addByte(byte);
            }
        }
        return length == 0;
    }

private:
    bool fill()
    {
        m_nFrom = m_nAt;
        m_nKnown = std::min<qint64>(kBlock, m_source.size() - m_nAt);
        return m_nKnown > 0 && !m_source.isGivenUp() && m_source.readAt(m_nFrom, m_block, m_nKnown);
    }

    PictureSource& m_source;
    uchar m_block[kBlock];
    qint64 m_nAt = 0;
    qint64 m_nFrom = 0;
    qint64 m_nKnown = 0;
};

// Of a table of colours, whose length its flags tell.
int coloursOf(int flags)
{
    return flags & HAS_COLOURS ? 3 << ((flags & 7) + 1) : 0;
}

// A frame, of which the code is read. Grows the size to where it reaches. The first one is shown: it has all
// its pixels.
bool walkFrame(Walk& walk, QSize& size, bool isFirst)
{
    const int left = walk.next16(), top = walk.next16(), width = walk.next16(), height = walk.next16();
    const int flags = walk.next();
    if (flags < 0)
        return false;
    size = size.expandedTo(QSize(left + width, top + height));
    walk.skip(coloursOf(flags));
    GifPixels pixels(walk.next());
    return isFirst ? walk.readPieces(pixels) && pixels.count() >= qint64(width) * height : walk.skipPieces();
}

} // namespace

QSize gifReadSize(PictureSource& source)
{
    uchar screen[SCREEN];
    if (!source.readAt(0, screen, sizeof screen))
        return QSize();
    QSize size(qFromLittleEndian<quint16>(screen + 6), qFromLittleEndian<quint16>(screen + 8));
    Walk walk(source);
    walk.skip(SCREEN + coloursOf(screen[10]));
    for (bool hasFrame = false;;) {
        switch (walk.next()) {
        case EXTENSION:
            walk.skip(1);
            if (!walk.skipPieces())
                return QSize();
            break;
        case FRAME:
            if (!walkFrame(walk, size, !hasFrame))
                return QSize();
            hasFrame = true;
            break;
        case 0: // some writers leave an empty piece behind a frame
            break;
        case TRAILER:
            return hasFrame ? size : QSize();
        default:
            return QSize();
        }
    }
}
