#include "players/secureRtp.h"
#include <srtp2/srtp.h>

static_assert(secureRtp::MAX_MORE >= SRTP_MAX_TRAILER_LEN);

namespace {

constexpr unsigned long kWindow = 256; // packets that may come late

srtp_t session(void* of)
{
    return static_cast<srtp_t>(of);
}

} // namespace

std::unique_ptr<secureRtp> secureRtp::make(CRYPTO_SUITE suite, const QByteArray& key, WAY way,
                                           const QByteArray& mark)
{
    static const bool isThere = srtp_init() == srtp_err_status_ok;
    if (!isThere || suite == CRYPTO_SUITE::NONE || key.size() != callCrypto::KEY_BYTES ||
        mark.size() > callCrypto::MARK_BYTES_MAX)
        return nullptr;
    QByteArray bytes = key, markBytes = mark;
    srtp_master_key_t marked = {reinterpret_cast<unsigned char*>(bytes.data()),
                                reinterpret_cast<unsigned char*>(markBytes.data()), unsigned(mark.size())};
    srtp_master_key_t* keys[] = {&marked};
    srtp_policy_t policy = {};
    if (suite == CRYPTO_SUITE::AES_SHA1_80)
        srtp_crypto_policy_set_aes_cm_128_hmac_sha1_80(&policy.rtp);
    else
        srtp_crypto_policy_set_aes_cm_128_hmac_sha1_32(&policy.rtp);
    srtp_crypto_policy_set_aes_cm_128_hmac_sha1_80(&policy.rtcp); // its seal is always the long one
    policy.ssrc.type = way == WAY::OUT ? ssrc_any_outbound : ssrc_any_inbound;
    if (mark.isEmpty())
        policy.key = marked.key;
    policy.keys = mark.isEmpty() ? nullptr : keys;
    policy.num_master_keys = mark.isEmpty() ? 0 : 1;
    policy.window_size = kWindow;
    srtp_t made = nullptr;
    if (srtp_create(&made, &policy) != srtp_err_status_ok)
        return nullptr;
    return std::unique_ptr<secureRtp>(new secureRtp(made, !mark.isEmpty()));
}

secureRtp::~secureRtp()
{
    srtp_dealloc(session(m_pSession));
}

int secureRtp::seal(unsigned char* packet, int size, bool rtcp)
{
    const auto status = rtcp ? srtp_protect_rtcp_mki(session(m_pSession), packet, &size, m_bMarked, 0)
                             : srtp_protect_mki(session(m_pSession), packet, &size, m_bMarked, 0);
    return status == srtp_err_status_ok ? size : 0;
}

int secureRtp::open(unsigned char* packet, int size, bool rtcp)
{
    const auto status = rtcp ? srtp_unprotect_rtcp_mki(session(m_pSession), packet, &size, m_bMarked)
                             : srtp_unprotect_mki(session(m_pSession), packet, &size, m_bMarked);
    return status == srtp_err_status_ok ? size : 0;
}
