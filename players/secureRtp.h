#pragma once
// Seals and opens the packets of one direction of a call (SRTP, SDES keys). One thread.
#include "players/callCrypto.h"
#include <memory>

class secureRtp
{
public:
    enum : int { MAX_MORE = 144 }; // bytes that a seal may add

    enum class WAY { OUT, IN };
    // Null where the key is none. mark: that each packet bears; empty for none.
    static std::unique_ptr<secureRtp> make(CRYPTO_SUITE suite, const QByteArray& key, WAY way,
                                           const QByteArray& mark = {});
    ~secureRtp();
    secureRtp(const secureRtp&) = delete;
    secureRtp& operator=(const secureRtp&) = delete;

    // In its place, where MAX_MORE bytes more are free; the new size, 0 when it cannot be sealed.
    int seal(unsigned char* packet, int size, bool rtcp);
    // In its place; the new size, 0 when it is not from who has the key, or came before.
    int open(unsigned char* packet, int size, bool rtcp);

private:
    secureRtp(void* session, bool isMarked) : m_pSession(session), m_bMarked(isMarked) {}
    void* m_pSession;
    const bool m_bMarked;
};
