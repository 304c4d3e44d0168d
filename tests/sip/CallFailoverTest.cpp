// Calls by a line whose server leaves it alone.
#include "tests/sip/agentOrders.h"
#include "tests/sip/nameServer.h"
#include "tests/sip/udpPeer.h"
#include <QTcpServer>
#include <QTcpSocket>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>

namespace {

// The line is registered at the first server of a domain that has two.
class SipCallFailover : public ::testing::Test, protected AgentOrders
{
protected:
    SipCallFailover() : AgentOrders("v=0\r\ns=offer\r\n"), first(std::make_unique<UdpPeer>()) {}

    void begin(SIP_TRANSPORT transport = SIP_UDP, uint32_t firstPort = 0)
    {
        const QByteArray service = transport == SIP_UDP ? "_sip._udp.phones.test" : "_sip._tcp.phones.test";
        names.addService(service, 20, second.port(), "two.phones.test");
        names.addService(service, 10, firstPort ? firstPort : first->port(), "one.phones.test");
        names.addAddress("one.phones.test", "127.0.0.1");
        names.addAddress("two.phones.test", "127.0.0.1");
        names.start();
        tagSipSetup setup = AgentProcess::quickSetup();
        sipWire::setText(setup.szNames, names.settings().toStdString());
        setup.nSilentMs = silentMs;
        ASSERT_TRUE(agent.start(setup));
        tagSipAccount account = accountAt(0, 0, transport);
        sipWire::setText(account.szServer, "phones.test");
        agent.tell(account);
    }
    void beginRegistered()
    {
        begin();
        accept(*first);
        ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    }
    static void accept(UdpPeer& server)
    {
        const QByteArray request = server.receive("REGISTER");
        ASSERT_NE(request.toStdString(), "");
        server.reply(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=3600");
    }
    void dial(uint32_t id) { AgentOrders::dial(id, "300"); }
    // The second server makes the call talk.
    void expectTheSecond(uint32_t id, const QByteArray& likeInvite = {})
    {
        const QByteArray invite = second.receive("INVITE");
        ASSERT_NE(invite.toStdString(), "");
        for (const char* name : {"Call-ID", "From", "CSeq"}) {
            if (likeInvite.isEmpty())
                break;
            EXPECT_EQ(headerOf(invite, name).toStdString(), headerOf(likeInvite, name).toStdString());
        }
        second.reply(invite, "200 OK", second.linesWithSdp(), "v=0\r\ns=answer\r\n");
        EXPECT_TRUE(agent.next(SIP_TALK, id));
    }
    void hangUp(uint32_t id) { tellStatus(SIP_HANG_UP, id); }

    uint32_t silentMs = AgentProcess::quickSetup().nSilentMs;
    std::unique_ptr<UdpPeer> first;
    UdpPeer second;
    NameServer names;
};

} // namespace

TEST_F(SipCallFailover, FromASilentServerToTheNextAndTheFirstMakesNoSecondCallOfIt)
{
    beginRegistered();
    dial(1);
    const QByteArray invite = first->receive("INVITE");
    expectTheSecond(1, invite);
    // It comes to itself late.
    first->reply(invite, "180 Ringing");
    EXPECT_EQ(headerOf(first->receive("CANCEL"), "Call-ID").toStdString(),
              headerOf(invite, "Call-ID").toStdString());
    first->reply(invite, "200 OK", "Contact: <sip:300@127.0.0.1:" + QByteArray::number(first->port()) + ">");
    EXPECT_NE(first->receive("ACK").toStdString(), "");
    EXPECT_NE(first->receive("BYE").toStdString(), "");
    // The call that talks knows nothing of it.
    hangUp(1);
    EXPECT_NE(second.receive("BYE").toStdString(), "");
}

TEST_F(SipCallFailover, TheLineLeavesAServerThatIsSilentToACall)
{
    beginRegistered();
    dial(1);
    EXPECT_NE(first->receive("REGISTER").toStdString(), "");
    accept(second);
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERING));
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
}

TEST_F(SipCallFailover, FromAServerOutOfServiceToTheNext)
{
    silentMs = 30000; // longer than anybody waits for that
    beginRegistered();
    dial(1);
    // That it asks for patience keeps nobody.
    first->reply(first->receive("INVITE"), "503 Service Unavailable", "Retry-After: 5");
    expectTheSecond(1);
}

TEST_F(SipCallFailover, EachServerMayAskForThePassword)
{
    silentMs = 30000;
    beginRegistered();
    dial(1);
    const QByteArray challenge = "Proxy-Authenticate: Digest realm=\"home\", nonce=\"first\", qop=\"auth\"";
    first->reply(first->receive("INVITE"), "407 Proxy Authentication Required", challenge);
    const QByteArray answered = first->receive("INVITE");
    EXPECT_NE(headerOf(answered, "Proxy-Authorization").toStdString(), "");
    first->reply(answered, "503 Service Unavailable");
    const QByteArray again = second.receive("INVITE");
    ASSERT_NE(again.toStdString(), "");
    second.reply(again, "407 Proxy Authentication Required",
                 QByteArray(challenge).replace("first", "second"));
    const QByteArray invite = second.receive("INVITE");
    EXPECT_EQ(paramOf(headerOf(invite, "Proxy-Authorization"), "nonce").toStdString(), "second");
}

