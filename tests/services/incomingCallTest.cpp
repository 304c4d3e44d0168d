// Calls from outside: they ring until somebody does something about it, and not at all for who is not to be
// disturbed.
#include "host/services/phone/callHistory.h"
#include "host/services/phone/doNotDisturb.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "support/host/phone.h"
#include "support/host/registry.h"
#include "support/xml/xmlFile.h"
#include "tests/kit/phoneTest.h"

namespace {

const char* const kUserFile = "/rundata/config/user/user.ini";

class IncomingCall : public PhoneTest
{
protected:
    IncomingCall()
    {
        phoneService::instance().setBackend(std::make_unique<phoneSimulation>());
        m_nListener =
            phoneService::instance().addCallListener([this](const tagCall& call) { heard.append(call); });
        mark();
    }
    ~IncomingCall() override
    {
        // The history is written on another thread; the device root is not taken away under it.
        for (const tagCall& call : phoneService::instance().calls())
            phoneService::instance().hangUp(call.nId);
        EXPECT_TRUE(kit::waitUntil(
            [&] { return readFile("/rundata/data/callHistory.xml").count("<Call ") >= ended(); }));
        phoneService::instance().removeCallListener(m_nListener);
        phoneService::instance().setBackend(nullptr);
    }
    int ended() const
    {
        int count = 0;
        for (const tagCall& call : heard)
            count += call.eState == CALL_ENDED;
        return count;
    }
    static bool ring(const char* number, int line = 0)
    {
        return phoneSimulation::instance()->ring(number, line, "Anna");
    }
    static QList<tagCall> calls() { return phoneService::instance().calls(); }

