// Who wants an offer while it rings, and what he makes of it before and after the user has answered.
#include "tests/sip/callTest.h"

namespace {

constexpr uint32_t kFirst = SIP_CALL_FIRST_INCOMING;

using SipEarlyOffers = SipCalls;

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
