#include "tools/screenServer/httpRequest.h"
#include <QList>

QByteArray tagHttpRequest::field(const char* name) const
{
    return fields.count(name) == 1 ? fields.value(name) : QByteArray();
}

QByteArray tagHttpRequest::path() const
{
    return target.split('?').first();
}

bool tagHttpRequest::isForWebSocket() const
{
    return fields.contains("upgrade");
}

std::optional<tagHttpRequest> httpParseHead(const QByteArray& head)
{
    const QList<QByteArray> lines = head.left(head.indexOf("\r\n\r\n")).split('\n');
    const QList<QByteArray> words = lines.first().trimmed().split(' ');
    if (words.size() != 3 || words[2] != "HTTP/1.1")
        return std::nullopt;
    tagHttpRequest request = {words[0], words[1], {}};
    for (const QByteArray& line : lines.mid(1)) {
        const qsizetype colon = line.indexOf(':');
        // A blank before the colon or at the start of a line is read in two ways by two programs.
        if (colon <= 0 || line.left(colon).simplified() != line.left(colon))
            return std::nullopt;
        request.fields.insert(line.left(colon).toLower(), line.mid(colon + 1).trimmed());
    }
    return request;
}
