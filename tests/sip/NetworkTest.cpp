// The way between phone and server: addresses that lie between, signs of life, a network that changes.
#include "tests/sip/callTest.h"
#include <QTcpServer>
#include <QTcpSocket>
#include <cstring>
#include <utility>

namespace {

class SipNetwork : public SipCalls
{
protected:
    // A line that is registered over a connection.
    void beginOverTcp(const tagSipSetup& setup)
    {
        ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
        ASSERT_TRUE(agent.start(setup));
        agent.tell(accountAt(0, server.serverPort(), SIP_TCP));
        ASSERT_TRUE(server.waitForNewConnection(AgentProcess::WAIT_MS));
        link = server.nextPendingConnection();
        const QByteArray request = readUntil("\r\n\r\n");
        write(UdpPeer::replyTo(request, "200 OK",
                               "Contact: " + headerOf(request, "Contact") + ";expires=3600"));
        ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    }
    // The same at a server that tells of no messages, and is waited for long.
    void beginOverTcpWithoutMessages()
    {
        tagSipSetup setup = AgentProcess::quickSetup();
        setup.nSilentMs = 15000;
        ASSERT_NO_FATAL_FAILURE(beginOverTcp(setup));
        const QByteArray subscribe = readUntil("\r\n\r\n");
        ASSERT_TRUE(subscribe.startsWith("SUBSCRIBE")) << subscribe.constData();
        write(UdpPeer::replyTo(subscribe, "489 Bad Event"));
    }
    QByteArray readUntil(const QByteArray& end)
    {
        QByteArray text;
        while (!text.endsWith(end) && link->waitForReadyRead(AgentProcess::WAIT_MS))
            text += link->readAll();
        return text;
    }
    void write(const QByteArray& text)
    {
        link->write(text);
        ASSERT_TRUE(link->waitForBytesWritten());
    }

    QTcpServer server;
    QTcpSocket* link = nullptr;
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

TEST_F(SipNetwork, AServerThatHasGoneIsNoticedByTheSignsOfLifeAndSoIsItsReturn)
{
    tagSipSetup setup = AgentProcess::calmSetup();
    setup.nKeepMs = 100;
    begin(setup);
    const uint32_t port = peer->port();
    peer.reset();
    const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED);
    ASSERT_TRUE(state) << "it would else be believed until the registration ends";
    EXPECT_STREQ(state->szReason, "The server does not answer");
    peer = std::make_unique<UdpPeer>("127.0.0.1", port);
    acceptAnew();
}

TEST_F(SipNetwork, SignsOfLifeGoOverConnectionsAndAreAnswered)
{
    tagSipSetup setup = AgentProcess::quickSetup();
    setup.nKeepMs = 200;
    setup.nSilentMs = 15000;
    ASSERT_NO_FATAL_FAILURE(beginOverTcp(setup));
    // After a request, or another one.
    const QByteArray sign = readUntil("\r\n\r\n\r\n\r\n");
    EXPECT_TRUE(sign.endsWith("\r\n\r\n\r\n\r\n")) << sign.constData();
}

TEST_F(SipNetwork, TheServersOwnSignsOfLifeAreAnsweredOverItsConnection)
{
    ASSERT_NO_FATAL_FAILURE(beginOverTcpWithoutMessages());
    for (int i = 0; i < 2; ++i) {
        write("\r\n\r\n");
        EXPECT_EQ(readUntil("\r\n").toStdString(), "\r\n") << i;
    }
}

TEST_F(SipNetwork, AnAnswerThatNoRecordHoldsIsNotToldInPartOverAConnectionEither)
{
    ASSERT_NO_FATAL_FAILURE(beginOverTcpWithoutMessages());
    dial(1, "300");
    const QByteArray invite = readUntil("s=offer\r\n");
    ASSERT_TRUE(invite.startsWith("INVITE")) << invite.constData();
    const QByteArray lines = "Contact: <sip:300@127.0.0.1:" + QByteArray::number(server.serverPort()) +
                             ";transport=tcp>\r\nContent-Type: application/sdp";
    write(UdpPeer::replyTo(invite, "200 OK", lines, "v=0\r\ns=" + QByteArray(100000, 'x')));
    const auto* talk = next<tagSipMedia>(SIP_TALK, 1);
    ASSERT_TRUE(talk);
    EXPECT_STREQ(talk->szSdp, "");
    EXPECT_TRUE(readUntil("\r\n\r\n").startsWith("ACK"));
    // The connection goes on.
    tellStatus(SIP_HANG_UP, 1);
    EXPECT_TRUE(readUntil("\r\n\r\n").startsWith("BYE"));
}

TEST_F(SipNetwork, WithOtherAddressesTheLinesAreRegisteredAnewAndCallsGoOn)
{
    begin();
    const uint32_t id = talkOut(1);
    ASSERT_NE(id, 0u);
    agent.tell(sipWire::make<tagSipHead>(SIP_NETWORK, 0));
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERING));
    ASSERT_NO_FATAL_FAILURE(acceptAnew());
    tellMedia(SIP_MEDIA, id, "v=0\r\ns=moved\r\n");
    EXPECT_TRUE(peer->receive("INVITE").endsWith("s=moved\r\n"));
}

