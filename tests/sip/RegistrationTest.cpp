// Accounts at their servers: what goes over the wire, and what the phone is told of it.
#include "tests/kit/plain/deviceFolder.h"
#include "tests/kit/plain/ports.h"
#include "tests/sip/agentProcess.h"
#include "tests/sip/nameServer.h"
#include "tests/sip/udpPeer.h"
#include <QList>
#include <QMap>
#include <QNetworkDatagram>
#include <QNetworkInterface>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUdpSocket>
#include <algorithm>
#include <gtest/gtest.h>

namespace {

constexpr const char* kMd5 = "WWW-Authenticate: Digest realm=\"home\", nonce=\"n1\", qop=\"auth\"";

// Accepts whoever registers, without a password.
void acceptOne(UdpPeer& server, int ms = AgentProcess::WAIT_MS)
{
    const QByteArray request = server.receive("REGISTER", ms);
    if (!request.isEmpty())
        server.reply(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=3600");
}

// Asks for the password once; the answer is that of the standard, and none other is accepted.
void challengeOne(UdpPeer& server, const QByteArray& challenge, uint32_t line)
{
    const QByteArray first = server.receive("REGISTER");
    EXPECT_EQ(headerOf(first, "Authorization").toStdString(), "");
    server.reply(first, "401 Unauthorized", challenge);
    const QByteArray second = server.receive("REGISTER");
    const QByteArray answer = headerOf(second, "Authorization");
    const QByteArray number = QByteArray::number(line);
    EXPECT_EQ(paramOf(answer, "Digest username").toStdString(), "auth" + number.toStdString());
    const QByteArray good = digestOf("REGISTER", answer, "auth" + number, "s3cret:" + number);
    EXPECT_EQ(paramOf(answer, "response").toStdString(), good.toStdString());
    const bool isGood = paramOf(answer, "response") == good;
    server.reply(second, isGood ? "200 OK" : "403 Forbidden",
                 "Contact: " + headerOf(second, "Contact") + ";expires=3600");
}

// What the line has asked meanwhile may be too old to be answered.
bool isAcceptedInTheEnd(AgentProcess& agent, UdpPeer& server)
{
    for (int i = 0; i < 100; ++i) {
        acceptOne(server, 100);
        if (agent.nextLine(0, SIP_LINE_REGISTERED, 50))
            return true;
    }
    return false;
}

// A call that finds the server out of service has it asked again.
void aCallIsTurnedAway(AgentProcess& agent, UdpPeer& server)
{
    auto dial = sipWire::make<tagSipDial>(SIP_DIAL, 1);
    sipWire::setText(dial.szTarget, "300");
    sipWire::setText(dial.szSdp, "v=0\r\n");
    agent.tell(dial);
    server.reply(server.receive("INVITE"), "503 Service Unavailable");
}

} // namespace

TEST(SipRegistration, FourAccountsRegisterWithTheirPasswordsAndSayWhoTheyAre)
{
    AgentProcess agent;
    ASSERT_TRUE(agent.start());
    for (uint32_t line = 0; line < SIP_LINE_COUNT; ++line) {
        UdpPeer server;
        agent.tell(accountAt(line, server.port()));
        ASSERT_TRUE(agent.nextLine(line, SIP_LINE_REGISTERING));
        challengeOne(server, kMd5, line);
        const tagSipLine* state = agent.nextLine(line, SIP_LINE_REGISTERED);
        ASSERT_TRUE(state) << line;
        EXPECT_EQ(state->nStatus, 200u);
    }
}

TEST(SipRegistration, EveryKindOfDigestIsAnsweredAndTheStrongestOfferIsTaken)
{
    const QMap<QByteArray, QByteArray> challenges = {
        {"", "WWW-Authenticate: Digest realm=\"a \\\"b\\\"\", nonce=\"n\""},
        {"MD5", "WWW-Authenticate: Digest realm=\"home\", nonce=\"n\", algorithm=MD5, qop=\"auth,auth-int\""},
        {"MD5-sess",
         "WWW-Authenticate: Digest realm=\"home\", nonce=\"n\", algorithm=MD5-sess, qop=\"auth\""},
        {"SHA-256-sess",
         "WWW-Authenticate: Digest realm=\"home\", nonce=\"n\", algorithm=SHA-256-sess, qop=\"auth\""},
        {"SHA-256",
         "WWW-Authenticate: Digest realm=\"home\", nonce=\"n\", algorithm=SHA-512-256, qop=\"auth\"\r\n"
         "WWW-Authenticate: Digest realm=\"home\", nonce=\"n\", algorithm=SHA-256, qop=\"auth\", "
         "opaque=\"o\"\r\n"
         "WWW-Authenticate: Digest realm=\"home\", nonce=\"n\", algorithm=MD5, qop=\"auth\""}};
    AgentProcess agent;
    ASSERT_TRUE(agent.start());
    for (auto it = challenges.begin(); it != challenges.end(); ++it) {
        SCOPED_TRACE(it.value().toStdString());
        UdpPeer server;
        agent.tell(accountAt(0, server.port()));
        const QByteArray first = server.receive("REGISTER");
        server.reply(first, "401 Unauthorized", it.value());
        const QByteArray second = server.receive("REGISTER");
        const QByteArray answer = headerOf(second, "Authorization");
        EXPECT_EQ(paramOf(answer, "algorithm").toStdString(), it.key().toStdString());
        if (it.key() != "") // its realm has quotes, which the test's reader does not undo
            EXPECT_EQ(paramOf(answer, "response").toStdString(),
                      digestOf("REGISTER", answer, "auth0", "s3cret:0").toStdString());
        else
            EXPECT_TRUE(answer.contains("realm=\"a \\\"b\\\"\"")) << answer.constData();
        EXPECT_EQ(answer.contains("opaque=\"o\""), it.key() == "SHA-256");
        server.reply(second, "200 OK", "Contact: " + headerOf(second, "Contact") + ";expires=3600");
        ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    }
}

TEST(SipRegistration, AWrongPasswordIsNotTriedAgainSoonUnlessTheAccountIsAnother)
{
    UdpPeer server;
    AgentProcess agent;
    ASSERT_TRUE(agent.start());
    agent.tell(accountAt(1, server.port()));
    server.reply(server.receive("REGISTER"), "401 Unauthorized", kMd5);
    server.reply(server.receive("REGISTER"), "401 Unauthorized", QByteArray(kMd5).replace("n1", "n2"));
    const tagSipLine* state = agent.nextLine(1, SIP_LINE_REFUSED);
    ASSERT_TRUE(state);
    EXPECT_EQ(state->nStatus, 401u);
    EXPECT_GT(state->nRetryMs, 2 * AgentProcess::quickSetup().nRetryLastMs);
    EXPECT_STREQ(state->szReason, "The server does not accept name or password");
    EXPECT_EQ(server.receive(1500).toStdString(), "");
    agent.tell(accountAt(1, server.port()));
    EXPECT_NE(server.receive("REGISTER").toStdString(), "");
}

TEST(SipRegistration, AServerForWhichEveryAnswerComesTooLateDoesNotAcceptThem)
{
    UdpPeer server;
    AgentProcess agent;
    ASSERT_TRUE(agent.start(AgentProcess::calmSetup()));
    agent.tell(accountAt(1, server.port()));
    int asked = 0;
    for (QByteArray request = server.receive("REGISTER"); !request.isEmpty();
         request = server.receive("REGISTER", 500)) {
        ASSERT_LT(++asked, 20) << "there is an end to it";
        server.reply(request, "401 Unauthorized",
                     QByteArray(kMd5).replace("n1", "n" + QByteArray::number(asked)) + ", stale=true");
    }
    EXPECT_GT(asked, 2);
    const tagSipLine* state = agent.nextLine(1, SIP_LINE_REFUSED);
    ASSERT_TRUE(state);
    EXPECT_EQ(state->nStatus, 401u);
    EXPECT_STREQ(state->szReason, "The server does not accept name or password");
}

TEST(SipRegistration, AnAnswerThatCameTooLateIsGivenAgainHoweverThatIsWritten)
{
    for (const char* word : {"true", "TRUE"}) {
        SCOPED_TRACE(word);
        UdpPeer server;
        AgentProcess agent;
        ASSERT_TRUE(agent.start());
        agent.tell(accountAt(0, server.port()));
        server.reply(server.receive("REGISTER"), "401 Unauthorized", kMd5);
        server.reply(server.receive("REGISTER"), "401 Unauthorized",
                     QByteArray(kMd5).replace("n1", "n2") + ", stale=" + word);
        const QByteArray third = server.receive("REGISTER");
        EXPECT_EQ(paramOf(headerOf(third, "Authorization"), "nonce").toStdString(), "n2");
        server.reply(third, "200 OK", "Contact: " + headerOf(third, "Contact") + ";expires=3600");
        EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    }
}

TEST(SipRegistration, AnswersToOneQuestionAreCountedAndEachHasAChanceOfItsOwn)
{
    UdpPeer server;
    AgentProcess agent;
    ASSERT_TRUE(agent.start(AgentProcess::calmSetup()));
    agent.tell(accountAt(0, server.port()));
    server.reply(server.receive("REGISTER"), "401 Unauthorized", kMd5);
    const auto expectAnswer = [&](const QByteArray& request, const QByteArray& nonce, const char* count) {
        const QByteArray answer = headerOf(request, "Authorization");
        EXPECT_EQ(paramOf(answer, "nonce").toStdString(), nonce.toStdString());
        EXPECT_EQ(paramOf(answer, "nc").toStdString(), count);
        EXPECT_EQ(paramOf(answer, "response").toStdString(),
                  digestOf("REGISTER", answer, "auth0", "s3cret:0").toStdString());
        return paramOf(answer, "cnonce").toStdString();
    };
    const QByteArray first = server.receive("REGISTER");
    const std::string ownOne = expectAnswer(first, "n1", "00000001");
    server.reply(first, "200 OK", "Contact: " + headerOf(first, "Contact") + ";expires=3600");
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    aCallIsTurnedAway(agent, server);
    const QByteArray second = server.receive("REGISTER");
    const std::string ownTwo = expectAnswer(second, "n1", "00000002");
    EXPECT_NE(ownOne, ownTwo);
    server.reply(second, "401 Unauthorized", QByteArray(kMd5).replace("n1", "n2") + ", stale=true");
    const QByteArray third = server.receive("REGISTER");
    expectAnswer(third, "n2", "00000001");
    server.reply(third, "200 OK", "Contact: " + headerOf(third, "Contact") + ";expires=3600");
    EXPECT_FALSE(agent.nextLine(0, SIP_LINE_REGISTERED, 200)) << "it was all the time";
}

TEST(SipRegistration, ANameWithQuotesIsOneName)
{
    UdpPeer server;
    AgentProcess agent;
    ASSERT_TRUE(agent.start(AgentProcess::calmSetup()));
    tagSipAccount account = accountAt(0, server.port());
    sipWire::setText(account.szDisplayName, "A\"n\\na");
    agent.tell(account);
    const QByteArray request = server.receive("REGISTER");
    EXPECT_TRUE(headerOf(request, "From").startsWith("\"A\\\"n\\\\na\" <sip:user0@")) << request.constData();
}

TEST(SipRegistration, AChallengeThatIsNotKnownOrOfAnotherRealmIsToldAndGetsNoDigest)
{
    const QByteArray challenges[] = {
        "WWW-Authenticate: Basic realm=\"home\"",
        "WWW-Authenticate: Digest realm=\"home\", algorithm=SHA-512-256, nonce=\"n\"",
        "WWW-Authenticate: Digest realm=\"home\", nonce=\"n\", qop=\"auth-int\"",
        "WWW-Authenticate: Digest realm=\"other\", nonce=\"n\", qop=\"auth\"", ""};
    AgentProcess agent;
    ASSERT_TRUE(agent.start());
    for (const QByteArray& challenge : challenges) {
        SCOPED_TRACE(challenge.toStdString());
        UdpPeer server;
        tagSipAccount account = accountAt(2, server.port());
        sipWire::setText(account.szRealm, "home");
        agent.tell(account);
        server.reply(server.receive("REGISTER"), "401 Unauthorized", challenge);
        const tagSipLine* state = agent.nextLine(2, SIP_LINE_REFUSED);
        ASSERT_TRUE(state);
        EXPECT_STRNE(state->szReason, "");
        EXPECT_EQ(server.receive(300).toStdString(), "");
    }
}

TEST(SipRegistration, AmongChallengesOfOtherKindsTheDigestIsAnswered)
{
    const QByteArray digest = "Digest realm=\"home\", nonce=\"n1\", qop=\"auth\"",
                     name = "WWW-Authenticate: ";
    AgentProcess agent;
    ASSERT_TRUE(agent.start());
    for (const QByteArray& other : {QByteArray("Basic realm=\"x\""), QByteArray("Bearer realm=\"x\""),
                                    QByteArray("Digest realm=\"x\", algorithm=SHA-512-256, nonce=\"n\"")}) {
        for (const QByteArray& challenge :
             {name + digest + "\r\n" + name + other, name + other + "\r\n" + name + digest,
              name + digest + ", " + other, name + other + ", " + digest}) {
            SCOPED_TRACE(challenge.toStdString());
            UdpPeer server;
            agent.tell(accountAt(0, server.port()));
            challengeOne(server, challenge, 0);
            ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
        }
    }
}

TEST(SipRegistration, ATimeBeyondAllBoundsIsNoReasonToAskAgainAtOnce)
{
    for (const char* granted : {"4294967295", "4294967294", "4294963695"}) {
        SCOPED_TRACE(granted);
        UdpPeer server;
        AgentProcess agent;
        ASSERT_TRUE(agent.start(AgentProcess::calmSetup()));
        agent.tell(accountAt(0, server.port()));
        const QByteArray request = server.receive("REGISTER");
        server.reply(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=" + granted);
        ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
        EXPECT_EQ(server.receive("REGISTER", 2500).toStdString(), "");
    }
}

TEST(SipRegistration, WhatAServerGrantsNoTimeIsNoRegistration)
{
    UdpPeer server;
    AgentProcess agent;
    ASSERT_TRUE(agent.start(AgentProcess::calmSetup()));
    agent.tell(accountAt(0, server.port()));
    for (const char* lines : {"Contact: OWN;expires=0", "Expires: 0\r\nContact: OWN", "Expires: 0",
                              "Contact: <sip:other@127.0.0.9>;expires=3600"}) {
        SCOPED_TRACE(lines);
        QByteArray request;
        do // the stack takes leave of what it believes to be registered
            request = server.receive("REGISTER");
        while (headerOf(request, "Expires") == "0" || headerOf(request, "Contact").contains("expires=0"));
        const QByteArray own = headerOf(request, "Contact");
        server.reply(request, "200 OK", QByteArray(lines).replace("OWN", own));
        const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED);
        ASSERT_TRUE(state);
        EXPECT_EQ(state->nStatus, 200u);
        EXPECT_GT(state->nRetryMs, 0u);
    }
}

TEST(SipRegistration, ASilentServerIsToldOfAndTriedAgainLaterEachTime)
{
    UdpPeer server;
    AgentProcess agent;
    ASSERT_TRUE(agent.start());
    agent.tell(accountAt(0, server.port()));
    uint32_t delays[4] = {};
    for (uint32_t& delay : delays) {
        const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED);
        ASSERT_TRUE(state);
        EXPECT_STREQ(state->szReason, "The server does not answer");
        delay = state->nRetryMs;
    }
    const uint32_t first = AgentProcess::quickSetup().nRetryMs;
    EXPECT_TRUE(delays[0] >= first / 2 && delays[0] <= first) << delays[0];
    EXPECT_TRUE(delays[1] >= first && delays[1] <= 2 * first) << delays[1];
    for (int i : {2, 3})
        EXPECT_TRUE(delays[i] >= 2 * first && delays[i] <= 4 * first) << delays[i];
    EXPECT_TRUE(isAcceptedInTheEnd(agent, server));
}

