// Calls from outside.
#include "tests/kit/plain/measuredMemory.h"
#include "tests/kit/plain/ports.h"
#include "tests/kit/plain/processes.h"
#include "tests/sip/callTest.h"
#include <csignal>
#include <cstring>

namespace {

constexpr uint32_t kFirst = SIP_CALL_FIRST_INCOMING;

} // namespace

TEST_F(SipCalls, ACallerRingsTalksAndHangsUp)
{
    begin();
    startSipp("callerTalks.xml", kit::freePort());
    const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst);
    ASSERT_TRUE(arrived);
    EXPECT_STREQ(arrived->szNumber, "200");
    EXPECT_STREQ(arrived->szName, "B\"ob");
    EXPECT_EQ(arrived->nLine, 0u);
    EXPECT_TRUE(strstr(arrived->szSdp, "s=offer")) << arrived->szSdp;
    tellMedia(SIP_RING, kFirst, "");
    tellMedia(SIP_ANSWER, kFirst, "v=0\r\ns=answer\r\n");
    const auto* talk = next<tagSipMedia>(SIP_TALK, kFirst);
    ASSERT_TRUE(talk);
    EXPECT_TRUE(strstr(talk->szSdp, "s=offer")) << talk->szSdp;
    expectEnd(kFirst, SIP_HUNG_UP, 0);
    sipp.expectDone();
}

TEST_F(SipCalls, ACallerWhoGivesUpEndsTheRinging)
{
    begin();
    startSipp("callerGivesUp.xml", kit::freePort());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst));
    tellMedia(SIP_RING, kFirst, "");
    expectEnd(kFirst, SIP_CANCELLED, 0);
    sipp.expectDone();
}

TEST_F(SipCalls, ACallThatAnotherPhoneHasAnsweredIsNoMissedOne)
{
    begin();
    const QList<QPair<QByteArray, SIP_ENDING>> reasons = {
        {"SIP;cause=200;text=\"Call completed elsewhere\"", SIP_ELSEWHERE},
        {"Q.850;cause=26", SIP_ELSEWHERE},
        {"Q.850;cause=16", SIP_CANCELLED},
        {"SIP;cause=26", SIP_CANCELLED}};
    for (int i = 0; i < reasons.size(); ++i) {
        SCOPED_TRACE(i);
        const uint32_t id = kFirst + uint32_t(i);
        const QByteArray invite = inviteText("elsewhere" + QByteArray::number(i));
        peer->send(invite, agent.port());
        ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, id));
        QByteArray cancel = invite.left(invite.indexOf("Content-Type")).replace("INVITE", "CANCEL");
        cancel += "Reason: " + reasons[i].first + "\r\nContent-Length: 0\r\n\r\n";
        peer->send(cancel, agent.port());
        expectEnd(id, reasons[i].second, 0);
    }
}

TEST_F(SipCalls, ACallIsRefusedWithTheStatusThatThePhoneSays)
{
    begin();
    peer->send(inviteText("refused"), agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst));
    tellStatus(SIP_REFUSE, kFirst, 603);
    EXPECT_TRUE(peer->receive("SIP/2.0 603").contains("To: <sip:" + contact));
    expectEnd(kFirst, SIP_REFUSED, 603);

    peer->send(inviteText("hidden"), agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst + 1));
    tellStatus(SIP_REFUSE, kFirst + 1, 433);
    EXPECT_NE(peer->receive("SIP/2.0 433 Anonymity Disallowed\r\n").toStdString(), "");
}

TEST_F(SipCalls, ADeflectedCallIsToldWhereToGo)
{
    begin();
    peer->send(inviteText("deflected"), agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst));
    tellTarget(SIP_DEFLECT, kFirst, "20#1");
    const QByteArray server = "127.0.0.1:" + QByteArray::number(peer->port());
    EXPECT_EQ(headerOf(peer->receive("SIP/2.0 302"), "Contact").toStdString(),
              "<sip:20%231@" + server.toStdString() + ">");
    expectEnd(kFirst, SIP_REDIRECTED, 302);
}

