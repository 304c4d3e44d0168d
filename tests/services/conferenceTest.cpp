// Three who talk together, and two calls that are put through to each other: what the rules order, and what
// the simulated calls do.
#include "host/services/phone/callHistory.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "tests/services/ruledCalls.h"

namespace {

class Conference : public RuledCalls
{
protected:
    Conference()
    {
        setUser("CallWaiting", "bEnable", "1");
        tellChanged(CONFIG_CHANGED_CALL_WAITING);
        anna = talk();
        bob = talk();
    }
    tagCall call(int id) const
    {
        for (const tagCall& call : rules->calls()) {
            if (call.nId == id)
                return call;
        }
        return tagCall();
    }
    QStringList held() const
    {
        QStringList all;
        for (const tagCall& call : rules->calls()) {
            if (call.bHeld)
                all.append(QString::number(call.nId));
        }
        return all;
    }
    QStringList ids(std::initializer_list<int> calls) const
    {
        QStringList all;
        for (const int id : calls)
            all.append(QString::number(id));
        return all;
    }
    void join()
    {
        ASSERT_TRUE(rules->join(bob, anna));
        backend.orders.clear();
    }

    int anna = 0;
    int bob = 0; // talks; she is held
};

TEST_F(Conference, TakesBackWhoIsHeldAndHoldsNeitherForTheOther)
{
    ASSERT_EQ(held(), ids({anna}));
    EXPECT_TRUE(rules->join(bob, anna));
    EXPECT_EQ(orders(), (QStringList{of(QString("join %1").arg(anna), bob), of("resume", anna)}));
    EXPECT_EQ(held(), QStringList());
    EXPECT_EQ(call(anna).nJoined, bob);
    EXPECT_EQ(call(bob).nJoined, anna);
    EXPECT_FALSE(rules->join(bob, anna)) << "they do already";
}

TEST_F(Conference, IsOfTwoCallsThatTalkAndOfNoMore)
{
    const int rings = arrive("3");
    EXPECT_FALSE(rules->join(bob, rings));
    EXPECT_FALSE(rules->join(bob, bob));
    EXPECT_FALSE(rules->join(bob, 1 << 20));
    ASSERT_TRUE(rules->answer(rings));
    ASSERT_TRUE(rules->join(bob, anna));
    EXPECT_EQ(held(), ids({rings})) << "who talks last talks";
    orders();
    EXPECT_FALSE(rules->join(rings, anna));
    EXPECT_FALSE(rules->join(anna, rings));
    EXPECT_EQ(orders(), QStringList());
}

TEST_F(Conference, IsHeldAndTakenBackAsAWhole)
{
    join();
    EXPECT_TRUE(rules->setHeld(anna, true));
    EXPECT_EQ(orders(), (QStringList{of("hold", anna), of("hold", bob)}));
    EXPECT_TRUE(rules->setHeld(bob, false));
    EXPECT_EQ(orders(), (QStringList{of("resume", bob), of("resume", anna)}));
}

TEST_F(Conference, AThirdCallRingsBesideItAndItsAnswerHoldsBoth)
{
    join();
    const int third = arrive("3");
    EXPECT_EQ(held(), QStringList());
    ASSERT_TRUE(rules->answer(third));
    EXPECT_EQ(held(), ids({anna, bob}));
    EXPECT_EQ(call(anna).nJoined, bob) << "they stay together";
    ASSERT_TRUE(rules->setHeld(anna, false));
    EXPECT_EQ(held(), ids({third}));
}

TEST_F(Conference, EitherHangUpLeavesTheOtherCallTalking)
{
    for (const bool byUser : {true, false}) {
        join();
        const int leaves = byUser ? anna : bob;
        const int stays = byUser ? bob : anna;
        if (byUser)
            EXPECT_TRUE(rules->hangUp(leaves));
        else
            backend.endFromOutside(leaves, CALL_HUNG_UP);
        EXPECT_EQ(call(stays).eState, CALL_TALKING);
        EXPECT_FALSE(call(stays).bHeld);
        EXPECT_EQ(call(stays).nJoined, 0);
        anna = stays;
        bob = talk();
    }
}

TEST_F(Conference, ApartOneTalksOnAndTheOtherIsHeld)
{
    join();
    EXPECT_TRUE(rules->split(anna));
    EXPECT_EQ(orders(), (QStringList{of("hold", bob), of("split", anna)}));
    EXPECT_EQ(held(), ids({bob}));
    EXPECT_EQ(call(anna).nJoined + call(bob).nJoined, 0);
    EXPECT_FALSE(rules->split(anna));
    join();
    ASSERT_TRUE(rules->setHeld(anna, true));
    EXPECT_TRUE(rules->split(anna));
    EXPECT_EQ(held(), ids({anna, bob})) << "who was held stays so";
}

TEST_F(Conference, TheCameraIsForBoth)
{
    EXPECT_TRUE(rules->setCamera(bob, true));
    EXPECT_EQ(orders().last(), of("camera", bob)) << "and not for who is held";
    join();
    EXPECT_TRUE(rules->setCamera(anna, false));
    EXPECT_EQ(orders(), (QStringList{of("no camera", anna), of("no camera", bob)}));
    EXPECT_TRUE(rules->setCamera(bob, true));
    EXPECT_EQ(orders(), (QStringList{of("camera", bob), of("camera", anna)}));
}

TEST_F(Conference, MuteAndTonesAreForBoth)
{
    ASSERT_TRUE(rules->setMuted(bob, true));
    ASSERT_TRUE(rules->join(bob, anna));
    EXPECT_TRUE(call(anna).bMuted) << "as the one that it was begun from";
    orders();
    EXPECT_TRUE(rules->setMuted(anna, false));
    EXPECT_FALSE(call(anna).bMuted || call(bob).bMuted);
    orders();
    EXPECT_TRUE(rules->sendTones(anna, "1#"));
    EXPECT_EQ(orders(),
              (QStringList{of("tone 1", anna), of("tone 1", bob), of("tone #", anna), of("tone #", bob)}));
}

TEST_F(Conference, WhatTheBackendCannotDoLeavesBothCallsAsTheyWere)
{
    backend.bConnects = false;
    EXPECT_FALSE(rules->join(bob, anna));
    EXPECT_FALSE(rules->connect(bob, anna));
    EXPECT_EQ(orders(), QStringList());
    EXPECT_EQ(held(), ids({anna}));
    backend.bConnects = true;
    backend.bResumes = false;
    EXPECT_FALSE(rules->join(bob, anna));
    EXPECT_EQ(call(anna).nJoined + call(bob).nJoined, 0);
    EXPECT_EQ(held(), ids({anna}));
}

TEST_F(Conference, WhoIsPutThroughToTheOtherIsOverHere)
{
    EXPECT_FALSE(rules->connect(bob, bob));
    EXPECT_FALSE(rules->connect(bob, 1 << 20));
    const int rings = arrive("3");
    EXPECT_FALSE(rules->connect(bob, rings));
    rules->decline(rings);
    orders();
    EXPECT_TRUE(rules->connect(bob, anna));
    EXPECT_EQ(orders(), QStringList{of(QString("connect with %1").arg(anna), bob)});
    EXPECT_TRUE(rules->calls().isEmpty());
}

// The calls of the simulation.
class SimulatedConference : public PhoneTest
{
protected:
    SimulatedConference()
    {
        phoneService::instance().setBackend(std::make_unique<phoneSimulation>());
        nuxSetRegistryString("/rundata/config/user/user.ini", "CallWaiting", "bEnable", "1");
        msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_CALL_WAITING, 0);
        kit::settle();
        anna = talk("4711");
        bob = talk("4712");
        listener =
            phoneService::instance().addCallListener([this](const tagCall& call) { heard.append(call); });
    }
    ~SimulatedConference() override
    {
        phoneService::instance().removeCallListener(listener);
        phoneService::instance().setBackend(nullptr);
    }
    static phoneSimulation& world() { return *phoneSimulation::instance(); }
    static callRules& rules() { return phoneService::instance().rules(); }
    static int talk(const char* number, int line = 0)
    {
        EXPECT_TRUE(world().ring(number, line, ""));
        const int id = phoneService::instance().calls().last().nId;
        EXPECT_TRUE(phoneService::instance().answer(id));
        return id;
    }
    static tagCall call(int id)
    {
        for (const tagCall& call : phoneService::instance().calls()) {
            if (call.nId == id)
                return call;
        }
        return tagCall();
    }

