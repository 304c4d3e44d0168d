#include "host/web/readHead.h"
#include <QByteArrayList>

namespace {

constexpr QByteArrayView kEnd = "\r\n\r\n";

// As far as it has come.
bool beginsWith(const QByteArray& head, QByteArrayView word)
{
    return QByteArrayView(head).first(qMin(head.size(), word.size())) ==
           word.first(qMin(head.size(), word.size()));
}

// Servers differ in what else they take for the end of a line.
bool hasPlainLines(const QByteArray& head)
{
    for (qsizetype i = 0; i < head.size(); ++i) {
        const bool isEnd = head[i] == '\r' && i + 1 < head.size() && head[i + 1] == '\n';
        if (isEnd)
            ++i;
        else if (head[i] == '\r' || head[i] == '\n' || head[i] == '\0')
            return false;
    }
    return true;
}

bool announcesBody(const QByteArray& head)
{
    const QByteArray lower = head.toLower();
    return lower.contains("\r\ncontent-length") || lower.contains("\r\ntransfer-encoding");
}

bool isReading(const QByteArray& head)
{
    const QByteArray first = head.first(head.indexOf("\r\n"));
    return (first.endsWith(" HTTP/1.1") || first.endsWith(" HTTP/1.0")) && hasPlainLines(head) &&
           !announcesBody(head);
}

} // namespace

HEAD_STATE readHead(const QByteArray& head, qsizetype looked)
{
    if (!beginsWith(head, "GET ") && !beginsWith(head, "HEAD "))
        return HEAD_REFUSED;
    const qsizetype end = head.indexOf(kEnd, qMax<qsizetype>(0, looked - kEnd.size() + 1));
    if (end < 0)
        return head.size() < HEAD_BYTES ? HEAD_COMES : HEAD_REFUSED;
    return end + kEnd.size() == head.size() && isReading(head) ? HEAD_WHOLE : HEAD_REFUSED;
}
