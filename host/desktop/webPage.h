#pragma once
// What may be opened, and what the bytes of a page say. Any thread.
#include <QByteArray>
#include <QString>

class QUrl;

namespace webPage {

// http and https with a host, and nothing else: no files of the phone, no scripts.
bool isAllowed(const QUrl& address);
// False for pictures, programs and the like.
bool isText(const QByteArray& content);
// In the encoding that the page says it is in; UTF-8 otherwise.
QString textOf(const QByteArray& content);

} // namespace webPage
