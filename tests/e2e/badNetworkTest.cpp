// The running phone with a real line behind a network, or at a server, that is not as it should be: what
// comes twice, late, never or from the wrong one ends in the same as what comes once.
#include "tests/e2e/realLines.h"
#include "tests/sip/badWay.h"
#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <memory>

namespace {

constexpr int kRepeatMs = 500; // as the standard says
constexpr int kLongMs = 60000;

class BadNetwork : public RealLines
{
protected:
    // All that the line says goes over that way from here on.
    void beginBehindWay()
    {
        way = std::make_unique<BadWay>(0, server.port());
        setAccount("1001", way->front());
        registers();
        agentPort = way->back();
    }
    // Sends it until something that begins so comes back, or a time goes by.
    QByteArray askUntil(const QByteArray& text, const QByteArray& reply)
    {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < kWaitMs) {
            server.send(text, agentPort);
            const QByteArray heard = server.receive(reply, kRepeatMs);
            if (!heard.isEmpty())
                return heard;
        }
        return {};
    }
    // What the phone repeats until it hears something.
    QByteArray requestOf(const QByteArray& method, const QByteArray& callId)
    {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < kWaitMs) {
            const QByteArray request = server.receive(method + ' ', kWaitMs);
            if (headerOf(request, "Call-ID") == callId || callId.isEmpty())
                return request;
        }
        return {};
    }
    void sayUntilHeard(const QByteArray& request, const QByteArray& text, const QByteArray& heard)
    {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < kWaitMs) {
            server.send(text, agentPort);
            if (headerOf(server.receive(heard, kRepeatMs), "Call-ID") == headerOf(request, "Call-ID"))
                return;
        }
        ADD_FAILURE() << "never heard: " << heard.constData();
    }
    QByteArray takes(const QByteArray& request) const
    {
        return UdpPeer::replyTo(
            request, "200 OK",
            "Contact: <sip:300@127.0.0.1:" + QByteArray::number(way ? way->front() : server.port()) +
                ">\r\nContent-Type: application/sdp",
            kSdp);
    }
    int timesRegistered() { return logOf("trace").join('\n').count("line 1 is registered"); }
    // Whatever it asks meanwhile, and however often.
    bool registersAgain(int before)
    {
        return kit::waits(
            [&] {
                const QByteArray request = server.receive("REGISTER", kRepeatMs);
                if (!request.isEmpty())
                    server.reply(request, "200 OK",
                                 "Contact: " + headerOf(request, "Contact") + ";expires=3600");
                return timesRegistered() > before;
            },
            kWaitMs);
    }
    QByteArray byeOf(const QByteArray& reply)
    {
        return request("BYE", 2, headerOf(reply, "Call-ID"), headerOf(reply, "To"),
                       "bye" + headerOf(reply, "Call-ID"));
    }
    void dials(const QString& number)
    {
        waitPage("frmDesktop");
        callByFinger(number);
        waitPage("frmCall");
    }
    bool talks()
    {
        return kit::waits([&] { return call()["state"] == "talking"; }, kWaitMs);
    }
    QJsonArray ended() { return ctl({"calls"}).toObject()["ended"].toArray(); }

    std::unique_ptr<BadWay> way;
};

} // namespace

TEST_F(BadNetwork, WhatIsRepeatedHappensOnce)
{
    invites("again");
    invites("again");
    waitPage("frmCall");
    invites("again");
    EXPECT_NE(server.receive("SIP/2.0 180").toStdString(), "");
    waitIdle();
    EXPECT_EQ(ctl({"calls"}).toObject()["calls"].toArray().size(), 1);
    tap("btnAnswer");
    const QByteArray answer = server.receive("SIP/2.0 200");
    const QByteArray repeated = server.receive("SIP/2.0 200");
    ASSERT_NE(repeated.toStdString(), "") << "an answer that nobody has acknowledged";
    EXPECT_EQ(headerOf(repeated, "To").toStdString(), headerOf(answer, "To").toStdString());
    acknowledges(repeated);
    acknowledges(repeated);
    ASSERT_TRUE(talks());
    for (int i = 0; i < 2; ++i) {
        server.send(byeOf(answer), agentPort);
        EXPECT_NE(server.receive("SIP/2.0 200").toStdString(), "") << i;
    }
    EXPECT_TRUE(ends("hung up"));
    EXPECT_EQ(ended().size(), 1);
    waitPage("frmDesktop");

    dials("300");
    const QByteArray invite = server.receive("INVITE");
    const QByteArray second = server.receive("INVITE");
    EXPECT_EQ(second.toStdString(), invite.toStdString()) << "an INVITE that nobody has answered";
    for (int i = 0; i < 2; ++i) {
        server.send(takes(invite), agentPort);
        EXPECT_NE(server.receive("ACK").toStdString(), "") << i;
    }
    ASSERT_TRUE(talks());
    softKey(3);
    const QByteArray bye = server.receive("BYE");
    EXPECT_EQ(server.receive("BYE").toStdString(), bye.toStdString());
    server.reply(bye, "200 OK");
    EXPECT_TRUE(ends("hung up"));
    EXPECT_EQ(ended().size(), 2);
}

