#include "host/services/transfers/httpRequest.h"
#include "host/services/transfers/ownAddress.h"
#include <sys/socket.h>

namespace {

constexpr long kBlock = 96 << 10;         // bytes that are read at once
constexpr size_t kMostHead = 100 << 10;   // bytes
constexpr qint64 kMostPadding = 64 << 10; // bytes, beyond as many as the body has
constexpr int kStatusFinal = 200;         // and above
constexpr int kStatusUnauthorized = 401;

// The bytes are stored as they come, and their number is checked.
curl_slist* fields()
{
    static curl_slist* const list =
        curlLibrary::instance().slist_append(nullptr, "Accept-Encoding: identity");
    return list;
}

QByteArray addressOf(const QUrl& url)
{
    return url.toEncoded(QUrl::RemoveUserInfo | QUrl::RemoveFragment);
}

bool isOfTls(CURLcode result)
{
    switch (result) {
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_ENGINE_NOTFOUND:
    case CURLE_SSL_ENGINE_SETFAILED:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CIPHER:
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_ENGINE_INITFAILED:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_SHUTDOWN_FAILED:
    case CURLE_SSL_CRL_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
    case CURLE_SSL_INVALIDCERTSTATUS:
        return true;
    default:
        return false;
    }
}

} // namespace

httpRequest::httpRequest(httpLoop& loop, const QUrl& url, REACH reach, Listener& listener)
    : m_loop(loop), m_url(url), m_eReach(reach), m_listener(listener), m_pEasy(loop.take())
{
    setOptions();
    setJudges();
    m_loop.add(m_pEasy);
}

httpRequest::~httpRequest()
{
    m_loop.remove(m_pEasy);
    m_loop.giveBack(m_pEasy);
}

void httpRequest::setOptions()
{
    const auto set = [this](CURLoption option, auto value) { m_curl.easy_setopt(m_pEasy, option, value); };
    set(CURLOPT_URL, addressOf(m_url).constData());
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_PROXY, ""); // whatever the environment says
    set(CURLOPT_HTTP_VERSION, long(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_USERAGENT, "hxPhone");
    set(CURLOPT_HTTPHEADER, fields());
    set(CURLOPT_BUFFERSIZE, kBlock);
    set(CURLOPT_ERRORBUFFER, m_szError);
    set(CURLOPT_PRIVATE, static_cast<httpLoop::Request*>(this));
    set(CURLOPT_HEADERFUNCTION, &httpRequest::onLine);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEFUNCTION, &httpRequest::onBody);
    set(CURLOPT_WRITEDATA, this);
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L); // nobody waits for a name that is no longer wanted
    if (m_url.userName().isEmpty() || m_url.password().isEmpty())
        return;
    set(CURLOPT_HTTPAUTH, long(CURLAUTH_ANY)); // in the way that the server asks for
    set(CURLOPT_USERNAME, m_url.userName(QUrl::FullyDecoded).toUtf8().constData());
    set(CURLOPT_PASSWORD, m_url.password(QUrl::FullyDecoded).toUtf8().constData());
}

void httpRequest::setJudges()
{
    const auto set = [this](CURLoption option, auto value) { m_curl.easy_setopt(m_pEasy, option, value); };
    set(CURLOPT_OPENSOCKETFUNCTION, &httpRequest::onSocket);
    set(CURLOPT_OPENSOCKETDATA, this);
    set(CURLOPT_PREREQFUNCTION, &httpRequest::onConnected);
    set(CURLOPT_PREREQDATA, this);
    set(CURLOPT_DEBUGFUNCTION, &httpRequest::onWire);
    set(CURLOPT_DEBUGDATA, this);
    set(CURLOPT_NOPROGRESS, 0L);
    set(CURLOPT_XFERINFOFUNCTION, &httpRequest::onProgress);
    set(CURLOPT_XFERINFODATA, this);
}

bool httpRequest::mayReach(const QHostAddress& address)
{
    const bool barred = m_eReach == ELSEWHERE && ownAddress::isOwn(address);
    m_bBarred = m_bBarred || barred;
    return !barred;
}

