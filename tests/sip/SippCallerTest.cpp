// SIPp calls the line: what it offers, asks for and takes back.
#include "tests/kit/plain/ports.h"
#include "tests/sip/sippTest.h"
#include <cstring>

TEST_F(SipSipp, EarlyMediaAreAcknowledgedByPrackAndTheAnswerComesAfterIt)
{
    calls(SippScenario(SippScenario::CALLER)
              .asks("INVITE", "Supported: 100rel", kOffer)
              .mayHear(100)
              .hears(183)
              .with("Require:.*100rel")
              .keeps("early", "RSeq")
              .with("s=early")
              .asks("PRACK", "RAck:[$early] 1 INVITE")
              .hears(200)
              .with("CSeq: 2 PRACK")
              .hears(200)
              .with("CSeq: 1 INVITE")
              .asks("ACK")
              .asks("BYE")
              .hears(200));
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst));
    tellMedia(SIP_RING, kFirst, "v=0\r\ns=early\r\n");
    tellMedia(SIP_ANSWER, kFirst, "v=0\r\ns=early\r\n");
    ASSERT_TRUE(next<tagSipMedia>(SIP_TALK, kFirst));
    expectDone(kFirst);
}

TEST_F(SipSipp, TheOtherSideHoldsAndResumesAndSoDoesThePhone)
{
    calls(callerTalks()
              .asks("INVITE", {}, "v=0\ns=hold\na=sendonly")
              .mayHear(100)
              .hears(200)
              .with("a=recvonly")
              .asks("ACK")
              .asks("INVITE", {}, "v=0\ns=resume\na=sendrecv")
              .mayHear(100)
              .hears(200)
              .with("a=sendrecv")
              .asks("ACK")
              .hears("INVITE")
              .with("a=sendonly")
              .answers("200 OK", {}, "v=0\ns=held\na=recvonly")
              .hears("ACK")
              .asks("BYE")
              .hears(200));
    takeCall();
    for (const char* ways : {"sendonly recvonly", "sendrecv sendrecv"}) {
        SCOPED_TRACE(ways);
        const QList<QByteArray> offerAndAnswer = QByteArray(ways).split(' ');
        const auto* offer = next<tagSipMedia>(SIP_OFFER, kFirst);
        ASSERT_TRUE(offer);
        EXPECT_TRUE(QByteArray(offer->szSdp).contains("a=" + offerAndAnswer[0])) << offer->szSdp;
        tellMedia(SIP_MEDIA, kFirst, ("v=0\r\ns=here\r\na=" + offerAndAnswer[1] + "\r\n").constData());
        ASSERT_TRUE(next<tagSipMedia>(SIP_TALK, kFirst));
    }
    tellMedia(SIP_MEDIA, kFirst, "v=0\r\ns=here\r\na=sendonly\r\n");
    expectTalk(kFirst, "v=0\r\ns=held\r\na=recvonly\r\n");
    expectDone(kFirst);
}

TEST_F(SipSipp, AnUpdateOffersOtherMediaAndIsAnswered)
{
    calls(callerTalks()
              .asks("UPDATE", {}, "v=0\ns=update")
              .hears(200)
              .with("CSeq: 2 UPDATE")
              .with("s=updated")
              .asks("BYE")
              .hears(200));
    takeCall();
    const auto* offer = next<tagSipMedia>(SIP_OFFER, kFirst);
    ASSERT_TRUE(offer);
    EXPECT_STREQ(offer->szSdp, "v=0\r\ns=update\r\n");
    tellMedia(SIP_MEDIA, kFirst, "v=0\r\ns=updated\r\n");
    expectDone(kFirst);
}

