// Messages that wait in a voice mail, as the servers of the lines tell of them.
#include "tests/kit/plain/measuredMemory.h"
#include "tests/kit/plain/processes.h"
#include "tests/sip/eventTest.h"
#include <QElapsedTimer>

namespace {

constexpr const char* kType = "application/simple-message-summary";
const QByteArray kTwo =
    "Messages-Waiting: yes\r\nMessage-Account: sip:user0@h\r\nVoice-Message: 2/8 (0/2)\r\n";
const QByteArray kNone = "Messages-Waiting: no\r\nVoice-Message: 0/8\r\n";

class SipMessages : public SipEventsOf
{
protected:
    // The line has asked for them and was told of two; what it has asked.
    QByteArray knowsOfTwo()
    {
        const QByteArray subscribe = nextSubscribe("message-summary");
        accept(subscribe);
        note(subscribe, kTwo, kType);
        expectMessages(true, 2, 8);
        return subscribe;
    }
};

} // namespace

TEST_F(SipMessages, ARegisteredLineAsksForThemAndTellsTheirCounts)
{
    begin();
    const QByteArray subscribe = nextSubscribe("message-summary");
    const QByteArray own = "<sip:user0@127.0.0.1:" + QByteArray::number(peer->port()) + ">";
    EXPECT_EQ(headerOf(subscribe, "To").toStdString(), own.toStdString());
    EXPECT_TRUE(headerOf(subscribe, "From").startsWith("\"User 0\" " + own)) << subscribe.constData();
    EXPECT_EQ(headerOf(subscribe, "Accept").toStdString(), kType);
    EXPECT_TRUE(headerOf(subscribe, "Contact").startsWith("<sip:" + contact + "@")) << subscribe.constData();
    EXPECT_GT(headerOf(subscribe, "Expires").toInt(), 0);
    accept(subscribe);
    EXPECT_EQ(note(subscribe, kTwo, kType).toStdString(), "SIP/2.0 200 OK");
    expectMessages(true, 2, 8);
    note(subscribe, kTwo, kType);
    EXPECT_TRUE(isNothingTold()); // nothing new
    note(subscribe, kNone, kType);
    expectMessages(true, 0, 8);
    note(subscribe, "Messages-Waiting: no\r\nVoice-Message: 5/3\r\n", kType);
    expectMessages(true, 0, 3);
}

