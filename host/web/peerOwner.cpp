#include "host/web/peerOwner.h"
#include <QFile>
#include <QtEndian>
#include <unistd.h>

namespace {

constexpr int kLocal = 1, kRemote = 2, kState = 3, kUid = 7; // words of a row
constexpr int kRowBytes = 512;

QByteArray hex(quint32 number, int digits)
{
    return QByteArray::number(number, 16).toUpper().rightJustified(digits, '0');
}

// The kernel writes addresses as the numbers that lie in memory.
QByteArray entry(const QHostAddress& address, quint16 port)
{
    return hex(qToBigEndian(address.toIPv4Address()), 8) + ':' + hex(port, 4);
}

// A socket of IPv6 may speak IPv4 too.
QByteArray mapped(const QByteArray& entry)
{
    return QByteArray(16, '0') + hex(qToBigEndian(quint32(0xffff)), 8) + entry;
}

} // namespace

std::optional<uid_t> peerOwner::uidIn(QIODevice& table, const tagEnds& ends)
{
    const QByteArray local = entry(ends.address, ends.port);
    const QByteArray remote = entry(ends.farAddress, ends.farPort);
    for (int row = 0; row < ROWS; ++row) {
        const QByteArray line = table.readLine(kRowBytes);
        if (line.isEmpty())
            break;
        if (!line.contains(local))
            continue;
        const QByteArrayList words = line.simplified().split(' ');
        const bool isIt = (words.value(kLocal) == local && words.value(kRemote) == remote) ||
                          (words.value(kLocal) == mapped(local) && words.value(kRemote) == mapped(remote));
        // One that its process has closed is written down as the superuser's.
        if (!isIt || words.value(kState) != "01")
            continue;
        bool isNumber = false;
        const uid_t uid = words.value(kUid).toUInt(&isNumber);
        return isNumber ? std::optional(uid) : std::nullopt;
    }
    return std::nullopt;
}

bool peerOwner::isOwn(const QTcpSocket& client)
{
    const tagEnds ends{client.peerAddress(), client.peerPort(), client.localAddress(), client.localPort()};
    for (const char* name : {"/proc/net/tcp", "/proc/net/tcp6"}) {
        QFile table(name);
        if (!table.open(QIODevice::ReadOnly))
            continue;
        if (const std::optional<uid_t> uid = uidIn(table, ends))
            return *uid == geteuid();
    }
    return false;
}
