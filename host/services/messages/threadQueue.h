#pragma once
// The messages that wait for one thread, and the receivers that live on it. The thread's event loop
// delivers them. Any thread may post; what is delivered runs on the queue's own thread.
#include "host/services/messages/processerBook.h"
#include "host/services/messages/threadReply.h"
#include <QList>
#include <QMutex>
#include <atomic>
#include <deque>
#include <functional>
#include <optional>

// One thing to deliver.
struct tagDelivery
{
    msgObject msg;
    quint64 nTarget = 0;        // only this receiver; 0: the thread's receivers in order
    bool bBroadcast = false;    // to all receivers, whoever takes it
    std::function<void()> call; // done instead of offering msg, if the target (if any) is still there
    // Somebody waits: told the reply, an empty one when nobody took it, none when the thread has ended.
    std::function<void(const std::optional<tagReply>& reply)> reply;
    std::shared_ptr<void> keep; // kept until the delivery was made, or was given up
    qsizetype nRemoteBytes = 0; // what it takes of the room for messages of other processes
    const threadQueue* pSender = nullptr;
};

class threadReceiver;

class threadQueue : public std::enable_shared_from_this<threadQueue>
{
public:
    enum : int {
        MAX_MESSAGES = 100000,     // a thread that never delivers collects no more than these
        MAX_REMOTE_BYTES = 4 << 20 // other processes are not listened to while these wait
    };

    // The calling thread's queue, made at its first use.
    static threadQueueRef current();
    // The queues of all threads that have a receiver.
    static QList<threadQueueRef> listening();
    // Called on a queue's thread when a queue that was full has room again for other processes.
    static void setRoomHook(void (*hook)());

    threadQueue();
    ~threadQueue();

    void addProcesser(quint64 number, chMsgProcesser* processer);
    void removeProcesser(quint64 number);
    chMsgProcesser* findProcesser(quint64 number) const;

    // False when the thread has ended, or has far too much waiting.
    bool post(tagDelivery&& delivery);
    bool isCurrent() const;
    bool isFullForRemote() const { return m_nRemoteBytes > MAX_REMOTE_BYTES; }

    // From here on: on the queue's own thread only.
    // Offers a message now, after what this thread has posted to itself before.
    tagReply deliverNow(msgObject& msg);
    // The event loop has come to what wake() posted. There is never more than one of those, or they would
    // pile up while messages beget messages, and keep the loop from everything else.
    void wakeCame();
    // Delivers what waits, for at most a few milliseconds.
    void deliver();
    // Delivers up to the last message whose sender waits, so that two threads that wait for each other
    // both go on.
    void deliverSent();
    // Sleeps until nudged or posted to; -1 for ever.
    void waitForNudge(int timeoutMs);

    void nudge();
    // The thread ends: nothing more is delivered, and whoever waits is told.
    void close();

private:
    struct tagEntry
    {
        quint64 nNumber;
        chMsgProcesser* pProcesser;
    };
    using TakeRule = std::function<bool(const tagDelivery&)>;

    bool takeFirst(tagDelivery& delivery);
    bool takeFirst(const TakeRule& rule, tagDelivery& delivery);
    void taken(const tagDelivery& delivery);
    tagReply run(tagDelivery& delivery);
    tagReply offer(tagDelivery& delivery);
    QList<tagEntry> entries() const;
    int messagesToLastSent() const;
    void updateBacklog();
    void wake();

    mutable QMutex m_mutex;
    QList<tagEntry> m_entries; // by number
    std::deque<tagDelivery> m_waiting;
    threadReceiver* m_pReceiver = nullptr;
    QMutex m_wakeMutex;   // of the next one; taken last
    bool m_bWakes = true; // the receiver is there to be woken
    Qt::HANDLE m_thread = nullptr;
    bool m_bWoken = false; // the event loop was told, and has not come yet
    bool m_bClosed = false;
    bool m_bOverflow = false;
    int m_nNudgeFd = -1;
    std::atomic<qsizetype> m_nRemoteBytes{0};
};
