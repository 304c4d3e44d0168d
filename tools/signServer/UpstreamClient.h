#pragma once
// Asks web services, on a thread of its own; nobody waits for it.
#include <QByteArray>
#include <QMutex>
#include <functional>
#include <list>
#include <memory>
#include <thread>

struct UpstreamReply
{
    int status = 0; // 0: no answer came, or it was too large; `fault` says why then
    QByteArray body;
    QByteArray retryAfter; // the field of that name
    QByteArray fault;
};

class UpstreamClient
{
public:
    using Done = std::function<void(const UpstreamReply&)>;
    static constexpr qsizetype LargestBody = 1 << 20; // bytes, unpacked

    UpstreamClient();
    // Settles first.
    ~UpstreamClient();
    // Any thread. patienceMs: for a whole answer. Redirects are not followed. done: once, on the client's
    // thread, or at once when the client has stopped.
    void Get(const QByteArray& address, int patienceMs, const Done& done);
    // Everything under way and to come fails. Any thread.
    void Stop();
    // Stops, and waits until everybody who waited was told.
    void Settle();

private:
    struct Transfer;

    void Run();
    void StartWaiting();
    void FinishOne(void* handle, int code);
    static void Deliver(Transfer& transfer, int code);
    void FailAll();

    void* m_pMulti; // the library's
    QMutex m_lock;  // of the two that follow
    std::list<std::unique_ptr<Transfer>> m_waiting;
    bool m_bStopped = false;
    std::list<std::unique_ptr<Transfer>> m_running; // of the thread
    std::thread m_thread;
};
