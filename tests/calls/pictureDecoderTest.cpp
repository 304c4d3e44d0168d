// Decoders that get too much, and how they end; and the way of pictures to the size in which they are shown.
#include "players/pictureDecoder.h"
#include "players/lateEnds.h"
#include "players/paceBudget.h"
#include "players/pictureScaler.h"
#include "players/rtpPacket.h"
#include "tests/kit/plain/processes.h"
#include <QElapsedTimer>
#include <atomic>
#include <ctime>
#include <future>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

// 320x240, grey; each block as it comes.
const QByteArray kSet = QByteArray::fromHex("6742e01fda0507e4");
const QByteArray kPictureSet = QByteArray::fromHex("68ce3c80");
constexpr int kBlocks = 300;

// The first picture of a sequence, whose blocks are all alike.
QByteArray keyPicture()
{
    return QByteArray::fromHex("658882289c") + QByteArray(kBlocks - 2, char(0x9c)) + char(0x9e);
}

// One that is as the one before.
QByteArray samePicture(int number)
{
    return QByteArray::fromHex("61") + char(0x9a | (number >> 3 & 1)) + char((number & 7) << 5 | 2) +
           QByteArray::fromHex("8025b0");
}

void work(double ms)
{
    const auto now = [] {
        timespec time = {};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
    };
    for (const double start = now(); now() - start < ms;) {
    }
}

class PictureDecoder : public testing::Test
{
protected:
    static void SetUpTestSuite() { gst_init(nullptr, nullptr); }
    PictureDecoder()
        : m_decoder(pictureDecoder::make(PICTURE_CODEC::H264, [this](const GstVideoFrame& frame) {
              work(m_workMs);
              m_nWidth = frame.info.width;
              ++m_nShown;
          }))
    {
    }
    ~PictureDecoder() override { m_decoder.reset(); }
    bool put(const QByteArray& unit, bool marker = false)
    {
        QByteArray packet(rtpPacket::HEAD_BYTES, 0);
        rtpPacket::write({97, marker, m_nSequence++, m_nTime, 4711},
                         reinterpret_cast<unsigned char*>(packet.data()));
        m_nTime += marker ? 3000 : 0;
        return m_decoder->put(packet + unit);
    }
    bool putKey()
    {
        const bool isWhole = put(kSet) && put(kPictureSet);
        return put(keyPicture(), true) && isWhole;
    }
    // All of them were taken as they should be.
    bool putSame(int count)
    {
        bool isWhole = true;
        for (int i = 1; i <= count; ++i)
            isWhole = put(samePicture(i), true) && isWhole;
        return isWhole;
    }
    bool shows(int count)
    {
        return kit::waits([&] { return m_nShown >= count; }, 30000);
    }
    // A key picture, as soon as it has a place.
    bool showsAgain()
    {
        const int before = m_nShown;
        return kit::waits(
            [&] {
                putKey();
                return m_nShown > before;
            },
            30000);
    }

    std::atomic<double> m_workMs{0};
    std::atomic<int> m_nWidth{0};
    std::atomic<int> m_nShown{0};
    quint16 m_nSequence = 1;
    quint32 m_nTime = 3000;
    std::unique_ptr<pictureDecoder> m_decoder;
};

TEST_F(PictureDecoder, PicturesComeOfPackets)
{
    EXPECT_TRUE(putKey());
    EXPECT_TRUE(putSame(20));
    EXPECT_TRUE(shows(21));
    EXPECT_EQ(m_nWidth, 320);
    EXPECT_FALSE(m_decoder->hasFailed());
}

TEST_F(PictureDecoder, MorePicturesThanAnybodySeesAreLeftOutUntilAKeyPicture)
{
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(putKey());
    // Slowly enough for the decoder to follow.
    int taken = 0;
    for (int i = 1; i <= 2000; ++i) {
        taken += put(samePicture(i), true) ? 1 : 0;
        usleep(500);
    }
    const qint64 bound = pictureDecoder::AT_ONCE + 1 + timer.elapsed() * pictureDecoder::RATE / 1000;
    EXPECT_LE(taken, bound);
    EXPECT_TRUE(kit::waits([&] { return m_decoder->waiting() == 0; }, 30000));
    EXPECT_LE(m_nShown, bound);
    EXPECT_FALSE(putSame(20000)) << "all at once";
    // A key picture has no place either while there are too many of them.
    EXPECT_TRUE(showsAgain());
    EXPECT_FALSE(m_decoder->hasFailed());
}

