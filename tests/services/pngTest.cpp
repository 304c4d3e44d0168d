// PNGs whose data are unpacked on a thread of their own: they look the same, and end the same when damaged.
#include "host/services/pictures/pictureDecoder.h"
#include "host/services/pictures/pictureSource.h"
#include "host/services/pictures/pngRows.h"
#include "host/services/pictures/pngUnpacked.h"
#include "tests/kit/phoneTest.h"
#include "tests/kit/plain/pictureFiles.h"
#include <QBuffer>
#include <QDir>
#include <QImage>
#include <QPainter>
#include <random>

namespace {

constexpr char kPath[] = "/rundata/a.png";
constexpr char kDamaged[] = "/rundata/b.png";
constexpr int kLongCpuMs = 60000;
constexpr int kMostLate = 4; // of 100 KB, out of a block
constexpr qint64 kAll = INT64_MAX;
const QSize kSmall(160, 131); // of grain, so that its data are in several chunks

QByteArray encoded(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, "PNG"));
    return bytes;
}

QImage grain(const QSize& size)
{
    std::mt19937 random(7);
    QImage image(size, QImage::Format_ARGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, random());
    }
    return image;
}

// Of every kind, and all colours of each.
QList<QByteArray> eachKind()
{
    QList<QByteArray> files = {kit::pngOfOneColour(kSmall, true), kit::pngOfOneColour({700, 500}, true),
                               kit::pngPhoto({211, 150})};
    for (const QImage::Format format :
         {QImage::Format_RGB32, QImage::Format_ARGB32, QImage::Format_Grayscale8, QImage::Format_Grayscale16,
          QImage::Format_RGBA64, QImage::Format_Indexed8})
        files += encoded(grain({331, 257}).convertToFormat(format, Qt::ThresholdDither));
    return files;
}

// Rectangle by rectangle; with alpha, colours count as much as they can be seen.
QImage meansOf(const QImage& image, const QSize& together)
{
    const QSize made((image.width() + together.width() - 1) / together.width(),
                     (image.height() + together.height() - 1) / together.height());
    QImage means(made, QImage::Format_ARGB32_Premultiplied);
    const bool isOpaque = !image.hasAlphaChannel();
    for (int y = 0; y < made.height(); ++y) {
        for (int x = 0; x < made.width(); ++x) {
            const QRect part =
                QRect(QPoint(x * together.width(), y * together.height()), together) & image.rect();
            quint64 sums[4] = {};
            for (int i = 0; i < part.width() * part.height(); ++i) {
                const QRgb pixel = image.pixel(part.x() + i % part.width(), part.y() + i / part.width());
                const quint64 weight = isOpaque ? 255 : quint64(qAlpha(pixel));
                sums[0] += quint64(qRed(pixel)) * weight;
                sums[1] += quint64(qGreen(pixel)) * weight;
                sums[2] += quint64(qBlue(pixel)) * weight;
                sums[3] += weight;
            }
            const auto count = quint64(part.width()) * quint64(part.height());
            const quint64 all = count * 255;
            reinterpret_cast<QRgb*>(means.scanLine(y))[x] =
                qRgba(int(sums[0] / all), int(sums[1] / all), int(sums[2] / all), int(sums[3] / count));
        }
    }
    return means;
}

