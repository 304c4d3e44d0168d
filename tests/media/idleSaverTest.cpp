// A phone that nobody uses: when its savers come, what keeps them off, and what ends them.
#include "host/services/messages/messageBus.h"
#include "media/dlgImageScreen.h"
#include "support/host/box.h"
#include "support/host/player.h"
#include "tests/kit/eventCounter.h"
#include "tests/kit/heldPictures.h"
#include "tests/kit/plain/pictureFiles.h"
#include "tests/media/fakePlayer.h"
#include "tests/media/idleSaverStand.h"
#include <QFile>
#include <QTimer>
#include <memory>

TEST_F(IdleSaver, PicturesComeAfterTheTimeWithoutATouchOrKey)
{
    kit::stepTime(59900);
    EXPECT_EQ(top(), "frmDesktop");
    kit::stepTime(100);
    EXPECT_EQ(top(), "dlgImageScreen");
    EXPECT_TRUE(isAt(0));
    kit::stepTime(3000);
    EXPECT_TRUE(isAt(1));
    EXPECT_FALSE(isDark());
}

TEST_F(IdleSaver, ATouchAndAKeyBeginTheTimeAnew)
{
    kit::stepTime(59000);
    touch();
    kit::stepTime(59000);
    kit::key(Qt::Key_Right);
    kit::stepTime(59000);
    EXPECT_EQ(top(), "frmDesktop");
    kit::stepTime(1000);
    EXPECT_EQ(top(), "dlgImageScreen");
}

TEST_F(IdleSaver, NeverComesWithoutATime)
{
    for (const char* value : {"0", "", "-5", "soon"}) {
        EXPECT_EQ(nuxSetRegistryString(kUserIni, "ScreenSaver", "nTimeout", value), 1);
        touch();
        kit::stepTime(200 * 1000);
        EXPECT_EQ(top(), "frmDesktop") << value;
    }
    writeFile(kUserIni, "[Theme]\n");
    EXPECT_TRUE(
        kit::waitUntil([] { return nuxGetRegistryInt(kUserIni, "ScreenSaver", "nTimeout", 7) == 7; }));
    touch();
    kit::stepTime(200 * 1000);
    EXPECT_EQ(top(), "frmDesktop");
}

TEST_F(IdleSaver, ATouchEndsItAndPressesNothingBelow)
{
    for (int time = 0; time < 3; ++time) {
        kit::stepTime(60000);
        ASSERT_EQ(top(), "dlgImageScreen") << time;
        kit::press(kTile);
        EXPECT_EQ(top(), "dlgImageScreen") << "until the finger lifts";
        kit::release(kTile);
        EXPECT_EQ(top(), "frmDesktop");
        EXPECT_EQ(s_nOpened, 0);
    }
    kit::tap(kTile);
    EXPECT_EQ(s_nOpened, 1) << "the next one does";
}

TEST_F(IdleSaver, AKeyEndsItAndWhileItIsHeldDoesNothingElse)
{
    TypedPage page;
    kit::stepTime(60000);
    ASSERT_EQ(top(), "dlgImageScreen");
    kit::keyPress(Qt::Key_A, {}, "a");
    EXPECT_EQ(top(), "page");
    for (int i = 0; i < 3; ++i) {
        keyAgain(QEvent::KeyRelease, Qt::Key_A, "a");
        keyAgain(QEvent::KeyPress, Qt::Key_A, "a");
    }
    kit::keyRelease(Qt::Key_A, {}, "a");
    EXPECT_EQ(page.edit.text(), "");
    kit::type("b");
    keyAgain(QEvent::KeyPress, Qt::Key_Left);
    EXPECT_EQ(page.edit.text(), "b");
    EXPECT_EQ(page.edit.cursorPosition(), 0) << "another key repeats itself as always";
}

