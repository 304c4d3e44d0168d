// Where the requests of a call go: the first of one from here by the line's server, the others where the
// other side has said.
#include "tests/sip/callTest.h"
#include "tests/sip/nameServer.h"
#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <memory>
#include <unistd.h>

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
    // A call has come in whose caller is reached by that line, and talks; its id.
    uint32_t talkInOf(UdpPeer& from, const QByteArray& contactLine, const QByteArray& callId = "in")
    {
        QByteArray invite = inviteText(callId);
        invite.replace("Contact: " + headerOf(invite, "Contact"), contactLine);
        invite.replace("/UDP 127.0.0.1:" + QByteArray::number(peer->port()),
                       "/UDP 127.0.0.1:" + QByteArray::number(from.port()));
        from.send(invite, agent.port());
        const tagSipArrived* arrived = nextArrived();
        if (!arrived)
            return 0;
        const uint32_t id = arrived->head.nId;
        tellMedia(SIP_ANSWER, id, kAnswer);
        acknowledge(from.receive("SIP/2.0 200"));
        return agent.next(SIP_TALK, id) ? id : 0;
    }
    // The server registers the line that has asked.
    void acceptsLine(UdpPeer& server)
    {
        const QByteArray request = server.receive("REGISTER");
        const QByteArray address = headerOf(request, "Contact");
        contact = address.mid(5, address.indexOf('@') - 5);
        server.reply(request, "200 OK", "Contact: " + address + ";expires=3600");
        ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    }
    // All that a call that talks sends comes there.
    void expectAllAt(UdpPeer& place, uint32_t id)
    {
        takenAt(place, "ACK");
        ASSERT_TRUE(agent.next(SIP_TALK, id));
        expectAllOfTheTalkAt(place, id);
    }
    void expectAllOfTheTalkAt(UdpPeer& place, uint32_t id)
    {
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

// A server that is reached by connections alone.
class SipWaysByTcp : public SipWays
{
protected:
    void SetUp() override
    {
        names.addAddress("phones.test", "127.0.0.1");
        names.start();
        tagSipSetup setup = AgentProcess::calmSetup();
        sipWire::setText(setup.szNames, names.settings().toStdString());
        ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
        ASSERT_TRUE(agent.start(setup));
        tagSipAccount account = accountAt(0, server.serverPort(), SIP_TCP);
        sipWire::setText(account.szServer, "phones.test");
        agent.tell(account);
        ASSERT_TRUE(server.waitForNewConnection(AgentProcess::WAIT_MS));
        link = server.nextPendingConnection();
        const QByteArray request = next("REGISTER");
        const QByteArray address = headerOf(request, "Contact");
        line = address.mid(1, address.indexOf('>') - 1);
        reply(request, "Contact: " + address + ";expires=3600", {});
        ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    }
    // The next message that begins so; the others before it are dropped.
    QByteArray next(const QByteArray& start)
    {
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
    }
    void reply(const QByteArray& request, const QByteArray& lines, const QByteArray& body)
    {
        say(UdpPeer::replyTo(request, "200 OK", lines, body));
    }
    void hangUp(uint32_t id)
    {
        tellStatus(SIP_HANG_UP, id);
        const QByteArray bye = next("BYE");
        EXPECT_NE(bye.toStdString(), "");
        reply(bye, {}, {});
    }
    void say(const QByteArray& message)
    {
        link->write(message);
        ASSERT_TRUE(link->waitForBytesWritten());
    }
    // A request of the caller of the call that comes in.
    QByteArray callersText(const QByteArray& method, const QByteArray& to, const QByteArray& contact,
                           const QByteArray& body = {}) const
    {
        QByteArray text = method + " " + line + " SIP/2.0\r\nVia: SIP/2.0/TCP 127.0.0.1:" +
                          QByteArray::number(server.serverPort()) + ";branch=z9hG4bK" + method +
                          contact.toHex() + "\r\nFrom: <sip:200@127.0.0.1>;tag=caller\r\nTo: " + to +
                          "\r\nCall-ID: " + contact.toHex() + "\r\nCSeq: 1 " + method +
                          "\r\nMax-Forwards: 70\r\nContact: <" + contact + ">\r\n";
        if (!body.isEmpty())
            text += "Content-Type: application/sdp\r\n";
        return text + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
    }
    uint32_t talkInOverTcp(const QByteArray& contact)
    {
        const QByteArray to = "<sip:user0@phones.test>";
        say(callersText("INVITE", to, contact, "v=0\r\ns=offer\r\n"));
        const tagSipArrived* arrived = nextArrived();
        if (!arrived)
            return 0;
        const uint32_t id = arrived->head.nId;
        tellMedia(SIP_ANSWER, id, kAnswer);
        say(callersText("ACK", headerOf(next("SIP/2.0 200"), "To"), contact));
        return agent.next(SIP_TALK, id) ? id : 0;
    }
    // However the server is called.
    QList<QByteArray> ownAddresses() const
    {
        const QByteArray own = ":" + QByteArray::number(server.serverPort());
        return {"sip:300@127.0.0.1" + own, "sip:300@Phones.test" + own};
    }

    NameServer names;
    QTcpServer server;
    QTcpSocket* link = nullptr;
    QByteArray read;
    QByteArray line; // its address
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

TEST_F(SipWays, WhatBelongsToACallThatCameInGoesToItsContact)
{
    begin(AgentProcess::calmSetup());
    const uint32_t id = talkInOf(*peer, other.contactLine());
    ASSERT_NE(id, 0u);
    expectAllOfTheTalkAt(other, id);
}

TEST_F(SipWays, AnAccountWithAProxySendsThroughItWhatBelongsToACallThatCameIn)
{
    ASSERT_TRUE(agent.start(AgentProcess::calmSetup()));
    peer = std::make_unique<UdpPeer>();
    agent.tell(accountBehind(peer->port()));
    acceptsLine(*peer);
    const uint32_t id = talkInOf(*peer, other.contactLine());
    ASSERT_NE(id, 0u);
    expectAllOfTheTalkAt(*peer, id);
    EXPECT_EQ(other.receive(200).toStdString(), "");
}

TEST_F(SipWays, OfSeveralProxiesACallThatCameInStaysWithItsOwn)
{
    UdpPeer second;
    NameServer names;
    names.addService("_sip._udp.phones.test", 10, other.port(), "one.phones.test");
    names.addService("_sip._udp.phones.test", 20, second.port(), "two.phones.test");
    names.addAddress("one.phones.test", "127.0.0.1");
    names.addAddress("two.phones.test", "127.0.0.1");
    names.start();
    tagSipSetup setup = AgentProcess::calmSetup();
    sipWire::setText(setup.szNames, names.settings().toStdString());
    ASSERT_TRUE(agent.start(setup));
    tagSipAccount account = accountBehind(0);
    sipWire::setText(account.szProxy, "phones.test");
    agent.tell(account);
    acceptsLine(other);
    peer = std::make_unique<UdpPeer>(); // is none of them
    const auto talkBetween = [&](UdpPeer& from, UdpPeer& wanted, const QByteArray& callId) {
        SCOPED_TRACE(callId.toStdString());
        const uint32_t id = talkInOf(from, "Contact: <sip:200@127.0.0.1:9>", callId);
        ASSERT_NE(id, 0u);
        tellStatus(SIP_HANG_UP, id);
        takenAt(wanted, "BYE");
        expectEnd(id, SIP_HUNG_UP, 0);
    };
    talkBetween(second, second, "second");
    talkBetween(other, other, "first");
    talkBetween(*peer, other, "elsewhere");
}

TEST_F(SipWays, WhileTheProxyIsLookedForACallThatComesInHasTheOneOfBefore)
{
    // A name without a port is at the usual one: of an address that no other test has.
    const int own = int(getpid());
    const QByteArray host =
        "127." + QByteArray::number(1 + own / 250 % 250) + '.' + QByteArray::number(own % 250) + ".77";
    auto names = std::make_unique<NameServer>();
    names->addAddress("phones.test", host);
    names->start();
    peer = std::make_unique<UdpPeer>(host.constData(), 5060);
    tagSipSetup setup = AgentProcess::calmSetup();
    setup.nSilentMs = 2 * AgentProcess::WAIT_MS;
    sipWire::setText(setup.szNames, names->settings().toStdString());
    ASSERT_TRUE(agent.start(setup));
    tagSipAccount account = accountBehind(0);
    sipWire::setText(account.szProxy, "phones.test");
    agent.tell(account);
    acceptsLine(*peer);
    names.reset();
    agent.tell(sipWire::make<tagSipHead>(SIP_NETWORK, 0));
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERING));
    const uint32_t id = talkInOf(*peer, other.contactLine());
    ASSERT_NE(id, 0u);
    expectAllOfTheTalkAt(*peer, id);
    EXPECT_EQ(other.receive(200).toStdString(), "");
}

