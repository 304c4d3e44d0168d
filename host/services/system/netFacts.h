#pragma once
// What this machine says about its network. Any thread; nothing here waits.
#include <QByteArray>
#include <QByteArrayList>
#include <QList>
#include <netinet/in.h>

namespace netFacts {

struct tagInterface
{
    QByteArray name;
    int index = 0;
    bool isUp = false;
    bool hasCarrier = false;
    QByteArray mac;       // "00:11:22:33:44:55"
    in_addr address = {}; // 0.0.0.0 when it has none
    in_addr netmask = {};
};

// All but the loopback, by their number.
QList<tagInterface> interfaces();
// The one that leads out: that of the default route, else the first with an address, else the first; an
// empty name when the machine has none.
tagInterface primary();
in_addr gateway();
// number 0 or 1 of the name servers; 0.0.0.0 when there is none.
in_addr nameServer(int number);
// The address stands in the table of neighbours that answered.
bool isNeighbour(const in_addr& address);

// The readers of the system's tables, by their text.
QByteArray defaultRouteInterface(const QByteArray& routes, in_addr* gateway);
QList<in_addr> nameServersOf(const QByteArray& resolvConf);
bool isNeighbourIn(const QByteArray& arpTable, const in_addr& address);

} // namespace netFacts
