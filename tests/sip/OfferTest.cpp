// Media that are agreed on anew, and what both sides say of them at the same time.
#include "tests/sip/callTest.h"
#include <cstring>

namespace {

constexpr uint32_t kFirst = SIP_CALL_FIRST_INCOMING;
constexpr int kOwnerWaitsMs = 2100; // at least, after a collision
constexpr const char* kSdp = "Content-Type: application/sdp";

class SipOffers : public SipCalls
{
protected:
    // The other side offers by UPDATE in the call of lastAnswer.
    void sendUpdate(int number, const QByteArray& sdp)
    {
        peer->send(within("UPDATE", lastAnswer, number, sdp.isEmpty() ? "" : kSdp, sdp), agent.port());
    }
    void expectTalk(uint32_t id, const char* sdp)
    {
        const auto* talk = next<tagSipMedia>(SIP_TALK, id);
        ASSERT_TRUE(talk);
        EXPECT_TRUE(strstr(talk->szSdp, sdp)) << talk->szSdp;
    }
};

} // namespace

TEST_F(SipOffers, OffersThatMeetAreMadeAgainByTheOwnerOfTheCallLast)
{
    begin();
    for (const bool isOwner : {true, false}) {
        SCOPED_TRACE(isOwner);
        const uint32_t id = isOwner ? talkOut(1) : talkIn("met");
        ASSERT_NE(id, 0u);
        tellMedia(SIP_MEDIA, id, "v=0\r\na=sendonly\r\n");
        const QByteArray offer = peer->receive("INVITE");
        peer->reply(offer, "491 Request Pending");
        EXPECT_FALSE(agent.next(SIP_TALK, id, 100));
        if (isOwner) {
            EXPECT_EQ(peer->receive("INVITE", kOwnerWaitsMs - 300).toStdString(), "");
        }
        const QByteArray again = peer->receive("INVITE");
        EXPECT_TRUE(again.endsWith("a=sendonly\r\n")) << again.constData();
        EXPECT_NE(headerOf(again, "CSeq").toStdString(), headerOf(offer, "CSeq").toStdString());
        peer->reply(again, "200 OK", withSdp(), "v=0\r\na=recvonly\r\n");
        expectTalk(id, "a=recvonly");
    }
}

TEST_F(SipOffers, OfSeveralOffersTheNewestIsMadeNext)
{
    begin();
    const uint32_t id = talkOut(1);
    ASSERT_NE(id, 0u);
    for (const char* sdp : {"v=0\r\ns=one\r\n", "v=0\r\ns=two\r\n", "v=0\r\ns=three\r\n"})
        tellMedia(SIP_MEDIA, id, sdp);
    const QByteArray first = peer->receive("INVITE");
    EXPECT_TRUE(first.endsWith("s=one\r\n")) << first.constData();
    EXPECT_EQ(peer->receive("INVITE", 100).toStdString(), "");
    peer->reply(first, "200 OK", withSdp(), "v=0\r\ns=eins\r\n");
    const QByteArray last = peer->receive("INVITE");
    EXPECT_TRUE(last.endsWith("s=three\r\n")) << last.constData();
    peer->reply(last, "200 OK", withSdp(), "v=0\r\ns=drei\r\n");
    expectTalk(id, "s=eins");
    expectTalk(id, "s=drei");
}

TEST_F(SipOffers, AnUpdateThatOffersIsAnsweredByThePhone)
{
    begin();
    const uint32_t id = talkIn("updated");
    ASSERT_NE(id, 0u);
    EXPECT_TRUE(headerOf(lastAnswer, "Allow").contains("UPDATE")) << lastAnswer.constData();
    sendUpdate(2, "v=0\r\na=sendonly\r\n");
    const auto* offer = next<tagSipMedia>(SIP_OFFER, id);
    ASSERT_TRUE(offer);
    EXPECT_TRUE(strstr(offer->szSdp, "a=sendonly"));
    tellMedia(SIP_MEDIA, id, "v=0\r\na=recvonly\r\n");
    const QByteArray answer = peer->receive("SIP/2.0 ");
    EXPECT_TRUE(answer.startsWith("SIP/2.0 200")) << answer.constData();
    EXPECT_TRUE(answer.endsWith("a=recvonly\r\n")) << answer.constData();
    expectTalk(id, "a=sendonly");

    sendUpdate(3, "");
    EXPECT_NE(peer->receive("SIP/2.0 200").toStdString(), "");
    EXPECT_TRUE(agent.isQuiet(100));
}