TEST_F(IdleSaver, ComesOverAPageWhichIsAsItWasAfterwards)
{
    TypedPage page;
    kit::type("typed");
    kit::stepTime(60000);
    ASSERT_EQ(top(), "dlgImageScreen");
    kit::tap(page.edit.geometry().center());
    EXPECT_EQ(top(), "page");
    EXPECT_EQ(page.edit.text(), "typed");
    EXPECT_TRUE(page.edit.hasFocus());
}

TEST_F(IdleSaver, NeverComesOverABoxAndDoesOnceItIsAnswered)
{
    QString during;
    QTimer::singleShot(0, home, [&] {
        kit::stepTime(120000);
        during = kit::windows().first()->metaObject()->className();
        kit::key(Qt::Key_Return);
        screenState::instance().setIdle(120000);
    });
    EXPECT_NE(xMessageBox("Note", "Delete?", BOX_QUESTION, home, -1), 0) << "not answered by the saver";
    EXPECT_EQ(during, "dlgMessageBox");
    kit::stepTime(5000);
    EXPECT_EQ(top(), "dlgImageScreen");
}

TEST_F(IdleSaver, NeverComesDuringACallAndLeavesWhoHungUpHisTime)
{
    ring();
    answer();
    EXPECT_EQ(top(), "frmCall");
    kit::stepTime(300000);
    EXPECT_EQ(top(), "frmCall");
    hangUpAll();
    kit::stepTime(3000);
    EXPECT_EQ(top(), "frmDesktop");
    kit::stepTime(56000);
    EXPECT_EQ(top(), "frmDesktop");
    kit::stepTime(4000);
    EXPECT_EQ(top(), "dlgImageScreen");
}

TEST_F(IdleSaver, NeverComesWhileAPlayerIsOpenAndTheTimeBeginsWithItsEnd)
{
    PlayImageFile();
    EXPECT_EQ(top(), "dlgImagePlay");
    EXPECT_EQ(logged("saver"), QStringList({"register 5 0"}));
    setTimes(60, 120);
    kit::stepTime(600000);
    EXPECT_EQ(top(), "dlgImagePlay");
    EXPECT_FALSE(isDark());
    StopImagePlay();
    kit::settle();
    kit::stepTime(59000);
    EXPECT_EQ(top(), "frmDesktop");
    kit::stepTime(1000);
    EXPECT_EQ(top(), "dlgImageScreen");
}

TEST_F(IdleSaver, ComesDuringAnUpdateToo)
{
    setTimes(60, 90);
    CAutoUpgrade::GetInstance()->SetUpgrading(1);
    kit::stepTime(60000);
    EXPECT_EQ(top(), "dlgImageScreen");
    kit::stepTime(30000);
    EXPECT_TRUE(isDark());
    CAutoUpgrade::GetInstance()->SetUpgrading(0);
}

TEST_F(IdleSaver, NeverComesOverAnImportWhichMayGoOnInTheDark)
{
    setTimes(60, 0);
    NamedPage page("dlgMediaImport");
    kit::stepTime(300000);
    EXPECT_EQ(top(), "named");
    setTimes(60, 120);
    kit::stepTime(120000);
    EXPECT_TRUE(isDark());
}

TEST_F(IdleSaver, NeverComesOverACalibrationWhichIsSeen)
{
    setTimes(60, 120);
    NamedPage page("dlgCalibration");
    kit::stepTime(300000);
    EXPECT_EQ(top(), "named");
    EXPECT_FALSE(isDark());
    page.hide();
    kit::stepTime(idleSaver::RETRY_MS);
    EXPECT_TRUE(isDark());
}

TEST_F(IdleSaver, NeverComesWhileThePhoneStarts)
{
    home->m_pLoading = new frmLoading;
    home->m_pLoading->show();
    kit::stepTime(120000);
    EXPECT_EQ(saver->state(), idleSaver::AWAKE);
    home->FinishLoading();
    kit::stepTime(idleSaver::RETRY_MS);
    EXPECT_EQ(top(), "dlgImageScreen");
}

