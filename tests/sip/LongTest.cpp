// What the standard gives half a minute and more: with HX_LONG alone.
#include "tests/kit/plain/processes.h"
#include "tests/sip/callTest.h"
#include <QMap>
#include <cstring>

namespace {

constexpr int kLongMs = 60000; // beyond each of its times

class SipLong : public SipCalls
{
protected:
    void SetUp() override
    {
        if (!qEnvironmentVariableIsSet("HX_LONG"))
            GTEST_SKIP() << "takes most of a minute: ./test --long";
    }
    QByteArray request()
    {
        QByteArray request;
        do {
            request = peer->receive(kLongMs);
        } while (request.startsWith("SUBSCRIBE") || request.startsWith("REGISTER") ||
                 request.startsWith("\r\n"));
        return request;
    }
    // Of an answer: who refreshes the call, within the shortest time that there is.
    QByteArray refreshed(const QByteArray& who, const QByteArray& allow)
    {
        return ownContact() +
               "\r\nSupported: timer\r\nRequire: timer\r\nSession-Expires: 90;refresher=" + who +
               "\r\nContent-Type: application/sdp\r\nAllow: " + allow;
    }
    // A call from here that talks with such an answer; its Call-ID.
    QByteArray talkOutRefreshed(uint32_t id, const QByteArray& who, const QByteArray& allow)
    {
        dial(id, "300");
        lastInvite = peer->receive("INVITE");
        peer->reply(lastInvite, "200 OK", refreshed(who, allow), "v=0\r\ns=answer\r\n");
        EXPECT_TRUE(next<tagSipMedia>(SIP_TALK, id)) << id;
        EXPECT_NE(peer->receive("ACK").toStdString(), "");
        return headerOf(lastInvite, "Call-ID");
    }
};

} // namespace

TEST_F(SipLong, ACallToAServerThatIsSilentEndsAsThat)
{
    begin();
    dial(1, "300");
    EXPECT_NE(peer->receive("INVITE").toStdString(), "");
    const auto* ended = next<tagSipEnded>(SIP_ENDED, 1, kLongMs);
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->eEnding, uint32_t(SIP_BROKEN));
    EXPECT_EQ(ended->nStatus, 408u);
}

TEST_F(SipLong, AnAnswerThatNobodyAcknowledgesEndsTheCall)
{
    begin();
    peer->send(inviteText("never"), agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, SIP_CALL_FIRST_INCOMING));
    tellMedia(SIP_ANSWER, SIP_CALL_FIRST_INCOMING, "v=0\r\ns=answer\r\n");
    EXPECT_NE(peer->receive("SIP/2.0 200").toStdString(), "");
    EXPECT_NE(peer->receive("BYE", kLongMs).toStdString(), "");
    // Whatever is said to that.
    const auto* ended = next<tagSipEnded>(SIP_ENDED, SIP_CALL_FIRST_INCOMING);
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->eEnding, uint32_t(SIP_BROKEN));
}

TEST_F(SipLong, ASessionIsRefreshedByUpdateWhereThePeerKnowsItElseByItsLastMedia)
{
    begin();
    for (const char* allow : {"INVITE, ACK, BYE, UPDATE", "INVITE, ACK, BYE"}) {
        SCOPED_TRACE(allow);
        const bool knows = strstr(allow, "UPDATE");
        const uint32_t id = knows ? 1 : 2;
        talkOutRefreshed(id, "uac", allow);
        const QByteArray lines = refreshed("uac", allow);
        tellMedia(SIP_MEDIA, id, "v=0\r\ns=newest\r\n");
        peer->reply(peer->receive("INVITE"), "200 OK", lines, "v=0\r\ns=answer\r\n");
        ASSERT_TRUE(next<tagSipMedia>(SIP_TALK, id));
        EXPECT_NE(peer->receive("ACK").toStdString(), "");
        QByteArray refresh = request();
        if (knows) {
            EXPECT_TRUE(refresh.startsWith("UPDATE")) << refresh.constData();
            EXPECT_EQ(headerOf(refresh, "Content-Length").toStdString(), "0");
            EXPECT_TRUE(headerOf(refresh, "Session-Expires").startsWith("90")) << refresh.constData();
            // It may say so and not mean it.
            peer->reply(refresh, "501 Not Implemented");
            refresh = request();
        }
        EXPECT_TRUE(refresh.startsWith("INVITE")) << refresh.constData();
        EXPECT_TRUE(refresh.endsWith("s=newest\r\n")) << refresh.constData();
        peer->reply(refresh, "405 Method Not Allowed");
        EXPECT_NE(peer->receive("ACK").toStdString(), "");
        EXPECT_EQ(peer->receive("UPDATE", 3000).toStdString(), "");
        tellMedia(SIP_MEDIA, id, "v=0\r\ns=later\r\n");
        const QByteArray later = peer->receive("INVITE");
        EXPECT_TRUE(later.endsWith("s=later\r\n")) << later.constData();
        peer->reply(later, "488 Not Acceptable Here");
        EXPECT_NE(peer->receive("ACK").toStdString(), "");
        tellStatus(SIP_HANG_UP, id);
        const QByteArray bye = peer->receive("BYE");
        EXPECT_NE(bye.toStdString(), "");
        peer->reply(bye, "200 OK");
    }
}

