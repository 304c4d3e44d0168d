// Lines that their server does not want, wants less safely, or wants to be elsewhere.
#include "tests/sip/callTest.h"

namespace {

constexpr const char* kSha256 =
    "WWW-Authenticate: Digest realm=\"home\", nonce=\"n1\", qop=\"auth\", algorithm=SHA-256";
constexpr const char* kMd5 = "WWW-Authenticate: Digest realm=\"home\", nonce=\"n2\", qop=\"auth\"";

QByteArray placeOf(uint32_t port)
{
    return "sip:127.0.0.1:" + QByteArray::number(port);
}

class SipRefusals : public SipCalls
{
protected:
    // A line at the peer, which has said nothing yet.
    void start(const tagSipSetup& setup)
    {
        peer = std::make_unique<UdpPeer>();
        ASSERT_TRUE(agent.start(setup));
        agent.tell(accountAt(0, peer->port()));
    }
    // The peer refuses what comes next; what the phone is told of that.
    const tagSipLine* refuses(const QByteArray& status, const QByteArray& lines = {})
    {
        peer->reply(peer->receive("REGISTER"), status, lines);
        return agent.nextLine(0, SIP_LINE_REFUSED);
    }
    // A server that accepts; what was asked of it.
    QByteArray acceptedBy(UdpPeer& server)
    {
        const QByteArray request = server.receive("REGISTER");
        server.reply(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=3600");
        return request;
    }
    static tagSipSetup shortSetup()
    {
        tagSipSetup setup = AgentProcess::calmSetup();
        setup.nRetryMs = setup.nRetryLastMs = 60;
        return setup;
    }
    void expectSoonThereAgain(const tagSipLine* state)
    {
        const uint32_t unit = AgentProcess::calmSetup().nRetryLastMs;
        ASSERT_TRUE(state);
        EXPECT_TRUE(state->nRetryMs >= unit / 2 && state->nRetryMs <= unit) << state->nRetryMs;
        acceptAnew();
    }
    // A call that finds the server out of service has it asked for the line again.
    void askAgain()
    {
        dial(1, "300");
        peer->reply(peer->receive("INVITE"), "503 Service Unavailable");
    }
};

} // namespace

TEST_F(SipRefusals, ARefusedLineIsTriedAgainMuchLaterAndLaterEachTimeUpToABound)
{
    start(shortSetup());
    const uint32_t unit = shortSetup().nRetryLastMs;
    for (const uint32_t times : {5u, 10u, 20u, 30u, 30u}) {
        const tagSipLine* state = refuses("403 Forbidden");
        ASSERT_TRUE(state) << times;
        EXPECT_EQ(state->nStatus, 403u);
        EXPECT_TRUE(state->nRetryMs >= unit * times / 2 && state->nRetryMs <= unit * times)
            << state->nRetryMs << " of " << times;
    }
    acceptedBy(*peer);
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
}

TEST_F(SipRefusals, ThePatienceThatARefusalAsksForIsKept)
{
    start(shortSetup());
    const tagSipLine* state = refuses("403 Forbidden", "Retry-After: 600");
    ASSERT_TRUE(state);
    EXPECT_EQ(state->nRetryMs, 600000u);
    EXPECT_EQ(peer->receive(1000).toStdString(), "");
}

TEST_F(SipRefusals, ALineThatWasRegisteredIsTriedAgainSoonerAndIsThereAgain)
{
    begin(AgentProcess::calmSetup());
    askAgain();
    expectSoonThereAgain(refuses("403 Forbidden"));
}

TEST_F(SipRefusals, AServerThatDoesNotKnowThePasswordForAMinuteDoesNotLoseTheLine)
{
    begin(AgentProcess::calmSetup());
    askAgain();
    peer->reply(peer->receive("REGISTER"), "401 Unauthorized", kMd5);
    expectSoonThereAgain(refuses("401 Unauthorized", kMd5));
}

TEST_F(SipRefusals, WhoAsksForLessAfterTheStrongerSumIsNotAnsweredAndToldAsARefusal)
{
    for (const char* stale : {"", ", stale=true"}) {
        SCOPED_TRACE(stale);
        AgentProcess phone;
        UdpPeer server;
        ASSERT_TRUE(phone.start(AgentProcess::calmSetup()));
        phone.tell(accountAt(0, server.port()));
        server.reply(server.receive("REGISTER"), "401 Unauthorized", kSha256);
        const QByteArray answered = server.receive("REGISTER");
        EXPECT_EQ(paramOf(headerOf(answered, "Authorization"), "algorithm").toStdString(), "SHA-256");
        server.reply(answered, "401 Unauthorized", QByteArray(kMd5) + stale);
        const tagSipLine* state = phone.nextLine(0, SIP_LINE_REFUSED, 3000);
        ASSERT_TRUE(state) << "it is no server that says nothing";
        EXPECT_EQ(state->nStatus, 401u);
        EXPECT_STREQ(state->szReason, "The server does not accept name or password");
        EXPECT_EQ(server.receive(500).toStdString(), "");
    }
}

TEST_F(SipRefusals, ALineGoesWhereItsServerSendsItAndItsCallsGoThereToo)
{
    start(AgentProcess::calmSetup());
    UdpPeer other;
    const QByteArray there = placeOf(other.port());
    peer->reply(peer->receive("REGISTER"), "302 Moved Temporarily",
                "Contact: <mailto:a@b>, <" + there + ";transport=tcp>, <sips:127.0.0.1>, <" + there + ">");
    const QByteArray request = acceptedBy(other);
    EXPECT_TRUE(request.startsWith("REGISTER " + there + " SIP/2.0")) << request.constData();
    EXPECT_TRUE(headerOf(request, "To").contains(placeOf(peer->port()).mid(4))) << "it is the same account";
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    dial(1, "300");
    EXPECT_NE(other.receive("INVITE").toStdString(), "");
}

TEST_F(SipRefusals, WhoIsSentOnFromThereBeginsAgainAtTheServerOfTheAccount)
{
    start(AgentProcess::calmSetup());
    UdpPeer other;
    peer->reply(peer->receive("REGISTER"), "301 Moved Permanently",
                "Contact: <" + placeOf(other.port()) + ">");
    other.reply(other.receive("REGISTER"), "302 Moved Temporarily",
                "Contact: <" + placeOf(peer->port()) + ">");
    const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED);
    ASSERT_TRUE(state);
    EXPECT_EQ(state->nStatus, 302u);
    EXPECT_GT(state->nRetryMs, 0u);
    acceptedBy(*peer);
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
}

