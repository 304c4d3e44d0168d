#include "sip/ownSockets.h"
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <functional>
#include <netdb.h>
#include <netinet/in.h>
#include <set>
#include <sofia-sip/tport.h>
#include <sys/socket.h>
#include <utility>

namespace {

constexpr int kFirstFile = 3, kMaxFiles = 1024; // the agent has some dozens at most

tagSocketEnd endOf(const sockaddr_storage& address, socklen_t size)
{
    char host[NI_MAXHOST] = "", port[NI_MAXSERV] = "";
    if (getnameinfo(reinterpret_cast<const sockaddr*>(&address), size, host, sizeof host, port, sizeof port,
                    NI_NUMERICHOST | NI_NUMERICSERV) != 0)
        return {};
    return {host, uint32_t(atoi(port))};
}

void forEachSocket(int type, const std::function<void(int socket)>& call)
{
    for (int file = kFirstFile; file < kMaxFiles; ++file) {
        int kind = 0, family = 0;
        socklen_t size = sizeof kind;
        if (getsockopt(file, SOL_SOCKET, SO_TYPE, &kind, &size) == 0 && kind == type &&
            getsockopt(file, SOL_SOCKET, SO_DOMAIN, &family, &size) == 0 &&
            (family == AF_INET || family == AF_INET6))
            call(file);
    }
}

std::function<void(const tagSocketEnd& end)>& unreachableTold()
{
    static std::function<void(const tagSocketEnd& end)> tell;
    return tell;
}

tagSocketEnd ownEndOf(int socket)
{
    sockaddr_storage own = {};
    socklen_t size = sizeof own;
    if (getsockname(socket, reinterpret_cast<sockaddr*>(&own), &size) != 0)
        return {};
    return endOf(own, size);
}

} // namespace

tagSocketEnd ownSockets::otherEnd(int socket)
{
    sockaddr_storage other = {};
    socklen_t size = sizeof other;
    if (getpeername(socket, reinterpret_cast<sockaddr*>(&other), &size) != 0)
        return {};
    return endOf(other, size);
}

// It listens for connections at the same one.
uint32_t ownSockets::ownPort()
{
    std::set<uint32_t> listening;
    forEachSocket(SOCK_STREAM, [&](int socket) {
        int is = 0;
        socklen_t size = sizeof is;
        if (getsockopt(socket, SOL_SOCKET, SO_ACCEPTCONN, &is, &size) == 0 && is)
            listening.insert(ownEndOf(socket).nPort);
    });
    uint32_t found = 0;
    forEachSocket(SOCK_DGRAM, [&](int socket) {
        const uint32_t port = ownEndOf(socket).nPort;
        if (port && listening.count(port))
            found = port;
    });
    return found;
}

void ownSockets::send(uint32_t ownPort, const std::string& host, uint32_t port, const void* bytes,
                      size_t size)
{
    addrinfo wanted = {};
    wanted.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    wanted.ai_socktype = SOCK_DGRAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), std::to_string(port).c_str(), &wanted, &found) != 0)
        return;
    forEachSocket(SOCK_DGRAM, [&](int socket) {
        sockaddr_storage own = {};
        socklen_t length = sizeof own;
        if (getsockname(socket, reinterpret_cast<sockaddr*>(&own), &length) == 0 &&
            own.ss_family == found->ai_family && endOf(own, length).nPort == ownPort)
            sendto(socket, bytes, size, MSG_DONTWAIT | MSG_NOSIGNAL, found->ai_addr, found->ai_addrlen);
    });
    freeaddrinfo(found);
}

void ownSockets::onUnreachable(std::function<void(const tagSocketEnd& end)> tell)
{
    unreachableTold() = std::move(tell);
}

void ownSockets::closeConnections(const std::string& host, uint32_t port)
{
    forEachSocket(SOCK_STREAM, [&](int socket) {
        const tagSocketEnd end = otherEnd(socket);
        if (end.nPort == port && (host.empty() || end.host == host))
            shutdown(socket, SHUT_RDWR);
    });
}

// The stack forgets what the network says of a datagram that no request waits for.
extern "C" __attribute__((visibility("default"))) void tport_error_report(tport_t* transport, int code,
                                                                          const su_sockaddr_t* address)
{
    using Reporter = void (*)(tport_t*, int, const su_sockaddr_t*);
    static const auto report = reinterpret_cast<Reporter>(dlsym(RTLD_NEXT, "tport_error_report"));
    tagSocketEnd end;
    if (address && (code == ECONNREFUSED || code == EHOSTUNREACH || code == ENETUNREACH)) {
        sockaddr_storage other = {};
        memcpy(&other, address, sizeof *address);
        const bool isIPv4 = other.ss_family == AF_INET;
        end = endOf(other, isIPv4 ? sizeof(sockaddr_in) : sizeof(sockaddr_in6));
    }
    report(transport, code, address);
    if (!end.host.empty() && unreachableTold())
        unreachableTold()(end);
}