// A name may stand for another address each time it is looked up: what counts is where it is connected to.
curl_socket_t httpRequest::onSocket(void* self, curlsocktype, curl_sockaddr* to)
{
    if (!static_cast<httpRequest*>(self)->mayReach(QHostAddress(&to->addr)))
        return CURL_SOCKET_BAD;
    return socket(to->family, to->socktype | SOCK_CLOEXEC, to->protocol);
}

// Also on a connection that another request has opened.
int httpRequest::onConnected(void* self, char* to, char*, int, int)
{
    const bool may = static_cast<httpRequest*>(self)->mayReach(QHostAddress(QString::fromLatin1(to)));
    return may ? CURL_PREREQFUNC_OK : CURL_PREREQFUNC_ABORT;
}

// What comes before it is unwrapped, or thrown away, is told only to who wants to hear everything, which
// costs too much where the body ends by itself.
void httpRequest::countWire()
{
    m_curl.easy_setopt(m_pEasy, CURLOPT_VERBOSE, 1L);
}

int httpRequest::onWire(CURL*, curl_infotype what, char*, size_t size, void* self)
{
    if (what == CURLINFO_DATA_IN)
        static_cast<httpRequest*>(self)->m_nWire += qint64(size);
    return 0;
}

// What a body is wrapped in has no end of its own: small chunks are good, endless remarks on one are not.
int httpRequest::onProgress(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
{
    httpRequest* request = static_cast<httpRequest*>(self);
    request->m_bPadded = request->m_nWire - request->m_nBody > request->m_nBody + kMostPadding;
    return request->m_bPadded;
}

size_t httpRequest::onLine(char* line, size_t, size_t length, void* self)
{
    return static_cast<httpRequest*>(self)->takeLine(line, length) ? length : 0;
}

// The head ends with an empty line; one that asks to continue, or for the password that there is, is none
// yet.
bool httpRequest::takeLine(const char* line, size_t length)
{
    m_nHead += length;
    if (m_nHead > kMostHead)
        return false;
    const bool isEnd = length > 0 && (line[0] == '\r' || line[0] == '\n');
    const int code = status();
    const bool isAsked = code == kStatusUnauthorized && !m_url.password().isEmpty();
    if (isEnd && (isAsked || announcedSize() < 0))
        countWire();
    if (!isEnd || m_bHead || code < kStatusFinal || isAsked)
        return true;
    m_bHead = true;
    return m_listener.onHead();
}

size_t httpRequest::onBody(char* bytes, size_t, size_t size, void* self)
{
    httpRequest* request = static_cast<httpRequest*>(self);
    if (!request->m_bHead)
        return size;
    request->m_nBody += qint64(size);
    return request->m_listener.onBytes(bytes, size) ? size : 0;
}

void httpRequest::end(CURLcode result)
{
    m_eResult = result;
    m_listener.onEnd();
}

int httpRequest::status() const
{
    long code = 0;
    m_curl.easy_getinfo(m_pEasy, CURLINFO_RESPONSE_CODE, &code);
    return int(code);
}

QByteArray httpRequest::field(const char* name) const
{
    curl_header* found = nullptr;
    return m_curl.easy_header(m_pEasy, name, 0, CURLH_HEADER, -1, &found) == CURLHE_OK
               ? QByteArray(found->value).trimmed()
               : QByteArray();
}

qint64 httpRequest::announcedSize() const
{
    bool isNumber = false;
    const qint64 size = field("Content-Length").toLongLong(&isNumber);
    return isNumber ? size : -1;
}

bool httpRequest::isFromHere() const
{
    const char* address = nullptr;
    m_curl.easy_getinfo(m_pEasy, CURLINFO_PRIMARY_IP, &address);
    return address && ownAddress::isOwn(QHostAddress(QString::fromLatin1(address)));
}

QByteArray httpRequest::tlsFailure() const
{
    if (!isOfTls(m_eResult))
        return QByteArray();
    return m_szError[0] ? m_szError : m_curl.easy_strerror(m_eResult);
}
