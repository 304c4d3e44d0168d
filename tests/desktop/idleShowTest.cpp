#include "host/desktop/idleShow.h"
#include "host/desktop/displayClient.h"
#include "host/desktop/frmCall.h"
#include "host/services/system/netWorld.h"
#include "support/host/clock.h"
#include "support/host/desktop.h"
#include "support/host/phone.h"
#include "support/host/registry.h"
#include "support/host/screen.h"
#include "tests/desktop/signageStand.h"
#include "tests/kit/eventCounter.h"
#include "tests/kit/kitTime.h"
#include <QApplication>
#include <QLineEdit>
#include <QRegularExpression>

namespace {

const char* const kShowCorner = "show 1 frmDesktop 514,48 230x138";
const char* const kHideCorner = "hide 1 frmDesktop 514,48 230x138";
const char* const kShowFull = "show 1 screen 0,0 800x480";

class IdleShow : public SignageTest
{
protected:
    IdleShow()
    {
        home = frmDesktop::GetInstance();
        callScreenInstall();
        displayClient::instance().start();
        switchClient(1);
        setSaverTime(60);
        home->FinishLoading();
        kit::settle();
        touch();
        forget();
    }
    static void touch() { kit::tap(QPoint(495, 165)); }
    static void setSaverTime(int seconds)
    {
        nuxSetRegistryInt("/rundata/config/user/user.ini", "ScreenSaver", "nTimeout", seconds);
    }
    // What the host asked to be shown and hidden.
    static std::string shown()
    {
        return told().filter(QRegularExpression("^(show|hide)")).join("|").toStdString();
    }
    static bool endsWith(const char* what) { return QString::fromStdString(shown()).endsWith(what); }
    // What is typed on the dial screen, if that is what a person sees.
    static QString number()
    {
        const QLineEdit* edit = kit::windows().first()->findChild<QLineEdit*>("editNumber");
        return edit ? edit->text() : QString();
    }
    frmDesktop* home;
};

std::string both(const char* first, const char* second)
{
    return std::string(first) + "|" + second;
}

} // namespace

TEST_F(IdleShow, ComesInACornerOfTheHomeScreenAfterTwentySeconds)
{
    kit::stepTime(19000);
    EXPECT_EQ(shown(), "");
    kit::stepTime(1100);
    EXPECT_EQ(shown(), kShowCorner);
    kit::shot("home-signage");
    // The mount around it is lighter than the page.
    EXPECT_GT(qGray(kit::screen().pixel(630, 55)), qGray(kit::screen().pixel(490, 55)));
}

TEST_F(IdleShow, ATouchOnTheCornerOrAnywhereEndsIt)
{
    kit::stepTime(20100);
    kit::press(QPoint(600, 130));
    EXPECT_EQ(shown(), both(kShowCorner, kHideCorner));
    EXPECT_FALSE(frame()->isVisible());
    kit::release(QPoint(600, 130));
    kit::settle();
    EXPECT_EQ(qGray(kit::screen().pixel(630, 55)), qGray(kit::screen().pixel(630, 50)));
    forget();
    kit::stepTime(20100);
    EXPECT_EQ(shown(), kShowCorner) << "the time starts anew";
}

TEST_F(IdleShow, AKeyEndsTheCornerAndDoesWhatItAlwaysDoes)
{
    kit::stepTime(20100);
    kit::padKey('5');
    EXPECT_EQ(shown(), both(kShowCorner, kHideCorner));
    EXPECT_EQ(number(), "5");
}

TEST_F(IdleShow, IsTheScreenSaverAfterItsTime)
{
    setSaverTime(120);
    touch();
    kit::stepTime(119000);
    EXPECT_EQ(shown(), kShowCorner);
    kit::stepTime(1100);
    EXPECT_EQ(shown(), std::string(kShowCorner) + "|" + kHideCorner + "|" + kShowFull);
}

TEST_F(IdleShow, ASaverWithoutATimeComesAfterAMinute)
{
    setSaverTime(0);
    kit::stepTime(59000);
    EXPECT_EQ(told().count(kShowFull), 0);
    kit::stepTime(1100);
    EXPECT_EQ(told().count(kShowFull), 1);
}

