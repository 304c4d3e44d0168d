#include "players/streamKeys.h"
#include "players/rtpPacket.h"
#include <algorithm>
#include <utility>

// Several answers to one offer may go from one key to another and back.
secureRtp* streamKeys::take(Keys& keys, CRYPTO_SUITE suite, const QByteArray& key, secureRtp::WAY way,
                            const QByteArray& mark)
{
    const auto known = std::find_if(keys.begin(), keys.end(), [&](const tagKey& each) {
        return each.eSuite == suite && each.key == key && each.mark == mark;
    });
    if (known != keys.end()) {
        std::rotate(known, known + 1, keys.end());
        return keys.back().at.get();
    }
    std::unique_ptr<secureRtp> made = secureRtp::make(suite, key, way, mark);
    if (!made)
        return nullptr;
    if (keys.size() == KEPT)
        keys.erase(keys.begin());
    keys.push_back({suite, key, mark, std::move(made)});
    return keys.back().at.get();
}

void streamKeys::agree(const tagAgreedStream& agreed)
{
    m_pSealer = take(m_sealers, agreed.eSuite, agreed.sendKey, secureRtp::WAY::OUT);
    m_pOpener = take(m_openers, agreed.eSuite, agreed.takeKey, secureRtp::WAY::IN, agreed.takeMark);
    m_eSuite = agreed.eSuite;
}

int streamKeys::open(unsigned char* packet, int size, bool rtcp) const
{
    if (m_eSuite == CRYPTO_SUITE::NONE)
        return size;
    const bool hasHead = rtcp || size >= rtpPacket::HEAD_BYTES;
    return m_pOpener && hasHead ? m_pOpener->open(packet, size, rtcp) : 0;
}
