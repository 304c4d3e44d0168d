// Which server of a domain a line goes to.
#include "sip/hostsText.h"
#include "tests/sip/agentProcess.h"
#include "tests/sip/nameServer.h"
#include "tests/sip/udpPeer.h"
#include <QFile>
#include <QList>
#include <QTemporaryDir>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

class SipServers : public ::testing::Test
{
protected:
    // With names that are at this machine.
    void begin(const QList<QByteArray>& all)
    {
        for (const QByteArray& name : all)
            names.addAddress(name, "127.0.0.1");
        names.start();
        tagSipSetup setup = AgentProcess::calmSetup();
        sipWire::setText(setup.szNames, names.settings().toStdString());
        ASSERT_TRUE(agent.start(setup));
    }
    // port: that of the account; 0 for none.
    void registersAt(uint32_t port)
    {
        tagSipAccount account = accountAt(0, port);
        sipWire::setText(account.szServer, "phones.test");
        agent.tell(account);
    }

    NameServer names;
    AgentProcess agent;
};

// The servers of a domain, at two addresses: what is wrong with the first is the test's.
class SipFailover : public ::testing::Test
{
protected:
    SipFailover()
    {
        names.addService("_sip._udp.phones.test", 20, second.port(), "two.phones.test");
        names.addService("_sip._udp.phones.test", 10, first.port(), "one.phones.test");
        names.addAddress("one.phones.test", "127.0.0.1");
        names.addAddress("two.phones.test", "127.0.0.1");
        names.start();
    }
    void begin(tagSipSetup setup = AgentProcess::quickSetup())
    {
        sipWire::setText(setup.szNames, names.settings().toStdString());
        ASSERT_TRUE(agent.start(setup));
        tagSipAccount account = accountAt(0, 0);
        sipWire::setText(account.szServer, "phones.test");
        agent.tell(account);
    }
    void expectTheSecond()
    {
        const QByteArray request = second.receive("REGISTER sip:phones.test");
        EXPECT_NE(request.toStdString(), "");
        second.reply(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=3600");
        EXPECT_TRUE(agent.next([](const tagSipHead& head) {
            const auto& line = reinterpret_cast<const tagSipLine&>(head);
            EXPECT_NE(line.eState, SIP_LINE_FAILED);
            return head.eKind == SIP_LINE && line.eState == SIP_LINE_REGISTERED;
        }));
    }

    UdpPeer first, second;
    NameServer names;
    AgentProcess agent;
};

constexpr const char* kMd5 = "WWW-Authenticate: Digest realm=\"home\", nonce=\"n1\", qop=\"auth\"";

} // namespace

TEST_F(SipServers, WhereAPortIsSetTheNameItselfIsMeantAndNotWhatItsDomainSays)
{
    UdpPeer server, ofTheDomain;
    names.addService("_sip._udp.phones.test", 10, ofTheDomain.port(), "one.phones.test");
    ASSERT_NO_FATAL_FAILURE(begin({"phones.test", "one.phones.test"}));
    registersAt(server.port());
    EXPECT_NE(server.receive("REGISTER").toStdString(), "");
    EXPECT_EQ(ofTheDomain.receive("REGISTER", 200).toStdString(), "");
}

TEST_F(SipServers, OfManyServersTheBestAreTriedAndTheOthersAreNot)
{
    constexpr int kAll = 11, kTried = 8;
    UdpPeer servers[kAll];
    QList<QByteArray> all;
    // The worst is told first.
    for (int i = kAll - 1; i >= 0; --i) {
        all.append("s" + QByteArray::number(i) + ".test");
        names.addService("_sip._udp.phones.test", 10 + i, servers[i].port(), all.last());
    }
    ASSERT_NO_FATAL_FAILURE(begin(all));
    registersAt(0);
    for (int i = 0; i < kTried; ++i) {
        const QByteArray request = servers[i].receive("REGISTER");
        ASSERT_NE(request.toStdString(), "") << i;
        servers[i].reply(request, "503 Service Unavailable");
    }
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_FAILED));
    EXPECT_NE(servers[0].receive("REGISTER").toStdString(), "") << "all begins anew";
    for (int i = kTried; i < kAll; ++i)
        EXPECT_EQ(servers[i].receive("REGISTER", 50).toStdString(), "") << i;
}

