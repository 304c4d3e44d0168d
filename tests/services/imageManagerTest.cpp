#include "support/file/deviceRoot.h"
#include "support/host/image.h"
#include "tests/kit/fewDescriptors.h"
#include "tests/kit/phoneTest.h"
#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int kLookMs = 100;

class Images : public PhoneTest
{
protected:
    void writePicture(const char* path, QSize size, QColor color)
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(color);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        image.save(&buffer, "PNG");
        writeFile(path, bytes);
    }
    static QColor colorOf(const QPixmap& pixmap) { return pixmap.toImage().pixelColor(0, 0); }
    ImageManager& images = *GetImageManager();
};

} // namespace

TEST_F(Images, APictureIsReadThroughTheDeviceRootAndCached)
{
    writePicture("/rundata/a.png", {30, 20}, Qt::red);
    const QPixmap first = images.GetImage("/rundata/a.png");
    EXPECT_EQ(first.size(), QSize(30, 20));
    EXPECT_EQ(colorOf(first), QColor(Qt::red));
    EXPECT_EQ(images.GetImage("/rundata/a.png").cacheKey(), first.cacheKey());
}

TEST_F(Images, WhatIsNoPictureIsANullPixmap)
{
    writeFile("/rundata/text.png", "no picture");
    EXPECT_TRUE(images.GetImage("/rundata/none.png").isNull());
    EXPECT_TRUE(images.GetImage("/rundata/text.png").isNull());
    EXPECT_TRUE(images.GetImage("/rundata").isNull());
    EXPECT_TRUE(images.GetImage("").isNull());
    EXPECT_TRUE(images.GetImage(nullptr).isNull());
    EXPECT_TRUE(images.GetImageByScale("/rundata/none.png", 10, 10).isNull());
}

TEST_F(Images, APictureThatCouldNotBeOpenedForAWhileComesWhenItCan)
{
    writePicture("/rundata/a.png", {30, 20}, Qt::red);
    {
        const FewDescriptors none(0);
        EXPECT_TRUE(images.GetImage("/rundata/a.png").isNull());
    }
    EXPECT_TRUE(kit::waitUntil([this] { return !images.GetImage("/rundata/a.png").isNull(); }));
}

TEST_F(Images, APictureBehindALinkInASharedFolderIsNone)
{
    writePicture("/rundata/a.png", {30, 20}, Qt::red);
    writePicture("/tmp/own.png", {30, 20}, Qt::red);
    ASSERT_EQ(chmod(hostPath("/tmp").toUtf8(), 01777), 0);
    ASSERT_EQ(symlink("/rundata/a.png", hostPath("/tmp/link.png").toUtf8()), 0);
    EXPECT_FALSE(images.GetImage("/tmp/own.png").isNull());
    EXPECT_TRUE(images.GetImage("/tmp/link.png").isNull());
}

TEST_F(Images, AChangedFileIsReadAgainAfterAMoment)
{
    bool quick = false;
    // Real time goes by as well: on a busy machine a try may take longer than the file is left alone.
    for (int tries = 0; tries < 20 && !quick; ++tries) {
        writePicture("/rundata/a.png", {30, 20}, Qt::red);
        kit::stepTime(kLookMs + 20);
        QElapsedTimer timer;
        timer.start();
        const QPixmap red = images.GetImage("/rundata/a.png");
        writePicture("/rundata/a.png", {40, 20}, Qt::blue);
        const QPixmap still = images.GetImage("/rundata/a.png");
        quick = timer.elapsed() < kLookMs / 2;
        if (quick) {
            EXPECT_EQ(still.cacheKey(), red.cacheKey());
        }
        kit::stepTime(kLookMs + 20);
        EXPECT_EQ(colorOf(images.GetImage("/rundata/a.png")), QColor(Qt::blue));
    }
    EXPECT_TRUE(quick);
}

TEST_F(Images, AFileThatComesLaterIsFound)
{
    EXPECT_TRUE(images.GetImage("/rundata/later.png").isNull());
    writePicture("/rundata/later.png", {3, 2}, Qt::red);
    kit::stepTime(kLookMs + 20);
    EXPECT_FALSE(images.GetImage("/rundata/later.png").isNull());
    QFile::remove(hostPath("/rundata/later.png"));
    kit::stepTime(kLookMs + 20);
    EXPECT_TRUE(images.GetImage("/rundata/later.png").isNull());
}

TEST_F(Images, AScaledPictureFitsAndKeepsItsShape)
{
    writePicture("/rundata/wide.png", {400, 100}, Qt::red);
    EXPECT_EQ(images.GetImageByScale("/rundata/wide.png", 200, 200).size(), QSize(200, 50));
    EXPECT_EQ(images.GetImageByScale("/rundata/wide.png", 800, 100).size(), QSize(400, 100));
    EXPECT_EQ(images.GetImageByScale("/rundata/wide.png", 2, 2).size(), QSize(2, 1));
    EXPECT_TRUE(images.GetImageByScale("/rundata/wide.png", 0, 10).isNull());
    const QPixmap scaled = images.GetImageByScale("/rundata/wide.png", 200, 200);
    EXPECT_EQ(images.GetImageByScale("/rundata/wide.png", 200, 200).cacheKey(), scaled.cacheKey());
}

TEST_F(Images, AnotherDeviceRootHasOtherPictures)
{
    writePicture("/rundata/a.png", {3, 2}, Qt::red);
    EXPECT_FALSE(images.GetImage("/rundata/a.png").isNull());
    QTemporaryDir other;
    deviceSetRoot(other.path().toUtf8().constData());
    EXPECT_TRUE(images.GetImage("/rundata/a.png").isNull());
    deviceSetRoot(root().toUtf8().constData());
    EXPECT_FALSE(images.GetImage("/rundata/a.png").isNull());
}

