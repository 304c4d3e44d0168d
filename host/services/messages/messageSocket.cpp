#include "host/services/messages/messageSocket.h"
#include "host/services/system/runAddress.h"
#include "host/services/system/runFolder.h"
#include <QDir>
#include <cctype>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int kMaxName = 64;
constexpr int kBacklog = 64;

QByteArray folderPath()
{
    return QByteArray::fromStdString(runFolder::path());
}

int newSocket()
{
    return socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

int closeFailed(int fd)
{
    if (fd >= 0)
        close(fd);
    return -1;
}

// The lock ends with its process, however that ends, so a socket without one is a dead process's.
int takeLock(const QByteArray& name)
{
    const QByteArray path = folderPath() + '/' + name + ".lock";
    const int fd = open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    return fd >= 0 && flock(fd, LOCK_EX | LOCK_NB) == 0 ? fd : closeFailed(fd);
}

} // namespace

bool messageSocket::isValidName(const QByteArray& name)
{
    if (name.isEmpty() || name.size() > kMaxName || name.startsWith('.'))
        return false;
    for (const char c : name) {
        if (!isalnum(static_cast<unsigned char>(c)) && c != '_' && c != '-' && c != '.')
            return false;
    }
    return true;
}

int messageSocket::listenAs(const QByteArray& name, int& lock)
{
    lock = -1;
    if (!isValidName(name) || !runFolder::make())
        return -1;
    lock = takeLock(name);
    if (lock < 0)
        return -1;
    removeName(name);
    const runAddress address((name + ".sock").toStdString());
    const int fd = newSocket();
    if (fd >= 0 && bind(fd, address.get(), runAddress::size()) == 0 && chmod(address.path(), 0600) == 0 &&
        listen(fd, kBacklog) == 0)
        return fd;
    lock = closeFailed(lock);
    return closeFailed(fd);
}

bool messageSocket::isTaken(const QByteArray& name)
{
    const QByteArray path = folderPath() + '/' + name + ".lock";
    const int fd = isValidName(name) ? open(path.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW) : -1;
    const bool taken = fd >= 0 && flock(fd, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    closeFailed(fd);
    return taken;
}

void messageSocket::removeName(const QByteArray& name)
{
    unlink((folderPath() + '/' + name + ".sock").constData());
}

void messageSocket::removeDead(const QByteArray& name)
{
    const int lock = isValidName(name) ? takeLock(name) : -1;
    if (lock < 0)
        return;
    removeName(name);
    close(lock);
}

int messageSocket::connectTo(const QByteArray& name)
{
    if (!isValidName(name))
        return -1;
    const runAddress address((name + ".sock").toStdString());
    const int fd = newSocket();
    if (fd >= 0 && connect(fd, address.get(), runAddress::size()) == 0 && isSameUser(fd))
        return fd;
    return closeFailed(fd);
}

int messageSocket::acceptFrom(int listener)
{
    const int fd = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    return fd >= 0 && isSameUser(fd) ? fd : closeFailed(fd);
}

bool messageSocket::isSameUser(int socket)
{
    ucred peer = {};
    socklen_t size = sizeof peer;
    return getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == geteuid();
}

bool messageSocket::isClosed(int socket)
{
    pollfd look = {socket, POLLRDHUP, 0};
    return poll(&look, 1, 0) > 0 && (look.revents & (POLLRDHUP | POLLHUP | POLLERR));
}

QList<QByteArray> messageSocket::names()
{
    QList<QByteArray> found;
    const QDir folder(QString::fromLocal8Bit(folderPath()));
    for (const QString& file : folder.entryList({"*.sock"}, QDir::System | QDir::Files)) {
        const QByteArray name = file.left(file.size() - 5).toLocal8Bit();
        if (isValidName(name))
            found.append(name);
    }
    return found;
}
