#include "host/services/transfers/redirectRule.h"
#include "host/services/transfers/curlLibrary.h"
#include <memory>

namespace {

bool isHttp(const QUrl& url)
{
    return url.scheme() == "http" || url.scheme() == "https";
}

// The host that the transfer would ask; empty when it finds none.
QByteArray hostAsAsked(const QUrl& url)
{
    const curlLibrary& curl = curlLibrary::instance();
    if (!curl.isThere())
        return QByteArray();
    const std::unique_ptr<CURLU, decltype(curl.url_cleanup)> read(curl.url(), curl.url_cleanup);
    char* text = nullptr;
    if (curl.url_set(read.get(), CURLUPART_URL, url.toEncoded(QUrl::RemoveUserInfo).constData(), 0) !=
            CURLUE_OK ||
        curl.url_get(read.get(), CURLUPART_HOST, &text, 0) != CURLUE_OK)
        return QByteArray();
    const QByteArray host(text);
    curl.free(text);
    return host.startsWith('[') ? host.mid(1, host.size() - 2) : host;
}

// Where one reader finds no host, another may find one in the path.
bool isReadAlike(const QUrl& url)
{
    const QByteArray host = url.host(QUrl::FullyEncoded).toLatin1();
    return url.isValid() && !host.isEmpty() && host == hostAsAsked(url);
}

} // namespace

bool redirectRule::isAllowed(const QUrl& from, const QUrl& to)
{
    return isHttp(to) && (from.scheme() != "https" || to.scheme() == "https") && isReadAlike(to);
}
