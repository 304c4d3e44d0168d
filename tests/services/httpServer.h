#pragma once
// A web server of the test's own, which can misbehave: it answers with the bytes it is told, and closes
// or stays as it is told.
#include <QByteArray>
#include <QList>
#include <QTcpServer>
#include <QTcpSocket>
#include <functional>

class httpServer
{
public:
    // Called with each complete request; path: with its query.
    std::function<void(QTcpSocket& socket, const QByteArray& path)> onRequest;

    explicit httpServer(const QHostAddress& address = QHostAddress::LocalHost);
    QByteArray url(const QByteArray& path) const;
    void close() { m_server.close(); }

    static QByteArray head(const QByteArray& status, const QList<QByteArray>& fields);
    // A whole answer with its length.
    static QByteArray answer(const QByteArray& body, const QByteArray& status = "200 OK");

    QList<QByteArray> paths;    // of the requests so far
    QList<QByteArray> requests; // with their heads
    int opened = 0;             // connections
    int closed = 0;             // connections that the client ended

private:
    void onConnection();
    void onData(QTcpSocket* socket);

    QTcpServer m_server;
};
