#include "host/services/phone/callNumber.h"

namespace {

bool isUnseen(QChar letter)
{
    switch (letter.category()) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

// Beside letters and digits.
bool mayStandInAddress(QChar letter)
{
    return QStringLiteral("+*#.-_~!()&=,;:@%?[]$").contains(letter);
}

bool isPlainNumber(const QString& text)
{
    for (const QChar letter : text) {
        if (!QStringLiteral("0123456789+*#.- ()").contains(letter))
            return false;
    }
    return true;
}

struct tagParts
{
    QString user;
    QString host;
};

tagParts partsOf(const QString& number)
{
    QString rest = number.trimmed();
    for (const char* scheme : {"sip:", "sips:"}) {
        if (rest.startsWith(QLatin1String(scheme), Qt::CaseInsensitive))
            rest = rest.mid(int(qstrlen(scheme)));
    }
    rest = rest.section(';', 0, 0);
    const qsizetype at = rest.indexOf('@');
    return at < 0 ? tagParts{rest, QString()} : tagParts{rest.left(at), rest.mid(at + 1).section(':', 0, 0)};
}

} // namespace

QString callNumberOf(const QString& typed)
{
    QString number = typed.trimmed();
    if (isPlainNumber(number))
        number.removeIf([](QChar letter) { return QStringLiteral("- ()").contains(letter); });
    if (number.size() > CALL_NUMBER_MAX)
        return QString();
    for (const QChar letter : std::as_const(number)) {
        if (!letter.isLetterOrNumber() && !letter.isSurrogate() && !letter.isMark() &&
            !mayStandInAddress(letter))
            return QString();
    }
    return number;
}

QString callTextOf(const QString& received)
{
    QString text = received.left(CALL_NUMBER_MAX);
    text.removeIf(isUnseen);
    return text;
}

bool callIsSameNumber(const QString& one, const QString& other)
{
    const tagParts a = partsOf(one);
    const tagParts b = partsOf(other);
    if (a.user.isEmpty() || a.user != b.user)
        return false;
    return a.host.isEmpty() || b.host.isEmpty() || a.host.compare(b.host, Qt::CaseInsensitive) == 0;
}

QString callNumberAt(const QString& address, const QString& server, int port)
{
    constexpr int kUsualPort = 5060;
    QString rest = address.section(';', 0, 0);
    for (const char* scheme : {"sip:", "sips:"}) {
        if (rest.startsWith(QLatin1String(scheme), Qt::CaseInsensitive))
            rest = rest.mid(int(qstrlen(scheme)));
    }
    const qsizetype at = rest.indexOf('@');
    const QString place = rest.mid(at + 1);
    const QString host = place.startsWith('[') ? place.section(']', 0, 0).mid(1) : place.section(':', 0, 0);
    const QString named = place.startsWith('[') ? place.section("]:", 1) : place.section(':', 1);
    const int there = named.isEmpty() ? 0 : named.toInt();
    const bool isPortSame = there == 0 || there == (port > 0 ? port : kUsualPort);
    const bool isServers = at > 0 && isPortSame && host.compare(server, Qt::CaseInsensitive) == 0;
    return callTextOf(isServers ? QString::fromUtf8(QByteArray::fromPercentEncoding(rest.left(at).toUtf8()))
                                : rest);
}