TEST(SipRegistration, AServerOutOfServiceIsTriedAgainAndItsPatienceIsKept)
{
    UdpPeer server;
    AgentProcess agent;
    ASSERT_TRUE(agent.start());
    agent.tell(accountAt(3, server.port()));
    server.reply(server.receive("REGISTER"), "503 Service Unavailable");
    const tagSipLine* state = agent.nextLine(3, SIP_LINE_FAILED);
    ASSERT_TRUE(state);
    EXPECT_EQ(state->nStatus, 503u);
    EXPECT_STREQ(state->szReason, "Service Unavailable");
    server.reply(server.receive("REGISTER"), "503 Service Unavailable", "Retry-After: 600");
    state = agent.nextLine(3, SIP_LINE_FAILED);
    ASSERT_TRUE(state);
    EXPECT_EQ(state->nRetryMs, 600000u);
    EXPECT_EQ(server.receive(1500).toStdString(), "");
}

TEST(SipRegistration, AServerThatIsNotThereSaysNothingNotEvenThatItIsOutOfService)
{
    AgentProcess agent;
    ASSERT_TRUE(agent.start());
    for (const SIP_TRANSPORT transport : {SIP_UDP, SIP_TCP}) {
        agent.tell(accountAt(0, kit::freePort(), transport));
        const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED);
        ASSERT_TRUE(state);
        EXPECT_EQ(state->nStatus, 0u);
        EXPECT_STREQ(state->szReason, "The server does not answer");
    }
}