TEST_F(SipOffers, AnUpdateThatMeetsAnotherOfferIsRefused)
{
    tagSipSetup setup = AgentProcess::quickSetup();
    setup.nOfferMs = 1000;
    begin(setup);
    const uint32_t id = talkIn("meets");
    ASSERT_NE(id, 0u);
    tellMedia(SIP_MEDIA, id, "v=0\r\ns=ours\r\n");
    const QByteArray ours = peer->receive("INVITE");
    sendUpdate(2, "v=0\r\ns=theirs\r\n");
    EXPECT_NE(peer->receive("SIP/2.0 491").toStdString(), "");
    peer->reply(ours, "200 OK", withSdp(), "v=0\r\ns=agreed\r\n");
    expectTalk(id, "s=agreed");

    sendUpdate(3, "v=0\r\ns=one\r\n");
    ASSERT_TRUE(next<tagSipMedia>(SIP_OFFER, id));
    sendUpdate(4, "v=0\r\ns=two\r\n");
    const QByteArray second = peer->receive("SIP/2.0 500");
    EXPECT_NE(headerOf(second, "Retry-After").toStdString(), "");
    // The phone says nothing to the first.
    EXPECT_EQ(headerOf(peer->receive("SIP/2.0 500"), "CSeq").toStdString(), "3 UPDATE");
}

TEST_F(SipOffers, AnUpdateBeforeTheCallTalksChangesNothing)
{
    begin();
    peer->send(inviteText("soon"), agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst));
    tellMedia(SIP_RING, kFirst, "");
    lastAnswer = peer->receive("SIP/2.0 180");
    sendUpdate(2, "v=0\r\ns=early\r\n");
    // The first offer has no answer yet (RFC 3311).
    EXPECT_NE(headerOf(peer->receive("SIP/2.0 500"), "Retry-After").toStdString(), "");
    tellMedia(SIP_ANSWER, kFirst, "v=0\r\ns=answer\r\n");
    acknowledge(peer->receive("SIP/2.0 200"));
    expectTalk(kFirst, "s=offer");
}

TEST_F(SipOffers, AnUpdateOfACallThatStillRingsThereIsAnsweredOnceTheFirstOfferIs)
{
    begin();
    dial(1, "300");
    lastInvite = peer->receive("INVITE");
    lastAnswer = UdpPeer::replyTo(lastInvite, "180 Ringing", withSdp().left(withSdp().indexOf('\r')));
    peer->answer(lastAnswer);
    ASSERT_TRUE(next<tagSipProgress>(SIP_PROGRESS, 1));
    sendUpdate(2, "v=0\r\ns=soon\r\n");
    EXPECT_NE(peer->receive("SIP/2.0 491").toStdString(), "");
    peer->reply(lastInvite, "183 Session Progress", "Require: 100rel\r\nRSeq: 17\r\n" + withSdp(),
                "v=0\r\ns=early\r\n");
    peer->reply(peer->receive("PRACK"), "200 OK");
    ASSERT_TRUE(next<tagSipProgress>(SIP_PROGRESS, 1));
    for (const bool isTaken : {true, false}) {
        sendUpdate(isTaken ? 3 : 4, isTaken ? "v=0\r\ns=moved\r\n" : "v=0\r\ns=refused\r\n");
        const auto* offer = next<tagSipMedia>(SIP_OFFER, 1);
        ASSERT_TRUE(offer);
        EXPECT_TRUE(strstr(offer->szSdp, isTaken ? "s=moved" : "s=refused")) << offer->szSdp;
        tellMedia(SIP_MEDIA, 1, isTaken ? "v=0\r\ns=here\r\n" : "");
        const QByteArray answer = peer->receive(isTaken ? "SIP/2.0 200" : "SIP/2.0 488");
        EXPECT_EQ(answer.endsWith("s=here\r\n"), isTaken) << answer.constData();
        EXPECT_FALSE(next<tagSipMedia>(SIP_TALK, 1, 200)) << "nobody has answered the call";
    }
    peer->reply(lastInvite, "200 OK", withSdp().left(withSdp().indexOf('\r')));
    EXPECT_NE(peer->receive("ACK").toStdString(), "");
    expectTalk(1, "s=moved");
}

TEST_F(SipOffers, AnUpdateThatThePhoneLeavesLyingWhileItRingsThereMayBeMadeAgain)
{
    tagSipSetup setup = AgentProcess::calmSetup();
    setup.nOfferMs = 300;
    begin(setup);
    dial(1, "300");
    lastInvite = peer->receive("INVITE");
    lastAnswer = UdpPeer::replyTo(lastInvite, "183 Session Progress",
                                  "Require: 100rel\r\nRSeq: 17\r\n" + withSdp(), "v=0\r\ns=early\r\n");
    peer->answer(lastAnswer);
    peer->reply(peer->receive("PRACK"), "200 OK");
    ASSERT_TRUE(next<tagSipProgress>(SIP_PROGRESS, 1));
    sendUpdate(2, "v=0\r\ns=moved\r\n");
    sendUpdate(3, "v=0\r\ns=again\r\n");
    for (const char* number : {"3 UPDATE", "2 UPDATE"}) {
        const QByteArray refused = peer->receive("SIP/2.0 500");
        EXPECT_EQ(headerOf(refused, "CSeq").toStdString(), number);
        EXPECT_NE(headerOf(refused, "Retry-After").toStdString(), "");
    }
    tellStatus(SIP_HANG_UP, 1);
    EXPECT_NE(peer->receive("CANCEL").toStdString(), "");
}

