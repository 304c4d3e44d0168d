// The phone's agent at servers that nobody here wrote, as they stand in large houses: with lamps and
// messages, with a proxy in front, and with a second one for the day on which the first is gone. With HX_LONG
// alone.
#include "tests/kit/plain/processes.h"
#include "tests/pbx/agentStories.h"
#include "tests/pbx/kamailioProcess.h"
#include "tests/pbx/threeAgents.h"
#include "tests/pbx/wirePhone.h"
#include "tests/sip/nameServer.h"
#include <cstdio>
#include <cstring>

namespace {

class AtLargeKamailio : public ThreeAgents
{
protected:
    void SetUp() override
    {
        if (!qEnvironmentVariableIsSet("HX_LONG"))
            GTEST_SKIP() << "several servers: ./test --long";
    }
    void TearDown() override
    {
        if (HasFailure())
            fprintf(stderr, "%s\n", server.output().constData());
    }
    void beginWithPresence()
    {
        server.setPresence();
        ASSERT_NO_FATAL_FAILURE(server.start());
        beginAt(server.port());
    }

    KamailioProcess server;
};

} // namespace

TEST_F(AtLargeKamailio, ALampFollowsTheCallsOfAnother)
{
    beginWithPresence();
    cleo.watch(1, "1002");
    cleo.expectLamp(1, SIP_LAMP_IDLE);
    anna.dial(1, "1002");
    const uint32_t first = ben.arrives();
    ben.ring(first);
    cleo.expectLamp(1, SIP_LAMP_RINGING);
    ben.answer(first);
    anna.expectTalk(1);
    cleo.expectLamp(1, SIP_LAMP_BUSY);
    ben.hangUp(first);
    anna.expectEnd(1, SIP_HUNG_UP, 0);
    cleo.expectLamp(1, SIP_LAMP_IDLE);
    // He calls, and is refused.
    ben.dial(2, "1001");
    const uint32_t second = anna.arrives();
    anna.ring(second);
    cleo.expectLamp(1, SIP_LAMP_BUSY);
    anna.tellStatus(SIP_REFUSE, second, 486);
    ben.expectEnd(2, SIP_REFUSED, 486);
    cleo.expectLamp(1, SIP_LAMP_IDLE);
    // Whoever watches later sees what is, and nothing of it when he watches no more.
    anna.dial(3, "1002");
    const uint32_t third = ben.arrives();
    ben.ring(third);
    cleo.expectLamp(1, SIP_LAMP_RINGING);
    cleo.agent.tell(sipWire::make<tagSipHead>(SIP_UNWATCH, 1));
    cleo.watch(2, "1002");
    cleo.expectLamp(2, SIP_LAMP_RINGING);
    anna.hangUp(3);
    ben.expectEnd(third, SIP_CANCELLED, 0);
    cleo.expectLamp(2, SIP_LAMP_IDLE);
    EXPECT_EQ(cleo.next<tagSipLamp>(SIP_LAMP, 1, 500), nullptr);
}

TEST_F(AtLargeKamailio, ACallThatRingsElsewhereIsTakenByItsLamp)
{
    beginWithPresence();
    storyPickUpByLamp(anna, ben, cleo);
}

TEST_F(AtLargeKamailio, MessagesThatArePublishedAreCounted)
{
    beginWithPresence();
    WirePhone mail("1002", server.port());
    int number = 0;
    for (const char* counts : {"2/5", "0/7"}) {
        const QByteArray body = QByteArray("Messages-Waiting: ") + (*counts == '0' ? "no" : "yes") +
                                "\r\nVoice-Message: " + counts + "\r\n";
        const QByteArray reply = mail.ask(
            "PUBLISH", mail.at("1002"), "mail" + QByteArray::number(++number),
            "Event: message-summary\r\nExpires: 600\r\nContent-Type: application/simple-message-summary",
            body, "<" + mail.at("1002") + ">");
        ASSERT_EQ(statusOf(reply), 200) << reply.constData();
        const tagSipMessages* told = nullptr;
        do {
            told = ben.next<tagSipMessages>(SIP_MESSAGES, 0);
            ASSERT_TRUE(told) << counts;
        } while (!told->bKnown || told->nNew != uint32_t(*counts - '0'));
        EXPECT_EQ(told->nOld, uint32_t(counts[2] - '0'));
    }
}

