#include "host/services/transfers/redirectRule.h"
#include <QHostInfo>
#include <algorithm>

namespace {

// What a name stands for; a name of nothing is nobody's.
void askIsOwn(const QUrl& url, QObject* context, std::function<void(bool own)> answer)
{
    QHostInfo::lookupHost(url.host(), context, [answer = std::move(answer)](const QHostInfo& info) {
        const QList<QHostAddress> addresses = info.addresses();
        answer(std::any_of(addresses.begin(), addresses.end(), redirectRule::isOwnAddress));
    });
}

bool isHttp(const QUrl& url)
{
    return url.scheme() == "http" || url.scheme() == "https";
}

} // namespace

bool redirectRule::isOwnAddress(const QHostAddress& address)
{
    bool isIPv4 = false;
    const QHostAddress plain(address.toIPv4Address(&isIPv4)); // also one in the form of IPv6
    const QHostAddress& tested = isIPv4 ? plain : address;
    return tested.isLoopback() || tested.isLinkLocal() || tested == QHostAddress::AnyIPv4 ||
           tested == QHostAddress::AnyIPv6 || (isIPv4 && tested.isInSubnet(QHostAddress("0.0.0.0"), 8));
}

void redirectRule::ask(const QUrl& from, const QUrl& to, QObject* context,
                       std::function<void(bool allowed)> answer)
{
    if (!isHttp(to) || (from.scheme() == "https" && to.scheme() != "https")) {
        answer(false);
        return;
    }
    askIsOwn(to, context, [from, context, answer = std::move(answer)](bool own) {
        if (!own)
            answer(true);
        else
            askIsOwn(from, context, answer);
    });
}