TEST_F(SipWays, WhoCannotBeReachedAsHeSaysIsReachedByTheServer)
{
    begin(AgentProcess::calmSetup());
    uint32_t id = 0;
    for (const char* place :
         {"sip:300@127.0.0.1:0", "sip:300@239.1.2.3", "sip:300@255.255.255.255", "sip:300@0.0.0.0",
          "sip:300@[ff02::1]", "sips:300@127.0.0.1:9", "sip:300@127.0.0.1:9;transport=tls",
          "sip:300@127.0.0.1:9;transport=ws", "sip:300@nobody.invalid"}) {
        SCOPED_TRACE(place);
        talkBy(++id, "Contact: <" + QByteArray(place) + ">\r\nContent-Type: application/sdp");
        EXPECT_TRUE(takenAt(*peer, "ACK").startsWith("ACK " + QByteArray(place) + " "));
        ASSERT_TRUE(agent.next(SIP_TALK, id));
        tellStatus(SIP_HANG_UP, id);
        takenAt(*peer, "BYE");
        expectEnd(id, SIP_HUNG_UP, 0);
    }
}

TEST_F(SipWaysByTcp, AServerThatNamesNoTransportIsReachedAsTheAccountSays)
{
    uint32_t id = 0;
    for (const QByteArray& own : ownAddresses()) {
        SCOPED_TRACE(own.toStdString());
        dial(++id, "300");
        reply(next("INVITE"), "Contact: <" + own + ">\r\nContent-Type: application/sdp", kAnswer);
        EXPECT_NE(next("ACK").toStdString(), "");
        ASSERT_TRUE(agent.next(SIP_TALK, id));
        hangUp(id);
    }
    // Who is elsewhere says how.
    dial(++id, "300");
    reply(next("INVITE"), other.linesWithSdp(), kAnswer);
    EXPECT_NE(other.receive("ACK").toStdString(), "");
    tellStatus(SIP_HANG_UP, id);
    takenAt(other, "BYE");
}

TEST_F(SipWaysByTcp, TheSameHoldsForACallThatCameIn)
{
    for (const QByteArray& own : ownAddresses()) {
        SCOPED_TRACE(own.toStdString());
        const uint32_t id = talkInOverTcp(own);
        ASSERT_NE(id, 0u);
        tellMedia(SIP_MEDIA, id, "v=0\r\ns=hold\r\n");
        const QByteArray hold = next("INVITE");
        EXPECT_NE(hold.toStdString(), "");
        reply(hold, "Contact: <" + own + ">\r\nContent-Type: application/sdp", kAnswer);
        EXPECT_NE(next("ACK").toStdString(), "");
        ASSERT_TRUE(agent.next(SIP_TALK, id));
        hangUp(id);
    }
}
