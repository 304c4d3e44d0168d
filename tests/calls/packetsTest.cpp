// What goes over the wire of a call, piece by piece: heads, reports, seals and tones.
#include "players/callSockets.h"
#include "players/rtcpReports.h"
#include "players/sealedSend.h"
#include "players/toneEvents.h"
#include "tests/players/wirePort.h"
#include <QtEndian>
#include <cstring>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

QByteArray packetOf(int payload, quint16 number, const QByteArray& content)
{
    unsigned char head[rtpPacket::HEAD_BYTES];
    rtpPacket::write({payload, false, number, number * 160u, 0x12345678}, head);
    return QByteArray(reinterpret_cast<char*>(head), sizeof head) + content;
}

bool readHead(const QByteArray& packet, int& start, int& length)
{
    tagRtpHead head;
    return rtpPacket::read(reinterpret_cast<const unsigned char*>(packet.constData()), int(packet.size()),
                           head, start, length);
}

TEST(RtpPacket, WhatIsWrittenIsRead)
{
    unsigned char packet[rtpPacket::HEAD_BYTES];
    rtpPacket::write({101, true, 65535, 4000000000u, 0xCAFEBABE}, packet);
    tagRtpHead head;
    int start = 0;
    int length = -1;
    ASSERT_TRUE(rtpPacket::read(packet, sizeof packet, head, start, length));
    EXPECT_EQ(head.nPayload, 101);
    EXPECT_TRUE(head.bMarker);
    EXPECT_EQ(head.nSequence, 65535);
    EXPECT_EQ(head.nTime, 4000000000u);
    EXPECT_EQ(head.nSource, 0xCAFEBABE);
    EXPECT_EQ(length, 0);
}

TEST(RtpPacket, LengthsThatLieAreRefused)
{
    int start = 0;
    int length = 0;
    const QByteArray good = packetOf(8, 1, "1234");
    ASSERT_TRUE(readHead(good, start, length));
    EXPECT_EQ(good.mid(start, length), "1234");
    for (const int first : {0x00, 0x40, 0xc0, 0x8f, 0x9f}) { // versions; sources and more than there is
        QByteArray bad = good;
        bad[0] = char(first);
        EXPECT_FALSE(readHead(bad, start, length)) << first;
    }
    QByteArray padded = packetOf(8, 1, QByteArray("12\0\2", 4));
    padded[0] = char(0xa0);
    ASSERT_TRUE(readHead(padded, start, length));
    EXPECT_EQ(padded.mid(start, length), "12");
    for (const int padding : {0, 5, 255}) {
        padded[padded.size() - 1] = char(padding);
        EXPECT_FALSE(readHead(padded, start, length)) << padding;
    }
    QByteArray extended = packetOf(8, 1, QByteArray("\0\0\0\1EXT.ab", 10));
    extended[0] = char(0x90);
    ASSERT_TRUE(readHead(extended, start, length));
    EXPECT_EQ(extended.mid(start, length), "ab");
    EXPECT_FALSE(readHead(good.left(11), start, length));
}

QByteArray sealed(secureRtp& seal, QByteArray packet, bool rtcp)
{
    const int size = int(packet.size());
    packet.resize(size + secureRtp::MAX_MORE);
    packet.resize(seal.seal(reinterpret_cast<unsigned char*>(packet.data()), size, rtcp));
    return packet;
}

QByteArray opened(secureRtp& open, QByteArray packet, bool rtcp)
{
    packet.resize(open.open(reinterpret_cast<unsigned char*>(packet.data()), int(packet.size()), rtcp));
    return packet;
}

TEST(SecureRtp, OnlyWhoHasTheKeyReadsAPacketAndOnce)
{
    for (const CRYPTO_SUITE suite : {CRYPTO_SUITE::AES_SHA1_80, CRYPTO_SUITE::AES_SHA1_32}) {
        const QByteArray key(callCrypto::KEY_BYTES, 'k');
        const auto seal = secureRtp::make(suite, key, secureRtp::WAY::OUT);
        const auto open = secureRtp::make(suite, key, secureRtp::WAY::IN);
        const auto other = secureRtp::make(suite, QByteArray(callCrypto::KEY_BYTES, 'x'), secureRtp::WAY::IN);
        ASSERT_TRUE(seal && open && other);
        const QByteArray plain = packetOf(8, 7, "the sound of a voice");
        const QByteArray closed = sealed(*seal, plain, false);
        EXPECT_EQ(closed.size(), plain.size() + (suite == CRYPTO_SUITE::AES_SHA1_80 ? 10 : 4));
        EXPECT_FALSE(closed.contains("sound"));
        EXPECT_EQ(opened(*other, closed, false), "");
        QByteArray damaged = closed;
        damaged[14] = char(damaged[14] ^ 1);
        EXPECT_EQ(opened(*open, damaged, false), "");
        EXPECT_EQ(opened(*open, closed, false), plain);
        EXPECT_EQ(opened(*open, closed, false), "") << "a second time";
    }
    EXPECT_FALSE(secureRtp::make(CRYPTO_SUITE::AES_SHA1_80, "short", secureRtp::WAY::IN));
}

