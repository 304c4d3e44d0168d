#include "players/loopback.h"
#include "support/file/deviceRoot.h"

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
