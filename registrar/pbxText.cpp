#include "registrar/pbxText.h"
#include <algorithm>
#include <cctype>
#include <memory>
#include <sofia-sip/su_alloc.h>
#include <vector>

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

std::string pbxText::xml(const std::string& text)
{
    std::string escaped;
    for (char c : text) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            if (static_cast<unsigned char>(c) >= 0x20)
                escaped += c;
        }
    }
    return escaped;
}
