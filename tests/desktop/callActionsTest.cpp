// What can be done in a call: hold, mute, tones, putting through, a second call.
#include "host/desktop/callAction.h"
#include "host/desktop/callButton.h"
#include "host/desktop/frmCall.h"
#include "host/desktop/frmDial.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "tests/desktop/callScreenStand.h"
#include <QLabel>
#include <QLineEdit>

namespace {

class CallActions : public CallScreenStand
{
protected:
    static tagCall lastEnded() { return phoneSimulation::instance()->endedCalls().first(); }
    // Where the button's word is painted, in its own pixels.
    static QRect inkOf(QAbstractButton* button)
    {
        const QImage with = button->grab().toImage();
        const QString word = button->text();
        button->setText(QString());
        const QImage without = button->grab().toImage();
        button->setText(word);
        QRect ink;
        for (int y = 0; y < with.height(); ++y) {
            for (int x = 0; x < with.width(); ++x)
                ink |= with.pixel(x, y) != without.pixel(x, y) ? QRect(x, y, 1, 1) : QRect();
        }
        return ink;
    }
    static void expectWordsWithin(const QString& what)
    {
        enum { LEAST_MARGIN = 3 };
        kit::settle();
        int seen = 0;
        for (auto* button : screen()->findChildren<QAbstractButton*>()) {
            const bool isRound = qobject_cast<callAction*>(button) || qobject_cast<callButton*>(button);
            if (!isRound || !button->isVisible())
                continue;
            ++seen;
            const QRect ink = inkOf(button);
            const QRect room = button->rect().adjusted(LEAST_MARGIN, 0, -LEAST_MARGIN, 0);
            EXPECT_TRUE(!ink.isEmpty() && room.contains(ink))
                << what.toStdString() << ": " << button->text().toStdString() << " from " << ink.left()
                << " to " << ink.right() << " of " << button->width();
        }
        EXPECT_GT(seen, 2) << what.toStdString();
    }
};

} // namespace

TEST_F(CallActions, AreThereWhileOneTalksEachLargeEnoughForAFinger)
{
    ring("4711");
    for (const char* each : {"actMute", "actHold", "actKeys", "actTransfer", "actAdd", "actSwap"})
        EXPECT_FALSE(action(each)->isVisible()) << each;
    kit::key(Qt::Key_Return);
    EXPECT_EQ(softKeys(screen()), "Mute|Hold|Transfer|End");
    for (const char* each : {"actMute", "actHold", "actKeys", "actTransfer", "actAdd"}) {
        EXPECT_TRUE(action(each)->isVisible()) << each;
        EXPECT_GE(action(each)->width(), 48);
        EXPECT_GE(action(each)->height(), 48);
        EXPECT_LE(action(each)->geometry().bottom(), 440);
    }
    EXPECT_FALSE(action("actSwap")->isVisible());
    kit::shot("call-actions");
}

TEST_F(CallActions, HoldAndResumeByFingerBySoftKeyAndByArrows)
{
    talk("4711");
    kit::tap(action("actHold"));
    EXPECT_TRUE(call("4711").bHeld);
    EXPECT_EQ(state(), "On hold");
    EXPECT_EQ(action("actHold")->text(), "Resume");
    EXPECT_TRUE(action("actHold")->isOn());
    EXPECT_EQ(softKeys(screen()), "Mute|Resume|Transfer|End");
    kit::shot("call-held");
    tapSoftKey(screen(), 1);
    EXPECT_FALSE(call("4711").bHeld);
    EXPECT_EQ(state(), "In call");
    kit::key(Qt::Key_Right);
    kit::key(Qt::Key_Right);
    EXPECT_TRUE(action("actHold")->isChosen());
    kit::key(Qt::Key_Return);
    EXPECT_TRUE(call("4711").bHeld);
    kit::key(Qt::Key_Left);
    EXPECT_TRUE(action("actMute")->isChosen());
    kit::key(Qt::Key_Left);
    EXPECT_TRUE(action("actAdd")->isChosen()) << "round, past what is not there";
}

