#include "tools/screenServer/pageConnection.h"
#include "tools/screenServer/webSocket.h"

namespace {

constexpr qint64 kHeadLimit = 16 << 10;
constexpr int kPatienceMs = 10000;
const char* const kText = "text/plain; charset=utf-8";

// The address holds the token: it is not passed on, not kept, and nothing else may show this page within its
// own.
const char* const kGuards = "Referrer-Policy: no-referrer\r\n"
                            "Cache-Control: no-store\r\n"
                            "X-Content-Type-Options: nosniff\r\n"
                            "Cross-Origin-Resource-Policy: same-origin\r\n"
                            "Content-Security-Policy: frame-ancestors 'none'\r\n";

} // namespace

PageConnection::PageConnection(QTcpSocket* socket, const AccessRule& rule, const PageFolder& folder,
                               QObject* parent)
    : QObject(parent), m_pSocket(socket), m_rule(rule), m_folder(folder)
{
    m_pSocket->setParent(this);
    m_pSocket->setReadBufferSize(kHeadLimit);
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, &QObject::deleteLater);
    connect(m_pSocket, &QTcpSocket::readyRead, this, &PageConnection::onBytes);
    connect(m_pSocket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
}

void PageConnection::begin()
{
    m_patience.start(kPatienceMs);
    onBytes();
}

void PageConnection::onBytes()
{
    const QByteArray seen = m_pSocket->peek(kHeadLimit);
    const qsizetype end = seen.indexOf("\r\n\r\n");
    if (end < 0 && seen.size() < kHeadLimit)
        return;
    disconnect(m_pSocket, &QTcpSocket::readyRead, this, nullptr);
    const QByteArray head = m_pSocket->read(end + 4);
    const std::optional<tagHttpRequest> request = end < 0 ? std::nullopt : httpParseHead(head);
    if (request)
        reply(*request);
    else
        send("400 Bad Request", kText, "This is no request.\n");
}

void PageConnection::reply(const tagHttpRequest& request)
{
    const std::optional<QByteArray> path = m_rule.admittedPath(request);
    const bool isRead = request.method == "GET" || request.method == "HEAD";
    const bool withBody = request.method != "HEAD";
    if (!path)
        send("403 Forbidden", kText, "Open the address that ./run has printed.\n", withBody);
    else if (!isRead)
        send("405 Method Not Allowed", kText, "This page is only read.\n", true, "Allow: GET, HEAD\r\n");
    else if (request.isForWebSocket() && *path == "screen")
        replyScreen(request);
    else if (path->isEmpty()) {
        const QByteArray start = request.path().replace("/", "");
        send("302 Found", kText, "", withBody,
             "Location: /" + start + "/vnc.html?autoconnect=1&resize=scale&path=" + start + "/screen\r\n");
    } else
        replyFile(*path, withBody);
}

void PageConnection::replyFile(const QByteArray& path, bool withBody)
{
    const std::optional<QByteArray> content = m_folder.read(path);
    if (content)
        send("200 OK", PageFolder::contentType(path), *content, withBody);
    else
        send("404 Not Found", kText, "There is no such file.\n", withBody);
}

void PageConnection::send(const char* status, const QByteArray& type, const QByteArray& body, bool withBody,
                          const QByteArray& field)
{
    m_pSocket->write(QByteArray("HTTP/1.1 ") + status + "\r\nContent-Type: " + type +
                     "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\nConnection: close\r\n" +
                     kGuards + field + "\r\n");
    if (withBody)
        m_pSocket->write(body);
    // A slow reader gets more time for as long as it reads.
    connect(m_pSocket, &QTcpSocket::bytesWritten, &m_patience, qOverload<>(&QTimer::start));
    m_pSocket->disconnectFromHost();
}

void PageConnection::replyScreen(const tagHttpRequest& request)
{
    if (!WebSocket::isRight(request)) {
        send("426 Upgrade Required", kText, "The screen speaks the WebSocket protocol, version 13.\n", true,
             "Upgrade: websocket\r\nSec-WebSocket-Version: 13\r\n");
        return;
    }
    QTcpSocket* const socket = m_pSocket;
    socket->disconnect(this);
    socket->setParent(nullptr);
    m_patience.stop();
    deleteLater();
    emit screenWanted(socket, request);
}
