// Signage during a call: the frame on the call screen, and who has the media server.
#include "host/desktop/callMedia.h"
#include "host/desktop/displayClient.h"
#include "host/desktop/frmCall.h"
#include "host/services/messages/messageBus.h"
#include "host/services/phone/callDevices.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "support/host/module.h"
#include "support/host/phone.h"
#include "tests/desktop/signageStand.h"
#include <cstring>

namespace {

const char* const kShow = "show 3 frmCall 304,66 480x288";
const char* const kHide = "hide 3 frmCall 304,66 480x288";

class CallDisplay : public SignageTest
{
protected:
    CallDisplay()
    {
        displayClient::instance().start();
        callMediaInstall();
        callScreenInstall();
    }
    void switchOn()
    {
        switchClient(1);
        forget();
    }
    static int dial(const char* number)
    {
        EXPECT_EQ(phone_CallNumber(number, 0, 0), 1);
        kit::settle();
        const QList<tagCall> calls = phoneService::instance().calls();
        return calls.isEmpty() ? 0 : calls.last().nId;
    }
    static QWidget* screen() { return kit::windows().value(0); }
    static QStringList shown() { return told().filter("frmCall"); }
    static QStringList params() { return told().filter("param"); }
    // As the page opens it.
    static void showFull(int show = 1)
    {
        hostModule().windowDisplay(show, NDECK_WINDOW_PAGE, nullptr, QRect(0, 0, 800, 480));
        kit::settle();
    }
    static bool isBeside() { return frame()->isVisible() && frame()->parent() == theScreen(); }
    // Also under another window.
    static QWidget* theScreen()
    {
        for (QWidget* window : kit::windows()) {
            if (window->inherits("frmCall"))
                return window;
        }
        return nullptr;
    }
    static constexpr int kAnswered = 2000;
    static constexpr int kGone = 2000;
};

class Page : public QWidget
{
public:
    Page()
    {
        setGeometry(0, 0, 800, 480);
        show();
        kit::settle();
    }
    ~Page() override
    {
        hide();
        kit::settle();
    }
};

// Lines whose sound goes a way of its own.
class RealSound : public phoneSimulation
{
public:
    bool hasOwnSound() const override { return true; }
};

// Hears what the phone tells the media server.
class MediaServer : public chMsgProcesser
{
public:
    int TryThreadMessage(msgObject& msg) override
    {
        if (msg.message != MEDIA_MSG_SESSION_START && msg.message != MEDIA_MSG_SESSION_STOP)
            return 0;
        heard.append(QString("%1 %2").arg(msg.message, 0, 16).arg(msg.wParam));
        if (msg.GetExtraSize() == int(sizeof(param)))
            memcpy(&param, msg.GetExtraData(), sizeof(param));
        return 1;
    }
    QStringList heard;
    VOICE_PARAM param = {};
};

} // namespace

TEST_F(CallDisplay, ComesBesideACallThatTalksAndGoesWithIt)
{
    switchOn();
    dial("4711");
    EXPECT_TRUE(shown().isEmpty());
    const QRect alone = screen()->findChild<QWidget*>("labName")->geometry();
    kit::stepTime(kAnswered);
    EXPECT_EQ(shown(), QStringList{kShow});
    const QRect beside = screen()->findChild<QWidget*>("labName")->geometry();
    EXPECT_LT(beside.right(), 298);
    for (const char* name : {"labPicture", "labName", "labNumber", "labState", "labDuration"})
        EXPECT_FALSE(screen()->findChild<QWidget*>(name)->geometry().intersects(QRect(298, 60, 492, 300)))
            << name;
    kit::shot("call-signage");
    hangUpAll();
    EXPECT_EQ(shown(), (QStringList{kShow, kHide}));
    EXPECT_EQ(screen()->findChild<QWidget*>("labName")->geometry(), alone);
}

