// What becomes of packets before a decoder sees any of it.
#include "players/h264Pictures.h"
#include "players/rtpPacket.h"
#include "players/sequenceParameters.h"
#include "players/vp8Pictures.h"
#include "tests/calls/rawPictures.h"
#include <gtest/gtest.h>

namespace {

const QByteArray kStart("\0\0\0\1", 4);
const QByteArray kSet = RawPictures::sequenceSet(40, 30);
const QByteArray kPictureSet = QByteArray::fromHex("68ce3c80");
const QByteArray kKey = QByteArray::fromHex("658882289c9c9c9e");
const QByteArray kNext = QByteArray::fromHex("619a228025b0");
constexpr int kPart = 1200; // bytes in a packet

std::optional<sequenceParameters::tagPictures> readSet(const QByteArray& unit)
{
    // A copy of its own, so that reading beyond it is seen.
    const std::vector<unsigned char> bytes(unit.begin() + 1, unit.end());
    return sequenceParameters::read(bytes.data(), bytes.size());
}

// As its first number, which says how many bits it has.
QByteArray sliceAt(int block)
{
    int length = 0;
    while ((block + 1) >> (length + 1))
        ++length;
    const int bits = (block + 1) << (15 - 2 * length);
    return QByteArray(1, '\x61') + char(bits >> 8) + char(bits & 0xff);
}

class CodedPictures : public testing::Test
{
protected:
    CodedPictures() : m_pictures(std::make_unique<h264Pictures>(handler())) {}
    codedPictures::CodedHandler handler()
    {
        return [this](const QByteArray& picture, bool isKey) {
            m_coded.append(picture);
            m_keys.append(isKey);
        };
    }
    bool put(const QByteArray& content, bool marker = false)
    {
        QByteArray packet(rtpPacket::HEAD_BYTES, 0);
        rtpPacket::write({97, marker, m_nSequence++, m_nTime, 4711},
                         reinterpret_cast<unsigned char*>(packet.data()));
        return m_pictures->put(packet + content);
    }
    // A unit in parts; ends: the last of them says so.
    bool putInParts(const QByteArray& unit, bool ends = true)
    {
        bool isWhole = true;
        for (qsizetype at = 1; at < unit.size(); at += kPart) {
            const bool isLast = at + kPart >= unit.size();
            const int head = (unit[0] & 0x1f) | (at == 1 ? 0x80 : 0) | (isLast && ends ? 0x40 : 0);
            isWhole = put(QByteArray(1, '\x7c') + char(head) + unit.mid(at, kPart)) && isWhole;
        }
        return isWhole;
    }
    void begin()
    {
        EXPECT_TRUE(put(kSet));
        EXPECT_TRUE(put(kPictureSet));
        EXPECT_TRUE(put(kKey, true));
        ASSERT_EQ(m_coded, QList<QByteArray>{kStart + kSet + kStart + kPictureSet + kStart + kKey});
        m_nTime += 3000;
    }

