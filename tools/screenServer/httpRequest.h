#pragma once
// The head of an HTTP request, as it came: nothing in it is decoded.
#include <QByteArray>
#include <QMultiMap>
#include <optional>

struct tagHttpRequest
{
    QByteArray method;
    QByteArray target;
    QMultiMap<QByteArray, QByteArray> fields; // by their names in small letters

    // Null where the field is missing or stands twice, since then nobody knows which of them counts.
    QByteArray field(const char* name) const;
    // The target without its query.
    QByteArray path() const;
    bool isForWebSocket() const;
};

// head: up to and with the empty line. Nothing when it is no request of HTTP/1.1.
std::optional<tagHttpRequest> httpParseHead(const QByteArray& head);
