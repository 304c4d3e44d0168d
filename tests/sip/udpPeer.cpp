#include "tests/sip/udpPeer.h"
#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QList>
#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// Of this machine.
sockaddr_in placeOf(uint32_t port)
{
    sockaddr_in place = {};
    place.sin_family = AF_INET;
    place.sin_port = htons(uint16_t(port));
    place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return place;
}

} // namespace

UdpPeer::UdpPeer(const char* host, uint32_t port) : m_nSocket(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address = placeOf(port);
    inet_pton(AF_INET, host, &address.sin_addr);
    socklen_t size = sizeof address;
    if (bind(m_nSocket, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
        getsockname(m_nSocket, reinterpret_cast<sockaddr*>(&address), &size) == 0)
        m_nPort = ntohs(address.sin_port);
}

UdpPeer::~UdpPeer()
{
    close(m_nSocket);
}

bool UdpPeer::isListening(uint32_t port)
{
    const int stream = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = placeOf(port);
    const bool is = connect(stream, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(stream);
    return is;
}

QByteArray UdpPeer::contactLine(const QByteArray& number) const
{
    return "Contact: <sip:" + number + "@127.0.0.1:" + QByteArray::number(m_nPort) + '>';
}

QByteArray UdpPeer::linesWithSdp(const QByteArray& number) const
{
    return contactLine(number) + "\r\nContent-Type: application/sdp";
}

QByteArray UdpPeer::receive(int ms)
{
    pollfd entry = {m_nSocket, POLLIN, 0};
    if (poll(&entry, 1, ms) <= 0)
        return {};
    QByteArray message(65536, Qt::Uninitialized);
    sockaddr_in from = {};
    socklen_t size = sizeof from;
    const ssize_t count = recvfrom(m_nSocket, message.data(), size_t(message.size()), 0,
                                   reinterpret_cast<sockaddr*>(&from), &size);
    if (count <= 0)
        return {};
    m_nLast = ntohs(from.sin_port);
    message.truncate(count);
    return message;
}

QByteArray UdpPeer::receive(const QByteArray& start, int ms)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < ms) {
        const QByteArray message = receive(int(ms - timer.elapsed()));
        if (message.startsWith(start))
            return message;
    }
    return {};
}

void UdpPeer::send(const QByteArray& message, uint32_t port)
{
    const sockaddr_in to = placeOf(port);
    sendto(m_nSocket, message.constData(), size_t(message.size()), 0, reinterpret_cast<const sockaddr*>(&to),
           sizeof to);
}

QByteArray UdpPeer::replyTo(const QByteArray& request, const QByteArray& status, const QByteArray& lines,
                            const QByteArray& body)
{
    QByteArray message = "SIP/2.0 " + status + "\r\n";
    const QByteArray head = request.left(request.indexOf("\r\n\r\n"));
    for (const QByteArray& line : head.split('\n')) {
        const QByteArray name = line.left(line.indexOf(':')).toLower();
        if (name == "to" && !line.contains(";tag="))
            message += line.trimmed() + ";tag=peer\r\n";
        else if (name == "via" || name == "from" || name == "to" || name == "call-id" || name == "cseq")
            message += line.trimmed() + "\r\n";
    }
    if (!lines.isEmpty())
        message += lines + "\r\n";
    return message + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

void UdpPeer::reply(const QByteArray& request, const QByteArray& status, const QByteArray& lines,
                    const QByteArray& body)
{
    answer(replyTo(request, status, lines, body));
}

QByteArray headerOf(const QByteArray& message, const QByteArray& name)
{
    const QByteArray head = message.left(message.indexOf("\r\n\r\n"));
    for (const QByteArray& line : head.split('\n')) {
        if (line.left(line.indexOf(':')).toLower() == name.toLower())
            return line.mid(line.indexOf(':') + 1).trimmed();
    }
    return {};
}

QByteArray paramOf(const QByteArray& header, const QByteArray& name)
{
    const QByteArray mark = " " + name + "=";
    qsizetype at = QByteArray(' ' + header).indexOf(mark);
    if (at < 0)
        return {};
    at += mark.size() - 1;
    const bool isQuoted = at < header.size() && header[at] == '"';
    const qsizetype end = isQuoted ? header.indexOf('"', at + 1) : header.indexOf(',', at);
    return isQuoted ? header.mid(at + 1, end - at - 1) : header.mid(at, end < 0 ? -1 : end - at);
}

QByteArray digestOf(const QByteArray& method, const QByteArray& answer, const QByteArray& user,
                    const QByteArray& password)
{
    const QByteArray algorithm = paramOf(answer, "algorithm").toUpper();
    const auto kind = algorithm.startsWith("SHA-256") ? QCryptographicHash::Sha256 : QCryptographicHash::Md5;
    const auto hex = [&](const QByteArray& text) { return QCryptographicHash::hash(text, kind).toHex(); };
    const QByteArray nonce = paramOf(answer, "nonce"), own = paramOf(answer, "cnonce");
    QByteArray first = hex(user + ":" + paramOf(answer, "realm") + ":" + password);
    if (algorithm.endsWith("-SESS"))
        first = hex(first + ":" + nonce + ":" + own);
    const QByteArray second = hex(method + ":" + paramOf(answer, "uri"));
    if (paramOf(answer, "qop").isEmpty())
        return hex(first + ":" + nonce + ":" + second);
    return hex(first + ":" + nonce + ":" + paramOf(answer, "nc") + ":" + own + ":auth:" + second);
}
