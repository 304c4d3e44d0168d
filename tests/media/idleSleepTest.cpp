// A phone that nobody uses gets dark: when, and what lights it again.
#include "media/dlgImageScreen.h"
#include "support/host/box.h"
#include "tests/media/idleSaverStand.h"
#include <QTimer>

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

TEST_F(IdleSaver, ThereIsLightBeforeTheDarkWindowGoes)
{
    static bool wasDark;
    wasDark = true;
    tagModuleEntries entries = saverEntries();
    entries.closeSleep = [] {
        wasDark = isDark();
        CloseScreenSleepDlg();
    };
    hostSetModule(entries);
    setTimes(0, 60);
    kit::stepTime(60000);
    ASSERT_TRUE(isDark());
    ring();
    EXPECT_FALSE(wasDark);
    EXPECT_EQ(top(), "frmCall");
}

TEST_F(IdleSaver, APageThatComesUpLightsIt)
{
    setTimes(0, 60);
    kit::stepTime(60000);
    ASSERT_TRUE(isDark());
    TypedPage page;
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
