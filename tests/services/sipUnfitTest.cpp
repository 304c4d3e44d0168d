// Calls from outside that could not be talked: nobody hears of them but who looks at the lists.
#include "host/services/phone/callHistory.h"
#include "support/host/registry.h"
#include "tests/services/sipStand.h"

namespace {

class SipUnfit : public SipPhone
{
protected:
    void SetUp() override { begin(); }
    // The refusal that the agent is told next.
    void expectRefusal(uint32_t wire, uint32_t status, uint32_t warning)
    {
        const auto* refusal = agent.next<tagSipStatus>(SIP_REFUSE);
        ASSERT_TRUE(refusal);
        EXPECT_EQ(refusal->head.nId, wire);
        EXPECT_EQ(refusal->nStatus, status);
        EXPECT_EQ(refusal->nWarning, warning);
    }
    bool hasRung() const
    {
        return std::any_of(heard.begin(), heard.end(),
                           [](const tagCall& call) { return call.eState == CALL_RINGING; });
    }
};

TEST_F(SipUnfit, OneThatCannotBeTalkedIsRefusedWithoutARingAndIsInTheLists)
{
    const struct
    {
        CALL_FIT eFit;
        uint32_t nWarning;
    } all[] = {{CALL_NO_DESCRIPTION, 307},
               {CALL_NO_SOUND, 304},
               {CALL_NO_TRANSPORT, 302},
               {CALL_NO_ADDRESS, 301},
               {CALL_NO_FORMAT, 305}};
    int count = 0;
    for (const auto& each : all) {
        media->fit = each.eFit;
        agent.tell(arrival(IN + uint32_t(count), "200", "their offer"));
        expectRefusal(IN + uint32_t(count), 488, each.nWarning);
        ASSERT_TRUE(waitsForEnd(++count));
        EXPECT_EQ(lastEnded().eEnd, CALL_UNFIT);
        EXPECT_EQ(lastEnded().strNumber, "200");
        EXPECT_EQ(lastEnded().strReason, "The two phones have no sound in common");
    }
    EXPECT_FALSE(hasRung());
    EXPECT_TRUE(agent.isQuiet(SIP_RING));
    EXPECT_EQ(media->judgedOffer, "their offer");
    EXPECT_EQ(history("missed", count).count("1"), count);
    // The next one rings.
    media->fit = CALL_FITS;
    arrives(arrival(IN + uint32_t(count)));
    EXPECT_EQ(nextMedia(SIP_RING), "");
    EXPECT_TRUE(hasRung());
}

TEST_F(SipUnfit, WhoTalksIsNotHeldForIt)
{
    const int first = talksIn(IN);
    media->orders.clear();
    media->fit = CALL_NO_FORMAT;
    agent.tell(arrival(IN + 1, "201"));
    expectRefusal(IN + 1, 488, 305);
    EXPECT_TRUE(agent.isQuiet(SIP_MEDIA));
    ASSERT_EQ(calls().size(), 1);
    EXPECT_EQ(call().nId, first);
    EXPECT_FALSE(call().bHeld);
    EXPECT_EQ(call().eState, CALL_TALKING);
    EXPECT_EQ(media->orders, QStringList{"end"}) << "of the one that is refused";
}

TEST_F(SipUnfit, OneThatIsForwardedIsSoWhateverItOffers)
{
    nuxSetRegistryInt("/rundata/config/user/user.ini", "AlwaysForward", "bEnable", 1);
    nuxSetRegistryString("/rundata/config/user/user.ini", "AlwaysForward", "strTarget", "555");
    media->fit = CALL_NO_SOUND;
    agent.tell(arrival(IN));
    const auto* deflect = agent.next<tagSipTarget>(SIP_DEFLECT);
    ASSERT_TRUE(deflect);
    EXPECT_STREQ(deflect->szTarget, "555");
}

TEST_F(SipUnfit, ABodyThatTheAgentCannotReadIsRefusedAsItSays)
{
    tagSipArrived record = arrival(IN, "200", "");
    record.nRefusal = 415;
    agent.tell(record);
    expectRefusal(IN, 415, 0);
    EXPECT_EQ(media->nJudged, 0);
    ASSERT_TRUE(waitsForEnd());
    EXPECT_EQ(lastEnded().eEnd, CALL_UNFIT);
    EXPECT_FALSE(hasRung());
}

TEST_F(SipUnfit, WhoWantsAnOfferIsNotJudged)
{
    media->fit = CALL_NO_FORMAT;
    arrives(arrival(IN, "200", ""));
    EXPECT_EQ(nextMedia(SIP_RING), "");
    EXPECT_EQ(media->nJudged, 0);
}

TEST_F(SipUnfit, ALineThatEncryptsSaysSoWhenItAsks)
{
    arrives(arrival(IN));
    EXPECT_FALSE(media->judgedWish.bEncrypt);
    writeAccount(0, readFile("/rundata/config/user/voip/sipAccount0.cfg") + "Encrypt=1\n");
    tellAccountChanged(0);
    arrives(arrival(IN + 1, "201"));
    EXPECT_TRUE(media->judgedWish.bEncrypt);
}

TEST_F(SipUnfit, WhileItIsAskedNobodyHearsOfTheCall)
{
    media->bJudges = false;
    agent.tell(arrival(IN, "200"));
    ASSERT_TRUE(kit::waitUntil([this] { return media->nJudged == 1; }));
    kit::settle();
    EXPECT_TRUE(calls().isEmpty());
    EXPECT_TRUE(heard.isEmpty());
    EXPECT_TRUE(agent.isQuiet(SIP_RING));
    // A second one is asked for beside it, and each has its own answer.
    agent.tell(arrival(IN + 1, "201"));
    ASSERT_TRUE(kit::waitUntil([this] { return media->nJudged == 2; }));
    media->tellJudged(2, CALL_NO_FORMAT);
    expectRefusal(IN + 1, 488, 305);
    media->tellJudged(2, CALL_FITS);
    media->tellJudged(1, CALL_FITS);
    EXPECT_EQ(nextMedia(SIP_RING), "");
    EXPECT_EQ(call().strNumber, "200");
    EXPECT_EQ(calls().size(), 1);
}

TEST_F(SipUnfit, WhatIsAskedForKeepsNobodyOut)
{
    media->bJudges = false;
    const int asked = SIP_JUDGED_MAX;
    for (int i = 0; i < asked; ++i)
        agent.tell(arrival(IN + uint32_t(i), "200"));
    ASSERT_TRUE(kit::waitUntil([&] { return media->nJudged == asked; }));
    agent.tell(arrival(IN + uint32_t(asked), "201")); // no agent of ours has more
    expectRefusal(IN + uint32_t(asked), 486, 0);
    media->tellJudged(1, CALL_NO_FORMAT);
    expectRefusal(IN, 488, 305);
    for (const int question : {3, 5}) {
        media->tellJudged(question, CALL_FITS);
        EXPECT_EQ(nextMedia(SIP_RING), "");
    }
    EXPECT_EQ(calls().size(), SIP_CALLS_MAX);
    media->tellJudged(4, CALL_NO_FORMAT);
    expectRefusal(IN + 3, 488, 305);
    EXPECT_EQ(calls().size(), SIP_CALLS_MAX);
}

TEST_F(SipUnfit, OneThatFindsNoRoomAnyMoreIsBusyAndNobodySeesIt)
{
    media->bJudges = false;
    for (uint32_t i = 0; i < 3; ++i)
        agent.tell(arrival(IN + i, QByteArray::number(200 + i)));
    ASSERT_TRUE(kit::waitUntil([&] { return media->nJudged == 3; }));
    for (const int question : {1, 2}) {
        media->tellJudged(question, CALL_FITS);
        EXPECT_EQ(nextMedia(SIP_RING), "");
    }
    const qsizetype told = heard.size();
    media->tellJudged(3, CALL_FITS);
    expectRefusal(IN + 2, 486, 0);
    EXPECT_TRUE(agent.isQuiet(SIP_RING));
    EXPECT_EQ(calls().size(), SIP_CALLS_MAX);
    ASSERT_EQ(heard.size(), told + 1) << "its end alone";
    EXPECT_EQ(lastEnded().strNumber, "202");
    EXPECT_EQ(lastEnded().eEnd, CALL_BUSY);
    EXPECT_EQ(media->orders, QStringList{"end"});
    // Room that is there again is the next one's.
    EXPECT_TRUE(phoneService::instance().hangUp(call().nId));
    media->bJudges = true;
    arrives(arrival(IN + 3, "203"));
    EXPECT_EQ(nextMedia(SIP_RING), "");
}

TEST_F(SipUnfit, AnAnswerThatCannotBeMadeIsToldToBothAndWhoWasHeldIsBack)
{
    const int first = talksIn(IN);
    const struct
    {
        bool bMissing;
        uint32_t nStatus, nWarning;
        const char* szReason;
    } all[] = {{false, 488, 399, "The two phones have no sound in common"},
               {true, 500, 0, "Sound is not available at present"}};
    uint32_t wire = IN + 1;
    int ended = 0;
    for (const auto& each : all) {
        const int second = arrives(arrival(wire, "201"));
        EXPECT_EQ(nextMedia(SIP_RING), "");
        media->bEmpty = true;
        media->bMissing = each.bMissing;
        EXPECT_TRUE(phoneService::instance().answer(second));
        expectRefusal(wire++, each.nStatus, each.nWarning);
        ASSERT_TRUE(waitsForEnd(++ended));
        media->bEmpty = media->bMissing = false;
        const auto failed = std::find_if(heard.rbegin(), heard.rend(),
                                         [](const tagCall& call) { return call.eState == CALL_ENDED; });
        EXPECT_EQ(failed->eEnd, CALL_FAILED);
        EXPECT_EQ(failed->strReason, each.szReason);
        ASSERT_EQ(calls().size(), 1);
        EXPECT_EQ(call().nId, first);
        EXPECT_FALSE(call().bHeld);
        EXPECT_FALSE(media->stills[first]);
        kit::settle();
    }
}

TEST_F(SipUnfit, WhoWantsAnOfferAndAnswersItWithNothingInCommonIsHungUpOnAndWhoWasHeldIsBack)
{
    const int first = talksIn(IN);
    uint32_t wire = IN + 1;
    int ended = 0;
    for (const char* answer : {"their answer", ""}) {
        SCOPED_TRACE(answer);
        const int second = arrives(arrival(wire, "201", ""));
        EXPECT_EQ(nextMedia(SIP_RING), "");
        EXPECT_TRUE(phoneService::instance().answer(second));
        const auto* hold = agent.next<tagSipMedia>(SIP_MEDIA);
        ASSERT_TRUE(hold);
        EXPECT_EQ(hold->head.nId, IN);
        EXPECT_EQ(nextMedia(SIP_ANSWER).left(5), "offer");
        tellMedia(SIP_TALK, IN, "their hold");
        tellMedia(SIP_TALK, wire, answer);
        if (*answer) {
            EXPECT_EQ(media->orders.last(), "agree their answer");
            media->tellUnfit(second);
        }
        const auto* over = agent.next<tagSipStatus>(SIP_HANG_UP);
        ASSERT_TRUE(over);
        EXPECT_EQ(over->head.nId, wire++);
        EXPECT_EQ(over->nStatus, 488u);
        ASSERT_TRUE(waitsForEnd(++ended));
        ASSERT_EQ(calls().size(), 1);
        EXPECT_EQ(call().nId, first);
        EXPECT_FALSE(call().bHeld);
        const auto* resumed = agent.next<tagSipMedia>(SIP_MEDIA);
        ASSERT_TRUE(resumed);
        EXPECT_EQ(resumed->head.nId, IN);
        tellMedia(SIP_TALK, IN, "their answer");
    }
}

TEST_F(SipUnfit, WhoGivesUpBeforeItRingsIsMissed)
{
    media->bJudges = false;
    agent.tell(arrival(IN, "200"));
    tellEnd(IN, SIP_CANCELLED);
    ASSERT_TRUE(waitsForEnd());
    EXPECT_EQ(lastEnded().eEnd, CALL_MISSED);
    EXPECT_EQ(lastEnded().strNumber, "200");
    media->tellJudged(1, CALL_FITS);
    EXPECT_TRUE(agent.isQuiet(SIP_RING));
    EXPECT_TRUE(calls().isEmpty());
    agent.tell(arrival(IN + 1, "201"));
    tellEnd(IN + 1, SIP_ELSEWHERE);
    ASSERT_TRUE(waitsForEnd(2));
    EXPECT_EQ(lastEnded().eEnd, CALL_HUNG_UP);
    EXPECT_EQ(lastEnded().strReason, "Another phone has answered");
    agent.tell(arrival(IN + 2, "202"));
    ASSERT_TRUE(kit::waitUntil([this] { return media->nJudged == 3; }));
    agent.leave();
    ASSERT_TRUE(waitsForEnd(3));
    EXPECT_EQ(lastEnded().eEnd, CALL_MISSED);
    EXPECT_EQ(lastEnded().strNumber, "202");
}

TEST_F(SipUnfit, WhoCannotTakeThePlaceOfAnotherLeavesHim)
{
    const int first = talksIn(IN);
    const qsizetype told = heard.size();
    media->fit = CALL_NO_FORMAT;
    tagSipArrived record = arrival(IN + 1, "201");
    record.nReplaces = IN;
    agent.tell(record);
    expectRefusal(IN + 1, 488, 305);
    EXPECT_EQ(call().nId, first);
    EXPECT_EQ(calls().size(), 1);
    EXPECT_EQ(heard.size(), told) << "he has not called";
}

TEST_F(SipUnfit, CallsThatDoNotRingDoNotTakeThePlacesOfThoseThatDid)
{
    constexpr int kBefore = CALL_HISTORY_MAX - CALL_HISTORY_SILENT_MAX;
    nKept = CALL_HISTORY_MAX;
    QByteArray before = "<CallHistory>\n";
    for (int i = 0; i < CALL_HISTORY_MAX; ++i)
        before += "<Call number=\"b" + QByteArray::number(i) +
                  "\" name=\"\" line=\"1\" direction=\"in\" "
                  "missed=\"1\" seconds=\"0\"/>\n";
    writeFile("/rundata/data/callHistory.xml", before + "</CallHistory>\n");
    arrives(arrival(IN, "200"));
    tellEnd(IN, SIP_CANCELLED);
    ASSERT_TRUE(waitsForEnd());
    media->fit = CALL_NO_FORMAT;
    const int flood = 2 * CALL_HISTORY_SILENT_MAX;
    for (int i = 1; i <= flood; ++i) {
        agent.tell(arrival(IN + uint32_t(i), QByteArray::number(1000 + i)));
        ASSERT_TRUE(waitsForEnd(1 + i));
    }
    const auto isWhole = [&] {
        const QStringList numbers = history("number", CALL_HISTORY_MAX);
        return numbers.value(0) == QString::number(1000 + flood) &&
               numbers.value(CALL_HISTORY_SILENT_MAX) == "200" &&
               numbers.value(CALL_HISTORY_MAX - 1) == QString("b%1").arg(kBefore - 2);
    };
    EXPECT_TRUE(kit::waitUntil(isWhole)) << history("number", CALL_HISTORY_MAX).join(' ').toStdString();
    EXPECT_EQ(history("silent", CALL_HISTORY_MAX).count("1"), CALL_HISTORY_SILENT_MAX);
}

TEST_F(SipUnfit, OneCallerDoesNotTakeThePlacesOfOthersWhoDidNotRing)
{
    media->fit = CALL_NO_FORMAT;
    int count = 0;
    const auto call = [&](const QByteArray& number) {
        agent.tell(arrival(IN + uint32_t(count), number.constData()));
        ASSERT_TRUE(waitsForEnd(++count));
    };
    call("201");
    for (int i = 0; i < 2 * CALL_HISTORY_SILENT_OF_ONE_MAX; ++i)
        call("200");
    constexpr int kAnonymous = CALL_HISTORY_SILENT_OF_ONE_MAX + 2;
    for (int i = 0; i < kAnonymous; ++i)
        call(""); // nobody knows how many they are
    const int kept = nKept = 1 + CALL_HISTORY_SILENT_OF_ONE_MAX + kAnonymous;
    const auto numbers = [&] { return history("number", kept); };
    EXPECT_TRUE(kit::waitUntil([&] { return numbers().count("") == kAnonymous; }));
    EXPECT_EQ(numbers().count("200"), CALL_HISTORY_SILENT_OF_ONE_MAX);
    EXPECT_EQ(numbers().value(kept - 1), "201");
}

} // namespace