TEST_F(SipLong, MediaThatMoveInTheAnswerToARefreshAreFollowed)
{
    begin();
    dial(1, "300");
    lastInvite = peer->receive("INVITE");
    const QByteArray lines = ownContact() + "\r\nRequire: timer\r\nSession-Expires: 90;refresher=uac\r\n"
                                            "Content-Type: application/sdp\r\nAllow: INVITE, ACK, BYE";
    peer->reply(lastInvite, "200 OK", lines, "v=0\r\no=- 1 1 x\r\ns=here\r\n");
    ASSERT_TRUE(next<tagSipMedia>(SIP_TALK, 1));
    // The same, though its number is another, is no news.
    for (const char* answer : {"v=0\r\no=- 1 2 x\r\ns=here\r\n", "v=0\r\no=- 1 3 x\r\ns=there\r\n"}) {
        const QByteArray refresh = request();
        lastInvite = refresh.startsWith("ACK") ? request() : refresh;
        ASSERT_TRUE(lastInvite.startsWith("INVITE")) << lastInvite.constData();
        peer->reply(lastInvite, "200 OK", lines, answer);
        EXPECT_NE(peer->receive("ACK").toStdString(), "");
        const auto* offer = next<tagSipMedia>(SIP_OFFER, 1, 1000);
        ASSERT_EQ(offer != nullptr, strstr(answer, "there") != nullptr) << answer;
        EXPECT_TRUE(!offer || strcmp(offer->szSdp, answer) == 0) << answer;
    }
    // The phone answers, which is for itself alone, and hears what it came to.
    tellMedia(SIP_MEDIA, 1, "v=0\r\ns=followed\r\n");
    const auto* talk = next<tagSipMedia>(SIP_TALK, 1);
    ASSERT_TRUE(talk);
    EXPECT_TRUE(strstr(talk->szSdp, "s=there"));
    EXPECT_EQ(peer->receive("INVITE", 300).toStdString(), "");
}

TEST_F(SipLong, WhatManyCallsHaveTakenGoesBackToTheSystem)
{
    begin();
    const auto ownKiB = [this] { return kit::statusKiB(agent.pid(), "RssAnon:"); };
    const qint64 before = ownKiB();
    const QByteArray offer = "v=0\r\ns=" + QByteArray(4000, 'o') + "\r\n";
    for (int call = 0; call < 250; ++call) {
        peer->send(inviteText("many" + QByteArray::number(call), {}, offer), agent.port());
        const tagSipHead* head = agent.next([](const tagSipHead& each) { return each.eKind == SIP_ARRIVED; });
        ASSERT_TRUE(head) << call;
        tellStatus(SIP_REFUSE, head->nId, 486);
        acknowledge(peer->receive("SIP/2.0 486"));
    }
    const qint64 taken = ownKiB() - before;
    ASSERT_GT(taken, 1024);
    EXPECT_TRUE(kit::waits([&] { return ownKiB() - before < taken / 3; }, 2 * kLongMs))
        << taken << " KiB were taken, " << ownKiB() - before << " are left";
}

TEST_F(SipLong, SignsOfLifeAreSentThoughNobodyHasSaidHowOften)
{
    begin();
    EXPECT_EQ(peer->receive("\r\n", kLongMs).toStdString(), "\r\n\r\n");
}

