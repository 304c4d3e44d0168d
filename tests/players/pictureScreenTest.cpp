// Whose pictures are seen where films, several calls and the user's own camera want the screen.
#include "players/pictureScreen.h"
#include "host/services/players/videoFrames.h"
#include "tests/players/playersTest.h"
#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int kBlack = 16;
constexpr int kDark = 60;
constexpr int kGrey = 120;
constexpr int kLight = 200;
const QSize kSize(64, 32);
const QRect kCorner(40, 8, 16, 16);

// One picture that is grey all over.
class GreyFrame
{
public:
    explicit GreyFrame(int level)
    {
        GstVideoInfo info;
        gst_video_info_set_format(&info, GST_VIDEO_FORMAT_I420, guint(kSize.width()), guint(kSize.height()));
        info.par_n = info.par_d = 1;
        m_pBuffer = gst_buffer_new_allocate(nullptr, info.size, nullptr);
        EXPECT_TRUE(gst_video_frame_map(&m_frame, &info, m_pBuffer, GST_MAP_WRITE));
        auto* bytes = static_cast<unsigned char*>(m_frame.data[0]);
        std::fill_n(bytes, info.size, static_cast<unsigned char>(128));
        std::fill_n(bytes, kSize.width() * kSize.height(), static_cast<unsigned char>(level));
    }
    ~GreyFrame()
    {
        gst_video_frame_unmap(&m_frame);
        gst_buffer_unref(m_pBuffer);
    }
    GreyFrame(const GreyFrame&) = delete;
    GreyFrame& operator=(const GreyFrame&) = delete;
    operator const GstVideoFrame&() const { return m_frame; }

private:
    GstBuffer* m_pBuffer = nullptr;
    GstVideoFrame m_frame = {};
};

class PictureScreen : public playersTest
{
protected:
    // The phone knows a server by the numbers of its process and its memory, so that each test has a number
    // of its own.
    PictureScreen()
    {
        static int last = 100;
        QList<int> below;
        while (below.isEmpty() || (below.last() >= 0 && below.last() < last))
            below.append(open("/dev/null", O_RDONLY | O_CLOEXEC));
        ++last;
        EXPECT_TRUE(m_screen.open());
        m_screen.setSurface(kSize);
        for (const int descriptor : std::as_const(below))
            close(descriptor);
    }
    // What was shown last is not seen in the next test.
    ~PictureScreen() override
    {
        for (const int call : {1, 2, 3})
            m_screen.endCall(call);
        m_screen.endFilm();
    }
    // The level there, of which a picture without any is none; -1: nothing is shown.
    static int levelAt(const QPoint& place)
    {
        tagVideoPicture picture;
        if (!videoFrames::instance().newest(picture))
            return -1;
        const QImage image(picture.pPixels, picture.nWidth, picture.nHeight, QImage::Format_RGB32);
        return qGreen(image.pixel(place));
    }
    static testing::AssertionResult isAt(const QPoint& place, int level)
    {
        const int shown = levelAt(place);
        // Of full range where the other is not.
        const bool isThere =
            level < 0 ? shown < 0 : shown >= 0 && std::abs(shown - (level - 16) * 255 / 219) < 8;
        return (isThere ? testing::AssertionSuccess() : testing::AssertionFailure()) << "level " << shown;
    }
    static bool isSeen(int level)
    {
        return kit::waitUntil([=] { return bool(isAt(QPoint(4, 4), level)); });
    }

    // Two pictures that are twice as broad as high, each in the middle of its half.
    static testing::AssertionResult areAt(int left, int right)
    {
        for (const auto& [place, level] :
             {std::pair(QPoint(16, 16), left), std::pair(QPoint(48, 16), right)}) {
            if (!isAt(place, level))
                return isAt(place, level) << " at " << place.x();
        }
        return levelAt(QPoint(16, 2)) == 0 && levelAt(QPoint(48, 29)) == 0
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << "there is something above or below";
    }
    static bool areSeen(int left, int right)
    {
        return kit::waitUntil([=] { return bool(areAt(left, right)); });
    }

    const bool m_bToolkit = (gst_init(nullptr, nullptr), true);
    pictureScreen m_screen;
    const GreyFrame m_dark{kDark};
    const GreyFrame m_grey{kGrey};
    const GreyFrame m_light{kLight};
};

TEST_F(PictureScreen, OfTwoCallsTheOneThatCameLastIsSeen)
{
    m_screen.showCall(1, m_dark);
    EXPECT_TRUE(isSeen(kDark));
    m_screen.showCall(2, m_light);
    EXPECT_TRUE(isSeen(kLight));
    m_screen.showCall(1, m_dark);
    EXPECT_TRUE(isAt(QPoint(4, 4), kLight)) << "the two would flicker";
    m_screen.endCall(1);
    EXPECT_TRUE(isAt(QPoint(4, 4), kLight)) << "it was not seen";
    m_screen.showCall(3, m_grey);
    m_screen.endCall(3);
    EXPECT_TRUE(isSeen(-1));
    m_screen.showCall(2, m_light);
    EXPECT_TRUE(isSeen(kLight));
}

