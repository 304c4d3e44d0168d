#include "sip/hostsText.h"
#include <algorithm>
#include <arpa/inet.h>
#include <strings.h>

namespace {

constexpr const char* kBlanks = " \t\r";

bool isNumeric(const std::string& address)
{
    unsigned char bytes[sizeof(in6_addr)];
    return inet_pton(AF_INET, address.c_str(), bytes) == 1 ||
           inet_pton(AF_INET6, address.c_str(), bytes) == 1;
}

std::vector<std::string> wordsOf(const std::string& line)
{
    std::vector<std::string> words;
    size_t at = line.find_first_not_of(kBlanks);
    while (at < line.size()) {
        const size_t end = std::min(line.find_first_of(kBlanks, at), line.size());
        words.push_back(line.substr(at, end - at));
        at = line.find_first_not_of(kBlanks, end);
    }
    return words;
}

} // namespace

std::vector<std::string> hostsText::addressesOf(const std::string& text, const std::string& name)
{
    std::vector<std::string> addresses;
    const std::string wanted = !name.empty() && name.back() == '.' ? name.substr(0, name.size() - 1) : name;
    const auto isWanted = [&](const std::string& word) {
        return strcasecmp(word.c_str(), wanted.c_str()) == 0;
    };
    for (size_t at = 0, end = 0; at < text.size(); at = end + 1) {
        end = std::min(text.find('\n', at), text.size());
        const std::string line = text.substr(at, std::min(text.find('#', at), end) - at);
        const std::vector<std::string> words = wordsOf(line);
        const bool isOf = !words.empty() && std::any_of(words.begin() + 1, words.end(), isWanted);
        if (isOf && isNumeric(words[0]) && addresses.size() < MAX_ADDRESSES &&
            std::find(addresses.begin(), addresses.end(), words[0]) == addresses.end())
            addresses.push_back(words[0]);
    }
    return addresses;
}

std::string hostsText::wholeLines(std::string text, size_t most)
{
    if (text.size() > most)
        text.resize(most ? text.rfind('\n', most - 1) + 1 : 0);
    return text;
}
