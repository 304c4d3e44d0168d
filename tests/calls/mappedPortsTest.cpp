// Calls through a router that translates addresses, with a server beyond it that says where ports are seen.
#include "players/mappedPorts.h"
#include "tests/calls/callStand.h"
#include "tests/kit/plain/natBox.h"
#include "tests/kit/plain/stunServer.h"
#include <arpa/inet.h>

namespace {

constexpr double kInside = 440, kOutside = 880;

sockaddr_in placeOf(const char* host, uint16_t port)
{
    sockaddr_in place = {};
    place.sin_family = AF_INET;
    place.sin_port = htons(port);
    inet_pton(AF_INET, host, &place.sin_addr);
    return place;
}

class MappedPorts : public CallStand
{
protected:
    // Asked until there is an answer, or there is none.
    static std::unique_ptr<mappedPorts> asked(const char* host, uint16_t port, bool hasLoopback = true)
    {
        auto ports = std::make_unique<mappedPorts>(callSockets::open(), placeOf(host, port), hasLoopback);
        EXPECT_TRUE(waitFor([&] { return ports->step(); }));
        return ports;
    }
};

// A phone behind the router, and one that is not.
class ThroughARouter : public MappedPorts
{
protected:
    void begin(kit::NatBox::KIND kind, bool asks)
    {
        nat = std::make_unique<kit::NatBox>(kind);
        ASSERT_TRUE(nat->isUp());
        {
            const auto stay = nat->outside();
            server = std::make_unique<kit::StunServer>(kit::NatBox::SERVER);
            other = std::make_unique<CallEnd>(peer, 1, callSockets::open(), kit::NatBox::PEER);
        }
        const auto stay = nat->inside();
        if (asks) {
            const auto ports = asked(kit::NatBox::SERVER, server->port(), false);
            mapped = ports->place();
            own = std::make_unique<CallEnd>(phone, 1, ports->take(), kit::NatBox::PHONE);
            own->negotiation->setMapped(mapped);
        } else {
            own = std::make_unique<CallEnd>(phone, 1, callSockets::open(), kit::NatBox::PHONE);
        }
    }
    bool bothHear(int ms = 5000)
    {
        return waitFor([&] { return phone.hears(kOutside) && peer.hears(kInside); }, ms);
    }

    std::unique_ptr<kit::NatBox> nat;
    std::unique_ptr<kit::StunServer> server;
    CallPhone phone{kInside};
    CallPhone peer{kOutside};
    std::unique_ptr<CallEnd> own;
    std::unique_ptr<CallEnd> other;
    tagMappedPlace mapped;
};

#define NEEDS_ROUTER()                                                                                       \
    if (!kit::NatBox::isPossible())                                                                          \
    GTEST_SKIP() << "networks of their own want the superuser"

} // namespace

TEST_F(MappedPorts, BothPortsAreAskedForAndTheServersWordsAreTaken)
{
    kit::StunServer server;
    const auto ports = asked("127.0.0.1", server.port());
    const tagMappedPlace place = ports->place();
    const int port = ports->take()->port();
    EXPECT_EQ(place.address, "127.0.0.1");
    EXPECT_EQ(place.nPort, port);
    EXPECT_EQ(place.rtcpAddress, "127.0.0.1");
    EXPECT_EQ(place.nRtcpPort, port + 1);
    EXPECT_EQ(server.asked(), 2);
}

TEST_F(MappedPorts, WhatIsLostIsAskedAgainAndLiarsAreNotHeard)
{
    kit::StunServer server;
    kit::tagStunWays ways;
    ways.nDeaf = 3;
    ways.bElsewhere = ways.bWrongNumber = ways.bBroken = true;
    ways.bOld = true;
    server.behave(ways);
    const auto ports = asked("127.0.0.1", server.port());
    EXPECT_EQ(ports->place().address, "127.0.0.1");
    EXPECT_EQ(ports->place().nPort, ports->take()->port());
}

TEST_F(MappedPorts, AServerThatIsSilentRefusesOrNamesWhatNobodyReachesIsLeft)
{
    kit::StunServer server;
    kit::tagStunWays silent, refuses, nobody, own;
    silent.bSilent = true;
    refuses.bRefuses = true;
    nobody.address = "240.0.0.1";
    own.address = "203.0.113.5";
    own.nPort = 80;
    for (const kit::tagStunWays& ways : {silent, refuses, nobody, own}) {
        server.behave(ways);
        const auto ports = asked("127.0.0.1", server.port());
        EXPECT_EQ(ports->place().address, "");
        EXPECT_TRUE(ports->take());
    }
    // A device's own loopback interface is nobody's.
    server.behave({});
    EXPECT_EQ(asked("127.0.0.1", server.port(), false)->place().address, "");
}

