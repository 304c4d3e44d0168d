#include "tests/services/httpServer.h"

httpServer::httpServer(const QHostAddress& address)
{
    QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { onConnection(); });
    m_server.listen(address);
}

QByteArray httpServer::url(const QByteArray& path) const
{
    return "http://" + m_server.serverAddress().toString().toUtf8() + ":" +
           QByteArray::number(m_server.serverPort()) + path;
}

QByteArray httpServer::head(const QByteArray& status, const QList<QByteArray>& fields)
{
    QByteArray text = "HTTP/1.1 " + status + "\r\n";
    for (const QByteArray& field : fields)
        text += field + "\r\n";
    return text + "\r\n";
}

QByteArray httpServer::answer(const QByteArray& body, const QByteArray& status)
{
    return head(status, {"Content-Length: " + QByteArray::number(body.size())}) + body;
}

void httpServer::onConnection()
{
    while (QTcpSocket* socket = m_server.nextPendingConnection()) {
        ++opened;
        QObject::connect(socket, &QTcpSocket::readyRead, &m_server, [this, socket] { onData(socket); });
        QObject::connect(socket, &QTcpSocket::disconnected, &m_server, [this] { ++closed; });
    }
}

void httpServer::onData(QTcpSocket* socket)
{
    QByteArray got = socket->property("got").toByteArray() + socket->readAll();
    qsizetype end = got.indexOf("\r\n\r\n");
    while (end >= 0) {
        const QByteArray request = got.left(end);
        got.remove(0, end + 4);
        socket->setProperty("got", got);
        const QByteArray path = request.split(' ').value(1);
        paths.append(path);
        requests.append(request);
        if (onRequest)
            onRequest(*socket, path);
        end = got.indexOf("\r\n\r\n");
    }
    socket->setProperty("got", got);
}
