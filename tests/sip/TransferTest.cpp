// Calls that are put together: by the phone, by the other side, and by a call that takes another's place.
#include "tests/sip/callTest.h"
#include <QElapsedTimer>
#include <cstring>

namespace {

constexpr uint32_t kFirst = SIP_CALL_FIRST_INCOMING;

QByteArray tagOf(const QByteArray& header)
{
    return header.mid(header.indexOf(";tag=") + 5);
}

class SipTransfers : public SipCalls
{
protected:
    void tellConnect(uint32_t id, uint32_t other)
    {
        auto record = sipWire::make<tagSipConnect>(SIP_CONNECT, id);
        record.nOther = other;
        agent.tell(record);
    }
    void dialFor(uint32_t referrer, uint32_t id, const char* target)
    {
        auto record = sipWire::make<tagSipDial>(SIP_DIAL, id);
        record.nReferrer = referrer;
        sipWire::setText(record.szTarget, target);
        sipWire::setText(record.szSdp, "v=0\r\ns=offer\r\n");
        agent.tell(record);
    }
    // The next message that begins so; others wait for their turn.
    QByteArray take(const QByteArray& start)
    {
        for (qsizetype i = 0; i < waiting.size(); ++i) {
            if (waiting[i].startsWith(start))
                return waiting.takeAt(i);
        }
        QElapsedTimer timer;
        timer.start();
        for (;;) {
            const qint64 left = AgentProcess::WAIT_MS - timer.elapsed();
            const QByteArray message = left > 0 ? peer->receive(int(left)) : QByteArray();
            if (message.isEmpty() || message.startsWith(start))
                return message;
            waiting.append(message);
        }
    }
    // What the agent tells of the call that it was asked for.
    void expectNotify(const QByteArray& status, const QByteArray& state)
    {
        const QByteArray notify = take("NOTIFY");
        EXPECT_TRUE(notify.contains("\r\n\r\nSIP/2.0 " + status)) << notify.constData();
        EXPECT_TRUE(headerOf(notify, "Event").startsWith("refer")) << notify.constData();
        EXPECT_TRUE(headerOf(notify, "Subscription-State").startsWith(state)) << notify.constData();
        peer->reply(notify, "200 OK");
    }
    // Of the call that was asked for, which rings there and talks.
    void expectToldUntilItTalks(const QByteArray& invite, uint32_t id)
    {
        peer->reply(invite, "180 Ringing");
        expectNotify("180", "active");
        peer->reply(invite, "200 OK", withSdp(), "v=0\r\ns=answer\r\n");
        EXPECT_TRUE(next<tagSipMedia>(SIP_TALK, id));
        expectNotify("200", "terminated");
    }
    QByteArray server() const { return "127.0.0.1:" + QByteArray::number(peer->port()); }
    // Asks the agent to call somebody, in the call of lastAnswer.
    void refer(int number, const QByteArray& to, const QByteArray& lines = {})
    {
        peer->send(
            within("REFER", lastAnswer, number, "Refer-To: " + to + (lines.isEmpty() ? "" : "\r\n") + lines),
            agent.port());
    }
    // Call id, that of lastAnswer, asks for another one, which goes out as number 1; its INVITE.
    QByteArray callsFor(uint32_t id)
    {
        EXPECT_NE(id, 0u);
        refer(2, "<sip:301@127.0.0.1>");
        EXPECT_TRUE(next<tagSipReferred>(SIP_REFERRED, id));
        dialFor(id, 1, "sip:301@127.0.0.1");
        expectNotify("100", "active");
        const QByteArray invite = take("INVITE sip:301@127.0.0.1 ");
        EXPECT_NE(invite.toStdString(), "");
        return invite;
    }
    // A header that means the call of lastAnswer.
    QByteArray replaces(const QByteArray& further = {}) const
    {
        return "Replaces: " + headerOf(lastAnswer, "Call-ID") +
               ";to-tag=" + tagOf(headerOf(lastAnswer, "To")) + ";from-tag=caller" + further;
    }
    // The same message from another address, and what is answered goes there.
    QByteArray movedTo(const UdpPeer& other, QByteArray message) const
    {
        return message.replace(server(), "127.0.0.2:" + QByteArray::number(other.port()));
    }
    void expectRefused(const QByteArray& callId, const QByteArray& header, const QByteArray& status)
    {
        peer->send(inviteText(callId, header), agent.port());
        const QByteArray refused = peer->receive("SIP/2.0 " + status);
        EXPECT_EQ(headerOf(refused, "Call-ID").toStdString(), callId.toStdString());
        acknowledge(refused);
    }

    QList<QByteArray> waiting;
};

} // namespace

