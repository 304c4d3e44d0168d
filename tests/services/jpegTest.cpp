// Photos: as other programs show them, and none of which a part is missing.
#include "host/services/pictures/pictureDecoder.h"
#include "tests/kit/phoneTest.h"
#include <QBuffer>
#include <QImageReader>
#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

namespace {

const char* const kPhoto = "/rundata/a.jpg";
const QByteArray kEnd = QByteArray::fromHex("ffd9");
const QSize kSize(701, 499);

// A different colour wherever one looks, with so much detail that every part of the file counts.
QImage scene()
{
    QImage image(kSize, QImage::Format_RGB888);
    for (int y = 0; y < kSize.height(); ++y) {
        for (int x = 0; x < kSize.width(); ++x)
            image.setPixel(x, y,
                           qRgb(255 * x / kSize.width(), 255 * y / kSize.height(), (x / 7 * y / 5) % 200));
    }
    return image;
}

enum KIND {
    BASELINE,
    RESTARTS,
    PROGRESSIVE,
    COMPONENTS_APART,
    GRAY,
    INKS,
    ARITHMETIC,
    ARITHMETIC_PROGRESSIVE
};

const KIND kKinds[] = {BASELINE, RESTARTS, PROGRESSIVE, COMPONENTS_APART, GRAY, INKS};

void choose(jpeg_compress_struct& info, KIND kind)
{
    static const jpeg_scan_info apart[] = {
        {1, {0, 0, 0, 0}, 0, 63, 0, 0}, {1, {1, 0, 0, 0}, 0, 63, 0, 0}, {1, {2, 0, 0, 0}, 0, 63, 0, 0}};
    info.restart_in_rows = kind == RESTARTS ? 2 : 0;
    info.arith_code = kind == ARITHMETIC || kind == ARITHMETIC_PROGRESSIVE;
    if (kind == PROGRESSIVE || kind == ARITHMETIC_PROGRESSIVE)
        jpeg_simple_progression(&info);
    if (kind == COMPONENTS_APART) {
        info.scan_info = apart;
        info.num_scans = int(std::size(apart));
    }
}

QByteArray photo(KIND kind)
{
    QImage image = scene();
    if (kind == GRAY)
        image = image.convertToFormat(QImage::Format_Grayscale8);
    // Any four values are inks.
    if (kind == INKS)
        image = image.convertToFormat(QImage::Format_RGBA8888);
    jpeg_compress_struct info = {};
    jpeg_error_mgr errors = {};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&info, &bytes, &size);
    info.image_width = unsigned(image.width());
    info.image_height = unsigned(image.height());
    info.input_components = image.depth() / 8;
    info.in_color_space = kind == GRAY ? JCS_GRAYSCALE : kind == INKS ? JCS_CMYK : JCS_RGB;
    jpeg_set_defaults(&info);
    choose(info, kind);
    jpeg_start_compress(&info, TRUE);
    while (info.next_scanline < info.image_height) {
        JSAMPROW row = image.scanLine(int(info.next_scanline));
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    const QByteArray made(reinterpret_cast<char*>(bytes), qsizetype(size));
    free(bytes);
    EXPECT_TRUE(made.endsWith(kEnd));
    return made;
}

int distance(QRgb a, QRgb b)
{
    return qAbs(qRed(a) - qRed(b)) + qAbs(qGreen(a) - qGreen(b)) + qAbs(qBlue(a) - qBlue(b));
}

class Jpeg : public PhoneTest
{
protected:
    tagDecodedPicture decode(const QByteArray& bytes, const tagPictureShape& shape = {})
    {
        writeFile(kPhoto, bytes);
        return pictureDecode(kPhoto, shape, tagPictureLimits(), nullptr);
    }
    // The same photo, as whole as that.
    void expectShown(const QByteArray& bytes, const QImage& whole, KIND kind, const char* what)
    {
        const tagDecodedPicture picture = decode(bytes);
        EXPECT_EQ(picture.eResult, PICTURE_READ) << what << ", kind " << kind;
        EXPECT_EQ(picture.image, whole) << what << ", kind " << kind;
    }
};

} // namespace

