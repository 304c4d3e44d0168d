#include "support/host/net.h"
#include "host/services/system/hostLog.h"
#include "host/services/system/netFacts.h"
#include "host/services/system/netWorld.h"
#include "host/services/system/shellCommand.h"
#include "host/services/system/thisDevice.h"
#include "support/file/path.h"
#include "support/host/registry.h"
#include "support/host/trace.h"
#include <arpa/inet.h>

namespace {

const char* const kSystemFile = "/rundata/config/system.ini";
// The phone's network script leaves this mark when it finds that another host has the phone's address.
const char* const kConflictMark = "/rundata/run/address-conflict";
const char* const kNoMac = "00:00:00:00:00:00";

bool isSame(const in_addr& left, const in_addr& right)
{
    return left.s_addr == right.s_addr;
}

bool isWorldsAddress(const in_addr& address)
{
    for (const QString& text : netWorld().usedAddresses) {
        in_addr used = {};
        if (inet_pton(AF_INET, text.toLatin1().constData(), &used) == 1 && isSame(used, address))
            return true;
    }
    return false;
}

} // namespace

tagNetWorld& netWorld()
{
    static tagNetWorld world;
    return world;
}

in_addr netGetLocalIPv4()
{
    return netWorld().address ? *netWorld().address : netFacts::primary().address;
}

in_addr netGetWanNetmask()
{
    return netWorld().netmask ? *netWorld().netmask : netFacts::primary().netmask;
}

in_addr netGetWanGateway()
{
    return netWorld().gateway ? *netWorld().gateway : netFacts::gateway();
}

in_addr netGetWanPrimaryDNS()
{
    return netWorld().primaryDNS ? *netWorld().primaryDNS : netFacts::nameServer(0);
}

in_addr netGetWanSecondaryDNS()
{
    return netWorld().secondaryDNS ? *netWorld().secondaryDNS : netFacts::nameServer(1);
}

chString addr2String(const in_addr& address)
{
    char text[INET_ADDRSTRLEN] = {};
    inet_ntop(AF_INET, &address, text, sizeof text);
    return chString(text);
}

namespace {

QByteArray firstMac()
{
    for (const netFacts::tagInterface& entry : netFacts::interfaces()) {
        if (!entry.mac.isEmpty())
            return entry.mac;
    }
    return kNoMac;
}

} // namespace

chString netGetMACText(int separator)
{
    QByteArray mac = netWorld().mac ? netWorld().mac->toUtf8() : firstMac();
    if (separator > 0)
        mac.replace(':', char(separator));
    return chString(mac.constData());
}

int netGetNetworkType()
{
    return netWorld().type ? *netWorld().type
                           : nuxGetRegistryInt(kSystemFile, "Network", "eWANType", NET_TYPE_DHCP);
}

int netGetNetworkSta()
{
    if (netWorld().state)
        return *netWorld().state;
    const netFacts::tagInterface link = netFacts::primary();
    if (!link.isUp || !link.hasCarrier)
        return NET_DOWN;
    return link.address.s_addr != 0 ? NET_UP : NET_STARTING;
}

int netIsCableConnected()
{
    return netWorld().cable ? *netWorld().cable : netFacts::primary().hasCarrier ? 1 : 0;
}

// Nobody is asked on the wire, since the call must not wait: a phone knows the neighbours that the kernel
// has heard of. On any other machine, where the addresses are not the phone's to choose, only the world of
// the control interface counts.
int netIsIPUsed(const char* address)
{
    in_addr wanted = {};
    if (!address || inet_pton(AF_INET, address, &wanted) != 1)
        return 0;
    if (isWorldsAddress(wanted))
        return 1;
    return isThisDevice() && !isSame(wanted, netGetLocalIPv4()) && netFacts::isNeighbour(wanted) ? 1 : 0;
}

int netIsIPConflictting()
{
    return netWorld().conflict ? *netWorld().conflict : pathFileExist(kConflictMark);
}

void netFlushNetworkConfig()
{
    hostLog("flush", "network");
    if (isThisDevice())
        shellCommand::start("/phone/scripts/network.sh restart");
    else
        nuxTrace(TRACE_NOTE, "The network settings would be applied now");
}