TEST_F(BadNetwork, OverAWayThatLosesAThirdEachCallComesAndGoesOnce)
{
    const int rounds = qEnvironmentVariableIsSet("HX_LONG") ? 12 : 2;
    beginBehindWay();
    way->setBad(true);
    for (int round = 0; round < rounds; ++round) {
        const QByteArray id = "lossy" + QByteArray::number(round);
        const QByteArray invite = request("INVITE", 1, id, "<sip:1001@127.0.0.1>", id, {}, kSdp);
        ASSERT_NE(askUntil(invite, "SIP/2.0 1").toStdString(), "");
        waitPage("frmCall");
        waitIdle();
        tap("btnAnswer");
        const QByteArray answer = server.receive("SIP/2.0 200");
        ASSERT_NE(answer.toStdString(), "");
        // Until it is not repeated any more.
        for (QByteArray next = answer; !next.isEmpty(); next = server.receive("SIP/2.0 200", 5 * kRepeatMs))
            acknowledges(next);
        ASSERT_TRUE(talks());
        EXPECT_NE(askUntil(byeOf(answer), "SIP/2.0 200").toStdString(), "");
        EXPECT_TRUE(ends("hung up"));
        EXPECT_EQ(ended().size(), 2 * round + 1);
        waitPage("frmDesktop");

        dials("30" + QString::number(round));
        const QByteArray call = requestOf("INVITE", {});
        ASSERT_NE(call.toStdString(), "");
        sayUntilHeard(call, takes(call), "ACK ");
        ASSERT_TRUE(talks());
        softKey(3);
        const QByteArray bye = requestOf("BYE", headerOf(call, "Call-ID"));
        EXPECT_NE(bye.toStdString(), "");
        server.send(UdpPeer::replyTo(bye, "200 OK"), agentPort);
        EXPECT_TRUE(ends("hung up"));
        EXPECT_EQ(ended().size(), 2 * round + 2);
        waitPage("frmDesktop");
    }
    EXPECT_GT(way->lost(), 0);
    EXPECT_EQ(config(kUserFile, "CallHistory", "nMissed").toInt(), 0);
}

TEST_F(BadNetwork, AnAnswerThatNobodyAcknowledgesEndsTheCallOnTheScreen)
{
    if (!qEnvironmentVariableIsSet("HX_LONG"))
        GTEST_SKIP() << "takes half a minute: ./test --long";
    invites("never");
    waitPage("frmCall");
    waitIdle();
    tap("btnAnswer");
    EXPECT_NE(server.receive("SIP/2.0 200").toStdString(), "");
    ASSERT_TRUE(talks());
    const QByteArray bye = server.receive("BYE", kLongMs);
    ASSERT_NE(bye.toStdString(), "");
    server.reply(bye, "200 OK");
    EXPECT_TRUE(ends("failed"));
    waitPage("frmDesktop");
    hangsUp(talksIn("next"));
}

TEST_F(BadNetwork, AServerThatIsGoneAndComesBackHasTheLineAndItsCallsAgain)
{
    beginBehindWay();
    const int before = timesRegistered();
    way->setCut(true);
    dials("300");
    EXPECT_TRUE(
        kit::waits([&] { return logOf("trace").join('\n').contains("line 1 cannot register"); }, kWaitMs));
    softKey(3);
    EXPECT_TRUE(ends("hung up"));
    waitPage("frmDesktop");
    EXPECT_TRUE(lineShows("Register failed"));
    way->setCut(false);
    EXPECT_TRUE(registersAgain(before));
    EXPECT_TRUE(lineShows("Default account"));
    hangsUp(talksIn("back"));
    EXPECT_TRUE(ends("hung up"));
}