TEST_F(SipServers, WhatADomainHasWithoutEndIsNotAllLookedFor)
{
    UdpPeer last;
    for (int i = 0; i < 20; ++i)
        names.addService("_sip._udp.phones.test", 10 + i, last.port(), "s" + QByteArray::number(i) + ".test");
    ASSERT_NO_FATAL_FAILURE(begin({"s19.test"}));
    registersAt(0);
    const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED);
    ASSERT_TRUE(state);
    EXPECT_STREQ(state->szReason, "The server's name is not known");
    EXPECT_EQ(last.receive("REGISTER", 100).toStdString(), "");
}

TEST_F(SipServers, ServersOfOneRankShareTheLines)
{
    UdpPeer one, two;
    names.addService("_sip._udp.phones.test", 10, one.port(), "one.phones.test", 100);
    names.addService("_sip._udp.phones.test", 10, two.port(), "two.phones.test", 100);
    ASSERT_NO_FATAL_FAILURE(begin({"one.phones.test", "two.phones.test"}));
    bool isAtOne = false, isAtTwo = false;
    // As improbable as one in a million that chance alone keeps to one of them.
    for (int i = 0; i < 21 && !(isAtOne && isAtTwo); ++i) {
        registersAt(0);
        ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERING));
        QByteArray request;
        for (int turn = 0; turn < 1000 && request.isEmpty(); ++turn) {
            request = one.receive("REGISTER", 10);
            isAtOne = isAtOne || !request.isEmpty();
            if (request.isEmpty()) {
                request = two.receive("REGISTER", 10);
                isAtTwo = isAtTwo || !request.isEmpty();
            }
        }
        ASSERT_NE(request.toStdString(), "") << i;
    }
    EXPECT_TRUE(isAtOne && isAtTwo) << isAtOne << isAtTwo;
}

// The machine's own list of names has this one wherever the tests run; the name server knows nothing of it.
TEST_F(SipServers, AMachineThatKnowsANameItselfAsksNobody)
{
    UdpPeer server;
    ASSERT_NO_FATAL_FAILURE(begin({"phones.test"}));
    tagSipAccount account = accountAt(0, server.port());
    sipWire::setText(account.szServer, "LocalHost");
    agent.tell(account);
    const QByteArray request = server.receive("REGISTER sip:LocalHost:");
    server.reply(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=3600");
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
}

TEST_F(SipServers, ANameServerThatSaysNothingHidesNoNameThatTheMachineKnows)
{
    UdpPeer silent;
    QTemporaryDir folder;
    QFile settings(folder.filePath("resolv.conf"));
    ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
    settings.write("nameserver 127.0.0.1\nport " + QByteArray::number(silent.port()) + "\n");
    settings.close();
    tagSipSetup setup = AgentProcess::quickSetup();
    sipWire::setText(setup.szNames, settings.fileName().toStdString());
    ASSERT_TRUE(agent.start(setup));
    tagSipAccount account = accountAt(0, 0);
    for (const char* name : {"localhost", "nobody.test"}) {
        sipWire::setText(account.szServer, name);
        agent.tell(account);
        const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED); // nobody is at the usual port
        ASSERT_TRUE(state) << name;
        EXPECT_STREQ(state->szReason, strcmp(name, "localhost") == 0 ? "The server does not answer"
                                                                     : "The name service does not answer");
    }
}

TEST(SipHosts, ANameHasTheAddressesOfItsLines)
{
    const std::string text = "127.0.0.1 localhost\n"
                             "# 192.0.2.9 pbx\n"
                             "192.0.2.1\tpbx.example.org  PBX # the exchange\r\n"
                             "\n   \n 2001:db8::1 pbx\n"
                             "not.an.address pbx\n"
                             "192.0.2.1 pbx\n"
                             "192.0.2.2 pbx2 other pbx\n"
                             "192.0.2.3 pbx";
    using Addresses = std::vector<std::string>;
    EXPECT_EQ(hostsText::addressesOf(text, "pbx"),
              (Addresses{"192.0.2.1", "2001:db8::1", "192.0.2.2", "192.0.2.3"}));
    EXPECT_EQ(hostsText::addressesOf(text, "pbx.example.org."), Addresses{"192.0.2.1"});
    EXPECT_EQ(hostsText::addressesOf(text, "PBX2"), Addresses{"192.0.2.2"});
    for (const char* name : {"example.org", "192.0.2.1", "the", "#", ""})
        EXPECT_EQ(hostsText::addressesOf(text, name), Addresses()) << name;
    EXPECT_EQ(hostsText::addressesOf("", "pbx"), Addresses());
    EXPECT_EQ(hostsText::wholeLines("ab\ncd\nef", 8), "ab\ncd\nef");
    EXPECT_EQ(hostsText::wholeLines("ab\ncd\nef", 7), "ab\ncd\n");
    EXPECT_EQ(hostsText::wholeLines("ab\ncd\nef", 6), "ab\ncd\n");
    EXPECT_EQ(hostsText::wholeLines("ab\ncd\nef", 5), "ab\n");
    EXPECT_EQ(hostsText::wholeLines("ab\ncd\nef", 2), "");
    std::string many;
    for (int i = 1; i < 100; ++i)
        many += "192.0.2." + std::to_string(i) + " pbx\n";
    EXPECT_EQ(hostsText::addressesOf(many, "pbx").size(), size_t(hostsText::MAX_ADDRESSES));
}

