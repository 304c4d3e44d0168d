#include "tests/kit/plain/stunServer.h"
#include <QList>
#include <arpa/inet.h>
#include <chrono>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int kLookMs = 20, kHeadBytes = 20, kNumberAt = 8;
constexpr uint32_t kCookie = 0x2112a442;
constexpr const char* kOtherHost = "127.0.0.88";
constexpr int kMapped = 1, kMasked = 0x20, kSource = 4, kError = 9;

QByteArray two(uint32_t number)
{
    return QByteArray(1, char(number >> 8 & 255)) + char(number & 255);
}

QByteArray four(uint32_t number)
{
    return two(number >> 16) + two(number & 0xffff);
}

QByteArray part(int kind, const QByteArray& value)
{
    return two(uint32_t(kind)) + two(uint32_t(value.size())) + value + QByteArray(-value.size() & 3, '\0');
}

QByteArray whole(int kind, const QByteArray& question, const QByteArray& parts)
{
    return two(uint32_t(kind)) + two(uint32_t(parts.size())) + question.mid(4, kHeadBytes - 4) + parts;
}

int socketAt(const char* host, uint16_t port = 0)
{
    const int made = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    inet_pton(AF_INET, host, &address.sin_addr);
    return bind(made, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 ? made : -1;
}

} // namespace

QByteArray kit::StunServer::answer(const QByteArray& question, const QByteArray& address, uint16_t port,
                                   bool old)
{
    in_addr ip = {};
    inet_pton(AF_INET, address.constData(), &ip);
    const uint32_t mask = old ? 0 : kCookie;
    const QByteArray value = two(1) + two(port ^ mask >> 16) + four(ntohl(ip.s_addr) ^ mask);
    QByteArray parts;
    if (old)
        parts = part(kSource, two(1) + two(port) + four(ntohl(ip.s_addr)));
    return whole(0x0101, question, parts + part(old ? kMapped : kMasked, value));
}

kit::StunServer::StunServer(const char* host) : m_nSocket(socketAt(host)), m_nElsewhere(socketAt(host))
{
    sockaddr_in address = {};
    socklen_t size = sizeof address;
    getsockname(m_nSocket, reinterpret_cast<sockaddr*>(&address), &size);
    m_nPort = ntohs(address.sin_port);
    m_nOther = socketAt(kOtherHost, m_nPort);
    m_thread = std::thread([this] { serve(); });
}

kit::StunServer::~StunServer()
{
    m_bEnds = true;
    m_thread.join();
    close(m_nSocket);
    close(m_nElsewhere);
    close(m_nOther);
}

void kit::StunServer::behave(const tagStunWays& ways)
{
    const std::lock_guard<std::mutex> lock(m_lock);
    m_ways = ways;
}

void kit::StunServer::serve()
{
    while (!m_bEnds) {
        pollfd entry = {m_nSocket, POLLIN, 0};
        if (poll(&entry, 1, kLookMs) <= 0)
            continue;
        QByteArray question(2048, '\0');
        sockaddr_in from = {};
        socklen_t size = sizeof from;
        const ssize_t count = recvfrom(m_nSocket, question.data(), size_t(question.size()), 0,
                                       reinterpret_cast<sockaddr*>(&from), &size);
        question.truncate(std::max<ssize_t>(count, 0));
        if (question.size() < kHeadBytes || question.left(2) != two(1))
            continue;
        tagStunWays ways;
        {
            const std::lock_guard<std::mutex> lock(m_lock);
            ways = m_ways;
            m_ways.nDeaf = std::max(0, m_ways.nDeaf - 1);
        }
        m_nLastPort = ntohs(from.sin_port);
        ++m_nAsked;
        if (ways.bSilent || ways.nDeaf > 0)
            continue;
        const auto tell = [&](int socket, const QByteArray& message) {
            sendto(socket, message.constData(), size_t(message.size()), 0, reinterpret_cast<sockaddr*>(&from),
                   sizeof from);
        };
        std::this_thread::sleep_for(std::chrono::milliseconds(ways.nLateMs));
        const QByteArray lie = answer(question, StunServer::lie(), LIE_PORT, ways.bOld);
        QByteArray other = question;
        other[kNumberAt + 3] = char(other[kNumberAt + 3] ^ 1);
        if (ways.bElsewhere) {
            tell(m_nElsewhere, lie);
            tell(m_nOther, lie);
        }
        if (ways.bWrongNumber)
            tell(m_nSocket, answer(other, StunServer::lie(), LIE_PORT, ways.bOld));
        if (ways.bBroken) {
            tell(m_nSocket, lie.left(lie.size() - 2));
            tell(m_nSocket, lie + lie);
            tell(m_nSocket, QByteArray());
        }
        if (ways.bRefuses) {
            tell(m_nSocket, whole(0x0111, question, part(kError, two(0) + two(4 << 8) + "no")));
            continue;
        }
        char host[INET_ADDRSTRLEN] = "";
        inet_ntop(AF_INET, &from.sin_addr, host, sizeof host);
        tell(m_nSocket, answer(question, ways.address.isEmpty() ? QByteArray(host) : ways.address,
                               ways.nPort ? ways.nPort : ntohs(from.sin_port), ways.bOld));
    }
}
