// Pictures that are read away from the user-interface thread, and what they may cost.
#include "support/host/picture.h"
#include "host/services/pictures/pictureService.h"
#include "support/host/image.h"
#include "support/host/text.h"
#include "tests/kit/phoneTest.h"
#include "tests/kit/plain/pictureFiles.h"
#include "tests/kit/plain/processes.h"
#include <QBuffer>
#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QThread>
#include <QTimer>
#include <atomic>
#include <cstring>
#include <ctime>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr int kLongMs = 60000; // for a machine under load
constexpr int kLookMs = 100;
constexpr int kNoResult = -1;
const QSize kScreen(800, 480);
const QSize kLarge(3000, 2000); // never read at once
const QSize kJpegOfACamera(6000, 4000);
const QSize kPngOfACamera(10000, 6000);
#ifdef __SANITIZE_ADDRESS__
constexpr qint64 kWatchFactor = 8;
#else
constexpr qint64 kWatchFactor = 1;
#endif

double secondsOf(clockid_t clock)
{
    timespec used;
    clock_gettime(clock, &used);
    return double(used.tv_sec) + double(used.tv_nsec) / 1e9;
}

// The most memory that is in use from now on, beyond what is.
class MemoryWatch
{
public:
    MemoryWatch()
    {
        QFile peak("/proc/self/clear_refs");
        EXPECT_TRUE(peak.open(QIODevice::WriteOnly) && peak.write("5") == 1);
        peak.close();
        m_before = kit::statusKiB(getpid(), "VmRSS");
    }
    qint64 mostMiB() const { return (kit::statusKiB(getpid(), "VmHWM") - m_before) / 1024; }
    qint64 keptMiB() const { return (kit::statusKiB(getpid(), "VmRSS") - m_before) / 1024; }

private:
    qint64 m_before;
};

QByteArray encoded(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, format));
    return bytes;
}

QImage plain(QSize size, QColor colour = Qt::red)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

// A different colour wherever one looks, and soft, so that no way of scaling makes a difference.
QImage soft(QSize size)
{
    QImage image(size, QImage::Format_ARGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, qRgba(255 * x / size.width(), 255 * y / size.height(), 100, 255));
    }
    return image;
}

class Pictures : public PhoneTest
{
protected:
    static tagPictureWish wish(const QByteArray& path, QSize room = kScreen,
                               PICTURE_FIT fit = PICTURE_FIT_INSIDE)
    {
        tagPictureWish one;
        one.strPath = path.constData();
        one.nWidth = room.width();
        one.nHeight = room.height();
        one.eFit = fit;
        return one;
    }
    // What is told; kNoResult when nothing is.
    int read(const tagPictureWish& one)
    {
        int result = kNoResult;
        m_picture = QPixmap();
        pictureRequest(one, &m_owner, [&](PICTURE_RESULT told, const QPixmap& picture) {
            result = told;
            m_picture = picture;
        });
        EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, kLongMs));
        return result;
    }
    // File by file: of each kind that there is.
    QList<QByteArray> writeEachKind(const QImage& image)
    {
        QList<QByteArray> paths;
        for (const char* format : {"png", "bmp", "jpg"}) {
            paths.append(QByteArray("/rundata/a.") + format);
            writeFile(paths.last().constData(), encoded(image, format));
        }
        return paths;
    }
    void putInPlace(const char* path, const QByteArray& bytes)
    {
        writeFile(path, bytes);
        kit::stepTime(kLookMs + 20);
    }

    QObject m_owner;
    QPixmap m_picture;
};

} // namespace

