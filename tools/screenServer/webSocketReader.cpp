#include "tools/screenServer/webSocketReader.h"
#include <QStringDecoder>
#include <QtEndian>

namespace {

enum { LAST = 0x80, RESERVED = 0x70, OPCODE = 0x0f, MASKED = 0x80, LENGTH = 0x7f };
enum { LENGTH_16 = 126, LENGTH_64 = 127 };
constexpr qsizetype kStart = 2;
constexpr qsizetype kMask = 4;
constexpr quint64 kMostControl = 125;

bool isKnown(int opcode)
{
    return opcode <= 2 || (opcode >= WEB_SOCKET_CLOSE && opcode <= WEB_SOCKET_PONG);
}

// Of those that may stand in a frame.
bool isCloseCode(int code)
{
    return (code >= 1000 && code <= 1003) || (code >= 1007 && code <= 1014) || (code >= 3000 && code <= 4999);
}

qsizetype lengthBytes(int length)
{
    return length == LENGTH_16 ? 2 : length == LENGTH_64 ? 8 : 0;
}

} // namespace

std::optional<tagWebSocketMessage> WebSocketReader::next()
{
    tagFrame frame;
    while (readHead(frame) && quint64(m_bytes.size() - frame.nHead) >= frame.nLength) {
        const QByteArray payload = takePayload(frame);
        if (frame.isControl()) {
            if (frame.nOpcode == WEB_SOCKET_CLOSE && fail(faultOfClose(payload)))
                break;
            return tagWebSocketMessage{frame.nOpcode, payload};
        }
        m_message += payload;
        m_bInMessage = !frame.isLast;
        if (frame.isLast)
            return tagWebSocketMessage{WEB_SOCKET_BINARY, std::exchange(m_message, QByteArray())};
    }
    return std::nullopt;
}

// What is wrong is told by the first bytes that say so: nobody waits for the rest.
bool WebSocketReader::readHead(tagFrame& frame)
{
    if (m_nFailure || m_bytes.size() < kStart)
        return false;
    const auto* bytes = reinterpret_cast<const uchar*>(m_bytes.constData());
    const int length = bytes[1] & LENGTH;
    frame.isLast = (bytes[0] & LAST) != 0;
    frame.nOpcode = bytes[0] & OPCODE;
    frame.nHead = kStart + lengthBytes(length) + kMask;
    frame.nLength = quint64(length);
    if (fail(faultOf(frame, bytes[0], bytes[1])) || m_bytes.size() < frame.nHead)
        return false;
    if (length == LENGTH_16)
        frame.nLength = qFromBigEndian<quint16>(bytes + kStart);
    else if (length == LENGTH_64)
        frame.nLength = qFromBigEndian<quint64>(bytes + kStart);
    const bool isLong = (length == LENGTH_16 && frame.nLength < LENGTH_16) ||
                        (length == LENGTH_64 && (frame.nLength >> 16 == 0 || frame.nLength >> 63 != 0));
    if (isLong)
        return !fail(WEB_SOCKET_PROTOCOL_ERROR);
    return !fail(frame.nLength > quint64(m_nLimit - m_message.size()) ? WEB_SOCKET_TOO_LARGE : 0);
}

int WebSocketReader::faultOf(const tagFrame& frame, int firstByte, int secondByte) const
{
    if ((firstByte & RESERVED) || !isKnown(frame.nOpcode) || !(secondByte & MASKED))
        return WEB_SOCKET_PROTOCOL_ERROR;
    if (frame.isControl())
        return frame.isLast && frame.nLength <= kMostControl ? 0 : WEB_SOCKET_PROTOCOL_ERROR;
    if ((frame.nOpcode == WEB_SOCKET_CONTINUATION) != m_bInMessage)
        return WEB_SOCKET_PROTOCOL_ERROR;
    const bool isBytes = frame.nOpcode == WEB_SOCKET_CONTINUATION || frame.nOpcode == WEB_SOCKET_BINARY;
    return isBytes ? 0 : WEB_SOCKET_NOT_TAKEN;
}

QByteArray WebSocketReader::takePayload(const tagFrame& frame)
{
    const auto length = qsizetype(frame.nLength);
    const QByteArray mask = m_bytes.mid(frame.nHead - kMask, kMask);
    QByteArray payload = m_bytes.mid(frame.nHead, length);
    m_bytes.remove(0, frame.nHead + length);
    for (qsizetype i = 0; i < length; ++i)
        payload[i] = char(payload[i] ^ mask[i % kMask]);
    return payload;
}

int WebSocketReader::faultOfClose(const QByteArray& payload)
{
    if (payload.isEmpty())
        return 0;
    if (payload.size() < 2 || !isCloseCode(qFromBigEndian<quint16>(payload.constData())))
        return WEB_SOCKET_PROTOCOL_ERROR;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString reason = decoder(QByteArrayView(payload).sliced(2));
    return decoder.hasError() ? WEB_SOCKET_BAD_TEXT : 0;
}

bool WebSocketReader::fail(int code)
{
    if (code) {
        m_nFailure = code;
        m_bytes.clear();
        m_message.clear();
    }
    return code != 0;
}