TEST_F(CallDisplay, WhatGoesOverTheWireStandsBesideItAndAPictureTakesItsPlace)
{
    switchOn();
    const int call = dial("4711");
    kit::stepTime(kAnswered);
    ASSERT_TRUE(isBeside());
    tagCallStreams streams;
    streams.strSound = "G.722";
    streams.nQuality = 3;
    streams.bEncrypted = true;
    ASSERT_TRUE(phoneSimulation::instance()->setStreams(call, streams));
    const auto* marks = screen()->findChild<QWidget*>("wgtMarks");
    EXPECT_LT(marks->geometry().right(), 298);
    EXPECT_FALSE(marks->geometry().intersects(screen()->findChild<QWidget*>("labPicture")->geometry()));
    kit::shot("call-signage-marks");
    streams.strPicture = "H.264";
    ASSERT_TRUE(phoneSimulation::instance()->setStreams(call, streams));
    kit::settle();
    EXPECT_FALSE(isBeside());
    EXPECT_TRUE(screen()->findChild<QWidget*>("wgtPicture")->isVisible());
    streams.strPicture.clear();
    ASSERT_TRUE(phoneSimulation::instance()->setStreams(call, streams));
    kit::settle();
    EXPECT_TRUE(isBeside());
    EXPECT_FALSE(screen()->findChild<QWidget*>("wgtPicture")->isVisible());
}

TEST_F(CallDisplay, ShowsOnlyWhereItIsWantedDuringCalls)
{
    dial("4711");
    kit::stepTime(kAnswered);
    EXPECT_TRUE(shown().isEmpty()) << "the client is off";
    switchClient(1);
    EXPECT_EQ(shown(), QStringList{kShow}) << "switched on during the call";
    hangUpAll();
    kit::stepTime(kAnswered);
    switches().talk = false;
    forget();
    dial("4712");
    kit::stepTime(kAnswered);
    EXPECT_TRUE(shown().isEmpty());
}

TEST_F(CallDisplay, ShowsWhileTheOtherSideRingsIfWanted)
{
    switchOn();
    switches().ringBack = true;
    switches().talk = false;
    dial("4711");
    EXPECT_EQ(shown(), QStringList{kShow});
    kit::stepTime(kAnswered);
    EXPECT_EQ(shown(), (QStringList{kShow, kHide}));
}

TEST_F(CallDisplay, ABusyNumberTakesItAway)
{
    switchOn();
    switches().ringBack = true;
    dial("busy");
    kit::stepTime(kAnswered);
    EXPECT_EQ(shown(), (QStringList{kShow, kHide}));
}

TEST_F(CallDisplay, EveryCallThatRingsHasTheWholeScreen)
{
    switchOn();
    for (int call = 1; call <= 3; ++call) {
        showFull();
        dial("4711");
        EXPECT_FALSE(frame()->isVisible()) << call;
        EXPECT_EQ(screen()->findChild<QWidget*>("labName")->width(), 720) << call;
        forget();
        kit::stepTime(kAnswered);
        EXPECT_TRUE(isBeside()) << call;
        EXPECT_EQ(shown().value(0).toStdString(), kShow) << call;
        hangUpAll();
        EXPECT_FALSE(frame()->isVisible()) << call;
        kit::stepTime(kGone);
    }
}

TEST_F(CallDisplay, ASecondCallThatRingsTakesTheFrameAwayUntilItTalks)
{
    switchOn();
    dial("4711");
    kit::stepTime(kAnswered);
    ASSERT_TRUE(isBeside());
    const int second = dial("4712");
    EXPECT_FALSE(frame()->isVisible());
    kit::stepTime(kAnswered);
    EXPECT_TRUE(isBeside());
    phoneService::instance().hangUp(second);
    kit::settle();
    EXPECT_TRUE(isBeside()) << "the first goes on";
}

TEST_F(CallDisplay, WhatWasOverTheCallGivesItsPlaceBack)
{
    switchOn();
    dial("4711");
    kit::stepTime(kAnswered);
    for (int time = 1; time <= 2; ++time) {
        {
            const Page page;
            EXPECT_FALSE(frame()->isVisible());
            forget();
        }
        EXPECT_TRUE(isBeside()) << time;
        EXPECT_EQ(shown(), QStringList{kShow}) << time;
        showFull();
        EXPECT_FALSE(isBeside());
        forget();
        showFull(0);
        EXPECT_TRUE(isBeside()) << time;
        EXPECT_TRUE(!shown().isEmpty() && shown().last() == kShow) << asked();
    }
}

