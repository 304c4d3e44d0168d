#include "host/services/transfers/httpRequest.h"

namespace {

constexpr long kBlock = 96 << 10;       // bytes that are read at once
constexpr size_t kMostHead = 100 << 10; // bytes
constexpr int kStatusFinal = 200;       // and above
constexpr int kStatusUnauthorized = 401;

// The bytes are stored as they come, and their number is checked.
curl_slist* fields()
{
    static curl_slist* const list = curl_slist_append(nullptr, "Accept-Encoding: identity");
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

httpRequest::httpRequest(httpLoop& loop, const QUrl& url, Listener& listener)
    : m_loop(loop), m_url(url), m_listener(listener), m_pEasy(curl_easy_init())
{
    setOptions();
    m_loop.add(m_pEasy);
}

httpRequest::~httpRequest()
{
    m_loop.remove(m_pEasy);
    curl_easy_cleanup(m_pEasy);
}

void httpRequest::setOptions()
{
    const auto set = [this](CURLoption option, auto value) { curl_easy_setopt(m_pEasy, option, value); };
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
    if (!isEnd || m_bHead || code < kStatusFinal || isAsked)
        return true;
    m_bHead = true;
    return m_listener.onHead();
}

size_t httpRequest::onBody(char* bytes, size_t, size_t size, void* self)
{
    httpRequest* request = static_cast<httpRequest*>(self);
    return !request->m_bHead || request->m_listener.onBytes(bytes, size) ? size : 0;
}

void httpRequest::end(CURLcode result)
{
    m_eResult = result;
    m_listener.onEnd();
}

int httpRequest::status() const
{
    long code = 0;
    curl_easy_getinfo(m_pEasy, CURLINFO_RESPONSE_CODE, &code);
    return int(code);
}

QByteArray httpRequest::field(const char* name) const
{
    curl_header* found = nullptr;
    return curl_easy_header(m_pEasy, name, 0, CURLH_HEADER, -1, &found) == CURLHE_OK
               ? QByteArray(found->value).trimmed()
               : QByteArray();
}

qint64 httpRequest::announcedSize() const
{
    bool isNumber = false;
    const qint64 size = field("Content-Length").toLongLong(&isNumber);
    return isNumber ? size : -1;
}

QByteArray httpRequest::tlsFailure() const
{
    if (!isOfTls(m_eResult))
        return QByteArray();
    return m_szError[0] ? m_szError : curl_easy_strerror(m_eResult);
}
