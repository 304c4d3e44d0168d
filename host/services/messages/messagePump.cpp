#include "host/services/messages/messagePump.h"
#include "host/services/messages/messageSocket.h"
#include "host/services/messages/replyBook.h"
#include "support/host/trace.h"
#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <vector>

using messageWire::tagFrame;

namespace {

constexpr int kMaxGuests = 64;
constexpr int kRetryMs = 200; // until another guest is let in when descriptors have run out

void closeDescriptor(int& fd)
{
    if (fd >= 0)
        close(fd);
    fd = -1;
}

} // namespace

messagePump& messagePump::instance()
{
    static messagePump pump;
    return pump;
}

messagePump::~messagePump()
{
    stop();
}

bool messagePump::listen(const QByteArray& name, const threadQueueRef& queue)
{
    QMutexLocker lock(&m_mutex);
    if (m_bStop || m_nListener >= 0)
        return false;
    m_nListener = messageSocket::listenAs(name, m_nLock);
    if (m_nListener < 0)
        return false;
    m_name = name;
    m_queue = queue;
    start();
    wake();
    return true;
}

void messagePump::stop()
{
    QMutexLocker lock(&m_mutex);
    m_bStop = true;
    wake();
    std::thread thread;
    thread.swap(m_thread);
    lock.unlock();
    if (thread.joinable())
        thread.join();
    lock.relock();
    for (const LinkRef& link : m_links) {
        link->stream.flush();
        replyBook::endConnection(link->nId);
    }
    m_links.clear();
    m_guests.clear();
    if (m_nListener >= 0)
        messageSocket::removeName(m_name);
    closeDescriptor(m_nListener);
    closeDescriptor(m_nLock);
    closeDescriptor(m_nWakeFd);
    m_name.clear();
    m_queue.reset();
    m_bStop = false;
}

bool messagePump::isListeningAs(const QByteArray& name) const
{
    QMutexLocker lock(&m_mutex);
    return m_nListener >= 0 && m_name == name;
}

threadQueueRef messagePump::ownQueue() const
{
    QMutexLocker lock(&m_mutex);
    return m_queue;
}

// The mutex is held.
void messagePump::start()
{
    if (m_thread.joinable())
        return;
    m_nWakeFd = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    threadQueue::setRoomHook([] {
        messagePump& pump = instance();
        QMutexLocker lock(&pump.m_mutex);
        pump.wake();
    });
    m_thread = std::thread([this] { run(); });
}

// The mutex is held.
void messagePump::wake()
{
    if (m_nWakeFd >= 0)
        eventfd_write(m_nWakeFd, 1);
}

bool messagePump::isReachable(const QByteArray& name)
{
    QMutexLocker lock(&m_mutex);
    return linkTo(name) != nullptr;
}

bool messagePump::send(const QByteArray& name, const tagFrame& frame)
{
    QMutexLocker lock(&m_mutex);
    return sendLocked(name, frame);
}

void messagePump::broadcast(const tagFrame& frame)
{
    const QList<QByteArray> names = messageSocket::names();
    QMutexLocker lock(&m_mutex);
    for (const QByteArray& name : names) {
        if (name != m_name)
            sendLocked(name, frame);
    }
}

bool messagePump::sendLocked(const QByteArray& name, const tagFrame& frame)
{
    const LinkRef link = linkTo(name);
    if (!link)
        return false;
    if (!link->stream.append(frame)) {
        if (!link->bDropping)
            nuxTrace(TRACE_NOTE, "%s does not read its messages, they are dropped", name.constData());
        link->bDropping = true;
        return false;
    }
    link->bDropping = false;
    if (frame.nTicket)
        replyBook::expect(frame.nTicket, link->nId);
    wake();
    return true;
}

// The connection to a peer, made anew when there is none or the peer has closed it. The mutex is held.
messagePump::LinkRef messagePump::linkTo(const QByteArray& name)
{
    LinkRef link = m_bStop ? nullptr : m_links.value(name);
    if (link && !messageSocket::isClosed(link->stream.socket()))
        return link;
    if (link) {
        m_links.remove(name);
        replyBook::endConnection(link->nId);
    }
    const int socket = m_bStop ? -1 : messageSocket::connectTo(name);
    if (socket < 0)
        return nullptr;
    link = std::make_shared<tagLink>(++m_nLastId, name, socket);
    m_links.insert(name, link);
    start();
    wake();
    return link;
}

void messagePump::run()
{
    while (turn()) {
    }
}

