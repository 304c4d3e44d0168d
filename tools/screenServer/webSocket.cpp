#include "tools/screenServer/webSocket.h"
#include <QCryptographicHash>
#include <QtEndian>
#include <sys/socket.h>

namespace {

constexpr qint64 kChunk = 64 << 10;
constexpr qint64 kPongs = 64 << 10; // that wait for somebody who does not read
constexpr int kGoodbyeMs = 2000;
constexpr int kKeyBytes = 16;
const char* const kSalt = "258EAFA5-E914-47DA-95CA-C5AB0DC85B11";

bool namesToken(const QByteArray& field, const char* token)
{
    for (const QByteArray& one : field.split(',')) {
        if (one.trimmed().compare(token, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

QByteArray acceptOf(const QByteArray& key)
{
    return QCryptographicHash::hash(key + kSalt, QCryptographicHash::Sha1).toBase64();
}

// The server's frames are not masked.
QByteArray frameOf(int opcode, const QByteArray& payload)
{
    constexpr int kLast = 0x80, kLength16 = 126, kLength64 = 127;
    QByteArray head(1, char(kLast | opcode));
    const qsizetype length = payload.size();
    if (length < kLength16) {
        head += char(length);
    } else if (length <= 0xffff) {
        const auto number = qToBigEndian(quint16(length));
        head += char(kLength16);
        head.append(reinterpret_cast<const char*>(&number), sizeof number);
    } else {
        const auto number = qToBigEndian(quint64(length));
        head += char(kLength64);
        head.append(reinterpret_cast<const char*>(&number), sizeof number);
    }
    return head + payload;
}

} // namespace

bool WebSocket::isRight(const tagHttpRequest& request)
{
    const auto key = QByteArray::fromBase64Encoding(request.field("sec-websocket-key"),
                                                    QByteArray::AbortOnBase64DecodingErrors);
    return request.method == "GET" && namesToken(request.field("upgrade"), "websocket") &&
           namesToken(request.field("connection"), "upgrade") &&
           request.field("sec-websocket-version") == "13" && key && (*key).size() == kKeyBytes;
}

WebSocket::WebSocket(QTcpSocket* socket, const tagHttpRequest& request, QObject* parent)
    : QObject(parent), m_pSocket(socket)
{
    m_pSocket->setParent(this);
    m_pSocket->setReadBufferSize(kChunk);
    m_goodbye.setSingleShot(true);
    connect(&m_goodbye, &QTimer::timeout, this, &WebSocket::end);
    connect(m_pSocket, &QTcpSocket::readyRead, this, &WebSocket::onBytes);
    connect(m_pSocket, &QTcpSocket::bytesWritten, this, &WebSocket::onWritten);
    connect(m_pSocket, &QTcpSocket::disconnected, this, &WebSocket::end);
    m_pSocket->write("HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
                     "Sec-WebSocket-Accept: " +
                     acceptOf(request.field("sec-websocket-key")) + "\r\n\r\n");
}

void WebSocket::send(const QByteArray& bytes)
{
    sendFrame(WEB_SOCKET_BINARY, bytes);
}

void WebSocket::sendFrame(int opcode, const QByteArray& payload)
{
    if (m_eState == OPEN)
        m_pSocket->write(frameOf(opcode, payload));
}

QByteArray WebSocket::read()
{
    while (m_eState == OPEN) {
        while (const std::optional<tagWebSocketMessage> message = m_reader.next()) {
            if (message->nOpcode != WEB_SOCKET_BINARY)
                answer(*message);
            else if (!message->payload.isEmpty())
                return message->payload;
        }
        if (m_reader.failure())
            close(m_reader.failure());
        const QByteArray bytes = m_pSocket->read(kChunk);
        if (bytes.isEmpty())
            break;
        m_reader.add(bytes);
    }
    return QByteArray();
}

void WebSocket::answer(const tagWebSocketMessage& control)
{
    if (control.nOpcode == WEB_SOCKET_PING && bytesToWrite() < kPongs)
        sendFrame(WEB_SOCKET_PONG, control.payload);
    else if (control.nOpcode == WEB_SOCKET_CLOSE)
        closeWith(control.payload.left(2));
}

void WebSocket::close(int code, const QByteArray& reason)
{
    const auto number = qToBigEndian(quint16(code));
    closeWith(QByteArray(reinterpret_cast<const char*>(&number), sizeof number) + reason);
}

// Who ends a connection in which something is unread makes a reset of it, and the reason would be lost.
void WebSocket::closeWith(const QByteArray& payload)
{
    if (m_eState != OPEN)
        return;
    sendFrame(WEB_SOCKET_CLOSE, payload);
    m_eState = CLOSING;
    m_goodbye.start(kGoodbyeMs);
    onWritten();
    onBytes();
}

void WebSocket::onWritten()
{
    if (m_eState == CLOSING && m_pSocket->bytesToWrite() == 0)
        ::shutdown(int(m_pSocket->socketDescriptor()), SHUT_WR);
    else if (m_eState == OPEN)
        emit written();
}

void WebSocket::onBytes()
{
    if (m_eState == OPEN)
        emit arrived();
    else
        m_pSocket->readAll();
}

void WebSocket::end()
{
    if (m_eState == ENDED)
        return;
    m_eState = ENDED;
    m_goodbye.stop();
    emit ended();
}