TEST_F(PictureDecoder, PicturesThatTakeTooLongAreLeftOut)
{
    m_workMs = 50;
    EXPECT_TRUE(putKey());
    EXPECT_TRUE(putSame(100)) << "nobody knows as yet";
    ASSERT_TRUE(kit::waits([&] { return m_decoder->waiting() == 0; }, 60000));
    EXPECT_LE(m_nShown, pictureDecoder::LATE_MS / 50 + 2);
    EXPECT_FALSE(put(samePicture(1), true)) << "it is told";
    EXPECT_TRUE(showsAgain());
}

TEST_F(PictureDecoder, ItsEndIsNotWaitedFor)
{
    lateEnds& ends = pictureDecoder::ends();
    EXPECT_TRUE(putKey());
    ASSERT_TRUE(shows(1));
    std::promise<void> began;
    std::promise<void> release;
    ends.add([&] {
        began.set_value();
        release.get_future().wait();
    });
    began.get_future().wait();
    m_decoder.reset();
    EXPECT_EQ(ends.waiting(), 1U) << "it has not ended";
    release.set_value();
    ends.wait();
    EXPECT_EQ(ends.waiting(), 0U);
}

TEST(PaceBudget, WhatWasSpentIsGivenBackWithTime)
{
    paceBudget budget(600, 100);
    EXPECT_TRUE(budget.spend(0, 99));
    EXPECT_FALSE(budget.spend(0, 51));
    EXPECT_FALSE(budget.spend(50000, 0)) << "50 too much, 30 are back";
    EXPECT_TRUE(budget.spend(100000, 0));
    EXPECT_FALSE(budget.spend(100000, 1e9));
    EXPECT_FALSE(budget.spend(250000, 0));
    EXPECT_TRUE(budget.spend(300000, 0)) << "no more is owed than there was at once";
}

// Of noise, in a size and a shape of pixels.
class ScaledFields : public testing::Test
{
protected:
    static void SetUpTestSuite() { gst_init(nullptr, nullptr); }
    QByteArray painted(const QSize& from, int shapeX, int shapeY, GstVideoInterlaceMode mode)
    {
        GstVideoInfo info;
        gst_video_info_set_format(&info, GST_VIDEO_FORMAT_I420, guint(from.width()), guint(from.height()));
        info.par_n = shapeX;
        info.par_d = shapeY;
        info.interlace_mode = mode;
        GstBuffer* buffer = gst_buffer_new_allocate(nullptr, info.size, nullptr);
        GstMapInfo map;
        EXPECT_TRUE(gst_buffer_map(buffer, &map, GST_MAP_WRITE));
        for (gsize i = 0; i < map.size; ++i)
            map.data[i] = guint8(i * i * 31 + i * 7);
        gst_buffer_unmap(buffer, &map);
        if (mode != GST_VIDEO_INTERLACE_MODE_PROGRESSIVE)
            GST_BUFFER_FLAG_SET(buffer, GST_VIDEO_BUFFER_FLAG_INTERLACED);
        GstVideoFrame frame;
        QByteArray pixels(800 * 480 * 4, 0);
        pictureScaler scaler;
        EXPECT_TRUE(gst_video_frame_map(&frame, &info, buffer, GST_MAP_READ));
        EXPECT_TRUE(scaler.prepare(frame.info, QSize(800, 480), true));
        scaler.paint(frame, reinterpret_cast<unsigned char*>(pixels.data()));
        gst_video_frame_unmap(&frame);
        gst_buffer_unref(buffer);
        return pixels;
    }
};

TEST_F(ScaledFields, ArePaintedAsOnePicture)
{
    for (const QSize& size : {QSize(48, 32), QSize(318, 240), QSize(40, 30), QSize(48, 6), QSize(46, 50),
                              QSize(50, 33), QSize(4, 2), QSize(800, 480)}) {
        for (const auto& [x, y] : {std::pair(1, 1), std::pair(1, 300), std::pair(300, 1), std::pair(55465, 2),
                                   std::pair(1, 65535)}) {
            const QByteArray whole = painted(size, x, y, GST_VIDEO_INTERLACE_MODE_PROGRESSIVE);
            for (const auto mode : {GST_VIDEO_INTERLACE_MODE_INTERLEAVED, GST_VIDEO_INTERLACE_MODE_MIXED})
                EXPECT_TRUE(painted(size, x, y, mode) == whole)
                    << size.width() << 'x' << size.height() << ' ' << x << '/' << y << ' ' << mode;
        }
    }
}

TEST_F(ScaledFields, OneFieldIsNoPicture)
{
    GstVideoInfo info;
    gst_video_info_set_interlaced_format(&info, GST_VIDEO_FORMAT_I420, GST_VIDEO_INTERLACE_MODE_ALTERNATE, 64,
                                         64);
    pictureScaler scaler;
    EXPECT_FALSE(scaler.prepare(info, QSize(800, 480), true));
}

} // namespace