TEST_F(Pictures, ComeInTheSizeThatIsWished)
{
    for (const QByteArray& path : writeEachKind(plain({1600, 400}))) {
        EXPECT_EQ(read(wish(path, {200, 200})), PICTURE_READ) << path.constData();
        EXPECT_EQ(m_picture.size(), QSize(200, 50));
        EXPECT_EQ(m_picture.toImage().pixelColor(100, 25).red() / 16, 15);
        read(wish(path, {200, 200}, PICTURE_FIT_SIDES));
        EXPECT_EQ(m_picture.size(), QSize(200, 200));
        read(wish(path, {2000, 200}, PICTURE_FIT_SIDES));
        EXPECT_EQ(m_picture.size(), QSize(1600, 200));
        read(wish(path, {2000, 1000}));
        EXPECT_EQ(m_picture.size(), QSize(1600, 400)) << "never enlarged";
        read(wish(path, {2000, 1000}, PICTURE_FIT_EXACT));
        EXPECT_EQ(m_picture.size(), QSize(2000, 1000));
        read(wish(path, {1 << 20, 1 << 20}, PICTURE_FIT_EXACT));
        EXPECT_EQ(m_picture.size(), QSize(PICTURE_ROOM_WIDTH, PICTURE_ROOM_HEIGHT));
        for (const PICTURE_FIT fit : {PICTURE_FIT_INSIDE, PICTURE_FIT_SIDES, PICTURE_FIT_EXACT}) {
            read(wish(path, {0, -5}, fit));
            EXPECT_EQ(m_picture.size(), QSize(1, 1)) << fit;
        }
    }
}

// Its middle is green, and what lies on both sides of a square in the middle is red or blue.
TEST_F(Pictures, FillARoomOfAnotherShapeWithTheirMiddle)
{
    for (const QSize& size : {QSize(1500, 500), QSize(500, 1500), QSize(30, 10), QSize(10, 30), QSize(90, 30),
                              QSize(4800, 40), QSize(40, 4800)}) {
        const int side = qMin(size.width(), size.height());
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::blue);
        QPainter painter(&image);
        const bool isWide = size.width() > size.height();
        painter.fillRect(0, 0, size.width() / (isWide ? 2 : 1), size.height() / (isWide ? 1 : 2), Qt::red);
        painter.fillRect((size.width() - side) / 2, (size.height() - side) / 2, side, side, Qt::green);
        painter.end();
        for (const QByteArray& path : writeEachKind(image)) {
            EXPECT_EQ(read(wish(path, {60, 60}, PICTURE_FIT_COVER)), PICTURE_READ) << path.constData();
            ASSERT_EQ(m_picture.size(), QSize(60, 60)) << path.constData() << size.width();
            const QImage shown = m_picture.toImage();
            for (const QPoint& at : {QPoint(9, 9), QPoint(50, 9), QPoint(30, 30), QPoint(9, 50)}) {
                const QColor colour = shown.pixelColor(at);
                EXPECT_TRUE(colour.green() > 200 && colour.red() < 60 && colour.blue() < 60)
                    << path.constData() << ' ' << size.width() << ' ' << at.x() << ' ' << at.y();
            }
        }
        kit::stepTime(kLookMs + 20);
    }
}

