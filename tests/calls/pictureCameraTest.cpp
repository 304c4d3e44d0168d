// Cameras that do not do what is wanted of them: one that is somebody else's, is pulled out, gives nothing,
// or has no picture of the size that is sent. The toolkit's own element is asked for a device that is not
// there.
#include "tests/calls/pictureStand.h"
#include <QFile>
#include <cstring>

namespace {

class PictureCamera : public PictureStand
{
protected:
    // As the media server does it once a second.
    bool waitFor(const std::function<bool()>& check, int ms = 20000)
    {
        return PictureStand::waitFor(
            [&] {
                m_one.session->watchCamera();
                return check();
            },
            ms);
    }
    bool sends() { return m_one.session->sends(); }
    static QByteArray frozen(const QString& file)
    {
        return ("filesrc location=" + file + " ! pngdec ! imagefreeze is-live=true").toUtf8();
    }
};

TEST_F(PictureCamera, OneThatIsPulledOutStopsAndIsTriedAgain)
{
    const QByteArray good = qgetenv("HX_PICTURE_SOURCE");
    qputenv("HX_PICTURE_SOURCE", good + " ! identity error-after=10");
    connect(m_one, m_other, video(), video(false));
    EXPECT_TRUE(sees(m_other));
    EXPECT_TRUE(waitFor([&] { return !sends(); }));
    EXPECT_TRUE(waitFor([&] { return m_other.seen.nNumber == -1; }));
    EXPECT_EQ(m_one.seen.nOwn, 0) << "what the user sees of himself";
    qputenv("HX_PICTURE_SOURCE", good);
    EXPECT_TRUE(waitFor([&] { return sends() && m_other.seen.nNumber == 165; }));
}

TEST_F(PictureCamera, OneThatIsBusyIsTakenWhenItIsFree)
{
    const QString file = m_folder.filePath("later.png");
    qputenv("HX_PICTURE_SOURCE", frozen(file));
    connect(m_one, m_other, video(), video(false));
    EXPECT_FALSE(sends());
    EXPECT_FALSE(waitFor([&] { return sends(); }, 1000));
    ASSERT_TRUE(QFile::copy(m_folder.filePath("165.png"), file));
    EXPECT_TRUE(waitFor([&] { return sends() && m_other.seen.nNumber == 165; }));
}

TEST_F(PictureCamera, OneThatGivesNothingDoesNotWork)
{
    qputenv("HX_PICTURE_SOURCE", qgetenv("HX_PICTURE_SOURCE") + " ! identity drop-probability=1");
    connect(m_one, m_other, video(), video(false));
    EXPECT_TRUE(sends()) << "it may need a while";
    EXPECT_TRUE(waitFor([&] { return !sends(); }));
    EXPECT_EQ(m_other.seen.nOther, 0);
}

TEST_F(PictureCamera, OneThatEndsIsNotTakenForOneThatGoesOn)
{
    qputenv("HX_PICTURE_SOURCE", "videotestsrc is-live=true num-buffers=10");
    connect(m_one, m_other, video(), video(false));
    EXPECT_TRUE(waitFor([&] { return m_other.seen.nOther > 0; }));
    EXPECT_TRUE(waitFor([&] { return !sends(); }, pictureEncoder::SILENT_MS / 2));
}

TEST_F(PictureCamera, ADeviceThatIsNotThereIsNoCameraAndTheCallGoesOn)
{
    qputenv("HX_PICTURE_SOURCE", "v4l2src device=/dev/video63");
    connect(m_one, m_other, video(), video());
    EXPECT_FALSE(sends());
    EXPECT_FALSE(waitFor([&] { return sends(); }, 1000));
    EXPECT_EQ(m_one.seen.nOwn, 0);
}

// A picture of another size, or shape, lies in the middle of the one that is sent.
class PictureCameraSizes : public PictureCamera, public testing::WithParamInterface<const char*>
{
};

TEST_P(PictureCameraSizes, AnotherSizeBecomesTheOneThatIsSent)
{
    qputenv("HX_PICTURE_SOURCE", qgetenv("HX_PICTURE_SOURCE") +
                                     " ! videoscale add-borders=false ! capsfilter caps=video/x-raw," +
                                     GetParam());
    connect(m_one, m_other, video(), video(false));
    EXPECT_TRUE(sees(m_other));
    EXPECT_EQ(m_other.seen.nWidth, 640);
    EXPECT_EQ(m_other.seen.bBordered, strncmp(GetParam(), "width=1920", 10) == 0) << "of another shape";
}

INSTANTIATE_TEST_SUITE_P(Cameras, PictureCameraSizes,
                         testing::Values("width=320,height=240", "width=1280,height=960",
                                         "width=1920,height=1080,framerate=5/1,pixel-aspect-ratio=1/1"));

} // namespace