TEST_F(SipOffers, WhoWantsAnOfferGetsOneAndItsAnswerIsTold)
{
    begin();
    peer->send(inviteText("without", {}, ""), agent.port());
    const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst);
    ASSERT_TRUE(arrived);
    EXPECT_STREQ(arrived->szSdp, "");
    tellMedia(SIP_ANSWER, kFirst, "v=0\r\ns=here\r\n");
    lastAnswer = peer->receive("SIP/2.0 200");
    EXPECT_TRUE(lastAnswer.endsWith("s=here\r\n")) << lastAnswer.constData();
    peer->send(within("ACK", lastAnswer, 1, kSdp, "v=0\r\ns=there\r\n"), agent.port());
    expectTalk(kFirst, "s=there");

    peer->send(within("INVITE", lastAnswer, 2), agent.port());
    const auto* offer = next<tagSipMedia>(SIP_OFFER, kFirst);
    ASSERT_TRUE(offer);
    EXPECT_STREQ(offer->szSdp, "");
    tellMedia(SIP_MEDIA, kFirst, "v=0\r\ns=anew\r\n");
    const QByteArray answer = peer->receive("SIP/2.0 200");
    EXPECT_TRUE(answer.endsWith("s=anew\r\n")) << answer.constData();
    peer->send(within("ACK", answer, 2, kSdp, "v=0\r\ns=again\r\n"), agent.port());
    expectTalk(kFirst, "s=again");
}

TEST_F(SipOffers, AnOfferThatMeetsTheOneWhileItRingsIsToComeLater)
{
    begin();
    arriveWithoutOffer(kFirst);
    tellMedia(SIP_RING, kFirst, "v=0\r\ns=here\r\n");
    const QByteArray early = peer->receive("SIP/2.0 180");
    lastAnswer = early;
    sendUpdate(2, "v=0\r\ns=meets\r\n");
    QByteArray refused;
    do // the offer that nobody has acknowledged comes again
        refused = peer->receive("SIP/2.0 ");
    while (refused.startsWith("SIP/2.0 180"));
    EXPECT_EQ(headerOf(refused, "CSeq").toStdString(), "2 UPDATE");
    EXPECT_TRUE(refused.startsWith("SIP/2.0 491 ")) << refused.constData();
    EXPECT_FALSE(next<tagSipMedia>(SIP_OFFER, kFirst, 100));
    acknowledgeEarly(early, 3, "v=0\r\ns=there\r\n");
    EXPECT_TRUE(next<tagSipMedia>(SIP_EARLY, kFirst));
}

TEST_F(SipOffers, AReliableProvisionalAnswerIsAskedForByWhoNeedsItAcknowledgedAndHolds)
{
    begin(AgentProcess::calmSetup());
    dial(1, "300");
    const QByteArray first = peer->receive("INVITE");
    EXPECT_EQ(headerOf(first, "Supported").toStdString(), "timer, replaces");
    peer->reply(first, "421 Extension Required", "Require: 100rel");
    const QByteArray invite = peer->receive("INVITE");
    EXPECT_EQ(headerOf(invite, "Supported").toStdString(), "timer, 100rel, replaces");
    EXPECT_EQ(headerOf(invite, "Call-ID"), headerOf(first, "Call-ID"));
    EXPECT_EQ(headerOf(invite, "From"), headerOf(first, "From"));
    EXPECT_GT(headerOf(invite, "CSeq").split(' ').first().toInt(),
              headerOf(first, "CSeq").split(' ').first().toInt());
    peer->reply(invite, "183 Session Progress", "Require: 100rel\r\nRSeq: 17\r\n" + withSdp(),
                "v=0\r\ns=early\r\n");
    const QByteArray prack = peer->receive("PRACK");
    EXPECT_EQ(headerOf(prack, "RAck").toStdString(), "17 " + headerOf(invite, "CSeq").toStdString());
    peer->reply(prack, "200 OK");
    const auto* progress = next<tagSipProgress>(SIP_PROGRESS, 1);
    ASSERT_TRUE(progress);
    EXPECT_TRUE(strstr(progress->szSdp, "s=early"));
    peer->reply(invite, "200 OK", "Contact: <sip:300@127.0.0.1:" + QByteArray::number(peer->port()) + ">");
    EXPECT_NE(peer->receive("ACK").toStdString(), "");
    expectTalk(1, "s=early");
}

TEST_F(SipOffers, WhoNeedsAcknowledgedAnswersIsNotAskedTwice)
{
    begin(AgentProcess::calmSetup());
    dial(1, "300");
    peer->reply(peer->receive("INVITE"), "421 Extension Required", "Require: 100rel");
    peer->reply(peer->receive("INVITE"), "421 Extension Required", "Require: 100rel");
    expectEnd(1, SIP_REFUSED, 421);
    dial(2, "300");
    peer->reply(peer->receive("INVITE"), "421 Extension Required", "Require: precondition");
    expectEnd(2, SIP_REFUSED, 421);
}

