#include "support/xml/xmlChars.h"

#include <algorithm>
#include <expat.h>

namespace {

const size_t LONGEST_NAME = 1024;          // bytes
const char REPLACEMENT[] = "\xef\xbf\xbd"; // U+FFFD

struct Letter
{
    char32_t code = 0;
    size_t size = 1;
    bool valid = false; // well-formed UTF-8
};

// The letter of several bytes that text begins with. Of a broken one only the first byte counts.
Letter longLetter(std::string_view text)
{
    const auto byteAt = [text](size_t at) { return (unsigned char)text[at]; };
    const unsigned char lead = byteAt(0);
    const size_t size = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
    Letter letter;
    if (lead < 0xc2 || lead > 0xf4 || size > text.size())
        return letter;
    char32_t code = lead & (0xff >> (size + 1));
    for (size_t i = 1; i < size; ++i) {
        if ((byteAt(i) & 0xc0) != 0x80)
            return letter;
        code = (code << 6) | (byteAt(i) & 0x3f);
    }
    const bool overlong = (size == 3 && code < 0x800) || (size == 4 && code < 0x10000);
    if (overlong || (code >= 0xd800 && code <= 0xdfff) || code > 0x10ffff)
        return letter;
    letter.code = code;
    letter.size = size;
    letter.valid = true;
    return letter;
}

Letter firstLetter(std::string_view text)
{
    if ((unsigned char)text[0] >= 0x80)
        return longLetter(text);
    Letter letter;
    letter.code = (unsigned char)text[0];
    letter.valid = true;
    return letter;
}

bool allowed(char32_t code)
{
    if (code < 0x20)
        return code == '\t' || code == '\n' || code == '\r';
    return code != 0xfffe && code != 0xffff;
}

bool startsName(char32_t code)
{
    return (code >= 'a' && code <= 'z') || (code >= 'A' && code <= 'Z') || code == '_' || code == ':' ||
           code >= 0x80;
}

bool continuesName(char32_t code)
{
    return startsName(code) || (code >= '0' && code <= '9') || code == '-' || code == '.';
}

bool isPlain(std::string_view text)
{
    return std::none_of(text.begin(), text.end(), [](char letter) { return (unsigned char)letter >= 0x80; });
}

// Which letters beyond ASCII may stand in a name is the parser's to say.
bool isReadableName(const std::string& name)
{
    const std::string element = "<" + name + "/>";
    XML_Parser parser = XML_ParserCreate("UTF-8");
    const bool readable =
        parser && XML_Parse(parser, element.data(), int(element.size()), true) == XML_STATUS_OK;
    XML_ParserFree(parser);
    return readable;
}

// What stands for a byte in a document; null for the byte itself.
struct Spelling
{
    const char* of[256] = {};
    constexpr void Set(char letter, const char* text) { of[(unsigned char)letter] = text; }
};

constexpr Spelling spellingInText()
{
    Spelling spelling;
    spelling.Set('&', "&amp;");
    spelling.Set('<', "&lt;");
    spelling.Set('>', "&gt;");
    spelling.Set('\r', "&#13;");
    return spelling;
}

constexpr Spelling spellingInAttribute()
{
    Spelling spelling = spellingInText();
    spelling.Set('"', "&quot;");
    spelling.Set('\t', "&#9;");
    spelling.Set('\n', "&#10;");
    return spelling;
}

constexpr Spelling IN_TEXT = spellingInText();
constexpr Spelling IN_ATTRIBUTE = spellingInAttribute();

void appendSpelled(std::string& out, std::string_view text, const Spelling& spelling)
{
    size_t start = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        const char* spelled = spelling.of[(unsigned char)text[i]];
        if (!spelled)
            continue;
        out.append(text, start, i - start);
        out += spelled;
        start = i + 1;
    }
    out.append(text, start);
}

} // namespace

bool xmlIsCleanText(std::string_view text)
{
    while (!text.empty()) {
        const Letter letter = firstLetter(text);
        if (!letter.valid || !allowed(letter.code))
            return false;
        text.remove_prefix(letter.size);
    }
    return true;
}

std::string xmlCleanText(std::string_view text)
{
    std::string clean;
    clean.reserve(text.size());
    while (!text.empty()) {
        const Letter letter = firstLetter(text);
        if (!letter.valid)
            clean += REPLACEMENT;
        else if (allowed(letter.code))
            clean += text.substr(0, letter.size);
        text.remove_prefix(letter.size);
    }
    return clean;
}

size_t xmlValidLength(std::string_view text)
{
    size_t length = 0;
    while (length < text.size()) {
        const Letter letter = firstLetter(text.substr(length));
        if (!letter.valid)
            break;
        length += letter.size;
    }
    return length;
}

bool xmlIsBlankText(std::string_view text)
{
    for (const char letter : text)
        if (letter != ' ' && letter != '\n' && letter != '\t' && letter != '\r')
            return false;
    return true;
}

std::string xmlRepairName(std::string_view name)
{
    std::string repaired;
    while (!name.empty() && repaired.size() < LONGEST_NAME) {
        const Letter letter = firstLetter(name);
        const bool fits = repaired.empty() ? startsName(letter.code) : continuesName(letter.code);
        if (letter.valid && fits)
            repaired += name.substr(0, letter.size);
        else
            repaired += '_';
        name.remove_prefix(letter.size);
    }
    if (!isPlain(repaired) && !isReadableName(repaired))
        for (char& byte : repaired)
            byte = (unsigned char)byte >= 0x80 ? '_' : byte;
    return repaired.empty() ? "_" : repaired;
}

void xmlAppendText(std::string& out, std::string_view text)
{
    appendSpelled(out, text, IN_TEXT);
}

void xmlAppendAttribute(std::string& out, std::string_view text)
{
    appendSpelled(out, text, IN_ATTRIBUTE);
}
