// Calls that are put through: whose settings the next one has, and which outcomes count.
#include "support/host/registry.h"
#include "tests/services/sipStand.h"

namespace {

constexpr uint32_t OUT = SIP_CALL_FIRST;

class SipCallTransfer : public SipPhone
{
protected:
    void SetUp() override { begin(); }
    static phoneBackend& backend() { return phoneService::instance().backend(); }
    void addToAccount(const QByteArray& keys)
    {
        writeAccount(0, readFile("/rundata/config/user/voip/sipAccount0.cfg") + keys);
        tellAccountChanged(0);
        kit::settle();
    }
    // The call is sent on to these places, the best one first; where it goes next.
    tagSipDial sentOn(uint32_t wire, const QList<QByteArray>& places)
    {
        for (const QByteArray& place : places.mid(1)) {
            auto record = sipWire::make<tagSipTarget>(SIP_PLACE, wire);
            sipWire::setText(record.szTarget, place.toStdString());
            agent.tell(record);
        }
        tellEnd(wire, SIP_REDIRECTED, 302, places.first().constData());
        return dialled();
    }
    tagSipDial dialled()
    {
        const auto* dial = agent.next<tagSipDial>(SIP_DIAL);
        EXPECT_TRUE(dial);
        return dial ? *dial : tagSipDial();
    }
    tagSipDial refused(uint32_t wire, uint32_t status)
    {
        tellEnd(wire, SIP_REFUSED, status);
        return dialled();
    }
    // The other side of that call wants one to 300.
    tagSipDial isReferred(uint32_t wire)
    {
        auto record = sipWire::make<tagSipReferred>(SIP_REFERRED, wire);
        sipWire::setText(record.szTarget, "sip:300@example.com");
        agent.tell(record);
        const auto* dial = agent.next<tagSipDial>(SIP_DIAL);
        EXPECT_TRUE(dial);
        return dial ? *dial : tagSipDial();
    }
    // What the user shows goes out in that call, or does not.
    void isSeen(int call, bool seen)
    {
        tagCallStreams streams;
        streams.bOtherHolds = !seen;
        streams.nOwnPicture = seen;
        media->tellChanged(call, streams);
    }
    // What is wished for the call that takes the place of that one.
    tagMediaWish wishOfReplaced(uint32_t wire, uint32_t by)
    {
        auto record = arrival(by, "201", "new offer");
        record.nReplaces = wire;
        agent.tell(record);
        EXPECT_TRUE(agent.next<tagSipMedia>(SIP_ANSWER));
        return media->wishes[calls().last().nId];
    }
    void tellTransferred(uint32_t wire, uint32_t status, bool isTaken)
    {
        auto record = sipWire::make<tagSipStatus>(SIP_TRANSFERRED, wire);
        record.nStatus = status;
        record.bTaken = isTaken;
        heard.clear();
        agent.tell(record);
        EXPECT_TRUE(kit::waitUntil([this] { return !heard.isEmpty(); }));
        EXPECT_EQ(calls().value(0).strReason, "") << "it is told once";
    }
    uint32_t asksToConnect()
    {
        const auto* record = agent.next<tagSipConnect>(SIP_CONNECT);
        return record ? record->head.nId : 0;
    }
};

} // namespace

TEST_F(SipCallTransfer, ALineThatKeepsItsNumberBackDoesSoWhenItIsPutThrough)
{
    addToAccount("AnonymousCall=1\n[Transfer]\nbByOther=1\n");
    tellLine(0, SIP_LINE_REGISTERED, 200);
    ASSERT_TRUE(kit::waitUntil([] { return stateOf(0) == LINE_DEFAULT_ACCOUNT; }));
    EXPECT_EQ(isReferred(talksOut()).bAnonymous, 1u);
}