TEST_F(SipCalls, EarlyMediaGoesWithTheRinging)
{
    begin();
    peer->send(inviteText("early"), agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst));
    tellMedia(SIP_RING, kFirst, "v=0\r\ns=early\r\n");
    EXPECT_TRUE(peer->receive("SIP/2.0 183").contains("s=early"));
}

TEST_F(SipCalls, TheThirdCallIsBusyAndFindsRoomWhenOneHasEnded)
{
    begin();
    peer->send(inviteText("one"), agent.port());
    peer->send(inviteText("two"), agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst + 1));
    tellMedia(SIP_RING, kFirst, "");
    tellMedia(SIP_RING, kFirst + 1, "");
    EXPECT_NE(peer->receive("SIP/2.0 180").toStdString(), "");
    EXPECT_NE(peer->receive("SIP/2.0 180").toStdString(), "");
    peer->send(inviteText("three"), agent.port());
    const QByteArray busy = peer->receive("SIP/2.0 486");
    EXPECT_EQ(headerOf(busy, "Call-ID").toStdString(), "three");
    dial(7, "300");
    expectEnd(7, SIP_BROKEN, 0);
    tellStatus(SIP_REFUSE, kFirst, 486);
    expectEnd(kFirst, SIP_REFUSED, 486);
    peer->send(inviteText("four"), agent.port());
    EXPECT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst + 2));
}

TEST_F(SipCalls, WhatIsOnlyLookedAtKeepsNobodyOut)
{
    begin();
    for (uint32_t i = 0; i < 2 * SIP_CALLS_MAX; ++i) {
        peer->send(inviteText("looked" + QByteArray::number(i)), agent.port());
        ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst + i)) << i;
    }
    dial(7, "300");
    EXPECT_NE(peer->receive("INVITE").toStdString(), "");
    tellMedia(SIP_RING, kFirst + 2, "");
    EXPECT_EQ(headerOf(peer->receive("SIP/2.0 180"), "Call-ID").toStdString(), "looked2");
    for (const SIP_RECORD way : {SIP_RING, SIP_ANSWER}) {
        const uint32_t id = way == SIP_RING ? kFirst : kFirst + 1;
        tellMedia(way, id, way == SIP_RING ? "" : "v=0\r\ns=answer\r\n");
        EXPECT_NE(peer->receive("SIP/2.0 486").toStdString(), "") << way;
        expectEnd(id, SIP_REFUSED, 486);
    }
    tellMedia(SIP_ANSWER, kFirst + 2, "v=0\r\ns=answer\r\n");
    EXPECT_EQ(headerOf(peer->receive("SIP/2.0 200"), "Call-ID").toStdString(), "looked2");
}

TEST_F(SipCalls, NoMoreAreLookedAtThanHaveRoom)
{
    begin();
    uint32_t id = kFirst;
    for (; id < kFirst + SIP_JUDGED_MAX; ++id) {
        peer->send(inviteText("room" + QByteArray::number(id)), agent.port());
        ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, id));
    }
    peer->send(inviteText("late"), agent.port());
    const QByteArray busy = peer->receive("SIP/2.0 486");
    EXPECT_EQ(headerOf(busy, "Call-ID").toStdString(), "late");
    EXPECT_GT(headerOf(busy, "Retry-After").toInt(), 0) << busy.constData();
    tellStatus(SIP_REFUSE, kFirst, 488);
    expectEnd(kFirst, SIP_REFUSED, 488);
    peer->send(inviteText("again"), agent.port());
    EXPECT_TRUE(next<tagSipArrived>(SIP_ARRIVED, id));
}

TEST_F(SipCalls, WhoDoesNotKnowTheContactOfALineFindsNobody)
{
    begin();
    peer->send(inviteText("stranger").replace(contact, "100"), agent.port());
    EXPECT_NE(peer->receive("SIP/2.0 404").toStdString(), "");
    EXPECT_FALSE(agent.next([](const tagSipHead& head) { return head.eKind == SIP_ARRIVED; }, 200));
}