TEST_F(SipTransfers, TwoOtherSidesAreConnectedAndBothCallsEnd)
{
    begin();
    ASSERT_NE(talkOut(1), 0u);
    const QByteArray first = lastInvite;
    ASSERT_NE(talkOut(2), 0u);
    const QByteArray second = lastInvite;
    tellConnect(1, 2);
    const QByteArray asked = takesRefer();
    EXPECT_EQ(headerOf(asked, "Call-ID").toStdString(), headerOf(first, "Call-ID").toStdString());
    const QByteArray to = QByteArray::fromPercentEncoding(headerOf(asked, "Refer-To"));
    EXPECT_TRUE(to.startsWith("<sip:300@" + server() + "?Replaces=" + headerOf(second, "Call-ID") + ";"))
        << to.constData();
    EXPECT_TRUE(to.contains(";to-tag=peer")) << to.constData();
    EXPECT_TRUE(to.contains(";from-tag=" + tagOf(headerOf(second, "From")))) << to.constData();
    lastInvite = first;
    notesRefer(11, "terminated;reason=noresource", "SIP/2.0 200 OK\r\n");
    const auto* outcome = next<tagSipStatus>(SIP_TRANSFERRED, 1);
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->nStatus, 200u);
    EXPECT_NE(take("BYE").toStdString(), "");
    EXPECT_NE(take("BYE").toStdString(), "");
    for (const uint32_t id : {1u, 2u})
        expectEnd(id, SIP_HUNG_UP, 0);
}

TEST_F(SipTransfers, AConnectionThatIsRefusedOrFailsLeavesBothCalls)
{
    begin();
    ASSERT_NE(talkOut(1), 0u);
    const QByteArray first = lastInvite;
    ASSERT_NE(talkOut(2), 0u);
    tellConnect(1, 2);
    peer->reply(peer->receive("REFER"), "603 Declined");
    const auto* outcome = next<tagSipStatus>(SIP_TRANSFERRED, 1);
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->nStatus, 603u);

    tellConnect(1, 2);
    takesRefer();
    lastInvite = first;
    notesRefer(11, "terminated;reason=noresource", "SIP/2.0 486 Busy\r\n");
    outcome = next<tagSipStatus>(SIP_TRANSFERRED, 1);
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->nStatus, 486u);

    tellConnect(2, 7);
    outcome = next<tagSipStatus>(SIP_TRANSFERRED, 2);
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->nStatus, 481u);
    EXPECT_EQ(peer->receive("BYE", 300).toStdString(), "");
    for (const uint32_t id : {1u, 2u}) {
        tellStatus(SIP_HANG_UP, id);
        EXPECT_NE(peer->receive("BYE").toStdString(), "") << id;
    }
}

TEST_F(SipTransfers, TheOtherSideAsksForACallAndHearsHowItGoes)
{
    begin();
    const uint32_t id = talkIn("referring");
    ASSERT_NE(id, 0u);
    refer(2, "<sip:301@127.0.0.1>", "Referred-By: <sip:200@127.0.0.1>");
    const auto* referred = next<tagSipReferred>(SIP_REFERRED, id);
    ASSERT_TRUE(referred);
    EXPECT_STREQ(referred->szTarget, "sip:301@127.0.0.1");
    EXPECT_EQ(referred->bReplaces, 0u);
    dialFor(id, 1, "sip:301@127.0.0.1");
    EXPECT_NE(take("SIP/2.0 202").toStdString(), "");
    expectNotify("100", "active");
    const QByteArray invite = take("INVITE sip:301@127.0.0.1 ");
    EXPECT_EQ(headerOf(invite, "Referred-By").toStdString(), "<sip:200@127.0.0.1>");
    EXPECT_EQ(headerOf(invite, "Replaces").toStdString(), "");
    expectToldUntilItTalks(invite, 1);
}

TEST_F(SipTransfers, ASecondRequestForACallIsDeclinedAndTheFirstGoesOn)
{
    begin(AgentProcess::calmSetup());
    const uint32_t id = talkIn("twice");
    const QByteArray invite = callsFor(id);
    refer(3, "<sip:302@127.0.0.1>");
    EXPECT_EQ(headerOf(take("SIP/2.0 603"), "CSeq").toStdString(), "3 REFER");
    EXPECT_FALSE(next<tagSipReferred>(SIP_REFERRED, id, 100));
    peer->reply(invite, "180 Ringing");
    expectNotify("180", "active");
}

