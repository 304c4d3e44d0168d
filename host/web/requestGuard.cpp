#include "host/web/requestGuard.h"
#include "host/services/transfers/ownAddress.h"
#include <QStringList>

namespace {

QByteArray targetOf(const QUrl& url)
{
    const int usual = url.scheme() == "https" ? 443 : 80;
    return url.host().toLatin1() + ':' + QByteArray::number(url.port(usual));
}

} // namespace

bool requestGuard::isAllowed(const QUrl& address)
{
    static const QStringList schemes = {"data", "about", "blob", "http", "https"};
    return schemes.contains(address.scheme().toLower());
}

// A name is left to whoever looks it up.
QByteArray requestGuard::targetHere(const QUrl& server)
{
    const QHostAddress address(server.host());
    const bool isHere = server.host() == "localhost" || (!address.isNull() && ownAddress::isOwn(address));
    return isHere ? targetOf(server) : QByteArray();
}

void requestGuard::interceptRequest(QWebEngineUrlRequestInfo& info)
{
    const bool isReading = info.requestMethod() == "GET" || info.requestMethod() == "HEAD";
    const bool isSent = !m_here.isEmpty() && !isReading && targetOf(info.requestUrl()) == m_here;
    if (isSent || !isAllowed(info.requestUrl()))
        info.block(true);
}
