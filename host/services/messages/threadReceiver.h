#pragma once
// Brings a thread's event loop to its message queue. Lives on that thread.
#include <QBasicTimer>
#include <QObject>

class threadQueue;

class threadReceiver : public QObject
{
public:
    explicit threadReceiver(threadQueue& queue) : m_queue(queue) {}
    // Any thread.
    void wake();
    // More waits than is delivered at once: the loop comes back after input and timers had their turn,
    // and so does a loop that a receiver runs of its own.
    void setBacklog(bool more);

protected:
    bool event(QEvent* event) override;

private:
    threadQueue& m_queue;
    QBasicTimer m_backlog;
};