TEST_F(SipSipp, ASessionThatIsTooShortIsRefusedAndALongerOneIsAgreedOn)
{
    calls(SippScenario(SippScenario::CALLER)
              .asks("INVITE", "Supported: timer\nSession-Expires: 30", kOffer)
              .mayHear(100)
              .hears(422)
              .with("Min-SE: 90")
              .asks("ACK")
              .asks("INVITE", "Supported: timer\nSession-Expires: 120\nMin-SE: 90", kOffer)
              .mayHear(100)
              .mayHear(180)
              .hears(200)
              .with("Session-Expires: 120")
              .asks("ACK")
              .asks("BYE")
              .hears(200));
    takeCall();
    expectDone(kFirst);
}

TEST_F(SipSipp, WhoWantsAnOfferEarlyRingsWithItAndAnswersByPrack)
{
    calls(SippScenario(SippScenario::CALLER)
              .asks("INVITE", "Require: 100rel")
              .mayHear(100)
              .hears(180)
              .with("s=here")
              .keeps("early", "RSeq")
              .asks("PRACK", "RAck:[$early] 1 INVITE", "v=0\ns=there")
              .hears(200)
              .with("CSeq: 2 PRACK")
              .hears(200)
              .with("CSeq: 1 INVITE")
              .asks("ACK")
              .asks("BYE")
              .hears(200));
    const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst);
    ASSERT_TRUE(arrived);
    EXPECT_EQ(arrived->bWantsEarly, 1u);
    tellMedia(SIP_RING, kFirst, "v=0\r\ns=here\r\n");
    const auto* early = next<tagSipMedia>(SIP_EARLY, kFirst);
    ASSERT_TRUE(early);
    EXPECT_STREQ(early->szSdp, "v=0\r\ns=there\r\n");
    tellMedia(SIP_ANSWER, kFirst, "");
    expectTalk(kFirst, "v=0\r\ns=there\r\n");
    expectDone(kFirst);
}

TEST_F(SipSipp, WhoGivesUpAsItWasAnsweredElsewhereSaysSo)
{
    calls(SippScenario(SippScenario::CALLER)
              .asks("INVITE", {}, kOffer)
              .mayHear(100)
              .hears(180)
              .asks("CANCEL", "Reason: SIP;cause=200;text=\"Call completed elsewhere\"")
              .hears(200)
              .with("CSeq: 1 CANCEL")
              .hears(487)
              .asks("ACK"));
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst));
    tellMedia(SIP_RING, kFirst, "");
    expectEnd(kFirst, SIP_ELSEWHERE, 0);
    sipp.expectDone();
}

TEST_F(SipSipp, WhoGivesUpWhenTheAnswerIsUnderWayTalksUntilHeHangsUp)
{
    calls(SippScenario(SippScenario::CALLER)
              .asks("INVITE", {}, kOffer)
              .mayHear(100)
              .hears(200)
              .asks("CANCEL")
              .hears(481)
              .with("CSeq: 1 CANCEL")
              .asks("ACK")
              .asks("BYE")
              .hears(200));
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst));
    tellMedia(SIP_ANSWER, kFirst, "v=0\r\ns=answer\r\n");
    ASSERT_TRUE(next<tagSipMedia>(SIP_TALK, kFirst));
    expectDone(kFirst);
}

TEST_F(SipSipp, TheOtherSideAsksForAnotherCallAndIsToldHowItGoes)
{
    calls(callerTalks()
              .asks("REFER", "Refer-To: <sip:301@127.0.0.1>")
              .hears(202)
              .hears("NOTIFY")
              .with("SIP/2.0 100")
              .answers("200 OK")
              .hears("NOTIFY")
              .with("Subscription-State: terminated")
              .with("SIP/2.0 486")
              .answers("200 OK")
              .asks("BYE")
              .hears(200));
    takeCall();
    const auto* referred = next<tagSipReferred>(SIP_REFERRED, kFirst);
    ASSERT_TRUE(referred);
    auto record = sipWire::make<tagSipDial>(SIP_DIAL, 1);
    record.nReferrer = kFirst;
    sipWire::setText(record.szTarget, referred->szTarget);
    sipWire::setText(record.szSdp, "v=0\r\ns=offer\r\n");
    agent.tell(record);
    const QByteArray invite = peer->receive("INVITE sip:301@127.0.0.1");
    ASSERT_FALSE(invite.isEmpty());
    peer->reply(invite, "486 Busy Here");
    expectEnd(1, SIP_REFUSED, 486);
    expectDone(kFirst);
}