// Of one number that rings at two phones.
TEST_F(SipOffers, WhoAnswersIsTalkedToWhoeverHasRungBefore)
{
    begin(AgentProcess::calmSetup());
    for (const bool isTaken : {true, false}) {
        const uint32_t id = isTaken ? 1 : 2;
        dial(id, "300");
        const QByteArray invite = peer->receive("INVITE");
        // As a phone that acknowledges is asked to, where this one has said that it does.
        const QByteArray reliable = headerOf(invite, "Supported").contains("100rel")
                                        ? "Require: 100rel\r\nRSeq: 17\r\n" + withSdp()
                                        : withSdp();
        peer->answer(UdpPeer::replyTo(invite, "183 Session Progress", reliable, "v=0\r\ns=one\r\n"));
        ASSERT_TRUE(next<tagSipProgress>(SIP_PROGRESS, id));
        const QByteArray other = isTaken ? "200 OK" : "486 Busy Here";
        peer->answer(UdpPeer::replyTo(invite, other, withSdp(), "v=0\r\ns=other\r\n")
                         .replace("tag=peer", "tag=other"));
        EXPECT_NE(peer->receive("ACK").toStdString(), "");
        if (!isTaken) {
            expectEnd(id, SIP_REFUSED, 486);
            continue;
        }
        expectTalk(id, "s=other");
        EXPECT_EQ(peer->receive("BYE", 300).toStdString(), "");
        tellStatus(SIP_HANG_UP, id);
        peer->reply(peer->receive("BYE"), "200 OK");
        expectEnd(id, SIP_HUNG_UP, 0);
    }
}

TEST_F(SipOffers, WhoAnswersWithoutADescriptionHoldsByWhatHeHasSaidHimself)
{
    begin(AgentProcess::calmSetup());
    uint32_t id = 0;
    for (const QByteArray answers : {"one", "two", "three"}) {
        SCOPED_TRACE(answers.toStdString());
        dial(++id, "300");
        const QByteArray invite = peer->receive("INVITE");
        for (const QByteArray rings : {"one", "two"}) {
            peer->answer(UdpPeer::replyTo(invite, "183 Session Progress", withSdp(),
                                          "v=0\r\ns=" + rings + " early\r\n")
                             .replace("tag=peer", "tag=" + rings));
            ASSERT_TRUE(next<tagSipProgress>(SIP_PROGRESS, id));
        }
        peer->answer(UdpPeer::replyTo(invite, "200 OK", ownContact()).replace("tag=peer", "tag=" + answers));
        EXPECT_TRUE(headerOf(peer->receive("ACK"), "To").endsWith("tag=" + answers));
        if (answers != "three") {
            expectTalk(id, ("s=" + answers + " early").constData());
            EXPECT_EQ(peer->receive("BYE", 100).toStdString(), "");
            tellStatus(SIP_HANG_UP, id);
        }
        const QByteArray bye = peer->receive("BYE");
        EXPECT_TRUE(headerOf(bye, "To").endsWith("tag=" + answers)) << bye.constData();
        peer->reply(bye, "200 OK");
        if (answers != "three") {
            expectEnd(id, SIP_HUNG_UP, 0);
            continue;
        }
        EXPECT_TRUE(headerOf(bye, "Reason").startsWith("SIP;cause=488")) << bye.constData();
        const auto* told =
            agent.next([id](const tagSipHead& head) { return head.nId == id && head.eKind != SIP_PROGRESS; });
        ASSERT_TRUE(told);
        ASSERT_EQ(told->eKind, uint32_t(SIP_ENDED)) << "nobody hears the one who has not answered";
        const auto* ended = reinterpret_cast<const tagSipEnded*>(told);
        EXPECT_EQ(ended->eEnding, uint32_t(SIP_REFUSED));
        EXPECT_EQ(ended->nStatus, 488u);
    }
}

TEST_F(SipOffers, EarlyMediaWaitForTheirAcknowledgementWhereTheCallerGivesOne)
{
    begin();
    peer->send(inviteText("reliable", "Supported: 100rel"), agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst));
    tellMedia(SIP_RING, kFirst, "v=0\r\ns=early\r\n");
    const QByteArray early = peer->receive("SIP/2.0 183");
    const QByteArray number = headerOf(early, "RSeq");
    EXPECT_NE(number.toStdString(), "");
    EXPECT_NE(peer->receive("SIP/2.0 183").toStdString(), ""); // since nobody has acknowledged it
    tellMedia(SIP_ANSWER, kFirst, "v=0\r\ns=early\r\n");
    peer->send(within("PRACK", early, 2, "RAck: " + number + " 1 INVITE"), agent.port());
    EXPECT_EQ(headerOf(peer->receive("SIP/2.0 200"), "CSeq").toStdString(), "2 PRACK");
    const QByteArray answer = peer->receive("SIP/2.0 200");
    EXPECT_EQ(headerOf(answer, "CSeq").toStdString(), "1 INVITE");
    acknowledge(answer);
    expectTalk(kFirst, "s=offer");
}

