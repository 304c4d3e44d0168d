// A phone that nobody uses: when its savers and its dark screen come, what keeps them off, and what ends
// them.
#include "host/desktop/idleSaver.h"
#include "host/desktop/displayClient.h"
#include "host/desktop/frmCall.h"
#include "host/screen/screenState.h"
#include "host/services/messages/messageBus.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "media/dlgImageScreen.h"
#include "media/mediaShows.h"
#include "support/host/box.h"
#include "support/host/desktop.h"
#include "support/host/module.h"
#include "support/host/phone.h"
#include "support/host/player.h"
#include "support/host/registry.h"
#include "support/host/screen.h"
#include "support/host/upgrade.h"
#include "tests/kit/kitTime.h"
#include "tests/media/fakePlayer.h"
#include "tests/media/showTest.h"
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTimer>
#include <qpa/qwindowsysteminterface.h>

namespace {

const char* const kUserIni = "/rundata/config/user/user.ini";
const QPoint kTile(80, 270); // of the home screen
int s_nOpened = 0;

tagModuleEntries entries()
{
    tagModuleEntries entries;
    entries.openPage = [](const chString&, QWidget*) { ++s_nOpened; };
    entries.openMenu = [](const chString&) { ++s_nOpened; };
    entries.startPhotoSaver = StartScreenSaver_ImageView;
    entries.stopPhotoSaver = StopScreenSaver_ImageView;
    entries.startFilmSaver = StartScreenSaver_VideoView;
    entries.stopFilmSaver = StopScreenSaver_VideoView;
    entries.openSleep = OpenScreenSleepDlg;
    entries.closeSleep = CloseScreenSleepDlg;
    entries.isDisplayEnabled = [] {
        return nuxGetRegistryInt("/rundata/config/system.ini", "nDeck", "bEnable", 0) == 1;
    };
    return entries;
}

// A page with something typed on it.
class Page : public QWidget
{
public:
    Page() : QWidget(nullptr, Qt::FramelessWindowHint), edit(this)
    {
        setObjectName("page");
        setGeometry(0, 0, 800, 480);
        edit.setGeometry(100, 100, 200, 36);
        screenBringUp(this);
        kit::settle();
        edit.setFocus();
        kit::settle();
    }
    QLineEdit edit;
};

// One of another room, for whoever asks for its class.
class NamedPage : public QWidget
{
public:
    explicit NamedPage(const char* name) : QWidget(nullptr, Qt::FramelessWindowHint), m_name(name)
    {
        setObjectName("named");
        setGeometry(0, 0, 800, 480);
        screenBringUp(this);
        kit::settle();
    }
    void* qt_metacast(const char* name) override
    {
        return m_name == name ? this : QWidget::qt_metacast(name);
    }

private:
    const QByteArray m_name;
};

class IdleSaver : public ShowTest
{
protected:
    explicit IdleSaver(bool hasCallScreen = true)
    {
        kit::holdClocks(true);
        hostSetModule(entries());
        phoneService::instance().backend();
        setTimes(60, 0);
        home = frmDesktop::GetInstance();
        if (hasCallScreen)
            callScreenInstall();
        home->FinishLoading();
        saver = home->findChild<idleSaver*>();
        putPictures(2);
        touch();
        mark();
    }
    ~IdleSaver() override
    {
        CAutoUpgrade::GetInstance()->SetUpgrading(0);
        hangUpAll();
        Stop_ImageView();
        Stop_VideoView();
        CloseScreenSleepDlg();
        for (QWidget* window : kit::windows())
            window->hide();
        kit::settle();
        hostSetModule(tagModuleEntries());
    }

