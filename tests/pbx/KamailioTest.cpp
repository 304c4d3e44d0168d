// The phone's agent at a server that nobody here wrote.
#include "tests/kit/plain/ports.h"
#include "tests/pbx/agentStories.h"
#include "tests/pbx/kamailioProcess.h"
#include "tests/sip/certificates.h"
#include "tests/sip/udpPeer.h"

namespace {

class AtKamailio : public ::testing::Test
{
protected:
    KamailioProcess server;
};

} // namespace

TEST_F(AtKamailio, ALineRegistersByEachDigestAndTransportAndUnregisters)
{
    for (const char* algorithm : {"MD5", "SHA-256"}) {
        SCOPED_TRACE(algorithm);
        KamailioProcess each;
        ASSERT_NO_FATAL_FAILURE(each.start(algorithm));
        for (const SIP_TRANSPORT transport : {SIP_UDP, SIP_TCP}) {
            PeerAgent phone;
            ASSERT_TRUE(phone.begin("1001", each.port(), transport));
            EXPECT_TRUE(each.isRegistered("1001"));
            phone.agent.tell(sipWire::make<tagSipHead>(SIP_END, 0));
            EXPECT_TRUE(phone.agent.ends());
            EXPECT_EQ(phone.agent.exitCode(), 0);
            EXPECT_FALSE(each.isRegistered("1001"));
        }
    }
}

TEST_F(AtKamailio, AWrongPasswordIsToldAndNotTriedAgainSoon)
{
    ASSERT_NO_FATAL_FAILURE(server.start());
    PeerAgent phone;
    ASSERT_TRUE(phone.begin("1001", server.port(), SIP_UDP, AgentProcess::quickSetup(), "wrong"));
    const tagSipLine* line = phone.agent.nextLine(0, SIP_LINE_REFUSED);
    ASSERT_TRUE(line);
    EXPECT_EQ(line->nStatus, 401u);
    EXPECT_FALSE(server.isRegistered("1001"));
    EXPECT_TRUE(phone.agent.isQuiet(1000));
}

TEST_F(AtKamailio, TwoPhonesCallEachOtherInBothDirections)
{
    ASSERT_NO_FATAL_FAILURE(server.start());
    PeerAgent anna, ben;
    ASSERT_TRUE(anna.begin("1001", server.port()));
    ASSERT_TRUE(ben.begin("1002", server.port(), SIP_TCP));
    for (uint32_t turn = 1; turn <= 2; ++turn) {
        PeerAgent& caller = turn == 1 ? anna : ben;
        PeerAgent& called = turn == 1 ? ben : anna;
        const uint32_t id = storyTalkAndHold(caller, turn, called);
        // The one who was called hangs up.
        called.hangUp(id);
        caller.expectEnd(turn, SIP_HUNG_UP, 0);
        called.expectEnd(id, SIP_HUNG_UP, 0);
    }
}

TEST_F(AtKamailio, RefusedGivenUpAndUnknown)
{
    ASSERT_NO_FATAL_FAILURE(server.start());
    PeerAgent anna, ben;
    ASSERT_TRUE(anna.begin("1001", server.port()));
    ASSERT_TRUE(ben.begin("1002", server.port()));
    storyWithoutAWord(anna, ben);
}

TEST_F(AtKamailio, OverTlsWithACertificateOfAKnownAuthority)
{
    ASSERT_NO_FATAL_FAILURE(server.start("MD5", true));
    tagSipSetup setup = AgentProcess::quickSetup();
    setup.nSilentMs = 4000;
    setup.nTlsPort = kit::freePort();
    sipWire::setText(setup.szCertificates, server.certificates().toStdString());
    PeerAgent anna, ben;
    ASSERT_TRUE(anna.begin("1001", server.tlsPort(), SIP_TLS, setup));
    EXPECT_TRUE(server.isRegistered("1001"));
    ASSERT_TRUE(ben.begin("1002", server.port()));
    // From the safe line to the other one.
    anna.dial(1, "1002");
    const uint32_t id = ben.arrives();
    ben.answer(id);
    anna.expectTalk(1);
    anna.hangUp(1);
    ben.expectEnd(id, SIP_HUNG_UP, 0);
}

TEST_F(AtKamailio, OverTlsACertificateOfNobodyKnownIsNotTrusted)
{
    ASSERT_NO_FATAL_FAILURE(server.start("MD5", true));
    QTemporaryDir others;
    ASSERT_TRUE(makeCertificates(others.path(), "127.0.0.1"));
    tagSipSetup setup = AgentProcess::quickSetup();
    setup.nSilentMs = 2000;
    setup.nTlsPort = kit::freePort();
    sipWire::setText(setup.szCertificates, others.path().toStdString());
    PeerAgent phone;
    ASSERT_TRUE(phone.begin("1001", server.tlsPort(), SIP_TLS, setup, "pw-1001"));
    EXPECT_TRUE(phone.agent.nextLine(0, SIP_LINE_FAILED));
    EXPECT_FALSE(server.isRegistered("1001"));
}