// All ways in which a PNG holds its pixels, against the toolkit's reader.
TEST_F(Pictures, LookAsTheyDo)
{
    const QSize room(333, 77);
    QImage clear = soft({1000, 700});
    QPainter painter(&clear);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(0, 0, 300, 700, Qt::transparent);
    painter.fillRect(300, 0, 300, 700, QColor(40, 200, 80, 128));
    painter.end();
    for (const QImage::Format format :
         {QImage::Format_RGB32, QImage::Format_ARGB32, QImage::Format_Grayscale8, QImage::Format_Grayscale16,
          QImage::Format_RGBA64, QImage::Format_Indexed8}) {
        const QImage image =
            (format == QImage::Format_RGB32 ? soft({1000, 700}) : clear).convertToFormat(format);
        putInPlace("/rundata/a.png", encoded(image, "PNG"));
        ASSERT_EQ(read(wish("/rundata/a.png", room, PICTURE_FIT_EXACT)), PICTURE_READ) << format;
        const QImage wanted = image.convertToFormat(QImage::Format_ARGB32_Premultiplied)
                                  .scaled(room, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        const QImage is = m_picture.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
        for (const QPoint& at : {QPoint(20, 10), QPoint(150, 40), QPoint(230, 20), QPoint(320, 70)}) {
            const QRgb left = is.pixel(at), right = wanted.pixel(at);
            EXPECT_LE(qAbs(qRed(left) - qRed(right)) + qAbs(qGreen(left) - qGreen(right)) +
                          qAbs(qBlue(left) - qBlue(right)) + qAbs(qAlpha(left) - qAlpha(right)),
                      24)
                << format << " at " << at.x() << " of " << std::hex << left << " and " << right;
        }
    }
}

// Says that the right side was above.
const QByteArray kTurnedByACamera = QByteArray::fromHex("ffe1002245786966000049492a0008000000"
                                                        "010012010300010000000600000000000000");

TEST_F(Pictures, AreTurnedAsTheCameraSays)
{
    QImage image = plain({1600, 800});
    QPainter(&image).fillRect(0, 0, 800, 800, Qt::blue);
    const QByteArray bytes = encoded(image, "JPG");
    writeFile("/rundata/a.jpg", bytes.left(2) + kTurnedByACamera + bytes.mid(2));
    ASSERT_EQ(read(wish("/rundata/a.jpg", {400, 400})), PICTURE_READ);
    EXPECT_EQ(m_picture.size(), QSize(200, 400));
    EXPECT_GT(m_picture.toImage().pixelColor(100, 50).blue(), 200) << "what was left is above";
    EXPECT_GT(m_picture.toImage().pixelColor(100, 350).red(), 200);
}

TEST_F(Pictures, WhatTheFileHoldsIsKnownOnceItWasRead)
{
    const QByteArray bytes = encoded(plain({1600, 800}), "JPG");
    writeFile("/rundata/a.jpg", bytes.left(2) + kTurnedByACamera + bytes.mid(2));
    ASSERT_EQ(read(wish("/rundata/a.jpg", {400, 400})), PICTURE_READ);
    tagPictureFacts facts;
    ASSERT_TRUE(pictureFacts(wish("/rundata/a.jpg", {400, 400}), facts));
    EXPECT_EQ(QSize(facts.nWidth, facts.nHeight), QSize(800, 1600)) << "of the file, and not of the room";
    EXPECT_EQ(facts.nBytes, readFile("/rundata/a.jpg").size());
    EXPECT_FALSE(pictureFacts(wish("/rundata/b.jpg", {400, 400}), facts)) << "nobody has read it";
    writeFile("/rundata/a.jpg", "another");
    EXPECT_FALSE(pictureFacts(wish("/rundata/a.jpg", {400, 400}), facts)) << "it is no more what was read";
}

TEST_F(Pictures, AreToldAfterTheCallOnThisThread)
{
    writeFile("/rundata/a.png", encoded(plain(kLarge), "PNG"));
    for (int i = 0; i < 2; ++i) {
        bool told = false;
        pictureRequest(wish("/rundata/a.png"), &m_owner, [&](PICTURE_RESULT, const QPixmap&) {
            told = true;
            EXPECT_EQ(QThread::currentThread(), m_owner.thread());
        });
        EXPECT_FALSE(told) << (i ? "known already" : "");
        EXPECT_TRUE(kit::waitUntil([&] { return told; }, kLongMs));
    }
}

TEST_F(Pictures, WhoHasGoneOrNoLongerWantsThemIsNotTold)
{
    writeFile("/rundata/a.png", encoded(plain(kLarge), "PNG"));
    writeFile("/rundata/b.png", encoded(plain(kLarge), "PNG"));
    int told = 0;
    const auto count = [&](PICTURE_RESULT, const QPixmap&) { ++told; };
    auto* gone = new QObject;
    pictureRequest(wish("/rundata/a.png"), gone, count);
    pictureRequest(wish("/rundata/b.png"), gone, count);
    const int unwanted = pictureRequest(wish("/rundata/a.png", {50, 50}), &m_owner, count);
    // One of them is being read by now.
    QCoreApplication::processEvents();
    delete gone;
    pictureCancel(unwanted);
    pictureCancel(unwanted);
    pictureCancel(0);
    EXPECT_EQ(read(wish("/rundata/b.png", {60, 60})), PICTURE_READ);
    EXPECT_EQ(told, 0);
}

TEST_F(Pictures, TheNewestRequestComesFirst)
{
    QStringList told;
    for (const char* name : {"1", "2", "3"}) {
        writeFile((QByteArray("/rundata/") + name).constData(), encoded(plain(kLarge), "PNG"));
        pictureRequest(wish(QByteArray("/rundata/") + name), &m_owner,
                       [&told, name](PICTURE_RESULT, const QPixmap&) { told += name; });
    }
    EXPECT_TRUE(kit::waitUntil([&] { return told.size() == 3; }, kLongMs));
    EXPECT_EQ(told, QStringList({"3", "2", "1"}));
}

TEST_F(Pictures, WhatIsReadAheadGivesWayAndIsReadAllTheSame)
{
    writeFile("/rundata/huge.png", kit::pngPhoto(kPngOfACamera));
    writeFile("/rundata/a.jpg", encoded(plain(kLarge), "JPG"));
    picturePrepare(wish("/rundata/huge.png"));
    QCoreApplication::processEvents();
    bool isFirst = false;
    pictureRequest(wish("/rundata/a.jpg"), &m_owner, [&](PICTURE_RESULT result, const QPixmap&) {
        isFirst = result == PICTURE_READ && picturePending() > 0;
    });
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, kLongMs));
    EXPECT_TRUE(isFirst);
    PICTURE_RESULT result = PICTURE_MISSING;
    QPixmap picture;
    EXPECT_TRUE(pictureAtOnce(wish("/rundata/huge.png"), result, picture));
    EXPECT_EQ(result, PICTURE_READ);
    EXPECT_EQ(picture.size(), QSize(800, 480));
}