TEST_F(CallDisplay, AFrameThatComesBackAsThatOfAnotherPlaceIsDrawnAnew)
{
    switchOn();
    switches().ringBack = true;
    dial("4711");
    kit::stepTime(kAnswered);
    showFull();
    forget();
    dial("4712");
    EXPECT_TRUE(isBeside());
    EXPECT_EQ(shown(), (QStringList{kHide, kShow}));
}

TEST_F(CallDisplay, ATalkThatBeginsUnderAPageShowsTheFrameAfterIt)
{
    switchOn();
    dial("4711");
    {
        const Page page;
        kit::stepTime(kAnswered);
        EXPECT_TRUE(shown().isEmpty()) << asked();
    }
    EXPECT_TRUE(isBeside());
}

TEST_F(CallDisplay, ACallThatEndsUnderTheShowLeavesItWhereItIs)
{
    switchOn();
    dial("4711");
    kit::stepTime(kAnswered);
    showFull();
    forget();
    hangUpAll();
    kit::stepTime(kGone);
    EXPECT_TRUE(shown().isEmpty()) << asked();
    EXPECT_TRUE(frame()->isVisible());
    EXPECT_EQ(frame()->window(), screen());
}

TEST_F(CallDisplay, SwitchingTheClientOffGivesTheCallTheWholeScreen)
{
    switchOn();
    dial("4711");
    kit::stepTime(kAnswered);
    switchClient(0);
    EXPECT_FALSE(frame()->isVisible());
    EXPECT_EQ(screen()->findChild<QWidget*>("labName")->width(), 720);
}

TEST_F(CallDisplay, NothingIsCutBesideItInAnyLanguage)
{
    switchOn();
    for (const char* language : {"English", "Chinese", "German", "French", "Spanish"}) {
        setLanguage(language);
        dial("0049123456789012345678");
        kit::stepTime(kAnswered);
        EXPECT_EQ(cutTexts(screen()), "") << language;
        hangUpAll();
        kit::stepTime(2000);
    }
}

TEST_F(CallDisplay, ACallThatTalksHasTheMediaServer)
{
    switchOn();
    const int call = dial("4711");
    EXPECT_TRUE(params().isEmpty());
    kit::stepTime(kAnswered);
    EXPECT_EQ(params(), QStringList{QString("param %1 %2").arg(call).arg(34000 + 4 * call)});
    forget();
    hangUpAll();
    EXPECT_EQ(params(), QStringList{"param 0 0"});
}

TEST_F(CallDisplay, ASecondCallGetsTheMediaServerAfterTheFirst)
{
    switchOn();
    const int first = dial("4711");
    const int second = dial("4712");
    kit::stepTime(kAnswered);
    EXPECT_EQ(params().size(), 1);
    forget();
    phoneService::instance().hangUp(first);
    EXPECT_EQ(params(),
              (QStringList{"param 0 0", QString("param %1 %2").arg(second).arg(34000 + 4 * second)}));
}

TEST_F(CallDisplay, AClientThatIsSwitchedOnHearsWhoHasTheMediaServer)
{
    const int call = dial("4711");
    kit::stepTime(kAnswered);
    forget();
    switchClient(1);
    EXPECT_EQ(params(), QStringList{QString("param %1 %2").arg(call).arg(34000 + 4 * call)});
}

TEST_F(CallDisplay, AClientThatIsSwitchedOnWithoutACallHearsOfNone)
{
    switchClient(1);
    EXPECT_TRUE(params().isEmpty());
}

TEST_F(CallDisplay, TheMediaServerHearsOfTheSession)
{
    MediaServer server;
    ASSERT_EQ(messageServiceStart("app_hxMedia"), 1);
    const int call = dial("4711");
    kit::stepTime(kAnswered);
    ASSERT_TRUE(kit::waitUntil([&] { return !server.heard.isEmpty(); }));
    EXPECT_EQ(server.heard, QStringList{QString("70001 %1").arg(call)});
    EXPECT_EQ(server.param.nAudLocalPort, 34000 + 4 * call);
    EXPECT_EQ(server.param.nAudRemotePort, 34002 + 4 * call);
    EXPECT_EQ(server.param.nVidLocalPort, 0);
    EXPECT_STREQ(server.param.audDec.szName, "PCMA");
    EXPECT_EQ(server.param.nAudRate, 8000);
    hangUpAll();
    EXPECT_EQ(record(), nullptr);
    EXPECT_TRUE(kit::waitUntil([&] { return server.heard.size() == 2; }));
    EXPECT_EQ(server.heard.last(), QString("70002 %1").arg(call));
    messageServiceStop();
}