TEST_F(CallActions, TheCameraIsSeenToGoAlsoWhereNoPictureComes)
{
    talk("4711");
    EXPECT_FALSE(action("actVideo")->isVisible()) << "nobody knows";
    tagCallStreams streams;
    streams.strSound = "Opus";
    for (const int own : {0, 1, 0}) {
        streams.nOwnPicture = own;
        ASSERT_TRUE(phoneSimulation::instance()->setStreams(call("4711").nId, streams));
        EXPECT_TRUE(action("actVideo")->isVisible());
        EXPECT_EQ(action("actVideo")->isOn(), own == 1);
        EXPECT_EQ(action("actVideo")->text(), "Video");
    }
    kit::shot("call-camera");
    ring("4712");
    kit::key(Qt::Key_Return);
    ASSERT_TRUE(phoneSimulation::instance()->setStreams(call("4712").nId, streams));
    QRect before;
    for (const char* each :
         {"actMute", "actHold", "actVideo", "actKeys", "actTransfer", "actAdd", "actJoin", "actSwap"}) {
        const QRect place = action(each)->geometry();
        EXPECT_TRUE(action(each)->isVisible()) << each;
        EXPECT_TRUE(screen()->rect().contains(place) && !place.intersects(before)) << each;
        EXPECT_GT(place.left(), before.right()) << each;
        before = place;
    }
    kit::shot("call-all-actions");
}

TEST_F(CallActions, MuteIsTheCallsOwnAndLeavesTheLoudspeaker)
{
    talk("4711");
    for (const bool muted : {true, false}) {
        kit::tap(action("actMute"));
        EXPECT_EQ(call("4711").bMuted, muted);
        EXPECT_EQ(labelText(screen(), "labMute"), muted ? "Muted" : "");
        EXPECT_EQ(action("actMute")->text(), muted ? "Unmute" : "Mute");
    }
    tapSoftKey(screen(), 0);
    EXPECT_TRUE(call("4711").bMuted);
    kit::key(Qt::Key_VolumeMute);
    EXPECT_FALSE(call("4711").bMuted);
    EXPECT_EQ(dev_get_output_mute(), 0);
}

TEST_F(CallActions, TheOtherSideMayHoldToo)
{
    talk("4711");
    ASSERT_TRUE(phoneSimulation::instance()->holdFromOutside(call("4711").nId, true));
    EXPECT_EQ(state(), "Held by the other side");
    ASSERT_TRUE(phoneSimulation::instance()->holdFromOutside(call("4711").nId, false));
    EXPECT_EQ(state(), "In call");
}

TEST_F(CallActions, TonesGoOutByKeysAndByTheTouchPad)
{
    talk("4711");
    kit::padKey('5');
    const QWidget* pad = screen()->findChild<QWidget*>("wgtPad");
    EXPECT_FALSE(pad->isVisible());
    kit::tap(action("actKeys"));
    ASSERT_TRUE(pad->isVisible());
    for (const char* sign : {"key1", "keyStar", "keyHash", "key0"}) {
        EXPECT_GE(pad->findChild<QWidget*>(sign)->height(), 48);
        kit::tap(pad->findChild<QWidget*>(sign));
    }
    EXPECT_EQ(call("4711").strTones, "51*#0");
    EXPECT_EQ(labelText(screen(), "labDuration"), "51*#0");
    EXPECT_FALSE(pad->geometry().intersects(screen()->findChild<QLabel*>("labName")->geometry()));
    EXPECT_FALSE(pad->geometry().intersects(action("actKeys")->geometry()));
    kit::shot("call-pad");
    kit::tap(action("actKeys"));
    EXPECT_FALSE(pad->isVisible());
    kit::tap(action("actKeys"));
    hangUpAll();
    kit::stepTime(2000);
    ring("4712");
    EXPECT_FALSE(pad->isVisible()) << "of the next call";
}

TEST_F(CallActions, ATransferAsksForItsNumberAndEndsTheCallHere)
{
    talk("4711");
    tapSoftKey(screen(), 2);
    ASSERT_NE(dial(), nullptr);
    EXPECT_EQ(pageTitle(dial()), "Transfer");
    EXPECT_EQ(softKeys(dial()), "Transfer|123|Delete|Back");
    EXPECT_FALSE(dial()->findChild<QWidget*>("wgtLines")->isVisible());
    kit::shot("call-transfer");
    kit::padKey('8');
    kit::padKey('1');
    kit::key(Qt::Key_Return);
    EXPECT_EQ(dial(), nullptr);
    EXPECT_EQ(lastEnded().eEnd, CALL_TRANSFERRED);
    EXPECT_EQ(lastEnded().strTarget, "81");
}

TEST_F(CallActions, ATransferToNothingThatCanBeDialledIsToldAndTheCallGoesOn)
{
    talk("4711");
    kit::tap(action("actTransfer"));
    kit::type("1/2");
    kit::BoxAnswers boxes({"ok"});
    kit::key(Qt::Key_Return);
    EXPECT_EQ(boxes.texts(), QStringList{"This cannot be dialled"});
    ASSERT_NE(dial(), nullptr);
    EXPECT_EQ(dial()->findChild<QLineEdit*>("editNumber")->text(), "1/2");
    EXPECT_EQ(call("4711").eState, CALL_TALKING);
}

