#pragma once
// The server's end of a WebSocket that carries bytes (RFC 6455).
#include "tools/screenServer/httpRequest.h"
#include "tools/screenServer/webSocketReader.h"
#include <QTcpSocket>
#include <QTimer>

class WebSocket : public QObject
{
    Q_OBJECT

public:
    // Bytes of a message.
    enum : int { MESSAGE_LIMIT = 1 << 20 };

    // A request to change over is one by the letter: method, version, key and fields.
    static bool isRight(const tagHttpRequest& request);
    // Takes the socket, from which the request's head has been read, and answers it.
    WebSocket(QTcpSocket* socket, const tagHttpRequest& request, QObject* parent);

    void send(const QByteArray& bytes);
    qint64 bytesToWrite() const { return m_pSocket->bytesToWrite(); }
    // What has come; empty when that is not a whole message.
    QByteArray read();
    // Says why, and waits a moment for the other side to have read it. Again: does nothing.
    void close(int code, const QByteArray& reason = {});

signals:
    // read() may have something.
    void arrived();
    void written();
    // Nothing comes and nothing goes any more.
    void ended();

private:
    enum STATE { OPEN, CLOSING, ENDED };

    void sendFrame(int opcode, const QByteArray& payload);
    void answer(const tagWebSocketMessage& control);
    void closeWith(const QByteArray& payload);
    void onWritten();
    void onBytes();
    void end();

    QTcpSocket* m_pSocket;
    WebSocketReader m_reader{MESSAGE_LIMIT};
    QTimer m_goodbye;
    STATE m_eState = OPEN;
};
