#include "players/callSockets.h"
#include "players/callCrypto.h"
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <sys/socket.h>

#undef signals // a name in what follows
#include <gio/gio.h>

namespace {

constexpr int kExpedited = 0xb8; // the class of speech, for the routers on the way (RFC 3246)

LoopbackSocket boundSocket(int port)
{
    LoopbackSocket made(
        g_socket_new(G_SOCKET_FAMILY_IPV4, G_SOCKET_TYPE_DATAGRAM, G_SOCKET_PROTOCOL_UDP, nullptr));
    GInetAddress* any = g_inet_address_new_any(G_SOCKET_FAMILY_IPV4);
    GSocketAddress* place = g_inet_socket_address_new(any, guint16(port));
    const bool isBound = made && g_socket_bind(made.get(), place, FALSE, nullptr);
    g_object_unref(place);
    g_object_unref(any);
    if (!isBound)
        return nullptr;
    const int on = 1;
    setsockopt(g_socket_get_fd(made.get()), SOL_SOCKET, SO_TIMESTAMPNS, &on, sizeof on);
    setsockopt(g_socket_get_fd(made.get()), IPPROTO_IP, IP_TOS, &kExpedited, sizeof kExpedited);
    return made;
}

// Of what the system noted as the packet's arrival.
qint64 ageOf(msghdr& message)
{
    for (cmsghdr* part = CMSG_FIRSTHDR(&message); part; part = CMSG_NXTHDR(&message, part)) {
        if (part->cmsg_level != SOL_SOCKET || part->cmsg_type != SCM_TIMESTAMPNS)
            continue;
        timespec came;
        timespec now = {};
        memcpy(&came, CMSG_DATA(part), sizeof came);
        clock_gettime(CLOCK_REALTIME, &now);
        const qint64 age = qint64(now.tv_sec - came.tv_sec) * 1000000 + (now.tv_nsec - came.tv_nsec) / 1000;
        return std::clamp<qint64>(age, 0, 1000000); // the clock may have been set
    }
    return 0;
}

} // namespace

// From a port that nobody can guess, so that those of the call before are not taken for this one's.
std::unique_ptr<callSockets> callSockets::open()
{
    constexpr int kPairs = (LAST_PORT - FIRST_PORT) / 2 + 1;
    const auto first = callCrypto::randomNumber<unsigned int>();
    std::unique_ptr<callSockets> sockets(new callSockets);
    for (int i = 0; i < kPairs; ++i) {
        const int port = FIRST_PORT + 2 * int((first + unsigned(i)) % unsigned(kPairs));
        sockets->m_rtp = boundSocket(port);
        sockets->m_rtcp = sockets->m_rtp ? boundSocket(port + 1) : nullptr;
        sockets->m_nPort = port;
        if (sockets->m_rtcp)
            return sockets;
    }
    return nullptr;
}

int callSockets::descriptor(bool rtcp) const
{
    return g_socket_get_fd(socketOf(rtcp));
}

int callSockets::take(bool rtcp, unsigned char* packet, int size, sockaddr_in& from, qint64& ageUs)
{
    iovec part = {packet, size_t(size)};
    alignas(cmsghdr) char more[128];
    msghdr message = {};
    message.msg_name = &from;
    message.msg_namelen = sizeof from;
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = more;
    message.msg_controllen = sizeof more;
    const ssize_t got = recvmsg(g_socket_get_fd(socketOf(rtcp)), &message, MSG_DONTWAIT);
    if (got <= 0)
        return got == 0 ? -1 : errno == EAGAIN || errno == EWOULDBLOCK ? 0 : -1;
    ageUs = ageOf(message);
    return (message.msg_flags & MSG_TRUNC) != 0 ? -1 : int(got);
}

// What the network does not take is lost, as what it loses on the way.
void callSockets::send(bool rtcp, const unsigned char* packet, int size, const sockaddr_in& to)
{
    (void)!sendto(g_socket_get_fd(socketOf(rtcp)), packet, size_t(size), MSG_DONTWAIT | MSG_NOSIGNAL,
                  reinterpret_cast<const sockaddr*>(&to), sizeof to);
}
