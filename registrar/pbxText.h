#pragma once
// Addresses and other texts of the exchange.
#include <sofia-sip/msg_types.h>
#include <sofia-sip/url.h>
#include <string>

namespace pbxText {

std::string of(const char* text);
// The user of an address without its escapes; empty for none.
std::string user(const url_t* url);
// A whole address without the headers that it may carry; empty when it is none of SIP.
std::string address(const url_t* url);
// "host:port", the port always there.
std::string place(const url_t* url);
bool isPlace(const url_t* url, const std::string& place);
bool isSip(const url_t* url);
// The numeric address that a message has come from.
std::string host(const msg_t* message);
// The port; 0 where there is none.
uint32_t port(const msg_t* message);
// As it stands between tags of XML or in quotes there; what is not UTF-8 is replaced.
std::string xml(const std::string& text);

} // namespace pbxText
