#include "registrar/passwordCheck.h"
#include "sip/digestText.h"
#include <cstdlib>
#include <ctime>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/rand.h>
#include <strings.h>

using digestText::param;

PasswordCheck::PasswordCheck(const AccountBook& accounts, std::string realm, bool hasSha256)
    : m_accounts(accounts), m_realm(std::move(realm)), m_bSha256(hasSha256)
{
    if (RAND_bytes(m_secret, sizeof m_secret) != 1)
        abort(); // nonces that anybody could make
}

std::string PasswordCheck::nonce(long seconds) const
{
    const std::string time = std::to_string(seconds);
    unsigned char sum[EVP_MAX_MD_SIZE];
    unsigned size = 0;
    HMAC(EVP_sha256(), m_secret, sizeof m_secret, reinterpret_cast<const unsigned char*>(time.data()),
         time.size(), sum, &size);
    return time + "-" + digestText::hexOf(sum, size / 2);
}

long PasswordCheck::ageOf(const std::string& nonce) const
{
    const long made = atol(nonce.c_str());
    return this->nonce(made) == nonce ? long(time(nullptr)) - made : -1;
}

std::vector<std::string> PasswordCheck::questions(bool isLate) const
{
    std::vector<std::string> all;
    for (const char* algorithm : {"SHA-256", "MD5"}) {
        if (m_bSha256 || algorithm[0] == 'M')
            all.push_back("Digest realm=\"" + m_realm + "\", nonce=\"" + nonce(long(time(nullptr))) +
                          "\", algorithm=" + algorithm + ", qop=\"auth\"" + (isLate ? ", stale=true" : ""));
    }
    return all;
}

PasswordCheck::VERDICT PasswordCheck::judge(const msg_auth_t* answers, const std::string& method,
                                            std::string& user) const
{
    for (const msg_auth_t* answer = answers; answer; answer = answer->au_next) {
        const bool isDigest = answer->au_scheme && strcasecmp(answer->au_scheme, "Digest") == 0;
        if (isDigest && param(answer, "realm=") == m_realm)
            return judgeOne(answer, method, user);
    }
    return VERDICT::NONE;
}

PasswordCheck::VERDICT PasswordCheck::judgeOne(const msg_auth_t* answer, const std::string& method,
                                               std::string& user) const
{
    const std::string algorithm = digestText::lower(param(answer, "algorithm="));
    digestText::tagAnswer own;
    own.bSha256 = algorithm == "sha-256";
    own.bQop = true;
    own.user = param(answer, "username=");
    own.realm = m_realm;
    own.method = method;
    own.uri = param(answer, "uri=");
    own.nonce = param(answer, "nonce=");
    own.ownNonce = param(answer, "cnonce=");
    own.count = param(answer, "nc=");
    const tagPbxAccount* account = m_accounts.find(own.user);
    const bool isAsked = algorithm.empty() || algorithm == "md5" || (own.bSha256 && m_bSha256);
    const long age = ageOf(own.nonce);
    if (!account || !isAsked || age < 0 || param(answer, "qop=") != "auth")
        return VERDICT::BAD;
    own.password = account->password;
    const std::string wanted = digestText::response(own), given = param(answer, "response=");
    if (wanted.size() != given.size() || CRYPTO_memcmp(wanted.data(), given.data(), wanted.size()) != 0)
        return VERDICT::BAD;
    user = own.user;
    return age > NONCE_SECONDS ? VERDICT::LATE : VERDICT::GOOD;
}
