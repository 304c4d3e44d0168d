// Presses on a call screen that changes under the finger, and what a person misses in a hurry.
#include "host/desktop/callAction.h"
#include "host/desktop/frmCall.h"
#include "host/desktop/frmDial.h"
#include "host/desktop/pressGuard.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "support/host/message.h"
#include "support/host/registry.h"
#include "tests/desktop/desktopTest.h"
#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>

namespace {

constexpr int kImpatientMs = 300;

class CallPresses : public DesktopTest
{
protected:
    CallPresses()
    {
        nuxSetRegistryString("/rundata/config/user/user.ini", "CallWaiting", "bEnable", "1");
        nuxSetRegistryString("/rundata/config/user/user.ini", "CallWaiting", "bEffectPstn", "1");
        msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_CALL_WAITING, 0);
        callScreenInstall();
        below.setGeometry(0, 0, 800, 480);
        below.show();
        kit::stepTime(2 * 1000); // the call of the test before is no longer told
    }
    ~CallPresses() override { hangUpAll(); }

    static frmCall* screen() { return qobject_cast<frmCall*>(kit::windows().value(0)); }
    static frmDial* dial() { return qobject_cast<frmDial*>(kit::windows().value(0)); }
    static QList<tagCall> calls() { return phoneService::instance().calls(); }
    static int ring(const char* number, const char* name)
    {
        EXPECT_TRUE(phoneSimulation::instance()->ring(number, 0, name));
        kit::settle();
        return calls().last().nId;
    }
    static void talkTo(const char* number, const char* name)
    {
        EXPECT_TRUE(phoneService::instance().answer(ring(number, name)));
        kit::settle();
        letPressesCount();
    }
    static std::string text(const char* label) { return labelText(screen(), label); }

    QWidget below;
};

} // namespace

TEST_F(CallPresses, ASecondDeclineEndsNoOtherCall)
{
    talkTo("4711", "Anna");
    ring("4712", "Bob");
    letPressesCount();
    kit::key(Qt::Key_F4);
    ASSERT_EQ(calls().size(), 1);
    for (int press = 0; press < 3; ++press) {
        kit::key(press == 0 ? Qt::Key_F4 : press == 1 ? Qt::Key_Hangup : Qt::Key_Escape);
        EXPECT_EQ(calls().size(), 1) << press;
        kit::stepTime(kImpatientMs);
    }
    EXPECT_EQ(text("labName"), "Anna");
    letPressesCount();
    kit::key(Qt::Key_F4);
    EXPECT_TRUE(calls().isEmpty());
}

TEST_F(CallPresses, ThePhonesMakerSaysHowLongTheyAreInVain)
{
    for (const char* ms : {"0", "100", "-5"}) {
        nuxSetRegistryString("/rundata/config/system.ini", "CALL", "nPressGuard", ms);
        talkTo("4711", "Anna");
        ring("4712", "Bob");
        kit::key(Qt::Key_F4);
        EXPECT_EQ(calls().size(), atoi(ms) > 0 ? 2 : 1) << ms;
        kit::stepTime(150);
        kit::key(Qt::Key_F4);
        EXPECT_EQ(calls().size(), atoi(ms) > 0 ? 1 : 0) << ms;
        hangUpAll();
    }
}

TEST_F(CallPresses, ADeclineThatComesAsTheCallerGivesUpEndsNoOtherCall)
{
    talkTo("4711", "Anna");
    const int bob = ring("4712", "Bob");
    letPressesCount();
    ASSERT_TRUE(phoneSimulation::instance()->hangUpFromOutside(bob));
    kit::settle();
    kit::key(Qt::Key_F4);
    EXPECT_EQ(calls().size(), 1);
}

TEST_F(CallPresses, WhatIsPressedAsAnotherCallRingsDoesNotDeclineIt)
{
    talkTo("4711", "Anna");
    ring("4712", "Bob");
    kit::key(Qt::Key_F4); // was to end the first
    kit::key(Qt::Key_F1); // was to mute it
    EXPECT_EQ(calls().size(), 2);
    EXPECT_EQ(text("labState"), "4712 \u00b7 Incoming call");
    kit::key(Qt::Key_VolumeUp); // means the same
    EXPECT_TRUE(screen()->findChild<QWidget*>("barVolume")->isVisible());
}

