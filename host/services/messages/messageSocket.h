#pragma once
// The sockets of the run folder "/rundata/run": NAME.sock, one for each named thread that listens, and
// NAME.lock, which its process holds. Descriptors are the caller's to close; -1 means failed.
#include "support/host/api.h"
#include <QByteArray>
#include <QList>

namespace messageSocket {

// 1 to 64 letters, digits, "_", "-" and ".", the first no ".".
bool isValidName(const QByteArray& name);
// Takes the name, which no other process may hold, and listens. lock: kept open as long as the name is.
int listenAs(const QByteArray& name, int& lock);
// True when a process that is alive holds the name.
bool isTaken(const QByteArray& name);
void removeName(const QByteArray& name);
// The same, but only when no live process holds it.
void removeDead(const QByteArray& name);
// Never waits.
int connectTo(const QByteArray& name);
int acceptFrom(int listener);
// True when the process at the other end runs for the same user.
HX_HOST_API bool isSameUser(int socket);
// True when the other end has closed.
bool isClosed(int socket);
// Names that have a socket, also of processes that died.
QList<QByteArray> names();

} // namespace messageSocket