TEST_F(Pictures, WhatWasReadIsThereAtOnceUntilItsFileChanges)
{
    PICTURE_RESULT result = PICTURE_MISSING;
    QPixmap picture;
    writeFile("/rundata/a.png", encoded(plain(kLarge), "PNG"));
    EXPECT_FALSE(pictureAtOnce(wish("/rundata/a.png"), result, picture));
    EXPECT_EQ(read(wish("/rundata/a.png")), PICTURE_READ);
    ASSERT_TRUE(pictureAtOnce(wish("/rundata/a.png"), result, picture));
    EXPECT_EQ(picture.size(), QSize(720, 480));
    EXPECT_FALSE(pictureAtOnce(wish("/rundata/a.png", {70, 70}), result, picture));
    putInPlace("/rundata/a.png", encoded(plain({3000, 1000}), "PNG"));
    EXPECT_FALSE(pictureAtOnce(wish("/rundata/a.png"), result, picture));
}

TEST_F(Pictures, AFileThatHasJustComeOrChangedIsRead)
{
    PICTURE_RESULT result = PICTURE_READ;
    QPixmap picture;
    ASSERT_TRUE(pictureAtOnce(wish("/rundata/a.png"), result, picture));
    EXPECT_EQ(result, PICTURE_MISSING);
    for (int width = 40; width < 60; ++width) {
        writeFile("/rundata/a.png", encoded(plain({width, 48}), "PNG"));
        ASSERT_TRUE(pictureAtOnce(wish("/rundata/a.png"), result, picture));
        EXPECT_EQ(picture.width(), width);
    }
}

