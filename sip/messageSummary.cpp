#include "sip/messageSummary.h"
#include "sip/boundedXml.h"
#include "sip/sipRecords.h"
#include <algorithm>
#include <cctype>
#include <string>

namespace {

std::string lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return char(tolower(c)); });
    return text;
}

bool readNumber(const std::string& text, uint32_t& number)
{
    if (text.empty() || text.size() > 6 || text.find_first_not_of("0123456789") != std::string::npos)
        return false;
    number = uint32_t(std::stoul(text));
    return number <= SIP_MESSAGES_MAX;
}

// "2/8 (0/2)": new ones, old ones, and how many of them are urgent.
bool readCounts(const std::string& text, tagMessageCounts& counts)
{
    const size_t slash = text.find('/');
    if (slash == std::string::npos)
        return false;
    const std::string old = text.substr(slash + 1, text.find('(') - slash - 1);
    return readNumber(boundedXml::trimmed(text.substr(0, slash)), counts.nNew) &&
           readNumber(boundedXml::trimmed(old), counts.nOld);
}

} // namespace

bool messageSummary::read(const char* bytes, size_t size, tagMessageCounts& counts)
{
    if (size > BYTES_MAX)
        return false;
    const std::string body(bytes, size);
    tagMessageCounts counted;
    bool isTold = false, isCounted = false, isWaiting = false;
    for (size_t at = 0; at < body.size();) {
        const size_t end = std::min(body.find('\n', at), body.size());
        const std::string line = boundedXml::trimmed(body.substr(at, end - at));
        at = end + 1;
        if (line.empty()) // what follows are the messages themselves
            break;
        const size_t colon = line.find(':');
        if (colon == std::string::npos)
            return false;
        const std::string name = lower(boundedXml::trimmed(line.substr(0, colon)));
        const std::string value = lower(boundedXml::trimmed(line.substr(colon + 1)));
        if (name == "messages-waiting") {
            isWaiting = value == "yes";
            isTold = isWaiting || value == "no";
            if (!isTold)
                return false;
        } else if (name == "voice-message") {
            isCounted = true;
            if (!readCounts(value, counted))
                return false;
        }
    }
    if (!isTold)
        return false;
    if (!isWaiting || !isCounted)
        counted.nNew = isWaiting ? 1 : 0;
    counts = counted;
    return true;
}
