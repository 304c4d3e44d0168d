// Pictures of calls that are joined, at the real media server: the user's own go to both other sides, and
// both are seen here. Each camera shows two numbers in turn, so that one that stands still is none that goes
// on.
#include "host/services/players/videoFrames.h"
#include "tests/players/callServiceStand.h"
#include "tests/players/films.h"
#include "tests/players/pictureSide.h"

namespace {

constexpr int kOwn = 172;
constexpr int kOther = 40;
constexpr int kThird = 90;
constexpr QSize kSurface(800, 432);
constexpr QRect kWhole(112, 0, 576, 432); // of a picture in its shape
constexpr QRect kLeft(0, 0, 400, 432);
constexpr QRect kRight(400, 0, 400, 432);

class ConferencePictures : public CallService
{
protected:
    ConferencePictures() { setSource(kOwn); }
    ~ConferencePictures() override { qunsetenv("HX_PICTURE_SOURCE"); }
    // Of the camera that is opened next.
    void setSource(int number)
    {
        const QString files = hostPath("/rundata/%1-").arg(number);
        for (const int turn : {0, 1})
            EXPECT_TRUE(
                numberedPicture(QSize(640, 480), number + turn).save(files + QString("%1.png").arg(turn)));
        qputenv(
            "HX_PICTURE_SOURCE",
            ("multifilesrc location=" + files +
             "%d.png start-index=0 stop-index=1 loop=true caps=image/png,framerate=(fraction)8/1 ! pngdec ! "
             "identity sync=true")
                .toUtf8());
    }
    static tagMediaWish video()
    {
        tagMediaWish wish;
        wish.options.bVideo = wish.options.bCamera = true;
        wish.options.nFrameRate = 15;
        return wish;
    }
    void connectSide(int call, PictureSide& side, const tagMediaWish& wish = video())
    {
        tagMediaWant want;
        want.bVideo = want.bCamera = true;
        want.nRate = 15;
        m_sessions.agree(call, side.negotiation->answer(offerOf(call, wish), want));
        side.apply();
    }
    void hold(int call, PictureSide& side)
    {
        tagMediaWish held = video();
        held.bHeld = true;
        connectSide(call, side, held);
    }
    // Two calls that are joined as soon as both have sound.
    void joinBoth()
    {
        startMedia();
        videoFrames::instance().askForSize(kSurface);
        setSource(kOther);
        connectSide(1, m_other);
        ASSERT_TRUE(goesOn(kWhole, kOther));
        setSource(kThird);
        connectSide(2, m_third);
        ASSERT_TRUE(goesOn(kWhole, kThird)) << "the one that came last";
        ASSERT_TRUE(kit::waitUntil([&] { return m_sessions.join(1, 2); }));
    }
    static int numberAt(const QRect& place)
    {
        tagVideoPicture picture;
        if (!videoFrames::instance().newest(picture) || QSize(picture.nWidth, picture.nHeight) != kSurface)
            return -1;
        return numberIn(
            QImage(picture.pPixels, picture.nWidth, picture.nHeight, QImage::Format_RGB32).copy(place));
    }
    // Both pictures of a camera come again and again.
    static bool goesOn(const QRect& place, int number)
    {
        return comeInTurn([&] { return numberAt(place); }, number);
    }
    static bool sees(const PictureSide& side)
    {
        return comeInTurn([&] { return int(side.seen.nNumber); }, kOwn);
    }
    static bool seesNothing(const PictureSide& side)
    {
        return kit::waitUntil([&] { return side.seen.nNumber == -1; }, 8000);
    }
    bool isSent(int call, int own)
    {
        return kit::waitUntil([&] { return m_news.streams[call].nOwnPicture == own; }, 8000);
    }

    const bool m_bToolkit = (gst_init(nullptr, nullptr), true);
    PictureSide m_other;
    PictureSide m_third;

private:
    static bool comeInTurn(const std::function<int()>& seen, int number)
    {
        for (const int turn : {0, 1, 0, 1}) {
            if (!kit::waitUntil([&] { return seen() == number + turn; }, 20000))
                return false;
        }
        return true;
    }
};

TEST_F(ConferencePictures, TheOwnPictureGoesToBothUntilTheyAreApart)
{
    joinBoth();
    EXPECT_TRUE(sees(m_other) && sees(m_third));
    EXPECT_TRUE(isSent(1, 1) && isSent(2, 1));
    hold(1, m_other);
    EXPECT_TRUE(seesNothing(m_other));
    EXPECT_TRUE(isSent(1, 0) && isSent(2, 1));
    EXPECT_TRUE(sees(m_third)) << "it is not held";
    connectSide(1, m_other);
    EXPECT_TRUE(sees(m_other) && sees(m_third));
    m_sessions.split(1);
    EXPECT_TRUE(seesNothing(m_third));
    EXPECT_TRUE(isSent(1, 1) && isSent(2, 0));
    EXPECT_TRUE(sees(m_other)) << "the call that goes on";
    ASSERT_TRUE(m_sessions.join(1, 2));
    EXPECT_TRUE(sees(m_other) && sees(m_third));
    m_sessions.end(1);
    EXPECT_TRUE(sees(m_third));
    EXPECT_TRUE(isSent(2, 1));
}

// As the phone has it: one is still held when they are joined.
TEST_F(ConferencePictures, WhoIsTakenBackIntoOneDoesNotTakeTheCameraAway)
{
    joinBoth();
    m_sessions.split(2);
    hold(1, m_other);
    ASSERT_TRUE(seesNothing(m_other));
    ASSERT_TRUE(m_sessions.join(2, 1));
    EXPECT_TRUE(sees(m_third));
    connectSide(1, m_other);
    EXPECT_TRUE(sees(m_other));
    EXPECT_TRUE(sees(m_third));
    m_sessions.split(2);
    EXPECT_TRUE(seesNothing(m_other));
    EXPECT_TRUE(sees(m_third)) << "who was in front is";
    EXPECT_TRUE(goesOn(kWhole, kThird));
}

TEST_F(ConferencePictures, BothOtherSidesAreSeenSideBySideAndEachAloneInTheWhole)
{
    joinBoth();
    EXPECT_TRUE(goesOn(kLeft, kOther) && goesOn(kRight, kThird));
    const QRect corner(620, 20, 160, 120);
    videoFrames::instance().askForOwn(corner);
    EXPECT_TRUE(goesOn(corner, kOwn));
    EXPECT_TRUE(goesOn(kRight, kThird)) << "below the corner";
    m_third.session->setCamera(false);
    EXPECT_TRUE(goesOn(kWhole, kOther)) << "as in a call of two";
    EXPECT_TRUE(goesOn(corner, kOwn));
    m_third.session->setCamera(true);
    EXPECT_TRUE(goesOn(kLeft, kOther) && goesOn(kRight, kThird));
    m_sessions.split(1);
    EXPECT_TRUE(goesOn(kWhole, kOther));
    ASSERT_TRUE(m_sessions.join(1, 2));
    EXPECT_TRUE(goesOn(kLeft, kOther) && goesOn(kRight, kThird));
    m_sessions.end(1);
    EXPECT_TRUE(goesOn(kWhole, kThird));
    m_sessions.end(2);
    EXPECT_TRUE(kit::waitUntil([] { return numberAt(kWhole) == -1; }));
}

} // namespace