int threadCount()
{
    return int(QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
}

class Pngs : public PhoneTest
{
protected:
    QImage readPlain(const QByteArray& bytes, const QSize& least)
    {
        writeFile(kPath, bytes);
        PictureSource source(nullptr, kLongCpuMs);
        EXPECT_TRUE(source.openPath(kPath));
        return PngRows(source).read(least);
    }
    // Null also where this way leaves it to the plain one.
    QImage readUnpacked(const QByteArray& bytes, const QSize& least)
    {
        writeFile(kPath, bytes);
        PictureSource source(nullptr, kLongCpuMs);
        EXPECT_TRUE(source.openPath(kPath));
        PngUnpacked unpacked(source);
        return unpacked.start() ? PngRows(source, &unpacked).read(least) : QImage();
    }
    static tagDecodedPicture decode(qint64 alonePixels)
    {
        tagPictureLimits limits;
        limits.nAlonePixels = alonePixels;
        return pictureDecode(kPath, {{40, 40}, tagPictureShape::INSIDE}, limits, nullptr);
    }
    // Whether it is read.
    bool expectSame(const QByteArray& bytes, const std::string& what)
    {
        writeFile(kPath, bytes);
        const tagDecodedPicture plain = decode(kAll), large = decode(0);
        EXPECT_EQ(large.eResult, plain.eResult) << what;
        EXPECT_EQ(large.image, plain.image) << what;
        const bool isQuick = !readUnpacked(bytes, {40, 40}).isNull();
        EXPECT_TRUE(!isQuick || plain.eResult == PICTURE_READ) << what;
        return plain.eResult == PICTURE_READ;
    }
};

// Chunk by chunk, the signature first.
QList<QByteArray> chunksOf(const QByteArray& png)
{
    QList<QByteArray> chunks = {png.left(8)};
    for (qsizetype at = 8; at + 12 <= png.size(); at += chunks.last().size())
        chunks += png.mid(at, 12 + QByteArray::fromHex(png.mid(at, 4).toHex()).toHex().toInt(nullptr, 16));
    return chunks;
}

QByteArray withoutDataSum(const QByteArray& png, int flipped)
{
    QByteArray bytes = png;
    const qsizetype end = png.size() - 12 - 4; // of the data
    bytes[end - 1 - flipped] = char(bytes[end - 1 - flipped] ^ 1);
    return kit::pngMended(bytes);
}

QByteArray withHeight(const QByteArray& png, int height)
{
    QByteArray bytes = png;
    bytes[22] = char(height >> 8);
    bytes[23] = char(height);
    return kit::pngMended(bytes);
}

} // namespace

TEST_F(Pngs, OfEveryKindComeTheSameOnBothWays)
{
    for (const QByteArray& bytes : eachKind()) {
        const QImage plain = readPlain(bytes, {60, 50});
        ASSERT_FALSE(plain.isNull());
        EXPECT_EQ(readUnpacked(bytes, {60, 50}), plain) << int(bytes[25]) << ' ' << int(bytes[24]);
    }
}

TEST_F(Pngs, ShowTheMeanOfThePixelsThatBecomeOne)
{
    const struct
    {
        QSize size, least, together;
    } cases[] = {{{331, 257}, {60, 50}, {5, 5}},    {{64, 64}, {64, 64}, {1, 1}},
                 {{301, 7}, {1, 7}, {128, 1}},      {{7, 301}, {7, 1}, {1, 128}},
                 {{1000, 300}, {1, 1}, {128, 128}}, {{21, 22}, {8, 40}, {2, 1}}};
    for (const QImage::Format format : {QImage::Format_RGB32, QImage::Format_ARGB32}) {
        for (const auto& one : cases) {
            const QImage image = grain(one.size).convertToFormat(format);
            const QImage wanted = meansOf(image, one.together);
            for (const QImage& is :
                 {readPlain(encoded(image), one.least), readUnpacked(encoded(image), one.least)}) {
                // Small ones are packed in a way that is left to the plain reader.
                if (is.isNull() && one.size.width() * one.size.height() < 12000)
                    continue;
                ASSERT_EQ(is.size(), wanted.size());
                for (int y = 0; y < is.height(); ++y)
                    ASSERT_EQ(0, memcmp(is.constScanLine(y), wanted.constScanLine(y), size_t(is.width()) * 4))
                        << one.size.width() << ' ' << format << ' ' << y;
            }
        }
    }
    QImage white(1000, 300, QImage::Format_ARGB32);
    white.fill(Qt::white);
    EXPECT_EQ(readPlain(encoded(white), {1, 1}).pixelColor(7, 2), QColor(Qt::white)) << "the sums are full";
}

