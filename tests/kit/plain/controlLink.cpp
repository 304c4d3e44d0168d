#include "tests/kit/plain/controlLink.h"
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QThread>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr int kTryAgainMs = 20;

int connectTo(const QByteArray& path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd >= 0 && connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0)
        return fd;
    if (fd >= 0)
        ::close(fd);
    return -1;
}

} // namespace

ControlLink::~ControlLink()
{
    close();
}

bool ControlLink::open(const QString& socket, int ms)
{
    close();
    QElapsedTimer waited;
    for (waited.start(); waited.elapsed() < ms; QThread::msleep(kTryAgainMs)) {
        m_nSocket = connectTo(socket.toLocal8Bit());
        if (isOpen())
            return true;
    }
    return false;
}

void ControlLink::close()
{
    if (isOpen())
        ::close(m_nSocket);
    m_nSocket = -1;
    m_input.clear();
}

bool ControlLink::isAlive() const
{
    pollfd look = {m_nSocket, POLLRDHUP, 0};
    return isOpen() && poll(&look, 1, 0) == 0;
}

QJsonValue ControlLink::ask(const QStringList& words, int ms)
{
    QElapsedTimer took;
    took.start();
    const QByteArray line =
        QJsonDocument(QJsonArray::fromStringList(words)).toJson(QJsonDocument::Compact) + '\n';
    const QByteArray answer = send(line) ? receive(ms) : QByteArray();
    m_tookMs = double(took.nsecsElapsed()) / 1e6;
    if (answer.isEmpty())
        close();
    return QJsonDocument::fromJson('[' + answer + ']').array().first();
}

bool ControlLink::send(const QByteArray& line)
{
    for (qsizetype sent = 0; isOpen() && sent < line.size();) {
        const ssize_t now =
            ::send(m_nSocket, line.constData() + sent, size_t(line.size() - sent), MSG_NOSIGNAL);
        if (now <= 0)
            return false;
        sent += now;
    }
    return isOpen();
}

QByteArray ControlLink::receive(int ms)
{
    char block[65536];
    while (!m_input.contains('\n')) {
        pollfd look = {m_nSocket, POLLIN, 0};
        const ssize_t count = poll(&look, 1, ms) > 0 ? read(m_nSocket, block, sizeof block) : 0;
        if (count <= 0)
            return QByteArray();
        m_input.append(block, count);
    }
    const qsizetype end = m_input.indexOf('\n');
    const QByteArray line = m_input.left(end);
    m_input.remove(0, end + 1);
    return line;
}