TEST_F(IdleSaver, NeverComesUnderAFingerThatRests)
{
    kit::press(QPoint(495, 165));
    kit::stepTime(120000);
    EXPECT_EQ(top(), "frmDesktop");
    kit::release(QPoint(495, 165));
    kit::stepTime(60000);
    EXPECT_EQ(top(), "dlgImageScreen");
}

TEST_F(IdleSaver, WhereSignageIsEnabledItIsTheSaver)
{
    displayClient::instance().start();
    kit::stepTime(60000);
    ASSERT_EQ(top(), "dlgImageScreen");
    nuxSetRegistryInt("/rundata/config/system.ini", "nDeck", "bEnable", 1);
    {
        const kit::RunningClocks clocks;
        EXPECT_TRUE(kit::waitUntil([] { return displayClient::instance().isEnabled(); }));
    }
    EXPECT_EQ(top(), "frmDesktop") << "what plays ends";
    kit::stepTime(600000);
    EXPECT_EQ(top(), "frmDesktop");
    setTimes(60, 60);
    kit::stepTime(60000);
    EXPECT_EQ(top(), "dlgScreenSleep") << "dark it gets all the same";
}

TEST_F(IdleSaver, ChangedSettingsCountAtOnce)
{
    setTimes(600, 0);
    set("ScreenSaver", "nTimeout", 30);
    kit::stepTime(10000);
    tellSettings();
    kit::stepTime(19900);
    EXPECT_EQ(top(), "frmDesktop");
    kit::stepTime(100);
    EXPECT_EQ(top(), "dlgImageScreen");
    set("ScreenSaver", "nTimeout", 0);
    tellSettings();
    EXPECT_EQ(top(), "frmDesktop") << "and end what plays";
    set("Sleep", "nTimeout", 20);
    tellSettings();
    kit::stepTime(10);
    EXPECT_TRUE(isDark()) << "it is due";
    set("Sleep", "nTimeout", 0);
    tellSettings();
    EXPECT_FALSE(isDark());
    EXPECT_EQ(top(), "frmDesktop");
}

TEST_F(IdleSaver, OtherBroadcastsChangeNothing)
{
    setTimes(600, 0);
    set("ScreenSaver", "nTimeout", 30);
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_SOUND, 0);
    kit::settle();
    kit::stepTime(40000);
    EXPECT_EQ(top(), "frmDesktop");
}

TEST_F(IdleSaver, AnythingThatComesUpEndsIt)
{
    kit::stepTime(60000);
    ASSERT_EQ(saver->state(), idleSaver::SAVER);
    TypedPage page;
    EXPECT_EQ(top(), "page");
    EXPECT_EQ(saver->state(), idleSaver::AWAKE);
    EXPECT_EQ(dlgImageScreen::Instance(), nullptr);
    kit::stepTime(59900);
    EXPECT_EQ(top(), "page") << "it is to be seen for a while";
    kit::stepTime(100);
    EXPECT_EQ(top(), "dlgImageScreen");
}

TEST_F(IdleSaver, ACallEndsItAndGetsTheScreen)
{
    kit::stepTime(60000);
    ASSERT_EQ(top(), "dlgImageScreen");
    ring();
    EXPECT_EQ(top(), "frmCall");
    EXPECT_EQ(dlgImageScreen::Instance(), nullptr);
    EXPECT_TRUE(kit::windows().first()->isActiveWindow());
}