TEST_F(AtLargeKamailio, AProxyInFrontLeadsLinesAndCallsBothWays)
{
    ASSERT_NO_FATAL_FAILURE(server.start());
    KamailioProcess proxy;
    proxy.setNext(server.port());
    ASSERT_NO_FATAL_FAILURE(proxy.start());
    for (PeerAgent* phone : {&anna, &ben}) {
        const bool isAnna = phone == &anna;
        ASSERT_TRUE(phone->agent.start(AgentProcess::calmSetup()));
        tagSipAccount account = accountAt(0, server.port(), isAnna ? SIP_UDP : SIP_TCP);
        sipWire::setText(account.szUser, isAnna ? "1001" : "1002");
        sipWire::setText(account.szAuthName, "");
        sipWire::setText(account.szPassword, isAnna ? "pw-1001" : "pw-1002");
        sipWire::setText(account.szProxy, "127.0.0.1");
        account.nProxyPort = proxy.port();
        phone->agent.tell(account);
        ASSERT_TRUE(phone->agent.nextLine(0, SIP_LINE_REGISTERED)) << proxy.output().constData();
    }
    EXPECT_TRUE(server.isRegistered("1001"));
    for (uint32_t turn = 1; turn <= 2; ++turn) {
        PeerAgent& caller = turn == 1 ? anna : ben;
        PeerAgent& called = turn == 1 ? ben : anna;
        caller.dial(turn, turn == 1 ? "1002" : "1001");
        const uint32_t id = called.arrives();
        ASSERT_NE(id, 0u) << proxy.output().constData();
        called.answer(id);
        caller.expectTalk(turn);
        called.expectTalk(id);
        // What belongs to the call goes by the proxy, in both directions.
        called.tellMedia(SIP_MEDIA, id, "v=0\r\ns=hold\r\na=sendonly\r\n");
        const auto* offer = caller.next<tagSipMedia>(SIP_OFFER, turn);
        ASSERT_TRUE(offer);
        EXPECT_TRUE(strstr(offer->szSdp, "a=sendonly"));
        caller.tellMedia(SIP_MEDIA, turn, "v=0\r\ns=held\r\na=recvonly\r\n");
        called.expectTalk(id);
        caller.tellMedia(SIP_MEDIA, turn, "v=0\r\ns=back\r\na=sendrecv\r\n");
        ASSERT_TRUE(called.next<tagSipMedia>(SIP_OFFER, id));
        called.tellMedia(SIP_MEDIA, id, "v=0\r\ns=back\r\na=sendrecv\r\n");
        caller.expectTalk(turn);
        called.hangUp(id);
        caller.expectEnd(turn, SIP_HUNG_UP, 0);
    }
    // Without it nobody is reached.
    proxy.end();
    anna.dial(3, "1002");
    EXPECT_TRUE(anna.next<tagSipEnded>(SIP_ENDED, 3));
    EXPECT_TRUE(anna.agent.nextLine(0, SIP_LINE_FAILED));
}

TEST_F(AtLargeKamailio, WhenTheFirstOfTwoServersGoesTheSecondTakesItsPlaceAndGivesItBack)
{
    KamailioProcess second;
    ASSERT_NO_FATAL_FAILURE(server.start());
    ASSERT_NO_FATAL_FAILURE(second.start());
    NameServer names;
    names.addService("_sip._udp.phones.test", 10, server.port(), "one.phones.test");
    names.addService("_sip._udp.phones.test", 20, second.port(), "two.phones.test");
    names.addAddress("one.phones.test", "127.0.0.1");
    names.addAddress("two.phones.test", "127.0.0.1");
    names.start();
    for (PeerAgent* phone : {&anna, &ben}) {
        const char* user = phone == &anna ? "1001" : "1002";
        tagSipSetup setup = AgentProcess::calmSetup();
        sipWire::setText(setup.szNames, names.settings().toStdString());
        ASSERT_TRUE(phone->agent.start(setup));
        tagSipAccount account = accountAt(0, 0);
        sipWire::setText(account.szServer, "phones.test");
        sipWire::setText(account.szUser, user);
        sipWire::setText(account.szAuthName, "");
        sipWire::setText(account.szPassword, std::string("pw-") + user);
        phone->agent.tell(account);
        ASSERT_TRUE(phone->agent.nextLine(0, SIP_LINE_REGISTERED));
    }
    const auto talks = [this](uint32_t id) {
        anna.dial(id, "1002");
        const uint32_t atBen = ben.arrives();
        ben.answer(atBen);
        anna.expectTalk(id);
        anna.hangUp(id);
        ben.expectEnd(atBen, SIP_HUNG_UP, 0);
    };
    talks(1);
    EXPECT_FALSE(second.isRegistered("1002"));

    server.end();
    // One hears of it by its network, the other one by a call.
    ben.agent.tell(sipWire::make<tagSipHead>(SIP_NETWORK, 0));
    ASSERT_TRUE(ben.agent.nextLine(0, SIP_LINE_REGISTERED));
    EXPECT_TRUE(second.isRegistered("1002"));
    EXPECT_FALSE(second.isRegistered("1001"));
    talks(2);
    EXPECT_TRUE(kit::waits([&] { return second.isRegistered("1001"); }, AgentProcess::WAIT_MS));

    ASSERT_NO_FATAL_FAILURE(server.start());
    for (PeerAgent* phone : {&anna, &ben}) {
        phone->agent.tell(sipWire::make<tagSipHead>(SIP_NETWORK, 0));
        ASSERT_TRUE(phone->agent.nextLine(0, SIP_LINE_REGISTERED));
    }
    EXPECT_TRUE(server.isRegistered("1001"));
    EXPECT_TRUE(server.isRegistered("1002"));
    talks(3);
}