    QList<QByteArray> m_coded;
    QList<bool> m_keys;
    quint16 m_nSequence = 65530;
    quint32 m_nTime = 5000;
    std::unique_ptr<codedPictures> m_pictures;
};

class CodedVp8 : public CodedPictures
{
protected:
    CodedVp8() { m_pictures = std::make_unique<vp8Pictures>(handler()); }
    static QByteArray key(int width, int height)
    {
        QByteArray frame("\x10\0\0\x9d\x01\x2a", 6);
        for (const int side : {width, height})
            frame += QByteArray(1, char(side & 0xff)) + char(side >> 8);
        return frame + "rest";
    }
    bool putKey(int width, int height) { return put('\x10' + key(width, height), true); }
};

TEST(SequenceParameters, TellTheSizeThatIsCoded)
{
    const auto pictures = readSet(RawPictures::sequenceSet(120, 68));
    ASSERT_TRUE(pictures);
    EXPECT_EQ(pictures->nWidth, 1920);
    EXPECT_EQ(pictures->nHeight, 1088);
    EXPECT_EQ(pictures->nKept, 1);
    const auto cut = readSet(QByteArray::fromHex("6742e01fda0020000401e003fe6003fe50"));
    ASSERT_TRUE(cut);
    EXPECT_EQ(cut->nWidth, 8192) << "16 of them are shown";
    EXPECT_FALSE(readSet(RawPictures::sequenceSet(0x7fffffff, 0x7fffffff)));
    const auto padded = readSet(QByteArray::fromHex("6742e01fda0280f7000200000300100034"));
    ASSERT_TRUE(padded) << "a byte of it only keeps start codes out";
    EXPECT_EQ(padded->nWidth, 640);
}

TEST(SequenceParameters, WhatEndsEarlyOrIsTooLongIsNone)
{
    const QByteArray set = RawPictures::sequenceSet(40, 30);
    for (qsizetype size = 1; size < set.size() - 1; ++size)
        EXPECT_FALSE(readSet(set.left(size))) << size;
    EXPECT_FALSE(readSet(QByteArray("\x67\x42\xe0\x1f", 4) + QByteArray(20, 0)));
    EXPECT_TRUE(readSet(set + QByteArray(sequenceParameters::MAX_BYTES - set.size() + 1, 'x')));
    EXPECT_FALSE(readSet(set + QByteArray(sequenceParameters::MAX_BYTES - set.size() + 2, 'x')));
}

TEST(SequenceParameters, MoreBitsOtherColoursAndFieldsAreRefused)
{
    EXPECT_TRUE(readSet(RawPictures::highSet(40, 30, 1, 0, true)));
    EXPECT_FALSE(readSet(RawPictures::highSet(40, 30, 0, 0, false))) << "grey";
    EXPECT_FALSE(readSet(RawPictures::highSet(40, 30, 3, 0, false)));
    EXPECT_FALSE(readSet(RawPictures::highSet(40, 30, 1, 6, false)));
    EXPECT_FALSE(readSet(QByteArray::fromHex("676e00ffce72c2363f20")));
    EXPECT_FALSE(
        readSet(QByteArray::fromHex("67640033acb8283dd7fff62a400092a7f1373fffffffe00000030031e1108a50")))
        << "fields";
}

TEST_F(CodedPictures, ASequenceMayHaveTheSizeThatThereIsRoomFor)
{
    for (const QByteArray& set :
         {RawPictures::sequenceSet(120, 68), RawPictures::sequenceSet(121, 68),
          RawPictures::sequenceSet(120, 69), QByteArray::fromHex("6742e01fda0020000401e003fe6003fe50")}) {
        const bool fits = set == RawPictures::sequenceSet(120, 68);
        EXPECT_EQ(put(set), fits);
        EXPECT_EQ(m_pictures->isRefused(), !fits);
        EXPECT_EQ(put(kKey, true), fits);
        EXPECT_EQ(m_coded.size(), 1);
    }
    m_coded.clear();
    begin();
    EXPECT_FALSE(m_pictures->isRefused());
}

TEST_F(CodedPictures, OnlyUnitsThatACallNeedsGoOn)
{
    begin();
    for (int kind = 0; kind < 32; ++kind) {
        if (kind == 1 || kind == 5 || kind == 7 || kind == 8)
            continue;
        put(QByteArray(1, char(0x60 | kind)) + kSet.mid(1));
        put(QByteArray("\x78\0", 2) + char(kSet.size()) + char(0x60 | kind) + kSet.mid(1));
        put(QByteArray("\x7c") + char(0xc0 | kind) + kSet.mid(1));
    }
    put(kNext, true);
    EXPECT_EQ(m_coded.mid(1), QList<QByteArray>{kStart + kNext});
    EXPECT_EQ(m_keys, (QList<bool>{true, false}));
}

TEST_F(CodedPictures, AUnitHidesNoOther)
{
    begin();
    const QByteArray hidden = QByteArray::fromHex("6f64001fab5f5b");
    for (const char last : {0, 1, 2}) {
        EXPECT_FALSE(put(kNext + QByteArray("\0\0", 2) + last + hidden));
        EXPECT_FALSE(put(kPictureSet + QByteArray("\0\0", 2) + last + hidden));
    }
    EXPECT_TRUE(put(kNext + QByteArray("\0\0\3\1", 4) + QByteArray(5, 0), true));
    EXPECT_EQ(m_coded.mid(1), QList<QByteArray>{kStart + kNext + QByteArray("\0\0\3\1", 4)});
}

TEST_F(CodedPictures, UnitsComeTogetherAndInParts)
{
    const auto together = [](const QByteArray& unit) { return QByteArray(1, 0) + char(unit.size()) + unit; };
    EXPECT_TRUE(put('\x78' + together(kSet) + together(kPictureSet)));
    const QByteArray large = kKey + QByteArray(5000, 'x');
    EXPECT_TRUE(putInParts(large));
    m_nTime += 3000;
    EXPECT_TRUE(put(kNext));
    ASSERT_EQ(m_coded.size(), 1) << "another time is another picture";
    EXPECT_EQ(m_coded[0], kStart + kSet + kStart + kPictureSet + kStart + large);
    put(QByteArray("\x78\xff\xff"
                   "ab",
                   5),
        true);
    EXPECT_EQ(m_coded.size(), 2);
}

TEST_F(CodedPictures, PartsWithoutAnEndOrABeginningAreLeftOut)
{
    begin();
    EXPECT_TRUE(putInParts(kNext + QByteArray(5000, 'x'), false));
    EXPECT_TRUE(put(kNext, true));
    EXPECT_EQ(m_coded.mid(1), QList<QByteArray>{kStart + kNext});
    m_nTime += 3000;
    EXPECT_TRUE(put(QByteArray("\x7c\x81", 2) + kNext.mid(1)));
    ++m_nSequence;
    EXPECT_FALSE(put(QByteArray("\x7c\x41", 2) + "rest"));
    EXPECT_TRUE(put(kNext, true));
    EXPECT_EQ(m_coded.mid(2), QList<QByteArray>{kStart + kNext});
}

TEST_F(CodedPictures, APictureHasABound)
{
    begin();
    const QByteArray parts = kNext + QByteArray(codedPictures::MAX_PICTURE, 'x');
    EXPECT_FALSE(putInParts(parts)) << "in one unit";
    m_nTime += 3000;
    for (int block = 0; block < 100; ++block)
        putInParts(sliceAt(block) + QByteArray(11000, 'x'));
    put(kNext, true);
    for (const QByteArray& coded : m_coded)
        EXPECT_LE(coded.size(), int(codedPictures::MAX_PICTURE));
    EXPECT_LE(m_coded.size(), 2) << "neither of the two";
    m_coded.clear();
    m_nTime += 3000;
    for (int i = 0; i < 2000; ++i)
        put(QByteArray::fromHex("68ce") + QByteArray(1000, 'x'));
    EXPECT_FALSE(put(kPictureSet)) << "sets";
    EXPECT_FALSE(put(kKey, true));
    EXPECT_TRUE(m_coded.isEmpty());
    m_nTime += 3000;
    EXPECT_TRUE(put(kKey, true));
    EXPECT_EQ(m_coded.size(), 1);
}

TEST_F(CodedPictures, ASetHasABoundAndAName)
{
    begin();
    EXPECT_TRUE(put(kPictureSet + QByteArray(h264Pictures::MAX_SET - kPictureSet.size(), 'x')));
    EXPECT_FALSE(putInParts(kPictureSet + QByteArray(200000, 'x')));
    EXPECT_FALSE(putInParts(kSet + QByteArray(h264Pictures::MAX_SET, 'x')));
    EXPECT_TRUE(put(kSet));
    EXPECT_TRUE(put(QByteArray::fromHex("6804138f20"))) << "the name 31";
    EXPECT_FALSE(put(QByteArray::fromHex("6804338f20"))) << "the name 32";
}

// A decoder would work at each of them.
TEST_F(CodedPictures, SlicesThatLieUponEachOtherAreSeveralPicturesOrNone)
{
    begin();
    EXPECT_TRUE(put(kNext));
    EXPECT_TRUE(put(kNext));
    EXPECT_EQ(m_coded.size(), 2);
    EXPECT_TRUE(put(QByteArray::fromHex("614a22"))) << "block 1";
    EXPECT_FALSE(put(QByteArray::fromHex("614a22")));
    EXPECT_TRUE(put(QByteArray::fromHex("616a22"))) << "block 2";
    EXPECT_FALSE(put(QByteArray::fromHex("614a22"), true));
    EXPECT_EQ(m_coded.mid(2), QList<QByteArray>{kStart + kNext + kStart + QByteArray::fromHex("614a22") +
                                                kStart + QByteArray::fromHex("616a22")});
}

TEST_F(CodedPictures, AnotherTimeIsAnotherPictureThoughItsBeginningIsLost)
{
    begin();
    EXPECT_TRUE(put(kNext));
    m_nTime += 3000;
    put(QByteArray::fromHex("614a22"));
    EXPECT_EQ(m_coded.mid(1), QList<QByteArray>{kStart + kNext});
}

TEST_F(CodedVp8, AKeyPictureTellsItsSize)
{
    EXPECT_TRUE(putKey(1920, 1088));
    EXPECT_TRUE(putKey(1920 | 0x4000, 1088 | 0x8000)) << "how it is to be shown";
    EXPECT_EQ(m_keys, (QList<bool>{true, true}));
    for (const auto& [width, height] : {std::pair(1921, 1088), std::pair(16, 16383), std::pair(0, 16)}) {
        EXPECT_FALSE(putKey(width, height));
        EXPECT_TRUE(m_pictures->isRefused());
        EXPECT_FALSE(put(QByteArray("\x10\x11 abc"), true)) << "what follows it";
    }
    EXPECT_FALSE(put('\x10' + key(16, 16).left(9), true));
    EXPECT_EQ(m_coded.size(), 2);
    EXPECT_TRUE(putKey(320, 240));
    EXPECT_TRUE(put(QByteArray("\x10\x11 abc"), true));
    EXPECT_EQ(m_coded.mid(3), QList<QByteArray>{"\x11 abc"});
    EXPECT_FALSE(m_keys.last());
}

TEST_F(CodedVp8, APictureHasAllItsPartsAndABound)
{
    EXPECT_TRUE(put('\x10' + key(320, 240)));
    EXPECT_TRUE(put(QByteArray("\0more", 5), true));
    EXPECT_EQ(m_coded, QList<QByteArray>{key(320, 240) + "more"});
    m_nTime += 3000;
    EXPECT_TRUE(put("\x10\x11 ab"));
    ++m_nSequence;
    EXPECT_FALSE(put(QByteArray("\0more", 5), true)) << "one is missing";
    EXPECT_TRUE(put("\x10\x11 ab"));
    bool isWhole = true;
    for (int sent = 0; sent <= codedPictures::MAX_PICTURE; sent += kPart)
        isWhole = put(QByteArray(1, 0) + QByteArray(kPart, 'x')) && isWhole;
    EXPECT_FALSE(isWhole);
    EXPECT_FALSE(put(QByteArray("\0more", 5), true));
    EXPECT_EQ(m_coded.size(), 1);
}

TEST_F(CodedVp8, DescriptionsOfAnyLengthAreLeftAway)
{
    for (const QByteArray& description :
         {QByteArray("\x10", 1), QByteArray("\x90\x80\x05", 3), QByteArray("\x90\x80\x85\x05", 4),
          QByteArray("\x90\x40\x05", 3), QByteArray("\x90\x30\x05", 3),
          QByteArray("\x90\xf0\x85\x05\x06\x07", 6)})
        EXPECT_TRUE(put(description + key(320, 240), true)) << description.toHex().constData();
    EXPECT_EQ(m_coded, QList<QByteArray>(6, key(320, 240)));
    for (const QByteArray& description : {QByteArray("\x10", 1), QByteArray("\x90", 1),
                                          QByteArray("\x90\x80", 2), QByteArray("\x90\xf0\x85\x05", 4)})
        EXPECT_FALSE(put(description, true)) << description.toHex().constData();
    EXPECT_EQ(m_coded.size(), 6);
}

} // namespace
