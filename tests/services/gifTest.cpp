// Moving pictures of which the first frame is shown, when it is whole.
#include "host/services/pictures/pictureDecoder.h"
#include "tests/kit/phoneTest.h"
#include <vector>

namespace {

const char* const kPicture = "/rundata/a.gif";
const QSize kSize(60, 40);
constexpr int kPieceAtMost = 255;

// Codes of growing length, the lowest bit first.
class Codes
{
public:
    void put(unsigned code, int bits)
    {
        for (int i = 0; i < bits; ++i, ++m_nBits) {
            if (m_nBits % 8 == 0)
                m_bytes.append('\0');
            if (code >> i & 1)
                m_bytes.back() = char(m_bytes.back() | 1 << m_nBits % 8);
        }
    }
    const QByteArray& bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
    int m_nBits = 0;
};

// Each pixel by a code of its own; the table begins anew before it grows.
QByteArray plainCodes(int pixels)
{
    enum { COLOURS = 4, CLEAR = COLOURS, END, BITS = 3 };
    Codes codes;
    for (int i = 0; i < pixels; ++i) {
        if (i % 2 == 0)
            codes.put(CLEAR, BITS);
        codes.put(unsigned(i) % COLOURS, BITS);
    }
    codes.put(END, BITS);
    return codes.bytes();
}

// pieces: how many of the data's pieces are there; -1 for all.
QByteArray gif(const QByteArray& codes, int pieces = -1)
{
    QByteArray bytes = "GIF89a" + QByteArray::fromHex("3c002800810000000000ff000000ff000000ff"
                                                      "2c000000003c0028000002");
    for (qsizetype at = 0; at < codes.size() && pieces != 0; at += kPieceAtMost, --pieces) {
        const QByteArray piece = codes.mid(at, kPieceAtMost);
        bytes += char(piece.size()) + piece;
    }
    return bytes + QByteArray::fromHex("003b");
}

class Gif : public PhoneTest
{
protected:
    tagDecodedPicture decode(const QByteArray& bytes)
    {
        writeFile(kPicture, bytes);
        return pictureDecode(kPicture, {}, tagPictureLimits(), nullptr);
    }
};

} // namespace

TEST_F(Gif, ThatIsWholeIsShown)
{
    const tagDecodedPicture picture = decode(gif(plainCodes(kSize.width() * kSize.height())));
    ASSERT_EQ(picture.eResult, PICTURE_READ);
    EXPECT_EQ(picture.image.size(), kSize);
    EXPECT_EQ(picture.image.pixel(59, 39), qRgb(0, 0, 255));
}

TEST_F(Gif, OfWhichThePiecesEndEarlyIsDamaged)
{
    const QByteArray codes = plainCodes(kSize.width() * kSize.height());
    const int pieces = int((codes.size() + kPieceAtMost - 1) / kPieceAtMost);
    ASSERT_GT(pieces, 4);
    for (int left = 0; left < pieces; ++left) {
        EXPECT_EQ(decode(gif(codes, left)).eResult, PICTURE_DAMAGED) << left << " of " << pieces;
        EXPECT_EQ(decode(gif(codes, left).chopped(2)).eResult, PICTURE_DAMAGED) << left << ", without an end";
    }
}
