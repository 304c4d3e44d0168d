// What becomes of a call by the settings, with a backend that only does what it is told.
#include "host/services/phone/doNotDisturb.h"
#include "tests/services/ruledCalls.h"

namespace {

QString refusal(CALL_END why)
{
    return QString("refuse %1").arg(why);
}

TEST_F(RuledCalls, ACallRingsWhenNothingIsSet)
{
    const int id = arrive();
    EXPECT_EQ(orders(), QStringList{of("ring", id)});
    kit::stepTime(120000);
    EXPECT_EQ(orders(), QStringList());
    EXPECT_TRUE(rules->answer(id));
    EXPECT_FALSE(rules->answer(id)) << "it talks already";
    EXPECT_EQ(orders(), QStringList{of("answer", id)});
}

TEST_F(RuledCalls, AnonymousCallersAreRejectedByTheLineThatWantsIt)
{
    setLine(1, "account", "RejectAnonymousCall", "1");
    tellChanged(CONFIG_CHANGED_ACCOUNT, 1);
    const int rejected = arrive("4711", 1, true);
    const int other = arrive("4711", 0, true);
    EXPECT_EQ(orders(), (QStringList{of(refusal(CALL_REJECTED), rejected), of("ring", other)}));
    rules->decline(other);
    const int known = arrive("4711", 1, false);
    EXPECT_EQ(orders().last(), of("ring", known));
}

TEST_F(RuledCalls, RejectionIsReadWhenTheLineSaysThatItChanged)
{
    setLine(2, "account", "RejectAnonymousCall", "1");
    const int before = arrive("4711", 2, true);
    EXPECT_EQ(orders(), QStringList{of("ring", before)});
    rules->decline(before);
    tellChanged(CONFIG_CHANGED_ACCOUNT, 1);
    const int otherTold = arrive("4711", 2, true);
    rules->decline(otherTold);
    EXPECT_TRUE(orders().contains(of("ring", otherTold))) << "another line was told of";
    tellChanged(CONFIG_CHANGED_ACCOUNT, 48);
    tellChanged(CONFIG_CHANGED_ACCOUNT, 2);
    const int after = arrive("4711", 2, true);
    EXPECT_EQ(orders(), QStringList{of(refusal(CALL_REJECTED), after)});
}

TEST_F(RuledCalls, WhoIsRejectedIsNotForwarded)
{
    setLine(0, "account", "RejectAnonymousCall", "1");
    tellChanged(CONFIG_CHANGED_ACCOUNT, 0);
    setForward("AlwaysForward", "555");
    doNotDisturb::setOn(true);
    const int rejected = arrive("4711", 0, true);
    const int disturbed = arrive("4711", 0, false);
    EXPECT_EQ(orders(),
              (QStringList{of(refusal(CALL_REJECTED), rejected), of(refusal(CALL_DISTURBED), disturbed)}));
    doNotDisturb::setOn(false);
    const int forwarded = arrive("4711", 0, false);
    EXPECT_EQ(orders(), QStringList{of("deflect 555", forwarded)});
}

TEST_F(RuledCalls, AllCallsAreForwardedBeforeAnyIsBusy)
{
    setForward("BusyForward", "222");
    setUser("CallWaiting", "bEnable", "0");
    tellChanged(CONFIG_CHANGED_CALL_WAITING);
    talk();
    setForward("AlwaysForward", " 111 ");
    const int always = arrive();
    setUser("AlwaysForward", "bEnable", "0");
    const int busy = arrive();
    setUser("BusyForward", "bEnable", "0");
    const int refused = arrive();
    EXPECT_EQ(orders(), (QStringList{of("deflect 111", always), of("deflect 222", busy),
                                     of(refusal(CALL_BUSY), refused)}));
}

TEST_F(RuledCalls, ASecondCallWaitsOnlyWhereItMay)
{
    const int first = talk();
    const int waits = arrive();
    EXPECT_EQ(orders(), QStringList{of("ring", waits)});
    rules->decline(waits);
    setUser("CallWaiting", "bEnable", "0");
    const int untold = arrive();
    EXPECT_EQ(orders().last(), of("ring", untold)) << "nobody has said that it changed";
    rules->decline(untold);
    tellChanged(CONFIG_CHANGED_CALL_WAITING);
    orders();
    const int busy = arrive();
    EXPECT_EQ(orders(), QStringList{of(refusal(CALL_BUSY), busy)});
    rules->hangUp(first);
    orders();
    const int alone = arrive();
    EXPECT_EQ(orders(), QStringList{of("ring", alone)});
}

TEST_F(RuledCalls, TheAnalogueLineWaitsByASettingOfItsOwn)
{
    backend.bPstn = true;
    const int first = talk();
    const int busy = arrive("4711", PHONE_LINE_PSTN);
    EXPECT_EQ(orders(), QStringList{of(refusal(CALL_BUSY), busy)});
    setUser("CallWaiting", "bEffectPstn", "1");
    tellChanged(CONFIG_CHANGED_CALL_WAITING);
    const int waits = arrive("4711", PHONE_LINE_PSTN);
    const int second = arrive("4712", PHONE_LINE_PSTN);
    EXPECT_EQ(orders(), (QStringList{of("ring", waits), of(refusal(CALL_BUSY), second)}))
        << "it carries one call";
    rules->hangUp(waits);
    setUser("CallWaiting", "bEnable", "0");
    tellChanged(CONFIG_CHANGED_CALL_WAITING);
    orders();
    const int off = arrive("4711", PHONE_LINE_PSTN);
    EXPECT_EQ(orders(), QStringList{of(refusal(CALL_BUSY), off)}) << "without effect when it is off";
    EXPECT_TRUE(rules->hangUp(first));
}

TEST_F(RuledCalls, AFifthCallIsBusyAndIsNotDialled)
{
    for (int line = 0; line < 4; ++line)
        arrive("4711", line);
    orders();
    setForward("BusyForward", "222");
    const int fifth = arrive();
    EXPECT_EQ(orders(), QStringList{of("deflect 222", fifth)});
    news.calls.clear();
    EXPECT_EQ(rules->dial("600", 0), 0);
    EXPECT_EQ(orders(), QStringList());
    ASSERT_EQ(news.calls.size(), 1);
    EXPECT_EQ(news.calls[0].strReason, "No line is free");
    EXPECT_EQ(news.calls[0].eEnd, CALL_FAILED);
    EXPECT_EQ(news.calls[0].eState, CALL_ENDED);
}

TEST_F(RuledCalls, NoAnswerIsForwardedAfterItsSeconds)
{
    setForward("NoAnswerForward", "333");
    setUser("NoAnswerForward", "nTimeout", "7");
    const int id = arrive();
    kit::stepTime(6900);
    EXPECT_EQ(orders(), QStringList{of("ring", id)});
    kit::stepTime(200);
    EXPECT_EQ(orders(), QStringList{of("deflect 333", id)});
    const int answered = arrive();
    rules->answer(answered);
    orders();
    kit::stepTime(8000);
    EXPECT_EQ(orders(), QStringList());
}

TEST_F(RuledCalls, ATimeThatIsNoneIsTwentySeconds)
{
    setForward("NoAnswerForward", "333");
    for (const char* time : {"", "0", "101"}) {
        setUser("NoAnswerForward", "nTimeout", time);
        const int id = arrive();
        kit::stepTime(19900);
        EXPECT_EQ(orders(), QStringList{of("ring", id)}) << time;
        kit::stepTime(200);
        EXPECT_EQ(orders(), QStringList{of("deflect 333", id)}) << time;
    }
}

TEST_F(RuledCalls, ALineAnswersByItselfAfterItsTime)
{
    setLine(3, "AutoAnswer", "bEnable", "1");
    setLine(3, "AutoAnswer", "nTimeout", "5");
    const int id = arrive("4711", 3);
    kit::stepTime(4900);
    EXPECT_EQ(orders(), QStringList{of("ring", id)});
    kit::stepTime(200);
    EXPECT_EQ(orders(), QStringList{of("answer", id)});
    rules->hangUp(id);
    setLine(3, "AutoAnswer", "nTimeout", "0");
    orders();
    const int atOnce = arrive("4711", 3);
    EXPECT_EQ(orders(), QStringList{of("ring", atOnce)}) << "whoever looks sees it ring";
    kit::stepTime(1);
    EXPECT_EQ(orders(), QStringList{of("answer", atOnce)});
    rules->hangUp(atOnce);
    const int other = arrive("4711", 0);
    kit::stepTime(60000);
    EXPECT_TRUE(rules->answer(other)) << "another line rings on";
}

TEST_F(RuledCalls, NobodyWhoTalksIsInterruptedByAnAnswer)
{
    setLine(0, "AutoAnswer", "bEnable", "1");
    setLine(0, "AutoAnswer", "nTimeout", "5");
    const int dialled = rules->dial("600", 1);
    const int id = arrive();
    orders();
    kit::stepTime(6000);
    EXPECT_EQ(orders(), QStringList()) << "somebody waits for an answer";
    rules->hangUp(dialled);
    rules->hangUp(id);
    const int two[] = {arrive(), arrive("4712", 1)};
    orders();
    kit::stepTime(6000);
    EXPECT_EQ(orders(), QStringList{of("answer", two[0])}) << "one that only rings does not count";
}

TEST_F(RuledCalls, NobodyWhoTalksIsInterruptedByWhoAsksToBeAnswered)
{
    setLine(0, "AutoAnswer", "bByCaller", "1");
    tagCall asks;
    asks.nAccount = 0;
    asks.strNumber = "4712";
    asks.bAsksAnswer = true;
    const int first = talk();
    orders();
    const int id = backend.arrive(asks);
    kit::stepTime(1000);
    EXPECT_EQ(orders(), QStringList{of("ring", id)});
    rules->hangUp(first);
    rules->hangUp(id);
    orders();
    const int second = backend.arrive(asks);
    kit::stepTime(1000);
    EXPECT_EQ(orders(), (QStringList{of("ring", second), of("answer", second)}));
}

TEST_F(RuledCalls, AnAnswerComesBeforeAForwardOfTheSameTime)
{
    setForward("NoAnswerForward", "333");
    setUser("NoAnswerForward", "nTimeout", "5");
    setLine(0, "AutoAnswer", "bEnable", "1");
    setLine(0, "AutoAnswer", "nTimeout", "5");
    const int id = arrive();
    kit::stepTime(20000);
    EXPECT_EQ(orders(), (QStringList{of("ring", id), of("answer", id)}));
}

TEST_F(RuledCalls, NothingIsForwardedToThisPhone)
{
    setAccount(2, "1003", "pbx.test");
    for (const char* own : {"1003", "sip:1003@PBX.test", "1003@pbx.test:5060"}) {
        setForward("AlwaysForward", own);
        const int id = arrive();
        EXPECT_EQ(orders(), QStringList{of("ring", id)}) << own;
        rules->decline(id);
        orders();
    }
    setForward("AlwaysForward", "1003@elsewhere.test");
    const int id = arrive();
    EXPECT_EQ(orders(), QStringList{of("deflect 1003@elsewhere.test", id)}) << "the same name elsewhere";
}

TEST_F(RuledCalls, NothingIsForwardedToWhereItComesFrom)
{
    setForward("AlwaysForward", "2002");
    const int caller = arrive("2002");
    tagCall circle;
    circle.strNumber = "4711";
    circle.nAccount = 1;
    circle.forwardedBy = QStringList{"sip:2002@pbx.test", "1001"};
    const int round = backend.arrive(circle);
    circle.forwardedBy = QStringList{"1", "2", "3", "4", "5"};
    const int often = backend.arrive(circle);
    circle.forwardedBy.removeLast();
    const int fewer = backend.arrive(circle);
    EXPECT_EQ(orders(), (QStringList{of("ring", caller), of("ring", round), of("ring", often),
                                     of("deflect 2002", fewer)}));
}

TEST_F(RuledCalls, AForwardThatIsNoneLeavesTheCallAlone)
{
    for (const char* target : {"", "  ", "a\"b", "../x", "5'5"}) {
        setForward("AlwaysForward", target);
        const int id = arrive();
        EXPECT_EQ(orders(), QStringList{of("ring", id)}) << target;
        rules->decline(id);
        orders();
    }
}

TEST_F(RuledCalls, NobodyForwardsForTheAnalogueLine)
{
    setForward("AlwaysForward", "111");
    setForward("NoAnswerForward", "111");
    const int id = arrive("4711", PHONE_LINE_PSTN);
    kit::stepTime(120000);
    EXPECT_EQ(orders(), QStringList{of("ring", id)});
}

TEST_F(RuledCalls, WhoTalksLastTalksAndTheOthersAreHeld)
{
    const int first = talk();
    const int second = arrive();
    EXPECT_TRUE(rules->answer(second));
    EXPECT_EQ(orders(), (QStringList{of("ring", second), of("hold", first), of("answer", second)}));
    EXPECT_TRUE(rules->setHeld(first, false));
    EXPECT_EQ(orders(), (QStringList{of("hold", second), of("resume", first)}));
    const int third = rules->dial("600", 0);
    EXPECT_EQ(orders(), (QStringList{of("hold", first), "dial 600 on 0"}));
    EXPECT_TRUE(rules->setHeld(first, false));
    orders();
    backend.answerFromOutside(third);
    EXPECT_EQ(orders(), QStringList{of("hold", first)}) << "whom one has called is there now";
    rules->hangUp(third);
    EXPECT_EQ(orders(), QStringList{of("hang up", third)}) << "the others wait until they are taken back";
}

TEST_F(RuledCalls, WhoWasHeldForACallThatFailsAsItIsAnsweredIsTakenBack)
{
    const int first = talk();
    const auto fail = [&](int id) {
        orders();
        backend.endFromOutside(id, CALL_FAILED);
        return orders();
    };
    int second = arrive("2");
    EXPECT_TRUE(rules->answer(second));
    EXPECT_EQ(fail(second), QStringList{of("resume", first)});
    second = arrive("2");
    EXPECT_TRUE(rules->answer(second));
    orders();
    backend.endFromOutside(second, CALL_MISSED);
    EXPECT_EQ(orders(), QStringList{of("resume", first)}) << "the caller was quicker than the answer";
    // One that has sound has not failed as it was answered.
    second = arrive("2");
    EXPECT_TRUE(rules->answer(second));
    backend.hasSound(second);
    EXPECT_EQ(fail(second), QStringList());
    EXPECT_TRUE(rules->setHeld(first, false));
    // Nor has one that was hung up on.
    second = arrive("2");
    EXPECT_TRUE(rules->answer(second));
    orders();
    backend.endFromOutside(second, CALL_HUNG_UP);
    EXPECT_EQ(orders(), QStringList());
    // Who was held before stays so, and who was taken back and held again.
    second = arrive("2");
    EXPECT_TRUE(rules->answer(second));
    EXPECT_EQ(fail(second), QStringList());
    EXPECT_TRUE(rules->setHeld(first, false));
    second = arrive("2");
    EXPECT_TRUE(rules->answer(second));
    EXPECT_TRUE(rules->setHeld(first, false));
    EXPECT_TRUE(rules->setHeld(first, true));
    EXPECT_EQ(fail(second), QStringList());
    EXPECT_TRUE(rules->setHeld(first, false));
    // Nobody comes back into another call of the user's.
    second = arrive("2");
    EXPECT_TRUE(rules->answer(second));
    EXPECT_NE(rules->dial("600", 0), 0);
    EXPECT_EQ(fail(second), QStringList());
}

TEST_F(RuledCalls, TwoWhoTalkTogetherAreTakenBackTogether)
{
    const int first = talk();
    const int other = arrive("2");
    EXPECT_TRUE(rules->answer(other));
    EXPECT_TRUE(rules->join(first, other));
    const int third = arrive("3");
    EXPECT_TRUE(rules->answer(third));
    orders();
    backend.endFromOutside(third, CALL_FAILED);
    EXPECT_EQ(orders(), (QStringList{of("resume", first), of("resume", other)}));
}

TEST_F(RuledCalls, OnlyACallThatTalksIsHeldMutedPutThroughOrSentTones)
{
    const int id = arrive();
    orders();
    for (const int call : {id, id + 1000}) {
        EXPECT_FALSE(rules->setHeld(call, true));
        EXPECT_FALSE(rules->setMuted(call, true));
        EXPECT_FALSE(rules->transfer(call, "600"));
        EXPECT_FALSE(rules->sendTones(call, "1"));
    }
    EXPECT_FALSE(rules->decline(id + 1000));
    EXPECT_FALSE(rules->forward(id + 1000, "600"));
    EXPECT_FALSE(rules->hangUp(id + 1000));
    EXPECT_EQ(orders(), QStringList());
    rules->answer(id);
    EXPECT_TRUE(rules->setMuted(id, true));
    EXPECT_TRUE(rules->sendTones(id, "12*#D"));
    EXPECT_EQ(orders(), (QStringList{of("answer", id), of("mute", id), of("tone 1", id), of("tone 2", id),
                                     of("tone *", id), of("tone #", id), of("tone D", id)}));
    for (const char* none : {"", "1a", "1 2", "1\n"})
        EXPECT_FALSE(rules->sendTones(id, none)) << none;
    EXPECT_FALSE(rules->decline(id));
    EXPECT_FALSE(rules->forward(id, "600"));
    EXPECT_FALSE(rules->transfer(id, "6\"0"));
    EXPECT_EQ(orders(), QStringList());
    EXPECT_TRUE(rules->transfer(id, "60-0"));
    EXPECT_EQ(orders(), QStringList{of("transfer 600", id)});
}

TEST_F(RuledCalls, ARingingCallIsDeclinedOrForwardedByHand)
{
    const int one = arrive();
    EXPECT_TRUE(rules->decline(one));
    const int two = arrive();
    EXPECT_TRUE(rules->hangUp(two));
    const int three = arrive();
    EXPECT_FALSE(rules->forward(three, " "));
    EXPECT_TRUE(rules->forward(three, "777"));
    EXPECT_EQ(orders(),
              (QStringList{of("ring", one), of(refusal(CALL_DECLINED), one), of("ring", two),
                           of(refusal(CALL_DECLINED), two), of("ring", three), of("deflect 777", three)}));
}

// In the order of the rules, each taken away after its turn.
TEST_F(RuledCalls, WhatCannotBeTalkedRingsNeverAndIsForwardedAsAnyCall)
{
    tagCall unfit;
    unfit.strNumber = "4711";
    unfit.nAccount = 0;
    unfit.bUnfit = unfit.bAnonymous = true;
    setLine(0, "account", "RejectAnonymousCall", "1");
    tellChanged(CONFIG_CHANGED_ACCOUNT, 0);
    const int rejected = backend.arrive(unfit);
    unfit.bAnonymous = false;
    doNotDisturb::setOn(true);
    const int disturbed = backend.arrive(unfit);
    doNotDisturb::setOn(false);
    setForward("NoAnswerForward", "333");
    setForward("AlwaysForward", "111");
    const int always = backend.arrive(unfit);
    setUser("AlwaysForward", "bEnable", "0");
    const int unanswered = backend.arrive(unfit);
    EXPECT_EQ(orders(),
              (QStringList{of(refusal(CALL_REJECTED), rejected), of(refusal(CALL_DISTURBED), disturbed),
                           of("deflect 111", always), of("deflect 333", unanswered)}));
    setUser("CallWaiting", "bEnable", "0");
    tellChanged(CONFIG_CHANGED_CALL_WAITING);
    const int first = talk();
    const int busy = backend.arrive(unfit);
    EXPECT_EQ(orders(), QStringList{of(refusal(CALL_BUSY), busy)}) << "it is not the media's fault";
    rules->hangUp(first);
    setUser("NoAnswerForward", "bEnable", "0");
    orders();
    const int refused = backend.arrive(unfit);
    EXPECT_EQ(orders(), QStringList{of(refusal(CALL_UNFIT), refused)});
    kit::stepTime(120000);
    EXPECT_EQ(orders(), QStringList());
    EXPECT_TRUE(rules->calls().isEmpty());
}

TEST_F(RuledCalls, WhatCannotBeTalkedLeavesWhoTalks)
{
    setLine(0, "AutoAnswer", "bEnable", "1");
    const int first = talk();
    tagCall unfit;
    unfit.nAccount = 0;
    unfit.bUnfit = unfit.bAsksAnswer = true;
    const int refused = backend.arrive(unfit);
    EXPECT_EQ(orders(), QStringList{of(refusal(CALL_UNFIT), refused)});
    ASSERT_EQ(rules->calls().size(), 1);
    EXPECT_EQ(rules->calls()[0].nId, first);
    EXPECT_FALSE(rules->calls()[0].bHeld);
}

TEST_F(RuledCalls, WhatCallersBringAlongIsShownWithoutControlCharacters)
{
    const int id = arrive(QString::fromUtf8("47\n11\u202e"));
    EXPECT_EQ(news.calls.last().strNumber, "4711");
    EXPECT_EQ(rules->calls()[0].strNumber, "4711");
    EXPECT_TRUE(rules->decline(id));
    tagCall call;
    call.strNumber = "4711";
    call.strName = QString::fromUtf8("An\r\nna\x07 \u2028Berg\u202e");
    EXPECT_TRUE(rules->answer(backend.arrive(call)));
    EXPECT_EQ(news.calls.last().strName, "Anna Berg");
    EXPECT_EQ(rules->calls()[0].strName, "Anna Berg");
}

TEST_F(RuledCalls, WhoWasNotToldOfACallHasMissedIt)
{
    const QList<CALL_END> missed = {CALL_MISSED, CALL_BUSY, CALL_DISTURBED, CALL_UNFIT};
    for (int end = CALL_NOT_ENDED; end <= CALL_UNFIT; ++end) {
        tagCall call;
        call.eEnd = CALL_END(end);
        EXPECT_EQ(callIsMissed(call), missed.contains(call.eEnd)) << end;
    }
}

} // namespace
