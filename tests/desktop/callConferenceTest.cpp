// Two calls on the call screen: three talk together, or the two others are put through to each other.
#include "host/desktop/callAction.h"
#include "host/desktop/dialList.h"
#include "host/desktop/frmCall.h"
#include "host/desktop/frmDial.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "tests/desktop/callScreenStand.h"

namespace {

constexpr int kLongSeconds = 120;

class CallConference : public CallScreenStand
{
protected:
    static dialList* offered() { return dial()->findChild<dialList*>("lstEntries"); }
    // Bob talks, and Anna is held.
    static void talkToTwo()
    {
        talk("4711", "Anna");
        talk("4712", "Bob");
        ASSERT_TRUE(call("4711").bHeld);
    }
    static void confer()
    {
        talkToTwo();
        kit::tap(action("actJoin"));
        ASSERT_NE(call("4711").nJoined, 0);
    }
    // What is said of how long it lasts, for a call of minutes.
    static int secondsShown()
    {
        const QStringList parts = QString::fromStdString(text("labDuration")).split(':');
        EXPECT_EQ(parts.size(), 2) << text("labDuration");
        return parts.first().toInt() * 60 + parts.last().toInt();
    }
    static void touchRow(int row)
    {
        kit::tap(offered()->mapToGlobal(QPoint(60, 6 + row * dialList::ROW_HEIGHT + 25)));
    }
};

} // namespace

TEST_F(CallConference, IsBegunByFingerAndShowsBothNames)
{
    talk("4711", "Anna");
    EXPECT_FALSE(action("actJoin")->isVisible());
    ring("4712", "Bob");
    EXPECT_FALSE(action("actJoin")->isVisible());
    kit::key(Qt::Key_Return);
    letPressesCount();
    ASSERT_TRUE(action("actJoin")->isVisible());
    EXPECT_EQ(action("actJoin")->text(), "Conference");
    kit::tap(action("actJoin"));
    EXPECT_EQ(call("4711").nJoined, call("4712").nId);
    EXPECT_FALSE(call("4711").bHeld || call("4712").bHeld);
    EXPECT_EQ(name(), "Anna \u00b7 Bob");
    EXPECT_EQ(labelText(screen(), "labNumber"), "4711 \u00b7 4712");
    EXPECT_EQ(state(), "Conference");
    EXPECT_EQ(others(), "");
    EXPECT_EQ(action("actJoin")->text(), "Split");
    EXPECT_TRUE(action("actJoin")->isOn());
    EXPECT_FALSE(action("actSwap")->isVisible()) << "nobody else is there";
    kit::shot("call-conference");
}

TEST_F(CallConference, NoNumberStandsBelowANumber)
{
    talk("4711");
    talk("4712", "Bob");
    EXPECT_EQ(labelText(screen(), "labNumber"), "4712");
    kit::tap(action("actJoin"));
    EXPECT_EQ(name(), "4711 \u00b7 Bob");
    EXPECT_EQ(labelText(screen(), "labNumber"), "") << "it would be taken for either one's";
}

TEST_F(CallConference, IsBegunAndTakenApartByKeys)
{
    talkToTwo();
    kit::key(Qt::Key_Left);
    kit::key(Qt::Key_Left);
    ASSERT_TRUE(action("actJoin")->isChosen());
    kit::key(Qt::Key_Return);
    EXPECT_EQ(name(), "Anna \u00b7 Bob");
    ASSERT_TRUE(action("actJoin")->isChosen());
    kit::key(Qt::Key_Return);
    EXPECT_EQ(name(), "Bob");
    EXPECT_EQ(state(), "In call");
    EXPECT_EQ(others(), "Anna \u00b7 On hold");
    EXPECT_EQ(call("4711").nJoined + call("4712").nJoined, 0);
    EXPECT_FALSE(call("4712").bHeld);
    EXPECT_TRUE(call("4711").bHeld);
}

