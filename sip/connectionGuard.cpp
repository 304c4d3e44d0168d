#include "sip/connectionGuard.h"
#include "sip/ownSockets.h"
#include <algorithm>
#include <cerrno>
#include <dlfcn.h>
#include <sofia-sip/su.h>
#include <sys/socket.h>
#include <utility>

namespace {

constexpr uint32_t kStepMs = 250;
constexpr unsigned kFirstTimes = 3, kQuietTimes = 150; // the time that a server has

ConnectionGuard*& guard()
{
    static ConnectionGuard* only = nullptr;
    return only;
}

} // namespace

ConnectionGuard::ConnectionGuard(su_root_t* root, uint32_t silentMs, Servers isServer,
                                 const tagConnectionBounds& bounds)
    : m_isServer(std::move(isServer)), m_bounds(bounds), m_first(silentMs * kFirstTimes),
      m_quiet(silentMs * kQuietTimes), m_step(root)
{
    guard() = this;
}

ConnectionGuard::~ConnectionGuard()
{
    guard() = nullptr;
}

// The stack closes them itself, and their numbers are given again.
bool ConnectionGuard::isOpen(const tagConnection& connection)
{
    const tagSocketEnd end = ownSockets::otherEnd(connection.nSocket);
    return end.nPort == connection.nPort && end.host == connection.host;
}

void ConnectionGuard::forgetEnded()
{
    m_connections.remove_if([](const tagConnection& connection) { return !isOpen(connection); });
}

bool ConnectionGuard::makeRoom(const std::string& host, bool isServer)
{
    const auto isHis = [&](const tagConnection& each) { return each.host == host; };
    const auto isStrangers = [this](const tagConnection& each) { return !m_isServer(each.host); };
    const auto countOf = [this](const auto& fits) {
        return size_t(std::count_if(m_connections.begin(), m_connections.end(), fits));
    };
    const bool isFull = countOf(isHis) >= (isServer ? m_bounds.nOfServer : m_bounds.nOfOne);
    const bool areAllFull = !isServer && countOf(isStrangers) >= m_bounds.nOfAll;
    if (!isFull && !areAllFull)
        return true;
    const auto silent = std::find_if(m_connections.begin(), m_connections.end(), [&](const auto& each) {
        return !each.bHeard && (isFull ? isHis(each) : isStrangers(each));
    });
    if (silent == m_connections.end())
        return false;
    shutdown(silent->nSocket, SHUT_RDWR);
    m_connections.erase(silent);
    return true;
}

bool ConnectionGuard::lets(int socket)
{
    const tagSocketEnd end = ownSockets::otherEnd(socket);
    forgetEnded();
    if (end.host.empty() || !makeRoom(end.host, m_isServer(end.host)))
        return false;
    m_connections.push_back({socket, end.host, end.nPort, Clock::now()});
    if (!m_step.isRunning())
        m_step.start(kStepMs, [this] { step(); });
    return true;
}

void ConnectionGuard::heard(const std::string& host, uint32_t port)
{
    if (!guard())
        return;
    for (tagConnection& each : guard()->m_connections) {
        if (each.nPort == port && each.host == host) {
            each.bHeard = true;
            each.last = Clock::now();
        }
    }
}

void ConnectionGuard::step()
{
    forgetEnded();
    const auto now = Clock::now();
    m_connections.remove_if([&](const tagConnection& each) {
        const bool isLate = now - each.last > (each.bHeard ? m_quiet : m_first);
        if (!isLate || m_isServer(each.host))
            return false;
        shutdown(each.nSocket, SHUT_RDWR);
        return true;
    });
    if (!m_connections.empty())
        m_step.start(kStepMs, [this] { step(); });
}

// The stack takes every connection; its system call is replaced here.
extern "C" __attribute__((visibility("default"))) int accept(int socket, sockaddr* address, socklen_t* size)
{
    using Acceptor = int (*)(int, sockaddr*, socklen_t*);
    static const auto take = reinterpret_cast<Acceptor>(dlsym(RTLD_NEXT, "accept"));
    const int made = take(socket, address, size);
    if (made < 0 || !guard() || guard()->lets(made))
        return made;
    su_close(made);
    errno = EAGAIN; // as if nobody had come
    return -1;
}
