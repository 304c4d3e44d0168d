#pragma once
// Digest authentication by MD5 and SHA-256, in place of the stack's own, which knows MD5 alone. The stack is
// given a key in place of user and password: it has nothing secret to keep, to copy or to print.
#include <sofia-sip/auth_client.h>
#include <string>

namespace digest {

// Before the stack is made.
bool install();
// What a key stands for, until it is forgotten. A key has no colon.
void remember(const std::string& key, const std::string& user, const std::string& password);
void forget(const std::string& key);

// Of a challenge: without its quotes.
std::string param(const msg_auth_t* challenge, const char* name);
// Whether it can be answered.
bool isKnown(const msg_auth_t* challenge);
// It asks for the stronger of the two sums.
bool isSha256(const msg_auth_t* challenge);
// The answer before was right, and too old.
bool isStale(const msg_auth_t* challenge);

} // namespace digest
