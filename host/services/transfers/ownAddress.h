#pragma once
// Whether an address is one of this machine, whose services trust those who are on it. What servers and texts
// from elsewhere must not reach. Any thread.
#include <QHostAddress>
#include <QList>

namespace ownAddress {

// Loopback, link-local, "any", which is this machine as well, and those of its interfaces, in either form.
bool isOwn(const QHostAddress& address);
// What a name stands for: one such address is enough. A name of nothing is nobody's.
bool isAnyOwn(const QList<QHostAddress>& addresses);

using Interfaces = QList<QHostAddress> (*)();
// Where the addresses of the interfaces come from; asked each time. For tests, which have no other machine.
Interfaces& interfaces();

} // namespace ownAddress