TEST_F(SipFailover, FromASilentServerToTheNextOfItsDomain)
{
    begin();
    EXPECT_NE(first.receive("REGISTER").toStdString(), "");
    expectTheSecond();
}

TEST_F(SipFailover, EachServerMayAskForThePassword)
{
    begin();
    first.reply(first.receive("REGISTER"), "401 Unauthorized", kMd5);
    const QByteArray answered = first.receive("REGISTER");
    EXPECT_NE(headerOf(answered, "Authorization").toStdString(), "");
    first.reply(answered, "503 Service Unavailable");
    second.reply(second.receive("REGISTER"), "401 Unauthorized", QByteArray(kMd5).replace("n1", "n2"));
    const QByteArray request = second.receive("REGISTER");
    EXPECT_EQ(paramOf(headerOf(request, "Authorization"), "nonce").toStdString(), "n2");
    second.reply(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=3600");
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
}

TEST_F(SipFailover, FromAServerOutOfServiceToTheNextOfItsDomain)
{
    begin();
    first.reply(first.receive("REGISTER"), "503 Service Unavailable", "Retry-After: 600");
    expectTheSecond();
}

TEST_F(SipFailover, WhenAllFailTheLineTellsOfTheLastAndBeginsAgainAtTheFirst)
{
    begin(AgentProcess::calmSetup());
    first.reply(first.receive("REGISTER"), "503 Service Unavailable", "Retry-After: 600");
    second.reply(second.receive("REGISTER"), "500 Out Of Order");
    const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED);
    ASSERT_TRUE(state);
    EXPECT_EQ(state->nStatus, 500u);
    EXPECT_STREQ(state->szReason, "Out Of Order");
    EXPECT_LT(state->nRetryMs, 600000u) << "it has not asked for patience";
    first.reply(first.receive("REGISTER"), "480 Asleep", "Retry-After: 600");
    second.reply(second.receive("REGISTER"), "503 Service Unavailable", "Retry-After: 700");
    state = agent.nextLine(0, SIP_LINE_FAILED);
    ASSERT_TRUE(state);
    EXPECT_EQ(state->nStatus, 503u);
    EXPECT_EQ(state->nRetryMs, 700000u);
}

TEST_F(SipFailover, WhereTheLastIsSilentTheLineSaysSoWhateverTheFirstHasSaid)
{
    begin();
    first.reply(first.receive("REGISTER"), "503 Service Unavailable");
    EXPECT_NE(second.receive("REGISTER").toStdString(), "");
    const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED);
    ASSERT_TRUE(state);
    EXPECT_EQ(state->nStatus, 0u);
    EXPECT_STREQ(state->szReason, "The server does not answer");
}

TEST_F(SipFailover, ADomainThatIsNotKnownIsToldAndAskedForAgain)
{
    tagSipSetup setup = AgentProcess::quickSetup();
    sipWire::setText(setup.szNames, names.settings().toStdString());
    ASSERT_TRUE(agent.start(setup));
    tagSipAccount account = accountAt(0, 0);
    sipWire::setText(account.szServer, "nobody.test");
    agent.tell(account);
    const tagSipLine* state = agent.nextLine(0, SIP_LINE_FAILED);
    ASSERT_TRUE(state);
    EXPECT_STREQ(state->szReason, "The server's name is not known");
    EXPECT_GT(state->nRetryMs, 0u);
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERING));
}
