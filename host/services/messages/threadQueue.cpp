#include "host/services/messages/threadQueue.h"
#include "host/services/messages/threadReceiver.h"
#include "support/host/trace.h"
#include <QElapsedTimer>
#include <QThread>
#include <algorithm>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr int kDeliverMs = 8; // half a frame

struct Queues
{
    QMutex mutex;
    QList<std::weak_ptr<threadQueue>> list;
    std::atomic<void (*)()> roomHook{nullptr};
};

// Never destroyed: threads may end after everything else.
Queues& theQueues()
{
    static Queues* queues = new Queues;
    return *queues;
}

// Ends the queue with its thread.
struct Owner
{
    threadQueueRef queue;
    ~Owner()
    {
        if (queue)
            queue->close();
    }
};

bool isMainThread()
{
    return gettid() == getpid();
}

} // namespace

threadQueueRef threadQueue::current()
{
    thread_local Owner owner;
    if (!owner.queue) {
        owner.queue = std::make_shared<threadQueue>();
        Queues& queues = theQueues();
        QMutexLocker lock(&queues.mutex);
        queues.list.removeIf([](const std::weak_ptr<threadQueue>& queue) { return queue.expired(); });
        queues.list.append(owner.queue);
        lock.unlock();
        // The toolkit's part of a thread is gone when its variables are destroyed.
        if (!isMainThread())
            QObject::connect(
                QThread::currentThread(), &QThread::finished, owner.queue->m_pReceiver,
                [queue = owner.queue] { queue->close(); }, Qt::DirectConnection);
    }
    return owner.queue;
}

QList<threadQueueRef> threadQueue::listening()
{
    Queues& queues = theQueues();
    QMutexLocker lock(&queues.mutex);
    QList<threadQueueRef> found;
    for (const std::weak_ptr<threadQueue>& weak : queues.list) {
        const threadQueueRef queue = weak.lock();
        if (queue && !queue->entries().isEmpty())
            found.append(queue);
    }
    return found;
}

void threadQueue::setRoomHook(void (*hook)())
{
    theQueues().roomHook = hook;
}

threadQueue::threadQueue() : m_pReceiver(new threadReceiver(*this)), m_thread(QThread::currentThreadId()) {}

threadQueue::~threadQueue()
{
    if (m_nNudgeFd >= 0)
        ::close(m_nNudgeFd);
}

void threadQueue::addProcesser(quint64 number, chMsgProcesser* processer)
{
    QMutexLocker lock(&m_mutex);
    m_entries.append({number, processer});
}

void threadQueue::removeProcesser(quint64 number)
{
    QMutexLocker lock(&m_mutex);
    m_entries.removeIf([number](const tagEntry& entry) { return entry.nNumber == number; });
}

chMsgProcesser* threadQueue::findProcesser(quint64 number) const
{
    QMutexLocker lock(&m_mutex);
    const auto found = std::lower_bound(m_entries.begin(), m_entries.end(), number,
                                        [](const tagEntry& entry, quint64 n) { return entry.nNumber < n; });
    return found != m_entries.end() && found->nNumber == number ? found->pProcesser : nullptr;
}

QList<threadQueue::tagEntry> threadQueue::entries() const
{
    QMutexLocker lock(&m_mutex);
    return m_entries;
}

bool threadQueue::post(tagDelivery&& delivery)
{
    QMutexLocker lock(&m_mutex);
    const bool isTooMuch = int(m_waiting.size()) >= MAX_MESSAGES && !delivery.call;
    if (isTooMuch && !m_bOverflow)
        nuxTrace(TRACE_NOTE, "a thread leaves %d messages lying, more are dropped", MAX_MESSAGES);
    m_bOverflow = m_bOverflow || isTooMuch;
    if (m_bClosed || isTooMuch)
        return false;
    m_nRemoteBytes += delivery.nRemoteBytes;
    m_waiting.push_back(std::move(delivery));
    const bool wakes = !std::exchange(m_bWoken, true);
    lock.unlock();
    if (wakes)
        wake();
    nudge();
    return true;
}

// Not under the lock of what waits: the thread would wake up only to wait for it.
void threadQueue::wake()
{
    QMutexLocker lock(&m_wakeMutex);
    if (m_bWakes)
        m_pReceiver->wake();
}

bool threadQueue::isCurrent() const
{
    return m_thread == QThread::currentThreadId();
}

bool threadQueue::takeFirst(tagDelivery& delivery)
{
    QMutexLocker lock(&m_mutex);
    if (m_waiting.empty()) {
        m_bOverflow = false;
        return false;
    }
    delivery = std::move(m_waiting.front());
    m_waiting.pop_front();
    updateBacklog();
    lock.unlock();
    taken(delivery);
    return true;
}

