#pragma once
// Whose the other end of a connection within this machine is: a port on the loopback interface is open to
// every user of the machine. Any thread.
#include <QHostAddress>
#include <QIODevice>
#include <QTcpSocket>
#include <optional>
#include <sys/types.h>

namespace peerOwner {

// IPv4, as the socket that is looked for sees them.
struct tagEnds
{
    QHostAddress address;
    quint16 port;
    QHostAddress farAddress;
    quint16 farPort;
};

// The kernel's tables of TCP, of which so many rows are read at most.
enum : int { ROWS = 65536 };

// The user whose socket it is, by one of these tables; none when it has no such open connection.
std::optional<uid_t> uidIn(QIODevice& table, const tagEnds& ends);
// Whether the peer of an accepted connection belongs to this process's user; no when that is not known.
bool isOwn(const QTcpSocket& client);

} // namespace peerOwner