TEST_F(SipTransfers, WhoAsksForOneCallAfterTheOtherLearnsWhichOneIsMeant)
{
    begin(AgentProcess::calmSetup());
    const uint32_t id = talkIn("which");
    ASSERT_NE(id, 0u);
    for (const int number : {2, 3}) {
        SCOPED_TRACE(number);
        refer(number, "<sip:301@127.0.0.1>");
        ASSERT_TRUE(next<tagSipReferred>(SIP_REFERRED, id));
        dialFor(id, uint32_t(number), "sip:301@127.0.0.1");
        for (const char* status : {"100", "486"}) {
            const QByteArray notify = take("NOTIFY");
            EXPECT_TRUE(notify.contains(QByteArray("\r\n\r\nSIP/2.0 ") + status)) << notify.constData();
            // The first one may go without, the standard says.
            if (number > 2) {
                EXPECT_EQ(headerOf(notify, "Event").toStdString(), "refer;id=3");
            }
            peer->reply(notify, "200 OK");
            if (strcmp(status, "100") == 0)
                peer->reply(take("INVITE sip:301@127.0.0.1 "), "486 Busy Here");
        }
    }
}

TEST_F(SipTransfers, WhoKeepsHisNumberBackIsConnectedByTheAddressOfHisPhone)
{
    begin(AgentProcess::calmSetup());
    ASSERT_NE(talkOut(1), 0u);
    peer->send(inviteText("hidden", "From: \"Anonymous\" <sip:anonymous@anonymous.invalid>;tag=caller"),
               agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst));
    tellMedia(SIP_ANSWER, kFirst, "v=0\r\ns=answer\r\n");
    acknowledge(peer->receive("SIP/2.0 200"));
    ASSERT_TRUE(next<tagSipMedia>(SIP_TALK, kFirst));
    tellConnect(1, kFirst);
    const QByteArray to = headerOf(peer->receive("REFER"), "Refer-To");
    EXPECT_TRUE(to.startsWith("<sip:200@" + server() + "?Replaces=hidden%3B")) << to.constData();
}

TEST_F(SipTransfers, WhoAskedForACallThatIsElsewhereHearsOfTheOneThatFollows)
{
    begin(AgentProcess::calmSetup());
    const uint32_t id = talkIn("follows");
    peer->reply(callsFor(id), "302 Moved", "Contact: <sip:302@127.0.0.1>");
    expectEnd(1, SIP_REDIRECTED, 302);
    dialFor(id, 2, "sip:302@127.0.0.1");
    expectToldUntilItTalks(take("INVITE sip:302@127.0.0.1 "), 2);
}

TEST_F(SipTransfers, WhoAskedForACallThatNobodyFollowsHearsWhereItHasGone)
{
    tagSipSetup setup = AgentProcess::calmSetup();
    setup.nOfferMs = 300;
    begin(setup);
    peer->reply(callsFor(talkIn("stays")), "302 Moved", "Contact: <tel:302>");
    expectEnd(1, SIP_REDIRECTED, 302);
    expectNotify("302", "terminated");
}

TEST_F(SipTransfers, WhoAskedForACallHearsThatItWasHungUpHere)
{
    begin();
    peer->reply(callsFor(talkIn("hungup")), "180 Ringing");
    expectNotify("180", "active");
    tellStatus(SIP_HANG_UP, 1);
    const QByteArray notify = peer->receive("NOTIFY", 5000);
    EXPECT_TRUE(notify.contains("\r\n\r\nSIP/2.0 487")) << notify.constData();
    EXPECT_TRUE(headerOf(notify, "Subscription-State").startsWith("terminated")) << notify.constData();
}

TEST_F(SipTransfers, WhoAskedForACallThatCannotBeMadeHearsSo)
{
    begin();
    const uint32_t id = talkIn("nowhere");
    ASSERT_NE(id, 0u);
    refer(2, "<sip:301@127.0.0.1>");
    ASSERT_TRUE(next<tagSipReferred>(SIP_REFERRED, id));
    auto record = sipWire::make<tagSipDial>(SIP_DIAL, 1);
    record.nReferrer = id;
    record.nLine = 3; // which has no account
    sipWire::setText(record.szTarget, "sip:301@127.0.0.1");
    agent.tell(record);
    expectEnd(1, SIP_BROKEN, 0);
    expectNotify("100", "active");
    const QByteArray notify = peer->receive("NOTIFY", 5000);
    EXPECT_TRUE(notify.contains("\r\n\r\nSIP/2.0 503")) << notify.constData();
}