TEST_F(SipRefusals, ThePasswordGoesNoFurtherThanTheRealmOfTheAccountWhereverTheLineIsSent)
{
    peer = std::make_unique<UdpPeer>();
    UdpPeer other;
    ASSERT_TRUE(agent.start(AgentProcess::calmSetup()));
    tagSipAccount account = accountAt(0, peer->port());
    sipWire::setText(account.szRealm, "mine");
    agent.tell(account);
    peer->reply(peer->receive("REGISTER"), "302 Moved Temporarily",
                "Contact: <" + placeOf(other.port()) + ">");
    other.reply(other.receive("REGISTER"), "401 Unauthorized", kMd5);
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REFUSED));
    EXPECT_EQ(other.receive(500).toStdString(), "");
}

TEST_F(SipRefusals, ARedirectionThatNamesNoPlaceForTheLineIsToldAndTriedAgain)
{
    start(AgentProcess::calmSetup());
    UdpPeer other;
    const QByteArray there = placeOf(other.port());
    const QByteArray contacts[] = {"Subject: none", "Contact: <tel:+1>",
                                   "Contact: <sips:127.0.0.1:" + QByteArray::number(other.port()) + ">",
                                   "Contact: <" + there + ";transport=tcp>"};
    for (const QByteArray& contact : contacts) {
        SCOPED_TRACE(contact.toStdString());
        peer->reply(peer->receive("REGISTER"), "302 Moved Temporarily", contact);
        const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED);
        ASSERT_TRUE(state);
        EXPECT_EQ(state->nStatus, 302u);
    }
    EXPECT_EQ(other.receive(200).toStdString(), "");
}