TEST_F(IdleShow, ASaverThatIsDueFirstComesWithoutTheCorner)
{
    setSaverTime(10);
    touch();
    kit::stepTime(10100);
    EXPECT_EQ(shown(), kShowFull);
}

TEST_F(IdleShow, StaysInItsCornerWhereItIsNotTheSaver)
{
    switches().saver = false;
    touch();
    kit::stepTime(3600 * 1000);
    EXPECT_EQ(shown(), kShowCorner);
}

TEST_F(IdleShow, TheKeyThatEndsTheSaverDoesNothingElse)
{
    kit::stepTime(61000);
    ASSERT_TRUE(told().contains(kShowFull));
    kit::padKey('5');
    kit::settle();
    EXPECT_TRUE(home->isActiveWindow());
    EXPECT_EQ(number(), "");
    forget();
    kit::stepTime(20100);
    EXPECT_TRUE(endsWith(kShowCorner)) << shown();
}

TEST_F(IdleShow, ALeftOverFrameDoesNotComeBackWithTheHomeScreen)
{
    kit::stepTime(20100);
    kit::stepTime(40100);
    ASSERT_TRUE(endsWith(kShowFull)) << shown();
    forget();
    screenBringUp(home);
    kit::settle();
    EXPECT_EQ(shown(), both(kHideCorner, kShowFull)) << "nobody touched the phone";
    EXPECT_NE(frame()->window(), home);
}

TEST_F(IdleShow, WaitsWhileAPageIsOpen)
{
    QWidget page;
    page.setGeometry(0, 0, 800, 480);
    page.show();
    kit::settle();
    kit::stepTime(120000);
    EXPECT_EQ(shown(), "");
    page.hide();
    kit::settle();
    kit::stepTime(100);
    EXPECT_TRUE(told().contains(kShowFull));
}

TEST_F(IdleShow, APageTakesTheCornerAway)
{
    kit::stepTime(20100);
    QWidget page;
    page.setGeometry(0, 0, 800, 480);
    page.show();
    kit::settle();
    EXPECT_EQ(shown(), kShowCorner) << "it went by itself";
    EXPECT_FALSE(frame()->isVisible());
    EXPECT_EQ(home->findChild<idleShow*>()->state(), idleShow::AWAY);
}

TEST_F(IdleShow, TheSaverComesAgainAfterATouchEndedIt)
{
    for (int time = 1; time <= 3; ++time) {
        kit::stepTime(61000);
        EXPECT_EQ(told().count(kShowFull), time);
        EXPECT_TRUE(frame()->isVisible()) << time;
        kit::tap(QPoint(495, 165));
        kit::settle();
        EXPECT_FALSE(frame()->isVisible()) << time;
    }
}

TEST_F(IdleShow, AFrameThatAnotherWindowTookFromTheCornerStaysThere)
{
    kit::stepTime(20100);
    forget();
    QWidget page;
    page.setGeometry(0, 0, 800, 480);
    frame()->setParent(&page);
    frame()->show();
    page.show();
    kit::settle();
    EXPECT_EQ(shown(), "");
    EXPECT_TRUE(frame()->isVisible());
    frame()->setParent(nullptr);
}

TEST_F(IdleShow, WaitsWhileTheSaverIsHeldOff)
{
    RegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
    kit::stepTime(120000);
    EXPECT_EQ(shown(), "");
    UnRegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
    kit::stepTime(20100);
    EXPECT_EQ(shown(), kShowCorner);
}

TEST_F(IdleShow, ACallEndsTheSaverAndWhoHungUpHasTimeToDoMore)
{
    switches().talk = false;
    kit::stepTime(61000);
    forget();
    phone_CallNumber("4711", 0, 0);
    kit::settle();
    EXPECT_EQ(shown(), "hide 1 screen 0,0 800x480");
    forget();
    kit::stepTime(120000);
    EXPECT_EQ(told().count(kShowFull) + told().count(kShowCorner), 0);
    hangUpAll();
    kit::stepTime(3000);
    EXPECT_TRUE(home->isActiveWindow());
    EXPECT_EQ(told().count(kShowFull) + told().count(kShowCorner), 0);
    kit::stepTime(20100);
    EXPECT_TRUE(endsWith(kShowCorner)) << shown();
}