TEST_F(MappedPorts, OneThatAnswersTooLateIsNotWaitedForAndItsAnswerIsNoSound)
{
    kit::StunServer server;
    kit::tagStunWays late;
    late.nLateMs = 900;
    server.behave(late);
    const auto ports = asked("127.0.0.1", server.port());
    EXPECT_EQ(ports->place().address, "");
    CallPhone anna{kInside}, ben{kOutside};
    CallEnd from(anna, 1, ports->take(), "127.0.0.1"), to(ben, 1);
    connect(from, to);
    EXPECT_TRUE(waitFor([&] { return anna.hears(kOutside) && ben.hears(kInside); }));
    pass(1200);
    EXPECT_TRUE(waitFor([&] { return anna.hears(kOutside) && ben.hears(kInside); }));
}

TEST_F(MappedPorts, DescriptionsNameThePlacesThatAreSeen)
{
    CallPhone anna{kInside};
    CallEnd end(anna, 1);
    end.negotiation->setMapped({"203.0.113.1", 41000, "203.0.113.1", 42000});
    end.negotiation->setPicturePort(36500);
    end.negotiation->setPictureMapped({"203.0.113.2", 43000, "203.0.113.3", 44000});
    tagMediaWant want;
    want.bVideo = true;
    const QByteArray offer = end.negotiation->offer(want);
    EXPECT_TRUE(offer.contains("c=IN IP4 203.0.113.1\r\nt=")) << offer.constData();
    EXPECT_TRUE(offer.contains("m=audio 41000 ")) << offer.constData();
    EXPECT_TRUE(offer.contains("a=rtcp:42000\r\n")) << offer.constData();
    EXPECT_TRUE(offer.contains("m=video 43000 ")) << offer.constData();
    EXPECT_TRUE(offer.contains("\r\nc=IN IP4 203.0.113.2\r\n")) << offer.constData();
    EXPECT_TRUE(offer.contains("a=rtcp:44000 IN IP4 203.0.113.3\r\n")) << offer.constData();
    EXPECT_FALSE(offer.contains("127.0.0.1")) << offer.constData();
    const QByteArray answer = end.negotiation->answer("v=0\r\no=- 1 1 IN IP4 127.0.0.1\r\ns=-\r\nc=IN IP4 "
                                                      "127.0.0.1\r\nt=0 0\r\nm=audio 40000 RTP/AVP 8\r\n",
                                                      {});
    EXPECT_TRUE(answer.contains("c=IN IP4 203.0.113.1\r\n")) << answer.constData();
    EXPECT_TRUE(answer.contains("m=audio 41000 ")) << answer.constData();
}

TEST_F(ThroughARouter, TheSoundGoesBothWaysAsTheServerHasSaid)
{
    NEEDS_ROUTER();
    ASSERT_NO_FATAL_FAILURE(begin(kit::NatBox::KIND::ONE_PORT, true));
    EXPECT_EQ(mapped.address, kit::NatBox::ROUTER);
    EXPECT_NE(mapped.nPort, own->port) << "the router has ports of its own";
    connect(*own, *other);
    EXPECT_TRUE(bothHear());
}

TEST_F(ThroughARouter, ACallFromOutsideIsAnsweredAsTheServerHasSaid)
{
    NEEDS_ROUTER();
    ASSERT_NO_FATAL_FAILURE(begin(kit::NatBox::KIND::ONE_PORT, true));
    connect(*other, *own);
    EXPECT_TRUE(bothHear());
}

TEST_F(ThroughARouter, WithoutAQuestionNobodyIsHeard)
{
    NEEDS_ROUTER();
    ASSERT_NO_FATAL_FAILURE(begin(kit::NatBox::KIND::ONE_PORT, false));
    connect(*own, *other);
    EXPECT_FALSE(bothHear(1500));
    EXPECT_TRUE(peer.hearsNothing());
    EXPECT_TRUE(phone.hearsNothing());
}

TEST_F(ThroughARouter, OneThatGivesEveryoneAnotherPortIsFollowedByWhoHears)
{
    NEEDS_ROUTER();
    ASSERT_NO_FATAL_FAILURE(begin(kit::NatBox::KIND::PORT_FOR_EACH, true));
    connect(*own, *other);
    EXPECT_TRUE(bothHear());
}
