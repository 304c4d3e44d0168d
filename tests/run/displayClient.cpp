#include "tests/run/displayClient.h"
#include <QFile>
#include <QtEndian>

namespace {

constexpr int kPatienceMs = 10000;
constexpr quint32 kWmName = 39;

template <typename Number>
QByteArray bytesOf(Number number)
{
    QByteArray bytes(sizeof number, 0);
    qToLittleEndian(number, bytes.data());
    return bytes;
}

quint32 numberAt(const QByteArray& bytes, qsizetype at)
{
    return bytes.size() < at + 4 ? 0 : qFromLittleEndian<quint32>(bytes.constData() + at);
}

QByteArray padded(const QByteArray& bytes)
{
    return bytes + QByteArray((4 - bytes.size() % 4) % 4, 0);
}

// The key is the last of the record's fields, each of which has its length in front.
QByteArray keyIn(const QString& file)
{
    QFile cookie(file);
    return cookie.open(QIODevice::ReadOnly) ? cookie.readAll().right(16) : QByteArray();
}

} // namespace

DisplayClient::DisplayClient(const QByteArray& display, const QString& cookie, bool withoutFile)
{
    if (withoutFile)
        m_socket.setSocketOptions(QLocalSocket::AbstractNamespaceOption);
    m_socket.connectToServer("/tmp/.X11-unix/X" + QString::fromLatin1(display));
    if (!m_socket.waitForConnected(kPatienceMs))
        return;
    const QByteArray name = cookie.isEmpty() ? "" : "MIT-MAGIC-COOKIE-1";
    const QByteArray key = cookie.isEmpty() ? "" : keyIn(cookie);
    m_socket.write(QByteArray("l\0\13\0\0\0", 6) + bytesOf(quint16(name.size())) +
                   bytesOf(quint16(key.size())) + QByteArray(2, 0) + padded(name) + padded(key));
    const QByteArray head = read(8);
    m_bAdmitted = head.startsWith('\1');
    const QByteArray setup = read(4 * qsizetype(numberAt(head, 4) >> 16));
    if (m_bAdmitted) {
        const qsizetype vendor = numberAt(setup, 16) & 0xffff, formats = setup[21];
        m_nRoot = numberAt(setup, 32 + (vendor + 3) / 4 * 4 + 8 * formats);
    }
}

QByteArray DisplayClient::read(qsizetype size)
{
    while (m_socket.bytesAvailable() < size && m_socket.waitForReadyRead(kPatienceMs))
        continue;
    return m_socket.read(size);
}

QByteArray DisplayClient::ask(const QByteArray& request)
{
    m_socket.write(request);
    QByteArray reply = read(32);
    reply += read(4 * qsizetype(numberAt(reply, 4)));
    return reply.startsWith('\1') ? reply : QByteArray();
}

QList<quint32> DisplayClient::windows()
{
    const QByteArray reply = ask(QByteArray("\17\0\2\0", 4) + bytesOf(m_nRoot));
    QList<quint32> windows;
    for (qsizetype at = 32; at < reply.size(); at += 4)
        windows.append(numberAt(reply, at));
    return windows;
}

QByteArray DisplayClient::title(quint32 window)
{
    const QByteArray reply = ask(QByteArray("\24\0\6\0", 4) + bytesOf(window) + bytesOf(kWmName) +
                                 bytesOf(0) + bytesOf(0) + bytesOf(64));
    return reply.mid(32, numberAt(reply, 16));
}

void DisplayClient::closeWindow(quint32 window)
{
    m_socket.write(QByteArray("\161\0\2\0", 4) + bytesOf(window));
    m_socket.waitForBytesWritten(kPatienceMs);
}
