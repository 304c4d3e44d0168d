// Who wants an offer while it rings, and what he makes of it before and after the user has answered.
#include "tests/sip/callTest.h"

namespace {

constexpr uint32_t kFirst = SIP_CALL_FIRST_INCOMING;

class SipEarlyOffers : public SipCalls
{
protected:
    // Somebody calls who acknowledges what comes early, and it rings with a description; that answer.
    QByteArray ringsEarly(uint32_t id, const QByteArray& invite)
    {
        peer->send(invite, agent.port());
        EXPECT_TRUE(next<tagSipArrived>(SIP_ARRIVED, id));
        tellMedia(SIP_RING, id, "v=0\r\ns=early\r\n");
        return peer->receive("SIP/2.0 183");
    }
    QByteArray inviteEarly(uint32_t id)
    {
        return inviteText("early" + QByteArray::number(id), "Supported: 100rel");
    }
    // type: the header lines of body.
    void acknowledgeWith(const QByteArray& early, const QByteArray& body = "v=0\r\ns=anew\r\n",
                         const QByteArray& type = "Content-Type: application/sdp")
    {
        peer->send(
            within("PRACK", early, 2, "RAck: " + headerOf(early, "RSeq") + " 1 INVITE\r\n" + type, body),
            agent.port());
    }
    void hangUp(uint32_t id)
    {
        tellStatus(SIP_HANG_UP, id);
        peer->reply(peer->receive("BYE"), "200 OK");
        expectEnd(id, SIP_HUNG_UP, 0);
    }
};

} // namespace

TEST_F(SipEarlyOffers, UntilTheCallerAcknowledgesTheAnswerOfTheUserIsHeldBackAndHeMayGiveUp)
{
    begin();
    uint32_t id = kFirst;
    for (const QByteArray by : {"CANCEL", "BYE", "the user"}) {
        SCOPED_TRACE(by.constData());
        const bool isUser = by == "the user";
        const QByteArray invite = arriveWithoutOffer(id);
        tellMedia(SIP_RING, id, "v=0\r\ns=here\r\n");
        const QByteArray rings = peer->receive("SIP/2.0 180");
        tellMedia(SIP_ANSWER, id, "");
        expectTaken();
        if (isUser)
            tellStatus(SIP_HANG_UP, id);
        else if (by == "BYE")
            peer->send(within("BYE", rings, 2), agent.port());
        else
            takeBack(invite);
        const QByteArray refusal = peer->receive(isUser ? "SIP/2.0 480" : "SIP/2.0 487");
        expectEnd(id++, isUser ? SIP_REFUSED : SIP_CANCELLED, isUser ? 480 : 0);
        peer->send(within("ACK", refusal, 1), agent.port());
        EXPECT_EQ(peer->receive("BYE", 100).toStdString(), "") << "there was no call yet";
    }
}

TEST_F(SipEarlyOffers, AnsweredAheadOfTheAcknowledgementItRingsNoLongerThanAnyOther)
{
    tagSipSetup setup = AgentProcess::quickSetup();
    setup.nRingSeconds = 1;
    begin(setup);
    arriveWithoutOffer(kFirst);
    tellMedia(SIP_RING, kFirst, "v=0\r\ns=here\r\n");
    tellMedia(SIP_ANSWER, kFirst, "");
    EXPECT_NE(peer->receive("SIP/2.0 480").toStdString(), "");
    expectEnd(kFirst, SIP_UNANSWERED, 480);
}

TEST_F(SipEarlyOffers, WhoAcknowledgesAnEarlyOfferWithoutAnAnswerIsRefused)
{
    begin();
    uint32_t id = kFirst;
    const QByteArray large = "v=0\r\ns=" + QByteArray(SIP_SDP_SIZE, 'x') + "\r\n";
    for (const QByteArray& answer : {QByteArray(), large}) {
        for (const bool isAnsweredBefore : {false, true}) {
            SCOPED_TRACE(std::to_string(answer.size()) + (isAnsweredBefore ? " answered" : ""));
            arriveWithoutOffer(id);
            tellMedia(SIP_RING, id, "v=0\r\ns=here\r\n");
            const QByteArray rings = peer->receive("SIP/2.0 180");
            if (isAnsweredBefore) {
                tellMedia(SIP_ANSWER, id, "");
                expectTaken();
            }
            // It acknowledges nothing, and is none.
            peer->send(within("PRACK", rings, 2, "RAck: 1 1 INVITE"), agent.port());
            EXPECT_NE(peer->receive("SIP/2.0 481").toStdString(), "");
            EXPECT_FALSE(next<tagSipEnded>(SIP_ENDED, id, 100));
            acknowledgeEarly(rings, 3, answer);
            const QByteArray refusal = peer->receive("SIP/2.0 488");
            EXPECT_TRUE(headerOf(refusal, "Warning").startsWith("399 ")) << refusal.constData();
            expectEnd(id++, SIP_REFUSED, 488);
            peer->send(within("ACK", refusal, 1), agent.port());
        }
    }
}

