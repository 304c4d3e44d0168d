// The memory of pictures between the media server and the phone.
#include "host/services/players/videoFrameWriter.h"
#include "host/services/players/videoFrames.h"
#include "support/host/player.h"
#include "support/host/video.h"
#include "tests/kit/phoneTest.h"
#include <QEvent>
#include <QVector>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class VideoStore : public PhoneTest
{
protected:
    VideoStore() { EXPECT_TRUE(writer.open()); }
    void write(QRgb colour, QSize size = QSize(4, 2), QRect place = QRect())
    {
        EXPECT_TRUE(writer.write(size, place, [&](unsigned char* pixels) {
            std::fill_n(reinterpret_cast<QRgb*>(pixels), size.width() * size.height(), colour);
        }));
    }
    // The server's message, as it comes to the phone.
    static void hear(unsigned int process, unsigned int descriptor)
    {
        msgObject msg(MEDIA_MSG_FRAME, process, descriptor);
        EXPECT_EQ(videoFrames::instance().TryThreadMessage(msg), 1);
    }
    void hear() const { hear(unsigned(getpid()), unsigned(writer.descriptor())); }
    static bool newest(tagVideoPicture& picture) { return videoFrames::instance().newest(picture); }
    static QRgb pixelOf(const tagVideoPicture& picture)
    {
        QRgb pixel;
        memcpy(&pixel, picture.pPixels, sizeof pixel);
        return pixel;
    }

    videoFrameWriter writer;
    tagVideoPicture picture;
};

// The picture that each painting of a viewer is of.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget* viewer) { viewer->installEventFilter(this); }
    QList<QRgb> colours;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        tagVideoPicture picture;
        if (event->type() == QEvent::Paint && videoFrames::instance().next(picture)) {
            QRgb pixel;
            memcpy(&pixel, picture.pPixels, sizeof pixel);
            colours.append(pixel);
        }
        return false;
    }
};

// A store that a hostile server might make.
class StoreBytes : public ::testing::Test
{
protected:
    StoreBytes() : bytes(VIDEO_STORE_BYTES / sizeof(quint32))
    {
        head = reinterpret_cast<tagVideoHead*>(bytes.data());
        head->nMark = VIDEO_STORE_MARK;
        head->nSlots = VIDEO_STORE_SLOTS;
        head->nSlotBytes = VIDEO_STORE_SLOT_BYTES;
        head->nNewest = 1;
        head->slot[0].nSequence = 2;
        head->slot[0].nWidth = 800;
        head->slot[0].nHeight = 480;
    }
    bool isGood(size_t size = VIDEO_STORE_BYTES)
    {
        tagVideoPicture picture;
        return videoStoreNewest(bytes.data(), size, picture);
    }
    QVector<quint32> bytes;
    tagVideoHead* head;
};