TEST_F(SipMessages, TheyAreAskedForByTheOutboundProxy)
{
    ASSERT_TRUE(agent.start(AgentProcess::calmSetup()));
    peer = std::make_unique<UdpPeer>();
    agent.tell(accountBehind(peer->port()));
    const QByteArray request = peer->receive("REGISTER");
    peer->reply(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=3600");
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    const QByteArray subscribe = nextSubscribe("message-summary", 5000);
    EXPECT_TRUE(subscribe.startsWith("SUBSCRIBE sip:user0@nobody.invalid")) << subscribe.constData();
}

TEST_F(SipMessages, ANoteThatComesBeforeTheReplyCounts)
{
    begin();
    const QByteArray subscribe = nextSubscribe("message-summary");
    note(subscribe, kTwo, kType);
    expectMessages(true, 2, 8);
    accept(subscribe);
    EXPECT_TRUE(isNothingTold());
}

TEST_F(SipMessages, APasswordIsAskedForAndGiven)
{
    begin();
    const QByteArray first = nextSubscribe("message-summary");
    EXPECT_EQ(headerOf(first, "Authorization").toStdString(), "");
    peer->reply(first, "401 Unauthorized",
                "WWW-Authenticate: Digest realm=\"home\", nonce=\"n1\", qop=\"auth\"");
    const QByteArray second = nextSubscribe("message-summary");
    const QByteArray answer = headerOf(second, "Authorization");
    EXPECT_EQ(paramOf(answer, "response").toStdString(),
              digestOf("SUBSCRIBE", answer, "auth0", "s3cret:0").toStdString());
    // One that was wrong is not given again.
    peer->reply(second, "401 Unauthorized",
                "WWW-Authenticate: Digest realm=\"home\", nonce=\"n2\", qop=\"auth\"");
    EXPECT_EQ(nextSubscribe("message-summary", 1500).toStdString(), "");
}

TEST_F(SipMessages, ARefreshMayBeAskedForThePasswordAnew)
{
    begin();
    peer->reply(nextSubscribe("message-summary"), "401 Unauthorized",
                "WWW-Authenticate: Digest realm=\"home\", nonce=\"n1\", qop=\"auth\"");
    const QByteArray second = nextSubscribe("message-summary");
    accept(second, 2);
    note(second, kTwo, kType, "active;expires=2");
    expectMessages(true, 2, 8);
    const QByteArray refresh = nextSubscribe("message-summary");
    EXPECT_EQ(headerOf(refresh, "Call-ID").toStdString(), headerOf(second, "Call-ID").toStdString());
    peer->reply(refresh, "401 Unauthorized",
                "WWW-Authenticate: Digest realm=\"home\", nonce=\"n2\", qop=\"auth\"");
    const QByteArray again = nextSubscribe("message-summary");
    EXPECT_EQ(paramOf(headerOf(again, "Authorization"), "nonce").toStdString(), "n2");
    EXPECT_TRUE(isNothingTold());
}

TEST_F(SipMessages, ARefreshIsNoReasonToAnswerAStrangersChallenge)
{
    begin();
    UdpPeer stranger("127.0.0.2");
    const QByteArray challenge = "WWW-Authenticate: Digest realm=\"home\", nonce=\"theirs\", qop=\"auth\"";
    peer->reply(nextSubscribe("message-summary"), "401 Unauthorized",
                QByteArray(challenge).replace("theirs", "ours"));
    const QByteArray subscribe = nextSubscribe("message-summary");
    accept(subscribe, 2);
    note(subscribe, kTwo, kType, "active;expires=2");
    expectMessages(true, 2, 8);
    const QByteArray refresh = nextSubscribe("message-summary");
    stranger.send(UdpPeer::replyTo(refresh, "401 Unauthorized", challenge), agent.port());
    // It is begun anew, where the password is known.
    const QByteArray anew = nextSubscribe("message-summary");
    EXPECT_NE(headerOf(anew, "Call-ID").toStdString(), headerOf(subscribe, "Call-ID").toStdString());
    EXPECT_FALSE(anew.contains("theirs")) << anew.constData();
    accept(anew);
    note(anew, kTwo, kType);
    EXPECT_FALSE(nextSubscribe("message-summary", 500).contains("theirs"));
}

TEST_F(SipMessages, DamagedCountsLeaveThoseThatAreKnownAndAreAskedForAgain)
{
    begin();
    const QByteArray subscribe = knowsOfTwo();
    note(subscribe, "Messages-Waiting: yes\r\nVoice-Message: x/0\r\n", kType);
    const QByteArray again = nextSubscribe("message-summary");
    EXPECT_TRUE(headerOf(again, "To").contains(";tag=peer")) << again.constData();
    accept(again);
    note(again, QByteArray(50000, 'x'), kType);
    note(again, kNone, "text/plain");
    note(again, kNone, kType, "active", "Content-Encoding: gzip");
    note(again, "", kType);
    EXPECT_TRUE(isNothingTold());
    note(again, kNone, kType);
    expectMessages(true, 0, 8);
}

TEST_F(SipMessages, AServerThatDoesNotKnowThemIsNotAskedAgainForLong)
{
    tagSipSetup setup = AgentProcess::calmSetup();
    setup.nRetryMs = 50;
    setup.nRetryLastMs = 400;
    begin(setup);
    for (const char* refusal : {"489 Bad Event", "404 Not Found"}) {
        SCOPED_TRACE(refusal);
        const QByteArray asked = nextSubscribe("message-summary"); // for the first time, and after long
        EXPECT_NE(asked.toStdString(), "");
        peer->reply(asked, refusal);
        EXPECT_EQ(nextSubscribe("message-summary", 1200).toStdString(), "");
    }
}

TEST_F(SipMessages, ForAnotherAccountARefusalSaysNothing)
{
    tagSipSetup setup = AgentProcess::calmSetup();
    setup.nRetryLastMs = 60000; // it would hold for minutes
    begin(setup);
    peer->reply(nextSubscribe("message-summary"), "489 Bad Event");
    EXPECT_EQ(nextSubscribe("message-summary", 500).toStdString(), "");
    agent.tell(accountAt(0, peer->port()));
    QByteArray message;
    for (int i = 0; i < 20 && !message.startsWith("SUBSCRIBE"); ++i) {
        message = peer->receive();
        if (message.startsWith("REGISTER"))
            peer->reply(message, "200 OK", "Contact: " + headerOf(message, "Contact") + ";expires=3600");
        else if (message.isEmpty())
            break;
    }
    EXPECT_TRUE(message.startsWith("SUBSCRIBE"));
}

TEST_F(SipMessages, AServerThatFailsIsAskedAgainAndItsPatienceIsKept)
{
    begin();
    const QByteArray first = nextSubscribe("message-summary");
    accept(first);
    note(first, kTwo, kType);
    expectMessages(true, 2, 8);
    note(first, "", kType, "terminated;reason=giveup");
    expectMessages(false, 0, 0);
    const QByteArray second = nextSubscribe("message-summary");
    EXPECT_NE(headerOf(second, "Call-ID").toStdString(), headerOf(first, "Call-ID").toStdString());
    peer->reply(second, "503 Service Unavailable");
    const QByteArray third = nextSubscribe("message-summary");
    EXPECT_NE(third.toStdString(), "");
    peer->reply(third, "503 Service Unavailable", "Retry-After: 600");
    EXPECT_EQ(nextSubscribe("message-summary", 1500).toStdString(), "");
}

TEST_F(SipMessages, AServerThatWasBackIsAskedAgainSoonAfterItsNextFault)
{
    tagSipSetup setup = AgentProcess::calmSetup();
    setup.nRetryMs = 100;
    setup.nRetryLastMs = 10000;
    begin(setup);
    QElapsedTimer timer;
    QByteArray subscribe = nextSubscribe("message-summary");
    qint64 last = 0; // some 16 times the first one, so that a busy machine makes no difference
    for (int i = 0; i < 6; ++i) {
        peer->reply(subscribe, "503 Service Unavailable");
        timer.start();
        subscribe = nextSubscribe("message-summary");
        last = timer.elapsed();
    }
    accept(subscribe);
    note(subscribe, kTwo, kType);
    expectMessages(true, 2, 8);
    timer.start();
    note(subscribe, "", kType, "terminated;reason=giveup");
    EXPECT_NE(nextSubscribe("message-summary").toStdString(), "");
    EXPECT_LT(timer.elapsed(), last) << "as after the first one";
}

TEST_F(SipMessages, AServerThatEndsEachSubscriptionAtOnceIsAskedWithPauses)
{
    constexpr int kTimes = 10;
    tagSipSetup setup = AgentProcess::calmSetup();
    setup.nRetryMs = setup.nRetryLastMs = 400;
    begin(setup);
    int asked = 0;
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < int(setup.nRetryMs) / 2 * kTimes) {
        const QByteArray subscribe = nextSubscribe("message-summary", int(setup.nRetryMs));
        if (subscribe.isEmpty())
            continue;
        ++asked;
        accept(subscribe);
        note(subscribe, "", kType, "terminated;reason=deactivated");
    }
    EXPECT_GE(asked, 2);
    EXPECT_LE(asked, kTimes + 2);
}