TEST_F(PictureScreen, AFilmIsNotSeenUponACall)
{
    pictureScaler scaler;
    m_screen.showFilm(m_dark, QRect(), scaler);
    EXPECT_TRUE(isSeen(kDark));
    m_screen.showCall(1, m_light);
    EXPECT_TRUE(isSeen(kLight));
    m_screen.showFilm(m_dark, QRect(), scaler);
    EXPECT_TRUE(isAt(QPoint(4, 4), kLight));
    m_screen.moveFilm(QRect(0, 0, 8, 8));
    tagVideoPicture picture;
    ASSERT_TRUE(videoFrames::instance().newest(picture));
    EXPECT_TRUE(picture.place.isEmpty()) << "it was moved";
    m_screen.endFilm();
    EXPECT_TRUE(isAt(QPoint(4, 4), kLight)) << "it was taken away";
    m_screen.endCall(1);
    m_screen.showFilm(m_dark, QRect(), scaler);
    EXPECT_TRUE(isSeen(kDark));
}

TEST_F(PictureScreen, TheOwnPictureIsThatOfTheCallThatIsSeenAndGoesWithItsCamera)
{
    const QPoint corner = kCorner.center();
    m_screen.setOwnPlace(kCorner);
    m_screen.showCall(1, m_dark);
    m_screen.showOwn(1, m_light);
    m_screen.showCall(1, m_dark);
    EXPECT_TRUE(isSeen(kDark));
    EXPECT_TRUE(isAt(corner, kLight));
    m_screen.showCall(2, m_grey);
    EXPECT_TRUE(isSeen(kGrey));
    EXPECT_TRUE(isAt(corner, kGrey)) << "the user is seen by the other one";
    m_screen.showOwn(1, m_light);
    m_screen.showCall(2, m_grey);
    EXPECT_TRUE(isAt(corner, kGrey));
    m_screen.endCall(2);
    m_screen.showCall(1, m_dark);
    EXPECT_TRUE(isAt(corner, kLight));
    m_screen.endOwn(2);
    m_screen.showCall(1, m_dark);
    EXPECT_TRUE(isAt(corner, kLight)) << "another one's camera";
    m_screen.endOwn(1);
    m_screen.showCall(1, m_dark);
    EXPECT_TRUE(isAt(corner, kDark)) << "the camera is off";
    EXPECT_TRUE(isAt(QPoint(4, 4), kDark));
}

TEST_F(PictureScreen, OfTwoThatAreJoinedEachHasItsHalfInItsShape)
{
    m_screen.join(2, 1);
    m_screen.showCall(2, m_dark);
    EXPECT_TRUE(isSeen(kDark)) << "the other one has no picture";
    m_screen.showCall(1, m_light);
    m_screen.showCall(2, m_dark);
    m_screen.showCall(1, m_light);
    EXPECT_TRUE(areSeen(kLight, kDark)) << "the older one is on the left";
    m_screen.showCall(1, m_grey);
    EXPECT_TRUE(areAt(kGrey, kDark)) << "the other one stays as it is";
    m_screen.showCall(2, m_light);
    m_screen.showCall(1, m_grey);
    EXPECT_TRUE(areAt(kGrey, kLight));
    m_screen.endCall(1);
    m_screen.showCall(2, m_dark);
    EXPECT_TRUE(isSeen(kDark)) << "it has the whole surface";
    m_screen.endCall(2);
    EXPECT_TRUE(isSeen(-1));
}

TEST_F(PictureScreen, OneThatComesSeldomDoesNotHoldUpTheOther)
{
    m_screen.join(1, 2);
    m_screen.showCall(1, m_light);
    m_screen.showCall(2, m_dark);
    kit::waitUntil([] { return false; }, 2 * pictureScreen::LEAD_MS);
    m_screen.showCall(2, m_grey);
    EXPECT_TRUE(areSeen(kBlack, kGrey)) << "what was there before was no half";
    m_screen.showCall(1, m_dark);
    kit::waitUntil([] { return false; }, 2 * pictureScreen::LEAD_MS);
    m_screen.showCall(2, m_light);
    EXPECT_TRUE(areSeen(kDark, kLight)) << "what has waited goes along";
    kit::waitUntil([] { return false; }, 2 * pictureScreen::LEAD_MS);
    m_screen.showCall(1, m_grey);
    EXPECT_TRUE(areSeen(kGrey, kLight));
}

TEST_F(PictureScreen, OfTwoThatAreApartAgainTheOneThatGoesOnIsSeen)
{
    m_screen.join(1, 2);
    m_screen.showCall(1, m_light);
    m_screen.showCall(2, m_dark);
    m_screen.showCall(1, m_light);
    m_screen.showCall(2, m_dark);
    ASSERT_TRUE(areSeen(kLight, kDark));
    m_screen.split(1); // the second one has come last
    m_screen.showCall(2, m_grey);
    EXPECT_TRUE(areAt(kLight, kDark));
    m_screen.showCall(1, m_grey);
    EXPECT_TRUE(isSeen(kGrey));
}

TEST_F(PictureScreen, OneOwnPictureLiesUponBothHalves)
{
    const QPoint corner = kCorner.center();
    m_screen.setOwnPlace(kCorner);
    m_screen.join(1, 2);
    m_screen.showCall(2, m_dark);
    m_screen.showCall(1, m_dark);
    m_screen.showOwn(1, m_light);
    m_screen.showOwn(2, m_grey);
    m_screen.showCall(1, m_dark);
    EXPECT_TRUE(kit::waitUntil([&] { return bool(isAt(corner, kLight)); })) << "each of them would flicker";
    m_screen.endOwn(1);
    m_screen.showOwn(2, m_grey);
    m_screen.showCall(1, m_dark);
    EXPECT_TRUE(isAt(corner, kGrey)) << "the camera is off for the first one alone";
    EXPECT_TRUE(isAt(QPoint(16, 16), kDark));
}

} // namespace