TEST_F(CallActions, TheNumberOfATransferGoesWithItsCall)
{
    talk("4711");
    kit::tap(action("actTransfer"));
    ASSERT_NE(dial(), nullptr);
    ASSERT_TRUE(phoneSimulation::instance()->hangUpFromOutside(call("4711").nId));
    kit::settle();
    EXPECT_EQ(dial(), nullptr);
}

TEST_F(CallActions, ARingingCallIsSentOnByHand)
{
    for (const bool byFinger : {true, false}) {
        ring("4711");
        if (byFinger)
            kit::tap(screen()->findChild<QWidget*>("btnForward"));
        else
            tapSoftKey(screen(), 1);
        ASSERT_NE(dial(), nullptr);
        EXPECT_EQ(pageTitle(dial()), "Forward");
        kit::padKey('9');
        kit::key(Qt::Key_Return);
        EXPECT_EQ(lastEnded().eEnd, CALL_FORWARDED);
        EXPECT_EQ(lastEnded().strTarget, "9");
        kit::stepTime(2000);
    }
}

TEST_F(CallActions, ASecondCallIsShownAndItsAnswerHoldsTheFirst)
{
    talk("4711", "Anna");
    ring("4712", "Bob");
    EXPECT_EQ(name(), "Bob");
    EXPECT_EQ(state(), "4712 \u00b7 Incoming call");
    EXPECT_EQ(others(), "Anna \u00b7 In call");
    kit::shot("call-second");
    kit::key(Qt::Key_Return);
    EXPECT_TRUE(call("4711").bHeld);
    EXPECT_FALSE(call("4712").bHeld);
    EXPECT_EQ(name(), "Bob");
    EXPECT_EQ(state(), "In call");
    EXPECT_EQ(others(), "Anna \u00b7 On hold");
    kit::shot("call-two");
}

TEST_F(CallActions, ASecondCallThatIsDeclinedLeavesTheFirstTalking)
{
    talk("4711", "Anna");
    ring("4712", "Bob");
    kit::tap(screen()->findChild<QWidget*>("btnDecline"));
    EXPECT_EQ(lastEnded().eEnd, CALL_DECLINED);
    EXPECT_EQ(name(), "Anna");
    EXPECT_FALSE(call("4711").bHeld);
    EXPECT_EQ(others(), "");
}

TEST_F(CallActions, TheCallThatRangFirstIsAskedForFirst)
{
    talk("100");
    ring("200");
    ring("300");
    EXPECT_EQ(name(), "200");
    EXPECT_NE(others().find("300"), std::string::npos);
    tapSoftKey(screen(), 3);
    kit::settle();
    EXPECT_EQ(name(), "300");
}

TEST_F(CallActions, OfCallsThatAreHeldTheOneThatIsShownStays)
{
    talk("100");
    talk("200");
    kit::tap(action("actSwap"));
    ASSERT_EQ(name(), "100");
    letPressesCount();
    kit::tap(action("actHold"));
    ASSERT_TRUE(call("100").bHeld && call("200").bHeld);
    EXPECT_EQ(name(), "100");
    kit::tap(action("actSwap"));
    ASSERT_EQ(name(), "200");
    letPressesCount();
    kit::tap(action("actHold"));
    ASSERT_TRUE(call("100").bHeld && call("200").bHeld);
    EXPECT_EQ(name(), "200");
}

TEST_F(CallActions, ACallThatRingsTakesThePadAway)
{
    talk("100");
    kit::tap(action("actKeys"));
    QWidget* pad = screen()->findChild<QWidget*>("wgtPad");
    ASSERT_TRUE(pad->isVisible());
    ring("200");
    EXPECT_FALSE(pad->isVisible());
    tapSoftKey(screen(), 3);
    kit::settle();
    EXPECT_EQ(name(), "100");
    EXPECT_FALSE(pad->isVisible());
}

TEST_F(CallActions, SwapGoesFromOneToTheOther)
{
    talk("4711", "Anna");
    ring("4712", "Bob");
    kit::key(Qt::Key_Return);
    letPressesCount();
    ASSERT_TRUE(action("actSwap")->isVisible());
    kit::tap(action("actSwap"));
    letPressesCount();
    EXPECT_EQ(name(), "Anna");
    EXPECT_FALSE(call("4711").bHeld);
    EXPECT_TRUE(call("4712").bHeld);
    EXPECT_EQ(others(), "Bob \u00b7 On hold");
    kit::key(Qt::Key_Left);
    EXPECT_TRUE(action("actSwap")->isChosen());
    kit::key(Qt::Key_Return);
    EXPECT_EQ(name(), "Bob");
    EXPECT_TRUE(call("4711").bHeld);
    // What becomes of the one that is held does not bring it up.
    ASSERT_TRUE(phoneSimulation::instance()->holdFromOutside(call("4711").nId, true));
    EXPECT_EQ(name(), "Bob");
    letPressesCount();
    tapSoftKey(screen(), 3);
    EXPECT_EQ(name(), "Anna");
    EXPECT_EQ(state(), "On hold \u00b7 Held by the other side");
    EXPECT_FALSE(action("actSwap")->isVisible());
}

