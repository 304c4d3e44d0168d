#pragma once
// What a client says in the WebSocket protocol (RFC 6455), held to its letter: messages of bytes, and what
// controls the connection. No extensions.
#include <QByteArray>
#include <optional>

enum WEB_SOCKET_OPCODE {
    WEB_SOCKET_CONTINUATION = 0,
    WEB_SOCKET_BINARY = 2,
    WEB_SOCKET_CLOSE = 8,
    WEB_SOCKET_PING = 9,
    WEB_SOCKET_PONG = 10
};

enum WEB_SOCKET_CODE {
    WEB_SOCKET_GOING_AWAY = 1001,
    WEB_SOCKET_PROTOCOL_ERROR = 1002,
    WEB_SOCKET_NOT_TAKEN = 1003, // a message that is no bytes
    WEB_SOCKET_BAD_TEXT = 1007,
    WEB_SOCKET_TOO_LARGE = 1009
};

struct tagWebSocketMessage
{
    int nOpcode;
    QByteArray payload;
};

class WebSocketReader
{
public:
    // limit: bytes of a message.
    explicit WebSocketReader(qsizetype limit) : m_nLimit(limit) {}

    void add(const QByteArray& bytes) { m_bytes += bytes; }
    // The next whole message or control frame; nothing until more has come, or for good after a failure.
    std::optional<tagWebSocketMessage> next();
    // The code with which the connection has to be closed; 0 while all is well.
    int failure() const { return m_nFailure; }

private:
    struct tagFrame
    {
        bool isLast = false;
        int nOpcode = 0;
        qsizetype nHead = 0; // bytes, the mask among them
        quint64 nLength = 0;

        bool isControl() const { return nOpcode >= WEB_SOCKET_CLOSE; }
    };

    bool readHead(tagFrame& frame);
    int faultOf(const tagFrame& frame, int firstByte, int secondByte) const;
    QByteArray takePayload(const tagFrame& frame);
    static int faultOfClose(const QByteArray& payload);
    bool fail(int code);

    const qsizetype m_nLimit;
    QByteArray m_bytes; // not yet read
    QByteArray m_message;
    bool m_bInMessage = false;
    int m_nFailure = 0;
};
