// The quick way from pictures of the usual kind to pixels.
#include "players/quickColours.h"
#include "players/pictureScaler.h"
#include <QByteArray>
#include <QSize>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>

namespace {

constexpr int kWidth = 64;
constexpr int kHeight = 34;

class QuickColours : public ::testing::Test
{
protected:
    QuickColours()
    {
        gst_init(nullptr, nullptr);
        gst_video_info_set_format(&info, GST_VIDEO_FORMAT_I420, kWidth, kHeight);
    }
    ~QuickColours() override { drop(); }
    void drop()
    {
        if (buffer)
            gst_video_frame_unmap(&frame);
        gst_clear_buffer(&buffer);
    }
    // Every brightness meets many colours, those that no camera makes as well.
    void makePicture()
    {
        drop();
        buffer = gst_buffer_new_allocate(nullptr, info.size, nullptr);
        GstMapInfo map;
        gst_buffer_map(buffer, &map, GST_MAP_WRITE);
        for (gsize i = 0; i < map.size; ++i)
            map.data[i] = guint8(i * 37 + i / 256 * 11);
        gst_buffer_unmap(buffer, &map);
        ASSERT_TRUE(gst_video_frame_map(&frame, &info, buffer, GST_MAP_READ));
    }
    // As the standards have it, without haste.
    QByteArray exact() const
    {
        double red = 0;
        double blue = 0;
        EXPECT_TRUE(gst_video_color_matrix_get_Kr_Kb(info.colorimetry.matrix, &red, &blue));
        const bool isWhole = info.colorimetry.range == GST_VIDEO_COLOR_RANGE_0_255;
        const auto byte = [](double value) { return char(quint8(std::lround(std::clamp(value, 0., 255.)))); };
        QByteArray pixels(kWidth * kHeight * 4, 0);
        for (int i = 0; i < kWidth * kHeight; ++i) {
            const int x = i % kWidth;
            const int y = i / kWidth;
            const double luma = (at(0, x, y) - (isWhole ? 0 : 16)) * 255 / (isWhole ? 255 : 219);
            const double u = (at(1, x / 2, y / 2) - 128) * 255 / (isWhole ? 255 : 224);
            const double v = (at(2, x / 2, y / 2) - 128) * 255 / (isWhole ? 255 : 224);
            pixels[4 * i] = byte(luma + 2 * (1 - blue) * u);
            pixels[4 * i + 1] =
                byte(luma - (2 * blue * (1 - blue) * u + 2 * red * (1 - red) * v) / (1 - red - blue));
            pixels[4 * i + 2] = byte(luma + 2 * (1 - red) * v);
        }
        return pixels;
    }
    double at(int plane, int x, int y) const
    {
        return static_cast<const quint8*>(frame.data[plane])[y * frame.info.stride[plane] + x];
    }
    // The largest difference of a colour.
    static int difference(const QByteArray& one, const QByteArray& other)
    {
        int most = one.size() == other.size() ? 0 : 256;
        for (qsizetype i = 0; most < 256 && i < one.size(); ++i) {
            if (i % 4 != 3)
                most = std::max(most, std::abs(int(quint8(one[i])) - int(quint8(other[i]))));
        }
        return most;
    }
    int differenceOf(GstVideoColorMatrix matrix, GstVideoColorRange range)
    {
        info.colorimetry.matrix = matrix;
        info.colorimetry.range = range;
        makePicture();
        QByteArray pixels(kWidth * kHeight * 4, 0);
        EXPECT_TRUE(colours.prepare(info));
        EXPECT_TRUE(colours.paint(frame, reinterpret_cast<unsigned char*>(pixels.data())));
        return difference(pixels, exact());
    }