TEST_F(Pngs, ThatAreOddOrDamagedEndAsOnThePlainWay)
{
    const QByteArray png = encoded(grain(kSmall));
    const QList<QByteArray> chunks = chunksOf(png);
    const QByteArray text = kit::pngMended(png.left(8) + QByteArray::fromHex("00000003") + "tEXta" +
                                           QByteArray(1, 0) + "b" + QByteArray(4, 0))
                                .mid(8);
    const QByteArray empty = QByteArray::fromHex("0000000049444154") + QByteArray::fromHex("35af061e");
    ASSERT_GT(chunks.size(), 5) << "signature, head, several of data, end";
    QList<QByteArray> swapped = chunks, parted = chunks, doubled = chunks, lost = chunks, later = chunks,
                      filled = chunks, after = chunks;
    const qsizetype data = chunks.size() - 3; // the last but one of data
    swapped.swapItemsAt(data, data - 1);
    parted.insert(data, text);
    doubled.insert(data, chunks[data]);
    lost.removeAt(data);
    filled.insert(data, empty);
    later.insert(later.size() - 1, empty);
    after.insert(after.size() - 1, chunks[data]);
    QList<QByteArray> mistaken = chunks;
    mistaken[data].back() = char(mistaken[data].back() ^ 1);
    QByteArray junk = chunks[chunks.size() - 2], dictionary = png, window = png;
    junk[3] = char(junk[3] + 3);
    junk.insert(junk.size() - 4, "abc");
    const qsizetype head = png.indexOf("IDAT") + 4;
    dictionary.replace(head, 2, QByteArray::fromHex("78bb"));
    window.replace(head, 2, QByteArray::fromHex("081d"));
    const QList<QPair<const char*, QByteArray>> files = {
        {"whole", png},
        {"bytes behind", png + "more"},
        {"no end", png.left(png.size() - 12)},
        {"sum of the data, last byte", withoutDataSum(png, 0)},
        {"sum of the data, first byte", withoutDataSum(png, 3)},
        {"last data", withoutDataSum(png, 4)},
        {"too many rows", withHeight(png, kSmall.height() - 20)},
        {"too few rows", withHeight(png, kSmall.height() + 1)},
        {"sum of a chunk", mistaken.join()},
        {"other order", swapped.join()},
        {"text between", parted.join()},
        {"twice", doubled.join()},
        {"one lost", lost.join()},
        {"an empty one", filled.join()},
        {"an empty one at the end", later.join()},
        {"one too many", after.join()},
        {"more in the last",
         kit::pngMended((chunks.mid(0, chunks.size() - 2) + QList{junk, chunks.last()}).join())},
        {"dictionary", kit::pngMended(dictionary)},
        {"small window", kit::pngMended(window)},
    };
    int read = 0;
    for (const auto& [what, bytes] : files)
        read += expectSame(bytes, what);
    EXPECT_GT(read, 2);
    EXPECT_LT(read, files.size() - 5);
}

