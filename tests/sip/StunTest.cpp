// The STUN server of a line, asked from the agent's own port.
#include "tests/kit/plain/processes.h"
#include "tests/kit/plain/stunServer.h"
#include "tests/sip/callTest.h"
#include "tests/sip/nameServer.h"

namespace {

constexpr int kQuietMs = 400;

class SipStun : public SipCalls
{
protected:
    // A line with that server, registered at one that says how it sees the phone, or does not.
    void begin(const QByteArray& host = "127.0.0.1", tagSipSetup setup = AgentProcess::quickSetup())
    {
        setup.nKeepMs = 100;
        ASSERT_TRUE(agent.start(setup));
        peer = std::make_unique<UdpPeer>();
        tellAccount(host);
        registers();
        ASSERT_TRUE(isRegistered());
    }
    // What is told of the server meanwhile is kept.
    bool isRegistered()
    {
        return agent.next([this](const tagSipHead& head) {
            if (head.eKind == SIP_STUN)
                m_early.append(reinterpret_cast<const tagSipStun&>(head));
            if (head.eKind == SIP_MAPPED)
                m_mapped = reinterpret_cast<const tagSipMapped&>(head);
            return head.eKind == SIP_LINE &&
                   reinterpret_cast<const tagSipLine&>(head).eState == SIP_LINE_REGISTERED;
        });
    }
    void tellAccount(const QByteArray& host)
    {
        auto account = accountAt(0, peer->port());
        sipWire::setText(account.szStun, host.toStdString());
        account.nStunPort = host.isEmpty() ? 0 : server.port();
        agent.tell(account);
    }
    // The contact that the line has, then.
    QByteArray registers(const QByteArray& seen = {})
    {
        const QByteArray request = peer->receive("REGISTER");
        const QByteArray address = headerOf(request, "Contact");
        contact = address.mid(5, address.indexOf('@') - 5);
        QByteArray reply = UdpPeer::replyTo(request, "200 OK", "Contact: " + address + ";expires=3600");
        peer->answer(seen.isEmpty() ? reply : reply.replace(";rport", seen));
        return address;
    }
    // The server takes it once more; empty when it is not asked.
    QByteArray registersAgain(int ms = AgentProcess::WAIT_MS)
    {
        const QByteArray request = peer->receive("REGISTER", ms);
        if (!request.isEmpty())
            peer->reply(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=3600");
        return request;
    }
    // What the phone is told of the server next: where it is, or "silent"; "nothing" when that is not told.
    QByteArray told(int ms = AgentProcess::WAIT_MS)
    {
        const tagSipStun early = m_early.isEmpty() ? tagSipStun() : m_early.takeFirst();
        const auto* record = early.head.eKind ? &early : next<tagSipStun>(SIP_STUN, 0, ms);
        if (!record)
            return "nothing";
        if (record->bSilent)
            return "silent";
        return record->szAddress[0] ? record->szAddress + (":" + QByteArray::number(record->nPort)) : "";
    }
    // Where the line is seen, as the phone was told last.
    QByteArray mapped()
    {
        while (const auto* record = next<tagSipMapped>(SIP_MAPPED, 0, kQuietMs))
            m_mapped = *record;
        return m_mapped.szAddress + (":" + QByteArray::number(m_mapped.nPort));
    }
    QByteArray place() const { return "127.0.0.1:" + QByteArray::number(server.port()); }

    kit::StunServer server;

private:
    QList<tagSipStun> m_early;
    tagSipMapped m_mapped = {};
};

} // namespace

TEST_F(SipStun, AServerThatAnswersIsToldAndAskedFromThePortOfTheCallsAgainAndAgain)
{
    begin();
    EXPECT_EQ(told(), place());
    EXPECT_EQ(uint32_t(server.lastPort()), agent.port());
    EXPECT_TRUE(kit::waits([&] { return server.asked() > 3; }, AgentProcess::WAIT_MS));
    EXPECT_EQ(told(kQuietMs), "nothing") << "once";
    tellAccount("");
    EXPECT_EQ(told(), "");
    const int asked = server.asked();
    EXPECT_EQ(told(kQuietMs), "nothing");
    EXPECT_LE(server.asked(), asked + 1);
}

TEST_F(SipStun, OneThatSaysNothingIsAskedAsTheStandardHasItBeforeItIsTold)
{
    kit::tagStunWays ways;
    ways.bSilent = true;
    server.behave(ways);
    begin();
    EXPECT_TRUE(kit::waits([&] { return server.asked() == 2; }, AgentProcess::WAIT_MS));
    EXPECT_EQ(told(kQuietMs), "nothing");
    server.behave({});
    EXPECT_EQ(told(), place()) << "heard at last";
}

TEST_F(SipStun, NobodyButTheServerThatWasAskedIsBelieved)
{
    kit::tagStunWays ways;
    ways.bElsewhere = ways.bWrongNumber = ways.bBroken = true;
    ways.address = "127.0.0.99";
    ways.nPort = 9999;
    server.behave(ways);
    begin();
    ASSERT_EQ(told(), place());
    // Of two places the one that it was told: its server sees nothing.
    EXPECT_EQ(mapped(), "127.0.0.99:9999");
    EXPECT_TRUE(agent.isRunning());
}

TEST_F(SipStun, WhereTheLinesServerSaysNothingTheLineAndItsCallsAreReachedAsTheOtherSeesThem)
{
    kit::tagStunWays ways;
    ways.address = "127.0.0.99";
    ways.nPort = 9999;
    server.behave(ways);
    begin();
    const QByteArray seen = registers();
    EXPECT_TRUE(seen.contains("@127.0.0.99:9999")) << seen.constData();
    dial(1, "300");
    const QByteArray invite = peer->receive("INVITE");
    EXPECT_TRUE(headerOf(invite, "Contact").contains("@127.0.0.99:9999")) << invite.constData();
    peer->reply(invite, "486 Busy Here");
    expectEnd(1, SIP_REFUSED, 486);
}

TEST_F(SipStun, WhatItSaysWhenTheLineIsRegisteredAlreadyCountsToo)
{
    kit::tagStunWays ways;
    ways.bSilent = true;
    server.behave(ways);
    begin();
    ways.bSilent = false;
    ways.address = "127.0.0.99";
    ways.nPort = 9999;
    server.behave(ways);
    const QByteArray seen = registers();
    EXPECT_TRUE(seen.contains("@127.0.0.99:9999")) << seen.constData();
}

TEST_F(SipStun, WhereOneThatHasAnsweredSaysNothingTheLinesOwnServerIsAskedWhetherItIsThere)
{
    begin("127.0.0.1", AgentProcess::calmSetup());
    ASSERT_EQ(told(), place());
    while (!registersAgain(kQuietMs).isEmpty()) // since it is seen elsewhere
        continue;
    kit::tagStunWays ways;
    ways.bSilent = true;
    server.behave(ways);
    EXPECT_NE(registersAgain().toStdString(), "");
    EXPECT_EQ(registersAgain(2 * kQuietMs).toStdString(), "") << "once, and it is there";
}

TEST_F(SipStun, OneThatRefusesIsAskedAgainLater)
{
    kit::tagStunWays ways;
    ways.bRefuses = true;
    server.behave(ways);
    begin();
    EXPECT_TRUE(kit::waits([&] { return server.asked() > 0; }, AgentProcess::WAIT_MS));
    EXPECT_EQ(told(), "silent");
    EXPECT_TRUE(kit::waits([&] { return server.asked() > 1; }, AgentProcess::WAIT_MS));
    EXPECT_EQ(told(kQuietMs), "nothing") << "once";
    server.behave({});
    EXPECT_EQ(told(), place());
}

TEST_F(SipStun, OneWhoseNameNobodyKnowsIsToldAsOneThatDoesNotAnswer)
{
    NameServer names;
    names.start();
    tagSipSetup setup = AgentProcess::quickSetup();
    sipWire::setText(setup.szNames, names.settings().toStdString());
    begin("stun.test", setup);
    EXPECT_EQ(told(), "silent");
    tellAccount("127.0.0.1");
    EXPECT_EQ(told(), "") << "it is asked no more";
    EXPECT_EQ(told(), place());
}

TEST_F(SipStun, TheLinesOwnServerKnowsBetter)
{
    kit::tagStunWays ways;
    ways.address = "127.0.0.99";
    ways.nPort = 9999;
    server.behave(ways);
    ASSERT_TRUE(agent.start());
    peer = std::make_unique<UdpPeer>();
    tellAccount("127.0.0.1");
    QByteArray registered;
    for (int i = 0; i < 3 && !registered.contains("@127.0.0.77:4444"); ++i)
        registered = registers(";received=127.0.0.77;rport=4444");
    EXPECT_TRUE(registered.contains("@127.0.0.77:4444")) << registered.constData();
    EXPECT_EQ(told(), place());
    const QByteArray again = peer->receive("REGISTER", 2 * kQuietMs);
    EXPECT_FALSE(headerOf(again, "Contact").contains("127.0.0.99")) << again.constData();
}

TEST_F(SipStun, ItsNameIsLookedUp)
{
    NameServer names;
    names.addAddress("stun.test", "127.0.0.1");
    names.start();
    tagSipSetup setup = AgentProcess::quickSetup();
    sipWire::setText(setup.szNames, names.settings().toStdString());
    begin("stun.test", setup);
    EXPECT_EQ(told(), place());
}

TEST_F(SipStun, WhoAsksThePhoneOrSendsItWhatNobodyAskedForHearsNothing)
{
    begin();
    ASSERT_EQ(told(), place());
    UdpPeer stranger("127.0.0.2");
    const QByteArray question = QByteArray::fromHex("000100002112a4420102030405060708090a0b0c");
    stranger.send(question, agent.port());
    stranger.send(kit::StunServer::answer(question, "127.0.0.66", 1, false), agent.port());
    stranger.send(QByteArray(20, '\1'), agent.port());
    stranger.send(QByteArray(60000, '\0'), agent.port());
    EXPECT_EQ(stranger.receive(kQuietMs).toHex().toStdString(), "");
    EXPECT_NE(talkOut(1), 0u) << "the port is there for calls all the same";
}
