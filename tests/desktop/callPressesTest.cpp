// Presses on a call screen that changes under the finger, and what a person misses in a hurry.
#include "host/desktop/callAction.h"
#include "host/desktop/frmCall.h"
#include "host/desktop/frmDial.h"
#include "host/desktop/pressGuard.h"
#include "host/services/phone/phoneSimulation.h"
#include "support/host/phone.h"
#include "support/host/registry.h"
#include "support/host/screen.h"
#include "tests/desktop/callScreenStand.h"
#include <QAbstractButton>
#include <QDialog>
#include <QLineEdit>

namespace {

constexpr int kImpatientMs = 300;

class CallPresses : public CallScreenStand
{
};

} // namespace

TEST_F(CallPresses, ASecondDeclineEndsNoOtherCall)
{
    talk("4711", "Anna");
    ring("4712", "Bob");
    kit::key(Qt::Key_F4);
    ASSERT_EQ(calls().size(), 1);
    for (int press = 0; press < 3; ++press) {
        kit::key(press == 0 ? Qt::Key_F4 : press == 1 ? Qt::Key_Hangup : Qt::Key_Escape);
        EXPECT_EQ(calls().size(), 1) << press;
        kit::stepTime(kImpatientMs);
    }
    EXPECT_EQ(name(), "Anna");
    letPressesCount();
    kit::key(Qt::Key_F4);
    EXPECT_TRUE(calls().isEmpty());
}