TEST_F(SipCallTransfer, WhoAsksForACallThatIsRedirectedHearsOfTheOneThatFollows)
{
    addToAccount("[Transfer]\nbByOther=1\n");
    tellLine(0, SIP_LINE_REGISTERED, 200);
    ASSERT_TRUE(kit::waitUntil([] { return stateOf(0) == LINE_DEFAULT_ACCOUNT; }));
    talksIn(IN);
    const tagSipDial first = isReferred(IN);
    EXPECT_EQ(first.nReferrer, uint32_t(IN));
    tellEnd(first.head.nId, SIP_REDIRECTED, 302, "sip:301@example.com");
    const auto* dial = agent.next<tagSipDial>(SIP_DIAL);
    ASSERT_TRUE(dial);
    EXPECT_STREQ(dial->szTarget, "sip:301@example.com");
    EXPECT_EQ(dial->nReferrer, uint32_t(IN));
    const uint32_t second = dial->head.nId;
    tellEnd(IN, SIP_HUNG_UP);
    EXPECT_TRUE(waitsForEnd());
    tellEnd(second, SIP_REDIRECTED, 302, "sip:302@example.com");
    ASSERT_TRUE((dial = agent.next<tagSipDial>(SIP_DIAL)));
    EXPECT_EQ(dial->nReferrer, 0u) << "it goes on without him";
}

TEST_F(SipCallTransfer, OneThatIsSentToSeveralPlacesGoesToTheNextWhereTheFirstSaysNothingOfThePerson)
{
    tagSipDial dial = sentOn(dials("300"), {"sip:301@pbx", "sip:302@pbx", "sip:303@pbx"});
    EXPECT_STREQ(dial.szTarget, "sip:301@pbx");
    dial = refused(dial.head.nId, 404);
    EXPECT_STREQ(dial.szTarget, "sip:302@pbx");
    ASSERT_EQ(dial.nForwards, 1u) << "it was not the first place that has sent it there";
    EXPECT_STREQ(dial.szForwardedBy[0], "300");
    // Who sends it on from there goes before those that are left.
    dial = sentOn(dial.head.nId, {"sip:401@pbx", "sip:402@pbx"});
    EXPECT_STREQ(dial.szTarget, "sip:401@pbx");
    dial = refused(dial.head.nId, 503);
    EXPECT_STREQ(dial.szTarget, "sip:402@pbx");
    ASSERT_EQ(dial.nForwards, 2u);
    EXPECT_STREQ(dial.szForwardedBy[1], "sip:302@pbx");
    dial = refused(dial.head.nId, 480);
    EXPECT_STREQ(dial.szTarget, "sip:303@pbx");
    ASSERT_EQ(dial.nForwards, 1u);
    EXPECT_EQ(call().strReached, "303@pbx");
    EXPECT_EQ(call().forwardedBy, QStringList{"300"});
    tellEnd(dial.head.nId, SIP_REFUSED, 404);
    EXPECT_TRUE(waitsForEnd());
    EXPECT_EQ(lastEnded().strReason, "This number is not known");
}

TEST_F(SipCallTransfer, OneThatSomebodyWillNotTakeGoesNowhereElse)
{
    int ends = 0;
    for (const uint32_t status : {486u, 433u, 488u, 600u, 603u, 604u}) {
        SCOPED_TRACE(status);
        const tagSipDial dial = sentOn(dials("300"), {"sip:301@pbx", "sip:302@pbx"});
        tellEnd(dial.head.nId, SIP_REFUSED, status);
        EXPECT_TRUE(waitsForEnd(++ends));
        EXPECT_TRUE(agent.isQuiet(SIP_DIAL));
    }
}