TEST_F(CallConference, LastsAsLongAsTheLongerOfItsCallsWhoeverWasInFront)
{
    talk("4711", "Anna");
    kit::stepTime(kLongSeconds * 1000);
    talk("4712", "Bob");
    EXPECT_LT(secondsShown(), kLongSeconds) << "he has just come";
    for (const char* inFront : {"Bob", "Anna"}) {
        if (name() != inFront)
            kit::tap(action("actSwap"));
        letPressesCount();
        ASSERT_EQ(name(), inFront);
        kit::tap(action("actJoin"));
        ASSERT_EQ(state(), "Conference");
        EXPECT_GE(secondsShown(), kLongSeconds) << inFront;
        kit::stepTime(1000);
        EXPECT_GE(secondsShown(), kLongSeconds + 1) << inFront;
        kit::tap(action("actJoin"));
        ASSERT_EQ(name(), "Bob") << "who has come last talks on";
        EXPECT_LT(secondsShown(), kLongSeconds) << "without the conference it is his own";
    }
}

TEST_F(CallConference, HoldHoldsBothAndMuteIsForBoth)
{
    confer();
    tapSoftKey(screen(), 1);
    EXPECT_TRUE(call("4711").bHeld && call("4712").bHeld);
    EXPECT_EQ(state(), "On hold");
    EXPECT_EQ(name(), "Anna \u00b7 Bob");
    kit::tap(action("actHold"));
    EXPECT_FALSE(call("4711").bHeld || call("4712").bHeld);
    kit::tap(action("actMute"));
    EXPECT_TRUE(call("4711").bMuted && call("4712").bMuted);
}

TEST_F(CallConference, ATransferIsThatOfWhoHasComeLastOnHoldToo)
{
    for (const bool isHeld : {false, true}) {
        confer();
        if (isHeld)
            tapSoftKey(screen(), 1);
        tapSoftKey(screen(), 2);
        ASSERT_NE(dial(), nullptr);
        kit::padKey('8');
        kit::key(Qt::Key_Return);
        EXPECT_EQ(phoneSimulation::instance()->endedCalls().first().strNumber, "4712") << isHeld;
        hangUpAll();
        kit::stepTime(2000);
    }
}

TEST_F(CallConference, WhoHangsUpLeavesTheOtherOne)
{
    confer();
    ASSERT_TRUE(phoneSimulation::instance()->hangUpFromOutside(call("4712").nId));
    kit::settle();
    EXPECT_EQ(name(), "Anna");
    EXPECT_EQ(state(), "In call");
    EXPECT_EQ(labelText(screen(), "labNumber"), "4711");
    EXPECT_FALSE(action("actJoin")->isVisible());
    EXPECT_FALSE(call("4711").bHeld);
}

TEST_F(CallConference, TheUsersEndEndsItAsAWhole)
{
    confer();
    tapSoftKey(screen(), 3);
    kit::settle();
    EXPECT_TRUE(phoneService::instance().calls().isEmpty());
    const QList<tagCall> ended = phoneSimulation::instance()->endedCalls();
    ASSERT_GE(ended.size(), 2);
    EXPECT_EQ(ended[0].eEnd, CALL_HUNG_UP);
    EXPECT_EQ(ended[1].eEnd, CALL_HUNG_UP);
}

TEST_F(CallConference, WhoHoldsItFromOutsideIsNamed)
{
    confer();
    ASSERT_TRUE(phoneSimulation::instance()->holdFromOutside(call("4711").nId, true));
    EXPECT_EQ(state(), "Conference");
    EXPECT_EQ(others(), "Anna \u00b7 Held by the other side");
}

TEST_F(CallConference, AThirdCallRingsBesideItAndIsSwappedWithBoth)
{
    confer();
    ring("4713", "Carl");
    EXPECT_EQ(name(), "Carl");
    EXPECT_EQ(others(), "Anna \u00b7 Conference\nBob \u00b7 Conference");
    kit::shot("call-conference-third");
    kit::key(Qt::Key_Return);
    letPressesCount();
    EXPECT_TRUE(call("4711").bHeld && call("4712").bHeld);
    EXPECT_EQ(others(), "Anna \u00b7 On hold\nBob \u00b7 On hold");
    EXPECT_FALSE(action("actJoin")->isVisible()) << "three talk at most";
    kit::tap(action("actSwap"));
    EXPECT_EQ(name(), "Anna \u00b7 Bob");
    EXPECT_EQ(state(), "Conference");
    EXPECT_TRUE(call("4713").bHeld);
    EXPECT_TRUE(action("actSwap")->isVisible());
}

