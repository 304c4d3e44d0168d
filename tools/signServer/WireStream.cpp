#include "tools/signServer/WireStream.h"
#include "tools/signServer/RequestText.h"
#include <QElapsedTimer>
#include <algorithm>
#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <random>
#include <sys/socket.h>

namespace {

constexpr int kTickMs = 50;     // how soon a wait notices that the server stops
constexpr int kHeadMs = 10000;  // for a whole request head, once it has begun
constexpr int kReadMs = 5000;   // for the next bytes of a request's body
constexpr int kWriteMs = 30000; // for a phone to take the next bytes
constexpr qsizetype kLargestHead = 64 << 10;
constexpr qsizetype kReceiveBlock = 16 << 10;

bool IsReady(int socket, short events, int timeoutMs)
{
    pollfd waiting = {socket, events, 0};
    return poll(&waiting, 1, timeoutMs) > 0;
}

void AddressText(const sockaddr_storage& address, std::string& ip, int& port)
{
    char text[INET6_ADDRSTRLEN] = "";
    if (address.ss_family == AF_INET) {
        const auto& v4 = reinterpret_cast<const sockaddr_in&>(address);
        inet_ntop(AF_INET, &v4.sin_addr, text, sizeof text);
        port = ntohs(v4.sin_port);
    } else if (address.ss_family == AF_INET6) {
        const auto& v6 = reinterpret_cast<const sockaddr_in6&>(address);
        inet_ntop(AF_INET6, &v6.sin6_addr, text, sizeof text);
        port = ntohs(v6.sin6_port);
    }
    ip = text;
}

} // namespace

int WireStream::Receive(int timeoutMs)
{
    if (!IsReady(m_socket, POLLIN, timeoutMs))
        return 0;
    char block[kReceiveBlock];
    const ssize_t n = recv(m_socket, block, sizeof block, 0);
    if (n > 0)
        m_in.append(block, n);
    else
        m_over = true;
    return n > 0 ? 1 : 0;
}

bool WireStream::AwaitRequest(int idleMs, const std::function<bool()>& isWanted)
{
    m_fault = Fault();
    m_head.clear();
    m_headSent = m_stalled = false;
    m_status = 0;
    m_length = m_bodySent = 0;

    QElapsedTimer waited;
    waited.start();
    while (!m_over && !m_stopping) {
        const qsizetype end = m_in.indexOf("\r\n\r\n");
        if (end >= 0) {
            TidyHead(m_in.indexOf("\r\n"));
            return true;
        }
        const bool begun = !m_in.isEmpty();
        if (m_in.size() > kLargestHead || waited.elapsed() > (begun ? kHeadMs : idleMs) ||
            (!begun && !isWanted()))
            return false;
        if (Receive(kTickMs) && !begun)
            waited.restart();
    }
    return false;
}

void WireStream::TidyHead(qsizetype lineEnd)
{
    m_in = TidyRequestLine(m_in.left(lineEnd)) + m_in.mid(lineEnd);
}

bool WireStream::is_readable() const
{
    return !m_in.isEmpty() || IsReady(m_socket, POLLIN, kReadMs);
}

bool WireStream::is_writable() const
{
    return !m_over && !m_stopping;
}

ssize_t WireStream::read(char* bytes, size_t size)
{
    if (m_in.isEmpty() && !Receive(kReadMs))
        return m_over ? 0 : -1;
    const qsizetype n = std::min(qsizetype(size), m_in.size());
    std::copy_n(m_in.constData(), n, bytes);
    m_in.remove(0, n);
    return n;
}

ssize_t WireStream::write(const char* bytes, size_t size)
{
    if (m_over)
        return -1;
    QByteArray body;
    if (m_headSent) {
        body = QByteArray(bytes, qsizetype(size));
    } else {
        m_head.append(bytes, qsizetype(size));
        const qsizetype end = m_head.indexOf("\r\n\r\n");
        if (end < 0)
            return ssize_t(size);
        body = m_head.mid(end + 4);
        m_head.truncate(end + 4);
        if (!WriteHead()) {
            m_over = true;
            return -1;
        }
    }
    if (!body.isEmpty() && !WriteBody(body)) {
        m_over = true;
        return -1;
    }
    return ssize_t(size);
}

bool WireStream::WriteHead()
{
    m_status = m_head.mid(m_head.indexOf(' ') + 1, 3).toInt();
    const QByteArray field = "\r\nContent-Length: ";
    const qsizetype at = m_head.indexOf(field);
    m_length = at < 0 ? 0 : m_head.mid(at + field.size(), 20).split('\r')[0].toLongLong();
    m_headSent = true;

    const bool stallsFirst = m_fault.kind == FaultKind::Stall && m_fault.after < 0;
    if (stallsFirst && !Pause(m_fault.seconds * 1000LL))
        return false;
    if (m_fault.kind == FaultKind::Garbage)
        return WriteGarbage();
    if (m_fault.kind == FaultKind::Longer)
        ChangeLength(m_fault.by);
    else if (m_fault.kind == FaultKind::Shorter)
        ChangeLength(-std::min(m_fault.by, m_length));
    return SendAll(m_head.constData(), m_head.size());
}

