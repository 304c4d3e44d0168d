#include "sip/sipAddress.h"
#include "sip/stackMemory.h"
#include <cctype>
#include <cstdio>
#include <cstring>

std::string sipAddress::escaped(const std::string& user)
{
    std::string text;
    for (char c : user) {
        const auto byte = static_cast<unsigned char>(c);
        char code[4];
        if (isalnum(byte) || strchr("-_.!~*'()&=+$,;?/", c)) {
            text += c;
        } else {
            snprintf(code, sizeof code, "%%%02X", byte);
            text += code;
        }
    }
    return text;
}

std::string sipAddress::quotedName(const std::string& name)
{
    if (name.empty())
        return "";
    std::string text = "\"";
    for (char c : name) {
        if (c == '"' || c == '\\')
            text += '\\';
        text += c;
    }
    return text + "\" ";
}

std::string sipAddress::host(const std::string& host)
{
    return host.find(':') != std::string::npos && host.front() != '[' ? "[" + host + "]" : host;
}

std::string sipAddress::bareHost(const std::string& host)
{
    const bool hasBrackets = host.size() > 2 && host.front() == '[' && host.back() == ']';
    return hasBrackets ? host.substr(1, host.size() - 2) : host;
}

std::string sipAddress::port(unsigned port)
{
    return port ? ":" + std::to_string(port) : "";
}

std::string sipAddress::target(const std::string& wanted, const std::string& server)
{
    if (wanted.rfind("sip:", 0) == 0 || wanted.rfind("sips:", 0) == 0)
        return wanted;
    const size_t at = wanted.rfind('@');
    if (at != std::string::npos)
        return "sip:" + escaped(wanted.substr(0, at)) + wanted.substr(at);
    return "sip:" + escaped(wanted) + "@" + server;
}

std::string sipAddress::withoutHeaders(const url_t& address)
{
    StackMemory memory;
    url_t bare = address;
    bare.url_headers = bare.url_fragment = nullptr;
    const char* text = url_as_string(memory.home(), &bare);
    return text ? text : "";
}

std::string sipAddress::inBrackets(const std::string& address)
{
    return "<" + address + ">";
}

std::string sipAddress::plainName(const std::string& name)
{
    if (name.size() < 2 || name.front() != '"')
        return name;
    std::string text;
    for (size_t i = 1; i < name.size() && name[i] != '"'; ++i) {
        if (name[i] == '\\' && i + 1 < name.size())
            ++i;
        text += name[i];
    }
    return text;
}
