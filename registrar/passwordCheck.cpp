#include "registrar/passwordCheck.h"
#include "sip/digestText.h"
#include <cstdlib>
#include <ctime>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/rand.h>
#include <sofia-sip/su_alloc.h>
#include <strings.h>

using digestText::param;

namespace {

bool isAddress(const std::string& text, const url_t* address)
{
    su_home_t home[1] = {SU_HOME_INIT(home)};
    const url_t* url = url_make(home, text.c_str());
    const bool isSame = url && url_cmp_all(url, address) == 0;
    su_home_deinit(home);
    return isSame;
}

} // namespace

PasswordCheck::PasswordCheck(const AccountBook& accounts, std::string realm, bool hasSha256)
    : m_accounts(accounts), m_realm(std::move(realm)), m_bSha256(hasSha256)
{
    if (RAND_bytes(m_secret, sizeof m_secret) != 1)
        abort(); // nonces that anybody could make
}

std::string PasswordCheck::nonce(long seconds, uint64_t number) const
{
    const std::string text = std::to_string(seconds) + "-" + std::to_string(number);
    unsigned char sum[EVP_MAX_MD_SIZE];
    unsigned size = 0;
    HMAC(EVP_sha256(), m_secret, sizeof m_secret, reinterpret_cast<const unsigned char*>(text.data()),
         text.size(), sum, &size);
    return text + "-" + digestText::hexOf(sum, size / 2);
}

long PasswordCheck::ageOf(const std::string& nonce, uint64_t& number) const
{
    const long made = atol(nonce.c_str());
    const size_t mark = nonce.find('-');
    number = mark == std::string::npos ? 0 : strtoull(nonce.c_str() + mark + 1, nullptr, 10);
    return this->nonce(made, number) == nonce ? long(time(nullptr)) - made : -1;
}

// What is no longer known has no count that could be new.
bool PasswordCheck::isCountNew(uint64_t number, unsigned long count)
{
    const auto found = m_taken.find(number);
    if (found != m_taken.end() ? count <= found->second : number <= m_nForgotten)
        return false;
    m_taken[number] = count;
    if (m_taken.size() > MAX_ANSWERED) {
        m_nForgotten = m_taken.begin()->first;
        m_taken.erase(m_taken.begin());
    }
    return true;
}

std::vector<std::string> PasswordCheck::questions(bool isLate)
{
    std::vector<std::string> all;
    for (const char* algorithm : {"SHA-256", "MD5"}) {
        if (m_bSha256 || algorithm[0] == 'M')
            all.push_back("Digest realm=\"" + m_realm + "\", nonce=\"" +
                          nonce(long(time(nullptr)), ++m_nLast) + "\", algorithm=" + algorithm +
                          ", qop=\"auth\"" + (isLate ? ", stale=true" : ""));
    }
    return all;
}

PasswordCheck::VERDICT PasswordCheck::judge(const msg_auth_t* answers, const sip_request_t& request,
                                            std::string& user)
{
    for (const msg_auth_t* answer = answers; answer; answer = answer->au_next) {
        const bool isDigest = answer->au_scheme && strcasecmp(answer->au_scheme, "Digest") == 0;
        if (isDigest && param(answer, "realm=") == m_realm)
            return judgeOne(answer, request, user);
    }
    return VERDICT::NONE;
}

PasswordCheck::VERDICT PasswordCheck::judgeOne(const msg_auth_t* answer, const sip_request_t& request,
                                               std::string& user)
{
    const std::string algorithm = digestText::lower(param(answer, "algorithm="));
    digestText::tagAnswer own;
    own.bSha256 = algorithm == "sha-256";
    own.bQop = true;
    own.user = param(answer, "username=");
    own.realm = m_realm;
    own.method = request.rq_method_name;
    own.uri = param(answer, "uri=");
    own.nonce = param(answer, "nonce=");
    own.ownNonce = param(answer, "cnonce=");
    own.count = param(answer, "nc=");
    const tagPbxAccount* account = m_accounts.find(own.user);
    const bool isAsked = algorithm.empty() || algorithm == "md5" || (own.bSha256 && m_bSha256);
    uint64_t number = 0;
    const long age = ageOf(own.nonce, number);
    const unsigned long count = strtoul(own.count.c_str(), nullptr, 16);
    if (!isAsked || count == 0 || param(answer, "qop=") != "auth" || !isAddress(own.uri, request.rq_url))
        return VERDICT::BAD;
    if (!account)
        return VERDICT::WRONG;
    own.password = account->password;
    const std::string wanted = digestText::response(own), given = param(answer, "response=");
    if (wanted.size() != given.size() || CRYPTO_memcmp(wanted.data(), given.data(), wanted.size()) != 0)
        return VERDICT::WRONG;
    user = own.user;
    // What the run before has asked is late as well, so that whoever answers it asks anew.
    return age >= 0 && age <= NONCE_SECONDS && isCountNew(number, count) ? VERDICT::GOOD : VERDICT::LATE;
}