TEST_F(SipOffers, WhoCallsMovesMediaThatWereAgreedOnBeforeTheAnswer)
{
    begin();
    peer->send(inviteText("moves", "Supported: 100rel"), agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst));
    tellMedia(SIP_RING, kFirst, "v=0\r\ns=early\r\n");
    const QByteArray early = peer->receive("SIP/2.0 183");
    lastAnswer = early;
    sendUpdate(2, "v=0\r\ns=too soon\r\n");
    EXPECT_NE(peer->receive("SIP/2.0 500").toStdString(), "") << "the first answer is not acknowledged";
    EXPECT_FALSE(next<tagSipMedia>(SIP_OFFER, kFirst, 100));
    acknowledgeEarly(early, 3);
    for (const char* answer : {"", "v=0\r\ns=answer to that\r\n"}) {
        sendUpdate(*answer ? 5 : 4, "v=0\r\ns=moved\r\n");
        const auto* offer = next<tagSipMedia>(SIP_OFFER, kFirst);
        ASSERT_TRUE(offer);
        EXPECT_STREQ(offer->szSdp, "v=0\r\ns=moved\r\n");
        tellMedia(SIP_MEDIA, kFirst, answer);
        const QByteArray reply = peer->receive(*answer ? "SIP/2.0 200" : "SIP/2.0 488");
        EXPECT_EQ(headerOf(reply, "CSeq").toStdString(), *answer ? "5 UPDATE" : "4 UPDATE");
        EXPECT_TRUE(!*answer || reply.endsWith(answer)) << reply.constData();
    }
    tellMedia(SIP_ANSWER, kFirst, "v=0\r\ns=answer to that\r\n");
    const QByteArray answer = peer->receive("SIP/2.0 200");
    EXPECT_EQ(headerOf(answer, "CSeq").toStdString(), "1 INVITE");
    EXPECT_EQ(headerOf(answer, "Content-Length").toStdString(), "0") << "the first offer is long answered";
    acknowledge(answer);
    expectTalk(kFirst, "s=moved");
}

TEST_F(SipOffers, AnUpdateThatIsAnsweredAfterTheUserIsAnsweredAllTheSame)
{
    begin();
    peer->send(inviteText("crosses", "Supported: 100rel"), agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst));
    tellMedia(SIP_RING, kFirst, "v=0\r\ns=early\r\n");
    lastAnswer = peer->receive("SIP/2.0 183");
    acknowledgeEarly(lastAnswer, 2);
    sendUpdate(3, "v=0\r\ns=moved\r\n");
    ASSERT_TRUE(next<tagSipMedia>(SIP_OFFER, kFirst));
    tellMedia(SIP_ANSWER, kFirst, "v=0\r\ns=early\r\n");
    const QByteArray answer = peer->receive("SIP/2.0 200");
    EXPECT_TRUE(answer.endsWith("s=early\r\n")) << answer.constData();
    tellMedia(SIP_MEDIA, kFirst, "v=0\r\ns=late\r\n");
    EXPECT_TRUE(peer->receive("SIP/2.0 200").endsWith("s=late\r\n"));
    acknowledge(answer);
    expectTalk(kFirst, "s=moved");
}

TEST_F(SipOffers, WhoAcknowledgesTheRingingHasTheOfferThereAndAnswersIt)
{
    begin();
    uint32_t id = kFirst;
    for (const bool isAnsweredBefore : {false, true}) {
        SCOPED_TRACE(isAnsweredBefore);
        arriveWithoutOffer(id);
        tellMedia(SIP_RING, id, "v=0\r\ns=here\r\n");
        const QByteArray rings = peer->receive("SIP/2.0 180");
        EXPECT_TRUE(headerOf(rings, "Require").contains("100rel")) << rings.constData();
        EXPECT_TRUE(rings.endsWith("s=here\r\n")) << rings.constData();
        if (isAnsweredBefore) {
            tellMedia(SIP_ANSWER, id, "");
            expectTaken();
            EXPECT_EQ(peer->receive("SIP/2.0 200", 100).toStdString(), "") << "it waits for the answer";
        }
        acknowledgeEarly(rings, 2, "v=0\r\ns=there\r\n");
        const auto* early = next<tagSipMedia>(SIP_EARLY, id);
        ASSERT_TRUE(early);
        EXPECT_STREQ(early->szSdp, "v=0\r\ns=there\r\n");
        if (!isAnsweredBefore)
            tellMedia(SIP_ANSWER, id, "");
        const QByteArray answer = peer->receive("SIP/2.0 200");
        EXPECT_EQ(headerOf(answer, "CSeq").toStdString(), "1 INVITE");
        EXPECT_EQ(headerOf(answer, "Content-Length").toStdString(), "0");
        acknowledge(answer);
        expectTalk(id++, "s=there");
    }
}

