#include "support/xml/xmlDecode.h"

#include <QStringConverter>
#include <algorithm>
#include <optional>
#include <string.h>

namespace {

const char UTF8_MARK[] = "\xef\xbb\xbf";
const char DECLARATION[] = "<?xml";
const size_t PIECE = 4096; // bytes, where a broken letter is looked for
const char UNKNOWN_ENCODING[] = "The encoding is not known.";
const char OTHER_ENCODING[] = "The text is not in the encoding that it names.";

QByteArrayView viewOf(std::string_view text)
{
    return QByteArrayView(text.data(), qsizetype(text.size()));
}

// What the declaration names, in lower case, and where that begins in the text; empty without one.
std::string namedEncoding(std::string_view text, size_t& start)
{
    const size_t end = text.find("?>");
    if (text.substr(0, strlen(DECLARATION)) != DECLARATION || end == text.npos)
        return std::string();
    const std::string_view declaration = text.substr(0, end);
    start = declaration.find_first_of("\"'", declaration.find("encoding"));
    if (declaration.find("encoding") == declaration.npos || start == declaration.npos)
        return std::string();
    const size_t length = declaration.substr(start + 1).find(declaration[start]);
    std::string name(declaration.substr(++start, length));
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char letter) { return letter >= 'A' && letter <= 'Z' ? char(letter + 32) : letter; });
    return name;
}

using Decoder = QStringDecoder;

// The text before the first byte that the decoder does not take.
QString decodedBeginning(std::string_view bytes, Decoder& decoder)
{
    QString text;
    size_t good = 0;
    const auto take = [&](size_t size) {
        const QString piece = decoder(viewOf(bytes.substr(good, size)));
        if (decoder.hasError())
            return false;
        text += piece;
        good += std::min(size, bytes.size() - good);
        return true;
    };
    while (good < bytes.size() && take(PIECE)) {
    }
    decoder.resetState();
    text = decoder(viewOf(bytes.substr(0, good)));
    while (good < bytes.size() && take(1)) {
    }
    return text;
}

// Units before the first half of a pair that stands alone.
qsizetype pairedLength(const QString& text)
{
    qsizetype length = 0;
    for (; length < text.size(); ++length) {
        if (!text[length].isSurrogate())
            continue;
        const bool pair =
            text[length].isHighSurrogate() && length + 1 < text.size() && text[length + 1].isLowSurrogate();
        if (!pair)
            break;
        ++length;
    }
    return length;
}

void decodeWith(std::string_view bytes, Decoder whole, Decoder inPieces, xmlDecoded& result)
{
    QString text = whole(viewOf(bytes));
    const bool good = !whole.hasError();
    if (!good)
        text = decodedBeginning(bytes, inPieces);
    const qsizetype paired = pairedLength(text);
    if (!good || paired < text.size())
        result.error = OTHER_ENCODING;
    text.truncate(paired);
    result.own = text.toStdString();
    result.text = result.own;
}

} // namespace

void xmlDecode(std::string_view bytes, xmlDecoded& result)
{
    const std::optional<QStringConverter::Encoding> wide =
        QStringConverter::encodingForData(viewOf(bytes), u'<');
    if (wide && *wide != QStringConverter::Utf8) {
        const auto whole = QStringConverter::Flag::Stateless;
        decodeWith(bytes, Decoder(*wide, whole), Decoder(*wide), result);
        return;
    }
    const bool marked = bytes.substr(0, strlen(UTF8_MARK)) == UTF8_MARK;
    result.text = bytes.substr(marked ? strlen(UTF8_MARK) : 0);
    size_t place = 0;
    const std::string name = namedEncoding(result.text, place);
    result.plain = name == "us-ascii";
    if (marked || name.empty() || name == "utf-8" || result.plain)
        return;
    const auto whole = QStringConverter::Flag::Stateless;
    Decoder decoder(name.c_str(), whole);
    const bool isWide = name.compare(0, 3, "utf") == 0 || name.find("ucs") != name.npos;
    if (decoder.isValid() && !isWide) {
        decodeWith(bytes, std::move(decoder), Decoder(name.c_str()), result);
        return;
    }
    result.error = isWide ? OTHER_ENCODING : UNKNOWN_ENCODING;
    result.text = result.text.substr(0, place);
}