TEST_F(SipCallTransfer, PlacesAreTriedNoMoreOftenThanRedirectionsAreFollowed)
{
    const QList<QByteArray> places = {"sip:1@pbx", "sip:2@pbx", "sip:3@pbx", "sip:4@pbx", "sip:5@pbx"};
    tagSipDial dial = sentOn(dials("300"), places);
    for (const char* next : {"sip:6@pbx", "sip:7@pbx"}) // each with four more
        dial = sentOn(dial.head.nId, QList<QByteArray>{next} + places.mid(1));
    for (const char* next : {"sip:2@pbx", "sip:3@pbx"}) {
        dial = refused(dial.head.nId, 404);
        EXPECT_STREQ(dial.szTarget, next);
    }
    tellEnd(dial.head.nId, SIP_REFUSED, 404);
    EXPECT_TRUE(waitsForEnd()) << "after five of them";
    EXPECT_TRUE(agent.isQuiet(SIP_DIAL));
}

TEST_F(SipCallTransfer, OneThatIsRedirectedAndTalksGoesNowhereAnyMore)
{
    tellEnd(dials("300"), SIP_REDIRECTED, 302, "sip:301@example.com");
    const auto* dial = agent.next<tagSipDial>(SIP_DIAL);
    ASSERT_TRUE(dial);
    EXPECT_NE(call().strTarget, "");
    tellMedia(SIP_TALK, dial->head.nId, "their answer");
    EXPECT_TRUE(kit::waitUntil([] { return call().eState == CALL_TALKING; }));
    EXPECT_EQ(call().strTarget, "");
}

TEST_F(SipCallTransfer, WhoTakesThePlaceOfAnotherIsAnsweredAsThatOneWas)
{
    const int id = arrives(arrival(IN));
    tagCallOptions options;
    options.bVideo = options.bCamera = true;
    options.nBandwidth = 512;
    EXPECT_TRUE(backend().answer(id, options));
    EXPECT_TRUE(agent.next<tagSipMedia>(SIP_ANSWER));
    tellMedia(SIP_TALK, IN, "their offer");
    auto record = arrival(IN + 1, "201", "new offer");
    record.nReplaces = IN;
    agent.tell(record);
    EXPECT_EQ(nextMedia(SIP_ANSWER), "answer 2");
    const tagMediaWish wish = media->wishes[calls().last().nId];
    EXPECT_EQ(calls().last().strNumber, "201");
    EXPECT_TRUE(wish.options.bVideo);
    EXPECT_EQ(wish.options.nBandwidth, 512);
    EXPECT_FALSE(wish.options.bCamera) << "none was open";
}

// Nobody has asked him to talk with the third one.
TEST_F(SipCallTransfer, WhoTakesThePlaceOfOneOfAConferenceIsNotInItAndTheOtherIsAlone)
{
    nuxSetRegistryInt("/rundata/config/user/user.ini", "CallWaiting", "bEnable", 1);
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_CALL_WAITING, 0);
    kit::settle();
    const int one = talksIn(IN);
    const int two = talksIn(IN + 1);
    ASSERT_TRUE(backend().join(one, two));
    media->orders.clear();
    wishOfReplaced(IN, IN + 2);
    const int next = calls().last().nId;
    EXPECT_EQ(calls().last().nJoined, 0);
    tellMedia(SIP_TALK, IN + 2, "their offer");
    tellEnd(IN, SIP_REPLACED);
    ASSERT_TRUE(kit::waitUntil([] { return calls().size() == 2; }));
    EXPECT_EQ(calls().first().nId, two);
    EXPECT_EQ(calls().last().nId, next);
    for (const tagCall& call : calls())
        EXPECT_EQ(call.nJoined, 0) << call.nId;
    EXPECT_FALSE(media->orders.contains("join"));
}

// While either side holds a call its camera rests, as it does before anybody has answered.
TEST_F(SipCallTransfer, ACameraThatOnlyRestsIsOpenInTheCallThatFollows)
{
    addToAccount("[Transfer]\nbByOther=1\n");
    const int id = talksIn(IN);
    ASSERT_TRUE(call().options.bCamera);
    isSeen(id, true);
    isSeen(id, false);
    EXPECT_TRUE(wishOfReplaced(IN, IN + 1).options.bCamera);
    tellEnd(IN + 1, SIP_HUNG_UP);
    EXPECT_TRUE(waitsForEnd());
    isReferred(IN);
    EXPECT_TRUE(media->wishes[calls().last().nId].options.bCamera);
}

