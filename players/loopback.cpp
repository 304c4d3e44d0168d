#include "players/loopback.h"
#include "support/file/deviceRoot.h"

#undef signals // a name in what follows
#include <gio/gio.h>

namespace {

struct FreeObject
{
    void operator()(gpointer object) const { g_object_unref(object); }
};
using Address = std::unique_ptr<GSocketAddress, FreeObject>;

Address addressOf(int port)
{
    return Address(g_inet_socket_address_new_from_string(loopbackAddress().constData(), guint(port)));
}

} // namespace

QByteArray loopbackAddress()
{
    const QByteArray root(deviceGetRoot().GetText());
    if (root.isEmpty())
        return "127.0.0.1";
    quint32 number = 2166136261u;
    for (const char c : root)
        number = (number ^ static_cast<unsigned char>(c)) * 16777619u;
    // No part is 0 or 255, which mean more than one machine.
    return "127." + QByteArray::number(1 + number % 253) + '.' + QByteArray::number(1 + number / 253 % 253) +
           '.' + QByteArray::number(1 + number / 64009 % 253);
}

void FreeSocket::operator()(GSocket* socket) const
{
    g_object_unref(socket); // closes it
}

LoopbackSocket loopbackSocket(int port)
{
    LoopbackSocket socket(
        g_socket_new(G_SOCKET_FAMILY_IPV4, G_SOCKET_TYPE_DATAGRAM, G_SOCKET_PROTOCOL_UDP, nullptr));
    // Two that share a port would share its packets.
    if (!socket || !g_socket_bind(socket.get(), addressOf(port).get(), FALSE, nullptr))
        return nullptr;
    return socket;
}

int loopbackPort(GSocket* socket)
{
    const Address address(socket ? g_socket_get_local_address(socket, nullptr) : nullptr);
    return address ? g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(address.get())) : 0;
}

bool loopbackTakeFrom(GSocket* socket, int port)
{
    if (!g_socket_connect(socket, addressOf(port).get(), nullptr, nullptr))
        return false;
    char byte;
    while (g_socket_receive_with_blocking(socket, &byte, sizeof byte, FALSE, nullptr, nullptr) >= 0) {
    }
    return true;
}