// It acknowledges a description that answers his first one.
TEST_F(SipEarlyOffers, WhoOffersAnewAsHeAcknowledgesIsAnsweredAtOnceAndTheCallRingsOn)
{
    begin();
    uint32_t id = kFirst;
    for (const bool isTaken : {true, false}) {
        SCOPED_TRACE(isTaken);
        acknowledgeWith(ringsEarly(id, inviteEarly(id)));
        const auto* offer = next<tagSipMedia>(SIP_OFFER, id);
        ASSERT_TRUE(offer);
        EXPECT_STREQ(offer->szSdp, "v=0\r\ns=anew\r\n");
        tellMedia(SIP_MEDIA, id, isTaken ? "v=0\r\ns=answer to that\r\n" : "");
        const QByteArray reply = peer->receive(isTaken ? "SIP/2.0 200" : "SIP/2.0 488");
        EXPECT_EQ(headerOf(reply, "CSeq").toStdString(), "2 PRACK");
        EXPECT_EQ(reply.endsWith("s=answer to that\r\n"), isTaken) << reply.constData();
        tellMedia(SIP_ANSWER, id, "v=0\r\ns=early\r\n");
        const QByteArray answer = peer->receive("SIP/2.0 200");
        EXPECT_EQ(headerOf(answer, "CSeq").toStdString(), "1 INVITE");
        EXPECT_EQ(answer.endsWith("s=early\r\n"), !isTaken) << answer.constData();
        acknowledge(answer);
        const auto* talk = next<tagSipMedia>(SIP_TALK, id);
        ASSERT_TRUE(talk);
        EXPECT_STREQ(talk->szSdp, isTaken ? "v=0\r\ns=anew\r\n" : "v=0\r\ns=offer\r\n");
        hangUp(id++);
    }
}

TEST_F(SipEarlyOffers, TheUserWhoIsQuickerThanTheAnswerToWhatComesWithAnAcknowledgementIsTakenAfterIt)
{
    tagSipSetup setup = AgentProcess::calmSetup();
    setup.nOfferMs = 500;
    begin(setup);
    uint32_t id = kFirst;
    for (const bool isSilent : {false, true}) {
        SCOPED_TRACE(isSilent);
        acknowledgeWith(ringsEarly(id, inviteEarly(id)));
        ASSERT_TRUE(next<tagSipMedia>(SIP_OFFER, id));
        tellMedia(SIP_ANSWER, id, "v=0\r\ns=early\r\n");
        if (!isSilent)
            tellMedia(SIP_MEDIA, id, "v=0\r\ns=answer to that\r\n");
        // Of what the phone leaves lying the caller may ask again.
        for (const char* number : {"2 PRACK", "1 INVITE"}) {
            const bool isRefused = isSilent && *number == '2';
            const QByteArray reply = peer->receive(isRefused ? "SIP/2.0 500" : "SIP/2.0 ");
            EXPECT_EQ(headerOf(reply, "CSeq").toStdString(), number) << reply.constData();
            if (*number == '1')
                acknowledge(reply);
        }
        EXPECT_TRUE(next<tagSipMedia>(SIP_TALK, id));
        hangUp(id++);
    }
}

TEST_F(SipEarlyOffers, WhatCannotBeOfferedWithAnAcknowledgementIsRefusedAndRingsOn)
{
    begin();
    uint32_t id = kFirst;
    const QByteArray sdp = "Content-Type: application/sdp";
    const struct
    {
        QByteArray type, body, status;
    } offers[] = {{sdp, "v=0\r\ns=" + QByteArray(SIP_SDP_SIZE, 'x') + "\r\n", "488"},
                  {"Content-Type: text/plain\r\nContent-Disposition: session", "what", "415"},
                  {sdp, "", "200"}};
    for (const auto& offer : offers) {
        SCOPED_TRACE(offer.status.toStdString());
        acknowledgeWith(ringsEarly(id, inviteEarly(id)), offer.body, offer.type);
        EXPECT_EQ(headerOf(peer->receive("SIP/2.0 " + offer.status), "CSeq").toStdString(), "2 PRACK");
        tellMedia(SIP_ANSWER, id, "v=0\r\ns=early\r\n");
        const QByteArray answer = peer->receive("SIP/2.0 200");
        EXPECT_EQ(headerOf(answer, "CSeq").toStdString(), "1 INVITE");
        acknowledge(answer);
        EXPECT_TRUE(next<tagSipMedia>(SIP_TALK, id));
        hangUp(id++);
    }
}

TEST_F(SipEarlyOffers, WhatIsOfferedWithAnAcknowledgementEndsWithTheCall)
{
    begin();
    uint32_t id = kFirst;
    for (const QByteArray by : {"the caller", "the phone", "BYE"}) {
        SCOPED_TRACE(by.toStdString());
        const QByteArray invite = inviteEarly(id);
        const QByteArray early = ringsEarly(id, invite);
        acknowledgeWith(early);
        ASSERT_TRUE(next<tagSipMedia>(SIP_OFFER, id));
        if (by == "the caller")
            takeBack(invite);
        else if (by == "BYE")
            peer->send(within("BYE", early, 3), agent.port());
        else
            tellStatus(SIP_REFUSE, id, 486);
        tellMedia(SIP_MEDIA, id, "v=0\r\ns=too late\r\n");
        expectEnd(id++,
                  by == "the phone" ? SIP_REFUSED
                  : by == "BYE"     ? SIP_HUNG_UP
                                    : SIP_CANCELLED,
                  by == "the phone" ? 486 : 0);
        QByteArray reply;
        do
            reply = peer->receive();
        while (!reply.isEmpty() && headerOf(reply, "CSeq") != "2 PRACK");
        EXPECT_TRUE(reply.startsWith("SIP/2.0 487") || reply.startsWith("SIP/2.0 500")) << reply.constData();
    }
    EXPECT_NE(talkIn("next"), 0u);
}