TEST(SipRegistration, ThePatienceThatAServerAsksForHasItsBound)
{
    UdpPeer server;
    AgentProcess agent;
    ASSERT_TRUE(agent.start());
    agent.tell(accountAt(0, server.port()));
    server.reply(server.receive("REGISTER"), "503 Service Unavailable", "Retry-After: 4000000");
    const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED);
    ASSERT_TRUE(state) << "no record of ours says more than an hour";
    EXPECT_LE(state->nRetryMs, 3600000u);
    EXPECT_GE(state->nRetryMs, 600000u);
}

TEST(SipRegistration, TheTimeOfTheAccountIsAskedForAtAContactThatNobodyGuesses)
{
    QByteArray contacts[2];
    for (QByteArray& contact : contacts) {
        UdpPeer server;
        AgentProcess agent;
        ASSERT_TRUE(agent.start());
        tagSipAccount account = accountAt(0, server.port());
        account.nExpires = 600;
        agent.tell(account);
        const QByteArray request = server.receive("REGISTER");
        EXPECT_TRUE(headerOf(request, "Expires") == "600" ||
                    headerOf(request, "Contact").contains("expires=600"))
            << request.constData();
        contact = headerOf(request, "Contact").split('@').first();
        EXPECT_GT(contact.size(), 5);
    }
    EXPECT_NE(contacts[0].toStdString(), contacts[1].toStdString());
}