TEST_F(CallPresses, AnAnswerPressedTwiceDoesNotMuteButItsEndCountsAtOnce)
{
    ring("4711", "Anna");
    kit::key(Qt::Key_F1);
    kit::key(Qt::Key_F1);
    ASSERT_EQ(calls().size(), 1);
    EXPECT_FALSE(calls()[0].bMuted);
    kit::key(Qt::Key_F4);
    EXPECT_TRUE(calls().isEmpty());
}

TEST_F(CallPresses, ImpatientTouchesOnAnswerCallNobodyElse)
{
    ring("4711", "Anna");
    const QPoint answer = screen()->findChild<QAbstractButton*>("btnAnswer")->geometry().center();
    for (int touch = 0; touch < 6; ++touch) {
        kit::tap(answer);
        kit::stepTime(kImpatientMs);
        ASSERT_NE(screen(), nullptr) << touch;
    }
    EXPECT_EQ(calls().size(), 1);
    EXPECT_EQ(text("labState"), "In call");
}

TEST_F(CallPresses, WhoGoesOnPressingIsHeardInTheEnd)
{
    ring("4711", "Anna");
    kit::key(Qt::Key_F1);
    for (int ms = 0; ms < pressGuard::MOST_MS + kImpatientMs && !calls()[0].bMuted; ms += kImpatientMs) {
        EXPECT_LE(ms, int(pressGuard::MOST_MS));
        kit::stepTime(kImpatientMs);
        kit::key(Qt::Key_F1);
    }
    EXPECT_TRUE(calls()[0].bMuted);
}

TEST_F(CallPresses, ANumberThatIsBeingTypedIsStillThereWhenAWaitingCallIsDeclined)
{
    talkTo("4711", "Anna");
    dialScreenOpen("10");
    kit::settle();
    ASSERT_NE(dial(), nullptr);
    ring("4712", "Bob");
    ASSERT_NE(screen(), nullptr);
    letPressesCount();
    kit::key(Qt::Key_F4);
    kit::settle();
    ASSERT_NE(dial(), nullptr);
    EXPECT_EQ(dial()->findChild<QLineEdit*>("editNumber")->text(), "10");
    EXPECT_EQ(calls().size(), 1);
}

TEST_F(CallPresses, AWaitingCallThatIsAnsweredStaysOverIt)
{
    talkTo("4711", "Anna");
    dialScreenOpen("10");
    kit::settle();
    ring("4712", "Bob");
    letPressesCount();
    kit::key(Qt::Key_F1);
    ASSERT_EQ(calls().last().eState, CALL_TALKING);
    letPressesCount();
    ASSERT_NE(screen(), nullptr);
    kit::key(Qt::Key_F4);
    kit::settle();
    ASSERT_EQ(calls().size(), 1);
    EXPECT_NE(screen(), nullptr) << kit::windows()[0]->metaObject()->className();
}

TEST_F(CallPresses, WhoKeepsNameAndNumberBackIsAnonymous)
{
    tagCaller caller;
    caller.bAnonymous = true;
    ASSERT_TRUE(phoneSimulation::instance()->ringFrom(caller));
    kit::settle();
    EXPECT_EQ(text("labName"), "Anonymous");
    setLanguage("German");
    kit::settle();
    EXPECT_EQ(text("labName"), "Anonym");
}

TEST_F(CallPresses, TonesStandInThePlaceOfTheDurationForAMoment)
{
    talkTo("4711", "Anna");
    kit::padKey('5');
    EXPECT_EQ(text("labDuration"), "5");
    kit::stepTime(3000);
    kit::padKey('7');
    kit::stepTime(3000);
    EXPECT_EQ(text("labDuration"), "57");
    kit::stepTime(2000);
    EXPECT_EQ(QString::fromStdString(text("labDuration")).count(':'), 1);
    kit::padKey('8');
    EXPECT_EQ(text("labDuration"), "578");
}

TEST_F(CallPresses, ADigitAfterACallBeginsTheNext)
{
    talkTo("4711", "Anna");
    kit::key(Qt::Key_F4);
    ASSERT_EQ(text("labState"), "Call ended");
    kit::padKey('4');
    kit::settle();
    ASSERT_NE(dial(), nullptr);
    EXPECT_EQ(dial()->findChild<QLineEdit*>("editNumber")->text(), "4");
    kit::stepTime(2000);
    EXPECT_NE(dial(), nullptr);
}
