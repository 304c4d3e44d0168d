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
    // With names that are all at this machine.
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
    EXPECT_EQ(hostsText::addressesOf(text, "pbx"), (Addresses{"192.0.2.1", "2001:db8::1", "192.0.2.2"}));
    EXPECT_EQ(hostsText::addressesOf(text, "pbx.example.org."), Addresses{"192.0.2.1"});
    EXPECT_EQ(hostsText::addressesOf(text, "PBX2"), Addresses{"192.0.2.2"});
    for (const char* name : {"example.org", "192.0.2.1", "the", "#", ""})
        EXPECT_EQ(hostsText::addressesOf(text, name), Addresses()) << name;
    EXPECT_EQ(hostsText::addressesOf("", "pbx"), Addresses());
    std::string many;
    for (int i = 1; i < 100; ++i)
        many += "192.0.2." + std::to_string(i) + " pbx\n";
    EXPECT_EQ(hostsText::addressesOf(many, "pbx").size(), size_t(hostsText::MAX_ADDRESSES));
}
