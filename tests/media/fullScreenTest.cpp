#include "host/services/messages/messageBus.h"
#include "media/dlgImagePlay.h"
#include "media/dlgImageScreen.h"
#include "media/dlgScreenSleep.h"
#include "media/dlgVideoPlay.h"
#include "media/dlgVideoPreview.h"
#include "media/dlgVideoScreen.h"
#include "media/mediaShows.h"
#include "support/host/phone.h"
#include "support/host/picture.h"
#include "support/host/player.h"
#include "support/host/registry.h"
#include "support/host/screen.h"
#include "support/host/upgrade.h"
#include "tests/kit/kitTime.h"
#include "tests/media/fakePlayer.h"
#include "tests/media/showTest.h"
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <memory>

namespace {

constexpr unsigned kPause = 0x110004;
constexpr unsigned kResume = 0x110005;
constexpr unsigned kStop = 0x110006;
constexpr unsigned kPrevious = 0x110007;
constexpr unsigned kNext = 0x110008;
constexpr unsigned kSessionStop = 0x70002;

// The phone under the show: a window with a button that a touch must not reach.
class FullScreen : public ShowTest
{
protected:
    FullScreen() : button(&page)
    {
        kit::holdClocks(true);
        page.setObjectName("page");
        page.resize(800, 480);
        button.setGeometry(0, 0, 800, 480);
        QObject::connect(&button, &QPushButton::pressed, [this] { ++pressed; });
        QObject::connect(&button, &QPushButton::released, [this] { ++pressed; });
        screenBringUp(&page);
        kit::settle();
    }
    ~FullScreen() override
    {
        CAutoUpgrade::GetInstance()->SetUpgrading(0);
        Stop_ImageView();
        Stop_VideoView();
        CloseScreenSleepDlg();
        kit::settle();
    }

    static QString top()
    {
        kit::settle();
        return kit::windows().isEmpty() ? QString() : kit::windows().first()->objectName();
    }
    QStringList savers() const { return logged("saver"); }
    // Asks for a show and lets it come up.
    template <class Function, class... Arguments>
    static void start(Function function, Arguments... arguments)
    {
        function(arguments...);
        kit::settle();
    }