TEST_F(SipCalls, NothingRingsForEver)
{
    tagSipSetup setup = AgentProcess::quickSetup();
    setup.nRingSeconds = 1;
    begin(setup);
    peer->send(inviteText("long"), agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst));
    tellMedia(SIP_RING, kFirst, "");
    EXPECT_NE(peer->receive("SIP/2.0 480").toStdString(), "");
    expectEnd(kFirst, SIP_UNANSWERED, 480);

    dial(1, "300");
    const QByteArray invite = peer->receive("INVITE");
    peer->reply(invite, "180 Ringing");
    expectEnd(1, SIP_UNANSWERED, 480);
    // Sooner than a call is given up that has ended.
    EXPECT_EQ(headerOf(peer->receive("CANCEL", 2500), "Call-ID").toStdString(),
              headerOf(invite, "Call-ID").toStdString());
}

TEST_F(SipCalls, ThePhoneLearnsWhoCallsAndHow)
{
    begin();
    peer->send(inviteText("who", "From: \"Anna\" <sip:anna%23@127.0.0.1>;tag=a\r\n"
                                 "Diversion: <sip:203@h>;reason=busy, <sip:202@h>\r\n"
                                 "Call-Info: <http://h/>;answer-after=0"),
               agent.port());
    const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst);
    ASSERT_TRUE(arrived);
    EXPECT_STREQ(arrived->szNumber, "anna#");
    EXPECT_STREQ(arrived->szName, "Anna");
    EXPECT_EQ(arrived->bAutoAnswer, 1u);
    EXPECT_EQ(arrived->bAnonymous, 0u);
    ASSERT_EQ(arrived->nForwards, 2u);
    EXPECT_STREQ(arrived->szForwardedBy[0], "202");
    EXPECT_STREQ(arrived->szForwardedBy[1], "203");
    tellStatus(SIP_REFUSE, kFirst, 486);

    peer->send(inviteText("private", "Privacy: id\r\nP-Asserted-Identity: <sip:204@h>"), agent.port());
    arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst + 1);
    ASSERT_TRUE(arrived);
    EXPECT_EQ(arrived->bAnonymous, 1u);
    EXPECT_EQ(arrived->bAutoAnswer, 0u);
    EXPECT_STREQ(arrived->szNumber, "");
    tellStatus(SIP_REFUSE, kFirst + 1, 486);

    peer->send(inviteText("asserted", "P-Asserted-Identity: \"Head office\" <sip:204@h>"), agent.port());
    arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst + 2);
    ASSERT_TRUE(arrived);
    EXPECT_STREQ(arrived->szNumber, "204");
    EXPECT_STREQ(arrived->szName, "Head office");
}

TEST_F(SipCalls, ANumberIsToldWithoutWhatStandsBehindIt)
{
    begin();
    peer->send(inviteText("plain", "From: <sip:+4930123;phone-context=h.test@127.0.0.1;user=phone>;tag=a"),
               agent.port());
    const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst);
    ASSERT_TRUE(arrived);
    EXPECT_STREQ(arrived->szNumber, "+4930123");
}

TEST_F(SipCalls, ADescriptionThatNoRecordHoldsIsRefusedAndNotToldInPart)
{
    begin();
    const QByteArray start = "v=0\r\ns=";
    const QByteArray most = start + QByteArray(SIP_SDP_SIZE - 1 - start.size(), 'x');
    peer->send(inviteText("large", {}, most + "x"), agent.port());
    const QByteArray refused = peer->receive("SIP/2.0 4");
    EXPECT_TRUE(refused.startsWith("SIP/2.0 488")) << refused.constData();
    acknowledge(refused);
    peer->send(inviteText("fits", {}, most), agent.port());
    const auto* arrived = nextArrived();
    ASSERT_TRUE(arrived);
    EXPECT_STREQ(arrived->szSdp, most.constData());
}

