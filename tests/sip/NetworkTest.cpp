// The way between phone and server: addresses that lie between, signs of life, a network that changes.
#include "tests/sip/callTest.h"
#include <QTcpServer>
#include <QTcpSocket>
#include <cstring>

namespace {

class SipNetwork : public SipCalls
{
};

// As a server beyond a translator of addresses sees the phone.
QByteArray seenFrom(const QByteArray& reply, const QByteArray& address, const QByteArray& port)
{
    const QByteArray via = headerOf(reply, "Via");
    QByteArray seen = via;
    seen.replace(";rport", "");
    return QByteArray(reply).replace(via, seen + ";received=" + address + ";rport=" + port);
}

} // namespace

TEST_F(SipNetwork, TheAddressThatTheServerSeesIsToldAndRegistered)
{
    ASSERT_TRUE(agent.start());
    peer = std::make_unique<UdpPeer>();
    agent.tell(accountAt(0, peer->port()));
    QByteArray registered;
    for (int i = 0; i < 3 && !registered.contains("@127.0.0.77:4444"); ++i) {
        const QByteArray request = peer->receive("REGISTER");
        registered = headerOf(request, "Contact");
        peer->answer(seenFrom(UdpPeer::replyTo(request, "200 OK", "Contact: " + registered + ";expires=3600"),
                              "127.0.0.77", "4444"));
    }
    EXPECT_TRUE(registered.contains("@127.0.0.77:4444")) << registered.constData();
    const auto* mapped = next<tagSipMapped>(SIP_MAPPED, 0);
    ASSERT_TRUE(mapped);
    EXPECT_STREQ(mapped->szAddress, "127.0.0.77");
    EXPECT_EQ(mapped->nPort, 4444u);
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
}

TEST_F(SipNetwork, SignsOfLifeKeepTheWayToTheServerOpen)
{
    tagSipSetup setup = AgentProcess::quickSetup();
    setup.nKeepMs = 100;
    begin(setup);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(peer->receive("\r\n").toStdString(), "\r\n\r\n") << i;
    EXPECT_EQ(peer->lastPort(), agent.port());
    // Nobody is told anything by them.
    EXPECT_TRUE(agent.isQuiet(100));
    agent.tell(sipWire::make<tagSipAccount>(SIP_ACCOUNT, 0));
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_NONE));
    peer->reply(peer->receive("REGISTER"), "200 OK");
    EXPECT_EQ(peer->receive("\r\n", 400).toStdString(), "");
}

TEST_F(SipNetwork, SignsOfLifeGoOverConnectionsAndAreAnswered)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    tagSipSetup setup = AgentProcess::quickSetup();
    setup.nKeepMs = 200;
    setup.nSilentMs = 15000;
    ASSERT_TRUE(agent.start(setup));
    agent.tell(accountAt(0, server.serverPort(), SIP_TCP));
    ASSERT_TRUE(server.waitForNewConnection(AgentProcess::WAIT_MS));
    QTcpSocket* link = server.nextPendingConnection();
    const auto readUntil = [&](const QByteArray& end) {
        QByteArray text;
        while (!text.endsWith(end) && link->waitForReadyRead(AgentProcess::WAIT_MS))
            text += link->readAll();
        return text;
    };
    const QByteArray request = readUntil("\r\n\r\n");
    link->write(
        UdpPeer::replyTo(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=3600"));
    ASSERT_TRUE(link->waitForBytesWritten());
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    // After a request, or another one.
    const QByteArray sign = readUntil("\r\n\r\n\r\n\r\n");
    EXPECT_TRUE(sign.endsWith("\r\n\r\n\r\n\r\n")) << sign.constData();
}

TEST_F(SipNetwork, WithOtherAddressesTheLinesAreRegisteredAnewAndCallsGoOn)
{
    begin();
    const uint32_t id = talkOut(1);
    ASSERT_NE(id, 0u);
    agent.tell(sipWire::make<tagSipHead>(SIP_NETWORK, 0));
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERING));
    QByteArray request;
    do {
        request = peer->receive("REGISTER");
        ASSERT_NE(request.toStdString(), "");
        peer->reply(request, "200 OK", "Contact: " + headerOf(request, "Contact"));
    } while (headerOf(request, "Expires") == "0" || headerOf(request, "Contact").contains("expires=0"));
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    tellMedia(SIP_MEDIA, id, "v=0\r\ns=moved\r\n");
    EXPECT_TRUE(peer->receive("INVITE").endsWith("s=moved\r\n"));
}
