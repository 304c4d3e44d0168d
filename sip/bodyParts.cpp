#include "sip/bodyParts.h"
#include "sip/boundedXml.h"
#include <algorithm>
#include <cctype>
#include <string_view>
#include <utility>

namespace {

constexpr size_t kMaxBoundary = 70;
constexpr size_t kMaxHead = 2048;
constexpr size_t kMaxId = 256;
constexpr std::string_view kBase64 = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return char(tolower(c)); });
    return text;
}

bool readHeadLine(const std::string& line, tagBodyPart& part)
{
    const size_t colon = line.find(':');
    if (colon == std::string::npos)
        return false;
    const std::string name = lower(boundedXml::trimmed(line.substr(0, colon)));
    const std::string value = boundedXml::trimmed(line.substr(colon + 1));
    if (name == "content-type" || name == "c") {
        bodyParts::setType(value, part);
    } else if (name == "content-disposition") {
        bodyParts::setDisposition(value, part);
    } else if (name == "content-id") {
        const bool isBracketed = value.size() > 2 && value.front() == '<' && value.back() == '>';
        if (!isBracketed || value.size() > kMaxId)
            return false;
        part.id = value.substr(1, value.size() - 2);
    } else if (name == "content-encoding" || name == "e") {
        part.bCoded = part.bCoded || lower(value) != "identity";
    } else if (name == "content-transfer-encoding") {
        const std::string coding = lower(value);
        part.bBase64 = coding == "base64";
        const bool isPlain = coding == "binary" || coding == "8bit" || coding == "7bit";
        part.bCoded = part.bCoded || (!isPlain && !part.bBase64);
    }
    return true;
}

bool isContinued(std::string_view text, size_t at)
{
    return at < text.size() && (text[at] == ' ' || text[at] == '\t');
}

// Lines up to an empty one, and what is behind it. One that begins with a blank goes on with the one before.
bool readPart(std::string_view text, tagBodyPart& part)
{
    std::string line;
    for (size_t at = 0;;) {
        const size_t end = text.find('\n', at);
        if (end == std::string_view::npos || end > kMaxHead)
            return false;
        line += boundedXml::trimmed(std::string(text.substr(at, end - at)));
        at = end + 1;
        if (line.empty()) {
            part.bytes = text.data() + at;
            part.nSize = text.size() - at;
            return true;
        }
        if (isContinued(text, at))
            line += ' ';
        else if (!readHeadLine(std::exchange(line, ""), part))
            return false;
    }
}

} // namespace

std::string bodyParts::bareType(const std::string& contentType)
{
    return lower(boundedXml::trimmed(contentType.substr(0, contentType.find(';'))));
}

void bodyParts::setType(const std::string& value, tagBodyPart& part)
{
    part.type = bareType(value);
    part.boundary = param(value, "boundary");
}

void bodyParts::setDisposition(const std::string& value, tagBodyPart& part)
{
    part.disposition = bareType(value);
    part.bOptional = lower(param(value, "handling")) == "optional";
}

std::string bodyParts::param(const std::string& contentType, const std::string& name)
{
    for (size_t at = contentType.find(';'); at != std::string::npos; at = contentType.find(';', at + 1)) {
        const size_t equals = contentType.find('=', at);
        if (equals == std::string::npos)
            break;
        if (lower(boundedXml::trimmed(contentType.substr(at + 1, equals - at - 1))) != name)
            continue;
        const std::string rest = boundedXml::trimmed(contentType.substr(equals + 1));
        if (!rest.empty() && rest.front() == '"')
            return rest.substr(1, std::min(rest.find('"', 1), rest.size()) - 1);
        return boundedXml::trimmed(rest.substr(0, rest.find(';')));
    }
    return "";
}

std::string bodyParts::plainBytes(const tagBodyPart& part)
{
    if (!part.bBase64)
        return std::string(part.bytes, part.nSize);
    std::string plain;
    unsigned bits = 0, count = 0;
    for (const char c : std::string_view(part.bytes, part.nSize)) {
        const size_t value = kBase64.find(c);
        if (c == '=')
            break;
        if (value == std::string_view::npos)
            continue; // a line's end
        bits = (bits << 6 | unsigned(value)) & 0xffffff;
        if (++count % 4 != 1)
            plain += char(bits >> (count % 4 == 2 ? 4 : count % 4 == 3 ? 2 : 0) & 0xff);
    }
    return plain;
}

bool bodyParts::split(const char* bytes, size_t size, const std::string& boundary,
                      std::vector<tagBodyPart>& parts)
{
    parts.clear();
    if (boundary.empty() || boundary.size() > kMaxBoundary)
        return false;
    const std::string mark = "--" + boundary;
    const std::string_view body(bytes, size);
    // A mark stands at the begin of a line; the line's end before it belongs to the mark.
    const auto next = [&](size_t at) {
        while ((at = body.find(mark, at)) != std::string_view::npos && at > 0 && body[at - 1] != '\n')
            ++at;
        return at;
    };
    for (size_t at = next(0); at != std::string_view::npos;) {
        const size_t behind = at + mark.size();
        if (body.substr(behind, 2) == "--")
            return true;
        const size_t begin = body.find('\n', behind);
        at = begin == std::string_view::npos ? begin : next(begin + 1);
        if (at == std::string_view::npos || parts.size() >= PARTS_MAX)
            return false;
        size_t end = at - 1;
        if (end > begin && body[end - 1] == '\r')
            --end;
        tagBodyPart part;
        if (end <= begin || !readPart(body.substr(begin + 1, end - begin - 1), part))
            return false;
        parts.push_back(part);
    }
    return false;
}