    int anna = 0;
    int bob = 0;
    int listener = 0;
    QList<tagCall> heard;
};

TEST_F(SimulatedConference, BothAreTransferredToEachOther)
{
    EXPECT_TRUE(rules().connect(bob, anna));
    EXPECT_TRUE(phoneService::instance().calls().isEmpty());
    ASSERT_EQ(world().endedCalls().size(), 2);
    for (const tagCall& ended : world().endedCalls()) {
        EXPECT_EQ(ended.eEnd, CALL_TRANSFERRED);
        EXPECT_EQ(ended.strTarget, ended.nId == anna ? "4712" : "4711");
    }
}

TEST_F(SimulatedConference, ARefusalIsToldOnceAndBothStay)
{
    ASSERT_TRUE(world().refuseFromOutside(bob, true));
    EXPECT_TRUE(rules().connect(bob, anna));
    ASSERT_EQ(heard.size(), 1);
    EXPECT_EQ(heard[0].nId, bob);
    EXPECT_EQ(heard[0].eState, CALL_TALKING);
    EXPECT_EQ(heard[0].strReason, "The other side refuses the transfer");
    EXPECT_TRUE(rules().transfer(bob, "555")) << "to a number, too";
    EXPECT_EQ(heard.last().strReason, "The other side refuses the transfer");
    EXPECT_EQ(call(bob).strReason, "");
    EXPECT_EQ(phoneService::instance().calls().size(), 2);
    ASSERT_TRUE(world().refuseFromOutside(bob, false));
    EXPECT_TRUE(rules().connect(bob, anna));
    EXPECT_TRUE(phoneService::instance().calls().isEmpty());
    EXPECT_FALSE(world().refuseFromOutside(bob, true)) << "no such call";
}