TEST_F(CallConference, TransferOffersTheOtherCallByFinger)
{
    talkToTwo();
    tapSoftKey(screen(), 2);
    ASSERT_NE(dial(), nullptr);
    ASSERT_FALSE(offered()->rows().isEmpty());
    EXPECT_EQ(offered()->rows()[0].nCall, call("4711").nId);
    EXPECT_TRUE(offered()->text().startsWith("Anna On hold")) << offered()->text().toStdString();
    kit::shot("call-transfer-other");
    touchRow(0);
    touchRow(0);
    kit::settle();
    EXPECT_TRUE(phoneService::instance().calls().isEmpty());
    EXPECT_EQ(dial(), nullptr);
    const QList<tagCall> ended = phoneSimulation::instance()->endedCalls();
    EXPECT_EQ(ended[0].eEnd, CALL_TRANSFERRED);
    EXPECT_EQ(ended[0].strTarget, "4712");
    EXPECT_EQ(ended[1].eEnd, CALL_TRANSFERRED);
    EXPECT_EQ(ended[1].strTarget, "4711");
}

TEST_F(CallConference, TransferOffersTheOtherCallByKeys)
{
    talkToTwo();
    kit::tap(action("actTransfer"));
    kit::key(Qt::Key_Down);
    EXPECT_EQ(offered()->currentRow(), 0);
    kit::key(Qt::Key_Return);
    kit::settle();
    ASSERT_TRUE(phoneService::instance().calls().isEmpty());
    EXPECT_EQ(phoneSimulation::instance()->endedCalls()[0].eEnd, CALL_TRANSFERRED);
}

TEST_F(CallConference, ANumberIsStillThereBesideTheOtherCall)
{
    talkToTwo();
    kit::tap(action("actTransfer"));
    kit::padKey('8');
    for (const tagDialEntry& row : offered()->rows())
        EXPECT_EQ(row.nCall, 0) << "she has no 8";
    kit::key(Qt::Key_Return);
    EXPECT_EQ(phoneSimulation::instance()->endedCalls()[0].strTarget, "8");
    EXPECT_EQ(call("4711").eState, CALL_TALKING);
}

TEST_F(CallConference, ACallThatGoesIsNotOfferedAnyMore)
{
    talkToTwo();
    kit::tap(action("actTransfer"));
    ASSERT_FALSE(offered()->rows().isEmpty());
    ASSERT_EQ(offered()->rows()[0].nCall, call("4711").nId);
    ASSERT_TRUE(phoneSimulation::instance()->hangUpFromOutside(call("4711").nId));
    kit::settle();
    ASSERT_NE(dial(), nullptr);
    for (const tagDialEntry& row : offered()->rows())
        EXPECT_EQ(row.nCall, 0);
}

TEST_F(CallConference, WhatTheOtherSideRefusesIsToldAndBothCallsStay)
{
    talkToTwo();
    ASSERT_TRUE(phoneSimulation::instance()->refuseFromOutside(call("4712").nId, true));
    tapSoftKey(screen(), 2);
    ASSERT_FALSE(offered()->rows().isEmpty());
    touchRow(0);
    touchRow(0);
    kit::settle();
    ASSERT_NE(screen(), nullptr);
    EXPECT_EQ(name(), "Bob");
    EXPECT_EQ(others(), "The other side refuses the transfer\nAnna \u00b7 On hold");
    kit::shot("call-transfer-refused");
    EXPECT_EQ(call("4711").eState, CALL_TALKING);
    EXPECT_EQ(call("4712").eState, CALL_TALKING);
    kit::stepTime(3500);
    EXPECT_EQ(others(), "Anna \u00b7 On hold");
}

