#include "tools/screenServer/accessRule.h"
#include <QRandomGenerator>

namespace {

// Takes the same time wherever the two differ.
bool isSame(const QByteArray& a, const QByteArray& b)
{
    if (a.size() != b.size())
        return false;
    unsigned char difference = 0;
    for (qsizetype i = 0; i < a.size(); ++i)
        difference = static_cast<unsigned char>(difference | (a[i] ^ b[i]));
    return difference == 0;
}

// A page may be asked for without an origin, as by a hand that types the address; a socket comes from a page.
bool isOriginRight(const tagHttpRequest& request, const QByteArray& host)
{
    if (!request.fields.contains("origin"))
        return !request.isForWebSocket();
    return request.field("origin") == "http://" + host;
}

} // namespace

AccessRule::AccessRule(const QByteArray& token, int port) : m_token(token), m_nPort(port) {}

QByteArray AccessRule::newToken()
{
    quint32 words[4];
    QRandomGenerator::system()->fillRange(words);
    return QByteArray(reinterpret_cast<const char*>(words), sizeof words).toHex();
}

bool AccessRule::isOurHost(const QByteArray& host) const
{
    const QByteArray port = QByteArray::number(m_nPort);
    if (host == "127.0.0.1:" + port || host == "localhost:" + port)
        return true;
    return m_nPort == 80 && (host == "127.0.0.1" || host == "localhost");
}

std::optional<QByteArray> AccessRule::admittedPath(const tagHttpRequest& request) const
{
    const QByteArray host = request.field("host");
    const QByteArray path = request.path();
    const qsizetype end = path.indexOf('/', 1);
    const QByteArray given = end < 0 ? path.mid(1) : path.mid(1, end - 1);
    if (!path.startsWith('/') || !isSame(given, m_token) || !isOurHost(host) || !isOriginRight(request, host))
        return std::nullopt;
    return end < 0 ? QByteArray("") : path.mid(end + 1);
}
