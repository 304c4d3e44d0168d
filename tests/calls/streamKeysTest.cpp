// Keys of a stream that are agreed upon, left and agreed upon again: nothing is sealed twice alike.
#include "players/streamKeys.h"
#include "players/rtpPacket.h"
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

} // namespace
