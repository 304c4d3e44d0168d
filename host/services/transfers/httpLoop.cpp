#include "host/services/transfers/httpLoop.h"
#include <QSocketNotifier>

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

// Between two requests nothing is awaited of a socket, and its number may come back as another's.
int httpLoop::onSocket(CURL*, curl_socket_t socket, int what, void* self, void*)
{
    const tagSocket& its = static_cast<httpLoop*>(self)->watched(socket);
    its.pRead->setEnabled(what != CURL_POLL_REMOVE && (what & CURL_POLL_IN));
    its.pWrite->setEnabled(what != CURL_POLL_REMOVE && (what & CURL_POLL_OUT));
    return 0;
}

// They stay for the next socket of that number: making them for each request costs more than telling.
httpLoop::tagSocket& httpLoop::watched(curl_socket_t socket)
{
    tagSocket& its = m_sockets[socket];
    if (!its.pRead) {
        its.pRead = new QSocketNotifier(socket, QSocketNotifier::Read, this);
        its.pWrite = new QSocketNotifier(socket, QSocketNotifier::Write, this);
        connect(its.pRead, &QSocketNotifier::activated, this,
                [this, socket] { act(socket, CURL_CSELECT_IN); });
        connect(its.pWrite, &QSocketNotifier::activated, this,
                [this, socket] { act(socket, CURL_CSELECT_OUT); });
    }
    return its;
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
