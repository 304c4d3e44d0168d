#include "host/services/transfers/ownAddress.h"
#include <QNetworkInterface>
#include <algorithm>

namespace {

// The scope names a device and not another address.
QHostAddress withoutScope(QHostAddress address)
{
    address.setScopeId(QString());
    return address;
}

bool isOfAnInterface(const QHostAddress& address)
{
    const QList<QHostAddress> own = ownAddress::interfaces()();
    return std::any_of(own.begin(), own.end(),
                       [&](const QHostAddress& other) { return withoutScope(other) == address; });
}

} // namespace

ownAddress::Interfaces& ownAddress::interfaces()
{
    static Interfaces source = &QNetworkInterface::allAddresses;
    return source;
}

bool ownAddress::isOwn(const QHostAddress& address)
{
    bool isIPv4 = false;
    const QHostAddress plain(address.toIPv4Address(&isIPv4)); // also one in the form of IPv6
    const QHostAddress tested = isIPv4 ? plain : withoutScope(address);
    return tested.isLoopback() || tested.isLinkLocal() || tested == QHostAddress::AnyIPv4 ||
           tested == QHostAddress::AnyIPv6 || (isIPv4 && tested.isInSubnet(QHostAddress("0.0.0.0"), 8)) ||
           isOfAnInterface(tested);
}

bool ownAddress::isAnyOwn(const QList<QHostAddress>& addresses)
{
    return std::any_of(addresses.begin(), addresses.end(), isOwn);
}
