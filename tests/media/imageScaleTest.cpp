// The program that scales pictures, as the phone starts it.
#include "places.h"
#include "tests/kit/plain/pictureFiles.h"
#include "tests/media/mediaTest.h"
#include "tools/imageScale/ScaleOrder.h"
#include <QFile>
#include <QProcess>
#include <cstdlib>
#include <sys/resource.h>

namespace {

class ImageScale : public MediaTest
{
protected:
    void start(QProcess& process, const QStringList& arguments) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HX_SYSROOT", root());
        process.setProcessEnvironment(environment);
        process.start(HX_BUILD_DIR "/rootfs/mini-boot/bin/imageScale.exx", arguments);
        EXPECT_TRUE(process.waitForStarted(60000));
    }
    // Its exit status; -1 for one that was killed.
    static int exitOf(QProcess& process)
    {
        EXPECT_TRUE(process.state() == QProcess::NotRunning || process.waitForFinished(60000));
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
    int run(const QStringList& arguments) const
    {
        QProcess process;
        start(process, arguments);
        return exitOf(process);
    }
    static QStringList order(const QString& source, const QString& target = "/rundata/t.png",
                             const QString& size = "126 @&@126")
    {
        return {"@&@" + source + " @&@" + size + " @&@" + target + " @&@/rundata/verdict"};
    }
    int scale(const QString& source, const QString& target = "/rundata/t.png",
              const QString& size = "126 @&@126") const
    {
        return run(order(source, target, size));
    }
    QByteArray verdict() const { return readFile("/rundata/verdict"); }
    QImage result(const char* name = "/rundata/t.png") const { return QImage(hostPath(name)); }
    static QByteArray halves(const char* format)
    {
        QImage image(400, 200, QImage::Format_RGB32);
        image.fill(0xffc00000);
        for (int y = 0; y < 200; ++y)
            std::fill_n(reinterpret_cast<QRgb*>(image.scanLine(y)) + 200, 200, 0xff0000c0);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        EXPECT_TRUE(image.save(&buffer, format));
        return bytes;
    }
};

TEST_F(ImageScale, WritesThePictureInTheSizeAndSaysSo)
{
    writeFile("/storage/my face.png", halves("PNG"));
    EXPECT_EQ(scale("/storage/my face.png"), 0);
    EXPECT_EQ(verdict(), "1");
    const QImage image = result();
    ASSERT_EQ(image.size(), QSize(126, 126));
    EXPECT_EQ(image.pixel(30, 5), 0xffc00000);
    EXPECT_EQ(image.pixel(95, 120), 0xff0000c0);
}

TEST_F(ImageScale, ThePixelsBetweenTwoColoursAreMixed)
{
    QImage stripes(504, 504, QImage::Format_RGB32);
    for (int y = 0; y < 504; ++y) {
        for (int x = 0; x < 504; ++x)
            stripes.setPixel(x, y, x & 1 ? 0xffffffff : 0xff000000);
    }
    stripes.save(hostPath("/rundata/s.png"));
    EXPECT_EQ(scale("/rundata/s.png"), 0);
    EXPECT_NEAR(qRed(result().pixel(60, 60)), 127, 12);
}

TEST_F(ImageScale, EachKindKeepsItsKind)
{
    for (const auto& [name, start] :
         {std::pair("a.jpg", "\xff\xd8"), std::pair("a.JPEG", "\xff\xd8"), std::pair("a.jpe", "\xff\xd8"),
          std::pair("a.Jfif", "\xff\xd8"), std::pair("a.BMP", "BM"), std::pair("a.png", "\x89PNG"),
          std::pair("a.bmp", "BM"), std::pair("noext", "\x89PNG")}) {
        const QByteArray target = QByteArray("/rundata/out/") + name;
        writeFile(target, "the copy");
        writeFile("/rundata/a", halves("PNG"));
        EXPECT_EQ(scale("/rundata/a", target), 0) << name;
        EXPECT_TRUE(readFile(target).startsWith(start)) << name;
        EXPECT_EQ(result(target).size(), QSize(126, 126));
    }
}

TEST_F(ImageScale, AJpegLooksAsThePictureDoes)
{
    writeFile("/rundata/photo.jpg", kit::jpegPhoto({600, 600}));
    EXPECT_EQ(scale("/rundata/photo.jpg"), 0);
    EXPECT_EQ(scale("/rundata/photo.jpg", "/rundata/t.jpg"), 0);
    const QImage exact = result();
    const QImage jpeg = result("/rundata/t.jpg");
    ASSERT_EQ(jpeg.size(), exact.size());
    double off = 0;
    for (int y = 0; y < 126; ++y) {
        for (int x = 0; x < 126; ++x)
            off += std::abs(qGreen(jpeg.pixel(x, y)) - qGreen(exact.pixel(x, y)));
    }
    EXPECT_LT(off / (126 * 126), 2);
}

TEST_F(ImageScale, WhatCanBeSeenThroughStaysSoOrGetsWhiteBehindIt)
{
    QImage clear(40, 40, QImage::Format_ARGB32);
    clear.fill(Qt::transparent);
    clear.save(hostPath("/rundata/c.png"));
    EXPECT_EQ(scale("/rundata/c.png"), 0);
    EXPECT_EQ(qAlpha(result().pixel(60, 60)), 0);
    EXPECT_EQ(scale("/rundata/c.png", "/rundata/t.jpg"), 0);
    EXPECT_GT(qRed(result("/rundata/t.jpg").pixel(60, 60)), 250);
}

TEST_F(ImageScale, WhatIsNoPictureIsZeroAndTheTargetStaysAsItWas)
{
    writeFile("/rundata/t.png", "the copy");
    writeFile("/rundata/text.jpg", "no picture");
    writeFile("/rundata/cut.png", halves("PNG").left(200));
    writeFile("/rundata/cut.jpg", kit::jpegPhoto({600, 400}).left(3000));
    writeFile("/rundata/empty.png", "");
    for (const char* name : {"text.jpg", "cut.png", "cut.jpg", "empty.png", "none.png"}) {
        QFile::remove(hostPath("/rundata/verdict"));
        EXPECT_EQ(scale(QString("/rundata/") + name), 1) << name;
        EXPECT_EQ(verdict(), "0") << name;
        EXPECT_EQ(readFile("/rundata/t.png"), "the copy");
    }
}

TEST_F(ImageScale, APictureWithoutEndIsRefusedAndALargeOneIsScaled)
{
    writeFile("/rundata/endless.png", kit::pngOfOneColour({40000, 40000}));
    EXPECT_EQ(scale("/rundata/endless.png"), 1);
    EXPECT_EQ(verdict(), "0");
    writeFile("/rundata/large.png", kit::pngOfOneColour({8000, 8000}));
    EXPECT_EQ(scale("/rundata/large.png"), 0);
    EXPECT_EQ(verdict(), "1");
}

TEST_F(ImageScale, RunsWithinBoundsOfTimeAndMemory)
{
    writeFile("/rundata/large.png", kit::pngOfOneColour({8000, 8000}));
    QProcess process;
    start(process, order("/rundata/large.png"));
#ifdef __SANITIZE_ADDRESS__
    const char* const last = "Max cpu time";
#else
    const char* const last = "Max address space";
#endif
    QByteArray limits;
    const auto limit = [&](const QByteArray& name) {
        const qsizetype at = limits.indexOf(name);
        return at < 0 ? -1 : limits.mid(at + name.size()).simplified().split(' ').value(0).toLongLong();
    };
    EXPECT_TRUE(kit::waitUntil(
        [&] {
            QFile file(QString("/proc/%1/limits").arg(process.processId()));
            limits = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
            return limit(last) > 0 || process.state() == QProcess::NotRunning;
        },
        60000));
    EXPECT_GT(limit("Max cpu time"), 0);
    EXPECT_LT(limit("Max cpu time"), 30) << "by then the phone has given it up";
#ifndef __SANITIZE_ADDRESS__
    EXPECT_GT(limit("Max address space"), 0);
    EXPECT_LE(limit("Max address space"), 512 << 20);
#endif
    EXPECT_EQ(exitOf(process), 0);
}

TEST_F(ImageScale, OneThatDiesInTheMiddleHasNotSaidThatItHasScaled)
{
    writeFile("/rundata/a.png", halves("PNG"));
    QProcess process;
    process.setChildProcessModifier([] {
        const rlimit none = {100, 100};
        setrlimit(RLIMIT_FSIZE, &none); // room for a verdict, and none for a picture
    });
    start(process, order("/rundata/a.png", "/rundata/t.bmp"));
    EXPECT_EQ(exitOf(process), -1);
    EXPECT_NE(verdict(), "1");
}

TEST_F(ImageScale, ATargetThatCannotBeWrittenIsZero)
{
    writeFile("/rundata/a.png", halves("PNG"));
    EXPECT_EQ(scale("/rundata/a.png", "/rundata/none/t.png"), 1);
    EXPECT_EQ(verdict(), "0");
}

TEST_F(ImageScale, ACallThatIsNoOrderIsRefused)
{
    EXPECT_EQ(run({}), 2);
    EXPECT_EQ(run({"a", "b"}), 2);
    EXPECT_EQ(run({"@&@/rundata/a.png @&@126"}), 2);
}

TEST(ScaleOrder, TheWordsAreToldApartByTheirMarks)
{
    ScaleOrder order;
    ASSERT_TRUE(
        order.parse("@&@/storage/uDisk1/my @&@5 @&@x face.jpg @&@126 @&@90 @&@/rundata/t.jpg @&@/tmp/v"));
    EXPECT_EQ(order.strSource, "/storage/uDisk1/my @&@5 @&@x face.jpg");
    EXPECT_EQ(order.nWidth, 126);
    EXPECT_EQ(order.nHeight, 90);
    EXPECT_EQ(order.strTarget, "/rundata/t.jpg");
    EXPECT_EQ(order.strVerdict, "/tmp/v");
}

TEST(ScaleOrder, ASideHasAtMost4096Pixels)
{
    ScaleOrder order;
    EXPECT_TRUE(order.parse("@&@/a @&@4096 @&@1 @&@/t @&@/v"));
    EXPECT_EQ(order.nWidth, 4096);
    EXPECT_TRUE(order.parse("@&@/a @&@1 @&@4096 @&@/t @&@/v"));
    EXPECT_EQ(order.nHeight, 4096);
}

TEST(ScaleOrder, WhatIsMissingOrNoSizeIsNoOrder)
{
    for (const char* text :
         {"", "@&@", "/a @&@1 @&@1 @&@/t @&@/v", "@&@ @&@1 @&@1 @&@/t @&@/v", "@&@/a @&@0 @&@1 @&@/t @&@/v",
          "@&@/a @&@1 @&@-1 @&@/t @&@/v", "@&@/a @&@1 @&@4097 @&@/t @&@/v", "@&@/a @&@1x @&@1 @&@/t @&@/v",
          "@&@/a @&@1 @&@99999999999 @&@/t @&@/v", "@&@/a @&@1 @&@1 @&@ @&@/v",
          "@&@/a @&@1 @&@1 @&@/t @&@"}) {
        ScaleOrder order;
        EXPECT_FALSE(order.parse(text)) << text;
    }
}

} // namespace