TEST_F(SipCallTransfer, ACameraThatTheUserHasClosedStaysClosedInTheCallThatFollows)
{
    addToAccount("[Transfer]\nbByOther=1\n");
    const int id = talksIn(IN);
    isSeen(id, true);
    ASSERT_TRUE(phoneService::instance().rules().setCamera(id, false));
    EXPECT_EQ(nextMedia(SIP_MEDIA).left(5), "offer");
    isSeen(id, false);
    EXPECT_FALSE(wishOfReplaced(IN, IN + 1).options.bCamera);
    tellEnd(IN + 1, SIP_HUNG_UP);
    EXPECT_TRUE(waitsForEnd());
    isReferred(IN);
    EXPECT_FALSE(media->wishes[calls().last().nId].options.bCamera);
}

TEST_F(SipCallTransfer, ACameraThatTheUserHasOpenedWhileTheCallWasHeldIsOpenInTheNext)
{
    const int id = talksIn(IN);
    isSeen(id, false);
    ASSERT_TRUE(phoneService::instance().rules().setCamera(id, true));
    EXPECT_EQ(nextMedia(SIP_MEDIA).left(5), "offer");
    EXPECT_TRUE(wishOfReplaced(IN, IN + 1).options.bCamera);
}

TEST_F(SipCallTransfer, WhoPicksUpWhatWasDialledWithPicturesSeesTheUser)
{
    const uint32_t wire = dials("300");
    ASSERT_TRUE(call().options.bCamera);
    EXPECT_TRUE(wishOfReplaced(wire, IN).options.bCamera);
}

TEST_F(SipCallTransfer, WhoHasCalledWithoutPicturesOpensNoCameraElsewhere)
{
    addToAccount("[Transfer]\nbByOther=1\n");
    const int id = arrives(arrival(IN));
    ASSERT_TRUE(phoneService::instance().answer(id));
    ASSERT_TRUE(call().options.bCamera);
    EXPECT_TRUE(agent.next<tagSipMedia>(SIP_ANSWER));
    isReferred(IN);
    EXPECT_FALSE(media->wishes[calls().last().nId].options.bCamera) << "nothing is agreed yet";
    tellEnd(SIP_CALL_FIRST, SIP_HUNG_UP);
    EXPECT_TRUE(waitsForEnd());
    tellMedia(SIP_TALK, IN, "their offer");
    isSeen(id, false);
    isReferred(IN);
    EXPECT_FALSE(media->wishes[calls().last().nId].options.bCamera) << "it was not open";
}

TEST_F(SipCallTransfer, WhoWasNotToHearTheUserDoesNotHearHimAsSomebodyElse)
{
    addToAccount("[Transfer]\nbByOther=1\n");
    for (const bool muted : {false, true}) {
        const uint32_t wire = muted ? IN + 2 : IN;
        const int id = talksIn(wire);
        callRules& rules = phoneService::instance().rules();
        ASSERT_TRUE(muted ? rules.setMuted(id, true) : rules.setHeld(id, true));
        EXPECT_EQ(wishOfReplaced(wire, wire + 1).bHeld, !muted);
        EXPECT_EQ(media->stills[calls().last().nId], !muted);
        EXPECT_EQ(media->mutes.value(calls().last().nId), muted);
        tellMedia(SIP_TALK, wire + 1, "their offer");
        EXPECT_TRUE(calls().last().bHeld == !muted && calls().last().bMuted == muted);
        tellEnd(wire, SIP_REPLACED);
        EXPECT_TRUE(kit::waitUntil([] { return calls().size() == 1; }));
        EXPECT_EQ(isReferred(wire + 1).nReferrer, wire + 1);
        EXPECT_EQ(media->wishes[calls().last().nId].bHeld, !muted);
        EXPECT_TRUE(calls().last().bHeld == !muted && calls().last().bMuted == muted);
        EXPECT_EQ(media->mutes.value(calls().last().nId), muted);
        while (!calls().isEmpty())
            phoneService::instance().hangUp(call().nId);
    }
}

