#pragma once
// Where a server may send a transfer on to: to a server, and never to less safety. Which machine that is
// shows only where it is connected to; httpRequest judges it there. Any thread.
#include <QUrl>

namespace redirectRule {

bool isAllowed(const QUrl& from, const QUrl& to);

} // namespace redirectRule
