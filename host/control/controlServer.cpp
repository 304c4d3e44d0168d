#include "host/control/controlServer.h"
#include "host/control/controlCommands.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QPointer>
#include <QSocketNotifier>
#include <QTimer>
#include <cerrno>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr int kLongestRequest = 1 << 20;
constexpr int kBacklog = 64;
constexpr int kRetryMs = 200; // until the next is let in when descriptors have run out

// For its owner alone from the moment it can be found.
int listenerAt(const QByteArray& path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.isEmpty() || path.size() >= int(sizeof address.sun_path))
        return -1;
    memcpy(address.sun_path, path.constData(), size_t(path.size()));
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd >= 0 && fchmod(fd, S_IRUSR | S_IWUSR) == 0 &&
        bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
        chmod(address.sun_path, S_IRUSR | S_IWUSR) == 0 && ::listen(fd, kBacklog) == 0)
        return fd;
    if (fd >= 0)
        close(fd);
    return -1;
}

QStringList wordsOf(const QByteArray& line)
{
    QStringList words;
    const QJsonArray array = QJsonDocument::fromJson(line).array();
    for (const QJsonValue& word : array)
        words.append(word.toString());
    return words;
}

QByteArray lineOf(const QJsonValue& value)
{
    if (value.isObject())
        return QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact) + '\n';
    if (value.isArray())
        return QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact) + '\n';
    // A bare value is written as the one element of an array, without its brackets.
    const QByteArray wrapped = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return wrapped.mid(1, wrapped.size() - 2) + '\n';
}

} // namespace

controlServer::controlServer(QObject* parent) : QObject(parent) {}

controlServer::~controlServer()
{
    // The sockets are children: they end after this object's own fields.
    for (QLocalSocket* client : findChildren<QLocalSocket*>())
        client->disconnect(this);
    if (m_nListener < 0)
        return;
    delete m_pNotifier;
    close(m_nListener);
    unlink(m_path.constData());
}

bool controlServer::listen(const QString& path)
{
    QLocalSocket probe;
    probe.connectToServer(path);
    if (probe.waitForConnected(200))
        return false;
    m_path = path.toLocal8Bit();
    struct stat info;
    // Left behind by a phone that died; nothing else is taken away.
    if (lstat(m_path.constData(), &info) == 0 && S_ISSOCK(info.st_mode))
        unlink(m_path.constData());
    m_nListener = listenerAt(m_path);
    if (m_nListener < 0)
        return false;
    m_pNotifier = new QSocketNotifier(m_nListener, QSocketNotifier::Read, this);
    connect(m_pNotifier, &QSocketNotifier::activated, this, &controlServer::acceptAll);
    return true;
}

// The toolkit's own server closes for good when descriptors run out; this one waits until there are some.
void controlServer::acceptAll()
{
    for (;;) {
        const int fd = accept4(m_nListener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (fd >= 0) {
            serve(fd);
            continue;
        }
        if (errno == EINTR || errno == ECONNABORTED)
            continue;
        if (errno == EAGAIN || errno == EWOULDBLOCK)
            return;
        m_pNotifier->setEnabled(false);
        QTimer::singleShot(kRetryMs, this, [this] { m_pNotifier->setEnabled(true); });
        return;
    }
}

void controlServer::serve(int descriptor)
{
    auto* client = new QLocalSocket(this);
    if (!client->setSocketDescriptor(descriptor)) {
        close(descriptor);
        delete client;
        return;
    }
    connect(client, &QLocalSocket::readyRead, this, [this, client] { read(client); });
    connect(client, &QLocalSocket::disconnected, this, [this, client] {
        m_input.remove(client);
        client->deleteLater();
    });
    read(client);
}

void controlServer::read(QLocalSocket* client)
{
    QByteArray& input = m_input[client];
    input += client->readAll();
    if (input.size() > kLongestRequest) {
        client->abort();
        return;
    }
    // A command may end the client, and its input with it.
    while (m_input.contains(client) && m_input[client].contains('\n')) {
        QByteArray& rest = m_input[client];
        const qsizetype end = rest.indexOf('\n');
        const QByteArray line = rest.left(end);
        rest.remove(0, end + 1);
        answer(client, line);
    }
}

void controlServer::answer(QLocalSocket* client, const QByteArray& line)
{
    QPointer<QLocalSocket> peer(client);
    controlRun(wordsOf(line), [peer](const QJsonValue& value) {
        if (!peer)
            return;
        peer->write(lineOf(value));
        peer->flush();
    });
}
