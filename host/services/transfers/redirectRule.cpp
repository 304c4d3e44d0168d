#include "host/services/transfers/redirectRule.h"
#include "host/services/transfers/ownAddress.h"
#include <QHostInfo>

namespace {

// What a name stands for; a name of nothing is nobody's.
void askIsOwn(const QUrl& url, QObject* context, std::function<void(bool own)> answer)
{
    QHostInfo::lookupHost(url.host(), context, [answer = std::move(answer)](const QHostInfo& info) {
        answer(ownAddress::isAnyOwn(info.addresses()));
    });
}

bool isHttp(const QUrl& url)
{
    return url.scheme() == "http" || url.scheme() == "https";
}

} // namespace

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
