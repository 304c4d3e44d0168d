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

// How the kernel answers a question for one connection.
enum ANSWER {
    ANSWER_FOUND,
    ANSWER_NOT_OPEN, // there is none, or its process has closed it
    ANSWER_REFUSED   // it may not be asked, or not in this way
};

// The user whose socket it is, by one question whose cost does not depend on how many there are.
ANSWER ask(const tagEnds& ends, uid_t& uid);
// The same by one of the tables; none when it has no such open connection.
std::optional<uid_t> uidIn(QIODevice& table, const tagEnds& ends);
// By one of the two tables, which cost the more the more sockets there are.
std::optional<uid_t> uidInTables(const tagEnds& ends);
// Whether the peer of an accepted connection belongs to this process's user; no when that is not known.
bool isOwn(const QTcpSocket& client);

} // namespace peerOwner
