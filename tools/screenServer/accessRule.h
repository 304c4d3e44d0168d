#pragma once
// Who may see and touch the screen: whoever knows the token, from a page of this very server.
#include "tools/screenServer/httpRequest.h"
#include <optional>

class AccessRule
{
public:
    // port: the one that the page is served on.
    AccessRule(const QByteArray& token, int port);
    // 128 bits from the system, in hexadecimal digits.
    static QByteArray newToken();

    // What stands behind the token in the request's target, without the query: "vnc.html". Nothing where the
    // request does not know the token, names another host than this one (another name may lead to this
    // machine) or comes from a page of another origin.
    std::optional<QByteArray> admittedPath(const tagHttpRequest& request) const;

private:
    bool isOurHost(const QByteArray& host) const;

    QByteArray m_token;
    int m_nPort;
};