TEST_F(SipOffers, WithoutAnOfferNothingRingsAtWhoWantsOneThere)
{
    begin();
    arriveWithoutOffer(kFirst);
    tellMedia(SIP_RING, kFirst, "");
    expectTaken();
    EXPECT_EQ(peer->receive("SIP/2.0 18", 100).toStdString(), "");
    // It is among the calls all the same, and has its offer with the answer.
    tellMedia(SIP_ANSWER, kFirst, "v=0\r\ns=late\r\n");
    const QByteArray answer = peer->receive("SIP/2.0 200");
    EXPECT_TRUE(answer.endsWith("s=late\r\n")) << answer.constData();
    peer->send(within("ACK", answer, 1, kSdp, "v=0\r\ns=there\r\n"), agent.port());
    expectTalk(kFirst, "s=there");
}

TEST_F(SipOffers, WhoWantsAnOfferAndAcknowledgesNothingEarlyHasItWithTheAnswer)
{
    begin();
    uint32_t id = kFirst;
    for (const char* lines : {"", "Supported: 100rel"}) {
        SCOPED_TRACE(lines);
        peer->send(inviteText("late" + QByteArray::number(id), lines, ""), agent.port());
        const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, id);
        ASSERT_TRUE(arrived);
        EXPECT_EQ(arrived->bWantsEarly, 0u);
        tellMedia(SIP_RING, id, "");
        const QByteArray rings = peer->receive("SIP/2.0 180");
        EXPECT_EQ(headerOf(rings, "RSeq").toStdString(), "") << "it would have to bring the offer";
        tellMedia(SIP_ANSWER, id++, "v=0\r\ns=here\r\n");
        EXPECT_TRUE(peer->receive("SIP/2.0 200").endsWith("s=here\r\n"));
    }
}

TEST_F(SipOffers, WhoIsHungUpOnIsToldWhyWhereThereIsAReason)
{
    begin();
    uint32_t id = talkIn("why");
    ASSERT_NE(id, 0u);
    tellStatus(SIP_HANG_UP, id, 488);
    EXPECT_EQ(headerOf(peer->receive("BYE"), "Reason").toStdString(),
              "SIP;cause=488;text=\"Not Acceptable Here\"");
    id = talkIn("usual");
    ASSERT_NE(id, 0u);
    tellStatus(SIP_HANG_UP, id);
    EXPECT_EQ(headerOf(peer->receive("BYE"), "Reason").toStdString(), "");
}

TEST_F(SipOffers, ASessionThatIsTooShortForAServerIsMadeLonger)
{
    begin();
    dial(1, "300");
    const QByteArray invite = peer->receive("INVITE");
    peer->reply(invite, "422 Session Interval Too Small", "Min-SE: 4000");
    const QByteArray again = peer->receive("INVITE");
    EXPECT_TRUE(headerOf(again, "Session-Expires").startsWith("4000")) << again.constData();
    EXPECT_EQ(headerOf(again, "Call-ID").toStdString(), headerOf(invite, "Call-ID").toStdString());
    peer->reply(again, "200 OK", withSdp(), "v=0\r\ns=answer\r\n");
    expectTalk(1, "s=answer");
}

TEST_F(SipOffers, ASessionThatIsTooShortForThePhoneIsRefused)
{
    begin();
    peer->send(inviteText("short", "Supported: timer\r\nSession-Expires: 30"), agent.port());
    EXPECT_EQ(headerOf(peer->receive("SIP/2.0 422"), "Min-SE").toStdString(), "90");
    EXPECT_FALSE(agent.next([](const tagSipHead& head) { return head.eKind == SIP_ARRIVED; }, 100));
}

TEST_F(SipOffers, AnOfferThatIsRefusedLeavesTheCallWhateverTheStatus)
{
    begin();
    const uint32_t id = talkOut(1);
    ASSERT_NE(id, 0u);
    for (const char* status : {"403 No", "404 No", "405 No", "410 No", "416 No", "480 No", "482 No", "484 No",
                               "486 No", "500 No", "501 No", "503 No", "504 No", "600 No", "603 No"}) {
        SCOPED_TRACE(status);
        tellMedia(SIP_MEDIA, id, "v=0\r\ns=hold\r\n");
        const QByteArray offer = peer->receive("INVITE");
        ASSERT_NE(offer.toStdString(), "");
        peer->reply(offer, status, "Retry-After: 1");
        const auto* talk = next<tagSipMedia>(SIP_TALK, id);
        ASSERT_TRUE(talk);
        EXPECT_STREQ(talk->szSdp, "");
        EXPECT_EQ(peer->receive("BYE", 50).toStdString(), "");
    }
    tellMedia(SIP_MEDIA, id, "v=0\r\ns=later\r\n");
    const QByteArray offer = peer->receive("INVITE");
    EXPECT_TRUE(offer.endsWith("s=later\r\n")) << offer.constData();
    peer->reply(offer, "200 OK", withSdp(), "v=0\r\ns=agreed\r\n");
    expectTalk(id, "s=agreed");
}