TEST_F(CallActions, ACallIsAddedFromTheCall)
{
    talk("4711", "Anna");
    kit::tap(action("actAdd"));
    ASSERT_NE(dial(), nullptr);
    EXPECT_EQ(pageTitle(dial()), "Dial");
    kit::padKey('7');
    kit::key(Qt::Key_Return);
    ASSERT_NE(screen(), nullptr);
    EXPECT_EQ(name(), "7");
    EXPECT_EQ(state(), "Calling...");
    EXPECT_TRUE(call("4711").bHeld);
}

TEST_F(CallActions, AFailureBesideACallIsToldForAMoment)
{
    talk("4711", "Anna");
    dialScreenOpen("busy");
    kit::settle();
    kit::key(Qt::Key_Return);
    kit::stepTime(2000);
    ASSERT_NE(screen(), nullptr);
    EXPECT_EQ(name(), "Anna");
    EXPECT_EQ(others(), "busy \u00b7 Busy");
    setLanguage("German");
    kit::settle();
    EXPECT_EQ(others(), "busy \u00b7 Besetzt");
    setLanguage("English");
    kit::stepTime(3500);
    EXPECT_EQ(others(), "");
}

TEST_F(CallActions, OfALongNameBesideACallTheStateStays)
{
    talk("4711", "Anna von und zu Lichtenstein-Hohenheim");
    ring("4712");
    kit::key(Qt::Key_Return);
    EXPECT_EQ(others().find("Anna von"), 0u) << others();
    EXPECT_NE(others().find("\u2026 \u00b7 On hold"), std::string::npos) << others();
}

TEST_F(CallActions, NothingIsCutOrCoveredInAnyLanguage)
{
    for (const char* language : {"English", "Chinese", "German", "French", "Spanish"}) {
        setLanguage(language);
        kit::settle();
        talk("4711", "Anna Berg");
        ring("4712", "Bob Long");
        kit::key(Qt::Key_Return);
        tagCallStreams seen;
        seen.nOwnPicture = 1;
        phoneSimulation::instance()->setStreams(call("4712").nId, seen);
        kit::tap(action("actHold"));
        kit::settle();
        kit::shot(QString("call-two-%1").arg(language));
        EXPECT_EQ(cutTexts(screen()), "") << language;
        QList<callAction*> shown;
        for (callAction* each : screen()->findChildren<callAction*>()) {
            EXPECT_LE(each->fontMetrics().horizontalAdvance(each->text()), each->width())
                << language << ' ' << each->text().toStdString();
            for (const callAction* other : std::as_const(shown))
                EXPECT_FALSE(other->geometry().intersects(each->geometry()));
            shown.append(each);
        }
        hangUpAll();
        kit::stepTime(2000);
    }
}

TEST_F(CallActions, EachWordKeepsClearOfTheEdgesOfItsButtonInEachLanguageAndState)
{
    for (const char* language : {"English", "Chinese", "German", "French", "Spanish"}) {
        setLanguage(language);
        kit::settle();
        const auto look = [&](const char* what) { expectWordsWithin(QString("%1, %2").arg(language, what)); };
        const auto showVideo = [](const char* number) {
            tagCallStreams seen;
            seen.nOwnPicture = 1;
            EXPECT_TRUE(phoneSimulation::instance()->setStreams(call(number).nId, seen));
        };
        ring("4711", "Anna Berg");
        look("asked");
        kit::key(Qt::Key_Return);
        letPressesCount();
        look("one call");
        showVideo("4711");
        kit::tap(action("actMute"));
        look("with video, muted");
        kit::tap(action("actKeys"));
        look("with the pad");
        kit::tap(action("actKeys"));
        talk("4712", "Bob Long");
        showVideo("4712");
        look("two calls");
        kit::tap(action("actHold"));
        look("two calls, held");
        kit::tap(action("actJoin"));
        letPressesCount();
        kit::tap(action("actMute"));
        talk("4713");
        showVideo("4713");
        kit::tap(action("actSwap"));
        letPressesCount();
        look("a conference beside another call");
        kit::shot(QString("call-words-%1").arg(language));
        hangUpAll();
        kit::stepTime(2000);
    }
}
