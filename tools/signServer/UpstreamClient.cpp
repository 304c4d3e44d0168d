#include "tools/signServer/UpstreamClient.h"
#include <curl/curl.h>

namespace {

constexpr long kConnectMs = 4000;
constexpr int kLookMs = 1000;
constexpr long kMostToAHost = 6; // connections

size_t TakeBody(char* bytes, size_t size, size_t count, void* user)
{
    auto& reply = *static_cast<UpstreamReply*>(user);
    if (reply.body.size() + qsizetype(size * count) > UpstreamClient::LargestBody)
        return 0;
    reply.body.append(bytes, qsizetype(size * count));
    return size * count;
}

size_t TakeField(char* bytes, size_t size, size_t count, void* user)
{
    const QByteArray line = QByteArray(bytes, qsizetype(size * count)).trimmed();
    const char* const name = "retry-after:";
    if (line.toLower().startsWith(name))
        static_cast<UpstreamReply*>(user)->retryAfter = line.mid(qsizetype(strlen(name))).trimmed();
    return size * count;
}

} // namespace

struct UpstreamClient::Transfer
{
    Transfer(const QByteArray& address, int patienceMs, const Done& whenDone)
        : done(whenDone), handle(curl_easy_init())
    {
        curl_easy_setopt(handle, CURLOPT_URL, address.constData());
        curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
        curl_easy_setopt(handle, CURLOPT_PATH_AS_IS, 1L);
        curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
        curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, long(patienceMs));
        curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT_MS, kConnectMs);
        curl_easy_setopt(handle, CURLOPT_ACCEPT_ENCODING, "");
        curl_easy_setopt(handle, CURLOPT_USERAGENT, "hxSignServer");
        curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, TakeBody);
        curl_easy_setopt(handle, CURLOPT_WRITEDATA, &reply);
        curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, TakeField);
        curl_easy_setopt(handle, CURLOPT_HEADERDATA, &reply);
        curl_easy_setopt(handle, CURLOPT_PRIVATE, this);
    }
    ~Transfer() { curl_easy_cleanup(handle); }
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    Done done;
    UpstreamReply reply;
    CURL* handle;
};

UpstreamClient::UpstreamClient()
{
    curl_global_init(CURL_GLOBAL_DEFAULT);
    m_pMulti = curl_multi_init();
    curl_multi_setopt(m_pMulti, CURLMOPT_MAX_HOST_CONNECTIONS, kMostToAHost);
    m_thread = std::thread([this] { Run(); });
}

UpstreamClient::~UpstreamClient()
{
    Settle();
    curl_multi_cleanup(m_pMulti);
}

void UpstreamClient::Settle()
{
    Stop();
    if (m_thread.joinable())
        m_thread.join();
}

void UpstreamClient::Get(const QByteArray& address, int patienceMs, const Done& done)
{
    auto transfer = std::make_unique<Transfer>(address, patienceMs, done);
    QMutexLocker locker(&m_lock);
    if (!m_bStopped) {
        m_waiting.push_back(std::move(transfer));
        curl_multi_wakeup(m_pMulti);
        return;
    }
    locker.unlock();
    Deliver(*transfer, CURLE_ABORTED_BY_CALLBACK);
}

void UpstreamClient::Stop()
{
    QMutexLocker locker(&m_lock);
    m_bStopped = true;
    curl_multi_wakeup(m_pMulti);
}

void UpstreamClient::Run()
{
    for (;;) {
        {
            QMutexLocker locker(&m_lock);
            if (m_bStopped)
                break;
        }
        StartWaiting();
        int running = 0, left = 0;
        curl_multi_perform(m_pMulti, &running);
        while (const CURLMsg* message = curl_multi_info_read(m_pMulti, &left)) {
            if (message->msg == CURLMSG_DONE)
                FinishOne(message->easy_handle, message->data.result);
        }
        curl_multi_poll(m_pMulti, nullptr, 0, kLookMs, nullptr);
    }
    FailAll();
}

void UpstreamClient::StartWaiting()
{
    QMutexLocker locker(&m_lock);
    while (!m_waiting.empty()) {
        curl_multi_add_handle(m_pMulti, m_waiting.front()->handle);
        m_running.splice(m_running.end(), m_waiting, m_waiting.begin());
    }
}

void UpstreamClient::FinishOne(void* handle, int code)
{
    Transfer* pTransfer = nullptr;
    curl_easy_getinfo(handle, CURLINFO_PRIVATE, &pTransfer);
    curl_multi_remove_handle(m_pMulti, handle);
    for (auto it = m_running.begin(); it != m_running.end(); ++it) {
        if (it->get() != pTransfer)
            continue;
        const std::unique_ptr<Transfer> transfer = std::move(*it);
        m_running.erase(it);
        Deliver(*transfer, code);
        return;
    }
}

void UpstreamClient::Deliver(Transfer& transfer, int code)
{
    UpstreamReply& reply = transfer.reply;
    long status = 0;
    curl_easy_getinfo(transfer.handle, CURLINFO_RESPONSE_CODE, &status);
    if (code == CURLE_OK)
        reply.status = int(status);
    else
        reply.fault = code == CURLE_WRITE_ERROR ? QByteArray("the answer is too large")
                                                : QByteArray(curl_easy_strerror(CURLcode(code)));
    transfer.done(reply);
}

void UpstreamClient::FailAll()
{
    QMutexLocker locker(&m_lock);
    m_running.splice(m_running.end(), m_waiting);
    locker.unlock();
    for (const auto& transfer : m_running) {
        curl_multi_remove_handle(m_pMulti, transfer->handle);
        Deliver(*transfer, CURLE_ABORTED_BY_CALLBACK);
    }
    m_running.clear();
}