TEST_F(SipOffers, APeerThatKnowsNothingOfTheCallEndsItAndIsHungUpOn)
{
    begin();
    for (const char* status : {"481 Call Does Not Exist", "408 Request Timeout"}) {
        SCOPED_TRACE(status);
        const uint32_t id = talkOut(status[2] == '1' ? 1 : 2);
        ASSERT_NE(id, 0u);
        tellMedia(SIP_MEDIA, id, "v=0\r\ns=hold\r\n");
        peer->reply(peer->receive("INVITE"), status);
        const QByteArray bye = peer->receive("BYE");
        EXPECT_NE(bye.toStdString(), "");
        peer->reply(bye, "481 Call Does Not Exist");
        const auto* ended = next<tagSipEnded>(SIP_ENDED, id);
        ASSERT_TRUE(ended);
        EXPECT_EQ(ended->eEnding, uint32_t(SIP_BROKEN));
    }
}

TEST_F(SipOffers, AnOfferThatIsTakenBackLeavesTheCallAndItsMedia)
{
    begin();
    const uint32_t id = talkIn("back");
    ASSERT_NE(id, 0u);
    const QByteArray first = lastAnswer;
    const QByteArray invite = within("INVITE", first, 2, kSdp, "v=0\r\na=sendonly\r\n");
    peer->send(invite, agent.port());
    ASSERT_TRUE(next<tagSipMedia>(SIP_OFFER, id));
    takeBack(invite);
    acknowledge(peer->receive("SIP/2.0 487"));
    EXPECT_FALSE(agent.next(SIP_ENDED, id, 200));
    // The phone's answer is nobody's, and its media run as before.
    tellMedia(SIP_MEDIA, id, "v=0\r\na=recvonly\r\n");
    const auto* before = next<tagSipMedia>(SIP_OFFER, id);
    ASSERT_TRUE(before);
    EXPECT_TRUE(strstr(before->szSdp, "s=offer")) << before->szSdp;
    tellMedia(SIP_MEDIA, id, "v=0\r\na=sendrecv\r\n");
    expectTalk(id, "s=offer"); // for which a phone waits before it offers anything itself
    EXPECT_EQ(peer->receive("INVITE", 200).toStdString(), "");

    peer->send(within("INVITE", first, 3, kSdp, "v=0\r\ns=later\r\n"), agent.port());
    ASSERT_TRUE(next<tagSipMedia>(SIP_OFFER, id));
    tellMedia(SIP_MEDIA, id, "v=0\r\ns=agreed\r\n");
    const QByteArray answer = peer->receive("SIP/2.0 200");
    EXPECT_TRUE(answer.endsWith("s=agreed\r\n")) << answer.constData();
    acknowledge(answer);
    expectTalk(id, "s=later");
    tellMedia(SIP_MEDIA, id, "v=0\r\ns=ours\r\n");
    EXPECT_TRUE(peer->receive("INVITE").endsWith("s=ours\r\n"));
}

TEST_F(SipOffers, WhatThePhoneHasRefusedIsNotWhatTheOtherSideHas)
{
    begin();
    const uint32_t id = talkIn("refuses");
    ASSERT_NE(id, 0u);
    peer->send(within("INVITE", lastAnswer, 2, kSdp, "v=0\r\ns=refused\r\n"), agent.port());
    ASSERT_TRUE(next<tagSipMedia>(SIP_OFFER, id));
    tellMedia(SIP_MEDIA, id, "");
    acknowledge(peer->receive("SIP/2.0 488"));
    tellMedia(SIP_MEDIA, id, "v=0\r\ns=ours\r\n");
    // It says nothing new of its own.
    peer->reply(peer->receive("INVITE"), "200 OK",
                "Contact: <sip:200@127.0.0.1:" + QByteArray::number(peer->port()) + ">");
    expectTalk(id, "s=offer");
}