TEST(SipRegistration, AServerThatWasBackIsTriedAgainSoonAfterItsNextFault)
{
    tagSipSetup setup = AgentProcess::calmSetup();
    setup.nRetryLastMs = 3200;
    UdpPeer server;
    AgentProcess agent;
    ASSERT_TRUE(agent.start(setup));
    agent.tell(accountAt(0, server.port()));
    const auto failsOnce = [&] {
        server.reply(server.receive("REGISTER"), "503 Service Unavailable");
        const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED);
        return state ? state->nRetryMs : 0;
    };
    for (int i = 0; i < 3; ++i)
        EXPECT_GT(failsOnce(), 0u);
    acceptOne(server);
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    aCallIsTurnedAway(agent, server);
    const uint32_t delay = failsOnce();
    EXPECT_GT(delay, 0u);
    EXPECT_LE(delay, setup.nRetryMs) << "as after the first one";
}

TEST(SipRegistration, PhonesThatAServerHasLostDoNotComeBackAllAtOnce)
{
    tagSipSetup setup = AgentProcess::calmSetup();
    setup.nRetryMs = setup.nRetryLastMs = 200;
    UdpPeer server;
    AgentProcess agent;
    ASSERT_TRUE(agent.start(setup));
    agent.tell(accountAt(0, server.port()));
    QList<uint32_t> delays;
    for (int i = 0; i < 8; ++i) {
        server.reply(server.receive("REGISTER"), "503 Service Unavailable");
        const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED);
        ASSERT_TRUE(state) << i;
        if (!delays.contains(state->nRetryMs))
            delays.append(state->nRetryMs);
    }
    EXPECT_GT(delays.size(), 2);
}