TEST_F(SipRefusals, ALineGoesThroughWhereItsServerSaysAndItsCallsDoToo)
{
    start(AgentProcess::calmSetup());
    UdpPeer way;
    const QByteArray own = placeOf(peer->port());
    peer->reply(peer->receive("REGISTER"), "305 Use Proxy", "Contact: <" + placeOf(way.port()) + ">");
    const QByteArray request = acceptedBy(way);
    EXPECT_TRUE(request.startsWith("REGISTER " + own + " SIP/2.0")) << request.constData();
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    dial(1, "300");
    EXPECT_TRUE(way.receive("INVITE").startsWith("INVITE sip:300@" + own.mid(4)));
}

TEST_F(SipRefusals, WhoIsSentThroughOneMoreWayBeginsAgainAtTheServerOfTheAccount)
{
    start(AgentProcess::calmSetup());
    UdpPeer way, further;
    peer->reply(peer->receive("REGISTER"), "305 Use Proxy", "Contact: <" + placeOf(way.port()) + ">");
    way.reply(way.receive("REGISTER"), "305 Use Proxy", "Contact: <" + placeOf(further.port()) + ">");
    const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED);
    ASSERT_TRUE(state);
    EXPECT_EQ(state->nStatus, 305u);
    EXPECT_GT(state->nRetryMs, 0u);
    acceptedBy(*peer);
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    EXPECT_EQ(further.receive(200).toStdString(), "");
}

TEST_F(SipRefusals, AnAccountWithAProxyTakesNoOther)
{
    UdpPeer proxy, other;
    ASSERT_TRUE(agent.start(AgentProcess::calmSetup()));
    agent.tell(accountBehind(proxy.port(), "phones.test"));
    proxy.reply(proxy.receive("REGISTER"), "305 Use Proxy", "Contact: <" + placeOf(other.port()) + ">");
    const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED);
    ASSERT_TRUE(state);
    EXPECT_EQ(state->nStatus, 305u);
    EXPECT_EQ(other.receive(200).toStdString(), "");
}

TEST_F(SipRefusals, WhoWantsToBeAskedForMoreTimeIsOnceInEachTry)
{
    start(AgentProcess::calmSetup());
    const auto asks = [this](const QByteArray& status, const QByteArray& lines) {
        const QByteArray request = peer->receive("REGISTER");
        peer->reply(request, status, lines);
        return headerOf(request, "Expires").toStdString();
    };
    const std::string usual = std::to_string(accountAt(0, 1).nExpires);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(asks("423 Interval Too Brief", "Min-Expires: 7200"), usual);
        EXPECT_EQ(asks("423 Interval Too Brief", "Min-Expires: 9000"), "7200");
        const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED);
        ASSERT_TRUE(state) << i;
        EXPECT_EQ(state->nStatus, 423u);
        EXPECT_GT(state->nRetryMs, 0u);
    }
    EXPECT_EQ(asks("423 Interval Too Brief", "Min-Expires: 7200"), usual);
    EXPECT_EQ(headerOf(acceptedBy(*peer), "Expires").toStdString(), "7200");
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    askAgain();
    EXPECT_EQ(asks("423 Interval Too Brief", "Min-Expires: 9000"), "7200");
    EXPECT_EQ(headerOf(acceptedBy(*peer), "Expires").toStdString(), "9000") << "that was another try";
}

TEST_F(SipRefusals, NobodyIsAskedForMoreThanADay)
{
    start(AgentProcess::calmSetup());
    peer->reply(peer->receive("REGISTER"), "423 Interval Too Brief", "Min-Expires: 4294967295");
    EXPECT_EQ(headerOf(acceptedBy(*peer), "Expires").toStdString(), "86400");
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
}

TEST_F(SipRefusals, WhoSaysThatATimeIsTooBriefAndNotWhichIsAskedAgainLater)
{
    start(AgentProcess::calmSetup());
    for (const char* least : {"Subject: none", "Min-Expires: 60"}) {
        SCOPED_TRACE(least);
        peer->reply(peer->receive("REGISTER"), "423 Interval Too Brief", least);
        const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED);
        ASSERT_TRUE(state);
        EXPECT_EQ(state->nStatus, 423u);
    }
}