TEST_F(VideoStore, IsPrivateAndCannotShrink)
{
    struct stat info;
    ASSERT_EQ(fstat(writer.descriptor(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);
    EXPECT_NE(ftruncate(writer.descriptor(), 100), 0);
}

TEST_F(VideoStore, HasNoPictureUntilOneIsWritten)
{
    hear();
    EXPECT_FALSE(newest(picture));
    write(0xff112233, QSize(4, 2), QRect(112, 50, 288, 200));
    hear();
    ASSERT_TRUE(newest(picture));
    EXPECT_EQ(picture.nWidth, 4);
    EXPECT_EQ(picture.nHeight, 2);
    EXPECT_EQ(picture.place, QRect(112, 50, 288, 200));
    EXPECT_EQ(pixelOf(picture), 0xff112233u);
}

TEST_F(VideoStore, ALentPictureStaysWholeForTwoMore)
{
    write(1);
    hear();
    ASSERT_TRUE(newest(picture));
    write(2);
    write(3);
    EXPECT_TRUE(videoFrames::instance().isSame(picture));
    EXPECT_EQ(pixelOf(picture), 1u);
    write(4);
    write(5);
    EXPECT_FALSE(videoFrames::instance().isSame(picture)) << "written over";
    ASSERT_TRUE(newest(picture));
    EXPECT_EQ(pixelOf(picture), 5u);
}

TEST_F(VideoStore, APictureThatIsBeingWrittenIsNotLent)
{
    write(1);
    hear();
    writer.write(QSize(4, 2), QRect(), [&](unsigned char*) {
        ASSERT_TRUE(newest(picture));
        EXPECT_EQ(pixelOf(picture), 1u) << "the one before";
    });
}

TEST_F(VideoStore, LargerThanASlotIsRefused)
{
    bool painted = false;
    EXPECT_FALSE(writer.write(QSize(1281, 1), QRect(), [&](unsigned char*) { painted = true; }));
    EXPECT_FALSE(writer.write(QSize(1, 801), QRect(), [&](unsigned char*) { painted = true; }));
    EXPECT_FALSE(writer.write(QSize(0, 1), QRect(), [&](unsigned char*) { painted = true; }));
    EXPECT_FALSE(painted);
}

TEST_F(VideoStore, MovingKeepsThePicture)
{
    EXPECT_FALSE(writer.move(QRect(1, 2, 3, 4)));
    write(7);
    EXPECT_TRUE(writer.move(QRect(10, 20, 30, 40)));
    hear();
    ASSERT_TRUE(newest(picture));
    EXPECT_EQ(picture.place, QRect(10, 20, 30, 40));
    EXPECT_EQ(pixelOf(picture), 7u);
}

TEST_F(VideoStore, ForgottenPicturesAreNotShownTheNextOneIs)
{
    write(1);
    hear();
    videoFrames::instance().forget();
    EXPECT_FALSE(newest(picture));
    write(2);
    EXPECT_TRUE(newest(picture));
}

TEST_F(VideoStore, PicturesThatCameTogetherAreNextOneAfterTheOther)
{
    write(1);
    hear();
    int changes = 0;
    QObject guard;
    QObject::connect(&videoFrames::instance(), &videoFrames::changed, &guard, [&] { ++changes; });
    for (const QRgb colour : {1u, 2u, 3u, 4u}) {
        ASSERT_TRUE(videoFrames::instance().next(picture));
        EXPECT_EQ(pixelOf(picture), colour);
        if (colour == 1) {
            for (const QRgb later : {2u, 3u, 4u})
                write(later);
        }
        changes = 0;
        videoFrames::instance().painted(picture);
        kit::settle();
        EXPECT_EQ(changes, colour < 4 ? 1 : 0) << "somebody must paint the next one";
    }
    ASSERT_TRUE(videoFrames::instance().next(picture));
    EXPECT_EQ(pixelOf(picture), 4u) << "the last one stays";
}

TEST_F(VideoStore, WhatIsTooLateIsLeftOut)
{
    write(1);
    hear();
    ASSERT_TRUE(videoFrames::instance().next(picture));
    videoFrames::instance().painted(picture);
    for (const QRgb colour : {2u, 3u, 4u, 5u})
        write(colour);
    ASSERT_TRUE(videoFrames::instance().next(picture));
    EXPECT_EQ(pixelOf(picture), 5u);
}

TEST_F(VideoStore, NothingFromBeforeTheEndOfASessionIsNext)
{
    write(1);
    hear();
    ASSERT_TRUE(videoFrames::instance().next(picture));
    videoFrames::instance().painted(picture);
    write(2);
    writer.clear();
    EXPECT_FALSE(videoFrames::instance().next(picture));
    write(3);
    ASSERT_TRUE(videoFrames::instance().next(picture));
    EXPECT_EQ(pixelOf(picture), 3u);
}

TEST_F(VideoStore, NothingThatWasForgottenIsNext)
{
    write(1);
    hear();
    ASSERT_TRUE(videoFrames::instance().next(picture));
    videoFrames::instance().painted(picture);
    write(2);
    videoFrames::instance().forget();
    EXPECT_FALSE(videoFrames::instance().next(picture));
    write(3);
    ASSERT_TRUE(videoFrames::instance().next(picture));
    EXPECT_EQ(pixelOf(picture), 3u);
}

TEST_F(VideoStore, AViewerPaintsEveryPictureOfABusyMoment)
{
    QVideoViewer viewer;
    viewer.setGeometry(0, 0, 40, 20);
    viewer.setWindowFlags(Qt::FramelessWindowHint);
    viewer.show();
    viewer.ShowVideoViewer(1);
    viewer.ShowBackground(0);
    write(0xff000001);
    hear();
    kit::settle();
    PaintWatch paints(&viewer);
    for (const QRgb colour : {0xff000002, 0xff000003, 0xff000004}) {
        write(colour);
        hear();
    }
    kit::settle();
    EXPECT_EQ(paints.colours, (QList<QRgb>{0xff000002, 0xff000003, 0xff000004}));
}

TEST_F(VideoStore, WhatIsNoStoreIsNotAttached)
{
    hear(unsigned(getpid()), 9999);
    EXPECT_FALSE(newest(picture));
    const int open = memfd_create("other", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    ASSERT_EQ(ftruncate(open, VIDEO_STORE_BYTES), 0);
    hear(unsigned(getpid()), unsigned(open)); // could shrink below the reader
    EXPECT_FALSE(newest(picture));
    ASSERT_EQ(fcntl(open, F_ADD_SEALS, F_SEAL_SHRINK), 0);
    hear(unsigned(getpid()), unsigned(open)); // all zero
    EXPECT_FALSE(newest(picture));
    close(open);
    const int small = memfd_create("small", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    ASSERT_EQ(fcntl(small, F_ADD_SEALS, F_SEAL_SHRINK), 0);
    hear(unsigned(getpid()), unsigned(small));
    EXPECT_FALSE(newest(picture));
    close(small);
}

TEST_F(StoreBytes, EveryNumberOfTheHeadIsChecked)
{
    EXPECT_TRUE(isGood());
    EXPECT_FALSE(isGood(VIDEO_STORE_BYTES - 1));
    const auto spoiled = [&](auto& number, auto value) {
        const auto before = uint32_t(number);
        number = value;
        const bool good = isGood();
        number = before;
        return !good;
    };
    EXPECT_TRUE(spoiled(head->nMark, 0u));
    EXPECT_TRUE(spoiled(head->nSlots, 5u));
    EXPECT_TRUE(spoiled(head->nSlotBytes, 4u));
    EXPECT_TRUE(spoiled(head->nNewest, 0u));
    EXPECT_TRUE(spoiled(head->nNewest, 5u));
    EXPECT_TRUE(spoiled(head->nNewest, 0xFFFFFFFFu));
    EXPECT_TRUE(spoiled(head->slot[0].nSequence, 3u));
    EXPECT_TRUE(spoiled(head->slot[0].nWidth, 0u));
    EXPECT_TRUE(spoiled(head->slot[0].nWidth, 1281u));
    EXPECT_TRUE(spoiled(head->slot[0].nHeight, 801u));
    EXPECT_TRUE(spoiled(head->slot[0].nHeight, 0x80000000u));
    EXPECT_TRUE(spoiled(head->slot[0].cx, 100u)) << "a place without a height";
    head->slot[0].cx = head->slot[0].cy = 100;
    EXPECT_TRUE(isGood());
    EXPECT_TRUE(spoiled(head->slot[0].x, 1281));
    EXPECT_TRUE(spoiled(head->slot[0].y, -801));
    EXPECT_TRUE(spoiled(head->slot[0].cy, 801u));
}

} // namespace