TEST(SecureRtp, ReportsAreSealedToo)
{
    const QByteArray key(callCrypto::KEY_BYTES, 'k');
    const auto seal = secureRtp::make(CRYPTO_SUITE::AES_SHA1_32, key, secureRtp::WAY::OUT);
    const auto open = secureRtp::make(CRYPTO_SUITE::AES_SHA1_32, key, secureRtp::WAY::IN);
    rtcpReports reports(5, "name-of-this-side");
    const QByteArray plain = reports.report(1);
    const QByteArray closed = sealed(*seal, plain, true);
    EXPECT_FALSE(closed.contains("name-of-this-side"));
    EXPECT_EQ(closed.size(), plain.size() + 4 + 10) << "their seal is the long one, whatever the sound's is";
    EXPECT_EQ(opened(*open, closed, true), plain);
}

TEST(SecureRtp, APacketMayComeAFewSecondsLate)
{
    const QByteArray key(callCrypto::KEY_BYTES, 'k');
    const auto seal = secureRtp::make(CRYPTO_SUITE::AES_SHA1_80, key, secureRtp::WAY::OUT);
    const auto open = secureRtp::make(CRYPTO_SUITE::AES_SHA1_80, key, secureRtp::WAY::IN);
    const QByteArray first = packetOf(8, 0, "the first word");
    const QByteArray late = sealed(*seal, first, false);
    for (quint16 n = 1; n < 200; ++n)
        EXPECT_NE(opened(*open, sealed(*seal, packetOf(8, n, "another word"), false), false), "") << n;
    EXPECT_EQ(opened(*open, late, false), first);
    EXPECT_EQ(opened(*open, late, false), "") << "a second time";
}