TEST_F(SipCalls, WhoKeepsHisNumberBackIsAnonymousHoweverHeSaysSo)
{
    begin();
    const QByteArray ways[] = {"Privacy: user", "Privacy: header; user",
                               "From: \"Anonymous\" <sip:anonymous@anonymous.invalid>;tag=a",
                               "From: <sip:Anonymous@127.0.0.1>;tag=a",
                               "From: <sip:hidden@Anonymous.Invalid>;tag=a"};
    uint32_t id = kFirst;
    for (const QByteArray& way : ways) {
        SCOPED_TRACE(way.toStdString());
        peer->send(inviteText("hidden" + QByteArray::number(id), way), agent.port());
        const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, id);
        ASSERT_TRUE(arrived);
        EXPECT_EQ(arrived->bAnonymous, 1u);
        EXPECT_STREQ(arrived->szNumber, "");
        EXPECT_STREQ(arrived->szName, "");
        tellStatus(SIP_REFUSE, id++, 433);
    }
}

TEST_F(SipCalls, OfManyWhoSentACallOnTheLastFewAreTold)
{
    begin();
    QByteArray line = "Diversion: ";
    for (int i = 0; i < 3 * SIP_FORWARDS_MAX; ++i)
        line += (i ? ", <sip:30" : "<sip:30") + QByteArray::number(i) + "@h>";
    peer->send(inviteText("many", line), agent.port());
    const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst);
    ASSERT_TRUE(arrived);
    ASSERT_EQ(arrived->nForwards, uint32_t(SIP_FORWARDS_MAX));
    for (const auto& each : arrived->szForwardedBy)
        EXPECT_EQ(QByteArray(each).left(2).toStdString(), "30");
    EXPECT_STREQ(arrived->szSdp, "v=0\r\ns=offer\r\n");
    EXPECT_TRUE(agent.isRunning());
}

TEST_F(SipCalls, WhoSentACallOnIsReadFromEveryKindOfAddressAndFromNothingElse)
{
    begin();
    const QList<QPair<QByteArray, QByteArrayList>> lines = {
        {"Diversion: <sips:302@h>, <SIP:303@h>, <tel:+49304;phone-context=h>", {"+49304", "303", "302"}},
        {"Diversion: \"sip:911@bank, \\\"<sip:912@bank>\" <sip:304@h>;reason=\"a,<sip:913@h>\"", {"304"}},
        {"Diversion: Sip:305@h;privacy=off , sip:306@h", {"306", "305"}},
        {"Diversion: <sip:%33%30%00%0d%0A%1b%37:secret@h>", {"307"}},
        {"Diversion: <sip:" + QByteArray(9000, '9') + "@h>", {QByteArray(SIP_TEXT_SIZE - 1, '9')}},
        {"Diversion: <http://308@h>, \"sip:914@h", {}},
    };
    uint32_t id = kFirst;
    for (const auto& [line, numbers] : lines) {
        SCOPED_TRACE(line.left(80).toStdString());
        peer->send(inviteText("by" + QByteArray::number(id), line), agent.port());
        const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, id);
        ASSERT_TRUE(arrived);
        QByteArrayList told;
        for (uint32_t i = 0; i < arrived->nForwards; ++i)
            told.append(arrived->szForwardedBy[i]);
        EXPECT_EQ(told.join(' ').toStdString(), numbers.join(' ').toStdString());
        tellStatus(SIP_REFUSE, id++, 486);
    }
}

TEST_F(SipCalls, OfALongHistoryTheLastFewWhoSentItOnAreTold)
{
    begin();
    QByteArray line = "History-Info: ";
    for (int i = 100; i <= 112; ++i)
        line += (i > 100 ? ", <sip:" : "<sip:") + QByteArray::number(i) + "@h>;index=1";
    peer->send(inviteText("many", line), agent.port());
    const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst);
    ASSERT_TRUE(arrived);
    ASSERT_EQ(arrived->nForwards, uint32_t(SIP_FORWARDS_MAX));
    for (int i = 0; i < SIP_FORWARDS_MAX; ++i)
        EXPECT_EQ(QByteArray(arrived->szForwardedBy[i]).toInt(), 107 + i);
}