TEST(SipRegistration, AnAccountThatIsTakenAwayIsUnregisteredAndAnotherTakesItsPlace)
{
    UdpPeer server, other;
    AgentProcess agent;
    ASSERT_TRUE(agent.start());
    agent.tell(accountAt(0, server.port()));
    acceptOne(server);
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));

    agent.tell(accountAt(0, other.port()));
    acceptOne(other);
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    const QByteArray leaving = server.receive("REGISTER");
    EXPECT_TRUE(headerOf(leaving, "Contact").contains("expires=0") || headerOf(leaving, "Expires") == "0")
        << leaving.constData();
    server.reply(leaving, "200 OK");

    agent.tell(sipWire::make<tagSipAccount>(SIP_ACCOUNT, 0));
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_NONE));
    EXPECT_NE(other.receive("REGISTER").toStdString(), "");
}

TEST(SipRegistration, AtItsEndItUnregistersAndAServerThatSaysNothingDoesNotHoldIt)
{
    for (const bool isPhoneGone : {false, true}) {
        UdpPeer server;
        AgentProcess agent;
        ASSERT_TRUE(agent.start());
        agent.tell(accountAt(0, server.port()));
        acceptOne(server);
        ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
        if (isPhoneGone)
            agent.closeLink();
        else
            agent.tell(sipWire::make<tagSipHead>(SIP_END, 0));
        const QByteArray leaving = server.receive("REGISTER");
        EXPECT_TRUE(headerOf(leaving, "Contact").contains("expires=0") || headerOf(leaving, "Expires") == "0")
            << leaving.constData();
        EXPECT_TRUE(agent.ends());
        EXPECT_FALSE(agent.hasCrashed());
        EXPECT_EQ(agent.exitCode(), 0);
    }
}

