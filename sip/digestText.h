#pragma once
// The texts of digest authentication (RFC 7616), as both sides make and read them.
#include <sofia-sip/msg_types.h>
#include <string>

namespace digestText {

std::string lower(std::string text);
std::string hexOf(const unsigned char* bytes, size_t size);
// In hex; empty when it cannot be made.
std::string hash(bool isSha256, const std::string& text);
// A value as the stack keeps it, in quotes perhaps.
std::string unquoted(const std::string& value);
std::string quoted(const std::string& text);
// Of a challenge or an answer: without its quotes. name ends with "=".
std::string param(const msg_auth_t* header, const char* name);

struct tagAnswer
{
    bool bSha256 = false;
    bool bSession = false; // an algorithm with "-sess"
    bool bQop = false;     // "auth"
    std::string user, realm, password, method, uri;
    std::string nonce;
    std::string ownNonce; // of who answers
    std::string count;
};
std::string response(const tagAnswer& answer);

} // namespace digestText