void WireStream::ChangeLength(qint64 by)
{
    const QByteArray right = "\r\nContent-Length: " + QByteArray::number(m_length) + "\r\n";
    m_head.replace(right, "\r\nContent-Length: " + QByteArray::number(m_length + by) + "\r\n");
}

qint64 WireStream::FaultOffset() const
{
    const qint64 wanted = m_fault.after < 0 ? m_length / 2 : m_fault.after;
    // A reply in chunks tells no length; every other one is cut before its end at the latest.
    return m_length > 0 ? std::min(wanted, m_length - 1) : wanted;
}

bool WireStream::WriteBody(QByteArray bytes)
{
    const qint64 offset = FaultOffset();
    const bool reaches = m_bodySent + bytes.size() > offset;
    switch (m_fault.kind) {
    case FaultKind::Cut:
        if (!reaches)
            break;
        SendAll(bytes.constData(), offset - m_bodySent);
        m_bodySent = offset;
        return false;
    case FaultKind::Stall:
        if (m_fault.after >= 0 && reaches && !m_stalled) {
            m_stalled = true;
            const qint64 first = offset - m_bodySent;
            if (!SendAll(bytes.constData(), first) || !Pause(m_fault.seconds * 1000LL))
                return false;
            m_bodySent += first;
            bytes.remove(0, first);
        }
        break;
    case FaultKind::Drip:
        return WriteDripping(bytes);
    case FaultKind::Corrupt:
        Spoil(bytes);
        break;
    default:
        break;
    }
    const bool sent = SendAll(bytes.constData(), bytes.size());
    m_bodySent += sent ? bytes.size() : 0;
    // After a wrong length the client cannot tell where the next answer begins.
    const bool wrongLength = m_fault.kind == FaultKind::Longer || m_fault.kind == FaultKind::Shorter;
    return sent && !(wrongLength && m_bodySent >= m_length);
}

bool WireStream::WriteDripping(const QByteArray& bytes)
{
    for (qsizetype at = 0; at < bytes.size(); at += m_fault.bytes) {
        const qint64 drop = std::min<qint64>(m_fault.bytes, bytes.size() - at);
        if (!SendAll(bytes.constData() + at, drop) || !Pause(m_fault.pause))
            return false;
        m_bodySent += drop;
    }
    return true;
}

bool WireStream::WriteGarbage()
{
    std::mt19937 dice(m_fault.seed);
    QByteArray bytes(m_fault.bytes, Qt::Uninitialized);
    for (char& byte : bytes)
        byte = char(dice() & 0xff);
    SendAll(bytes.constData(), bytes.size());
    m_bodySent = bytes.size();
    return false;
}

void WireStream::Spoil(QByteArray& bytes) const
{
    const qint64 from = std::max<qint64>(FaultOffset() - m_bodySent, 0);
    const qint64 to = std::min<qint64>(FaultOffset() + m_fault.bytes - m_bodySent, bytes.size());
    for (qint64 i = from; i < to; ++i)
        bytes[i] = char(bytes[i] ^ 0x55);
}

bool WireStream::SendAll(const char* bytes, qint64 size)
{
    while (size > 0) {
        if (m_stopping || !IsReady(m_socket, POLLOUT, kWriteMs))
            return false;
        const ssize_t n = send(m_socket, bytes, size_t(size), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (n < 0 && errno != EAGAIN && errno != EINTR)
            return false;
        bytes += std::max<ssize_t>(n, 0);
        size -= std::max<ssize_t>(n, 0);
    }
    return true;
}

// Ends early, with false, when the other side goes or the server stops.
bool WireStream::Pause(qint64 ms) const
{
    QElapsedTimer waited;
    waited.start();
    while (waited.elapsed() < ms) {
        if (m_stopping)
            return false;
        char byte;
        const int tick = int(std::min<qint64>(kTickMs, ms - waited.elapsed()));
        pollfd waiting = {m_socket, POLLRDHUP, 0};
        const bool gone = poll(&waiting, 1, std::max(tick, 1)) > 0 &&
                          recv(m_socket, &byte, 1, MSG_PEEK | MSG_DONTWAIT) <= 0;
        if (gone)
            return false;
    }
    return true;
}

void WireStream::get_remote_ip_and_port(std::string& ip, int& port) const
{
    sockaddr_storage address = {};
    socklen_t size = sizeof address;
    if (getpeername(m_socket, reinterpret_cast<sockaddr*>(&address), &size) == 0)
        AddressText(address, ip, port);
}

void WireStream::get_local_ip_and_port(std::string& ip, int& port) const
{
    sockaddr_storage address = {};
    socklen_t size = sizeof address;
    if (getsockname(m_socket, reinterpret_cast<sockaddr*>(&address), &size) == 0)
        AddressText(address, ip, port);
}