TEST_F(SipSipp, ACallTakesThePlaceOfAnotherThatTalks)
{
    begin(AgentProcess::calmSetup());
    ASSERT_EQ(talkIn("replaced"), kFirst);
    const QByteArray tag = headerOf(lastAnswer, "To");
    sipp.setLimit(40);
    sipp.startText(callerTalks("Require: replaces\nReplaces: replaced;to-tag=" +
                               tag.mid(tag.indexOf(";tag=") + 5) + ";from-tag=caller")
                       .asks("BYE")
                       .hears(200)
                       .text(),
                   kit::freePort(), agent.port(), 1, {"-s", contact});
    const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst + 1);
    ASSERT_TRUE(arrived);
    EXPECT_EQ(arrived->nReplaces, kFirst);
    tellMedia(SIP_ANSWER, kFirst + 1, "v=0\r\ns=answer\r\n");
    const QByteArray bye = peer->receive("BYE");
    EXPECT_EQ(headerOf(bye, "Call-ID").toStdString(), "replaced");
    peer->reply(bye, "200 OK");
    expectEnd(kFirst, SIP_REPLACED, 0);
    expectDone(kFirst + 1);
}

TEST_F(SipSipp, AFloodOfCallsIsBusyAndTheTwoThatTalkGoOn)
{
    begin(AgentProcess::calmSetup());
    ASSERT_EQ(talkIn("one"), kFirst);
    ASSERT_EQ(talkIn("two"), kFirst + 1);
    const int count = qEnvironmentVariableIsSet("HX_LONG") ? 5000 : 300;
    sipp.setLimit(120);
    sipp.startText(SippScenario(SippScenario::CALLER)
                       .asks("INVITE", {}, kOffer)
                       .mayHear(100)
                       .hears(486)
                       .asks("ACK")
                       .text(),
                   kit::freePort(), agent.port(), count, {"-s", contact, "-r", "200"});
    sipp.expectDone();
    EXPECT_FALSE(nextArrived(100));
    for (const uint32_t id : {kFirst, kFirst + 1}) {
        tellStatus(SIP_HANG_UP, id);
        peer->reply(peer->receive("BYE"), "200 OK");
        expectEnd(id, SIP_HUNG_UP, 0);
    }
}

TEST_F(SipSipp, CallsOverAWayThatLosesATenthAreMadeOnceAndEnd)
{
    const uint32_t count = qEnvironmentVariableIsSet("HX_LONG") ? 60 : 5;
    calls(callerTalks().asks("BYE").hears(200), int(count), {"-lost", "10", "-l", "1"});
    for (uint32_t id = kFirst; id < kFirst + count; ++id) {
        const auto* arrived = nextArrived(AgentProcess::WAIT_MS * 2);
        ASSERT_TRUE(arrived);
        ASSERT_EQ(arrived->head.nId, id);
        tellMedia(SIP_ANSWER, id, "v=0\r\ns=answer\r\n");
        // Without SIP_TALK, perhaps: the acknowledgement may be what was lost.
        const auto* ended = next<tagSipEnded>(SIP_ENDED, id, AgentProcess::WAIT_MS * 2);
        ASSERT_TRUE(ended);
        EXPECT_EQ(ended->eEnding, uint32_t(SIP_HUNG_UP)) << ended->szReason;
    }
    sipp.expectDone();
    EXPECT_FALSE(nextArrived(100));
}

