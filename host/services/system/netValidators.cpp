#include "support/host/net.h"
#include <QList>
#include <QString>
#include <QStringDecoder>
#include <string_view>
#include <vector>

namespace {

constexpr int kTextLimit = 99; // characters of a name or a password
constexpr size_t kHostLimit = 253;
constexpr size_t kLabelLimit = 63;
constexpr unsigned kFirstMulticast = 224; // what follows it is not for hosts either
constexpr unsigned kLoopback = 127;
constexpr int kShortestMask = 1;
constexpr int kLongestMask = 30;
constexpr unsigned kPortLimit = 65535;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

std::vector<std::string_view> split(std::string_view text, char at)
{
    std::vector<std::string_view> parts;
    for (;;) {
        const size_t end = text.find(at);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos)
            return parts;
        text.remove_prefix(end + 1);
    }
}

// A decimal number up to limit, without a sign, blanks or zeros in front.
bool readNumber(std::string_view text, unsigned limit, unsigned& number)
{
    if (text.empty() || text.size() > 5 || (text.size() > 1 && text[0] == '0'))
        return false;
    number = 0;
    for (char c : text) {
        if (!isDigit(c))
            return false;
        number = number * 10 + static_cast<unsigned>(c - '0');
    }
    return number <= limit;
}

bool readAddress(std::string_view text, unsigned (&parts)[4])
{
    const std::vector<std::string_view> texts = split(text, '.');
    if (texts.size() != 4)
        return false;
    for (size_t i = 0; i < 4; ++i) {
        if (!readNumber(texts[i], 255, parts[i]))
            return false;
    }
    return true;
}

bool isHostAddress(const unsigned (&parts)[4])
{
    return parts[0] != 0 && parts[0] < kFirstMulticast;
}

bool isLabel(std::string_view label)
{
    if (label.empty() || label.size() > kLabelLimit || label.front() == '-' || label.back() == '-')
        return false;
    for (char c : label) {
        if (!isDigit(c) && !isLetter(c) && c != '-')
            return false;
    }
    return true;
}

// The last part of a host name is never all digits: that is an address, or a mistyped one.
bool isHostName(std::string_view text)
{
    if (!text.empty() && text.back() == '.')
        text.remove_suffix(1);
    if (text.size() > kHostLimit)
        return false;
    const std::vector<std::string_view> labels = split(text, '.');
    for (std::string_view label : labels) {
        if (!isLabel(label))
            return false;
    }
    return labels.back().find_first_not_of("0123456789") != std::string_view::npos;
}

bool isControl(char32_t c)
{
    return c < 0x20 || (c >= 0x7F && c < 0xA0);
}

// 1 to 99 characters of UTF-8, no control character and none of refused.
bool isShortText(const chString& text, std::string_view refused)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString decoded = decoder(QByteArrayView(text.GetText(), text.GetLength()));
    const QList<uint> characters = decoded.toUcs4();
    if (decoder.hasError() || characters.isEmpty() || characters.size() > kTextLimit)
        return false;
    for (uint c : characters) {
        if (isControl(c) || (c < 0x80 && refused.find(static_cast<char>(c)) != std::string_view::npos))
            return false;
    }
    return true;
}

} // namespace

int IsValidIPv4(chString text)
{
    unsigned parts[4];
    return readAddress(text.GetText(), parts) && isHostAddress(parts) && parts[0] != kLoopback ? 1 : 0;
}

int IsValidNetMask(chString text)
{
    unsigned parts[4];
    if (!readAddress(text.GetText(), parts))
        return 0;
    const unsigned mask = parts[0] << 24 | parts[1] << 16 | parts[2] << 8 | parts[3];
    for (int ones = kShortestMask; ones <= kLongestMask; ++ones) {
        if (mask == ~0u << (32 - ones))
            return 1;
    }
    return 0;
}

int IsValidPort(chString text)
{
    unsigned port = 0;
    return readNumber(text.GetText(), kPortLimit, port) && port > 0 ? 1 : 0;
}

// A server may be on the phone itself, as the demonstration servers are.
int IsValidServerName(chString text)
{
    unsigned parts[4];
    if (readAddress(text.GetText(), parts))
        return isHostAddress(parts) ? 1 : 0;
    return isHostName(text.GetText()) ? 1 : 0;
}

int IsValidUserName(chString text)
{
    return isShortText(text, "\"<>") ? 1 : 0;
}

int IsValidPassword(chString text)
{
    return isShortText(text, "") ? 1 : 0;
}