// The user talks with somebody else meanwhile.
TEST_F(SipCallTransfer, AHeldCallThatGoesOnAsSomebodyElseDoesNotTakeTheUserFromWhomHeTalksWith)
{
    const int held = talksIn(IN);
    talksOut("300");
    const int talking = calls().last().nId;
    ASSERT_TRUE(calls().first().nId == held && calls().first().bHeld);
    EXPECT_TRUE(wishOfReplaced(IN, IN + 1).bHeld);
    tellMedia(SIP_TALK, IN + 1, "their offer");
    EXPECT_EQ(calls()[1].nId, talking);
    EXPECT_FALSE(calls()[1].bHeld);
}

TEST_F(SipCallTransfer, AnOutcomeThatNobodyWaitsForEndsNothing)
{
    talksOut();
    for (const uint32_t status : {200u, 486u})
        tellStatus(SIP_TRANSFERRED, OUT, status);
    EXPECT_TRUE(agent.isQuiet(SIP_HANG_UP));
    EXPECT_EQ(call().eState, CALL_TALKING);
    EXPECT_EQ(call().strReason, "");
    for (const tagCall& told : heard)
        EXPECT_EQ(told.strReason, "");
}

TEST_F(SipCallTransfer, TwoAreConnectedWhenBothAreAgreed)
{
    nuxSetRegistryInt("/rundata/config/user/user.ini", "CallWaiting", "bEnable", 1);
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_CALL_WAITING, 0);
    kit::settle();
    const int one = talksIn(IN);
    const int two = arrives(arrival(IN + 1));
    EXPECT_TRUE(phoneService::instance().answer(two));
    EXPECT_TRUE(agent.next<tagSipMedia>(SIP_ANSWER));
    EXPECT_FALSE(backend().connect(one, two)) << "the other side does not know yet that it talks";
    EXPECT_FALSE(backend().connect(two, one));
    EXPECT_TRUE(agent.isQuiet(SIP_CONNECT));
    tellMedia(SIP_TALK, IN + 1, "their offer");
    EXPECT_TRUE(backend().connect(one, two));
    EXPECT_TRUE(agent.next<tagSipConnect>(SIP_CONNECT));
}

TEST_F(SipCallTransfer, WhereACallWasToGoIsNotWhereItWentWhenNothingCameOfIt)
{
    talksOut();
    EXPECT_TRUE(backend().transfer(call().nId, "400"));
    EXPECT_EQ(call().strTarget, "400");
    phoneService::instance().hangUp(call().nId);
    EXPECT_EQ(lastEnded().eEnd, CALL_HUNG_UP);
    EXPECT_EQ(lastEnded().strTarget, "");
    tellEnd(dials("300"), SIP_REDIRECTED, 302, "sip:301@example.com");
    const auto* dial = agent.next<tagSipDial>(SIP_DIAL);
    ASSERT_TRUE(dial);
    EXPECT_NE(call().strTarget, "");
    tellEnd(dial->head.nId, SIP_REFUSED, 486);
    EXPECT_TRUE(waitsForEnd(2));
    EXPECT_EQ(lastEnded().strTarget, "");
}

TEST_F(SipCallTransfer, AnAgentWhoseCallsHaveNoEndIsRefusedMoreOfThem)
{
    talksIn(IN);
    auto record = arrival(IN, "201", "new offer");
    record.nReplaces = IN;
    int answered = 1;
    for (; answered < 2 * SIP_CALLS_MAX; ++answered) {
        record.head.nId = IN + uint32_t(answered);
        agent.tell(record);
        EXPECT_NE(nextMedia(SIP_ANSWER), "nothing");
    }
    record.head.nId = IN + uint32_t(answered);
    agent.tell(record);
    EXPECT_EQ(nextStatus(SIP_REFUSE), 486u);
    EXPECT_EQ(calls().size(), answered);
}