TEST_F(IdleShow, ACallTakesTheFrameOverFromTheCorner)
{
    kit::stepTime(20100);
    forget();
    phone_CallNumber("4711", 0, 0);
    kit::settle();
    kit::stepTime(2000);
    EXPECT_EQ(told().value(0).toStdString(), kHideCorner);
    EXPECT_TRUE(endsWith("show 3 frmCall 304,66 480x288")) << shown();
    EXPECT_TRUE(frame()->isVisible());
}

TEST_F(IdleShow, SwitchingTheClientOffTakesItsFrameAway)
{
    kit::stepTime(20100);
    ASSERT_TRUE(frame()->isVisible());
    switchClient(0);
    EXPECT_FALSE(frame()->isVisible());
    forget();
    kit::stepTime(120000);
    EXPECT_EQ(shown(), "");
}

TEST_F(IdleShow, AClientThatShowsNothingLeavesTheHomeScreenAsItIs)
{
    switches().shows = false;
    kit::stepTime(20100);
    EXPECT_EQ(shown(), kShowCorner);
    EXPECT_EQ(home->findChild<idleShow*>()->state(), idleShow::AWAY);
    EXPECT_EQ(qGray(kit::screen().pixel(630, 55)), qGray(kit::screen().pixel(630, 50)));
    switches().shows = true;
    kit::stepTime(5100);
    EXPECT_EQ(home->findChild<idleShow*>()->state(), idleShow::CORNER);
}

TEST_F(IdleShow, ASaverThatIsDueSoonAfterTheCornerComesInTime)
{
    const kit::HeldClocks held; // what the machine does between the steps is no time of the phone
    setSaverTime(22);
    touch();
    kit::stepTime(21900);
    EXPECT_EQ(shown(), kShowCorner);
    kit::stepTime(200);
    EXPECT_TRUE(endsWith(kShowFull)) << shown();
}

TEST_F(IdleShow, ASaverThatCannotShowIsTriedAgain)
{
    switches().shows = false;
    setSaverTime(10);
    touch();
    kit::stepTime(10100);
    EXPECT_EQ(shown(), kShowFull);
    EXPECT_EQ(home->findChild<idleShow*>()->state(), idleShow::AWAY);
    switches().shows = true;
    kit::stepTime(5100);
    EXPECT_EQ(shown(), both(kShowFull, kShowFull));
    EXPECT_EQ(home->findChild<idleShow*>()->state(), idleShow::FULL);
}

TEST_F(IdleShow, AClientThatIsSwitchedOnShowsAtOnceOnAnIdlePhone)
{
    switches().saver = false;
    switchClient(0);
    kit::stepTime(60000);
    EXPECT_EQ(shown(), "");
    switchClient(1);
    kit::stepTime(10);
    EXPECT_EQ(shown(), kShowCorner);
}

TEST_F(IdleShow, AHomeScreenOnWhichNothingChangesIsNotPainted)
{
    netWorldSetClock(chTime(2026, 11, 21, 14, 5, 10).GetTime());
    kit::stepTime(2000);
    kit::settle();
    EventCounter counter(QEvent::Paint);
    qApp->installEventFilter(&counter);
    kit::stepTime(17000);
    EXPECT_EQ(counter.count, 0);
    kit::stepTime(40000);
    EXPECT_GT(counter.count, 0) << "the minute, and the show";
}

TEST_F(IdleShow, TheLampIsSeenOnTheHomeScreen)
{
    const QColor dark = kit::screen().pixelColor(688, 20);
    RegisterSignalLamp(SIGNAL_LAMP_MEETING);
    kit::settle();
    const QColor lit = kit::screen().pixelColor(688, 20);
    EXPECT_GT(lit.red(), dark.red() + 100);
    EXPECT_GT(lit.red(), lit.blue() + 50);
    kit::shot("home-lamp");
    UnRegisterSignalLamp(SIGNAL_LAMP_OFF);
    kit::settle();
    EXPECT_EQ(kit::screen().pixelColor(688, 20), dark);
}
