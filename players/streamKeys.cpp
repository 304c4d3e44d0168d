#include "players/streamKeys.h"
#include "players/rtpPacket.h"
#include <algorithm>
#include <utility>

// Several answers to one offer may go from one key to another and back.
secureRtp* streamKeys::sealerFor(CRYPTO_SUITE suite, const QByteArray& key)
{
    const auto known = std::find_if(m_sealers.begin(), m_sealers.end(), [&](const tagSealer& sealer) {
        return sealer.eSuite == suite && sealer.key == key;
    });
    if (known != m_sealers.end()) {
        std::rotate(known, known + 1, m_sealers.end());
        return m_sealers.back().seals.get();
    }
    std::unique_ptr<secureRtp> made = secureRtp::make(suite, key, secureRtp::WAY::OUT);
    if (!made)
        return nullptr;
    if (m_sealers.size() == SEALERS)
        m_sealers.erase(m_sealers.begin());
    m_sealers.push_back({suite, key, std::move(made)});
    return m_sealers.back().seals.get();
}

void streamKeys::agree(const tagAgreedStream& agreed)
{
    m_pSealer = sealerFor(agreed.eSuite, agreed.sendKey);
    if (m_eSuite != agreed.eSuite || m_takeKey != agreed.takeKey)
        m_opener = secureRtp::make(agreed.eSuite, agreed.takeKey, secureRtp::WAY::IN);
    m_eSuite = agreed.eSuite;
    m_takeKey = agreed.takeKey;
}

int streamKeys::open(unsigned char* packet, int size, bool rtcp) const
{
    if (m_eSuite == CRYPTO_SUITE::NONE)
        return size;
    const bool hasHead = rtcp || size >= rtpPacket::HEAD_BYTES;
    return m_opener && hasHead ? m_opener->open(packet, size, rtcp) : 0;
}