bool threadQueue::takeFirst(const TakeRule& rule, tagDelivery& delivery)
{
    QMutexLocker lock(&m_mutex);
    const auto found = std::find_if(m_waiting.begin(), m_waiting.end(), rule);
    if (found == m_waiting.end())
        return false;
    delivery = std::move(*found);
    m_waiting.erase(found);
    lock.unlock();
    taken(delivery);
    return true;
}

void threadQueue::taken(const tagDelivery& delivery)
{
    const bool wasFull = isFullForRemote();
    m_nRemoteBytes -= delivery.nRemoteBytes;
    void (*hook)() = theQueues().roomHook;
    if (wasFull && !isFullForRemote() && hook)
        hook();
}

void threadQueue::wakeCame()
{
    QMutexLocker lock(&m_mutex);
    m_bWoken = false;
}

// Called under the lock.
void threadQueue::updateBacklog()
{
    m_pReceiver->setBacklog(!m_waiting.empty() && !m_bWoken);
}

void threadQueue::deliver()
{
    QElapsedTimer running;
    running.start();
    tagDelivery delivery;
    while (running.elapsed() < kDeliverMs && takeFirst(delivery)) {
        run(delivery);
        delivery = tagDelivery();
    }
    QMutexLocker lock(&m_mutex);
    if (!m_bClosed)
        updateBacklog();
}

tagReply threadQueue::deliverNow(msgObject& msg)
{
    const TakeRule isOwn = [this](const tagDelivery& delivery) { return delivery.pSender == this; };
    tagDelivery earlier;
    while (takeFirst(isOwn, earlier)) {
        run(earlier);
        earlier = tagDelivery();
    }
    tagDelivery delivery;
    delivery.msg = msg;
    return run(delivery);
}

int threadQueue::messagesToLastSent() const
{
    QMutexLocker lock(&m_mutex);
    for (size_t count = m_waiting.size(); count > 0; --count) {
        if (m_waiting[count - 1].reply)
            return int(count);
    }
    return 0;
}

void threadQueue::deliverSent()
{
    tagDelivery delivery;
    for (int count = messagesToLastSent(); count > 0 && takeFirst(delivery); --count) {
        run(delivery);
        delivery = tagDelivery();
    }
}

// That of a message that was taken, else an empty one.
tagReply threadQueue::run(tagDelivery& delivery)
{
    if (delivery.call) {
        if (delivery.nTarget == 0 || findProcesser(delivery.nTarget))
            delivery.call();
        return tagReply();
    }
    const tagReply reply = offer(delivery);
    if (delivery.reply)
        delivery.reply(reply);
    return reply;
}

tagReply threadQueue::offer(tagDelivery& delivery)
{
    // Receivers come and go while others handle the message: those there now are asked, if still there.
    const QList<tagEntry> all = entries();
    for (const tagEntry& entry : all) {
        if (delivery.nTarget != 0 && delivery.nTarget != entry.nNumber)
            continue;
        chMsgProcesser* processer = findProcesser(entry.nNumber);
        if (!processer)
            continue;
        msgObject msg = delivery.msg;
        if (processer->TryThreadMessage(msg) && !delivery.bBroadcast)
            return {msg.nResult, msg.GetReplyData()};
    }
    return tagReply();
}

void threadQueue::waitForNudge(int timeoutMs)
{
    {
        QMutexLocker lock(&m_mutex);
        if (m_nNudgeFd < 0)
            m_nNudgeFd = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    }
    pollfd wait = {m_nNudgeFd, POLLIN, 0};
    eventfd_t count = 0;
    if (poll(&wait, 1, timeoutMs) > 0)
        eventfd_read(m_nNudgeFd, &count);
}

void threadQueue::nudge()
{
    QMutexLocker lock(&m_mutex);
    if (m_nNudgeFd >= 0)
        eventfd_write(m_nNudgeFd, 1);
}

void threadQueue::close()
{
    QMutexLocker lock(&m_mutex);
    if (m_bClosed)
        return;
    m_bClosed = true;
    std::deque<tagDelivery> waiting;
    waiting.swap(m_waiting);
    lock.unlock();
    QMutexLocker wakeLock(&m_wakeMutex);
    m_bWakes = false;
    wakeLock.unlock();
    for (const tagDelivery& delivery : waiting) {
        if (delivery.reply)
            delivery.reply(std::nullopt);
    }
    // The main thread ends after the toolkit, which then has nothing left to take its receiver out of.
    if (!isMainThread())
        delete m_pReceiver;
}