TEST_F(SipCalls, WhoSentACallOnCostsNoMoreMemoryThanItsMessage)
{
    const kit::NothingKept nothing;
    begin();
    uint32_t id = kFirst;
    const auto arrives = [&](const QByteArray& lines) {
        peer->send(inviteText("long" + QByteArray::number(id), lines), agent.port());
        EXPECT_TRUE(next<tagSipArrived>(SIP_ARRIVED, id)) << lines.left(20).constData();
        tellStatus(SIP_REFUSE, id++, 486);
    };
    const QByteArray schemes = QByteArray("sip:").repeated(14000);
    arrives("Subject: " + schemes); // what any message of that size takes
    const qint64 before = kit::statusKiB(agent.pid(), "VmHWM");
    ASSERT_GT(before, 0);
    for (const char* name : {"Diversion: ", "History-Info: "}) {
        arrives(name + schemes);
        arrives(name + QByteArray("sip:1,").repeated(9000));
        arrives(name + ('"' + schemes + "\" <sip:1@h>"));
    }
    EXPECT_LT(kit::statusKiB(agent.pid(), "VmHWM") - before, 16000 * kit::kMemoryTimes) << before;
}

TEST_F(SipCalls, WhatRingsTooLongIsNotWhatTalksLong)
{
    tagSipSetup setup = AgentProcess::quickSetup();
    setup.nRingSeconds = 1;
    begin(setup);
    ASSERT_NE(talkOut(1), 0u);
    const uint32_t id = talkIn("talks");
    ASSERT_NE(id, 0u);
    EXPECT_FALSE(agent.next([](const tagSipHead& head) { return head.eKind == SIP_ENDED; }, 1500));
    tellStatus(SIP_HANG_UP, id);
    expectEnd(id, SIP_HUNG_UP, 0);
}

TEST_F(SipCalls, AnOfferThatWasTakenBackWhileThePhoneSaysNothingIsNotTheLast)
{
    tagSipSetup setup = AgentProcess::quickSetup();
    setup.nOfferMs = 400;
    begin(setup);
    const uint32_t id = talkIn("takenback");
    ASSERT_NE(id, 0u);
    const QByteArray offer =
        within("INVITE", lastAnswer, 2, "Content-Type: application/sdp", "v=0\r\ns=first\r\n");
    peer->send(offer, agent.port());
    ASSERT_TRUE(next<tagSipMedia>(SIP_OFFER, id));
    takeBack(offer);
    const QByteArray ended = peer->receive("SIP/2.0 487");
    ASSERT_NE(ended.toStdString(), "");
    acknowledge(ended);
    // As soon as the phone's time for an answer is over.
    const tagSipMedia* told = nullptr;
    for (int number = 3; number < 20 && !told; ++number) {
        peer->send(within("INVITE", lastAnswer, number, "Content-Type: application/sdp", "v=0\r\n"),
                   agent.port());
        told = next<tagSipMedia>(SIP_OFFER, id, 200);
        const QByteArray refused = told ? QByteArray() : peer->receive("SIP/2.0 500");
        if (!refused.isEmpty())
            acknowledge(refused);
    }
    ASSERT_TRUE(told);
    EXPECT_STREQ(told->szSdp, "v=0\r\n");
}

TEST_F(SipCalls, TheOtherSideHoldsAndIsAnswered)
{
    begin();
    const uint32_t id = talkIn("held");
    ASSERT_NE(id, 0u);
    peer->send(within("INVITE", lastAnswer, 2, "Content-Type: application/sdp", "v=0\r\na=sendonly\r\n"),
               agent.port());
    const auto* offer = next<tagSipMedia>(SIP_OFFER, id);
    ASSERT_TRUE(offer);
    EXPECT_TRUE(strstr(offer->szSdp, "a=sendonly"));
    tellMedia(SIP_MEDIA, id, "v=0\r\na=recvonly\r\n");
    const QByteArray answer = peer->receive("SIP/2.0 200");
    EXPECT_TRUE(answer.contains("a=recvonly")) << answer.constData();
    acknowledge(answer);
    const auto* talk = next<tagSipMedia>(SIP_TALK, id);
    ASSERT_TRUE(talk);
    EXPECT_TRUE(strstr(talk->szSdp, "a=sendonly"));
}