TEST_F(Images, AScaledPictureFollowsItsFile)
{
    writePicture("/rundata/a.png", {40, 40}, Qt::red);
    images.GetImageByScale("/rundata/a.png", 20, 20);
    writePicture("/rundata/a.png", {40, 44}, Qt::blue);
    kit::stepTime(kLookMs + 20);
    EXPECT_EQ(colorOf(images.GetImageByScale("/rundata/a.png", 20, 20)), QColor(Qt::blue));
}

TEST_F(Images, AddNodeReadsAheadAndTellsWhetherItCould)
{
    writePicture("/rundata/a.png", {3, 2}, Qt::red);
    EXPECT_EQ(images.AddNode("/rundata/a.png", 1), 1);
    EXPECT_EQ(images.AddNode("/rundata/none.png", 1), 0);
    EXPECT_EQ(images.AddNode(nullptr, 1), 0);
}

TEST_F(Images, ARemovedPictureIsReadAgainAtOnce)
{
    writePicture("/rundata/a.png", {30, 20}, Qt::red);
    images.GetImage("/rundata/a.png");
    images.GetImageByScale("/rundata/a.png", 10, 10);
    writePicture("/rundata/a.png", {30, 20}, Qt::blue);
    images.RemoveImageInCache("/rundata/a.png");
    EXPECT_EQ(colorOf(images.GetImage("/rundata/a.png")), QColor(Qt::blue));
    EXPECT_EQ(colorOf(images.GetImageByScale("/rundata/a.png", 10, 10)), QColor(Qt::blue));
    images.RemoveImageInCache(nullptr);
}

// 16 MB hold four pictures of 1000 by 1000 pixels, but not five.
TEST_F(Images, TheCacheIsBoundedAndTheOldestGoesButKeptOnesStay)
{
    const char* const paths[] = {"/rundata/0.png", "/rundata/1.png", "/rundata/2.png",
                                 "/rundata/3.png", "/rundata/4.png", "/rundata/5.png"};
    for (const char* path : paths)
        writePicture(path, {1000, 1000}, Qt::red);
    ASSERT_EQ(images.AddNode(paths[0], 1), 1);
    const qint64 kept = images.GetImage(paths[0]).cacheKey();
    const qint64 second = images.GetImage(paths[1]).cacheKey();
    const qint64 third = images.GetImage(paths[2]).cacheKey();
    images.GetImage(paths[3]);
    EXPECT_EQ(images.GetImage(paths[1]).cacheKey(), second);
    images.GetImage(paths[4]);
    images.GetImage(paths[5]);
    EXPECT_EQ(images.GetImage(paths[0]).cacheKey(), kept);
    EXPECT_EQ(images.GetImage(paths[1]).cacheKey(), second);
    EXPECT_NE(images.GetImage(paths[2]).cacheKey(), third);
    images.AddNode(paths[0], 0);
    for (int i = 1; i < 6; ++i)
        images.GetImage(paths[i]);
    EXPECT_NE(images.GetImage(paths[0]).cacheKey(), kept);
    for (const char* path : paths)
        images.RemoveImageInCache(path);
}

TEST_F(Images, WhatSomebodyHoldsStaysSinceItsMemoryWould)
{
    for (int i = 0; i < 6; ++i)
        writePicture(QByteArray("/rundata/" + QByteArray::number(i) + ".png"), {1000, 1000}, Qt::red);
    QPixmap held = images.GetImage("/rundata/0.png");
    const qint64 key = held.cacheKey();
    for (int round = 0; round < 2; ++round) {
        for (int i = 1; i < 6; ++i)
            images.GetImage(QByteArray("/rundata/" + QByteArray::number(i) + ".png"));
        EXPECT_EQ(images.GetImage("/rundata/0.png").cacheKey() == key, round == 0);
        held = QPixmap();
    }
    for (int i = 0; i < 6; ++i)
        images.RemoveImageInCache(QByteArray("/rundata/" + QByteArray::number(i) + ".png"));
}

TEST_F(Images, APreparedPictureIsInTheCacheBeforeItIsAskedFor)
{
    writePicture("/rundata/a.png", {30, 20}, Qt::red);
    images.PrepareNode("/rundata/a.png");
    images.PrepareNode("");
    images.PrepareNode(nullptr);
    kit::waitUntil([this] { return images.GetPreparing() == 0; });
    // A file that has gone is found out after a moment; until then the cache answers.
    ASSERT_TRUE(QFile::remove(hostPath("/rundata/a.png")));
    EXPECT_EQ(colorOf(images.GetImage("/rundata/a.png")), QColor(Qt::red));
}

TEST_F(Images, OfManyPreparedPicturesTheLastAreRead)
{
    for (int i = 0; i < 100; ++i) {
        writePicture(QByteArray("/rundata/" + QByteArray::number(i) + ".png").constData(), {30, 20}, Qt::red);
        images.PrepareNode(("/rundata/" + QByteArray::number(i) + ".png").constData());
    }
    EXPECT_LE(images.GetPreparing(), 17);
    kit::waitUntil([this] { return images.GetPreparing() == 0; });
    ASSERT_TRUE(QFile::remove(hostPath("/rundata/99.png")));
    ASSERT_TRUE(QFile::remove(hostPath("/rundata/50.png")));
    EXPECT_FALSE(images.GetImage("/rundata/99.png").isNull());
    EXPECT_TRUE(images.GetImage("/rundata/50.png").isNull());
}