TEST_F(SipCallTransfer, ACallThatCannotBeSentOnDoesNotRingWithoutASound)
{
    // A number that has no room where it would go.
    nuxSetRegistryString("/rundata/config/user/user.ini", "AlwaysForward", "strTarget",
                         QString(100, QChar(0x4e2d)).toUtf8().constData());
    nuxSetRegistryInt("/rundata/config/user/user.ini", "AlwaysForward", "bEnable", 1);
    agent.tell(arrival(IN));
    EXPECT_EQ(nextStatus(SIP_REFUSE), 486u);
    EXPECT_TRUE(waitsForEnd());
    EXPECT_TRUE(calls().isEmpty());
}

TEST_F(SipCallTransfer, WhyItFailedIsSaidOfWhoWasToBeReached)
{
    const struct
    {
        uint32_t nStatus;
        bool bTaken;
        const char* szReason;
    } outcomes[] = {{404, true, "This number is not known"},
                    {486, true, "Busy"},
                    {603, true, "The call was declined"},
                    {408, true, "Not available at present"},
                    {487, true, "The call could not be made"},
                    {603, false, "The other side refuses the transfer"},
                    {403, false, "The other side refuses the transfer"},
                    {302, true, "Not available at present"},
                    {480, false, "Not available at present"},
                    {408, false, "The server does not answer"}};
    talksOut();
    for (const auto& each : outcomes) {
        ASSERT_TRUE(backend().transfer(call().nId, "301"));
        EXPECT_EQ(call().strTarget, "301") << "while it is under way";
        tellTransferred(OUT, each.nStatus, each.bTaken);
        EXPECT_EQ(heard.last().strReason, each.szReason) << each.nStatus;
        EXPECT_EQ(heard.last().strTarget, each.bTaken ? "301" : "") << each.nStatus;
        EXPECT_EQ(call().strTarget, "");
    }
}

TEST_F(SipCallTransfer, WhereOneRefusesToCallTheOtherTheOtherIsAsked)
{
    const uint32_t first = talksOut("300"), second = talksOut("301");
    const int one = calls()[0].nId, two = calls()[1].nId;
    ASSERT_TRUE(backend().connect(one, two));
    EXPECT_EQ(asksToConnect(), first);
    heard.clear();
    tellStatus(SIP_TRANSFERRED, first, 603);
    EXPECT_EQ(asksToConnect(), second);
    EXPECT_TRUE(heard.isEmpty()) << "nothing has failed yet";
    EXPECT_FALSE(backend().connect(one, two)) << "it is under way";
    tellStatus(SIP_TRANSFERRED, second, 200);
    ASSERT_TRUE(waitsForEnd(2));
    for (const tagCall& ended : phoneService::instance().backend().endedCalls())
        EXPECT_EQ(ended.eEnd, CALL_TRANSFERRED);
}

TEST_F(SipCallTransfer, WhenBothRefuseItHasFailedOnce)
{
    const uint32_t first = talksOut("300"), second = talksOut("301");
    const int one = calls()[0].nId, two = calls()[1].nId;
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(backend().connect(two, one));
        EXPECT_EQ(asksToConnect(), second);
        tellStatus(SIP_TRANSFERRED, second, 603);
        EXPECT_EQ(asksToConnect(), first);
        tellTransferred(first, 603, false);
        EXPECT_EQ(heard.first().strReason, "The other side refuses the transfer");
        EXPECT_TRUE(agent.isQuiet(SIP_CONNECT));
        EXPECT_EQ(calls().size(), 2);
    }
}
