#pragma once
// The threads that serve connections, one connection a thread at a time. A phone that stays connected holds
// its thread only until another connection waits for one.
#include <atomic>
#include <condition_variable>
#include <deque>
#include <httplib.h>
#include <mutex>
#include <thread>
#include <vector>

class ConnectionPool : public httplib::TaskQueue
{
public:
    // waiting: how many connections have no thread yet; it outlives the pool.
    ConnectionPool(int threads, std::atomic<int>& waiting);
    void enqueue(std::function<void()> job) override;
    void shutdown() override;

private:
    void Work();

    std::atomic<int>& m_waiting;
    std::mutex m_lock;
    std::condition_variable m_some;
    std::deque<std::function<void()>> m_jobs;
    bool m_closing = false;
    std::vector<std::thread> m_threads;
};