// Sleeps until something is to do, and does it. False at the end.
bool messagePump::turn()
{
    std::vector<pollfd> waits;
    std::vector<LinkRef> links;
    std::vector<GuestRef> guests;
    bool isShort = false;
    {
        QMutexLocker lock(&m_mutex);
        if (m_bStop)
            return false;
        const bool isFull = m_queue && m_queue->isFullForRemote();
        waits.push_back({m_nWakeFd, POLLIN, 0});
        isShort = m_bNoDescriptors;
        waits.push_back({isShort ? -1 : m_nListener, POLLIN, 0});
        for (const LinkRef& link : m_links) {
            links.push_back(link);
            waits.push_back(
                {link->stream.socket(), short(POLLIN | (link->stream.hasOutput() ? POLLOUT : 0)), 0});
        }
        for (const GuestRef& guest : m_guests) {
            guests.push_back(guest);
            const short events = short((isFull ? 0 : POLLIN) | (guest->stream.hasOutput() ? POLLOUT : 0));
            waits.push_back({events ? guest->stream.socket() : -1, events, 0});
        }
    }
    poll(waits.data(), waits.size(), isShort ? kRetryMs : -1);
    size_t next = 2;
    for (const LinkRef& link : links)
        serveLink(link, waits[next++].revents);
    for (const GuestRef& guest : guests) {
        serveGuest(guest, short(waits[next].revents & (waits[next].events | POLLHUP | POLLERR)));
        ++next;
    }
    if (waits[0].revents)
        clearWake();
    if (waits[1].revents || isShort)
        acceptGuest();
    return true;
}

void messagePump::clearWake() const
{
    eventfd_t count = 0;
    eventfd_read(m_nWakeFd, &count);
}

void messagePump::acceptGuest()
{
    QMutexLocker lock(&m_mutex);
    errno = 0;
    const int socket = messageSocket::acceptFrom(m_nListener);
    m_bNoDescriptors = socket < 0 && (errno == EMFILE || errno == ENFILE);
    if (socket < 0)
        return;
    makeRoomForGuest();
    const quint64 id = ++m_nLastId;
    m_guests.insert(id, std::make_shared<tagGuest>(id, ++m_nHeard, socket));
}

// The phone's processes are few; one that gets out of hand must not take every descriptor of this one.
// Whoever was silent longest goes: a peer that means to speak again connects again. The mutex is held.
void messagePump::makeRoomForGuest()
{
    if (m_guests.size() < kMaxGuests)
        return;
    if (!m_bCrowded)
        nuxTrace(TRACE_NOTE, "more than %d connections between the phone's processes, idle ones are closed",
                 kMaxGuests);
    m_bCrowded = true;
    const auto oldest =
        std::min_element(m_guests.begin(), m_guests.end(),
                         [](const GuestRef& a, const GuestRef& b) { return a->nHeard < b->nHeard; });
    m_guests.erase(oldest);
}

void messagePump::serveLink(const LinkRef& link, short events)
{
    if (!events)
        return;
    QList<tagFrame> frames;
    bool open = link->stream.receive(frames);
    for (const tagFrame& frame : frames) {
        if (frame.eKind == messageWire::KIND_REPLY)
            replyBook::answer(frame.nTicket, tagReply{frame.nResult, frame.extra});
        else
            open = false;
    }
    QMutexLocker lock(&m_mutex);
    const bool writable = link->stream.flush();
    lock.unlock();
    if (!open || !writable)
        closeLink(link);
}

void messagePump::serveGuest(const GuestRef& guest, short events)
{
    bool open = true;
    if (events & (POLLIN | POLLHUP | POLLERR)) {
        QList<tagFrame> frames;
        open = guest->stream.receive(frames);
        if (!frames.isEmpty())
            guest->nHeard = ++m_nHeard;
        for (const tagFrame& frame : frames) {
            if (frame.eKind == messageWire::KIND_REPLY)
                open = false; // nothing was asked
            else
                deliver(guest->nId, frame);
        }
    }
    if (events & POLLOUT) {
        QMutexLocker lock(&m_mutex);
        open = guest->stream.flush() && open;
    }
    if (!open)
        closeGuest(guest);
}

void messagePump::closeLink(const LinkRef& link)
{
    QMutexLocker lock(&m_mutex);
    if (m_links.value(link->name) == link)
        m_links.remove(link->name);
    lock.unlock();
    replyBook::endConnection(link->nId);
}

void messagePump::closeGuest(const GuestRef& guest)
{
    QMutexLocker lock(&m_mutex);
    m_guests.remove(guest->nId);
}

void messagePump::deliver(quint64 guest, const tagFrame& frame)
{
    tagDelivery delivery;
    delivery.msg = msgObject(frame.message, frame.wParam, frame.lParam, frame.extra.constData(),
                             int(frame.extra.size()));
    delivery.nRemoteBytes = messageWire::HEAD_SIZE + frame.extra.size();
    if (frame.eKind == messageWire::KIND_BROADCAST) {
        delivery.bBroadcast = true;
        for (const threadQueueRef& queue : threadQueue::listening())
            queue->post(tagDelivery(delivery));
        return;
    }
    if (frame.eKind == messageWire::KIND_SEND)
        delivery.reply = [this, guest, ticket = frame.nTicket](const std::optional<tagReply>& result) {
            reply(guest, ticket, result.value_or(tagReply()));
        };
    const threadQueueRef queue = ownQueue();
    if (queue && !queue->post(std::move(delivery)) && frame.eKind == messageWire::KIND_SEND)
        reply(guest, frame.nTicket, tagReply());
}

void messagePump::reply(quint64 guest, quint32 ticket, const tagReply& result)
{
    tagFrame frame;
    frame.eKind = messageWire::KIND_REPLY;
    frame.nTicket = ticket;
    frame.nResult = result.nResult;
    frame.extra = result.extra;
    QMutexLocker lock(&m_mutex);
    const GuestRef connection = m_guests.value(guest);
    if (connection && connection->stream.append(frame))
        wake();
}
