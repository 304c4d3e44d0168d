#include "players/streamKeys.h"
#include "players/rtpPacket.h"

void streamKeys::agree(const tagAgreedStream& agreed)
{
    if (m_eSuite != agreed.eSuite || m_sendKey != agreed.sendKey)
        m_sealer = secureRtp::make(agreed.eSuite, agreed.sendKey, secureRtp::WAY::OUT);
    if (m_eSuite != agreed.eSuite || m_takeKey != agreed.takeKey)
        m_opener = secureRtp::make(agreed.eSuite, agreed.takeKey, secureRtp::WAY::IN);
    m_eSuite = agreed.eSuite;
    m_sendKey = agreed.sendKey;
    m_takeKey = agreed.takeKey;
}

int streamKeys::open(unsigned char* packet, int size, bool rtcp) const
{
    if (m_eSuite == CRYPTO_SUITE::NONE)
        return size;
    const bool hasHead = rtcp || size >= rtpPacket::HEAD_BYTES;
    return m_opener && hasHead ? m_opener->open(packet, size, rtcp) : 0;
}
