#include "tools/signServer/HtmlText.h"
#include <QString>

namespace {

bool IsShown(QChar letter)
{
    const ushort code = letter.unicode();
    const bool turnsText = code == 0x061c || code == 0x200e || code == 0x200f ||
                           (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069);
    return !turnsText && letter.category() != QChar::Other_Control;
}

} // namespace

QByteArray HtmlText(const QByteArray& text)
{
    QString shown = QString::fromUtf8(text);
    for (QChar& letter : shown) {
        if (!IsShown(letter))
            letter = QChar::ReplacementCharacter;
    }
    // It leaves this one quotation mark.
    return shown.toHtmlEscaped().replace('\'', "&#39;").toUtf8();
}

QByteArray HtmlQueryValue(const QByteArray& value)
{
    return value.toPercentEncoding();
}
