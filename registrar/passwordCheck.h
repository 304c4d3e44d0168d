#pragma once
// Asks for passwords and judges the answers (RFC 7616), by SHA-256 and MD5. It keeps nothing of a question: a
// nonce says by itself when it was made, and that it was made here.
#include "registrar/accountBook.h"
#include <sofia-sip/msg_types.h>
#include <string>
#include <vector>

class PasswordCheck
{
public:
    enum : long { NONCE_SECONDS = 300 };
    enum class VERDICT {
        NONE, // no answer, or one to somebody else
        GOOD,
        LATE, // good, but for the age of its nonce
        BAD
    };

    // hasSha256: false asks by MD5 alone, for phones that stumble over what they do not know.
    PasswordCheck(const AccountBook& accounts, std::string realm, bool hasSha256);

    // Values of the header that asks, the best one first.
    std::vector<std::string> questions(bool isLate) const;
    // user: who has answered well.
    VERDICT judge(const msg_auth_t* answers, const std::string& method, std::string& user) const;

private:
    VERDICT judgeOne(const msg_auth_t* answer, const std::string& method, std::string& user) const;
    std::string nonce(long seconds) const;
    // Its age in seconds; below 0 when it was not made here.
    long ageOf(const std::string& nonce) const;

    const AccountBook& m_accounts;
    const std::string m_realm;
    const bool m_bSha256;
    unsigned char m_secret[32];
};
