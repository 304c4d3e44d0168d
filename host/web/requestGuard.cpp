#include "host/web/requestGuard.h"
#include <QStringList>

bool requestGuard::isAllowed(const QUrl& address)
{
    static const QStringList schemes = {"data", "about", "blob", "http", "https"};
    return schemes.contains(address.scheme().toLower());
}

void requestGuard::interceptRequest(QWebEngineUrlRequestInfo& info)
{
    if (!isAllowed(info.requestUrl()))
        info.block(true);
}