TEST_F(BadNetwork, ARealmThatIsNotTheAccountsLearnsNothingOfThePassword)
{
    ctl({"config", kAccountFile, "account", "Realm", "phones.test"});
    tellChanged(kChangedAccount);
    const auto ask = [](const char* realm) {
        return QByteArray("WWW-Authenticate: Digest realm=\"") + realm +
               "\", nonce=\"n\", algorithm=MD5, qop=\"auth\"";
    };
    QByteArray first;
    do {
        first = server.receive("REGISTER");
        if (first.contains("expires=0") || headerOf(first, "Expires") == "0")
            server.reply(first, "200 OK");
    } while (first.contains("expires=0") || headerOf(first, "Expires") == "0");
    server.reply(first, "401 Unauthorized", ask("elsewhere.test"));
    EXPECT_TRUE(lineShows("Register failed"));
    EXPECT_EQ(server.receive("REGISTER", 3000).toStdString(), "") << "another try";

    // Another account is tried, and told to its own realm alone.
    ctl({"config", kAccountFile, "account", "DisplayName", "Berta"});
    tellChanged(kChangedAccount);
    server.reply(server.receive("REGISTER"), "401 Unauthorized", ask("phones.test"));
    const QByteArray answered = server.receive("REGISTER");
    const QByteArray answer = headerOf(answered, "Authorization");
    EXPECT_EQ(paramOf(answer, "realm").toStdString(), "phones.test") << answered.constData();
    EXPECT_EQ(paramOf(answer, "response").toStdString(),
              digestOf("REGISTER", answer, "1001", "s3cret").toStdString());
    const QByteArray address = headerOf(answered, "Contact");
    server.reply(answered, "200 OK", "Contact: " + address + ";expires=3600");
    EXPECT_TRUE(lineShows("Default account"));
    dials("300");
    const QByteArray invite = server.receive("INVITE");
    server.reply(invite, "401 Unauthorized", ask("elsewhere.test"));
    EXPECT_TRUE(ends("failed"));
    EXPECT_EQ(server.receive("INVITE", 1000).toStdString(), "");
}

// The connection is there for the phone alone.
TEST_F(BadNetwork, AConnectionThatIsHalfOpenIsGivenUpAndMadeAnew)
{
    QTcpServer exchange;
    ASSERT_TRUE(exchange.listen(QHostAddress::LocalHost));
    ctl({"config", kAccountFile, "account", "Transport", "TCP"});
    setAccount("1001", exchange.serverPort());
    server.reply(server.receive("REGISTER"), "200 OK"); // takes leave
    const auto nextOf = [&](QTcpSocket*& link, const QByteArray& start) {
        if (!link && exchange.waitForNewConnection(kWaitMs))
            link = exchange.nextPendingConnection();
        QByteArray request;
        while (link && !(request.contains(start) && request.contains("\r\n\r\n")) &&
               link->waitForReadyRead(kWaitMs))
            request += link->readAll();
        return request.mid(qMax<qsizetype>(0, request.indexOf(start)));
    };
    const auto accept = [](QTcpSocket* link, const QByteArray& request) {
        link->write(UdpPeer::replyTo(request, "200 OK",
                                     "Contact: " + headerOf(request, "Contact") + ";expires=3600"));
        ASSERT_TRUE(link->waitForBytesWritten());
    };
    QTcpSocket* dead = nullptr;
    const QByteArray first = nextOf(dead, "REGISTER ");
    ASSERT_NE(first.toStdString(), "");
    accept(dead, first);
    EXPECT_TRUE(lineShows("Default account"));
    dials("300");
    EXPECT_NE(nextOf(dead, "INVITE ").toStdString(), "");
    // Nobody answers by the old one; what goes over it is given up, and the line is asked for by a new one.
    const int before = timesRegistered();
    ASSERT_TRUE(exchange.waitForNewConnection(kWaitMs));
    QTcpSocket* alive = exchange.nextPendingConnection();
    EXPECT_TRUE(kit::waits(
        [&] {
            alive->waitForReadyRead(kRepeatMs);
            // One that takes leave comes along.
            for (const QString& request : QString(alive->readAll()).split("\r\n\r\n")) {
                if (request.startsWith("REGISTER"))
                    accept(alive, request.toUtf8() + "\r\n\r\n");
            }
            return timesRegistered() > before;
        },
        kWaitMs));
    EXPECT_TRUE(ends("failed")) << qPrintable(call()["state"].toString());
    waitPage("frmDesktop");
    EXPECT_TRUE(lineShows("Default account"));
    dials("301");
    const QByteArray invite = nextOf(alive, "INVITE ");
    ASSERT_NE(invite.toStdString(), "");
    alive->write(UdpPeer::replyTo(invite, "486 Busy Here"));
    ASSERT_TRUE(alive->waitForBytesWritten());
    EXPECT_TRUE(ends("failed"));
    EXPECT_EQ(lastEnded()["reason"].toString(), "Busy");
}