TEST_F(SipTransfers, AReferralThatReplacesACallNamesItAndBringsNothingElseAlong)
{
    begin();
    const uint32_t id = talkIn("attended");
    ASSERT_NE(id, 0u);
    refer(2, "<sip:301@127.0.0.1?X-Other=1&Replaces=abc%40h%3Bto-tag%3D1%3Bfrom-tag%3D2%0D%0AX-More:1>");
    const auto* referred = next<tagSipReferred>(SIP_REFERRED, id);
    ASSERT_TRUE(referred);
    EXPECT_STREQ(referred->szTarget, "sip:301@127.0.0.1");
    EXPECT_EQ(referred->bReplaces, 1u);
    // Two calls are there already, and the third one ends one of them.
    ASSERT_NE(talkOut(5), 0u);
    dialFor(id, 6, "sip:301@127.0.0.1");
    expectNotify("100", "active");
    const QByteArray invite = take("INVITE sip:301@127.0.0.1 ");
    EXPECT_EQ(headerOf(invite, "Replaces").toStdString(), "abc@h;to-tag=1;from-tag=2");
    EXPECT_FALSE(invite.contains("X-")) << invite.constData();
    peer->reply(invite, "486 Busy Here");
    expectNotify("486", "terminated");
    expectEnd(6, SIP_REFUSED, 486);
}

TEST_F(SipTransfers, WhatThePhoneDoesNotWantToCallIsDeclined)
{
    tagSipSetup setup = AgentProcess::quickSetup();
    setup.nOfferMs = 300;
    begin(setup);
    const uint32_t id = talkIn("declined");
    ASSERT_NE(id, 0u);
    refer(2, "<sip:301@127.0.0.1>");
    ASSERT_TRUE(next<tagSipReferred>(SIP_REFERRED, id));
    tellStatus(SIP_REFUSE, id, 403);
    EXPECT_NE(peer->receive("SIP/2.0 403").toStdString(), "");
    refer(3, "<sip:301@127.0.0.1>");
    EXPECT_NE(peer->receive("SIP/2.0 603").toStdString(), "");
    // Then it is too late.
    dialFor(id, 1, "sip:301@127.0.0.1");
    expectEnd(1, SIP_BROKEN, 0);
    const QList<QPair<QByteArray, QByteArray>> wrong = {{"<tel:301>", "603"},
                                                        {"<sip:301@h;method=BYE>", "501"},
                                                        {"<sip:301@" + QByteArray(300, 'h') + ">", "414"},
                                                        {"<sip:301@h?Replaces=%3B%3B>", "400"}};
    for (int i = 0; i < wrong.size(); ++i) {
        refer(4 + i, wrong[i].first);
        EXPECT_TRUE(peer->receive("SIP/2.0 ").startsWith("SIP/2.0 " + wrong[i].second)) << i;
    }
    tellStatus(SIP_HANG_UP, id);
    EXPECT_NE(peer->receive("BYE").toStdString(), "");
}

TEST_F(SipTransfers, OutsideOfACallNobodyAsksForOne)
{
    begin();
    const QByteArray stranger = inviteText("outside", "Refer-To: <sip:301@127.0.0.1>", "");
    peer->send(QByteArray(stranger).replace("INVITE", "REFER"), agent.port());
    EXPECT_NE(peer->receive("SIP/2.0 403").toStdString(), "");
    EXPECT_TRUE(agent.isQuiet(200));
}

TEST_F(SipTransfers, ACallTakesThePlaceOfTheOneThatItNames)
{
    begin();
    ASSERT_NE(talkOut(1), 0u);
    const uint32_t old = talkIn("old");
    ASSERT_NE(old, 0u);
    peer->send(inviteText("new", replaces()), agent.port());
    const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst + 1);
    ASSERT_TRUE(arrived);
    EXPECT_EQ(arrived->nReplaces, old);
    tellMedia(SIP_ANSWER, kFirst + 1, "v=0\r\ns=answer\r\n");
    const QByteArray answer = take("SIP/2.0 200");
    EXPECT_EQ(headerOf(answer, "Call-ID").toStdString(), "new");
    acknowledge(answer);
    EXPECT_EQ(headerOf(take("BYE"), "Call-ID").toStdString(), "old");
    expectEnd(old, SIP_REPLACED, 0);
    EXPECT_TRUE(next<tagSipMedia>(SIP_TALK, kFirst + 1));
}

