#include "tests/server/jsonService.h"
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

JsonService::JsonService(const Answers& answers)
    : m_answers(answers), m_nSocket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const plain = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(bind(m_nSocket, plain, size), 0);
    EXPECT_EQ(::listen(m_nSocket, 128), 0);
    EXPECT_EQ(getsockname(m_nSocket, plain, &size), 0);
    m_nPort = ntohs(address.sin_port);
    m_thread = std::thread([this] { listen(); });
}

JsonService::~JsonService()
{
    shutdown(m_nSocket, SHUT_RDWR);
    m_thread.join();
    for (std::thread& thread : m_served)
        thread.join();
    close(m_nSocket);
}

QByteArrayList JsonService::targets() const
{
    const std::lock_guard guard(m_lock);
    return m_targets;
}

void JsonService::listen()
{
    for (;;) {
        const int socket = accept4(m_nSocket, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0)
            return;
        m_served.emplace_back([this, socket] { serve(socket); });
    }
}

void JsonService::serve(int socket)
{
    QByteArray head;
    char block[4096];
    while (!head.contains("\r\n\r\n")) {
        const ssize_t n = recv(socket, block, sizeof block, 0);
        if (n <= 0)
            break;
        head.append(block, n);
    }
    const QByteArray target = head.split(' ').value(1);
    if (!target.isEmpty()) {
        {
            const std::lock_guard guard(m_lock);
            m_targets.append(target);
        }
        const QByteArray bytes = m_answers(target);
        for (qsizetype sent = 0; sent < bytes.size();) {
            const ssize_t n =
                send(socket, bytes.constData() + sent, size_t(bytes.size() - sent), MSG_NOSIGNAL);
            if (n <= 0)
                break;
            sent += n;
        }
    }
    close(socket);
}

QByteArray JsonService::answer(const QByteArray& body, const QByteArray& status, const QByteArray& fields)
{
    return "HTTP/1.1 " + status + "\r\nContent-Type: application/json\r\nConnection: close\r\n" + fields +
           "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}
