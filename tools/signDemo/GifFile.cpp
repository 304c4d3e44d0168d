#include "tools/signDemo/GifFile.h"

namespace {

constexpr int kColours = 256, kTransparent = 255;
constexpr int kClear = 256, kEnd = 257, kCodeBits = 9;
constexpr int kRunBeforeClear = 250; // codes stay nine bits wide as long as the table is emptied in time
constexpr int kBlock = 255;

void PutShort(QByteArray& out, int value)
{
    out += char(value & 0xff);
    out += char(value >> 8 & 0xff);
}

// Codes of nine bits, the lowest bit first.
class CodeWriter
{
public:
    void Put(int code)
    {
        m_bits |= unsigned(code) << m_count;
        for (m_count += kCodeBits; m_count >= 8; m_count -= 8) {
            m_bytes += char(m_bits & 0xff);
            m_bits >>= 8;
        }
    }
    QByteArray Bytes() const { return m_count ? m_bytes + char(m_bits & 0xff) : m_bytes; }

private:
    QByteArray m_bytes;
    unsigned m_bits = 0;
    int m_count = 0;
};

QImage Indexed(const QImage& picture)
{
    // One colour is kept for what is transparent: the others are those of the opaque picture.
    return picture.convertToFormat(QImage::Format_RGB32)
        .convertToFormat(QImage::Format_Indexed8, Qt::ThresholdDither | Qt::AvoidDither);
}

QByteArray ColourTable(const QImage& indexed)
{
    QByteArray table(kColours * 3, '\0');
    for (int i = 0; i < indexed.colorCount() && i < kTransparent; ++i) {
        const QRgb colour = indexed.color(i);
        table[3 * i] = char(qRed(colour));
        table[3 * i + 1] = char(qGreen(colour));
        table[3 * i + 2] = char(qBlue(colour));
    }
    return table;
}

QByteArray Pixels(const QImage& picture, const QImage& indexed)
{
    CodeWriter codes;
    codes.Put(kClear);
    int run = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (++run > kRunBeforeClear) {
                codes.Put(kClear);
                run = 1;
            }
            const bool clear = qAlpha(picture.pixel(x, y)) < 128;
            codes.Put(clear ? kTransparent : std::min(indexed.pixelIndex(x, y), kTransparent - 1));
        }
    }
    codes.Put(kEnd);
    return codes.Bytes();
}

} // namespace

QByteArray GifFile(const QImage& picture)
{
    const QImage indexed = Indexed(picture);
    QByteArray out = "GIF89a";
    PutShort(out, picture.width());
    PutShort(out, picture.height());
    out += QByteArray("\xf7\x00\x00", 3) + ColourTable(indexed);
    out += QByteArray("\x21\xf9\x04\x01\x00\x00", 6) + char(kTransparent) + '\0';
    out += ',' + QByteArray(4, '\0');
    PutShort(out, picture.width());
    PutShort(out, picture.height());
    out += QByteArray("\x00\x08", 2);
    const QByteArray pixels = Pixels(picture, indexed);
    for (qsizetype at = 0; at < pixels.size(); at += kBlock) {
        const QByteArray block = pixels.mid(at, kBlock);
        out += char(block.size()) + block;
    }
    return out + QByteArray("\0;", 2);
}