TEST_F(SipSipp, WhoNeverAcknowledgesTheAnswerIsHungUpOn)
{
    if (!qEnvironmentVariableIsSet("HX_LONG"))
        GTEST_SKIP() << "takes half a minute: ./test --long";
    calls(SippScenario(SippScenario::CALLER)
              .asks("INVITE", {}, kOffer)
              .mayHear(100)
              .hears(200)
              .hears("BYE")
              .answers("200 OK"));
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst));
    tellMedia(SIP_ANSWER, kFirst, "v=0\r\ns=answer\r\n");
    const auto* ended = next<tagSipEnded>(SIP_ENDED, kFirst, 60000);
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->eEnding, uint32_t(SIP_BROKEN));
    sipp.expectDone();
}

TEST_F(SipSipp, TheServerTellsOfMessagesThatNobodyAskedFor)
{
    calls(SippScenario(SippScenario::CALLER)
              .asks("NOTIFY",
                    "Event: message-summary\nSubscription-State: active\n"
                    "Content-Type: application/simple-message-summary",
                    "Messages-Waiting: yes\nVoice-Message: 3/8 (1/2)")
              .hears(200));
    const auto* messages = next<tagSipMessages>(SIP_MESSAGES, 0);
    while (messages && !messages->bKnown)
        messages = next<tagSipMessages>(SIP_MESSAGES, 0);
    ASSERT_TRUE(messages);
    EXPECT_EQ(messages->nNew, 3u);
    EXPECT_EQ(messages->nOld, 8u);
    sipp.expectDone();
}

namespace {

struct tagRefusal
{
    int nStatus; // of the phone; 302: it sends the call on
    const char* pLines;
    const char* pReply;
};

void PrintTo(const tagRefusal& refusal, std::ostream* stream)
{
    *stream << refusal.pReply;
}

class SipSippRefusals : public SipSipp, public ::testing::WithParamInterface<tagRefusal>
{
};

} // namespace

TEST_P(SipSippRefusals, ACallIsRefusedOrSentOnAndTheCallerAcknowledges)
{
    const tagRefusal& refusal = GetParam();
    calls(SippScenario(SippScenario::CALLER)
              .asks("INVITE", refusal.pLines, kOffer)
              .mayHear(100)
              .hears(refusal.nStatus)
              .with(refusal.pReply)
              .asks("ACK"));
    const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst);
    ASSERT_TRUE(arrived);
    EXPECT_EQ(arrived->bAnonymous, refusal.nStatus == 433 ? 1u : 0u);
    if (refusal.nStatus == 302)
        tellTarget(SIP_DEFLECT, kFirst, "20#1");
    else
        tellStatus(SIP_REFUSE, kFirst, uint32_t(refusal.nStatus));
    expectEnd(kFirst, refusal.nStatus == 302 ? SIP_REDIRECTED : SIP_REFUSED, uint32_t(refusal.nStatus));
    sipp.expectDone();
}

INSTANTIATE_TEST_SUITE_P(Each, SipSippRefusals,
                         ::testing::Values(tagRefusal{486, "", "486 Busy Here"},
                                           tagRefusal{603, "", "603 Decline"},
                                           tagRefusal{433, "Privacy: id", "433 Anonymity Disallowed"},
                                           tagRefusal{302, "", "Contact: <sip:20%231@127\\.0\\.0\\.1"}));

namespace {

class SipSippIntercom : public SipSipp, public ::testing::WithParamInterface<const char*>
{
};

} // namespace

TEST_P(SipSippIntercom, AHeaderAsksForAnAnswerWithoutAHand)
{
    calls(callerTalks(GetParam()).asks("BYE").hears(200));
    const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst);
    ASSERT_TRUE(arrived);
    EXPECT_EQ(arrived->bAutoAnswer, 1u);
    tellMedia(SIP_ANSWER, kFirst, "v=0\r\ns=answer\r\n");
    expectDone(kFirst);
}

INSTANTIATE_TEST_SUITE_P(Each, SipSippIntercom,
                         ::testing::Values("Call-Info: <sip:127.0.0.1>;answer-after=0",
                                           "Alert-Info: <http://127.0.0.1>;info=alert-autoanswer",
                                           "Answer-Mode: Auto"));