    QWidget page;
    QPushButton button;
    int pressed = 0;
};

class SlideShowOnScreen : public FullScreen
{
};

TEST_F(SlideShowOnScreen, FillsTheScreenAndHoldsTheSaverOff)
{
    putPictures(2);
    EXPECT_EQ(PlayImageFile(), 1);
    EXPECT_EQ(top(), "dlgImagePlay");
    EXPECT_TRUE(isAt(0));
    EXPECT_EQ(dlgImagePlay::Instance()->geometry(), QRect(0, 0, 800, 480));
    EXPECT_TRUE(dlgImagePlay::Instance()->windowFlags() & Qt::FramelessWindowHint);
    EXPECT_EQ(savers(), QStringList({"register 5 0"}));
    mark();
    StopImagePlay();
    EXPECT_EQ(dlgImagePlay::Instance(), nullptr);
    EXPECT_EQ(top(), "page");
    EXPECT_EQ(savers(), QStringList({"unregister 5 0"}));
}

TEST_F(SlideShowOnScreen, ThePictureChangesEveryThreeSecondsAndGoesRound)
{
    putPictures(3);
    start(PlayImageFile);
    kit::stepTime(2999);
    EXPECT_TRUE(isAt(0));
    kit::stepTime(1);
    EXPECT_TRUE(isAt(1));
    kit::stepTime(3000);
    EXPECT_TRUE(isAt(2));
    kit::stepTime(3000);
    EXPECT_TRUE(isAt(0));
}

TEST_F(SlideShowOnScreen, RightAndLeftMoveAndBeginTheTimeAnew)
{
    putPictures(3);
    start(PlayImageFile);
    kit::stepTime(2000);
    kit::key(Qt::Key_Right);
    EXPECT_TRUE(isAt(1));
    kit::stepTime(2999);
    EXPECT_TRUE(isAt(1));
    kit::stepTime(1);
    EXPECT_TRUE(isAt(2));
    kit::stepTime(2000);
    kit::key(Qt::Key_Left);
    EXPECT_TRUE(isAt(1));
    kit::stepTime(2999);
    EXPECT_TRUE(isAt(1));
    kit::key(Qt::Key_Left);
    kit::key(Qt::Key_Left);
    EXPECT_TRUE(isAt(2)) << "from the first to the last";
}

TEST_F(SlideShowOnScreen, OkPausesAndGoesOnAndAPauseOutlastsTheArrows)
{
    putPictures(3);
    start(PlayImageFile);
    kit::key(Qt::Key_Return);
    kit::stepTime(10000);
    EXPECT_TRUE(isAt(0));
    kit::key(Qt::Key_Right);
    EXPECT_TRUE(isAt(1));
    kit::stepTime(10000);
    EXPECT_TRUE(isAt(1));
    kit::key(Qt::Key_Enter);
    kit::stepTime(3000);
    EXPECT_TRUE(isAt(2));
}

TEST_F(SlideShowOnScreen, WithOneFileNoTimerRunsAndOkIsIgnored)
{
    putPictures(1);
    start(PlayImageFile);
    EXPECT_FALSE(dlgImagePlay::Instance()->IsAutoPlaying());
    kit::key(Qt::Key_Return);
    EXPECT_FALSE(dlgImagePlay::Instance()->IsAutoPlaying());
    EXPECT_EQ(top(), "dlgImagePlay");
}

TEST_F(SlideShowOnScreen, WithoutFilesItSaysSoForThreeSecondsAndDoesNotOpen)
{
    putTable("image", "ImageView", "*.png");
    kit::BoxAnswers box({"keep"});
    QTimer::singleShot(0, &page, [] { kit::stepTime(3000); });
    EXPECT_EQ(PlayImageFile(), 1);
    EXPECT_EQ(box.titles(), QStringList({"Error"}));
    EXPECT_EQ(box.texts(), QStringList({"No media found in this phone !"}));
    EXPECT_EQ(top(), "page");
    kit::settle();
    EXPECT_EQ(dlgImagePlay::Instance(), nullptr);
    EXPECT_EQ(savers(), QStringList({"register 5 0", "unregister 5 0"}));
}

TEST_F(SlideShowOnScreen, AskedForAgainWhileTheUserIsToldThatThereIsNothingItTellsHimAgain)
{
    putTable("image", "ImageView", "*.png");
    const kit::RunningClocks clocks; // boxes are answered by a timer
    kit::BoxAnswers box({"keep", "ok"});
    QTimer::singleShot(100, &page, [] {
        PlayImageFile();
        kit::settle();
        kit::key(Qt::Key_Return);
    });
    EXPECT_EQ(PlayImageFile(), 1);
    kit::settle();
    EXPECT_GE(box.texts().size(), 2);
    EXPECT_EQ(top(), "page");
    EXPECT_EQ(dlgImagePlay::Instance(), nullptr);
}

TEST_F(SlideShowOnScreen, KeysEndItButF12AndF4EndsItWhenItIsReleased)
{
    putPictures(2);
    start(PlayImageFile);
    kit::key(Qt::Key_F12);
    EXPECT_EQ(top(), "dlgImagePlay");
    kit::keyPress(Qt::Key_F4);
    EXPECT_EQ(top(), "dlgImagePlay");
    kit::keyRelease(Qt::Key_F4);
    EXPECT_EQ(top(), "page");
    start(PlayImageFile);
    kit::keyPress(Qt::Key_5);
    EXPECT_EQ(top(), "page");
    kit::keyRelease(Qt::Key_5);
}

TEST_F(SlideShowOnScreen, TheReleaseOfTheKeyThatOpenedItDoesNotEndIt)
{
    putPictures(2);
    start(PlayImageFile);
    kit::keyRelease(Qt::Key_F4);
    EXPECT_EQ(top(), "dlgImagePlay");
}

TEST_F(SlideShowOnScreen, AKeyThatIsHeldComesUpOnce)
{
    putPictures(2);
    start(PlayImageFile);
    kit::keyPress(Qt::Key_F4);
    QKeyEvent repeated(QEvent::KeyRelease, Qt::Key_F4, Qt::NoModifier, QString(), true);
    QCoreApplication::sendEvent(dlgImagePlay::Instance(), &repeated);
    EXPECT_EQ(top(), "dlgImagePlay");
    kit::keyRelease(Qt::Key_F4);
    EXPECT_EQ(top(), "page");
}

TEST_F(SlideShowOnScreen, EndsWhenAnythingElseComesUp)
{
    putPictures(2);
    start(PlayImageFile);
    QWidget call;
    call.setObjectName("call");
    screenBringUp(&call);
    EXPECT_EQ(top(), "call");
    EXPECT_EQ(dlgImagePlay::Instance(), nullptr);
}

TEST_F(SlideShowOnScreen, AnotherTakesThePlaceOfTheOneBefore)
{
    putPictures(2);
    start(PlayImageFile);
    QPointer<dlgImagePlay> first = dlgImagePlay::Instance();
    start(PlayImageFile);
    kit::settle();
    EXPECT_TRUE(first.isNull());
    ASSERT_NE(dlgImagePlay::Instance(), nullptr);
    EXPECT_EQ(kit::windows().size(), 2);
}

TEST_F(SlideShowOnScreen, APulledDiskEndsItAndOneThatComesDoesNot)
{
    putPictures(2);
    plug(STORAGE_USB, "a");
    start(PlayImageFile);
    plug(STORAGE_SD, "b");
    EXPECT_EQ(top(), "dlgImagePlay");
    unplug("a");
    EXPECT_EQ(top(), "page");
    unplug("b");
}

TEST_F(SlideShowOnScreen, DuringAnUpdateShowsAreRefusedAndSaversAreNot)
{
    putPictures(1);
    CAutoUpgrade::GetInstance()->SetUpgrading(1);
    EXPECT_EQ(PlayImageFile(), 0);
    EXPECT_EQ(PlayVideoFile(), 0);
    EXPECT_EQ(top(), "page");
    EXPECT_TRUE(savers().isEmpty());
    start(StartScreenSaver_ImageView);
    EXPECT_EQ(top(), "dlgImageScreen");
}

class PictureSaver : public FullScreen
{
};

TEST_F(PictureSaver, ShowsPictureAfterPictureAndHoldsNothingOff)
{
    putPictures(2);
    start(StartScreenSaver_ImageView);
    EXPECT_EQ(top(), "dlgImageScreen");
    EXPECT_TRUE(isAt(0));
    kit::stepTime(3000);
    EXPECT_TRUE(isAt(1));
    EXPECT_TRUE(savers().isEmpty());
    StopScreenSaver_ImageView();
    EXPECT_EQ(top(), "page");
    EXPECT_EQ(dlgImageScreen::Instance(), nullptr);
}

TEST_F(PictureSaver, WithoutFilesItEndsInSilence)
{
    putTable("image", "ImageView", "*.png");
    start(StartScreenSaver_ImageView);
    EXPECT_EQ(top(), "page");
    kit::settle();
    EXPECT_EQ(dlgImageScreen::Instance(), nullptr);
}

TEST_F(PictureSaver, ATouchEndsItWhenItLiftsAndPressesNothingBelow)
{
    putPictures(1);
    start(StartScreenSaver_ImageView);
    kit::press(QPoint(400, 200));
    EXPECT_EQ(top(), "dlgImageScreen");
    kit::release(QPoint(400, 200));
    EXPECT_EQ(top(), "page");
    EXPECT_EQ(pressed, 0);
}

TEST_F(PictureSaver, AnyKeyEndsItButF12)
{
    putPictures(1);
    start(StartScreenSaver_ImageView);
    kit::key(Qt::Key_F12);
    EXPECT_EQ(top(), "dlgImageScreen");
    kit::keyPress(Qt::Key_F4);
    EXPECT_EQ(top(), "page");
    kit::keyRelease(Qt::Key_F4);
}

TEST_F(PictureSaver, EndingAllPicturesEndsItAndAShow)
{
    putPictures(1);
    start(StartScreenSaver_ImageView);
    Stop_ImageView();
    EXPECT_EQ(top(), "page");
    EXPECT_EQ(dlgImageScreen::Instance(), nullptr);
    start(PlayImageFile);
    Stop_ImageView();
    EXPECT_EQ(top(), "page");
    EXPECT_EQ(dlgImagePlay::Instance(), nullptr);
}

class BlackScreen : public FullScreen
{
};

TEST_F(BlackScreen, IsBlackAndThereIsOne)
{
    EXPECT_EQ(OpenScreenSleepDlg(), 1);
    QPointer<dlgScreenSleep> first = dlgScreenSleep::Instance();
    EXPECT_EQ(OpenScreenSleepDlg(), 1);
    EXPECT_EQ(top(), "dlgScreenSleep");
    EXPECT_TRUE(first.isNull());
    const QImage screen = kit::screen();
    for (const QPoint& point : {QPoint(0, 0), QPoint(400, 240), QPoint(799, 479)})
        EXPECT_EQ(screen.pixel(point), 0xff000000u);
    CloseScreenSleepDlg();
    EXPECT_EQ(top(), "page");
    EXPECT_EQ(dlgScreenSleep::Instance(), nullptr);
}

TEST_F(BlackScreen, ATouchEndsItAndItsTraceNamesTheOther)
{
    start(OpenScreenSleepDlg);
    kit::press(QPoint(400, 200));
    EXPECT_EQ(top(), "dlgScreenSleep");
    kit::release(QPoint(400, 200));
    EXPECT_EQ(top(), "page");
    EXPECT_EQ(pressed, 0);
    EXPECT_TRUE(isTraced("dlgVideoScreen::mousePressEvent"));
}

TEST_F(BlackScreen, AnyKeyEndsItButF12)
{
    start(OpenScreenSleepDlg);
    kit::key(Qt::Key_F12);
    EXPECT_EQ(top(), "dlgScreenSleep");
    kit::key(Qt::Key_1);
    EXPECT_EQ(top(), "page");
}

class Films : public FullScreen
{
protected:
    Films()
    {
        EXPECT_EQ(messageServiceStart("app_hxPhone"), 1);
        dev_set_output_volume(30);
        dev_set_output_mute(1);
        movie = std::make_unique<FakePlayer>("app_hxMovie");
        media = std::make_unique<FakePlayer>("app_hxMedia");
    }
    ~Films() override
    {
        Stop_VideoView();
        kit::settle();
        messageServiceStop();
    }
    // What the movie player hears next.
    QList<unsigned> heard(int count)
    {
        EXPECT_TRUE(movie->hears(count));
        const QList<unsigned> all = movie->messages();
        movie->forget();
        return all;
    }
    void expectTornDown()
    {
        kit::settle();
        EXPECT_TRUE(media->hears(1));
        EXPECT_EQ(media->messages(), QList<unsigned>({kSessionStop})) << "once";
        EXPECT_EQ(dev_get_output_volume(), 30);
        EXPECT_EQ(dev_get_output_mute(), 0);
    }