TEST_F(SipCalls, AnOfferThatThePhoneLeavesLyingMayBeMadeAgainAndTheCallGoesOn)
{
    tagSipSetup setup = AgentProcess::quickSetup();
    setup.nOfferMs = 200;
    begin(setup);
    const uint32_t id = talkIn("lying");
    ASSERT_NE(id, 0u);
    peer->send(within("INVITE", lastAnswer, 2, "Content-Type: application/sdp", "v=0\r\n"), agent.port());
    const QByteArray refused = peer->receive("SIP/2.0 500");
    EXPECT_NE(headerOf(refused, "Retry-After").toInt(), 0) << refused.constData();
    acknowledge(refused);
    // The phone may say so at once, and then finds its media.
    peer->send(within("INVITE", lastAnswer, 3, "Content-Type: application/sdp", "v=0\r\n"), agent.port());
    ASSERT_TRUE(next<tagSipMedia>(SIP_OFFER, id));
    ASSERT_TRUE(next<tagSipMedia>(SIP_OFFER, id));
    agent.tell(sipWire::make<tagSipHead>(SIP_NO_MEDIA, id));
    const QByteArray later = peer->receive("SIP/2.0 500");
    EXPECT_NE(headerOf(later, "Retry-After").toInt(), 0) << later.constData();
    EXPECT_EQ(headerOf(later, "CSeq").toStdString(), "3 INVITE");
    acknowledge(later);
    peer->send(within("INVITE", lastAnswer, 4, "Content-Type: application/sdp", "v=0\r\n"), agent.port());
    ASSERT_TRUE(next<tagSipMedia>(SIP_OFFER, id));
    tellMedia(SIP_MEDIA, id, "v=0\r\ns=found\r\n");
    const QByteArray answer = peer->receive("SIP/2.0 200");
    EXPECT_TRUE(answer.endsWith("s=found\r\n")) << answer.constData();
    acknowledge(answer);
    agent.tell(sipWire::make<tagSipHead>(SIP_NO_MEDIA, id)); // of nothing
    tellStatus(SIP_HANG_UP, id);
    EXPECT_NE(peer->receive("BYE").toStdString(), "");
    expectEnd(id, SIP_HUNG_UP, 0);
}

TEST_F(SipCalls, WhatVouchesForACallerCountsFromTheLinesOwnServerAlone)
{
    begin();
    const QByteArray lines = "P-Asserted-Identity: \"Head office\" <sip:204@h>\r\n"
                             "Call-Info: <http://h/c.html>;purpose=card, <https://h/p.png>;purpose=icon";
    peer->send(inviteText("server", lines), agent.port());
    const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst);
    ASSERT_TRUE(arrived);
    EXPECT_STREQ(arrived->szNumber, "204");
    EXPECT_STREQ(arrived->szPicture, "https://h/p.png");
    tellStatus(SIP_REFUSE, kFirst, 486);

    UdpPeer stranger("127.0.0.2");
    stranger.send(inviteText("stranger", lines), agent.port());
    arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst + 1);
    ASSERT_TRUE(arrived);
    EXPECT_STREQ(arrived->szNumber, "200");
    EXPECT_STREQ(arrived->szName, "");
    EXPECT_STREQ(arrived->szPicture, "");
    tellStatus(SIP_REFUSE, kFirst + 1, 486);

    int i = 2;
    for (const QByteArray& icon :
         {QByteArray("<ftp://h/p.png>"), "<http://h/" + QByteArray(300, 'p') + ">"}) {
        peer->send(inviteText("odd" + QByteArray::number(i), "Call-Info: " + icon + ";purpose=icon"),
                   agent.port());
        arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst + uint32_t(i));
        ASSERT_TRUE(arrived) << i;
        EXPECT_STREQ(arrived->szPicture, "") << i;
        tellStatus(SIP_REFUSE, kFirst + uint32_t(i++), 486);
    }
}

