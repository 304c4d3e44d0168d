#include "host/control/controlServer.h"
#include "host/control/controlCommands.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QPointer>

namespace {

constexpr int kLongestRequest = 1 << 20;

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

controlServer::controlServer(QObject* parent) : QObject(parent)
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &controlServer::accept);
}

controlServer::~controlServer()
{
    // The sockets are the server's children: they end after this object's own fields.
    for (QLocalSocket* client : m_server.findChildren<QLocalSocket*>())
        client->disconnect(this);
}

bool controlServer::listen(const QString& path)
{
    QLocalSocket probe;
    probe.connectToServer(path);
    if (probe.waitForConnected(200))
        return false;
    // Left behind by a phone that died.
    QLocalServer::removeServer(path);
    return m_server.listen(path);
}

void controlServer::accept()
{
    while (QLocalSocket* client = m_server.nextPendingConnection()) {
        connect(client, &QLocalSocket::readyRead, this, [this, client] { read(client); });
        connect(client, &QLocalSocket::disconnected, this, [this, client] {
            m_input.remove(client);
            client->deleteLater();
        });
        read(client);
    }
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
