// Where the requests of a call from here go: the first by the line's server, the others where its other side
// has said.
#include "tests/sip/callTest.h"
#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <memory>

namespace {

constexpr const char* kAnswer = "v=0\r\ns=answer\r\n";
constexpr const char* kNobody = "Contact: <sip:300@127.0.0.1:9>\r\nContent-Type: application/sdp";

class SipWays : public SipCalls
{
protected:
    // Of somebody else than the server.
    QByteArray otherWay(const QByteArray& params = ";lr") const
    {
        return "<sip:127.0.0.1:" + QByteArray::number(other.port()) + params + ">";
    }
    // The server says yes to a call.
    void talkBy(uint32_t id, const QByteArray& lines)
    {
        dial(id, "300");
        lastInvite = peer->receive("INVITE");
        ASSERT_NE(lastInvite.toStdString(), "");
        peer->reply(lastInvite, "200 OK", lines, kAnswer);
    }
    // The next request that begins so has come there, and is taken.
    QByteArray takenAt(UdpPeer& place, const QByteArray& method, const QByteArray& status = "200 OK")
    {
        const QByteArray request = place.receive(method);
        EXPECT_NE(request.toStdString(), "") << method.constData();
        if (method == "INVITE")
            place.reply(request, status, place.linesWithSdp(), kAnswer);
        else if (method != "ACK")
            place.reply(request, status);
        return request;
    }
    // All that a call that talks sends comes there.
    void expectAllAt(UdpPeer& place, uint32_t id)
    {
        takenAt(place, "ACK");
        ASSERT_TRUE(agent.next(SIP_TALK, id));
        tellMedia(SIP_MEDIA, id, "v=0\r\ns=hold\r\n");
        takenAt(place, "INVITE");
        takenAt(place, "ACK");
        ASSERT_TRUE(agent.next(SIP_TALK, id));
        auto tone = sipWire::make<tagSipTone>(SIP_TONE, id);
        tone.nTone = '5';
        tone.nMs = 100;
        agent.tell(tone);
        takenAt(place, "INFO");
        tellTarget(SIP_TRANSFER, id, "400");
        takenAt(place, "REFER", "603 Decline");
        ASSERT_TRUE(agent.next(SIP_TRANSFERRED, id));
        tellStatus(SIP_HANG_UP, id);
        takenAt(place, "BYE");
        expectEnd(id, SIP_HUNG_UP, 0);
    }

    UdpPeer other;
};

} // namespace

TEST_F(SipWays, WhatBelongsToACallGoesToItsContact)
{
    begin(AgentProcess::calmSetup());
    dial(1, "300");
    const QByteArray invite = peer->receive("INVITE");
    peer->reply(invite, "180 Ringing", "Require: 100rel\r\nRSeq: 1\r\n" + other.contactLine());
    takenAt(other, "PRACK");
    peer->reply(invite, "200 OK", other.linesWithSdp(), kAnswer);
    expectAllAt(other, 1);
}

TEST_F(SipWays, TheFirstRouteGoesBeforeTheContact)
{
    begin(AgentProcess::calmSetup());
    const QByteArray server = "<sip:127.0.0.1:" + QByteArray::number(peer->port()) + ";lr>";
    talkBy(1, "Record-Route: " + server + ", " + otherWay() + "\r\n" + kNobody);
    const QByteArray ack = takenAt(other, "ACK");
    EXPECT_EQ(headerOf(ack, "Route").toStdString(), otherWay().toStdString());
    EXPECT_TRUE(ack.startsWith("ACK sip:300@127.0.0.1:9 ")) << ack.constData();
    tellStatus(SIP_HANG_UP, 1);
    takenAt(other, "BYE");
    // One that wants to stand in the address itself.
    talkBy(2, "Record-Route: " + otherWay("") + "\r\n" + kNobody);
    takenAt(other, "ACK");
    tellStatus(SIP_HANG_UP, 2);
    takenAt(other, "BYE");
}