TEST(SipRegistration, AServerThatAnswersNothingAtTheEndHasItsBoundHoweverPatientThePhoneIs)
{
    tagSipSetup setup = AgentProcess::quickSetup();
    setup.nSilentMs = 30000; // the longest there is
    for (const bool asksForPassword : {false, true}) {
        UdpPeer server;
        AgentProcess agent;
        ASSERT_TRUE(agent.start(setup));
        agent.tell(accountAt(0, server.port()));
        acceptOne(server);
        ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
        agent.tell(sipWire::make<tagSipHead>(SIP_END, 0));
        const QByteArray leaving = server.receive("REGISTER");
        ASSERT_NE(leaving.toStdString(), "");
        if (asksForPassword) {
            server.reply(leaving, "401 Unauthorized", kMd5);
            EXPECT_NE(headerOf(server.receive("REGISTER"), "Authorization").toStdString(), "");
        }
        EXPECT_TRUE(agent.ends());
        EXPECT_FALSE(agent.hasCrashed());
        EXPECT_EQ(agent.exitCode(), 0);
    }
}

TEST(SipRegistration, ANumberThatIsNoStatusIsNotToldAsOne)
{
    for (const char* status : {"700 Odd", "999 Odd", "99 Odd", "0 Odd", "1503 Odd"}) {
        SCOPED_TRACE(status);
        UdpPeer server;
        AgentProcess agent;
        ASSERT_TRUE(agent.start());
        agent.tell(accountAt(0, server.port()));
        server.reply(server.receive("REGISTER"), status);
        const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED);
        ASSERT_TRUE(state);
        EXPECT_EQ(state->nStatus, 0u);
        EXPECT_TRUE(isAcceptedInTheEnd(agent, server)) << "the phone takes what it is told";
    }
}

TEST(SipRegistration, NoPasswordIsOnTheWireOrInWhatItPrints)
{
    UdpPeer server;
    AgentProcess agent;
    ASSERT_TRUE(agent.start(AgentProcess::quickSetup(), {"TPORT_LOG=1", "SOFIA_DEBUG=9", "NUA_DEBUG=9"}));
    agent.tell(accountAt(0, server.port()));
    const QByteArray first = server.receive("REGISTER");
    server.reply(first, "401 Unauthorized", kMd5);
    const QByteArray second = server.receive("REGISTER");
    server.reply(second, "200 OK", "Contact: " + headerOf(second, "Contact") + ";expires=3600");
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    agent.tell(sipWire::make<tagSipHead>(SIP_END, 0));
    server.reply(server.receive("REGISTER"), "200 OK");
    ASSERT_TRUE(agent.ends());
    const QByteArray printed = agent.output();
    EXPECT_FALSE((first + second).contains("s3cret"));
    EXPECT_FALSE(printed.contains("s3cret"));
    EXPECT_FALSE(printed.contains("response=")) << printed.constData();
    EXPECT_FALSE(printed.contains("account1")) << printed.constData();
}

