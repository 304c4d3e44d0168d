// Pictures that go from one side to the other over real ports: their order, what is told of them, and what is
// seen at the other end.
#include "players/callDesk.h"
#include "players/packetOrder.h"
#include "players/pictureSource.h"
#include "tests/calls/pictureStand.h"
#include <cstring>

namespace {

class PacketOrder : public testing::Test
{
protected:
    QByteArray taken(qint64 now)
    {
        QByteArray all;
        QByteArray packet;
        bool isLost = false;
        while (m_order.take(now, packet, isLost))
            all += (isLost ? "!" : "") + packet;
        return all;
    }
    void put(int sequence, char packet, qint64 now = 0)
    {
        m_order.put(quint16(sequence), QByteArray(1, packet), now);
    }

    packetOrder m_order;
};

TEST_F(PacketOrder, PacketsComeInOrderAndOnce)
{
    put(65534, 'a');
    put(0, 'c');
    put(65535, 'b');
    put(65535, 'B');
    EXPECT_EQ(taken(0), "abc");
    put(65535, 'b');
    EXPECT_EQ(taken(0), "") << "it was there before";
}

TEST_F(PacketOrder, AMissingOneIsWaitedForAndThenToldOf)
{
    put(1, 'a');
    put(3, 'c');
    EXPECT_EQ(taken(packetOrder::WAIT_MS * 1000 - 1), "a");
    EXPECT_EQ(taken(packetOrder::WAIT_MS * 1000), "!c");
    put(2, 'b');
    EXPECT_EQ(taken(0), "") << "too late";
}

TEST_F(PacketOrder, ASenderThatBeginsAnewIsFollowedAndAFloodIsBounded)
{
    put(1, 'a');
    EXPECT_EQ(taken(0), "a");
    put(20000, 'b');
    EXPECT_EQ(taken(0), "b");
    put(5000, 'c');
    EXPECT_EQ(taken(0), "c");
    put(20000, 'd');
    EXPECT_EQ(taken(0), "d");
    for (int i = 0; i < 2 * packetOrder::MAX_PACKETS; ++i)
        put(20002 + i, 'x');
    EXPECT_EQ(taken(0).size(), packetOrder::MAX_PACKETS + 1);
}

TEST(PictureRate, FallsWithLossAndComesBack)
{
    pictureRate rate;
    rate.setMost(600);
    EXPECT_EQ(rate.kbit(), 600);
    EXPECT_FALSE(rate.told(0));
    EXPECT_FALSE(rate.told(5)) << "neither good nor bad";
    EXPECT_TRUE(rate.told(20));
    EXPECT_EQ(rate.kbit(), 540);
    EXPECT_FALSE(rate.told(5)) << "no more, either";
    for (int i = 0; i < 100; ++i)
        rate.told(100);
    EXPECT_EQ(rate.kbit(), pictureRate::LEAST_KBIT);
    for (int i = 0; i < 100; ++i)
        rate.told(0);
    EXPECT_EQ(rate.kbit(), 600);
    rate.setMost(0);
    EXPECT_EQ(rate.kbit(), pictureRate::USUAL_KBIT);
}

TEST(PictureRate, ThatHasFallenStaysSoWhenTheSameIsAgreedAnew)
{
    pictureRate rate;
    rate.setMost(600);
    ASSERT_TRUE(rate.told(100));
    const int fallen = rate.kbit();
    rate.setMost(600);
    EXPECT_EQ(rate.kbit(), fallen) << "a hold, say";
    rate.setMost(400);
    EXPECT_EQ(rate.kbit(), 400) << "of another one nothing is known";
}

TEST(PictureReports, ANewPictureIsAskedForInBothWaysAndOnlyOfItsSender)
{
    rtcpReports asks(1, "one");
    rtcpReports asked(2, "other");
    rtcpReports third(3, "third");
    asks.took({96, false, 1, 0, 2}, PICTURE_CLOCK, 0, true);
    for (const bool isFir : {false, true}) {
        const QByteArray packet = asks.pictureLost(isFir);
        const auto* bytes = reinterpret_cast<const unsigned char*>(packet.constData());
        asked.read(bytes, int(packet.size()), 0);
        EXPECT_EQ(asked.picturesWanted(), isFir ? 2 : 1);
        third.read(bytes, int(packet.size()), 0);
        EXPECT_EQ(third.picturesWanted(), 0);
        EXPECT_EQ(bytes[packet.size() - (isFir ? 20 : 12)], isFir ? 0x84 : 0x81);
    }
}

class PictureStreams : public PictureStand
{
};

TEST_F(PictureStreams, APictureIsRecognisedAtTheOtherEnd)
{
    connect(m_one, m_other, video(), video(false));
    EXPECT_TRUE(sees(m_other));
    EXPECT_EQ(m_other.seen.nWidth, 640);
    EXPECT_TRUE(waitFor([&] { return m_one.seen.nOwn > 0; }));
    EXPECT_TRUE(m_one.session->sends());
    EXPECT_FALSE(m_other.session->sends());
    EXPECT_EQ(m_one.seen.nOther, 0);
}

TEST_F(PictureStreams, Vp8DoesItToo)
{
    connect(m_one, m_other, video(), video(false), "VP8");
    ASSERT_EQ(m_other.negotiation->agreedPicture().send.eCodec, PICTURE_CODEC::VP8);
    EXPECT_TRUE(sees(m_other));
}

TEST_F(PictureStreams, EncryptedPicturesAreSeenAndNothingElseIsBelieved)
{
    tagMediaWant want = video();
    want.bEncrypt = true;
    connect(m_one, m_other, want, video(false));
    EXPECT_TRUE(sees(m_other));
    // Who has no key.
    const qint64 before = m_other.session->counts().nStrangers;
    std::unique_ptr<callSockets> stranger = callSockets::open();
    unsigned char packet[64] = {};
    rtpPacket::write({m_other.negotiation->agreedPicture().send.nPayload, true, 1, 1, 99}, packet);
    sockaddr_in to = {};
    to.sin_family = AF_INET;
    to.sin_port = htons(uint16_t(m_other.session->port()));
    to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    stranger->send(false, packet, sizeof packet, to);
    EXPECT_TRUE(waitFor([&] { return m_other.session->counts().nStrangers > before; }));
}

TEST_F(PictureStreams, OnePictureASecondIsARateAsAnyOther)
{
    tagMediaWant want = video();
    want.nRate = 1;
    for (const char* source :
         {"videotestsrc is-live=true", "videotestsrc is-live=true ! video/x-raw,framerate=30/1 ! identity"}) {
        qputenv("HX_PICTURE_SOURCE", source);
        PictureSide one;
        PictureSide other;
        connect(one, other, want, video(false));
        EXPECT_EQ(one.negotiation->agreedPicture().bounds.nRate, 1);
        EXPECT_TRUE(waitFor([&] { return one.seen.nOwn > 0 && other.seen.nOther > 0; }, 20000)) << source;
    }
}

TEST_F(PictureStreams, WhoBearsOneBlockIsSentTheSmallestPicture)
{
    qputenv("HX_PICTURE_SOURCE", "videotestsrc is-live=true");
    QByteArray offer = m_other.negotiation->offer(video(false));
    offer.replace("H264", "H26x");
    const QByteArray number = offer.mid(offer.indexOf(" VP8/") - 2, 2);
    ASSERT_TRUE(m_other.negotiation->agree(
        m_one.negotiation->answer(offer + "a=fmtp:" + number + " max-fs=1\r\n", video())));
    m_other.apply();
    m_one.apply();
    EXPECT_TRUE(waitFor([&] { return m_other.seen.nWidth == 176; }, 20000));
}

TEST_F(PictureStreams, ASmallLevelHasSmallPicturesInPacketsOfTheirOwn)
{
    QByteArray offer = m_other.negotiation->offer(video(false));
    offer.replace("profile-level-id=42e01f;packetization-mode=1",
                  "profile-level-id=64001f;packetization-mode=1");
    offer.replace("profile-level-id=42e01f;packetization-mode=0",
                  "profile-level-id=42e014;packetization-mode=0");
    ASSERT_TRUE(m_other.negotiation->agree(m_one.negotiation->answer(offer, video())));
    EXPECT_EQ(m_one.negotiation->agreedPicture().send.nMode, 0);
    m_one.apply();
    m_other.apply();
    EXPECT_TRUE(sees(m_other));
    EXPECT_EQ(m_other.seen.nWidth, 352);
}

TEST_F(PictureStreams, HoldEndsThemAndResumeBringsThemBack)
{
    connect(m_one, m_other, video(), video(false));
    ASSERT_TRUE(sees(m_other));
    tagMediaWant held = video();
    held.bHeld = true;
    connect(m_one, m_other, held, video(false));
    EXPECT_FALSE(m_one.session->sends());
    EXPECT_EQ(m_one.seen.nOwn, 0);
    pass(300);
    const int shown = m_other.seen.nOther;
    pass(500);
    EXPECT_EQ(m_other.seen.nOther, shown);
    setSource(90);
    connect(m_one, m_other, video(), video(false));
    EXPECT_TRUE(sees(m_other, 90));
}

TEST_F(PictureStreams, LossIsMetWithNewPicturesAndALowerRate)
{
    LossyWay way(m_one.session->port(), m_other.session->port(), 25, 20);
    connect(m_one, m_other, video(), video(false), "", &way);
    EXPECT_TRUE(sees(m_other));
    EXPECT_TRUE(waitFor(
        [&] { return m_other.session->counts().nAsked > 1 && m_one.session->counts().nKeyed > 0; }, 20000));
    EXPECT_TRUE(waitFor([&] { return m_one.session->counts().nKbit < pictureRate::USUAL_KBIT; }, 30000));
}

TEST_F(PictureStreams, WithoutACameraNothingGoesOut)
{
    qputenv("HX_PICTURE_SOURCE", "none");
    EXPECT_FALSE(pictureSourceIsThere());
    connect(m_one, m_other, video(), video(false));
    EXPECT_FALSE(m_one.session->sends());
    pass(300);
    EXPECT_EQ(m_other.seen.nOther, 0);
}

} // namespace