TEST_F(SipMessages, ARefusalEndsInTimeThoughTheLineWasAwayMeanwhile)
{
    tagSipSetup setup = AgentProcess::calmSetup();
    setup.nRetryMs = 50;
    setup.nRetryLastMs = 500;
    begin(setup);
    peer->reply(nextSubscribe("message-summary"), "489 Bad Event");
    EXPECT_EQ(strangeNote(contact, "check-sync", kNone).toStdString(), "SIP/2.0 489 Bad Event"); // is heard
    agent.tell(sipWire::make<tagSipHead>(SIP_NETWORK, 0));
    ASSERT_NO_FATAL_FAILURE(acceptAnew());
    EXPECT_EQ(nextSubscribe("message-summary", 300).toStdString(), "");
    EXPECT_NE(nextSubscribe("message-summary").toStdString(), "");
}

TEST_F(SipMessages, TheEndOfThePhoneEndsThem)
{
    begin();
    const QByteArray subscribe = knowsOfTwo();
    agent.tell(sipWire::make<tagSipHead>(SIP_END, 0));
    EXPECT_EQ(headerOf(nextFarewell("message-summary"), "Call-ID").toStdString(),
              headerOf(subscribe, "Call-ID").toStdString());
    peer->reply(peer->receive("REGISTER"), "200 OK");
    EXPECT_TRUE(agent.ends());
}