TEST_F(SipRefusals, ThePasswordIsGivenAgainToWhoWantsToBeAskedForMoreTime)
{
    start(AgentProcess::calmSetup());
    peer->reply(peer->receive("REGISTER"), "401 Unauthorized", kMd5);
    peer->reply(peer->receive("REGISTER"), "423 Interval Too Brief", "Min-Expires: 7200");
    QByteArray request = peer->receive("REGISTER");
    peer->reply(request, "401 Unauthorized", QByteArray(kMd5).replace("n2", "n3"));
    request = peer->receive("REGISTER");
    EXPECT_EQ(paramOf(headerOf(request, "Authorization"), "nonce").toStdString(), "n3");
    peer->reply(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=7200");
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
}

TEST_F(SipRefusals, AMomentThatAServerGrantsIsNotKeptUpWithForEver)
{
    tagSipSetup setup = AgentProcess::calmSetup();
    setup.nRetryMs = 50;
    setup.nRetryLastMs = 60000;
    start(setup);
    const auto grantAMoment = [this](int ms) {
        const QByteArray request = peer->receive("REGISTER", ms);
        peer->reply(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=1");
        return !request.isEmpty();
    };
    constexpr int kAsked = 8;
    for (int i = 0; i < kAsked; ++i)
        ASSERT_TRUE(grantAMoment(AgentProcess::WAIT_MS)) << i;
    const int least = int(setup.nRetryMs << (kAsked - 1)) / 2;
    EXPECT_EQ(peer->receive("REGISTER", least / 2).toStdString(), "");
    const tagSipLine* state = agent.nextLine(0, SIP_LINE_REGISTERED);
    ASSERT_TRUE(state);
    EXPECT_STREQ(state->szReason, "The server keeps it for 1 s only");
    dial(1, "300");
    EXPECT_NE(peer->receive("INVITE").toStdString(), "");
}

TEST_F(SipRefusals, AfterATimeThatCanBeKeptUpWithAMomentIsTakenForAnAccidentAgain)
{
    tagSipSetup setup = AgentProcess::calmSetup();
    setup.nRetryMs = 50;
    setup.nRetryLastMs = 600000;
    start(setup);
    const auto grant = [this](const char* seconds) {
        const QByteArray request = peer->receive("REGISTER");
        peer->reply(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=" + seconds);
        return !request.isEmpty();
    };
    for (int i = 0; i < 7; ++i)
        ASSERT_TRUE(grant("1")) << i;
    ASSERT_TRUE(grant("10"));
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    askAgain();
    // Five more are asked for sooner than one or two would else be.
    for (int i = 0; i < 6; ++i)
        ASSERT_TRUE(grant(i < 5 ? "1" : "3600")) << i;
}

// Three questions for it are answered before a reply of another kind.
TEST_F(SipRefusals, WhoWantsToBeAskedForMoreTimeMayAskForThePasswordAsOftenAsBefore)
{
    start(AgentProcess::calmSetup());
    for (const char* nonce : {"a1", "a2", "a3"}) {
        const QByteArray challenge = QByteArray(kMd5).replace("n2", nonce) + ", stale=true";
        peer->reply(peer->receive("REGISTER"), "401 Unauthorized", challenge);
    }
    QByteArray request = peer->receive("REGISTER");
    EXPECT_EQ(paramOf(headerOf(request, "Authorization"), "nonce").toStdString(), "a3");
    peer->reply(request, "423 Interval Too Brief", "Min-Expires: 7200");
    peer->reply(peer->receive("REGISTER"), "407 Proxy Authentication Required",
                "Proxy-Authenticate: Digest realm=\"gate\", nonce=\"b1\", qop=\"auth\"");
    request = peer->receive("REGISTER");
    EXPECT_EQ(paramOf(headerOf(request, "Proxy-Authorization"), "nonce").toStdString(), "b1");
    peer->reply(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=7200");
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
}