TEST_F(SipLong, APeerThatNeverTakesAnOfferKeepsItsMediaEachTime)
{
    constexpr int kMost = 30;
    begin();
    const uint32_t id = talkIn("never");
    ASSERT_NE(id, 0u);
    for (int round = 0; round < 2; ++round) {
        SCOPED_TRACE(round);
        tellMedia(SIP_MEDIA, id, "v=0\r\ns=hold\r\n");
        int offers = 0;
        const tagSipMedia* talk = nullptr;
        for (int i = 0; i < 4 * kMost && offers < kMost && !talk; ++i) {
            const QByteArray offer = peer->receive("INVITE", 1000);
            if (!offer.isEmpty()) {
                peer->reply(offer, "491 Request Pending");
                ++offers;
            }
            talk = next<tagSipMedia>(SIP_TALK, id, 10);
        }
        ASSERT_TRUE(talk) << offers;
        EXPECT_STREQ(talk->szSdp, "") << "which says that it was refused";
        EXPECT_GT(offers, 4);
    }
}

TEST_F(SipLong, TheOneThatWasAgreedOnRefreshesAndTriesAgainWhereThatIsRefused)
{
    begin(AgentProcess::calmSetup());
    const QByteArray ours = talkOutRefreshed(1, "uac", "INVITE, ACK, BYE");
    talkOutRefreshed(2, "uas", "INVITE, ACK, BYE");
    for (int turn = 0; turn < 2; ++turn) {
        SCOPED_TRACE(turn);
        QByteArray refresh;
        do {
            refresh = request();
            ASSERT_NE(refresh.toStdString(), "");
            ASSERT_EQ(headerOf(refresh, "Call-ID").toStdString(), ours.toStdString());
            if (!refresh.startsWith("ACK"))
                peer->reply(refresh, "405 Method Not Allowed");
        } while (!refresh.startsWith("INVITE"));
        EXPECT_TRUE(refresh.endsWith("s=offer\r\n")) << refresh.constData();
    }
}

TEST_F(SipLong, WhatThePhoneOffersWhileACallIsRefreshedIsWhatHolds)
{
    begin(AgentProcess::calmSetup());
    const QByteArray byInvite = talkOutRefreshed(1, "uac", "INVITE, ACK, BYE");
    const QByteArray byUpdate = talkOutRefreshed(2, "uac", "INVITE, ACK, BYE, UPDATE");
    QMap<QByteArray, QByteArray> refreshes;
    while (refreshes.size() < 2) {
        const QByteArray refresh = request();
        ASSERT_NE(refresh.toStdString(), "");
        if (!refresh.startsWith("ACK"))
            refreshes.insert(headerOf(refresh, "Call-ID"), refresh);
    }
    ASSERT_TRUE(refreshes[byInvite].startsWith("INVITE")) << refreshes[byInvite].constData();
    ASSERT_TRUE(refreshes[byUpdate].startsWith("UPDATE")) << refreshes[byUpdate].constData();
    for (const uint32_t id : {1u, 2u})
        tellMedia(SIP_MEDIA, id, "v=0\r\ns=hold\r\n");
    ASSERT_NO_FATAL_FAILURE(expectTaken());
    // Neither the answer to the one nor the refusal of the other is about what the phone offers.
    peer->reply(refreshes[byInvite], "200 OK", refreshed("uac", "INVITE, ACK, BYE"), "v=0\r\ns=answer\r\n");
    peer->reply(refreshes[byUpdate], "501 Not Implemented");
    QMap<QByteArray, QByteArray> holds;
    while (holds.size() < 2) {
        const QByteArray hold = peer->receive("INVITE");
        ASSERT_NE(hold.toStdString(), "");
        holds.insert(headerOf(hold, "Call-ID"), hold);
    }
    EXPECT_FALSE(agent.next([](const tagSipHead& head) { return head.eKind == SIP_TALK; }, 300));
    uint32_t id = 0;
    for (const QByteArray& callId : {byInvite, byUpdate}) {
        EXPECT_TRUE(holds[callId].endsWith("s=hold\r\n")) << holds[callId].constData();
        peer->reply(holds[callId], "200 OK", refreshed("uac", "INVITE, ACK, BYE"), "v=0\r\ns=held\r\n");
        const auto* talk = next<tagSipMedia>(SIP_TALK, ++id);
        ASSERT_TRUE(talk);
        EXPECT_TRUE(strstr(talk->szSdp, "s=held")) << talk->szSdp;
    }
    EXPECT_EQ(peer->receive("INVITE", 500).toStdString(), "");
}
