#pragma once
#include <QByteArray>
#include <memory>

using GSocket = struct _GSocket;

// The address on which the two players of this device root meet: every root has one of its own, so that
// phones side by side on a machine do not hear each other. Without a root it is 127.0.0.1. Streams never
// leave the machine, whatever addresses a message names: they stand for the phone itself. Any thread.
QByteArray loopbackAddress();

struct FreeSocket
{
    void operator()(GSocket* socket) const;
};
using LoopbackSocket = std::unique_ptr<GSocket, FreeSocket>;

// A datagram socket on a port of that address, which is nobody else's while this lives; port 0: any that is
// free. Null when the port is taken. Any thread.
LoopbackSocket loopbackSocket(int port);
// The port it has; 0 when it has none.
int loopbackPort(GSocket* socket);
// From now on it takes what comes from that port of the address, and nothing that came before. False when the
// system refuses.
bool loopbackTakeFrom(GSocket* socket, int port);
