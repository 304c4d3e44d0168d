#pragma once
// The keys at work in a stream, one for each way. They go on where they are agreed upon again: what came
// before stays known, and nothing more is sealed as something before it was. One thread at a time.
#include "players/callNegotiation.h"
#include "players/secureRtp.h"
#include <vector>

class streamKeys
{
public:
    void agree(const tagAgreedStream& agreed);
    // Null where nothing is sealed, or there is no key.
    secureRtp* sealer() const { return m_pSealer; }
    // In its place; the new size, 0 when it is not from who has the key: nothing of it is believed before.
    int open(unsigned char* packet, int size, bool rtcp) const;

private:
    enum : size_t { KEPT = 2 }; // as many as one description has keys
    struct tagKey
    {
        CRYPTO_SUITE eSuite;
        QByteArray key;
        QByteArray mark;
        std::unique_ptr<secureRtp> at;
    };
    using Keys = std::vector<tagKey>; // in the order of their use
    // Null where there is no such key.
    static secureRtp* take(Keys& keys, CRYPTO_SUITE suite, const QByteArray& key, secureRtp::WAY way,
                           const QByteArray& mark = {});

    CRYPTO_SUITE m_eSuite = CRYPTO_SUITE::NONE;
    Keys m_sealers;
    Keys m_openers;
    secureRtp* m_pSealer = nullptr; // one of them
    secureRtp* m_pOpener = nullptr; // the same
};
