#include "tools/signServer/RequestText.h"

const char* const CannotBeSent = "cannot be sent by a phone: it holds '&', '#' or an escape such as %41";

namespace {

bool IsHexDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool IsPlainByte(char c, bool inQuery)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte > ' ' && byte != 0x7f && c != '#' && !(inQuery && c == '?');
}

void AppendEncoded(QByteArray& out, char c)
{
    out += '%';
    out += QByteArray(1, c).toHex().toUpper();
}

// Their names count in every escape and in every case of letters, wherever they stand.
QByteArray WithoutSecrets(const QByteArray& target)
{
    QByteArray out, name;
    bool isSecret = false;
    for (char c : target) {
        const bool isEnd = c == '&' || c == '?';
        if (isEnd)
            isSecret = false;
        if (!isSecret)
            out += c;
        if (c == '=' && !isSecret && PercentDecoded(name).toLower().contains("password")) {
            isSecret = true;
            out += "***";
        }
        name = isEnd ? QByteArray() : name + c;
    }
    return out;
}

} // namespace

QByteArray PercentDecoded(const QByteArray& text)
{
    QByteArray out;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool encoded =
            text[i] == '%' && i + 2 < text.size() && IsHexDigit(text[i + 1]) && IsHexDigit(text[i + 2]);
        if (encoded) {
            out += QByteArray::fromHex(text.mid(i + 1, 2));
            i += 2;
        } else {
            out += text[i];
        }
    }
    return out;
}

QByteArray TidyRequestLine(const QByteArray& line)
{
    const qsizetype from = line.indexOf(' ') + 1;
    const qsizetype to = line.lastIndexOf(" HTTP/");
    if (from == 0 || to < from)
        return line;
    QByteArray target;
    bool inQuery = false;
    for (char c : line.mid(from, to - from)) {
        if (IsPlainByte(c, inQuery))
            target += c;
        else
            AppendEncoded(target, c);
        inQuery = inQuery || c == '?';
    }
    return line.left(from) + target + line.mid(to);
}

QByteArray LoggableTarget(const QByteArray& target)
{
    QByteArray out;
    for (char c : target) {
        if (IsPlainByte(c, false) || c == ' ')
            out += c;
        else
            AppendEncoded(out, c);
    }
    return WithoutSecrets(out);
}

bool ArrivesAsSent(const QByteArray& value)
{
    return !value.contains('&') && !value.contains('#') && PercentDecoded(value) == value;
}

RequestText::RequestText(const QByteArray& target)
{
    const qsizetype mark = target.indexOf('?');
    path = PercentDecoded(mark < 0 ? target : target.left(mark));
    if (mark < 0)
        return;
    for (const QByteArray& pair : target.mid(mark + 1).split('&')) {
        const qsizetype equals = pair.indexOf('=');
        const QByteArray name = PercentDecoded(equals < 0 ? pair : pair.left(equals));
        if (!name.isEmpty() && !m_values.contains(name))
            m_values[name] = equals < 0 ? QByteArray() : PercentDecoded(pair.mid(equals + 1));
    }
}