TEST_F(SipNetwork, WithOtherAddressesEachLineIsRegisteredAnew)
{
    begin(AgentProcess::calmSetup());
    ASSERT_FALSE(registersLine(SIP_LINE_COUNT - 1).isEmpty());
    agent.tell(sipWire::make<tagSipHead>(SIP_NETWORK, 0));
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERING));
    EXPECT_TRUE(agent.nextLine(SIP_LINE_COUNT - 1, SIP_LINE_REGISTERING));
}

TEST_F(SipNetwork, ALineThatWaitsForItsNextTryBeginsOnceWithOtherAddresses)
{
    tagSipSetup setup = AgentProcess::calmSetup();
    setup.nRetryMs = setup.nRetryLastMs = 600;
    ASSERT_TRUE(agent.start(setup));
    peer = std::make_unique<UdpPeer>();
    agent.tell(accountAt(0, peer->port()));
    peer->reply(peer->receive("REGISTER"), "503 Service Unavailable");
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_FAILED));
    agent.tell(sipWire::make<tagSipHead>(SIP_NETWORK, 0));
    ASSERT_NO_FATAL_FAILURE(acceptAnew());
    EXPECT_FALSE(agent.nextLine(0, SIP_LINE_REGISTERING, int(setup.nRetryMs) * 2));
}

TEST_F(SipNetwork, WhereOneServerIsSilentTheConnectionToAnotherStays)
{
    tagSipSetup setup = AgentProcess::quickSetup();
    setup.nSilentMs = 2000;
    ASSERT_NO_FATAL_FAILURE(beginOverTcp(setup));
    QTcpServer other;
    ASSERT_TRUE(other.listen(QHostAddress("127.0.0.2"), server.serverPort()));
    tagSipAccount account = accountAt(1, server.serverPort(), SIP_TCP);
    sipWire::setText(account.szServer, "127.0.0.2");
    agent.tell(account);
    ASSERT_TRUE(other.waitForNewConnection(AgentProcess::WAIT_MS));
    QTcpSocket* first = std::exchange(link, other.nextPendingConnection());
    const QByteArray request = readUntil("\r\n\r\n");
    write(UdpPeer::replyTo(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=3600"));
    ASSERT_TRUE(agent.nextLine(1, SIP_LINE_REGISTERED));
    dial(1, "300"); // at which the first says nothing, nor when it is asked whether it is there
    EXPECT_TRUE(first->waitForDisconnected(AgentProcess::WAIT_MS));
    EXPECT_FALSE(link->waitForDisconnected(200));
    EXPECT_EQ(link->state(), QTcpSocket::ConnectedState);
}