TEST(SipRegistration, ADamagedRecordOrOneOutOfPlaceEndsItWithAnError)
{
    const auto call = sipWire::make<tagSipHead>(SIP_HELLO, 0);
    tagSipHead damaged = sipWire::make<tagSipHead>(SIP_END, 0);
    damaged.nLength = 0xffffffff;
    for (const tagSipHead& head : {call, damaged}) {
        AgentProcess agent;
        ASSERT_TRUE(agent.start());
        agent.tell(head);
        EXPECT_TRUE(agent.ends());
        EXPECT_FALSE(agent.hasCrashed());
        EXPECT_EQ(agent.exitCode(), 1);
    }
}

TEST(SipRegistration, ItTellsThatNobodyListens)
{
    QProcess process;
    process.start(kit::program("hxSip"), {"/no/such/socket"});
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_TRUE(process.readAllStandardError().contains("/no/such/socket"));
    process.start(kit::program("hxSip"), QStringList());
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 2);
}

TEST(SipRegistration, ADeadServerIsToldOf)
{
    AgentProcess agent;
    ASSERT_TRUE(agent.start());
    for (const SIP_TRANSPORT transport : {SIP_UDP, SIP_TCP}) {
        agent.tell(accountAt(0, kit::freePort(), transport));
        const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED);
        ASSERT_TRUE(state) << transport;
        EXPECT_STRNE(state->szReason, "");
    }
}

TEST(SipRegistration, OverTcpToTheOutboundProxy)
{
    QTcpServer proxy;
    ASSERT_TRUE(proxy.listen(QHostAddress::LocalHost));
    AgentProcess agent;
    ASSERT_TRUE(agent.start());
    tagSipAccount account = accountAt(0, 0, SIP_TCP);
    sipWire::setText(account.szServer, "phones.test");
    sipWire::setText(account.szProxy, "127.0.0.1");
    account.nProxyPort = proxy.serverPort();
    agent.tell(account);
    ASSERT_TRUE(proxy.waitForNewConnection(AgentProcess::WAIT_MS));
    QTcpSocket* link = proxy.nextPendingConnection();
    QByteArray request;
    while (!request.contains("\r\n\r\n") && link->waitForReadyRead(AgentProcess::WAIT_MS))
        request += link->readAll();
    EXPECT_TRUE(request.startsWith("REGISTER sip:phones.test SIP/2.0")) << request.constData();
    EXPECT_TRUE(headerOf(request, "Contact").contains("transport=tcp")) << request.constData();
    EXPECT_EQ(headerOf(request, "User-Agent").toStdString(), "Test");
    link->write(
        UdpPeer::replyTo(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=3600"));
    ASSERT_TRUE(link->waitForBytesWritten());
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
}

TEST(SipRegistration, AtAServerThatHasNoAddressButAnIPv6One)
{
    // The loopback interface's is reached from itself alone.
    const QList<QHostAddress> all = QNetworkInterface::allAddresses();
    const auto own = std::find_if(all.begin(), all.end(), [](const QHostAddress& address) {
        return address.protocol() == QAbstractSocket::IPv6Protocol && !address.isLoopback() &&
               !address.isLinkLocal();
    });
    QUdpSocket server;
    if (own == all.end() || !server.bind(*own))
        GTEST_SKIP() << "this machine has no IPv6 address";
    NameServer names;
    names.addAddress6("six.test", own->toString().toLatin1());
    names.start();
    tagSipSetup setup = AgentProcess::quickSetup();
    sipWire::setText(setup.szNames, names.settings().toStdString());
    sipWire::setText(setup.szAddress, ""); // this machine has IPv4 addresses too
    AgentProcess agent;
    ASSERT_TRUE(agent.start(setup));
    tagSipAccount account = accountAt(0, server.localPort());
    sipWire::setText(account.szServer, "six.test");
    agent.tell(account);
    QByteArray contact;
    const QByteArray place = "@[" + own->toString().toLatin1() + "]:";
    for (int i = 0; i < 6 && !contact.contains(place); ++i) {
        ASSERT_TRUE(server.hasPendingDatagrams() || server.waitForReadyRead(AgentProcess::WAIT_MS));
        const QNetworkDatagram request = server.receiveDatagram();
        if (!request.data().startsWith("REGISTER sip:six.test"))
            continue;
        contact = headerOf(request.data(), "Contact");
        server.writeDatagram(request.makeReply(
            UdpPeer::replyTo(request.data(), "200 OK", "Contact: " + contact + ";expires=60")));
    }
    EXPECT_TRUE(contact.contains(place)) << contact.constData() << " is where calls come to";
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
}