TEST_F(SipMessages, ASilentServerAndOneThatNeverTellsAreAskedAgain)
{
    begin(AgentProcess::quickSetup());
    QList<QByteArray> asked;
    // What was not answered is repeated for a while by the stack.
    for (int i = 0; i < 6 && asked.size() < 3; ++i) {
        const QByteArray subscribe = nextSubscribe("message-summary");
        if (asked.contains(headerOf(subscribe, "Call-ID")))
            continue;
        asked.append(headerOf(subscribe, "Call-ID"));
        if (asked.size() == 2)
            accept(subscribe);
    }
    EXPECT_EQ(asked.size(), 3);
    EXPECT_FALSE(asked.contains(""));
}

TEST_F(SipMessages, WhoHasTakenASubscriptionHasMoreTimeForItsFirstNote)
{
    tagSipSetup setup = AgentProcess::calmSetup();
    setup.nSilentMs = 1000;
    begin(setup);
    const QByteArray subscribe = nextSubscribe("message-summary");
    accept(subscribe);
    EXPECT_EQ(nextSubscribe("message-summary", int(setup.nSilentMs) * 2).toStdString(), "");
    note(subscribe, kTwo, kType);
    expectMessages(true, 2, 8);
}

TEST_F(SipMessages, TheEndOfASubscriptionSaysWhetherToAskAgain)
{
    begin();
    QByteArray subscribe = nextSubscribe("message-summary");
    for (const char* reason : {"deactivated", "timeout"}) {
        SCOPED_TRACE(reason);
        accept(subscribe);
        note(subscribe, kTwo, kType);
        EXPECT_FALSE(agent.next(SIP_LAMP, 1, 300)); // as old as an ordinary delay
        EXPECT_EQ(note(subscribe, "", kType, QByteArray("terminated;reason=") + reason).toStdString(),
                  "SIP/2.0 200 OK");
        const QByteArray again = peer->receive("SUBSCRIBE");
        EXPECT_NE(headerOf(again, "Expires").toStdString(), "0") << "it has ended already";
        EXPECT_NE(headerOf(again, "Call-ID").toStdString(), headerOf(subscribe, "Call-ID").toStdString());
        EXPECT_FALSE(headerOf(again, "To").contains("tag="));
        subscribe = again;
    }
    accept(subscribe);
    note(subscribe, kNone, kType);
    expectMessages(true, 0, 8);
    note(subscribe, "", kType, "terminated;reason=probation;retry-after=2");
    expectMessages(false, 0, 0);
    EXPECT_EQ(nextSubscribe("message-summary", 1000).toStdString(), "");
    subscribe = nextSubscribe("message-summary");
    accept(subscribe);
    note(subscribe, "", kType, "terminated;reason=rejected");
    EXPECT_EQ(nextSubscribe("message-summary", 1500).toStdString(), "");
}

TEST_F(SipMessages, ASubscriptionIsRefreshedAndALostOneIsBegunAnew)
{
    begin();
    const QByteArray first = nextSubscribe("message-summary");
    accept(first, 2);
    note(first, kTwo, kType, "active;expires=2");
    expectMessages(true, 2, 8);
    const QByteArray refresh = nextSubscribe("message-summary");
    EXPECT_EQ(headerOf(refresh, "Call-ID").toStdString(), headerOf(first, "Call-ID").toStdString());
    EXPECT_TRUE(headerOf(refresh, "To").contains(";tag=peer"));
    // The server has started anew and knows nothing of it.
    peer->reply(refresh, "481 Subscription Does Not Exist");
    const QByteArray second = nextSubscribe("message-summary");
    EXPECT_NE(headerOf(second, "Call-ID").toStdString(), headerOf(first, "Call-ID").toStdString());
    accept(second);
    note(second, kTwo, kType);
    EXPECT_TRUE(isNothingTold()); // nobody has noticed
    note(second, kNone, kType);
    expectMessages(true, 0, 8);
}

