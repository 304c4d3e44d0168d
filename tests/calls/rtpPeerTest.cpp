// Who the other side of a stream is, and where its reports go.
#include "players/rtpPeer.h"
#include <arpa/inet.h>
#include <gtest/gtest.h>

namespace {

constexpr quint32 kSpeaks = 1;
constexpr quint32 kAnother = 2;

TEST(RtpPeer, AFewPacketsOfAnotherSourceTakeNobodysPlace)
{
    rtpPeer peer;
    bool begins = false;
    EXPECT_TRUE(peer.isSource(kSpeaks, begins) && begins);
    for (int round = 0; round < 3; ++round) {
        for (int packet = 0; packet < 4; ++packet)
            EXPECT_FALSE(peer.isSource(kAnother, begins)) << packet;
        EXPECT_TRUE(peer.isSource(kSpeaks, begins));
        EXPECT_FALSE(begins);
    }
    int taken = 0;
    for (int packet = 0; packet < 10; ++packet)
        taken += peer.isSource(kAnother, begins);
    EXPECT_GT(taken, 0) << "whoever goes on has come in the other one's place";
    EXPECT_EQ(peer.source(), kAnother);
}

TEST(RtpPeer, ReportsStayWhereTheStreamHasComeFromWhenTheSameIsAgreedAnew)
{
    tagAgreedStream agreed;
    agreed.peer = "127.0.0.1";
    agreed.nPort = agreed.nRtcpPort = 40000;
    rtpPeer peer;
    peer.agree(agreed);
    sockaddr_in from = peer.rtp();
    from.sin_port = htons(40010);
    for (quint16 n = 0; n < 5; ++n)
        peer.takes(from, {8, false, n, n * 160u, kSpeaks}, n * 20000);
    ASSERT_EQ(ntohs(peer.rtp().sin_port), 40010);
    EXPECT_FALSE(peer.agree(agreed));
    EXPECT_EQ(ntohs(peer.rtp().sin_port), 40010);
    EXPECT_EQ(ntohs(peer.rtcp().sin_port), 40010);
    agreed.nPort = agreed.nRtcpPort = 40020;
    EXPECT_TRUE(peer.agree(agreed));
    EXPECT_EQ(ntohs(peer.rtcp().sin_port), 40020);
}

} // namespace
