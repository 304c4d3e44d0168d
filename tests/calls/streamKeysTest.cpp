// Keys of a stream that are agreed upon, left and agreed upon again: nothing is sealed twice alike.
#include "players/streamKeys.h"
#include "players/rtpPacket.h"
#include <cstring>
#include <gtest/gtest.h>
#include <set>

namespace {

tagAgreedStream agreed(CRYPTO_SUITE suite, char key)
{
    tagAgreedStream stream;
    stream.eSuite = suite;
    stream.sendKey = stream.takeKey = QByteArray(callCrypto::KEY_BYTES, key);
    return stream;
}

const tagAgreedStream kLong = agreed(CRYPTO_SUITE::AES_SHA1_80, 'a');
const tagAgreedStream kShort = agreed(CRYPTO_SUITE::AES_SHA1_32, 'b');

class StreamKeys : public testing::Test
{
protected:
    // A report of nothing but zeros, as it goes out; empty when it cannot be sealed.
    QByteArray report()
    {
        unsigned char packet[28 + secureRtp::MAX_MORE] = {0x80, 200, 0, 6, 1, 2, 3, 4};
        const int size = m_keys.sealer() ? m_keys.sealer()->seal(packet, 28, true) : 0;
        return QByteArray(reinterpret_cast<const char*>(packet), size);
    }

    streamKeys m_keys;
    std::set<QByteArray> m_seen;
};

TEST_F(StreamKeys, AKeyThatComesBackGoesOnWhereItWas)
{
    const tagAgreedStream none;
    for (const tagAgreedStream& each : {kLong, kShort, kLong, none, kLong, none, kShort, kLong, kShort}) {
        m_keys.agree(each);
        EXPECT_EQ(m_keys.sealer() != nullptr, each.eSuite != CRYPTO_SUITE::NONE);
        for (int i = 0; m_keys.sealer() && i < 3; ++i)
            EXPECT_TRUE(m_seen.insert(report()).second) << "two reports are sealed alike";
    }
    EXPECT_EQ(m_seen.count(QByteArray()), 0u);
}

TEST_F(StreamKeys, WhatAKeyHasOpenedIsNotOpenedAgainWhenItComesBack)
{
    streamKeys other;
    other.agree(kLong);
    const auto next = [&](quint16 number) {
        QByteArray packet(rtpPacket::HEAD_BYTES + 20 + secureRtp::MAX_MORE, 0);
        auto* bytes = reinterpret_cast<unsigned char*>(packet.data());
        rtpPacket::write({8, false, number, number * 160u, 5}, bytes);
        packet.resize(other.sealer()->seal(bytes, rtpPacket::HEAD_BYTES + 20, false));
        return packet;
    };
    const auto opens = [&](QByteArray packet) {
        return m_keys.open(reinterpret_cast<unsigned char*>(packet.data()), int(packet.size()), false) > 0;
    };
    const QByteArray first = next(1);
    m_keys.agree(kLong);
    EXPECT_TRUE(opens(first));
    m_keys.agree(kShort);
    EXPECT_FALSE(opens(next(2))) << "it is another key";
    m_keys.agree(kLong);
    EXPECT_FALSE(opens(first)) << "anybody may have kept it";
    EXPECT_TRUE(opens(next(3)));
}

// As who seals with a marked key sends them: the mark stands before the seal.
TEST_F(StreamKeys, AKeyWithAMarkOpensWhatBearsTheMarkAndNothingElse)
{
    const QByteArray key(callCrypto::KEY_BYTES, 'a');
    tagAgreedStream stream = kLong;
    for (const int size : {1, 4, 128}) {
        SCOPED_TRACE(size);
        const QByteArray mark(size, '\7');
        stream.takeMark = mark;
        m_keys.agree(stream);
        for (const bool rtcp : {false, true}) {
            const auto sealed = [&](const QByteArray& with) {
                const auto sealer =
                    secureRtp::make(CRYPTO_SUITE::AES_SHA1_80, key, secureRtp::WAY::OUT, with);
                QByteArray packet(60 + secureRtp::MAX_MORE, 0);
                auto* bytes = reinterpret_cast<unsigned char*>(packet.data());
                rtpPacket::write({8, false, 1, 160, 5}, bytes);
                if (rtcp)
                    memcpy(bytes, "\x80\xc8\0\xe\1\2\3\4", 8);
                packet.resize(sealer->seal(bytes, 60, rtcp));
                return packet;
            };
            const auto opened = [&](QByteArray packet) {
                return m_keys.open(reinterpret_cast<unsigned char*>(packet.data()), int(packet.size()), rtcp);
            };
            EXPECT_EQ(sealed(mark).size(), sealed({}).size() + size);
            EXPECT_EQ(sealed(mark).mid(sealed({}).size() - 10, size), mark);
            EXPECT_EQ(opened(sealed({})), 0);
            EXPECT_EQ(opened(sealed(QByteArray(size, '\6'))), 0);
            EXPECT_EQ(opened(sealed(mark)), 60);
        }
    }
    m_keys.agree(kLong);
    EXPECT_FALSE(report().isEmpty());
    EXPECT_FALSE(secureRtp::make(CRYPTO_SUITE::AES_SHA1_80, key, secureRtp::WAY::IN, QByteArray(129, 'm')));
}

TEST_F(StreamKeys, OfThoseThatWereLeftTheOneThatWasUsedLastIsKnownLongest)
{
    const tagAgreedStream third = agreed(CRYPTO_SUITE::AES_SHA1_80, 'c');
    for (const tagAgreedStream& each : {kLong, kShort, kLong, third, kLong}) {
        m_keys.agree(each);
        for (int i = 0; i < 3; ++i)
            EXPECT_TRUE(m_seen.insert(report()).second) << "two reports are sealed alike";
    }
}

} // namespace