TEST_F(SipCallFailover, ACallGoesWhereTheLineHasGone)
{
    begin();
    EXPECT_NE(first->receive("REGISTER").toStdString(), "");
    accept(second);
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    dial(1);
    expectTheSecond(1);
    EXPECT_EQ(first->receive("INVITE", 100).toStdString(), "") << "it was silent before";
}

TEST_F(SipCallFailover, FromADeadServerToTheNext)
{
    silentMs = 30000;
    beginRegistered();
    first.reset();
    dial(1);
    expectTheSecond(1);
}

TEST_F(SipCallFailover, WhenAllAreOutOfServiceTheCallEndsOnce)
{
    beginRegistered();
    dial(1);
    first->reply(first->receive("INVITE"), "503 Service Unavailable");
    second.reply(second.receive("INVITE"), "503 Service Unavailable");
    const auto* ended = reinterpret_cast<const tagSipEnded*>(agent.next(SIP_ENDED, 1));
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->eEnding, uint32_t(SIP_REFUSED));
    EXPECT_EQ(ended->nStatus, 503u);
    EXPECT_EQ(first->receive("INVITE", 600).toStdString(), "");
}

TEST_F(SipCallFailover, WhatTheLastServerSaysBecomesOfTheCall)
{
    silentMs = 30000;
    beginRegistered();
    dial(1);
    first->reply(first->receive("INVITE"), "503 Service Unavailable");
    second.reply(second.receive("INVITE"), "486 Busy Here");
    const auto* ended = reinterpret_cast<const tagSipEnded*>(agent.next(SIP_ENDED, 1));
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->eEnding, uint32_t(SIP_REFUSED));
    EXPECT_EQ(ended->nStatus, 486u);
    first.reset();
    dial(2);
    second.reply(second.receive("INVITE"), "503 Service Unavailable");
    ended = reinterpret_cast<const tagSipEnded*>(agent.next(SIP_ENDED, 2));
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->eEnding, uint32_t(SIP_REFUSED));
    EXPECT_EQ(ended->nStatus, 503u);
}

TEST_F(SipCallFailover, AServerThatWorksOnACallIsNotLeft)
{
    beginRegistered();
    dial(1);
    const QByteArray invite = first->receive("INVITE");
    first->reply(invite, "100 Trying");
    EXPECT_EQ(second.receive("INVITE", 1000).toStdString(), "");
    first->reply(invite, "486 Busy Here");
    const auto* ended = reinterpret_cast<const tagSipEnded*>(agent.next(SIP_ENDED, 1));
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->nStatus, 486u);
}

TEST_F(SipCallFailover, ACallThatWasHungUpGoesToNobodyElse)
{
    beginRegistered();
    dial(1);
    const QByteArray invite = first->receive("INVITE");
    hangUp(1);
    ASSERT_TRUE(agent.next(SIP_ENDED, 1));
    EXPECT_EQ(second.receive("INVITE", 1000).toStdString(), "");
    first->reply(invite, "100 Trying");
    EXPECT_NE(first->receive("CANCEL").toStdString(), "");
}

// A connection that is there and leads nowhere.
TEST_F(SipCallFailover, AConnectionThatIsHalfOpenIsMadeAnew)
{
    QTcpServer server, other;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    ASSERT_TRUE(other.listen(QHostAddress::LocalHost, quint16(second.port())));
    begin(SIP_TCP, server.serverPort());
    const auto nextOf = [](QTcpServer& at, QTcpSocket*& link, const QByteArray& start) {
        if (!link && at.waitForNewConnection(AgentProcess::WAIT_MS))
            link = at.nextPendingConnection();
        QByteArray request;
        while (link && !(request.startsWith(start) && request.contains("\r\n\r\n")) &&
               link->waitForReadyRead(AgentProcess::WAIT_MS))
            request += link->readAll();
        return request;
    };
    QTcpSocket *link = nullptr, *next = nullptr, *again = nullptr;
    const QByteArray request = nextOf(server, link, "REGISTER");
    link->write(
        UdpPeer::replyTo(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=3600"));
    ASSERT_TRUE(link->waitForBytesWritten());
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    dial(1);
    EXPECT_NE(nextOf(server, link, "INVITE").toStdString(), "");
    const QByteArray invite = nextOf(other, next, "INVITE");
    EXPECT_TRUE(invite.startsWith("INVITE")) << invite.constData();
    next->write(UdpPeer::replyTo(invite, "486 Busy Here"));
    ASSERT_TRUE(next->waitForBytesWritten());
    ASSERT_TRUE(agent.next(SIP_ENDED, 1));
    // The line finds the connection as dead as the call did, and the first server by a new one.
    EXPECT_TRUE(link->state() == QTcpSocket::UnconnectedState ||
                link->waitForDisconnected(AgentProcess::WAIT_MS));
    EXPECT_TRUE(nextOf(server, again, "REGISTER").startsWith("REGISTER"));
}