TEST_F(SipTransfers, WhoIsNotOfACallAndNoServerDoesNotTakeItsPlace)
{
    begin();
    for (const bool isOut : {false, true}) {
        const uint32_t id = isOut ? talkOut(1) : talkIn("mine");
        ASSERT_NE(id, 0u);
        const QByteArray own = isOut ? headerOf(lastInvite, "From") : headerOf(lastAnswer, "To");
        const QByteArray name = headerOf(lastAnswer, "Call-ID") + ";to-tag=" + tagOf(own) +
                                ";from-tag=" + (isOut ? "peer" : "caller");
        UdpPeer stranger("127.0.0.2");
        stranger.send(movedTo(stranger, inviteText(isOut ? "second" : "first", "Replaces: " + name)),
                      agent.port());
        EXPECT_NE(stranger.receive("SIP/2.0 403").toStdString(), "");
        EXPECT_TRUE(agent.isQuiet(100));
        tellStatus(SIP_HANG_UP, id);
        const QByteArray bye = take("BYE");
        EXPECT_EQ(headerOf(bye, "Call-ID"), headerOf(lastAnswer, "Call-ID"));
        peer->reply(bye, "200 OK");
        expectEnd(id, SIP_HUNG_UP, 0);
    }
}

TEST_F(SipTransfers, TheOtherSideOfACallTakesItsPlaceWithoutTheServer)
{
    begin();
    UdpPeer other("127.0.0.2");
    other.send(movedTo(other, inviteText("direct")), agent.port());
    const tagSipArrived* arrived = nextArrived();
    ASSERT_TRUE(arrived);
    const uint32_t id = arrived->head.nId;
    tellMedia(SIP_ANSWER, id, "v=0\r\ns=answer\r\n");
    lastAnswer = other.receive("SIP/2.0 200");
    other.send(movedTo(other, within("ACK", lastAnswer, 1)), agent.port());
    ASSERT_TRUE(next<tagSipMedia>(SIP_TALK, id));
    other.send(movedTo(other, inviteText("again", replaces())), agent.port());
    arrived = nextArrived();
    ASSERT_TRUE(arrived);
    EXPECT_EQ(arrived->nReplaces, id);
}

TEST_F(SipTransfers, ACallTakesThePlaceOfOneThatStillGoesOut)
{
    begin();
    dial(1, "300");
    const QByteArray invite = peer->receive("INVITE");
    peer->reply(invite, "180 Ringing", ownContact());
    ASSERT_TRUE(next<tagSipProgress>(SIP_PROGRESS, 1));
    const QByteArray named = "Replaces: " + headerOf(invite, "Call-ID") +
                             ";to-tag=" + tagOf(headerOf(invite, "From")) + ";from-tag=peer;early-only";
    peer->send(inviteText("pickup", named), agent.port());
    const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst);
    ASSERT_TRUE(arrived);
    EXPECT_EQ(arrived->nReplaces, 1u);
    tellMedia(SIP_ANSWER, kFirst, "v=0\r\ns=answer\r\n");
    const QByteArray cancel = take("CANCEL");
    EXPECT_EQ(headerOf(cancel, "Call-ID").toStdString(), headerOf(invite, "Call-ID").toStdString());
    EXPECT_TRUE(headerOf(cancel, "Reason").startsWith("SIP;cause=200;")) << "it is no missed call there";
    expectEnd(1, SIP_REPLACED, 0);
}

TEST_F(SipTransfers, ACallThatMayNotTakeAnothersPlaceIsRefusedAndTheOtherStays)
{
    begin();
    const QByteArray other = registersLine(1);
    ASSERT_FALSE(other.isEmpty());
    const uint32_t id = talkIn("stays");
    ASSERT_NE(id, 0u);
    expectRefused("unknown", "Replaces: nobody;to-tag=1;from-tag=2", "481");
    expectRefused("tag", replaces().replace(";from-tag=caller", ";from-tag=other"), "481");
    expectRefused("none", "Replaces: stays", "481");
    expectRefused("early", replaces(";early-only"), "486");
    expectRefused("two", replaces() + "\r\nReplaces: nobody;to-tag=1;from-tag=2", "400");
    expectRefused("twice", replaces() + "\r\n" + replaces(), "400");
    const QByteArray mine = contact;
    contact = other;
    expectRefused("line", replaces(), "481");
    contact = mine;

    peer->send(inviteText("rings"), agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst + 1));
    tellMedia(SIP_RING, kFirst + 1, "");
    const QByteArray ringing = peer->receive("SIP/2.0 180");
    const QByteArray talking = lastAnswer;
    lastAnswer = ringing;
    expectRefused("ringing", replaces(), "481");
    tellStatus(SIP_REFUSE, kFirst + 1, 486);
    lastAnswer = talking;

    EXPECT_FALSE(agent.next([](const tagSipHead& head) { return head.eKind == SIP_ARRIVED; }, 100));
    tellStatus(SIP_HANG_UP, id);
    EXPECT_EQ(headerOf(peer->receive("BYE"), "Call-ID").toStdString(), "stays");
    expectRefused("ended", replaces(), "603");
}
