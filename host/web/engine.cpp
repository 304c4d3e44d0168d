#include "host/web/engine.h"
#include "host/web/engineProxy.h"
#include "host/web/requestGuard.h"

void tagEngine::setServer(const QString& url) const
{
    guard->setServer(QUrl(url));
    proxy->setExempt({requestGuard::targetHere(QUrl(url)), QUrl(url).scheme() == "https"});
}
