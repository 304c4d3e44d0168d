// Which server of a domain a line goes to.
#include "tests/sip/agentProcess.h"
#include "tests/sip/nameServer.h"
#include "tests/sip/udpPeer.h"
#include <QList>
#include <gtest/gtest.h>

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