TEST_F(CallPresses, ThePhonesMakerSaysHowLongTheyAreInVain)
{
    for (const char* ms : {"0", "100", "-5"}) {
        nuxSetRegistryString("/rundata/config/system.ini", "CALL", "nPressGuard", ms);
        talk("4711", "Anna");
        comesIn("4712", "Bob");
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
    talk("4711", "Anna");
    const int bob = ring("4712", "Bob");
    ASSERT_TRUE(phoneSimulation::instance()->hangUpFromOutside(bob));
    kit::settle();
    kit::key(Qt::Key_F4);
    EXPECT_EQ(calls().size(), 1);
}

TEST_F(CallPresses, WhatIsPressedAsAnotherCallRingsDoesNotDeclineIt)
{
    talk("4711", "Anna");
    comesIn("4712", "Bob");
    kit::key(Qt::Key_F4); // was to end the first
    kit::key(Qt::Key_F1); // was to mute it
    EXPECT_EQ(calls().size(), 2);
    EXPECT_EQ(state(), "4712 \u00b7 Incoming call");
    kit::key(Qt::Key_VolumeUp); // means the same
    EXPECT_TRUE(screen()->findChild<QWidget*>("barVolume")->isVisible());
}

TEST_F(CallPresses, WhoHasDialledEndsItAtOnceAndNothingElse)
{
    talk("4711", "Anna");
    dialScreenOpen("4712");
    kit::settle();
    kit::key(Qt::Key_F1);
    ASSERT_EQ(calls().size(), 2);
    ASSERT_EQ(text("labName"), "4712");
    kit::key(Qt::Key_F1); // was to dial
    EXPECT_EQ(calls().size(), 2);
    kit::key(Qt::Key_F4);
    ASSERT_EQ(calls().size(), 1);
    EXPECT_EQ(name(), "Anna");
    kit::key(Qt::Key_F4);
    EXPECT_EQ(calls().size(), 1) << "she comes up by herself";
    letPressesCount();
    kit::key(Qt::Key_F4);
    ASSERT_TRUE(calls().isEmpty());
    ASSERT_EQ(state(), "Call ended");
    dialScreenOpen("4713");
    kit::settle();
    kit::key(Qt::Key_F1);
    ASSERT_EQ(calls().size(), 1);
    kit::key(Qt::Key_F4);
    EXPECT_TRUE(calls().isEmpty()) << "behind a call that has ended too";
}

TEST_F(CallPresses, AnAnswerPressedTwiceDoesNotMuteButItsEndCountsAtOnce)
{
    comesIn("4711", "Anna");
    kit::key(Qt::Key_F1);
    kit::key(Qt::Key_F1);
    ASSERT_EQ(calls().size(), 1);
    EXPECT_FALSE(calls()[0].bMuted);
    kit::key(Qt::Key_F4);
    EXPECT_TRUE(calls().isEmpty());
}

TEST_F(CallPresses, ImpatientTouchesOnAnswerCallNobodyElse)
{
    comesIn("4711", "Anna");
    const QPoint answer = screen()->findChild<QAbstractButton*>("btnAnswer")->geometry().center();
    for (int touch = 0; touch < 6; ++touch) {
        kit::tap(answer);
        kit::stepTime(kImpatientMs);
        ASSERT_NE(screen(), nullptr) << touch;
    }
    EXPECT_EQ(calls().size(), 1);
    EXPECT_EQ(state(), "In call");
}

TEST_F(CallPresses, WhoGoesOnPressingIsHeardInTheEnd)
{
    comesIn("4711", "Anna");
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
    talk("4711", "Anna");
    dialScreenOpen("10");
    kit::settle();
    ASSERT_NE(dial(), nullptr);
    ring("4712", "Bob");
    ASSERT_NE(screen(), nullptr);
    kit::key(Qt::Key_F4);
    kit::settle();
    ASSERT_NE(dial(), nullptr);
    EXPECT_EQ(dial()->findChild<QLineEdit*>("editNumber")->text(), "10");
    EXPECT_EQ(calls().size(), 1);
}

TEST_F(CallPresses, AWaitingCallThatIsAnsweredStaysOverIt)
{
    talk("4711", "Anna");
    dialScreenOpen("10");
    kit::settle();
    ring("4712", "Bob");
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
    EXPECT_EQ(name(), "Anonymous");
    setLanguage("German");
    kit::settle();
    EXPECT_EQ(name(), "Anonym");
}

TEST_F(CallPresses, TonesStandInThePlaceOfTheDurationForAMoment)
{
    talk("4711", "Anna");
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
    talk("4711", "Anna");
    kit::key(Qt::Key_F4);
    ASSERT_EQ(state(), "Call ended");
    kit::padKey('4');
    kit::settle();
    ASSERT_NE(dial(), nullptr);
    EXPECT_EQ(dial()->findChild<QLineEdit*>("editNumber")->text(), "4");
    kit::stepTime(2000);
    EXPECT_NE(dial(), nullptr);
}

TEST_F(CallPresses, TheKeysOfTheCallMeanItFromAPageAsWell)
{
    talk("4711", "Anna");
    QDialog page;
    auto* edit = new QLineEdit("12", &page);
    page.setGeometry(0, 0, 800, 480);
    screenBringUp(&page);
    edit->setFocus();
    kit::settle();
    ASSERT_EQ(kit::windows().value(0), &page);
    const int volume = dev_get_output_volume();
    kit::key(Qt::Key_VolumeUp);
    EXPECT_EQ(dev_get_output_volume(), volume + 10);
    kit::key(Qt::Key_VolumeDown);
    EXPECT_EQ(dev_get_output_volume(), volume);
    kit::key(Qt::Key_VolumeMute);
    EXPECT_TRUE(call("4711").bMuted);
    EXPECT_EQ(kit::windows().value(0), &page) << "and who looks at it goes on";
    kit::key(Qt::Key_Hangup);
    EXPECT_TRUE(calls().isEmpty());
    EXPECT_EQ(kit::windows().value(0), &page);
    EXPECT_EQ(edit->text(), "12");
    kit::stepTime(4000);
    kit::key(Qt::Key_VolumeUp);
    EXPECT_EQ(dev_get_output_volume(), volume) << "nobody talks";
}

TEST_F(CallPresses, WhoHangsUpWhileDiallingLeavesTheNumberAlone)
{
    talk("4711", "Anna");
    kit::tap(action("actAdd"));
    ASSERT_NE(dial(), nullptr);
    kit::key(Qt::Key_Hangup);
    EXPECT_EQ(dial(), nullptr);
    EXPECT_EQ(calls().size(), 1);
    letPressesCount();
    kit::key(Qt::Key_Hangup);
    EXPECT_TRUE(calls().isEmpty());
}

TEST_F(CallPresses, BackTakesThePadOfKeysAwayAndOnlyThenTheCall)
{
    const QWidget* pad = nullptr;
    for (const Qt::Key back : {Qt::Key_Escape, Qt::Key_Back}) {
        talk("4711", "Anna");
        pad = child("wgtPad");
        kit::tap(action("actKeys"));
        ASSERT_TRUE(pad->isVisible());
        kit::key(back);
        EXPECT_FALSE(pad->isVisible());
        EXPECT_EQ(calls().size(), 1);
        kit::tap(action("actKeys"));
        kit::key(Qt::Key_F4);
        EXPECT_TRUE(calls().isEmpty()) << "that key says what it does";
        kit::stepTime(4000);
        talk("4711", "Anna");
        kit::key(back);
        EXPECT_TRUE(calls().isEmpty());
        kit::stepTime(4000);
    }
}

TEST_F(CallPresses, ThePadOfKeysIsOfTheCallForWhichItWasOpened)
{
    talk("4711", "Anna");
    talk("4712", "Bob");
    kit::tap(action("actKeys"));
    kit::tap(action("actJoin"));
    EXPECT_TRUE(child("wgtPad")->isVisible()) << "he is still there";
    kit::tap(action("actJoin"));
    EXPECT_TRUE(child("wgtPad")->isVisible());
    letPressesCount();
    kit::tap(action("actSwap"));
    ASSERT_EQ(name(), "Anna");
    EXPECT_FALSE(child("wgtPad")->isVisible());
    EXPECT_FALSE(action("actKeys")->isOn());
}
