// Pictures of a call when the other side does not keep to what was agreed: none come, or too many, too large
// ones, or parts of one without an end.
#include "players/callDesk.h"
#include "players/codedSize.h"
#include "players/pictureContent.h"
#include "tests/calls/pictureStand.h"
#include "tests/calls/rawPictures.h"
#include "tests/kit/plain/processes.h"
#include <QElapsedTimer>
#include <random>
#include <unistd.h>

namespace {

constexpr codedSize::tagBounds kBounds{pictureDecoder::MAX_WIDTH, pictureDecoder::MAX_HEIGHT};
const QByteArray kStart("\0\0\0\1", 4);

bool fits(const QByteArray& picture, PICTURE_CODEC codec = PICTURE_CODEC::H264)
{
    // A copy of its own, so that reading beyond it is seen.
    const std::vector<unsigned char> bytes(picture.begin(), picture.end());
    return codedSize::fits(codec, bytes.data(), bytes.size(), kBounds);
}

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
    const qint64 before = kit::statusKiB(getpid(), "VmRSS");
    QElapsedTimer timer;
    timer.start();
    m_raw.send(QByteArray("\x7c\x85", 2) + QByteArray(1200, 'x'), 90000, false);
    qint64 sent = 0;
    for (; sent < (24 << 20); sent += 1202)
        m_raw.sendPaced(QByteArray("\x7c\x05", 2) + QByteArray(1200, 'x'), 90000, false);
    EXPECT_LT(kit::statusKiB(getpid(), "VmRSS"), before + 12000) << sent;
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

TEST_F(PictureFaults, ALargerPictureFailsTheDecoderBeforeItIsDecoded)
{
    connectRaw();
    m_raw.sendCamera();
    ASSERT_TRUE(sees(m_other));
    const int before = m_other.session->counts().nDecoders;
    // Under another name, which pictures do not use as yet.
    m_raw.sendAside(RawPictures::sequenceSet(512, 512, 1));
    EXPECT_TRUE(waitFor([&] { return m_other.session->counts().nDecoders > before; }, 20000));
    m_raw.askKey();
    EXPECT_TRUE(sees(m_other));
}

bool isWhole(const QByteArray& content, PICTURE_CODEC codec = PICTURE_CODEC::H264)
{
    const std::vector<unsigned char> bytes(content.begin(), content.end());
    return pictureContent::isWhole(codec, bytes.data(), bytes.size());
}

TEST(PictureContent, AUnitSeveralOrAPartOfOneIsWhatItSays)
{
    EXPECT_TRUE(isWhole("\x67"
                        "a"));
    EXPECT_TRUE(isWhole(QByteArray("\x78\0\2\x67"
                                   "a\0\1\x68",
                                   8)));
    EXPECT_TRUE(isWhole("\x7c\x85"
                        "a"));
    EXPECT_TRUE(isWhole("\x7c\x05"
                        "a"));
    const QList<QByteArray> others = {"",
                                      "\x67",
                                      QByteArray("\0a", 2),
                                      "\x7c",
                                      "\x7c\x85",
                                      "\x7c\xc5"
                                      "a",
                                      "\x7c\x9c"
                                      "a",
                                      "\x78",
                                      QByteArray("\x78\0", 2),
                                      QByteArray("\x78\0\0", 3),
                                      QByteArray("\x78\0\3\x67"
                                                 "a",
                                                 5),
                                      QByteArray("\x78\0\2\x67"
                                                 "a\0",
                                                 6),
                                      QByteArray("\x78\0\2\x7c\x85", 5),
                                      QByteArray("\x79\0\1\0\2"
                                                 "ab",
                                                 7),
                                      QByteArray("\x7d\x85\0\1"
                                                 "ab",
                                                 6)};
    for (const QByteArray& other : others)
        EXPECT_FALSE(isWhole(other)) << other.toHex().constData();
}

TEST_F(PictureFaults, APacketOfMoreThanThereIsRoomForIsNone)
{
    const auto decoder = pictureDecoder::make(PICTURE_CODEC::H264, [](const GstVideoFrame&) {});
    ASSERT_TRUE(decoder);
    QByteArray packet(rtpPacket::MAX_BYTES + secureRtp::MAX_MORE, '\x61');
    rtpPacket::write({96, true, 1, 1, 1}, reinterpret_cast<unsigned char*>(packet.data()));
    EXPECT_FALSE(decoder->put(packet));
    EXPECT_TRUE(decoder->put(packet.left(rtpPacket::MAX_BYTES)));
}

TEST(PictureContent, APictureOfVp8StandsBehindItsMarks)
{
    EXPECT_TRUE(isWhole("\x10"
                        "a",
                        PICTURE_CODEC::VP8));
    EXPECT_TRUE(isWhole("\x90\x80\x05"
                        "a",
                        PICTURE_CODEC::VP8));
    EXPECT_TRUE(isWhole("\x90\xf0\x80\x01\x02\x03"
                        "a",
                        PICTURE_CODEC::VP8));
    for (const QByteArray& other : QList<QByteArray>{"", "\x10", "\x90", "\x90\x80", "\x90\x80\x05",
                                                     "\x90\xf0\x80\x01\x02\x03", "\x90\x30\x01"})
        EXPECT_FALSE(isWhole(other, PICTURE_CODEC::VP8)) << other.toHex().constData();
}

TEST(CodedSize, ASequenceMayHaveTheSizeThatThereIsRoomFor)
{
    EXPECT_TRUE(fits(kStart + RawPictures::sequenceSet(120, 68)));
    EXPECT_FALSE(fits(kStart + RawPictures::sequenceSet(121, 68)));
    EXPECT_FALSE(fits(kStart + RawPictures::sequenceSet(120, 69)));
    EXPECT_FALSE(fits(kStart + RawPictures::sequenceSet(512, 512)));
    EXPECT_FALSE(fits(kStart + RawPictures::sequenceSet(0x7fffffff, 0x7fffffff)));
}

TEST(CodedSize, EachSetOfAPictureCounts)
{
    const QByteArray good = kStart + RawPictures::sequenceSet(40, 30);
    const QByteArray bad = kStart.mid(1) + RawPictures::sequenceSet(512, 512, 1);
    EXPECT_TRUE(fits(good + good));
    EXPECT_FALSE(fits(good + bad));
    EXPECT_FALSE(fits(bad + good));
    EXPECT_FALSE(fits(good + kStart + "\x61 abc" + bad + good));
    EXPECT_TRUE(fits(kStart + "\x61 abc"));
    EXPECT_TRUE(fits(""));
    EXPECT_TRUE(fits(QByteArray("\0\0\1", 3)));
}

TEST(CodedSize, WhatCannotBeReadDoesNotFit)
{
    const QByteArray set = RawPictures::sequenceSet(40, 30);
    for (qsizetype size = 1; size < set.size() - 1; ++size)
        EXPECT_FALSE(fits(kStart + set.left(size))) << size;
    EXPECT_FALSE(fits(kStart + QByteArray("\x67\x42\xe0\x1f", 4) + QByteArray(20, 0)));
}

TEST(CodedSize, MoreBitsOrColoursThanEightAndHalfDoNotFit)
{
    EXPECT_TRUE(fits(kStart + RawPictures::highSet(40, 30, 1, 0, true)));
    EXPECT_FALSE(fits(kStart + RawPictures::highSet(40, 30, 3, 0, false)));
    EXPECT_FALSE(fits(kStart + RawPictures::highSet(40, 30, 1, 6, false)));
    EXPECT_FALSE(fits(kStart + RawPictures::highSet(512, 512, 1, 0, true)));
}

TEST(CodedSize, AFrameOfVp8TellsItsSizeWithEachKey)
{
    const auto key = [](int width, int height) {
        QByteArray frame("\x10\0\0\x9d\x01\x2a", 6);
        for (const int side : {width, height})
            frame += QByteArray(1, char(side & 0xff)) + char(side >> 8);
        return frame;
    };
    EXPECT_TRUE(fits(key(1920, 1088), PICTURE_CODEC::VP8));
    EXPECT_TRUE(fits(key(1920 | 0x4000, 1088 | 0x8000), PICTURE_CODEC::VP8)) << "how it is to be shown";
    EXPECT_FALSE(fits(key(1921, 1088), PICTURE_CODEC::VP8));
    EXPECT_FALSE(fits(key(16, 16383), PICTURE_CODEC::VP8));
    EXPECT_FALSE(fits(key(16, 16).left(9), PICTURE_CODEC::VP8));
    EXPECT_TRUE(fits(QByteArray("\x11", 1), PICTURE_CODEC::VP8));
}

} // namespace
