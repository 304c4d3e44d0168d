#pragma once
// Addresses of SIP as texts.
#include <sofia-sip/url.h>
#include <string>

namespace sipAddress {

// A user's name as it stands in an address.
std::string escaped(const std::string& user);
// "Name" in quotes and a blank; empty for none.
std::string quotedName(const std::string& name);
// A host as it stands in an address: IPv6 in brackets.
std::string host(const std::string& host);
// Without the brackets of IPv6.
std::string bareHost(const std::string& host);
// ":5060"; empty for 0.
std::string port(unsigned port);
// What somebody wants to reach: a number at the server, "user@host", or a whole address.
std::string target(const std::string& wanted, const std::string& server);
// Without the header lines that an address wants a request to it to have: they are a stranger's.
std::string withoutHeaders(const url_t& address);
// As a header has an address.
std::string inBrackets(const std::string& address);
// Without the quotes and escapes of a name.
std::string plainName(const std::string& name);

} // namespace sipAddress
