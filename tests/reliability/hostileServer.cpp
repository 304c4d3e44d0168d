#include "tests/reliability/hostileServer.h"
#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kLookMs = 50;
constexpr int kBlock = 64 << 10;

bool isReady(int socket, short what)
{
    pollfd one = {socket, what, 0};
    return poll(&one, 1, kLookMs) > 0;
}

} // namespace

bool HostileServer::Wire::send(const QByteArray& bytes)
{
    qsizetype sent = 0;
    while (sent < bytes.size()) {
        if (m_stopping)
            return false;
        if (!isReady(m_socket, POLLOUT))
            continue;
        const size_t block = size_t(qMin<qsizetype>(bytes.size() - sent, kBlock));
        const ssize_t n = ::send(m_socket, bytes.constData() + sent, block, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (n < 0 && errno == EAGAIN)
            continue;
        if (n <= 0)
            return false;
        sent += n;
    }
    return true;
}

bool HostileServer::Wire::pause(int ms)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
    return !m_stopping;
}

bool HostileServer::Wire::head(qint64 size)
{
    QByteArray head = "HTTP/1.1 200 OK\r\nConnection: close\r\n";
    if (size >= 0)
        head += "Content-Length: " + QByteArray::number(size) + "\r\n";
    return send(head + "\r\n");
}

bool HostileServer::Wire::answer(const QByteArray& body, const QByteArray& status)
{
    return send("HTTP/1.1 " + status + "\r\nConnection: close\r\nContent-Length: " +
                QByteArray::number(body.size()) + "\r\n\r\n" + body);
}

const QByteArray& HostileServer::registered()
{
    static const QByteArray reply = "<norvane><ndeck><result><success/></result></ndeck></norvane>";
    return reply;
}

HostileServer::HostileServer(const Answer& answer) : m_answer(answer)
{
    m_listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (bind(m_listener, reinterpret_cast<sockaddr*>(&address), size) == 0 && listen(m_listener, 64) == 0 &&
        getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &size) == 0)
        m_nPort = ntohs(address.sin_port);
    m_listening = std::thread([this] { listenLoop(); });
}

HostileServer::~HostileServer()
{
    m_stopping = true;
    m_listening.join();
    close(m_listener);
}

void HostileServer::listenLoop()
{
    std::vector<std::thread> served;
    while (!m_stopping) {
        if (!isReady(m_listener, POLLIN))
            continue;
        const int socket = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket >= 0)
            served.emplace_back([this, socket] { serve(socket); });
    }
    for (std::thread& one : served)
        one.join();
}

void HostileServer::serve(int socket)
{
    QByteArray request;
    char block[4096];
    while (!m_stopping && !request.contains("\r\n\r\n")) {
        if (!isReady(socket, POLLIN))
            continue;
        const ssize_t n = recv(socket, block, sizeof block, 0);
        if (n <= 0)
            break;
        request.append(block, n);
    }
    const QByteArray target = request.split(' ').value(1);
    if (!target.isEmpty()) {
        {
            const std::lock_guard<std::mutex> lock(m_lock);
            m_targets.append(target);
        }
        Wire wire(socket, m_stopping);
        m_answer(wire, QByteArray::fromPercentEncoding(target));
    }
    ::shutdown(socket, SHUT_WR);
    close(socket);
}

QList<QByteArray> HostileServer::targets() const
{
    const std::lock_guard<std::mutex> lock(m_lock);
    return m_targets;
}

int HostileServer::requestsFor(const QByteArray& text) const
{
    int count = 0;
    for (const QByteArray& target : targets())
        count += target.contains(text);
    return count;
}