TEST_F(SipCalls, EveryWayToAskForAnAnswerWithoutAHandIsKnown)
{
    begin();
    const QList<QPair<QByteArray, uint32_t>> ways = {{"Call-Info: <sip:h>;answer-after=0", 1},
                                                     {"Alert-Info: <http://h>;info=alert-autoanswer", 1},
                                                     {"Alert-Info: <http://h>;answer-after=0", 1},
                                                     {"Alert-Info: Auto Answer", 1},
                                                     {"Alert-Info: ;info=Auto Answer", 1},
                                                     {"Alert-Info: info=alert-autoanswer;delay=0", 1},
                                                     {"Alert-Info: ring-answer", 1},
                                                     {"Call-Info: answer-after=0", 1},
                                                     {"Alert-Info: intercom bell", 0},
                                                     {"Answer-Mode: Auto", 1},
                                                     {"Priv-Answer-Mode: Auto", 1},
                                                     {"P-Auto-Answer: normal", 1},
                                                     {"Answer-Mode: Manual", 0},
                                                     {"Alert-Info: <http://h>;info=alert-internal", 0}};
    for (int i = 0; i < ways.size(); ++i) {
        peer->send(inviteText("way" + QByteArray::number(i), ways[i].first), agent.port());
        const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst + uint32_t(i));
        ASSERT_TRUE(arrived) << i;
        EXPECT_EQ(arrived->bAutoAnswer, ways[i].second) << ways[i].first.constData();
        tellStatus(SIP_REFUSE, kFirst + uint32_t(i), 486);
    }
}

TEST_F(SipCalls, AnEmptyAnswerRefusesAnOfferAtOnceAndTheCallGoesOn)
{
    begin();
    const uint32_t id = talkIn("nothing");
    ASSERT_NE(id, 0u);
    peer->send(within("INVITE", lastAnswer, 2, "Content-Type: application/sdp", "v=0\r\n"), agent.port());
    ASSERT_TRUE(next<tagSipMedia>(SIP_OFFER, id));
    tellMedia(SIP_MEDIA, id, "");
    const QByteArray refused = peer->receive("SIP/2.0 488");
    EXPECT_NE(refused.toStdString(), "");
    acknowledge(refused);
    // One that comes too late is no offer.
    tellMedia(SIP_MEDIA, id, "");
    EXPECT_EQ(peer->receive("INVITE", 300).toStdString(), "");
    tellStatus(SIP_HANG_UP, id);
    EXPECT_NE(peer->receive("BYE").toStdString(), "");
}