TEST_F(Jpeg, LooksAsTheToolkitShowsIt)
{
    for (const KIND kind : kKinds) {
        const QByteArray bytes = photo(kind);
        QBuffer buffer;
        buffer.setData(bytes);
        for (const QSize room : {kSize, QSize(350, 250), QSize(80, 48), QSize(900, 40)}) {
            const tagDecodedPicture picture = decode(bytes, {room, tagPictureShape::EXACT});
            ASSERT_EQ(picture.eResult, PICTURE_READ) << kind;
            buffer.open(QIODevice::ReadOnly);
            QImageReader toolkit(&buffer, "jpeg");
            toolkit.setScaledSize(room);
            const QImage wanted = toolkit.read().convertToFormat(QImage::Format_RGB32);
            buffer.close();
            ASSERT_EQ(picture.image.size(), wanted.size());
            int most = 0;
            for (int y = 0; y < room.height(); y += 3) {
                for (int x = 0; x < room.width(); x += 3)
                    most = std::max(most, distance(picture.image.pixel(x, y), wanted.pixel(x, y)));
            }
            EXPECT_LE(most, 15) << "kind " << kind << " in " << room.width() << " by " << room.height();
        }
    }
}

TEST_F(Jpeg, WhoseEndWasPutBehindAPartIsDamaged)
{
    for (const KIND kind : kKinds) {
        const QByteArray bytes = photo(kind);
        for (const double share : {0.1, 0.3, 0.5, 0.7, 0.9, 0.97}) {
            const tagDecodedPicture picture =
                decode(bytes.left(qsizetype(double(bytes.size()) * share)) + kEnd);
            EXPECT_EQ(picture.eResult, PICTURE_DAMAGED) << "kind " << kind << ", " << share;
            EXPECT_TRUE(picture.image.isNull());
        }
    }
}

TEST_F(Jpeg, WithoutTheRoundOfAComponentIsDamaged)
{
    const QByteArray bytes = photo(COMPONENTS_APART);
    qsizetype rounds = 0;
    for (qsizetype at = bytes.indexOf("\xff\xda"); at >= 0; at = bytes.indexOf("\xff\xda", at + 2)) {
        ++rounds;
        EXPECT_TRUE(rounds == 1 || decode(bytes.left(at) + kEnd).eResult == PICTURE_DAMAGED) << rounds;
    }
    EXPECT_EQ(rounds, 3);
}

TEST_F(Jpeg, WithoutARoundOfAProgressiveOneIsDamaged)
{
    const QByteArray bytes = photo(PROGRESSIVE);
    qsizetype rounds = 0;
    for (qsizetype at = bytes.indexOf("\xff\xda"); at >= 0; at = bytes.indexOf("\xff\xda", at + 2)) {
        ++rounds;
        EXPECT_TRUE(rounds == 1 || decode(bytes.left(at) + kEnd).eResult == PICTURE_DAMAGED) << rounds;
    }
    EXPECT_GT(rounds, 5);
}

// Where it ends early, nobody can tell.
TEST_F(Jpeg, OfArithmeticCodesIsNone)
{
    for (const KIND kind : {ARITHMETIC, ARITHMETIC_PROGRESSIVE}) {
        const QByteArray bytes = photo(kind);
        EXPECT_EQ(decode(bytes).eResult, PICTURE_DAMAGED) << kind;
        EXPECT_EQ(decode(bytes.left(bytes.size() / 2) + kEnd).eResult, PICTURE_DAMAGED) << kind;
    }
}

TEST_F(Jpeg, OfWhichAPieceInTheMiddleIsMissingIsDamaged)
{
    for (const KIND kind : {BASELINE, RESTARTS}) {
        const QByteArray bytes = photo(kind);
        EXPECT_EQ(decode(QByteArray(bytes).remove(bytes.size() / 2, bytes.size() / 5)).eResult,
                  PICTURE_DAMAGED)
            << kind;
    }
}

TEST_F(Jpeg, WithTheHarmlessBytesThatCamerasWriteIsShown)
{
    for (const KIND kind : kKinds) {
        const QByteArray bytes = photo(kind);
        const QImage whole = decode(bytes).image;
        ASSERT_FALSE(whole.isNull());
        const QByteArray body = bytes.chopped(kEnd.size());
        const QByteArray note = QByteArray::fromHex("ffe50008") + "camera";
        expectShown(body + QByteArray(40, '\0') + kEnd, whole, kind, "zeros before the end");
        expectShown(body + QByteArray("camera's own") + kEnd, whole, kind, "words before the end");
        expectShown(body + QByteArray(9, '\xff') + kEnd, whole, kind, "filled up before the end");
        expectShown(bytes + QByteArray(70000, '\0'), whole, kind, "filled up behind the end");
        expectShown(bytes + photo(BASELINE), whole, kind, "a preview behind the end");
        expectShown(bytes.left(2) + note + QByteArray(3, '\xff') + bytes.mid(2), whole, kind, "notes");
    }
}
