#include "tools/signServer/LocalAccess.h"
#include <algorithm>
#include <arpa/inet.h>

namespace {

bool IsLoopback(const QByteArray& address)
{
    return address.startsWith("127.") || address == "::1" || address.startsWith("::ffff:127.");
}

// A page of another site that has its name lead here comes with that name.
bool IsLoopbackHost(const QByteArray& host)
{
    const QByteArray name =
        host.startsWith('[') ? host.mid(1, host.indexOf(']') - 1) : host.split(':').first();
    in_addr address;
    const bool isAddress = name == "::1" || inet_pton(AF_INET, name.constData(), &address) == 1;
    return name.toLower() == "localhost" || (isAddress && IsLoopback(name));
}

// Every proxy can be told to leave one of them, and most do by themselves.
bool IsPassedOn(const WebRequest& request)
{
    static const char* const marks[] = {"via",
                                        "forwarded",
                                        "x-forwarded-for",
                                        "x-forwarded-host",
                                        "x-forwarded-proto",
                                        "x-forwarded-server",
                                        "x-real-ip",
                                        "true-client-ip",
                                        "cf-connecting-ip"};
    return std::any_of(std::begin(marks), std::end(marks),
                       [&](const char* mark) { return request.fields.contains(mark); });
}

// What a browser says of the page that asks; other programs say nothing. A person may follow a link from
// there.
bool IsOfAnotherSite(const WebRequest& request)
{
    const QByteArray origin = request.Field("origin"), site = request.Field("sec-fetch-site");
    const bool isForeign = !site.isEmpty() && site != "same-origin" && site != "none";
    return (!origin.isEmpty() && origin != "http://" + request.Field("host")) ||
           (isForeign && request.Field("sec-fetch-mode") != "navigate");
}

} // namespace

QByteArray LocalRefusal(const WebRequest& request)
{
    if (!IsLoopback(request.address) || !IsLoopbackHost(request.Field("host")))
        return "only on the server's own machine, under the name localhost or 127.0.0.1";
    if (IsPassedOn(request))
        return "not through a proxy";
    if (IsOfAnotherSite(request))
        return "not for a page of another site";
    return QByteArray();
}

QByteArray LocalChangeRefusal(const WebRequest& request)
{
    const QByteArray refusal = LocalRefusal(request);
    if (!refusal.isEmpty())
        return refusal;
    return request.Field(QByteArray(kChangeField).toLower().constData()).isEmpty()
               ? QByteArray("a change needs the field ") + kChangeField
               : QByteArray();
}