TEST_F(SipWays, AnAccountWithAProxySendsAllThroughIt)
{
    ASSERT_TRUE(agent.start(AgentProcess::calmSetup()));
    peer = std::make_unique<UdpPeer>();
    agent.tell(accountBehind(peer->port()));
    acceptAnew();
    talkBy(1, "Record-Route: " + otherWay() + "\r\n" + other.linesWithSdp());
    expectAllAt(*peer, 1);
}

TEST_F(SipWays, WhoeverAsksForThePasswordIsAnsweredWhereHeIs)
{
    const QByteArray challenge = "Proxy-Authenticate: Digest realm=\"home\", nonce=\"n\", qop=\"auth\"";
    begin(AgentProcess::calmSetup());
    dial(1, "300");
    peer->reply(peer->receive("INVITE"), "407 Proxy Authentication Required", challenge);
    const QByteArray invite = peer->receive("INVITE");
    EXPECT_NE(headerOf(invite, "Proxy-Authorization").toStdString(), "");
    peer->reply(invite, "200 OK", other.linesWithSdp(), kAnswer);
    takenAt(other, "ACK");
    tellStatus(SIP_HANG_UP, 1);
    const QByteArray bye = other.receive("BYE");
    other.reply(bye, "407 Proxy Authentication Required", QByteArray(challenge).replace("\"n\"", "\"m\""));
    const QByteArray again = takenAt(other, "BYE");
    EXPECT_EQ(paramOf(headerOf(again, "Proxy-Authorization"), "nonce").toStdString(), "m");
}

TEST_F(SipWays, AServerThatNamesNoTransportIsReachedAsTheAccountSays)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    ASSERT_TRUE(agent.start(AgentProcess::calmSetup()));
    agent.tell(accountAt(0, server.serverPort(), SIP_TCP));
    ASSERT_TRUE(server.waitForNewConnection(AgentProcess::WAIT_MS));
    QTcpSocket* link = server.nextPendingConnection();
    QByteArray read;
    const auto next = [&](const QByteArray& start) {
        const auto isWhole = [&] {
            const qsizetype at = read.indexOf("\r\n" + start),
                            end = at < 0 ? at : read.indexOf("\r\n\r\n", at);
            return end > 0;
        };
        read.prepend("\r\n");
        QElapsedTimer limit; // it asks for other things meanwhile
        limit.start();
        while (!isWhole() && limit.elapsed() < AgentProcess::WAIT_MS &&
               link->waitForReadyRead(AgentProcess::WAIT_MS))
            read += link->readAll();
        const qsizetype at = read.indexOf("\r\n" + start);
        const QByteArray request = at < 0 ? QByteArray() : read.mid(at + 2);
        read = request.isEmpty() ? read : request.mid(request.indexOf("\r\n\r\n"));
        return request.left(request.indexOf("\r\n\r\n") + 4);
    };
    const auto reply = [&](const QByteArray& request, const QByteArray& lines, const QByteArray& body) {
        link->write(UdpPeer::replyTo(request, "200 OK", lines, body));
        ASSERT_TRUE(link->waitForBytesWritten());
    };
    const QByteArray request = next("REGISTER");
    reply(request, "Contact: " + headerOf(request, "Contact") + ";expires=3600", {});
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    dial(1, "300");
    const QByteArray own = "Contact: <sip:300@127.0.0.1:" + QByteArray::number(server.serverPort());
    reply(next("INVITE"), own + ">\r\nContent-Type: application/sdp", kAnswer);
    EXPECT_NE(next("ACK").toStdString(), "");
    ASSERT_TRUE(agent.next(SIP_TALK, 1));
    tellStatus(SIP_HANG_UP, 1);
    EXPECT_NE(next("BYE").toStdString(), "");
    // Who is elsewhere says how.
    dial(2, "300");
    reply(next("INVITE"), other.linesWithSdp(), kAnswer);
    EXPECT_NE(other.receive("ACK").toStdString(), "");
    tellStatus(SIP_HANG_UP, 2);
    takenAt(other, "BYE");
}