    std::unique_ptr<FakePlayer> movie;
    std::unique_ptr<FakePlayer> media;
};

const QList<unsigned> kPlayOne = {0x11000A, 0x110009, 0x110003};

TEST_F(Films, APreviewPlaysTheFileAndThereIsOne)
{
    EXPECT_EQ(PreviewVideoFile("/rundata/media/video/a.mp4"), 1);
    EXPECT_EQ(top(), "dlgVideoPreview");
    EXPECT_TRUE(isTraced("----[/rundata/media/video/a.mp4]---"));
    EXPECT_FALSE(isTraced("preview file is in usb or sdCard"));
    EXPECT_EQ(dev_get_output_mute(), 0);
    EXPECT_EQ(savers(), QStringList({"register 5 0"}));
    EXPECT_EQ(heard(3), kPlayOne);
    QPointer<dlgVideoPreview> first = dlgVideoPreview::Instance();
    start(PreviewVideoFile, "/rundata/media/video/b.mp4");
    kit::settle();
    EXPECT_TRUE(first.isNull());
    EXPECT_EQ(kit::windows().size(), 2);
}

TEST_F(Films, KeysOfThePreviewPauseAndSetTheVolume)
{
    start(PreviewVideoFile, "/rundata/a.mp4");
    heard(3);
    kit::key(Qt::Key_Return);
    EXPECT_EQ(heard(1), QList<unsigned>({kPause}));
    kit::key(Qt::Key_Return);
    EXPECT_EQ(heard(1), QList<unsigned>({kResume}));
    EXPECT_EQ(dev_get_output_volume(), 50) << "what the player claims";
    kit::key(Qt::Key_Up);
    EXPECT_EQ(dev_get_output_volume(), 60);
    kit::key(Qt::Key_Down);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(dev_get_output_volume(), 40);
    kit::key(Qt::Key_F7);
    EXPECT_EQ(dev_get_output_mute(), 1);
    kit::key(Qt::Key_F7);
    EXPECT_EQ(dev_get_output_mute(), 0);
    kit::key(Qt::Key_F12);
    EXPECT_EQ(top(), "dlgVideoPreview");
}

TEST_F(Films, TheVolumeStaysWithinItsRange)
{
    start(PreviewVideoFile, "/rundata/a.mp4");
    for (int i = 0; i < 12; ++i)
        kit::key(Qt::Key_Up);
    EXPECT_EQ(dev_get_output_volume(), 100);
    for (int i = 0; i < 12; ++i)
        kit::key(Qt::Key_Down);
    EXPECT_EQ(dev_get_output_volume(), 0);
}

TEST_F(Films, AnyOtherKeyEndsThePreviewWhenItIsReleasedAndGivesTheSurfaceUp)
{
    start(PreviewVideoFile, "/rundata/a.mp4");
    kit::key(Qt::Key_Up);
    kit::keyRelease(Qt::Key_F1);
    EXPECT_EQ(top(), "dlgVideoPreview") << "it was pressed before";
    kit::keyPress(Qt::Key_F4);
    EXPECT_EQ(top(), "dlgVideoPreview");
    kit::keyRelease(Qt::Key_F4);
    EXPECT_EQ(top(), "page");
    expectTornDown();
    EXPECT_EQ(savers(), QStringList({"register 5 0", "unregister 5 0"}));
}

TEST_F(Films, APulledDiskEndsThePreviewOfItsOwnFilmOnly)
{
    plug(STORAGE_USB, "a");
    plug(STORAGE_USB, "b");
    start(PreviewVideoFile, "/rundata/a.mp4");
    unplug("a");
    EXPECT_EQ(top(), "dlgVideoPreview");
    for (STORAGE_TYPE type : {STORAGE_USB, STORAGE_SD}) {
        const QString file = plug(type, "a") + "/a.mp4";
        mark();
        start(PreviewVideoFile, file.toUtf8());
        EXPECT_TRUE(isTraced("preview file is in usb or sdCard"));
        unplug("a");
        EXPECT_EQ(top(), "page") << qPrintable(file);
    }
    unplug("b");
}

TEST_F(Films, APulledDiskLeavesTheFilmOfThePhonePlaying)
{
    plug(STORAGE_USB, "a");
    start(PreviewVideoFile, "/rundata/a.mp4");
    EXPECT_EQ(heard(3), kPlayOne);
    unplug("a");
    EXPECT_EQ(dev_get_output_volume(), 50) << "the film's own";
    kit::key(Qt::Key_Return);
    EXPECT_TRUE(media->messages().isEmpty());
    kit::key(Qt::Key_F4);
    EXPECT_EQ(top(), "page");
    EXPECT_EQ(heard(2), QList<unsigned>({kPause, kStop})) << "what the keys did, and nothing before";
    expectTornDown();
}

TEST_F(Films, TheListPlaysAndArrowsMoveInIt)
{
    putFilms(2);
    EXPECT_EQ(PlayVideoFile(), 1);
    EXPECT_EQ(top(), "dlgVideoPlay");
    EXPECT_EQ(savers(), QStringList({"register 5 0"}));
    EXPECT_EQ(heard(4), QList<unsigned>({0x11000A, 0x110009, 0x110009, 0x110003}));
    kit::key(Qt::Key_Right);
    EXPECT_EQ(heard(1), QList<unsigned>({kNext}));
    kit::key(Qt::Key_Left);
    EXPECT_EQ(heard(1), QList<unsigned>({kPrevious}));
    kit::key(Qt::Key_Return);
    EXPECT_EQ(heard(1), QList<unsigned>({kPause}));
    kit::key(Qt::Key_Up);
    EXPECT_EQ(dev_get_output_volume(), 60);
    kit::key(Qt::Key_F7);
    EXPECT_EQ(dev_get_output_mute(), 1);
    kit::key(Qt::Key_F12);
    EXPECT_EQ(top(), "dlgVideoPlay");
}

TEST_F(Films, TheListEndsWithF4WhenItIsReleasedAndWithAnyOtherKeyAtOnce)
{
    putFilms(1);
    start(PlayVideoFile);
    kit::keyPress(Qt::Key_F4);
    EXPECT_EQ(top(), "dlgVideoPlay");
    kit::keyRelease(Qt::Key_F4);
    EXPECT_EQ(top(), "page");
    expectTornDown();
    start(PlayVideoFile);
    kit::keyPress(Qt::Key_5);
    EXPECT_EQ(top(), "page");
    kit::keyRelease(Qt::Key_5);
}

TEST_F(Films, AnotherListTakesThePlaceOfTheOneBefore)
{
    putFilms(1);
    start(PlayVideoFile);
    QPointer<dlgVideoPlay> first = dlgVideoPlay::Instance();
    start(PlayVideoFile);
    EXPECT_TRUE(first.isNull());
    EXPECT_EQ(kit::windows().size(), 2);
    EXPECT_EQ(top(), "dlgVideoPlay");
}

TEST_F(Films, APulledDiskEndsTheList)
{
    putFilms(1);
    plug(STORAGE_USB, "a");
    start(PlayVideoFile);
    unplug("a");
    EXPECT_EQ(top(), "page");
    expectTornDown();
    EXPECT_EQ(dlgVideoPlay::Instance(), nullptr);
}

TEST_F(Films, WithoutFilmsTheListSaysSoAndTheSaverDoesNot)
{
    putTable("video", "VideoView", "*.mp4");
    const kit::RunningClocks clocks; // the box is answered by a timer
    kit::BoxAnswers box({"ok"});
    EXPECT_EQ(PlayVideoFile(), 1);
    EXPECT_EQ(box.texts(), QStringList({"No media found in this phone !"}));
    EXPECT_EQ(top(), "page");
    start(StartScreenSaver_VideoView);
    EXPECT_EQ(box.texts().size(), 1);
    EXPECT_EQ(top(), "page");
    kit::settle();
    EXPECT_EQ(dlgVideoPlay::Instance(), nullptr);
    EXPECT_EQ(dlgVideoScreen::Instance(), nullptr);
}

TEST_F(Films, TheSaverIsMuteUnlessSetOtherwiseAndSilencesTheRing)
{
    putFilms(1);
    writeFile("/rundata/config/user/user.ini", "[ScreenSaver]\n");
    dev_set_output_mute(0);
    mark();
    start(StartScreenSaver_VideoView);
    EXPECT_EQ(logged("ring"), QStringList({"stop"}));
    EXPECT_EQ(dev_get_output_mute(), 1);
    EXPECT_TRUE(savers().isEmpty());
    EXPECT_EQ(top(), "dlgVideoScreen");
    EXPECT_EQ(heard(3), kPlayOne);
    StopScreenSaver_VideoView();
    EXPECT_EQ(top(), "page");
    expectTornDown();
    EXPECT_EQ(nuxSetRegistryInt("/rundata/config/user/user.ini", "ScreenSaver", "bScreenSaverMute", 0), 1);
    start(StartScreenSaver_VideoView);
    EXPECT_EQ(dev_get_output_mute(), 0);
}

TEST_F(Films, AnUpdateDoesNotHoldTheSaverOff)
{
    putFilms(1);
    CAutoUpgrade::GetInstance()->SetUpgrading(1);
    start(StartScreenSaver_VideoView);
    EXPECT_EQ(top(), "dlgVideoScreen");
    EXPECT_EQ(heard(3), kPlayOne);
}

TEST_F(Films, ATouchOrAKeyEndsTheSaver)
{
    putFilms(1);
    start(StartScreenSaver_VideoView);
    kit::key(Qt::Key_F12);
    EXPECT_EQ(top(), "dlgVideoScreen");
    kit::press(QPoint(400, 200));
    EXPECT_EQ(top(), "dlgVideoScreen");
    kit::release(QPoint(400, 200));
    EXPECT_EQ(top(), "page");
    EXPECT_EQ(pressed, 0);
    EXPECT_TRUE(isTraced("dlgVideoScreen::mousePressEvent"));
    expectTornDown();
    start(StartScreenSaver_VideoView);
    kit::keyPress(Qt::Key_F4);
    EXPECT_EQ(top(), "page");
    kit::keyRelease(Qt::Key_F4);
}

TEST_F(Films, EndingAllFilmsLeavesNoPlayer)
{
    putFilms(1);
    start(PreviewVideoFile, "/rundata/a.mp4");
    start(PlayVideoFile);
    start(StartScreenSaver_VideoView);
    Stop_VideoView();
    EXPECT_EQ(top(), "page");
    kit::settle();
    EXPECT_EQ(kit::windows().size(), 1);
    EXPECT_EQ(dlgVideoPreview::Instance(), nullptr);
}

} // namespace
