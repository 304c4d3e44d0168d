#include "host/services/system/netFacts.h"
#include <QFile>
#include <QMap>
#include <algorithm>
#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netpacket/packet.h>

namespace {

constexpr int kMacSize = 6;
constexpr unsigned kRouteUp = 1;
constexpr unsigned kArpComplete = 2;

// Tables of the kernel tell no size, so they are read to their end.
QByteArray systemFile(const char* path)
{
    QFile file(QString::fromLatin1(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QList<QByteArrayList> rows(const QByteArray& table)
{
    QList<QByteArrayList> result;
    for (const QByteArray& line : table.split('\n'))
        result.append(line.simplified().split(' '));
    return result;
}

in_addr addressOf(const sockaddr* address)
{
    return reinterpret_cast<const sockaddr_in*>(address)->sin_addr;
}

void addAddress(netFacts::tagInterface& entry, const ifaddrs& item)
{
    if (!item.ifa_addr)
        return;
    if (item.ifa_addr->sa_family == AF_INET && entry.address.s_addr == 0) {
        entry.address = addressOf(item.ifa_addr);
        if (item.ifa_netmask)
            entry.netmask = addressOf(item.ifa_netmask);
    } else if (item.ifa_addr->sa_family == AF_PACKET) {
        const auto* link = reinterpret_cast<const sockaddr_ll*>(item.ifa_addr);
        if (link->sll_halen == kMacSize)
            entry.mac =
                QByteArray(reinterpret_cast<const char*>(link->sll_addr), kMacSize).toHex(':').toUpper();
    }
}

// The kernel writes addresses in its tables as the number that lies in memory.
in_addr tableAddress(const QByteArray& hex)
{
    in_addr address = {};
    address.s_addr = hex.toUInt(nullptr, 16);
    return address;
}

} // namespace

QList<netFacts::tagInterface> netFacts::interfaces()
{
    QMap<int, tagInterface> found;
    ifaddrs* list = nullptr;
    if (getifaddrs(&list) != 0)
        return {};
    for (const ifaddrs* item = list; item; item = item->ifa_next) {
        if (item->ifa_flags & IFF_LOOPBACK)
            continue;
        const int index = static_cast<int>(if_nametoindex(item->ifa_name));
        tagInterface& entry = found[index];
        entry.name = item->ifa_name;
        entry.index = index;
        entry.isUp = (item->ifa_flags & IFF_UP) != 0;
        entry.hasCarrier = (item->ifa_flags & IFF_RUNNING) != 0;
        addAddress(entry, *item);
    }
    freeifaddrs(list);
    return found.values();
}

netFacts::tagInterface netFacts::primary()
{
    const QList<tagInterface> all = interfaces();
    const QByteArray routed = defaultRouteInterface(systemFile("/proc/net/route"), nullptr);
    for (const tagInterface& entry : all) {
        if (!routed.isEmpty() && entry.name == routed)
            return entry;
    }
    for (const tagInterface& entry : all) {
        if (entry.address.s_addr != 0)
            return entry;
    }
    return all.isEmpty() ? tagInterface() : all.first();
}

in_addr netFacts::gateway()
{
    in_addr found = {};
    defaultRouteInterface(systemFile("/proc/net/route"), &found);
    return found;
}

in_addr netFacts::nameServer(int number)
{
    const QList<in_addr> servers = nameServersOf(systemFile("/etc/resolv.conf"));
    return number < servers.size() ? servers[number] : in_addr{};
}

bool netFacts::isNeighbour(const in_addr& address)
{
    return isNeighbourIn(systemFile("/proc/net/arp"), address);
}

// Columns: interface, destination, gateway, flags, references, use, metric, mask.
QByteArray netFacts::defaultRouteInterface(const QByteArray& routes, in_addr* gateway)
{
    QByteArray name;
    uint best = 0;
    for (const QByteArrayList& row : rows(routes)) {
        if (row.size() < 8 || row[1] != "00000000" || row[7] != "00000000" ||
            !(row[3].toUInt(nullptr, 16) & kRouteUp))
            continue;
        const uint metric = row[6].toUInt();
        if (!name.isEmpty() && metric >= best)
            continue;
        name = row[0];
        best = metric;
        if (gateway)
            *gateway = tableAddress(row[2]);
    }
    return name;
}

QList<in_addr> netFacts::nameServersOf(const QByteArray& resolvConf)
{
    QList<in_addr> servers;
    for (const QByteArrayList& row : rows(resolvConf)) {
        in_addr address = {};
        if (row.size() >= 2 && row[0] == "nameserver" &&
            inet_pton(AF_INET, row[1].constData(), &address) == 1)
            servers.append(address);
    }
    return servers;
}

// Columns: address, hardware type, flags, hardware address, mask, device.
bool netFacts::isNeighbourIn(const QByteArray& arpTable, const in_addr& address)
{
    for (const QByteArrayList& row : rows(arpTable)) {
        in_addr neighbour = {};
        if (row.size() >= 4 && (row[2].toUInt(nullptr, 16) & kArpComplete) &&
            inet_pton(AF_INET, row[0].constData(), &neighbour) == 1 && neighbour.s_addr == address.s_addr)
            return true;
    }
    return false;
}