    GstVideoInfo info;
    GstBuffer* buffer = nullptr;
    GstVideoFrame frame = {};
    quickColours colours;
};

TEST_F(QuickColours, AreThoseOfTheStandards)
{
    EXPECT_LE(differenceOf(GST_VIDEO_COLOR_MATRIX_BT601, GST_VIDEO_COLOR_RANGE_16_235), 1);
    EXPECT_LE(differenceOf(GST_VIDEO_COLOR_MATRIX_BT709, GST_VIDEO_COLOR_RANGE_16_235), 1);
    EXPECT_LE(differenceOf(GST_VIDEO_COLOR_MATRIX_BT601, GST_VIDEO_COLOR_RANGE_0_255), 1);
    EXPECT_LE(differenceOf(GST_VIDEO_COLOR_MATRIX_BT709, GST_VIDEO_COLOR_RANGE_0_255), 1);
}

TEST_F(QuickColours, BlackAndWhiteAreWhole)
{
    ASSERT_NO_FATAL_FAILURE(makePicture());
    ASSERT_TRUE(colours.prepare(info));
    QByteArray pixels(kWidth * kHeight * 4, 0);
    for (const auto& [luma, grey] : {std::pair(16, 0), std::pair(235, 255)}) {
        drop();
        buffer = gst_buffer_new_allocate(nullptr, info.size, nullptr);
        gst_buffer_memset(buffer, 0, 128, info.size);
        gst_buffer_memset(buffer, 0, guint8(luma), kWidth * kHeight);
        ASSERT_TRUE(gst_video_frame_map(&frame, &info, buffer, GST_MAP_READ));
        ASSERT_TRUE(colours.paint(frame, reinterpret_cast<unsigned char*>(pixels.data())));
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(quint8(pixels[i]), i == 3 ? 255 : grey);
    }
}

TEST_F(QuickColours, OtherKindsAreForTheConverter)
{
    EXPECT_TRUE(colours.prepare(info));
    GstVideoInfo other;
    gst_video_info_set_format(&other, GST_VIDEO_FORMAT_NV12, kWidth, kHeight);
    EXPECT_FALSE(colours.prepare(other));
    gst_video_info_set_format(&other, GST_VIDEO_FORMAT_I420, 63, kHeight);
    EXPECT_FALSE(colours.prepare(other)) << "half a pair of pixels";
    other = info;
    other.interlace_mode = GST_VIDEO_INTERLACE_MODE_INTERLEAVED;
    EXPECT_FALSE(colours.prepare(other));
    other = info;
    other.colorimetry.matrix = GST_VIDEO_COLOR_MATRIX_UNKNOWN;
    EXPECT_FALSE(colours.prepare(other));
}

TEST_F(QuickColours, LinesThatDoNotLieInPairsAreForTheConverter)
{
    ASSERT_NO_FATAL_FAILURE(makePicture());
    ASSERT_TRUE(colours.prepare(info));
    QByteArray pixels(kWidth * kHeight * 4, 0);
    GstVideoFrame odd = frame;
    odd.data[0] = static_cast<guint8*>(frame.data[0]) + 1;
    EXPECT_FALSE(colours.paint(odd, reinterpret_cast<unsigned char*>(pixels.data())));
    EXPECT_EQ(pixels, QByteArray(kWidth * kHeight * 4, 0));
}

TEST_F(QuickColours, APictureOfOddHeightKeepsItsLastLine)
{
    gst_video_info_set_format(&info, GST_VIDEO_FORMAT_I420, kWidth, 33);
    ASSERT_NO_FATAL_FAILURE(makePicture());
    ASSERT_TRUE(colours.prepare(info));
    QByteArray pixels(kWidth * 33 * 4, 0);
    ASSERT_TRUE(colours.paint(frame, reinterpret_cast<unsigned char*>(pixels.data())));
    EXPECT_EQ(quint8(pixels[pixels.size() - 1]), 0xff);
}

TEST_F(QuickColours, AScaledPictureGoesThroughTheConverter)
{
    ASSERT_NO_FATAL_FAILURE(makePicture());
    pictureScaler scaler;
    QByteArray pixels(kWidth * kHeight * 4, 0);
    auto* target = reinterpret_cast<unsigned char*>(pixels.data());
    ASSERT_TRUE(scaler.prepare(info, QSize(kWidth / 2, kHeight / 2), false));
    scaler.paint(frame, target);
    EXPECT_EQ(pixels.mid(kWidth * kHeight), QByteArray(kWidth * kHeight * 3, 0)) << "a quarter of the pixels";
    ASSERT_TRUE(scaler.prepare(info, QSize(kWidth, kHeight), true));
    scaler.paint(frame, target);
    EXPECT_LE(difference(pixels, exact()), 1);
}

} // namespace
