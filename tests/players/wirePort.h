#pragma once
// A port of this machine that says what a test has it say.
#include <QByteArray>
#include <algorithm>
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

class WirePort
{
public:
    explicit WirePort(const char* address = "127.0.0.1")
    {
        sockaddr_in place = placeOf(address, 0);
        socklen_t size = sizeof place;
        EXPECT_EQ(bind(m_nSocket, reinterpret_cast<sockaddr*>(&place), size), 0);
        EXPECT_EQ(getsockname(m_nSocket, reinterpret_cast<sockaddr*>(&place), &size), 0);
        m_nPort = ntohs(place.sin_port);
    }
    ~WirePort() { close(m_nSocket); }
    WirePort(const WirePort&) = delete;
    WirePort& operator=(const WirePort&) = delete;

    int port() const { return m_nPort; }
    void say(int port, const QByteArray& packet) const
    {
        const sockaddr_in place = placeOf("127.0.0.1", port);
        sendto(m_nSocket, packet.constData(), size_t(packet.size()), 0,
               reinterpret_cast<const sockaddr*>(&place), sizeof place);
    }
    // The next packet; empty when none comes soon.
    QByteArray next() const
    {
        pollfd entry = {m_nSocket, POLLIN, 0};
        char packet[2048];
        const ssize_t size =
            poll(&entry, 1, 5000) > 0 ? recv(m_nSocket, packet, sizeof packet, MSG_DONTWAIT) : 0;
        return QByteArray(packet, qsizetype(std::max<ssize_t>(size, 0)));
    }
    // The same of what has come already.
    QByteArray nextHere() const
    {
        char packet[2048];
        const ssize_t size = recv(m_nSocket, packet, sizeof packet, MSG_DONTWAIT);
        return QByteArray(packet, qsizetype(std::max<ssize_t>(size, 0)));
    }
    // Packets that came since the call before.
    int came() const
    {
        int count = 0;
        while (!nextHere().isEmpty())
            ++count;
        return count;
    }

private:
    static sockaddr_in placeOf(const char* address, int port)
    {
        sockaddr_in place = {};
        place.sin_family = AF_INET;
        place.sin_port = htons(uint16_t(port));
        inet_pton(AF_INET, address, &place.sin_addr);
        return place;
    }

    const int m_nSocket = socket(AF_INET, SOCK_DGRAM, 0);
    int m_nPort = 0;
};
