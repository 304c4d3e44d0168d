#include "host/input/imeLetters.h"
#include <QStringList>

namespace {

// As printed on the keys: the letters, then the digit itself. "1" has what names and addresses of
// accounts are made of, "*" the other signs; "#" stays what it is.
const char* const kLetters[] = {" 0",   ".@-_/:1,?!'\"()", "abc2", "def3", "ghi4", "jkl5",
                                "mno6", "pqrs7",           "tuv8", "wxyz9"};
const char kSigns[] = "*+=&%$#~^|\\<>[]{};`";

bool writesDigits(const QString& method)
{
    return method == QLatin1String("123") || method == QLatin1String("123_IP");
}

QString digitOf(const QString& method, QChar key)
{
    if (method == QLatin1String("123_IP") && !key.isDigit())
        return key == QLatin1Char('*') ? QStringLiteral(".") : QString();
    return key;
}

bool isUpper(const QString& method, bool atStart)
{
    return method == QLatin1String("ABC") || (method == QLatin1String("2aB") && atStart);
}

} // namespace

bool imeIsMethod(const QString& method)
{
    static const QStringList methods{"2aB", "ABC", "abc", "123", "123_IP"};
    return methods.contains(method);
}

QString imeLetters(const QString& method, QChar key, bool atStart)
{
    if (writesDigits(method))
        return digitOf(method, key);
    if (key == QLatin1Char('*'))
        return QLatin1String(kSigns);
    if (!key.isDigit())
        return key;
    const QString letters = QLatin1String(kLetters[key.digitValue()]);
    return isUpper(method, atStart) ? letters.toUpper() : letters;
}