    QList<tagCall> heard;

private:
    int m_nListener;
};

TEST_F(IncomingCall, RingsUntilItIsAnswered)
{
    ASSERT_TRUE(ring("4711"));
    kit::stepTime(30000);
    ASSERT_EQ(calls().size(), 1);
    EXPECT_EQ(calls()[0].eState, CALL_RINGING);
    EXPECT_EQ(phone_IsPhoneInTalk(), 0);
    EXPECT_TRUE(phoneService::instance().answer(calls()[0].nId));
    EXPECT_EQ(calls()[0].eState, CALL_TALKING);
    EXPECT_EQ(phone_IsPhoneInTalk(), 1);
    kit::stepTime(61000);
    ASSERT_EQ(calls().size(), 1) << "a caller who talks does not give up";
    EXPECT_GE(calls()[0].nSeconds, 60);
}

TEST_F(IncomingCall, ACallerGivesUpAfterAMinute)
{
    ring("4711");
    kit::stepTime(59000);
    EXPECT_EQ(calls().size(), 1);
    kit::stepTime(1000);
    EXPECT_TRUE(calls().isEmpty());
    EXPECT_EQ(heard.last().eState, CALL_ENDED);
    EXPECT_EQ(heard.last().nSeconds, 0);
    EXPECT_EQ(heard.last().strReason, "");
}

TEST_F(IncomingCall, IsAnsweredOnceAndOnlyWhenItRings)
{
    EXPECT_FALSE(phoneService::instance().answer(77));
    ring("4711");
    const int id = calls()[0].nId;
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_FALSE(phoneService::instance().answer(id));
    tagLineSetting setting;
    setting.state = LINE_REGISTERED;
    phoneSimulation::instance()->setLine(0, setting);
    ASSERT_EQ(phone_CallNumber("33", 0, 0), 1);
    EXPECT_FALSE(phoneService::instance().answer(calls().last().nId)) << "the other side answers";
}

TEST_F(IncomingCall, DeclinedItIsOver)
{
    ring("4711");
    EXPECT_TRUE(phoneService::instance().hangUp(calls()[0].nId));
    EXPECT_TRUE(calls().isEmpty());
    kit::stepTime(61000);
    EXPECT_EQ(ended(), 1);
}

TEST_F(IncomingCall, TheAnalogueLineRingsWhereThereIsOne)
{
    EXPECT_FALSE(ring("4711", PHONE_LINE_PSTN));
    phoneSimulation::instance()->setPstn(1);
    EXPECT_TRUE(ring("4711", PHONE_LINE_PSTN));
    EXPECT_EQ(calls()[0].nAccount, PHONE_LINE_PSTN);
    EXPECT_FALSE(ring("4711", PHONE_LINE_PSTN + 1));
    EXPECT_FALSE(ring("", 0));
    EXPECT_FALSE(ring("4711", -1));
}

TEST_F(IncomingCall, TheAnalogueLineDialsWhereThereIsOne)
{
    EXPECT_EQ(phone_CallNumber("4711", PHONE_LINE_PSTN, 0), 0);
    phoneSimulation::instance()->setPstn(1);
    EXPECT_EQ(phone_CallNumber("4711", PHONE_LINE_PSTN, 0), 1);
    EXPECT_EQ(phone_CallNumber("4711", PHONE_LINE_PSTN + 1, 0), 0);
}

TEST_F(IncomingCall, WhoIsNotToBeDisturbedMissesIt)
{
    EXPECT_FALSE(doNotDisturb::isOn()) << "as the factory has it";
    EXPECT_TRUE(doNotDisturb::setOn(true));
    EXPECT_EQ(logged("broadcast"), QStringList{"0x10007 11 0"});
    EXPECT_TRUE(ring("4711", 2));
    EXPECT_TRUE(calls().isEmpty());
    ASSERT_EQ(heard.size(), 1) << "it never rang";
    EXPECT_EQ(heard[0].eState, CALL_ENDED);
    EXPECT_TRUE(heard[0].bIncoming);
    EXPECT_EQ(heard[0].nAccount, 2);
    EXPECT_TRUE(kit::waitUntil(
        [&] { return readFile("/rundata/data/callHistory.xml").contains("direction=\"in\""); }));
    EXPECT_TRUE(doNotDisturb::setOn(false));
    ring("4711", 2);
    EXPECT_EQ(calls().size(), 1);
}

TEST_F(IncomingCall, TheAnalogueLineHasASettingOfItsOwn)
{
    phoneSimulation::instance()->setPstn(1);
    writeFile(kUserFile, "");
    doNotDisturb::setOn(true);
    ring("1", PHONE_LINE_PSTN);
    EXPECT_EQ(calls().size(), 1) << "without effect on it while nothing is set";
    nuxSetRegistryInt(kUserFile, "DND", "bEffectPstn", 1);
    ring("2", PHONE_LINE_PSTN);
    EXPECT_EQ(calls().size(), 1);
    phoneService::instance().hangUp(calls()[0].nId);
    ring("3", PHONE_LINE_PSTN);
    EXPECT_EQ(calls().size(), 0);
    doNotDisturb::setOn(false);
    ring("4", PHONE_LINE_PSTN);
    EXPECT_EQ(calls().size(), 1);
}

TEST_F(IncomingCall, WhoIsTalkedToIsHeldMutedAndHearsTones)
{
    ring("4711");
    const int id = calls()[0].nId;
    callRules& rules = phoneService::instance().rules();
    EXPECT_TRUE(rules.answer(id));
    EXPECT_TRUE(rules.setHeld(id, true));
    EXPECT_FALSE(rules.setHeld(id, true)) << "it is held already";
    EXPECT_TRUE(calls()[0].bHeld);
    EXPECT_TRUE(rules.setHeld(id, false));
    EXPECT_FALSE(calls()[0].bHeld);
    EXPECT_TRUE(rules.setMuted(id, true));
    EXPECT_TRUE(calls()[0].bMuted);
    EXPECT_TRUE(rules.sendTones(id, "12#"));
    EXPECT_EQ(calls()[0].strTones, "12#");
    EXPECT_TRUE(phoneSimulation::instance()->holdFromOutside(id, true));
    EXPECT_FALSE(phoneSimulation::instance()->holdFromOutside(id, true));
    EXPECT_TRUE(calls()[0].bRemoteHeld);
    EXPECT_EQ(heard.last().bRemoteHeld, true);
    EXPECT_TRUE(rules.transfer(id, "600"));
    EXPECT_EQ(heard.last().eEnd, CALL_TRANSFERRED);
    EXPECT_EQ(heard.last().strTarget, "600");
    EXPECT_TRUE(calls().isEmpty());
    EXPECT_EQ(phoneSimulation::instance()->endedCalls()[0].strTones, "12#");
}

TEST_F(IncomingCall, EachEndsAsItDid)
{
    callRules& rules = phoneService::instance().rules();
    ring("1");
    rules.decline(calls()[0].nId);
    ring("2");
    rules.forward(calls()[0].nId, "600");
    ring("3");
    phoneSimulation::instance()->hangUpFromOutside(calls()[0].nId);
    ring("4");
    rules.answer(calls()[0].nId);
    phoneSimulation::instance()->hangUpFromOutside(calls()[0].nId);
    ring("5");
    kit::stepTime(61000);
    QList<int> ends;
    for (const tagCall& call : phoneSimulation::instance()->endedCalls().mid(0, 5))
        ends.prepend(call.eEnd);
    EXPECT_EQ(ends, (QList<int>{CALL_DECLINED, CALL_FORWARDED, CALL_MISSED, CALL_HUNG_UP, CALL_MISSED}));
    EXPECT_FALSE(phoneSimulation::instance()->hangUpFromOutside(1 << 20));
}

TEST_F(IncomingCall, WhoHidesTheNumberNeedsNone)
{
    tagCaller caller;
    EXPECT_FALSE(phoneSimulation::instance()->ringFrom(caller));
    caller.bAnonymous = true;
    caller.bVideo = true;
    EXPECT_TRUE(phoneSimulation::instance()->ringFrom(caller));
    EXPECT_TRUE(calls()[0].bAnonymous);
    EXPECT_FALSE(calls()[0].bVideo) << "not before both want it";
    phoneService::instance().answer(calls()[0].nId);
    EXPECT_TRUE(calls()[0].bVideo);
    EXPECT_EQ(calls()[0].options.nFrameRate, 30);
    ring("4711");
    phoneService::instance().answer(calls()[1].nId);
    EXPECT_FALSE(calls()[1].bVideo) << "the caller does not";
}

TEST_F(IncomingCall, WhatIsSentToAnotherLineOfThePhoneComesBack)
{
    for (int line = 0; line < 2; ++line) {
        tagLineSetting setting;
        setting.state = LINE_REGISTERED;
        setting.user = QString("100%1").arg(line + 1);
        setting.server = "pbx.test";
        phoneSimulation::instance()->setLine(line, setting);
    }
    ring("4711", 0);
    EXPECT_TRUE(phoneService::instance().rules().forward(calls()[0].nId, "1002"));
    kit::settle();
    ASSERT_EQ(calls().size(), 1);
    EXPECT_EQ(calls()[0].nAccount, 1);
    EXPECT_EQ(calls()[0].strNumber, "4711");
    EXPECT_EQ(calls()[0].forwardedBy, QStringList{"1001"});
}

} // namespace
