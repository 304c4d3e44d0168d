// What goes out where nothing else does, so that a router does not forget the ports of a call.
#include "players/pictureSession.h"
#include "sip/stunMessage.h"
#include "tests/calls/callStand.h"
#include "tests/players/pictureSide.h"
#include "tests/players/wirePort.h"

namespace {

constexpr qint64 kSecondUs = 1000000;
constexpr int kSeconds = 61;

class WayKeeper : public CallStand
{
protected:
    // The sound of a call with the two ports; both on one: with the first alone.
    void agree(bool sends, bool both = false, const QByteArray& peer = "127.0.0.1")
    {
        tagAgreedSound agreed;
        agreed.bSound = true;
        agreed.bSends = sends;
        agreed.send = {SOUND_CODEC::PCMA, 8, 8000};
        agreed.take = {agreed.send};
        agreed.own = "127.0.0.1";
        agreed.peer = peer;
        agreed.nPort = m_rtp.port();
        agreed.nRtcpPort = both ? m_rtp.port() : m_rtcp.port();
        callSession::tagParts parts = callSession::build(agreed);
        m_session.agree(agreed, parts);
    }
    // A minute goes by.
    void pass(bool talks = false)
    {
        const short silence[callSession::FRAME_SAMPLES] = {};
        for (int second = 0; second < kSeconds; ++second) {
            if (talks)
                m_session.send(silence);
            m_session.receive(m_nNowUs);
            m_nNowUs += kSecondUs;
        }
    }
    // What has come to a port.
    static int countOf(const WirePort& port, bool (*is)(const QByteArray& packet))
    {
        int count = 0;
        for (QByteArray packet = port.nextHere(); !packet.isEmpty(); packet = port.nextHere())
            count += is(packet) ? 1 : 0;
        return count;
    }
    static bool isSign(const QByteArray& packet) { return packet.startsWith(QByteArray("\0\x11", 2)); }
    static bool isReport(const QByteArray& packet)
    {
        return rtpPacket::isRtcp(reinterpret_cast<const unsigned char*>(packet.constData()),
                                 int(packet.size()));
    }
    static bool isAnything(const QByteArray&) { return true; }

    WirePort m_rtp;
    WirePort m_rtcp;
    callSession m_session{callSockets::open()};
    qint64 m_nNowUs = 1000 * kSecondUs;
};

TEST_F(WayKeeper, InAHoldASignGoesOutEveryFifteenSecondsBesideTheReports)
{
    agree(true);
    pass(true);
    EXPECT_EQ(countOf(m_rtp, isSign), 0) << "sound goes out";
    countOf(m_rtcp, isAnything);
    agree(false);
    pass();
    EXPECT_EQ(countOf(m_rtp, isSign), 4);
    EXPECT_GT(countOf(m_rtcp, isReport), 4) << "of the other port";
    agree(true);
    pass(true);
    EXPECT_EQ(countOf(m_rtp, isSign), 0);
}

TEST_F(WayKeeper, NothingButTheSignGoesToTheStreamItself)
{
    agree(false);
    pass();
    QByteArray sign = m_rtp.nextHere();
    ASSERT_EQ(sign.size(), qsizetype(stunMessage::REQUEST_BYTES));
    EXPECT_EQ(sign.left(8).toHex(), "001100082112a442");
    const QByteArray next = m_rtp.nextHere();
    EXPECT_TRUE(isSign(next));
    EXPECT_NE(sign.mid(8, 12).toHex(), next.mid(8, 12).toHex()) << "one number for two";
    EXPECT_EQ(countOf(m_rtp, isReport), 0);
}

TEST_F(WayKeeper, WhereBothComeOnOnePortTheReportsDoIt)
{
    agree(false, true);
    pass();
    EXPECT_EQ(countOf(m_rtp, [](const QByteArray& packet) { return !isReport(packet); }), 0);
    pass();
    EXPECT_GT(countOf(m_rtp, isReport), 4);
}

TEST_F(WayKeeper, WhoIsNowhereIsSentNothing)
{
    agree(false, false, "0.0.0.0");
    pass();
    EXPECT_EQ(countOf(m_rtp, isSign), 0) << "the system takes it for this machine";
}

TEST_F(WayKeeper, OfPicturesThatOnlyComeTheWayIsOpenedAtOnce)
{
    PictureSide side;
    tagAgreedPicture agreed;
    agreed.bPicture = agreed.bReceives = true;
    agreed.own = agreed.peer = "127.0.0.1";
    agreed.nPort = m_rtp.port();
    agreed.nRtcpPort = m_rtcp.port();
    side.session->agree(agreed);
    EXPECT_TRUE(isSign(m_rtp.next()));
}

TEST_F(WayKeeper, ASignOfTheOtherSideIsNoPartOfTheCallAndNotAnswered)
{
    agree(true);
    pass(true);
    countOf(m_rtp, isAnything);
    stunMessage::Id id = {};
    const stunMessage::Request sign = stunMessage::indication(id);
    m_rtp.say(m_session.port(), QByteArray(reinterpret_cast<const char*>(sign.data()), int(sign.size())));
    ASSERT_TRUE(waitFor([&] {
        m_session.receive(m_nNowUs);
        return m_session.strangers() == 1;
    }));
    EXPECT_EQ(m_session.reports().received(), 0);
    EXPECT_EQ(countOf(m_rtp, isAnything), 0);
}

} // namespace
