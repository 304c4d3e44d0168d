#include "tools/signServer/ConnectionPool.h"

ConnectionPool::ConnectionPool(int threads, std::atomic<int>& waiting) : m_waiting(waiting)
{
    for (int i = 0; i < threads; ++i)
        m_threads.emplace_back([this] { Work(); });
}

void ConnectionPool::enqueue(std::function<void()> job)
{
    {
        std::lock_guard<std::mutex> lock(m_lock);
        m_jobs.push_back(std::move(job));
        ++m_waiting;
    }
    m_some.notify_one();
}

void ConnectionPool::shutdown()
{
    {
        std::lock_guard<std::mutex> lock(m_lock);
        m_closing = true;
    }
    m_some.notify_all();
    for (std::thread& thread : m_threads)
        thread.join();
}

void ConnectionPool::Work()
{
    for (;;) {
        std::function<void()> job;
        {
            std::unique_lock<std::mutex> lock(m_lock);
            m_some.wait(lock, [this] { return m_closing || !m_jobs.empty(); });
            if (m_jobs.empty())
                return;
            job = std::move(m_jobs.front());
            m_jobs.pop_front();
            --m_waiting;
        }
        job();
    }
}