TEST_F(SipOffers, AnOfferWhileThePhoneStillAnswersOneThatWasTakenBackIsRefusedForNow)
{
    begin();
    const uint32_t id = talkIn("soon");
    ASSERT_NE(id, 0u);
    const QByteArray first = lastAnswer;
    const QByteArray invite = within("INVITE", first, 2, kSdp, "v=0\r\ns=back\r\n");
    peer->send(invite, agent.port());
    ASSERT_TRUE(next<tagSipMedia>(SIP_OFFER, id));
    takeBack(invite);
    acknowledge(peer->receive("SIP/2.0 487"));
    peer->send(within("INVITE", first, 3, kSdp, "v=0\r\ns=soon\r\n"), agent.port());
    const QByteArray refused = peer->receive("SIP/2.0 500");
    EXPECT_EQ(headerOf(refused, "CSeq").toStdString(), "3 INVITE");
    acknowledge(refused);
    // What the phone says now is its answer to the one before.
    tellMedia(SIP_MEDIA, id, "v=0\r\ns=answer\r\n");
    const auto* before = next<tagSipMedia>(SIP_OFFER, id);
    ASSERT_TRUE(before);
    EXPECT_TRUE(strstr(before->szSdp, "s=offer")) << before->szSdp;
}

TEST_F(SipOffers, AfterACollisionTheNewestWishIsMade)
{
    begin();
    const uint32_t id = talkIn("newest");
    ASSERT_NE(id, 0u);
    tellMedia(SIP_MEDIA, id, "v=0\r\ns=hold\r\n");
    const QByteArray offer = peer->receive("INVITE");
    tellMedia(SIP_MEDIA, id, "v=0\r\ns=resume\r\n");
    ASSERT_NO_FATAL_FAILURE(expectTaken());
    peer->reply(offer, "491 Request Pending");
    const QByteArray again = peer->receive("INVITE");
    EXPECT_TRUE(again.endsWith("s=resume\r\n")) << again.constData();
    peer->reply(again, "200 OK", withSdp(), "v=0\r\ns=agreed\r\n");
    expectTalk(id, "s=agreed");
    EXPECT_EQ(peer->receive("INVITE", 200).toStdString(), "");
}

TEST_F(SipOffers, AWishDuringTheWaitAfterACollisionWaitsToo)
{
    begin();
    const uint32_t id = talkOut(1);
    ASSERT_NE(id, 0u);
    tellMedia(SIP_MEDIA, id, "v=0\r\ns=hold\r\n");
    peer->reply(peer->receive("INVITE"), "491 Request Pending");
    EXPECT_NE(peer->receive("ACK").toStdString(), "");
    tellMedia(SIP_MEDIA, id, "v=0\r\ns=resume\r\n");
    EXPECT_EQ(peer->receive("INVITE", kOwnerWaitsMs / 2).toStdString(), "");
    EXPECT_TRUE(peer->receive("INVITE").endsWith("s=resume\r\n"));
}

TEST_F(SipOffers, AnOfferWaitsForTheAnswerToWhatIsAskedOfTheOtherSideAndIsMadeThen)
{
    begin(AgentProcess::calmSetup());
    const uint32_t id = talkIn("behind");
    ASSERT_NE(id, 0u);
    const auto expectOfferBehind = [&](const QByteArray& asked, const QByteArray& name) {
        SCOPED_TRACE(name.toStdString());
        ASSERT_NE(asked.toStdString(), "");
        tellMedia(SIP_MEDIA, id, ("v=0\r\ns=" + name + "\r\n").constData());
        ASSERT_NO_FATAL_FAILURE(expectTaken());
        peer->reply(asked, "202 Accepted", ownContact());
        QByteArray offer;
        do {
            offer = peer->receive("INVITE", 5000);
        } while (!offer.isEmpty() && headerOf(offer, "Call-ID") != headerOf(lastAnswer, "Call-ID"));
        ASSERT_TRUE(offer.endsWith("s=" + name + "\r\n")) << offer.constData();
        peer->reply(offer, "200 OK", withSdp(), "v=0\r\ns=agreed\r\n");
        expectTalk(id, "s=agreed");
    };
    auto tone = sipWire::make<tagSipTone>(SIP_TONE, id);
    tone.nTone = '1';
    tone.nMs = 100;
    agent.tell(tone);
    ASSERT_NO_FATAL_FAILURE(expectOfferBehind(peer->receive("INFO"), "tone"));
    tellTarget(SIP_TRANSFER, id, "301");
    ASSERT_NO_FATAL_FAILURE(expectOfferBehind(peer->receive("REFER"), "transfer"));
    // What it hears of the call that it has asked for.
    peer->send(within("REFER", lastAnswer, 2, "Refer-To: <sip:302@127.0.0.1>"), agent.port());
    ASSERT_TRUE(agent.next(SIP_REFERRED, id));
    auto record = sipWire::make<tagSipDial>(SIP_DIAL, 1);
    record.nReferrer = id;
    sipWire::setText(record.szTarget, "sip:302@127.0.0.1");
    sipWire::setText(record.szSdp, "v=0\r\ns=offer\r\n");
    agent.tell(record);
    ASSERT_NO_FATAL_FAILURE(expectOfferBehind(peer->receive("NOTIFY"), "begun"));
    const QByteArray invite = peer->receive("INVITE sip:302@"); // once more
    peer->reply(invite, "486 Busy Here");
    ASSERT_NO_FATAL_FAILURE(expectOfferBehind(peer->receive("NOTIFY"), "ended"));
}
