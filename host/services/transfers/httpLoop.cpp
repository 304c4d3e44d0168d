#include "host/services/transfers/httpLoop.h"
#include <QSocketNotifier>

// What is awaited of a socket. Its notifiers may be in the middle of telling when it closes.
struct httpLoop::tagSocket
{
    QSocketNotifier* pRead;
    QSocketNotifier* pWrite;
    ~tagSocket()
    {
        for (QSocketNotifier* notifier : {pRead, pWrite}) {
            notifier->setEnabled(false);
            notifier->deleteLater();
        }
    }
};

httpLoop::httpLoop(int connections)
{
    m_pRequests = m_curl.multi_init();
    m_curl.multi_setopt(m_pRequests, CURLMOPT_MAX_HOST_CONNECTIONS, long(connections));
    m_curl.multi_setopt(m_pRequests, CURLMOPT_PIPELINING, long(CURLPIPE_NOTHING));
    m_curl.multi_setopt(m_pRequests, CURLMOPT_SOCKETFUNCTION, &httpLoop::onSocket);
    m_curl.multi_setopt(m_pRequests, CURLMOPT_SOCKETDATA, this);
    m_curl.multi_setopt(m_pRequests, CURLMOPT_TIMERFUNCTION, &httpLoop::onTimer);
    m_curl.multi_setopt(m_pRequests, CURLMOPT_TIMERDATA, this);
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.callOnTimeout(this, [this] { act(CURL_SOCKET_TIMEOUT, 0); });
}

httpLoop::~httpLoop()
{
    for (CURL* request : m_spare)
        m_curl.easy_cleanup(request);
    m_curl.multi_cleanup(m_pRequests);
}

CURL* httpLoop::take()
{
    return m_spare.isEmpty() ? m_curl.easy_init() : m_spare.takeLast();
}

void httpLoop::giveBack(CURL* request)
{
    m_curl.easy_reset(request);
    m_spare.append(request);
}

void httpLoop::add(CURL* request)
{
    m_curl.multi_add_handle(m_pRequests, request);
}

void httpLoop::remove(CURL* request)
{
    m_curl.multi_remove_handle(m_pRequests, request);
}

int httpLoop::onSocket(CURL*, curl_socket_t socket, int what, void* self, void* known)
{
    httpLoop* loop = static_cast<httpLoop*>(self);
    tagSocket* its = static_cast<tagSocket*>(known);
    if (what == CURL_POLL_REMOVE) {
        loop->m_curl.multi_assign(loop->m_pRequests, socket, nullptr);
        delete its;
        return 0;
    }
    if (!its)
        its = loop->watch(socket);
    its->pRead->setEnabled(what & CURL_POLL_IN);
    its->pWrite->setEnabled(what & CURL_POLL_OUT);
    return 0;
}

httpLoop::tagSocket* httpLoop::watch(curl_socket_t socket)
{
    tagSocket* watched = new tagSocket{new QSocketNotifier(socket, QSocketNotifier::Read, this),
                                       new QSocketNotifier(socket, QSocketNotifier::Write, this)};
    connect(watched->pRead, &QSocketNotifier::activated, this,
            [this, socket] { act(socket, CURL_CSELECT_IN); });
    connect(watched->pWrite, &QSocketNotifier::activated, this,
            [this, socket] { act(socket, CURL_CSELECT_OUT); });
    m_curl.multi_assign(m_pRequests, socket, watched);
    return watched;
}

int httpLoop::onTimer(CURLM*, long ms, void* self)
{
    QTimer& timer = static_cast<httpLoop*>(self)->m_timer;
    if (ms < 0)
        timer.stop();
    else
        timer.start(int(ms));
    return 0;
}

void httpLoop::act(curl_socket_t socket, int events)
{
    int running = 0;
    m_curl.multi_socket_action(m_pRequests, socket, events, &running);
    tellEnds();
}

// Whoever is told may add and remove requests.
void httpLoop::tellEnds()
{
    int left = 0;
    while (const CURLMsg* news = m_curl.multi_info_read(m_pRequests, &left)) {
        if (news->msg != CURLMSG_DONE)
            continue;
        const CURLcode result = news->data.result;
        Request* request = nullptr;
        m_curl.easy_getinfo(news->easy_handle, CURLINFO_PRIVATE, &request);
        request->end(result);
    }
}