TEST_F(CallConference, WhatCannotBeConnectedIsToldAndBothCallsStay)
{
    phoneSimulation::instance()->setPstn(1);
    talk("4711", "Anna", PHONE_LINE_PSTN);
    talk("4712", "Bob");
    tapSoftKey(screen(), 2);
    ASSERT_FALSE(offered()->rows().isEmpty());
    kit::BoxAnswers boxes({"ok"});
    touchRow(0);
    touchRow(0);
    kit::settle();
    EXPECT_EQ(boxes.texts(), QStringList{"These calls cannot be connected"});
    EXPECT_EQ(phoneService::instance().calls().size(), 2);
    phoneSimulation::instance()->setPstn(0);
}

TEST_F(CallConference, NothingIsCutOrCoveredInAnyLanguage)
{
    for (const char* language : {"English", "Chinese", "German", "French", "Spanish"}) {
        setLanguage(language);
        kit::settle();
        talk("4711", "Anna Berg");
        talk("4712", "Bob Long");
        tagCallStreams streams;
        streams.strSound = "G.722";
        streams.nQuality = 2;
        streams.bEncrypted = true;
        for (const tagCall& each : phoneService::instance().calls())
            ASSERT_TRUE(phoneSimulation::instance()->setStreams(each.nId, streams));
        kit::shot(QString("call-joinable-%1").arg(language));
        kit::tap(action("actJoin"));
        ring("4713", "Carl");
        kit::key(Qt::Key_Return);
        letPressesCount();
        kit::tap(action("actSwap"));
        ASSERT_TRUE(phoneSimulation::instance()->refuseFromOutside(call("4711").nId, true));
        phoneService::instance().rules().transfer(call("4711").nId, "9");
        kit::settle();
        EXPECT_EQ(cutTexts(screen()), "") << language;
        EXPECT_EQ(others().find("\u2026"), std::string::npos) << others();
        kit::shot(QString("call-conference-%1").arg(language));
        QList<callAction*> shown;
        for (callAction* each : screen()->findChildren<callAction*>()) {
            if (!each->isVisible())
                continue;
            EXPECT_LE(each->fontMetrics().horizontalAdvance(each->text()), each->width())
                << language << ' ' << each->text().toStdString();
            EXPECT_TRUE(screen()->rect().contains(each->geometry()));
            for (const callAction* other : std::as_const(shown))
                EXPECT_FALSE(other->geometry().intersects(each->geometry()));
            shown.append(each);
        }
        EXPECT_EQ(shown.size(), 7);
        hangUpAll();
        kit::stepTime(4000);
    }
}

TEST_F(CallConference, WhoIsBesideIsReadHoweverLongItsStateIsInEachLanguage)
{
    const auto keepsName = [](const char* name) {
        const int least = screen()->findChild<QLabel*>("labOthers")->width() / 6;
        const QStringList words = QString::fromStdString(others()).split(QStringLiteral(" \u00b7 "));
        const QString shown = QString(words[0]).remove(QChar(0x2026));
        const QFontMetrics metrics(screen()->findChild<QLabel*>("labOthers")->font());
        EXPECT_GE(words.size(), 2) << others() << ": and its state";
        EXPECT_TRUE(!shown.isEmpty() && QString(name).startsWith(shown)) << others();
        EXPECT_TRUE(shown == name || metrics.horizontalAdvance(shown) > least) << others();
    };
    constexpr const char* kLong = "Maximilian Alexander von Hohenstein";
    for (const char* language : {"English", "Chinese", "German", "French", "Spanish"}) {
        SCOPED_TRACE(language);
        setLanguage(language);
        kit::settle();
        for (const char* name : {"Anna", kLong}) {
            const int id = talk("4711", name);
            talk("4712", "Bob Long");
            ASSERT_TRUE(phoneSimulation::instance()->holdFromOutside(id, true));
            kit::settle();
            keepsName(name); // both hold
            kit::shot(QString("call-beside-%1-%2").arg(language, name));
            kit::tap(action("actKeys"));
            keepsName(name);
            kit::shot(QString("call-beside-keys-%1-%2").arg(language, name));
            hangUpAll();
            kit::stepTime(4000);
        }
    }
}
