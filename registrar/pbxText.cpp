#include "registrar/pbxText.h"
#include <algorithm>
#include <cctype>
#include <memory>
#include <sofia-sip/msg_addr.h>
#include <sofia-sip/su.h>
#include <sofia-sip/su_alloc.h>
#include <vector>

namespace {

constexpr const char* kReplacement = "\xef\xbf\xbd"; // U+FFFD

// The bytes of the letter that begins there; 0 when it is none that XML knows (RFC 3629).
size_t letterAt(const std::string& text, size_t at)
{
    const auto byte = [&](size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u; };
    const unsigned lead = byte(at);
    if (lead < 0x80)
        return 1;
    const size_t size = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
    unsigned code = lead & (0xffu >> (size + 1));
    for (size_t i = 1; i < size; ++i) {
        if ((byte(at + i) & 0xc0) != 0x80)
            return 0;
        code = (code << 6) | (byte(at + i) & 0x3f);
    }
    const bool isShort = code < 0x80 || (size == 3 && code < 0x800) || (size == 4 && code < 0x10000);
    const bool isNone = (code >= 0xd800 && code <= 0xdfff) || code == 0xfffe || code == 0xffff;
    return lead < 0xc2 || lead > 0xf4 || isShort || isNone || code > 0x10ffff ? 0 : size;
}

} // namespace

std::string pbxText::of(const char* text)
{
    return text ? text : "";
}

std::string pbxText::user(const url_t* url)
{
    if (!url || !url->url_user)
        return "";
    std::string text = url->url_user;
    std::vector<char> plain(text.size() + 1);
    return url_unescape(plain.data(), text.c_str());
}

std::string pbxText::address(const url_t* url)
{
    if (!isSip(url))
        return "";
    url_t bare = *url;
    bare.url_headers = nullptr;
    su_home_t home[1] = {SU_HOME_INIT(home)};
    const std::string text = of(url_as_string(home, &bare));
    su_home_deinit(home);
    return text;
}

std::string pbxText::place(const url_t* url)
{
    if (!url || !url->url_host)
        return "";
    std::string host = url->url_host;
    std::transform(host.begin(), host.end(), host.begin(), [](unsigned char c) { return char(tolower(c)); });
    const std::string port = url->url_port && url->url_port[0] ? url->url_port : "5060";
    return host + ":" + port;
}

bool pbxText::isPlace(const url_t* url, const std::string& place)
{
    const std::string own = pbxText::place(url);
    return own == place || (own.rfind("localhost:", 0) == 0 && place.rfind("127.0.0.1:", 0) == 0 &&
                            own.substr(own.find(':')) == place.substr(place.find(':')));
}

bool pbxText::isSip(const url_t* url)
{
    return url && url->url_type == url_sip && url->url_host && url->url_host[0];
}

std::string pbxText::host(const msg_t* message)
{
    char text[SU_ADDRSIZE] = "";
    const su_sockaddr_t* from = message ? msg_addr(const_cast<msg_t*>(message)) : nullptr;
    return from && su_inet_ntop(from->su_family, SU_ADDR(from), text, sizeof text) ? text : "";
}

uint32_t pbxText::port(const msg_t* message)
{
    const su_sockaddr_t* from = message ? msg_addr(const_cast<msg_t*>(message)) : nullptr;
    return from ? ntohs(from->su_port) : 0;
}

std::string pbxText::xml(const std::string& text)
{
    std::string escaped;
    for (size_t at = 0; at < text.size();) {
        const char c = text[at];
        const size_t size = letterAt(text, at);
        if (c == '&')
            escaped += "&amp;";
        else if (c == '<')
            escaped += "&lt;";
        else if (c == '>')
            escaped += "&gt;";
        else if (c == '"')
            escaped += "&quot;";
        else if (size == 0)
            escaped += kReplacement;
        else if (static_cast<unsigned char>(c) >= 0x20)
            escaped.append(text, at, size);
        at += size == 0 ? 1 : size;
    }
    return escaped;
}