TEST_F(CallDisplay, TheSessionOfARealCallHasNoSoundAndTakesTheClientsVideo)
{
    phoneService::instance().setBackend(std::make_unique<RealSound>());
    registerLines();
    switchOn();
    MediaServer server;
    ASSERT_EQ(messageServiceStart("app_hxMedia"), 1);
    const int call = dial("4711");
    kit::stepTime(kAnswered);
    ASSERT_TRUE(kit::waitUntil([&] { return !server.heard.isEmpty(); }));
    EXPECT_EQ(params(), QStringList{QString("param %1 %2").arg(call).arg(34000 + 4 * call)})
        << "the client stands back";
    EXPECT_EQ(server.param.nAudLocalPort, 0);
    EXPECT_EQ(server.param.nAudRemotePort, 0);
    kit::stepTime(3 * callMedia::WATCH_MS);
    record()->nVidLocalPort = 35820;
    record()->nVidRemotePort = 35620;
    kit::stepTime(callMedia::WATCH_MS + 100);
    ASSERT_TRUE(kit::waitUntil([&] { return server.heard.size() >= 2; }));
    EXPECT_EQ(server.param.nVidRemotePort, 35620);
    EXPECT_EQ(server.param.nAudRemotePort, 0);
    hangUpAll();
    const QString start = QString("70001 %1").arg(call);
    ASSERT_TRUE(kit::waitUntil([&] { return server.heard.size() >= 3; }));
    EXPECT_EQ(server.heard, (QStringList{start, start, QString("70002 %1").arg(call)}));
    messageServiceStop();
}

TEST_F(CallDisplay, AVideoThatTheClientPutsIntoTheSessionReachesTheMediaServer)
{
    MediaServer server;
    ASSERT_EQ(messageServiceStart("app_hxMedia"), 1);
    const int call = dial("4711");
    kit::stepTime(kAnswered);
    ASSERT_TRUE(kit::waitUntil([&] { return server.heard.size() == 1; }));
    record()->rcRemote = {16, 0, 320, 240};
    kit::stepTime(1000);
    record()->nVidLocalPort = 35820;
    record()->nVidRemotePort = 35620;
    kit::stepTime(callMedia::WATCH_MS + 100);
    ASSERT_TRUE(kit::waitUntil([&] { return server.heard.size() >= 2; }));
    EXPECT_EQ(server.param.nVidRemotePort, 35620);
    EXPECT_EQ(server.param.rcRemote.width, 320);
    kit::stepTime(2000);
    msgBroadpostThreadMsg(PLAYER_MSG_UP, PLAYER_MOVIE, 0);
    msgBroadpostThreadMsg(PLAYER_MSG_UP, PLAYER_MEDIA, 0);
    ASSERT_TRUE(kit::waitUntil([&] { return server.heard.size() >= 3; }));
    kit::settle();
    const QString start = QString("70001 %1").arg(call);
    EXPECT_EQ(server.heard, (QStringList{start, start, start})) << "begun, with a video, with a new server";
    messageServiceStop();
}

TEST_F(CallDisplay, TheClientHearsThatAFilmIsOver)
{
    ASSERT_EQ(messageServiceStart("app_hxPhone"), 1);
    forget();
    EXPECT_EQ(msgPostMsgToThread(msgGetThreadByName("app_hxPhone"), MOVIE_MSG_FINISHED, 0, 0), 1);
    EXPECT_TRUE(kit::waitUntil([] { return told().contains("movie 120002"); }));
    messageServiceStop();
}

TEST_F(CallDisplay, ADeviceOverTheWholeScreenHasNoShowBesideIt)
{
    switchOn();
    callDevicesAre([] {
        tagCallDevice device;
        device.strNumber = "8200";
        device.bFullScreen = true;
        return QList<tagCallDevice>{device};
    });
    dial("8201");
    kit::stepTime(kAnswered);
    EXPECT_TRUE(isBeside());
    dial("8200");
    kit::stepTime(kAnswered);
    EXPECT_FALSE(isBeside());
    callDevicesAre(nullptr);
}