TEST_F(SipCalls, TheOlderHeadersTellOfTheCallerTheSame)
{
    begin();
    const QByteArray party = "Remote-Party-ID: \"Dora\" <sip:401@h>;party=calling;privacy=";
    uint32_t id = kFirst;
    const tagSipArrived* arrived = nullptr;
    for (const char* way : {"off", "none"}) {
        SCOPED_TRACE(way);
        const QByteArray lines = "Remote-Party-ID: <sip:9@h>;party=called\r\n" + party + way;
        peer->send(inviteText(way, lines), agent.port());
        arrived = next<tagSipArrived>(SIP_ARRIVED, id);
        ASSERT_TRUE(arrived);
        EXPECT_STREQ(arrived->szNumber, "401");
        EXPECT_STREQ(arrived->szName, "Dora");
        EXPECT_EQ(arrived->bAnonymous, 0u);
        tellStatus(SIP_REFUSE, id++, 486);
    }

    peer->send(inviteText("hides", party + "full"), agent.port());
    arrived = next<tagSipArrived>(SIP_ARRIVED, id);
    ASSERT_TRUE(arrived);
    EXPECT_STREQ(arrived->szNumber, "");
    EXPECT_EQ(arrived->bAnonymous, 1u);
    tellStatus(SIP_REFUSE, id++, 486);

    peer->send(inviteText("both", "P-Asserted-Identity: <sip:204@h>\r\n" + party + "off"), agent.port());
    arrived = next<tagSipArrived>(SIP_ARRIVED, id);
    ASSERT_TRUE(arrived);
    EXPECT_STREQ(arrived->szNumber, "204");
    tellStatus(SIP_REFUSE, id++, 486);

    UdpPeer stranger("127.0.0.2");
    stranger.send(inviteText("strange", party + "off"), agent.port());
    arrived = next<tagSipArrived>(SIP_ARRIVED, id);
    ASSERT_TRUE(arrived);
    EXPECT_STREQ(arrived->szNumber, "200");
    tellStatus(SIP_REFUSE, id++, 486);

    peer->send(inviteText("history", "History-Info: <sip:801@h?Reason=SIP%3Bcause%3D302>;index=1,"
                                     "<sip:802@h>;index=1.1\r\nHistory-Info: <sip:100@h>;index=1.1.1"),
               agent.port());
    arrived = next<tagSipArrived>(SIP_ARRIVED, id);
    ASSERT_TRUE(arrived);
    ASSERT_EQ(arrived->nForwards, 2u);
    EXPECT_STREQ(arrived->szForwardedBy[0], "801");
    EXPECT_STREQ(arrived->szForwardedBy[1], "802");
}

TEST_F(SipCalls, AnOfferThatCrossesTheEndOfItsCallIsNoOtherCall)
{
    begin();
    for (const bool isByeAnswered : {false, true}) {
        const uint32_t id = talkOut(isByeAnswered ? 2 : 1);
        ASSERT_NE(id, 0u);
        tellStatus(SIP_HANG_UP, id);
        const QByteArray bye = peer->receive("BYE");
        ASSERT_NE(bye.toStdString(), "");
        if (isByeAnswered) {
            peer->reply(bye, "200 OK");
            agent.isQuiet(200);
        }
        peer->send(within("INVITE", lastInvite, 21, "Content-Type: application/sdp", "v=0\r\na=sendonly\r\n"),
                   agent.port());
        EXPECT_EQ(nextArrived(1000), nullptr) << isByeAnswered;
        const QByteArray refused = peer->receive("SIP/2.0 4");
        EXPECT_TRUE(refused.startsWith("SIP/2.0 481")) << refused.constData();
        acknowledge(refused);
        if (!isByeAnswered)
            peer->reply(bye, "200 OK");
    }
}

TEST_F(SipCalls, AnOfferOfThePhoneThatCrossesTheEndOfTheCallBeginsNoOther)
{
    begin();
    for (int round = 0; round < 60; ++round) {
        const uint32_t id = talkOut(uint32_t(round + 1));
        ASSERT_NE(id, 0u) << round;
        const QByteArray bye = within("BYE", lastInvite, 31);
        // Both lie there when the agent looks, in either order.
        kill(pid_t(agent.pid()), SIGSTOP);
        if (round % 2) {
            peer->send(bye, agent.port());
            tellMedia(SIP_MEDIA, id, "v=0\r\na=sendonly\r\n");
        } else {
            tellMedia(SIP_MEDIA, id, "v=0\r\na=sendonly\r\n");
            peer->send(bye, agent.port());
        }
        kill(pid_t(agent.pid()), SIGCONT);
        expectEnd(id, SIP_HUNG_UP, 0);
        for (QByteArray message = peer->receive(30); !message.isEmpty(); message = peer->receive(30)) {
            const bool isOther =
                message.startsWith("INVITE") && !headerOf(message, "To").contains(";tag=peer");
            EXPECT_FALSE(isOther) << round << ": " << message.constData();
        }
    }
}
