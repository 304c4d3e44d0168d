#include "sip/digestText.h"
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <openssl/evp.h>
#include <sofia-sip/msg_header.h>

std::string digestText::lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return char(tolower(c)); });
    return text;
}

std::string digestText::hexOf(const unsigned char* bytes, size_t size)
{
    std::string text;
    for (size_t i = 0; i < size; ++i) {
        char digits[3];
        snprintf(digits, sizeof digits, "%02x", bytes[i]);
        text += digits;
    }
    return text;
}

std::string digestText::hash(bool isSha256, const std::string& text)
{
    unsigned char sum[EVP_MAX_MD_SIZE];
    unsigned size = 0;
    if (!EVP_Digest(text.data(), text.size(), sum, &size, isSha256 ? EVP_sha256() : EVP_md5(), nullptr))
        return "";
    return hexOf(sum, size);
}

std::string digestText::unquoted(const std::string& value)
{
    if (value.size() < 2 || value.front() != '"' || value.back() != '"')
        return value;
    std::string text;
    for (size_t i = 1; i + 1 < value.size(); ++i) {
        if (value[i] == '\\' && i + 2 < value.size())
            ++i;
        text += value[i];
    }
    return text;
}

std::string digestText::quoted(const std::string& text)
{
    std::string value = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\')
            value += '\\';
        value += c;
    }
    return value + '"';
}

std::string digestText::param(const msg_auth_t* header, const char* name)
{
    const char* value = header->au_params ? msg_params_find(header->au_params, name) : nullptr;
    return value ? unquoted(value) : "";
}

std::string digestText::response(const tagAnswer& answer)
{
    const auto sum = [&](const std::string& text) { return hash(answer.bSha256, text); };
    std::string first = sum(answer.user + ":" + answer.realm + ":" + answer.password);
    if (answer.bSession)
        first = sum(first + ":" + answer.nonce + ":" + answer.ownNonce);
    const std::string second = sum(answer.method + ":" + answer.uri);
    const std::string middle =
        answer.bQop ? answer.nonce + ":" + answer.count + ":" + answer.ownNonce + ":auth" : answer.nonce;
    return sum(first + ":" + middle + ":" + second);
}