TEST_F(IdleSaver, WithoutPicturesNothingComesUntilThereAreSome)
{
    for (const char* file : {"/rundata/media/image/0.png", "/rundata/media/image/1.png"})
        QFile::remove(hostPath(file));
    setTimes(60, 3600);
    EventCounter timers(QEvent::Timer);
    qApp->installEventFilter(&timers);
    kit::stepTime(50000);
    const int before = timers.count;
    kit::stepTime(50000);
    qApp->removeEventFilter(&timers);
    EXPECT_LT(timers.count, 3 * before) << "it does not try all the time";
    kit::stepTime(50000);
    EXPECT_EQ(top(), "frmDesktop");
    EXPECT_EQ(saver->state(), idleSaver::AWAKE);
    putPictures(1);
    kit::stepTime(29900);
    EXPECT_EQ(top(), "frmDesktop") << "it tries again a minute after the last time";
    kit::stepTime(100);
    EXPECT_EQ(top(), "dlgImageScreen");
    EXPECT_TRUE(isAt(0));
    touch();
    QFile::remove(hostPath("/rundata/media/image/0.png"));
    kit::stepTime(60000);
    ASSERT_EQ(top(), "frmDesktop");
    touch();
    putPictures(1);
    kit::stepTime(60000);
    EXPECT_EQ(top(), "dlgImageScreen") << "whoever was there meanwhile waits no longer than always";
}

TEST_F(IdleSaver, WithoutPicturesItGetsDarkAllTheSame)
{
    writeFile("/phone/resource/screenview.xml", "");
    setTimes(60, 90);
    kit::stepTime(90000);
    EXPECT_TRUE(isDark());
}

TEST_F(IdleSaver, ADamagedPictureIsPassedOverInBlack)
{
    writeFile("/rundata/media/image/0.png", "\x89PNG\r\n\x1a\nno picture");
    kit::stepTime(60000);
    ASSERT_EQ(top(), "dlgImageScreen");
    EXPECT_TRUE(isBlack());
    kit::stepTime(3000);
    EXPECT_TRUE(isAt(1));
    kit::stepTime(3000);
    EXPECT_TRUE(isAt(1)) << "the one before it stays";
}

TEST_F(IdleSaver, WhenNoPictureCanBeShownItEndsAndTriesAgainAMinuteLater)
{
    for (const char* file : {"/rundata/media/image/0.png", "/rundata/media/image/1.png"})
        writeFile(file, "\x89PNG\r\n\x1a\nno picture");
    kit::stepTime(60000);
    ASSERT_EQ(top(), "dlgImageScreen") << "the second one may be better";
    kit::stepTime(3000);
    EXPECT_EQ(top(), "frmDesktop");
    EXPECT_EQ(saver->state(), idleSaver::AWAKE);
    putPictures(2);
    kit::stepTime(59900);
    EXPECT_EQ(top(), "frmDesktop");
    kit::stepTime(100);
    EXPECT_TRUE(isAt(0));
}

TEST_F(IdleSaver, TheOnlyPictureThatTurnsOutToBeNoneEndsIt)
{
    writeFile("/rundata/media/image/0.png", kit::pngOfOneColour({4000, 3000}).left(5000));
    QFile::remove(hostPath("/rundata/media/image/1.png"));
    {
        const kit::HeldPictures pictures;
        kit::stepTime(60000);
        ASSERT_EQ(top(), "dlgImageScreen") << "it is read first";
    }
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 60000));
    EXPECT_EQ(top(), "frmDesktop");
    writeFile("/rundata/media/image/0.png", "no picture");
    kit::stepTime(60000);
    EXPECT_EQ(top(), "frmDesktop") << "which is known at once";
    putPictures(1);
    kit::stepTime(60000);
    EXPECT_TRUE(isAt(0));
}

TEST_F(IdleSaver, PicturesOfAStorageThatIsPulledGoAndTheOthersStay)
{
    plug(STORAGE_USB, "stick");
    ASSERT_TRUE(QFile::copy(hostPath("/rundata/media/image/1.png"), onDisk("stick", "2.png")));
    QFile::remove(hostPath("/rundata/media/image/1.png"));
    touch();
    kit::stepTime(60000);
    ASSERT_TRUE(isAt(0));
    kit::stepTime(3000);
    ASSERT_TRUE(isAt(1)) << "the one on the stick";
    unplug("stick");
    EXPECT_EQ(top(), "dlgImageScreen");
    EXPECT_TRUE(isAt(0));
    kit::stepTime(3000);
    EXPECT_TRUE(isAt(0));
}

