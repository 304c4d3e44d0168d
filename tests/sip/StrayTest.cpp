// Requests that name nothing that is here, come twice, or end by themselves.
#include "tests/sip/callTest.h"

namespace {

constexpr uint32_t kFirst = SIP_CALL_FIRST_INCOMING;

class SipStrays : public SipCalls
{
protected:
    // What the agent says to a request with names that it never gave.
    QByteArray toGhost(const QByteArray& method, int number)
    {
        const QByteArray ghost =
            "SIP/2.0 200 OK\r\nFrom: <sip:200@127.0.0.1>;tag=caller\r\nTo: <sip:" + contact +
            "@127.0.0.1>;tag=ghost\r\nCall-ID: ghost\r\n\r\n";
        peer->send(within(method, ghost, number), agent.port());
        return peer->receive("SIP/2.0 ").split('\r').first();
    }
};

} // namespace

TEST_F(SipStrays, WhatIsSentWithinACallThatIsNotThereIsToldSo)
{
    begin();
    int number = 5;
    for (const char* method : {"INFO", "BYE", "UPDATE", "REFER", "NOTIFY", "INVITE"}) {
        const QByteArray status = toGhost(method, ++number);
        EXPECT_TRUE(status.startsWith("SIP/2.0 481")) << method << ": " << status.constData();
    }
}

TEST_F(SipStrays, WhatTheOtherSideTellsInACallIsTaken)
{
    begin();
    ASSERT_EQ(talkIn("tells"), kFirst);
    peer->send(within("INFO", lastAnswer, 2, "Content-Type: application/dtmf-relay", "Signal=1\r\n"),
               agent.port());
    EXPECT_EQ(headerOf(peer->receive("SIP/2.0 200"), "CSeq").toStdString(), "2 INFO");
}

TEST_F(SipStrays, ACallThatComesByTwoWaysRingsOnce)
{
    begin();
    const QByteArray invite = inviteText("twice");
    peer->send(invite, agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst));
    tellMedia(SIP_RING, kFirst, "");
    EXPECT_NE(peer->receive("SIP/2.0 180").toStdString(), "");
    peer->send(QByteArray(invite).replace("branch=z9hG4bKtwice", "branch=z9hG4bKother"), agent.port());
    const QByteArray merged = peer->receive("SIP/2.0 482");
    EXPECT_TRUE(headerOf(merged, "Via").contains("z9hG4bKother")) << merged.constData();
    EXPECT_FALSE(nextArrived(200));
    tellMedia(SIP_ANSWER, kFirst, "v=0\r\ns=answer\r\n");
    lastAnswer = peer->receive("SIP/2.0 200");
    acknowledge(lastAnswer);
    EXPECT_TRUE(next<tagSipMedia>(SIP_TALK, kFirst));
    peer->send(QByteArray(invite).replace("branch=z9hG4bKtwice", "branch=z9hG4bKlate"), agent.port());
    EXPECT_TRUE(headerOf(peer->receive("SIP/2.0 482"), "Via").contains("z9hG4bKlate"));
}

TEST_F(SipStrays, WhoAsksForTwoCallsAtOnceGetsNeither)
{
    begin();
    ASSERT_EQ(talkIn("two"), kFirst);
    peer->send(within("REFER", lastAnswer, 2, "Refer-To: <sip:3@127.0.0.1>\r\nRefer-To: <sip:4@127.0.0.1>"),
               agent.port());
    EXPECT_NE(peer->receive("SIP/2.0 400").toStdString(), "");
    EXPECT_FALSE(next<tagSipReferred>(SIP_REFERRED, kFirst, 200));
}

TEST_F(SipStrays, ACallRingsNoLongerThanItsCallerWaits)
{
    begin();
    peer->send(inviteText("short", "Expires: 1"), agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst));
    tellMedia(SIP_RING, kFirst, "");
    acknowledge(peer->receive("SIP/2.0 487"));
    expectEnd(kFirst, SIP_CANCELLED, 0);
}

TEST_F(SipStrays, WhoWasAnsweredInTimeTalksOn)
{
    begin();
    peer->send(inviteText("answered", "Expires: 1"), agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst));
    tellMedia(SIP_ANSWER, kFirst, "v=0\r\ns=answer\r\n");
    acknowledge(peer->receive("SIP/2.0 200"));
    ASSERT_TRUE(next<tagSipMedia>(SIP_TALK, kFirst));
    EXPECT_FALSE(next<tagSipEnded>(SIP_ENDED, kFirst, 1500));
}

TEST_F(SipStrays, ACallerWhoWaitsLongRingsAsLongAsThePhoneHasIt)
{
    tagSipSetup setup = AgentProcess::quickSetup();
    setup.nRingSeconds = 1;
    begin(setup);
    peer->send(inviteText("long", "Expires: 600"), agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst));
    EXPECT_NE(peer->receive("SIP/2.0 480").toStdString(), "");
    expectEnd(kFirst, SIP_UNANSWERED, 480);
}

TEST_F(SipStrays, WhoSentACallOnAndDoesNotWantToBeNamedIsNot)
{
    begin();
    const QByteArray lines[] = {
        "Diversion: <sip:202@x>;privacy=full, <sip:203@x>;privacy=off;reason=no-answer",
        "Diversion: <sip:203@x>, \"A\" <sip:202@x>;reason=\"a,b\"; Privacy = \"FULL\"",
        "Diversion: sip:202@x;privacy=uri\r\nDiversion: <sip:203@x>;privacy=name",
        "History-Info: <sip:202@x?Privacy=history>;index=1, <sip:203@x>;index=1.1, "
        "<sip:204@x?Privacy=history>;index=1.1.1",
        "History-Info: <sip:202@x?Reason=SIP%3Bcause%3D302&Privacy=history%3Bcritical>;index=1, "
        "<sip:203@x>;index=1.1, <sip:204@x>;index=1.1.1",
        "Diversion: \"privacy=full\" <sip:203@x>;reason=\"; privacy=full\"",
        "Diversion: \"a;privacy=full;\" <sip:203@x>",
        "Privacy: history\r\nDiversion: <sip:203@x>\r\nHistory-Info: <sip:202@x>;index=1, "
        "<sip:204@x>;index=2"};
    uint32_t id = kFirst;
    for (const QByteArray& line : lines) {
        SCOPED_TRACE(line.toStdString());
        const QByteArray invite = inviteText("sent" + QByteArray::number(id), line);
        peer->send(invite, agent.port());
        const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, id);
        ASSERT_TRUE(arrived);
        ASSERT_EQ(arrived->nForwards, 1u);
        EXPECT_STREQ(arrived->szForwardedBy[0], "203");
        takeBack(invite);
        expectEnd(id++, SIP_CANCELLED, 0);
    }
}

TEST_F(SipStrays, ACallerWhoHidesItsHistoryHidesAllWhoSentItOn)
{
    begin();
    peer->send(
        inviteText("past", "Privacy: History\r\nHistory-Info: <sip:202@x>;index=1, <sip:203@x>;index=1.1"),
        agent.port());
    const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst);
    ASSERT_TRUE(arrived);
    EXPECT_EQ(arrived->nForwards, 0u);
    EXPECT_EQ(arrived->bAnonymous, 0u) << "it hides nothing else";
}