TEST_F(Pngs, OfWhichAnyByteIsWrongEndAsOnThePlainWay)
{
    std::mt19937 random(1);
    const QList<QByteArray> whole = {encoded(grain(kSmall)), encoded(kit::photo({150, 90})),
                                     kit::pngOfOneColour({300, 200}, true), kit::pngPhoto({90, 50})};
    int read = 0;
    constexpr int kFiles = 1200;
    for (int i = 0; i < kFiles; ++i) {
        QByteArray bytes = whole[i % whole.size()];
        const auto at = qsizetype(random() % unsigned(bytes.size()));
        const auto other = qsizetype(random() % unsigned(bytes.size()));
        const int kind = i / int(whole.size()) % 4;
        if (kind == 0)
            bytes.truncate(at);
        else if (kind == 1)
            bytes.replace(at, 1 + int(random() % 50), bytes.mid(other, int(random() % 50)));
        else
            bytes[at] = char(bytes[at] ^ (1 << random() % 8));
        read += expectSame(kind == 2 ? bytes : kit::pngMended(bytes), "file " + std::to_string(i));
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_GT(read, 0);
    EXPECT_LT(read, kFiles / 2);
}

TEST_F(Pngs, TheTimeOfBothThreadsIsCounted)
{
    // Work for the one that unpacks: nothing comes out of it.
    QByteArray nothing = QByteArray::fromHex("000000ffff").repeated(6000000);
    const QByteArray png = kit::pngOfOneColour({300, 200});
    const qsizetype data = png.indexOf("IDAT") + 4;
    QByteArray bytes = png.left(data + 2) + nothing + png.mid(data + 2);
    const quint32 count = quint32(png.size() - data - 4 - 12 + nothing.size());
    for (int i = 0; i < 4; ++i)
        bytes[data - 8 + i] = char(count >> (24 - 8 * i));
    bytes = kit::pngMended(bytes);
    EXPECT_FALSE(readUnpacked(bytes, {40, 40}).isNull());
    PictureSource source(nullptr, 30);
    ASSERT_TRUE(source.openPath(kPath));
    PngUnpacked unpacked(source);
    ASSERT_TRUE(unpacked.start());
    const qint64 before = PictureSource::threadNs();
    EXPECT_TRUE(PngRows(source, &unpacked).read({40, 40}).isNull());
    EXPECT_TRUE(source.isGivenUp());
    EXPECT_LT(PictureSource::threadNs() - before, 30000000) << "which is not what gave it up";
}

TEST_F(Pngs, EndTheirThreadWhereverTheyAreLeft)
{
    const QByteArray bytes = kit::pngPhoto({3000, 2000});
    writeFile(kPath, bytes);
    QByteArray damaged = bytes;
    damaged[damaged.size() / 2] = char(damaged[damaged.size() / 2] ^ 1);
    writeFile(kDamaged, damaged);
    const int threads = threadCount();
    std::vector<uchar> read(100 * 1024);
    for (int i = 0; i < 200; ++i) {
        std::atomic<bool> cancel = false;
        PictureSource source(&cancel, kLongCpuMs);
        ASSERT_TRUE(source.openPath(i % 2 == 0 ? kPath : kDamaged));
        PngUnpacked unpacked(source);
        ASSERT_TRUE(unpacked.start());
        int late = 0; // pieces that come although nobody wants them
        for (int times = 0; times < i; ++times) {
            cancel = cancel || (i % 3 == 0 && times == i / 2);
            if (!unpacked.read(read.data(), read.size())) {
                EXPECT_FALSE(unpacked.read(read.data(), read.size())) << "and no wait for what never comes";
                break;
            }
            late += cancel;
        }
        EXPECT_LE(late, kMostLate);
    }
    EXPECT_EQ(threadCount(), threads);
}

TEST_F(Pngs, OfManyPixelsAreUnpackedOnAThreadOfTheirOwnAndNoOthers)
{
    writeFile(kPath, kit::pngPhoto({2500, 1600}));
    const auto shareOf = [](qint64 alonePixels) {
        timespec all[2];
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &all[0]);
        const qint64 before = PictureSource::threadNs();
        EXPECT_EQ(decode(alonePixels).eResult, PICTURE_READ);
        const double own = double(PictureSource::threadNs() - before);
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &all[1]);
        return own / (double(all[1].tv_sec - all[0].tv_sec) * 1e9 + double(all[1].tv_nsec - all[0].tv_nsec));
    };
    EXPECT_GT(shareOf(2500 * 1600), 0.9);
    EXPECT_LT(shareOf(2500 * 1600 - 1), 0.9);
}