TEST_F(SimulatedConference, TheAnalogueLineIsNotPutThrough)
{
    world().setPstn(1);
    nuxSetRegistryString("/rundata/config/user/user.ini", "CallWaiting", "bEffectPstn", "1");
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_CALL_WAITING, 0);
    kit::settle();
    const int analogue = talk("4713", PHONE_LINE_PSTN);
    EXPECT_FALSE(rules().connect(bob, analogue));
    EXPECT_FALSE(rules().connect(analogue, bob));
    EXPECT_EQ(phoneService::instance().calls().size(), 3);
}

TEST_F(SimulatedConference, MarksComeTogetherAndGoWithEitherCall)
{
    ASSERT_TRUE(rules().join(bob, anna));
    for (const tagCall& told : std::as_const(heard))
        EXPECT_EQ(told.nJoined, told.nId == anna ? bob : anna) << "whoever was told of first";
    EXPECT_FALSE(call(anna).bHeld || call(bob).bHeld);
    heard.clear();
    ASSERT_TRUE(world().hangUpFromOutside(anna));
    EXPECT_EQ(call(bob).nJoined, 0);
    EXPECT_FALSE(call(bob).bHeld);
    ASSERT_EQ(heard.size(), 2) << "of the end, and that the other one is alone";
    EXPECT_EQ(heard[0].nJoined + heard[1].nJoined, 0);
}

TEST_F(SimulatedConference, WhatGoesOverTheWireIsToldAsItWasSet)
{
    tagCallStreams streams;
    streams.strSound = "Opus";
    streams.strPicture = "H.264";
    streams.nQuality = 3;
    streams.bEncrypted = true;
    EXPECT_TRUE(world().setStreams(bob, streams));
    ASSERT_EQ(heard.size(), 1);
    EXPECT_EQ(heard[0].streams.strSound, "Opus");
    EXPECT_EQ(call(bob).streams.strPicture, "H.264");
    EXPECT_EQ(call(bob).streams.nQuality, 3);
    EXPECT_TRUE(call(bob).streams.bEncrypted);
    EXPECT_EQ(call(anna).streams.nQuality, -1);
    EXPECT_FALSE(world().setStreams(1 << 20, streams));
}

} // namespace
