#pragma once
// The keys at work in a stream, one for each way. They go on where they are agreed upon again: what came
// before stays known. One thread at a time.
#include "players/callNegotiation.h"
#include "players/secureRtp.h"

class streamKeys
{
public:
    void agree(const tagAgreedStream& agreed);
    // Null where nothing is sealed, or there is no key.
    secureRtp* sealer() const { return m_sealer.get(); }
    // In its place; the new size, 0 when it is not from who has the key: nothing of it is believed before.
    int open(unsigned char* packet, int size, bool rtcp) const;

private:
    CRYPTO_SUITE m_eSuite = CRYPTO_SUITE::NONE;
    QByteArray m_sendKey;
    QByteArray m_takeKey;
    std::unique_ptr<secureRtp> m_sealer;
    std::unique_ptr<secureRtp> m_opener;
};
