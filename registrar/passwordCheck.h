#pragma once
// Asks for passwords and judges the answers (RFC 7616), by SHA-256 and MD5. It keeps nothing of a question: a
// nonce says by itself when it was made, and that it was made here. Of good answers it keeps the count, which
// is not taken twice.
#include "registrar/accountBook.h"
#include <cstdint>
#include <map>
#include <sofia-sip/sip.h>
#include <string>
#include <vector>

class PasswordCheck
{
public:
    enum : long { NONCE_SECONDS = 300 };
    enum : size_t { MAX_ANSWERED = 2000 };
    enum class VERDICT {
        NONE, // no answer, or one to somebody else
        GOOD,
        LATE,  // good, but for its nonce, which is used up or was not made here
        WRONG, // nobody's name, or not his password
        BAD    // no answer to what is asked here
    };

    // hasSha256: false asks by MD5 alone, for phones that stumble over what they do not know.
    PasswordCheck(const AccountBook& accounts, std::string realm, bool hasSha256);

    // Values of the header that asks, the best one first.
    std::vector<std::string> questions(bool isLate);
    // Of the answers to the request with that line; user: who has answered well.
    VERDICT judge(const msg_auth_t* answers, const sip_request_t& request, std::string& user);

private:
    VERDICT judgeOne(const msg_auth_t* answer, const sip_request_t& request, std::string& user);
    std::string nonce(long seconds, uint64_t number) const;
    // Its age in seconds, and which one it is; below 0 when it was not made here.
    long ageOf(const std::string& nonce, uint64_t& number) const;
    bool isCountNew(uint64_t number, unsigned long count);

    const AccountBook& m_accounts;
    const std::string m_realm;
    const bool m_bSha256;
    unsigned char m_secret[32];
    uint64_t m_nLast = 0;                      // nonce
    uint64_t m_nForgotten = 0;                 // those up to here are used up
    std::map<uint64_t, unsigned long> m_taken; // the highest count of each nonce that was answered
};