TEST_F(Pictures, ATinyOneIsThereAtOnce)
{
    PICTURE_RESULT result = PICTURE_MISSING;
    QPixmap picture;
    writeFile("/rundata/a.png", encoded(plain({80, 48}), "PNG"));
    ASSERT_TRUE(pictureAtOnce(wish("/rundata/a.png"), result, picture));
    EXPECT_EQ(picture.size(), QSize(80, 48));
    ASSERT_TRUE(pictureAtOnce(wish("/rundata/none.png"), result, picture));
    EXPECT_EQ(result, PICTURE_MISSING);
    writeFile("/rundata/a.gif", kit::gifOfScreen({1000, 1000}));
    writeFile("/rundata/b.png", kit::pngOfOneColour({1200, 800}));
    for (const char* path : {"/rundata/a.gif", "/rundata/b.png"}) {
        EXPECT_FALSE(pictureAtOnce(wish(path), result, picture)) << "the file is tiny, not the picture";
        EXPECT_EQ(read(wish(path)), PICTURE_READ);
    }
}

TEST_F(Pictures, ThoseOfACameraTakeLittleMemoryAndNoneOfThisThreadsTime)
{
    writeFile("/rundata/photo.jpg", kit::jpegPhoto(kJpegOfACamera));
    writeFile("/rundata/photo.png", kit::pngPhoto(kPngOfACamera));
    for (const QByteArray& path : {QByteArray("/rundata/photo.jpg"), QByteArray("/rundata/photo.png")}) {
        const MemoryWatch memory;
        const double ours = secondsOf(CLOCK_THREAD_CPUTIME_ID), all = secondsOf(CLOCK_PROCESS_CPUTIME_ID);
        bool told = false;
        QEventLoop loop; // whoever looks again and again takes time of this thread
        QTimer::singleShot(kLongMs, &loop, &QEventLoop::quit);
        pictureRequest(wish(path), &m_owner, [&](PICTURE_RESULT result, const QPixmap& picture) {
            told = true;
            loop.quit();
            EXPECT_EQ(result, PICTURE_READ);
            EXPECT_EQ(picture.height(), 480);
        });
        if (!told)
            loop.exec();
        EXPECT_TRUE(told);
        const double share =
            (secondsOf(CLOCK_THREAD_CPUTIME_ID) - ours) / (secondsOf(CLOCK_PROCESS_CPUTIME_ID) - all);
        EXPECT_LT(share, 0.25) << path.constData();
        EXPECT_LT(memory.mostMiB(), 60 * kWatchFactor) << path.constData();
        EXPECT_LT(memory.keptMiB(), 12 * kWatchFactor) << path.constData();
    }
}

TEST_F(Pictures, ThatAreTooLargeCostNothing)
{
    QByteArray bmp = encoded(plain({40, 40}), "BMP");
    bmp.replace(18, 8,
                QByteArray::fromHex("00400000"
                                    "00c0ffff")); // 16384 by 16384, from the top
    const QList<QPair<const char*, QByteArray>> bombs = {
        {"/rundata/a.png", kit::pngOfOneColour({30000, 30000})},
        {"/rundata/b.png", kit::pngOfOneColour({6000, 6000}, true)},
        {"/rundata/c.gif", kit::gifOfScreen({65535, 65535})},
        {"/rundata/d.gif", kit::gifOfScreen({14000, 14000})},
        {"/rundata/e.bmp", bmp},
    };
    for (const auto& [path, bytes] : bombs)
        writeFile(path, bytes);
    const MemoryWatch memory;
    for (const auto& [path, bytes] : bombs) {
        EXPECT_EQ(read(wish(path)), PICTURE_TOO_LARGE) << path;
        EXPECT_TRUE(GetImageManager()->GetImage(path).isNull()) << path;
        EXPECT_TRUE(GetImageManager()->GetImageByScale(path, 80, 48).isNull()) << path;
    }
    EXPECT_LT(memory.mostMiB(), 8 * kWatchFactor);
}

TEST_F(Pictures, OfThePhoneItselfAreNoLargerThanTheLimit)
{
    writeFile("/rundata/a.png", encoded(plain({1920, 1024}), "PNG"));
    writeFile("/rundata/b.png", encoded(plain({1921, 1024}), "PNG"));
    EXPECT_EQ(GetImageManager()->GetImage("/rundata/a.png").size(), QSize(1920, 1024));
    EXPECT_TRUE(GetImageManager()->GetImage("/rundata/b.png").isNull());
    EXPECT_TRUE(GetImageManager()->GetImageByScale("/rundata/b.png", 80, 48).isNull());
}