    static void set(const char* section, const char* key, int value)
    {
        EXPECT_EQ(nuxSetRegistryInt(kUserIni, section, key, value), 1);
    }
    // Seconds; as when the phone has started with them.
    static void setTimes(int saver, int sleep)
    {
        set("ScreenSaver", "nTimeout", saver);
        set("Sleep", "nTimeout", sleep);
        screenState::instance().restartIdle();
    }
    static void touch()
    {
        kit::settle();
        kit::tap(QPoint(450, 210)); // where nothing is
        kit::settle();
    }
    static QString top()
    {
        kit::settle();
        return kit::windows().isEmpty() ? QString() : kit::windows().first()->objectName();
    }
    static void tellSettings()
    {
        msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_WALLPAPER, 0);
        kit::settle();
    }
    static void ring()
    {
        EXPECT_TRUE(phoneSimulation::instance()->ring("333", 0, "Anna"));
        kit::settle();
    }
    static void hangUpAll()
    {
        for (const tagCall& call : phoneService::instance().calls())
            phoneService::instance().hangUp(call.nId);
        kit::settle();
    }
    static bool isDark() { return !screenState::instance().isBacklightOn(); }
    static bool isBlack()
    {
        const QImage screen = kit::screen();
        return screen.pixel(5, 5) == 0xff000000u && screen.pixel(400, 240) == 0xff000000u;
    }
    // The finger of the window system: held down, or a key that repeats itself.
    static void keyAgain(QEvent::Type type, Qt::Key key)
    {
        QWindowSystemInterface::handleKeyEvent<QWindowSystemInterface::SynchronousDelivery>(
            QGuiApplication::focusWindow(), type, key, Qt::NoModifier, QString(), true);
        kit::settle();
    }