// The other side of a stream, on one port of this machine.
class Receiver
{
public:
    Receiver()
    {
        sockaddr_in own = {};
        own.sin_family = AF_INET;
        own.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof own;
        const timeval patience = {0, 300000};
        setsockopt(m_nSocket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        if (bind(m_nSocket, reinterpret_cast<sockaddr*>(&own), size) == 0 &&
            getsockname(m_nSocket, reinterpret_cast<sockaddr*>(&own), &size) == 0)
            m_nPort = ntohs(own.sin_port);
    }
    ~Receiver() { close(m_nSocket); }
    int port() const { return m_nPort; }
    // Empty when nothing comes.
    QByteArray take() const
    {
        char packet[2000];
        const ssize_t size = recv(m_nSocket, packet, sizeof packet, 0);
        return size > 0 ? QByteArray(packet, qsizetype(size)) : QByteArray();
    }

private:
    int m_nSocket = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    int m_nPort = 0;
};

TEST(SealedSend, WhatIsAgreedToBeSealedNeverLeavesInClear)
{
    const QByteArray key(callCrypto::KEY_BYTES, 'k');
    const auto seal = secureRtp::make(CRYPTO_SUITE::AES_SHA1_80, key, secureRtp::WAY::OUT);
    const auto sockets = callSockets::open();
    const Receiver receiver;
    ASSERT_TRUE(seal && sockets && receiver.port() != 0);
    tagAgreedStream agreed;
    agreed.own = agreed.peer = "127.0.0.1";
    agreed.nPort = agreed.nRtcpPort = receiver.port();
    rtpPeer peer;
    peer.agree(agreed);
    rtcpReports reports(5, "name-of-this-side");
    const auto sendBoth = [&](CRYPTO_SUITE suite, secureRtp* with) {
        agreed.eSuite = suite;
        const tagWayOut way = {*sockets, peer, agreed, with};
        unsigned char packet[rtpPacket::MAX_BYTES + secureRtp::MAX_MORE] = {};
        rtpPacket::write({8, false, 1, 160, 5}, packet);
        memcpy(packet + rtpPacket::HEAD_BYTES, "words-of-this-side", 18);
        sealedSend(way, packet, rtpPacket::HEAD_BYTES + 18);
        sealedSendReport(way, reports.report(1));
    };
    sendBoth(CRYPTO_SUITE::NONE, nullptr);
    EXPECT_TRUE(receiver.take().contains("words-of-this-side"));
    EXPECT_TRUE(receiver.take().contains("name-of-this-side"));
    sendBoth(CRYPTO_SUITE::AES_SHA1_80, seal.get());
    const QByteArray sound = receiver.take(), report = receiver.take();
    EXPECT_TRUE(!sound.isEmpty() && !sound.contains("words-of-this-side"));
    EXPECT_TRUE(!report.isEmpty() && !report.contains("name-of-this-side"));
    sendBoth(CRYPTO_SUITE::AES_SHA1_80, nullptr);
    EXPECT_EQ(receiver.take(), "") << "without a key nothing goes out";
}

TEST(Reports, TwoSidesHearOfLossAndOfTheWay)
{
    rtcpReports here(1, "here");
    rtcpReports there(2, "there");
    for (quint16 n = 0; n < 100; ++n) {
        here.sent(n * 160u, 160);
        if (n % 4 != 3)
            there.took({8, false, n, n * 160u, 1}, 8000, n * 20000, true);
    }
    const QByteArray first = here.report(2000000);
    EXPECT_TRUE(
        rtpPacket::isRtcp(reinterpret_cast<const unsigned char*>(first.constData()), int(first.size())));
    EXPECT_EQ(first[1], char(200)) << "of who sends";
    EXPECT_EQ(qFromBigEndian<quint32>(first.constData() + 20), 100u) << "packets";
    EXPECT_EQ(qFromBigEndian<quint32>(first.constData() + 24), 16000u) << "bytes";
    there.read(reinterpret_cast<const unsigned char*>(first.constData()), int(first.size()), 2000000);
    const QByteArray second = there.report(2000000);
    EXPECT_EQ(second[1], char(201)) << "of who only takes";
    here.read(reinterpret_cast<const unsigned char*>(second.constData()), int(second.size()), 2000000);
    EXPECT_EQ(here.reportsRead(), 1);
    EXPECT_NEAR(here.lossThereInPercent(), 24, 2);
    EXPECT_LT(here.roundTripMs(), 1000);
    EXPECT_EQ(there.expected(), 99) << "the last one of four is not known to be missing";
}

TEST(Reports, DamagedOnesEndNothing)
{
    rtcpReports here(1, "here");
    rtcpReports there(2, "there");
    there.took({8, false, 1, 160, 1}, 8000, 20000, true);
    const QByteArray good = there.report(1);
    for (qsizetype size = 0; size <= good.size(); ++size) {
        for (int value = 0; value < 256; value += 15) {
            QByteArray bad = good.left(size);
            for (qsizetype at = 0; at < std::min<qsizetype>(size, 8); ++at) {
                QByteArray worse = bad;
                worse[at] = char(value);
                const std::vector<char> exact(worse.begin(), worse.end()); // what is behind it is nobody's
                here.read(reinterpret_cast<const unsigned char*>(exact.data()), int(exact.size()), 1);
            }
        }
    }
    EXPECT_LE(here.lossThereInPercent(), 100);
}

TEST(CallSockets, APacketIsAsOldAsItHasWaited)
{
    const std::unique_ptr<callSockets> sockets = callSockets::open();
    const WirePort peer;
    peer.say(sockets->port(), "packet");
    usleep(200000);
    unsigned char packet[64];
    sockaddr_in from = {};
    qint64 ageUs = 0;
    ASSERT_EQ(sockets->take(false, packet, sizeof packet, from, ageUs), 6);
    EXPECT_GE(ageUs, 150000) << "whoever takes it late takes it for no jitter of the network";
}

TEST(ToneEvents, AToneIsMarkedOnceGrowsAndEndsThreeTimes)
{
    toneEvents tones;
    EXPECT_FALSE(tones.add('x', 100));
    EXPECT_TRUE(tones.add('#', 100));
    EXPECT_TRUE(tones.add('1', 1));
    int steps = 0;
    QList<toneEvents::tagEvent> all;
    while (all.isEmpty() || (all.last().content[1] & 0x80) == 0) {
        all += tones.next(20, 8000);
        ASSERT_LT(++steps, 20);
    }
    ASSERT_EQ(all.size(), 7);
    for (qsizetype i = 0; i < all.size(); ++i) {
        EXPECT_EQ(all[i].content[0], 11);
        EXPECT_EQ(all[i].bFirst, i == 0);
        EXPECT_EQ((all[i].content[1] & 0x80) != 0, i >= 4);
        EXPECT_EQ(qFromBigEndian<quint16>(all[i].content + 2), std::min<int>(int(i) + 1, 5) * 160);
    }
    int pause = 0;
    QList<toneEvents::tagEvent> next;
    while (next.isEmpty() && ++pause < 20)
        next = tones.next(20, 8000);
    EXPECT_GE(pause, 3);
    EXPECT_EQ(next.first().content[0], 1);
    EXPECT_TRUE(next.first().bFirst);
    next = tones.next(20, 8000);
    EXPECT_EQ(next.size(), 3) << "none is shorter than 40 ms";
}

TEST(ToneEvents, OneThatIsLongerThanItsLengthCanSayStaysAtTheLongest)
{
    toneEvents tones;
    ASSERT_TRUE(tones.add('5', toneEvents::MOST_MS));
    int longest = 0;
    for (bool ends = false; !ends;) {
        for (const toneEvents::tagEvent& event : tones.next(20, 48000)) {
            const int length = qFromBigEndian<quint16>(event.content + 2);
            EXPECT_GE(length, longest);
            longest = length;
            ends = (event.content[1] & 0x80) != 0;
        }
    }
    EXPECT_EQ(longest, 0xFFFF);
}

TEST(ToneEvents, WhatWaitsIsBounded)
{
    toneEvents tones;
    int taken = 0;
    while (taken < 1000 && tones.add('5', 100))
        ++taken;
    EXPECT_EQ(taken, toneEvents::MAX_WAITING);
    tones.clear();
    EXPECT_FALSE(tones.isBusy());
}

} // namespace