TEST_F(SipMessages, WhatNobodyAskedForIsTakenFromWhoKnowsTheLine)
{
    begin();
    const QByteArray subscribe = nextSubscribe("message-summary");
    EXPECT_EQ(strangeNote(contact, "message-summary", kTwo).toStdString(), "SIP/2.0 200 OK");
    expectMessages(true, 2, 8);
    peer->reply(subscribe, "489 Bad Event");
    EXPECT_TRUE(isNothingTold()); // that refusal says nothing of them
    EXPECT_EQ(strangeNote("user0", "message-summary", kNone).toStdString(), "SIP/2.0 404 Not Found");
    EXPECT_EQ(strangeNote(contact, "check-sync", kNone).toStdString(), "SIP/2.0 489 Bad Event");
    EXPECT_EQ(strangeNote(contact, "message-summary", "nonsense").toStdString(), "SIP/2.0 400 Bad Request");
    EXPECT_EQ(strangeNote(contact, "message-summary", kNone, "text/plain").toStdString(),
              "SIP/2.0 400 Bad Request");
    EXPECT_TRUE(isNothingTold());
    EXPECT_EQ(strangeNote(contact, "message-summary", kNone).toStdString(), "SIP/2.0 200 OK");
    expectMessages(true, 0, 8);
}

TEST_F(SipMessages, WhatNobodyAskedForCountsFromTheLinesOwnServerAlone)
{
    beginWithoutMessages();
    peer = std::make_unique<UdpPeer>("127.0.0.2");
    EXPECT_EQ(strangeNote(contact, "message-summary", kTwo).toStdString(), "SIP/2.0 403 Forbidden");
    EXPECT_TRUE(isNothingTold());
}

TEST_F(SipMessages, AFloodOfNotesIsHeardInPartAndTakesLittleMemory)
{
    constexpr int kNotes = 3000;
    const kit::NothingKept nothing;
    begin();
    const QByteArray subscribe = knowsOfTwo();
    const qint64 before = kit::statusKiB(agent.pid(), "VmRSS");
    int heard = 0;
    for (int i = 0; i < kNotes; ++i) {
        sendNote(subscribe, kTwo, kType, "active");
        if (!peer->receive(2).isEmpty())
            ++heard;
    }
    while (!peer->receive(300).isEmpty())
        ++heard;
    EXPECT_GT(heard, 100);
    EXPECT_LT(heard, kNotes * 3 / 4);
    EXPECT_LT(kit::statusKiB(agent.pid(), "VmRSS") - before, 9000 * kit::kMemoryTimes) << before;
    note(subscribe, kNone, kType);
    expectMessages(true, 0, 8);
}

TEST_F(SipMessages, WithoutTheLineNothingIsKnown)
{
    begin();
    const QByteArray subscribe = knowsOfTwo();
    agent.tell(sipWire::make<tagSipAccount>(SIP_ACCOUNT, 0));
    expectMessages(false, 0, 0);
    EXPECT_EQ(headerOf(nextFarewell("message-summary"), "Call-ID").toStdString(),
              headerOf(subscribe, "Call-ID").toStdString());
}

TEST_F(SipMessages, ANoteOfAnotherEventInACallIsRefusedAndTheCallGoesOn)
{
    beginWithoutMessages();
    const uint32_t id = talkIn("noted");
    ASSERT_NE(id, 0u);
    peer->send(within("NOTIFY", lastAnswer, 2, "Event: presence\r\nSubscription-State: active"),
               agent.port());
    EXPECT_NE(peer->receive("SIP/2.0 489").toStdString(), "");
    tellStatus(SIP_HANG_UP, id);
    EXPECT_NE(peer->receive("BYE").toStdString(), "");
}