    frmDesktop* home = nullptr;
    idleSaver* saver = nullptr;
};

} // namespace

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
    Page page;
    kit::stepTime(60000);
    ASSERT_EQ(top(), "dlgImageScreen");
    kit::keyPress(Qt::Key_A, {}, "a");
    EXPECT_EQ(top(), "page");
    for (int i = 0; i < 3; ++i) {
        keyAgain(QEvent::KeyRelease, Qt::Key_A);
        keyAgain(QEvent::KeyPress, Qt::Key_A);
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
    Page page;
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

TEST_F(IdleSaver, NeverComesDuringAnUpdateAndSoonAfterIt)
{
    setTimes(60, 90);
    CAutoUpgrade::GetInstance()->SetUpgrading(1);
    kit::stepTime(300000);
    EXPECT_EQ(top(), "frmDesktop");
    EXPECT_FALSE(isDark());
    setTimes(60, 0);
    kit::stepTime(60000);
    CAutoUpgrade::GetInstance()->SetUpgrading(0);
    kit::stepTime(idleSaver::RETRY_MS);
    EXPECT_EQ(top(), "dlgImageScreen");
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
    kit::press(QPoint(450, 210));
    kit::stepTime(120000);
    EXPECT_EQ(top(), "frmDesktop");
    kit::release(QPoint(450, 210));
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
    Page page;
    EXPECT_EQ(top(), "page");
    EXPECT_EQ(saver->state(), idleSaver::AWAKE);
    EXPECT_EQ(dlgImageScreen::Instance(), nullptr);
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
    kit::stepTime(150000);
    EXPECT_EQ(top(), "frmDesktop");
    EXPECT_EQ(saver->state(), idleSaver::AWAKE);
    putPictures(1);
    kit::stepTime(idleSaver::AGAIN_MS);
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

TEST_F(IdleSaver, TheScreenGetsDarkAfterItsOwnTime)
{
    for (const char* light : {"lcd", "keys"})
        writeFile(QByteArray("/sys/class/backlight/") + light + "/bl_power", "0");
    setTimes(0, 120);
    kit::stepTime(119900);
    EXPECT_FALSE(isDark());
    kit::stepTime(100);
    EXPECT_TRUE(isDark());
    EXPECT_EQ(top(), "dlgScreenSleep");
    EXPECT_TRUE(isBlack());
    EXPECT_EQ(readFile("/sys/class/backlight/lcd/bl_power"), "4");
    EXPECT_EQ(readFile("/sys/class/backlight/keys/bl_power"), "4");
    kit::press(kTile);
    EXPECT_TRUE(isBlack());
    kit::release(kTile);
    EXPECT_FALSE(isDark());
    EXPECT_EQ(top(), "frmDesktop");
    EXPECT_EQ(s_nOpened, 0);
    EXPECT_EQ(readFile("/sys/class/backlight/lcd/bl_power"), "0");
    EXPECT_EQ(logged("backlight"), QStringList({"off", "on"}));
    kit::stepTime(120000);
    EXPECT_TRUE(isDark()) << "and again";
}

TEST_F(IdleSaver, AKeyWakesItAndDoesNothingElse)
{
    setTimes(0, 60);
    kit::stepTime(60000);
    ASSERT_TRUE(isDark());
    kit::key(Qt::Key_F12);
    EXPECT_TRUE(isDark());
    kit::key(Qt::Key_Return);
    EXPECT_FALSE(isDark());
    EXPECT_EQ(top(), "frmDesktop");
    EXPECT_EQ(s_nOpened, 0) << "no tile";
}

TEST_F(IdleSaver, ACallLightsItAndGetsTheScreen)
{
    setTimes(0, 60);
    kit::stepTime(60000);
    ASSERT_TRUE(isDark());
    ring();
    EXPECT_FALSE(isDark());
    EXPECT_EQ(top(), "frmCall");
    EXPECT_TRUE(kit::windows().first()->isActiveWindow());
    kit::stepTime(120000);
    EXPECT_FALSE(isDark()) << "as long as it lasts";
}

TEST_F(IdleSaver, APageThatComesUpLightsIt)
{
    setTimes(0, 60);
    kit::stepTime(60000);
    ASSERT_TRUE(isDark());
    Page page;
    EXPECT_FALSE(isDark());
    EXPECT_EQ(top(), "page");
    kit::type("x");
    EXPECT_EQ(page.edit.text(), "x");
}

TEST_F(IdleSaver, DarknessEndsASaverAndNoneComesInIt)
{
    setTimes(60, 90);
    kit::stepTime(60000);
    ASSERT_EQ(top(), "dlgImageScreen");
    kit::stepTime(30000);
    EXPECT_EQ(top(), "dlgScreenSleep");
    EXPECT_EQ(dlgImageScreen::Instance(), nullptr);
    kit::stepTime(600000);
    EXPECT_EQ(top(), "dlgScreenSleep");
    touch();
    EXPECT_EQ(top(), "frmDesktop") << "not the saver";
    setTimes(120, 60);
    kit::stepTime(600000);
    EXPECT_EQ(top(), "dlgScreenSleep");
}

TEST_F(IdleSaver, DarknessLiesUponABoxAndDoesNotAnswerIt)
{
    setTimes(0, 60);
    bool wasDark = false;
    QString after;
    QTimer::singleShot(0, home, [&] {
        kit::stepTime(60000);
        wasDark = isDark();
        kit::key(Qt::Key_Return);
        after = kit::windows().first()->metaObject()->className();
        kit::key(Qt::Key_Return);
    });
    EXPECT_NE(xMessageBox("Note", "Delete?", BOX_QUESTION, home, -1), 0);
    EXPECT_TRUE(wasDark);
    EXPECT_EQ(after, "dlgMessageBox");
    EXPECT_FALSE(isDark());
}

TEST_F(IdleSaver, ABoxThatComesUpLightsIt)
{
    setTimes(0, 60);
    kit::stepTime(60000);
    ASSERT_TRUE(isDark());
    bool wasDark = true;
    QTimer::singleShot(0, home, [&] {
        kit::settle();
        wasDark = isDark();
        kit::key(Qt::Key_Return);
    });
    xMessageBox("Note", "Reboot device?", BOX_QUESTION, home, -1);
    EXPECT_FALSE(wasDark);
    EXPECT_EQ(top(), "frmDesktop");
}

// Whoever shows calls in a way of his own.
class IdleWithoutCallScreen : public IdleSaver
{
protected:
    IdleWithoutCallScreen() : IdleSaver(false) {}
};

TEST_F(IdleWithoutCallScreen, ACallEndsASaverAndLightsTheScreenAllTheSame)
{
    kit::stepTime(60000);
    ASSERT_EQ(top(), "dlgImageScreen");
    ring();
    EXPECT_EQ(top(), "frmDesktop");
    hangUpAll();
    kit::stepTime(59000);
    EXPECT_EQ(top(), "frmDesktop") << "whoever hung up has his time";
    setTimes(0, 60);
    kit::stepTime(60000);
    ASSERT_TRUE(isDark());
    ring();
    EXPECT_FALSE(isDark());
    EXPECT_EQ(top(), "frmDesktop");
}

using IdleStart = ShowTest;

TEST_F(IdleStart, APhoneThatEndedInTheDarkStartsInTheLight)
{
    writeFile("/sys/class/backlight/lcd/bl_power", "4");
    frmDesktop::GetInstance();
    EXPECT_EQ(readFile("/sys/class/backlight/lcd/bl_power"), "0");
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
