// Pictures of a call when the other side does not keep to what was agreed: none come, or too many, too large
// ones, or parts of one without an end.
#include "players/callDesk.h"
#include "tests/calls/pictureStand.h"
#include "tests/calls/rawPictures.h"
#include "tests/kit/plain/measuredMemory.h"
#include "tests/players/wirePort.h"
#include <QElapsedTimer>
#include <random>
#include <unistd.h>

namespace {

class PictureFaults : public PictureStand
{
protected:
    void connectRaw(const tagMediaWant& want = video(false))
    {
        const QByteArray offer = m_other.negotiation->offer(want);
        ASSERT_TRUE(m_other.negotiation->agree(m_raw.negotiation->answer(offer, video())));
        m_other.apply();
    }
    // Whoever did that is seen when he sends as agreed.
    void expectGoodPictures()
    {
        m_raw.sendCamera();
        EXPECT_TRUE(sees(m_other));
    }

    RawPictures m_raw;
};

TEST_F(PictureFaults, WhoSendsNoMoreIsNotSeenUntilHeDoes)
{
    connect(m_one, m_other, video(), video(false));
    ASSERT_TRUE(sees(m_other));
    m_one.session->setCamera(false);
    EXPECT_TRUE(sees(m_other, -1)) << "the last picture stands still";
    setSource(90);
    m_one.session->setCamera(true);
    EXPECT_TRUE(sees(m_other, 90));
}

TEST_F(PictureFaults, WhoHoldsTheCallIsNotSeenAtOnce)
{
    connect(m_one, m_other, video(), video(false));
    ASSERT_TRUE(sees(m_other));
    tagMediaWant held = video();
    held.bHeld = true;
    connect(m_one, m_other, held, video(false));
    EXPECT_TRUE(sees(m_other, -1, pictureSession::QUIET_MS / 2));
}

TEST_F(PictureFaults, OnePictureWithoutAnEndTakesNoMemory)
{
    connectRaw();
    m_raw.sendCamera();
    ASSERT_TRUE(sees(m_other));
    m_raw.endCamera();
    const qint64 before = kit::ownMemoryKiB();
    QElapsedTimer timer;
    timer.start();
    m_raw.send(QByteArray("\x7c\x85", 2) + QByteArray(1200, 'x'), 90000, false);
    qint64 sent = 0;
    for (; sent < (24 << 20); sent += 1202)
        m_raw.sendPaced(QByteArray("\x7c\x05", 2) + QByteArray(1200, 'x'), 90000, false);
    EXPECT_LT(kit::ownMemoryKiB(), before + 12000) << sent;
    EXPECT_LE(m_other.session->counts().nDecoders, 3 + timer.elapsed() / pictureSession::BUILD_MS);
    expectGoodPictures();
}

TEST_F(PictureFaults, ASenderThatIsAnotherOneAllTheTimeGetsFewDecoders)
{
    connectRaw();
    QElapsedTimer timer;
    timer.start();
    for (quint32 i = 0; timer.elapsed() < 2000; ++i) {
        m_raw.setSource(i / 6);
        m_raw.sendPaced(QByteArray("\x67\x42\xe0\x1f", 4), 90000, true);
    }
    EXPECT_GT(m_other.session->counts().nDecoders, 0);
    EXPECT_LE(m_other.session->counts().nDecoders, 3 + timer.elapsed() / pictureSession::BUILD_MS);
    expectGoodPictures();
}

TEST_F(PictureFaults, MorePacketsThanPicturesHaveAreLost)
{
    connectRaw();
    QElapsedTimer timer;
    timer.start();
    while (m_other.session->counts().nTooMany == 0 && timer.elapsed() < 20000) {
        for (int i = 0; i < 100; ++i)
            m_raw.send(QByteArray("\x61\xe0", 2), 90000, true);
    }
    EXPECT_GT(m_other.session->counts().nTooMany, 0);
    expectGoodPictures();
}

TEST_F(PictureFaults, AStrangerIsNeitherSeenNorObeyed)
{
    connectRaw(video());
    const int port = m_raw.negotiation->agreedPicture().nPort;
    const int payload = m_raw.negotiation->agreedPicture().send.nPayload;
    const WirePort stranger("127.0.0.2");
    constexpr int kPackets = 20;
    for (int i = 0; i < kPackets; ++i) {
        unsigned char head[rtpPacket::HEAD_BYTES];
        rtpPacket::write({payload, true, quint16(i), 90000, 0xBAD}, head);
        stranger.say(port, QByteArray(reinterpret_cast<char*>(head), sizeof head) + "\x61\xe0");
    }
    EXPECT_TRUE(waitFor([&] { return m_other.session->counts().nStrangers == kPackets; }))
        << m_other.session->counts().nStrangers;
    // Who wants a new picture, in the oldest way.
    const QByteArray wanted("\x80\xc0\0\1none", 8);
    stranger.say(port + 1, wanted);
    pass(300);
    EXPECT_EQ(m_other.session->counts().nKeyed, 0);
    WirePort().say(port + 1, wanted);
    EXPECT_TRUE(waitFor([&] { return m_other.session->counts().nKeyed == 1; }));
    expectGoodPictures();
}

TEST_F(PictureFaults, WhereAPacketIsLostAWholePictureIsAskedFor)
{
    connectRaw();
    m_raw.sendCamera();
    ASSERT_TRUE(sees(m_other));
    pass(600); // longer than between two questions
    const int asked = m_other.session->counts().nAsked;
    m_raw.send("lost", 90000, false, 127); // its number is missing among the pictures'
    EXPECT_TRUE(waitFor([&] { return m_other.session->counts().nAsked > asked; }));
}

TEST_F(PictureFaults, WhatIsNoPictureIsLeftOutAndTheNextOneIsSeen)
{
    connectRaw();
    const QList<QByteArray> contents = {
        "",
        QByteArray("\0", 1), // a unit of nothing
        "\x67",              // sets without anything
        "\x68",
        "\x65", // a picture without anything
        QByteArray("\x78\xff\xff"
                   "ab",
                   5), // units together whose lengths lie
        QByteArray("\x78\0\0\0\0\0\0", 7),
        QByteArray("\x78\0", 2),
        QByteArray("\x79\0\1\0\2"
                   "ab",
                   7), // kinds that nobody agreed on
        QByteArray("\x7a\0\1\0\2\0\0"
                   "ab",
                   9),
        QByteArray("\x7b\0\1\0\2\0\0\0"
                   "ab",
                   10),
        "\x7c", // parts without a beginning, or a rest
        "\x7c\x85",
        "\x7c\x45"
        "ab",
        "\x7c\xc5"
        "ab",
        QByteArray("\x7d\x85\0\1"
                   "ab",
                   6),
        QByteArray(1400, '\xff'),
    };
    std::minstd_rand chance(7);
    for (int i = 0; i < 4000; ++i) {
        const QByteArray& content = contents[qsizetype(chance() % size_t(contents.size()))];
        const int payload = i % 5 == 0 ? int(chance() % 128) : -1;
        m_raw.send(content, chance() % 9000 * 10, chance() % 3 == 0, payload);
        if (i % 25 == 0)
            pass(10);
    }
    EXPECT_EQ(m_other.seen.nOther, 0);
    EXPECT_GT(m_other.session->counts().nStrangers, 0) << "a payload type of something else";
    expectGoodPictures();
}

TEST_F(PictureFaults, WhoNeverMakesAKeyPictureIsAskedLessAndLess)
{
    connectRaw();
    QElapsedTimer timer;
    timer.start();
    m_raw.sendCamera(RawPictures::NO_KEYS);
    ASSERT_TRUE(waitFor([&] { return m_other.session->counts().nAsked >= 4; }, 20000));
    EXPECT_GE(timer.elapsed(), 500 + 1000 + 2000);
    EXPECT_EQ(m_other.seen.nOther, 0);
    m_raw.endCamera();
    expectGoodPictures();
}

TEST_F(PictureFaults, ALargerPictureIsRefusedBeforeItIsDecoded)
{
    connectRaw();
    m_raw.sendCamera();
    ASSERT_TRUE(sees(m_other));
    const int before = m_other.session->counts().nDecoders;
    // Under another name, which pictures do not use as yet.
    m_raw.sendAside(RawPictures::sequenceSet(512, 512, 1));
    EXPECT_TRUE(waitFor([&] { return m_other.session->counts().bRefused; }, 20000));
    EXPECT_TRUE(sees(m_other, -1)) << "the last picture stands still";
    m_raw.askKey();
    EXPECT_TRUE(sees(m_other));
    EXPECT_TRUE(waitFor([&] { return !m_other.session->counts().bRefused; }, 20000));
    EXPECT_EQ(m_other.session->counts().nDecoders, before);
}

// A unit behind another one without a packet of its own, too.
TEST_F(PictureFaults, WhatTheToolkitDoesNotBearNeverGetsThere)
{
    connectRaw();
    const QByteArray pictures = QByteArray::fromHex("68ce3c80");
    const QByteArray noise = QByteArray::fromHex("658882289c") + QByteArray(120, char(0x9c)) + char(0x9e);
    quint32 time = 90000;
    for (const char* set : {"676e00ffce72c2363f20", // grey, 14 bits
                            "67640033acb8283dd7fff62a400092a7f1373fffffffe00000030031e1108a50", // fields
                            "6742e01fda0020000401e003fe6003fe50", // large, and cut to a little
                            "6f42e01f",                           // of several views
                            "6f64001fab5f5bdb8d1099ec05e8fdc7c1d7347748ab73"}) {
        for (int i = 0; i < 8; ++i) {
            m_raw.sendPaced(QByteArray::fromHex(set), time, i % 2 != 0);
            m_raw.sendPaced(pictures, time, false);
            m_raw.sendPaced(noise, time, true);
            m_raw.sendPaced("\x61\xe0" + QByteArray("\0\0\1", 3) + QByteArray::fromHex(set), time, true);
            time += 3000;
        }
    }
    EXPECT_TRUE(waitFor([&] { return m_other.session->counts().bRefused; }, 20000));
    EXPECT_EQ(m_other.seen.nOther, 0);
    expectGoodPictures();
    EXPECT_TRUE(waitFor([&] { return !m_other.session->counts().bRefused; }, 20000));
}

TEST_F(PictureFaults, WhoHasNoneThatCanBeShownIsNotAskedAgain)
{
    connectRaw();
    quint32 time = 90000;
    const auto announce = [&] {
        m_raw.sendPaced(QByteArray::fromHex("676e00ffce72c2363f20"), time += 3000, true);
        return m_other.session->counts().bRefused;
    };
    ASSERT_TRUE(waitFor(announce, 20000));
    const int asked = m_other.session->counts().nAsked;
    const int decoders = m_other.session->counts().nDecoders;
    // Longer than until the third question of who makes no key pictures.
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 4000) {
        announce();
        pass(20);
    }
    EXPECT_EQ(m_other.session->counts().nAsked, asked);
    EXPECT_EQ(m_other.session->counts().nDecoders, decoders);
    expectGoodPictures();
}

} // namespace
