#include "host/services/system/hashCost.h"
#include <algorithm>
#include <charconv>

namespace {

constexpr long kMostRounds = 1000000; // of SHA-crypt
constexpr long kMostBcrypt = 12;      // as a power of two
constexpr int kMostBlocks = 32;       // of 128 bytes
constexpr int kMostPower = 14;        // of two: 64 MiB with so many blocks
constexpr std::string_view kDigits = "./0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr int kShortDigits = 48; // those that stand alone where a number may have several

// At the beginning of text, with $ behind it; -1 when there is none.
long numberBeforeDollar(std::string_view text)
{
    long number = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isWhole = error == std::errc() && end != text.data() + text.size() && *end == '$';
    return isWhole && text[0] != '-' ? number : -1;
}

bool isWithin(long number, long most)
{
    return number >= 0 && number <= most;
}

// Flags, the power of two, the blocks: a character each. Longer ones say more than their cost.
bool isYescryptBounded(std::string_view parameters)
{
    return parameters.size() > 3 && parameters[3] == '$' &&
           isWithin(long(kDigits.find(parameters[0])), kShortDigits - 1) &&
           isWithin(long(kDigits.find(parameters[1])) + 1, kMostPower) &&
           isWithin(long(kDigits.find(parameters[2])) + 1, kMostBlocks);
}

// The power of two, then 32 blocks and one thread, as they are written everywhere.
bool isScryptBounded(std::string_view parameters)
{
    constexpr std::string_view kUsual = "U..../....";
    return !parameters.empty() && isWithin(long(kDigits.find(parameters[0])), kMostPower) &&
           parameters.substr(1, kUsual.size()) == kUsual;
}

bool isShaBounded(std::string_view parameters)
{
    constexpr std::string_view kRounds = "rounds=";
    return parameters.substr(0, kRounds.size()) != kRounds ||
           isWithin(numberBeforeDollar(parameters.substr(kRounds.size())), kMostRounds);
}

bool isBcryptBounded(std::string_view parameters)
{
    return isWithin(numberBeforeDollar(parameters), kMostBcrypt);
}

bool isAlwaysBounded(std::string_view)
{
    return true;
}

const struct
{
    std::string_view prefix;
    bool (*isBounded)(std::string_view parameters);
} kMethods[] = {
    {"$y$", isYescryptBounded}, {"$gy$", isYescryptBounded}, {"$7$", isScryptBounded},
    {"$6$", isShaBounded},      {"$5$", isShaBounded},       {"$2a$", isBcryptBounded},
    {"$2b$", isBcryptBounded},  {"$2x$", isBcryptBounded},   {"$2y$", isBcryptBounded},
    {"$1$", isAlwaysBounded}, // a thousand rounds of MD5
};

} // namespace

bool hashCostIsBounded(std::string_view hash)
{
    return std::any_of(std::begin(kMethods), std::end(kMethods), [hash](const auto& method) {
        return hash.substr(0, method.prefix.size()) == method.prefix &&
               method.isBounded(hash.substr(method.prefix.size()));
    });
}
