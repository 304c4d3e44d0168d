#include "host/services/messages/messageStream.h"
#include <cerrno>
#include <sys/socket.h>
#include <unistd.h>

namespace {
constexpr int kReadSize = 64 << 10;
constexpr int kReadsInTurn = 4; // then others get a turn

bool isJustFull()
{
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}
} // namespace

messageStream::~messageStream()
{
    close(m_nSocket);
}

bool messageStream::append(const messageWire::tagFrame& frame)
{
    const QByteArray bytes = messageWire::encode(frame);
    if (m_output.size() - m_nWritten + bytes.size() > MAX_OUTPUT)
        return false;
    if (m_nWritten > m_output.size() / 2) {
        m_output.remove(0, m_nWritten);
        m_nWritten = 0;
    }
    m_output.append(bytes);
    return true;
}

bool messageStream::flush()
{
    while (hasOutput()) {
        const ssize_t sent = send(m_nSocket, m_output.constData() + m_nWritten,
                                  size_t(m_output.size() - m_nWritten), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent < 0)
            return isJustFull();
        m_nWritten += sent;
    }
    m_output.clear();
    m_nWritten = 0;
    return true;
}

bool messageStream::receive(QList<messageWire::tagFrame>& frames)
{
    char bytes[kReadSize];
    for (int turn = 0; turn < kReadsInTurn; ++turn) {
        const ssize_t got = recv(m_nSocket, bytes, sizeof bytes, MSG_DONTWAIT);
        if (got < 0)
            return isJustFull();
        m_input.append(bytes, got);
        if (got == 0 || !takeFrames(frames))
            return false;
    }
    return true;
}

bool messageStream::takeFrames(QList<messageWire::tagFrame>& frames)
{
    qsizetype start = 0;
    for (;;) {
        messageWire::tagFrame frame;
        qsizetype used = 0;
        const messageWire::DECODED decoded =
            messageWire::decode(m_input.constData() + start, m_input.size() - start, frame, used);
        if (decoded == messageWire::DECODED::BAD)
            return false;
        if (decoded == messageWire::DECODED::NEED_MORE)
            break;
        frames.append(frame);
        start += used;
    }
    if (start == m_input.size())
        m_input.clear();
    else
        m_input.remove(0, start);
    return true;
}