TEST_F(Pictures, CutShortAreDamagedWhereverTheyEnd)
{
    QList<QPair<QByteArray, QByteArray>> files;
    for (const char* format : {"png", "bmp", "jpg"})
        files.append({format, encoded(soft({700, 500}).convertToFormat(QImage::Format_RGB32), format)});
    files.append({"8.bmp", encoded(soft({700, 500}).convertToFormat(QImage::Format_Indexed8), "bmp")});
    files.append({"interlaced.png", kit::pngOfOneColour({700, 500}, true)});
    files.append({"gif", kit::gifOfScreen({1, 1})});
    for (const auto& [kind, bytes] : files) {
        const QByteArray path = "/rundata/a." + kind;
        putInPlace(path.constData(), bytes);
        EXPECT_EQ(read(wish(path)), PICTURE_READ) << path.constData();
        EXPECT_FALSE(GetImageManager()->GetImage(path.constData()).isNull()) << path.constData();
        for (const double share : {0.1, 0.5, 0.9, 1.0}) {
            putInPlace(path.constData(), bytes.left(qsizetype(double(bytes.size()) * share) - 1));
            EXPECT_EQ(read(wish(path)), PICTURE_DAMAGED) << path.constData() << " " << share;
            EXPECT_TRUE(m_picture.isNull());
            EXPECT_TRUE(GetImageManager()->GetImage(path.constData()).isNull()) << path.constData() << share;
        }
    }
}

TEST_F(Pictures, ThatAreNoneAreTold)
{
    writeFile("/rundata/text.png", QByteArray(100000, 'a'));
    writeFile("/rundata/drawing.png", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'></svg>");
    EXPECT_EQ(read(wish("/rundata/text.png")), PICTURE_DAMAGED);
    EXPECT_EQ(read(wish("/rundata/drawing.png")), PICTURE_DAMAGED);
    EXPECT_EQ(read(wish("/rundata/none.png")), PICTURE_MISSING);
    EXPECT_EQ(read(wish("/rundata")), PICTURE_MISSING);
    EXPECT_EQ(read(wish("")), PICTURE_MISSING);
}

TEST_F(Pictures, ThatTakeTooLongAreGivenUpAndTheNextIsRead)
{
    writeFile("/rundata/a.png", kit::pngOfOneColour({10000, 8000}));
    writeFile("/rundata/b.jpg", encoded(plain(kLarge), "JPG"));
    tagPictureLimits limits;
    limits.nCpuMs = 5;
    PictureService::instance().setLimits(limits);
    EXPECT_EQ(read(wish("/rundata/a.png")), PICTURE_TOO_SLOW);
    PictureService::instance().setLimits(tagPictureLimits());
    EXPECT_EQ(read(wish("/rundata/b.jpg")), PICTURE_READ);
}

TEST_F(Pictures, TheWishsCheckIsAskedFirstAndElsewhere)
{
    static std::atomic<bool> isElsewhere = false;
    static std::atomic<int> nice = 0; // of the thread that reads
    static std::thread::id here;
    here = std::this_thread::get_id();
    writeFile("/rundata/a.png", encoded(plain(kLarge), "PNG"));
    tagPictureWish one = wish("/rundata/a.png");
    EXPECT_EQ(read(one), PICTURE_READ);
    one.check = [](const char* path) {
        isElsewhere = std::this_thread::get_id() != here;
        nice = getpriority(PRIO_PROCESS, id_t(gettid()));
        return strcmp(path, "/rundata/a.png") != 0 ? PICTURE_READ : PICTURE_REFUSED;
    };
    EXPECT_EQ(read(one), PICTURE_REFUSED) << "what was read without it is another matter";
    EXPECT_TRUE(isElsewhere);
    EXPECT_GT(nice, getpriority(PRIO_PROCESS, 0)) << "the user interface goes first";
}