TEST_F(IdleSaver, WhenAllPicturesWereOnTheStorageTheSaverEndsWithIt)
{
    plug(STORAGE_USB, "stick");
    for (const char* file : {"0.png", "1.png"})
        ASSERT_TRUE(QFile::rename(hostPath("/rundata/media/image/") + file, onDisk("stick", file)));
    touch();
    kit::stepTime(60000);
    ASSERT_TRUE(isAt(0));
    unplug("stick");
    EXPECT_EQ(top(), "frmDesktop");
    EXPECT_EQ(saver->state(), idleSaver::AWAKE);
    plug(STORAGE_USB, "stick");
    kit::stepTime(idleSaver::AGAIN_MS);
    EXPECT_TRUE(isAt(0)) << "and comes again with it";
}

class IdleFilms : public IdleSaver
{
protected:
    IdleFilms()
    {
        EXPECT_EQ(messageServiceStart("app_hxPhone"), 1);
        movie = std::make_unique<FakePlayer>("app_hxMovie");
        media = std::make_unique<FakePlayer>("app_hxMedia");
        set("ScreenSaver", "eType", 1);
        putFilms(2);
    }
    ~IdleFilms() override
    {
        Stop_VideoView();
        kit::settle();
        messageServiceStop();
    }
    bool movieHears(unsigned message)
    {
        const kit::RunningClocks clocks;
        return kit::waitUntil([&] { return movie->messages().contains(message); });
    }
    std::unique_ptr<FakePlayer> movie;
    std::unique_ptr<FakePlayer> media;
};

TEST_F(IdleFilms, FilmsAreTheSaverWhereTheyAreChosen)
{
    kit::stepTime(60000);
    EXPECT_EQ(top(), "dlgVideoScreen");
    EXPECT_TRUE(movieHears(MOVIE_MSG_PLAY_LIST));
    movie->forget();
    kit::tap(kTile);
    EXPECT_EQ(top(), "frmDesktop");
    EXPECT_EQ(s_nOpened, 0);
    EXPECT_TRUE(movieHears(MOVIE_MSG_STOP));
}

TEST_F(IdleFilms, ACallAndDarknessStopTheFilm)
{
    kit::stepTime(60000);
    ASSERT_EQ(top(), "dlgVideoScreen");
    ring();
    EXPECT_EQ(top(), "frmCall");
    EXPECT_TRUE(movieHears(MOVIE_MSG_STOP));
    hangUpAll();
    kit::stepTime(3000);
    setTimes(60, 70);
    movie->forget();
    kit::stepTime(60000);
    ASSERT_EQ(top(), "dlgVideoScreen");
    kit::stepTime(10000);
    EXPECT_EQ(top(), "dlgScreenSleep");
    EXPECT_TRUE(movieHears(MOVIE_MSG_STOP));
}

TEST_F(IdleFilms, WithoutAPlayerNothingComesUntilItIsThere)
{
    movie.reset();
    kit::stepTime(60000);
    EXPECT_EQ(top(), "frmDesktop");
    movie = std::make_unique<FakePlayer>("app_hxMovie");
    kit::stepTime(idleSaver::AGAIN_MS);
    EXPECT_EQ(top(), "dlgVideoScreen");
}

TEST_F(IdleFilms, AnotherKindThatIsSetWhileOnePlaysTakesItsPlace)
{
    kit::stepTime(60000);
    ASSERT_EQ(top(), "dlgVideoScreen");
    putPictures(1);
    set("ScreenSaver", "eType", 0);
    tellSettings();
    kit::stepTime(10);
    EXPECT_EQ(top(), "dlgImageScreen");
}
