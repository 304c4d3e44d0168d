#include "players/lateEnds.h"
#include <malloc.h>

lateEnds::~lateEnds()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_bEnding = true;
    }
    m_more.notify_one();
    if (m_thread.joinable())
        m_thread.join();
}

void lateEnds::add(std::function<void()> end)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_ends.push_back(std::move(end));
    if (!m_thread.joinable())
        m_thread = std::thread([this] { run(); });
    m_more.notify_one();
}

void lateEnds::wait()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_over.wait(lock, [this] { return m_ends.empty() && !m_bRuns; });
}

size_t lateEnds::waiting()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_ends.size();
}

void lateEnds::run()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (true) {
        m_more.wait(lock, [this] { return m_bEnding || !m_ends.empty(); });
        if (m_ends.empty())
            return;
        std::function<void()> end = std::move(m_ends.front());
        m_ends.pop_front();
        m_bRuns = true;
        const bool isLast = m_ends.empty();
        lock.unlock();
        end();
        end = nullptr;
        // Pictures took memory on threads that are gone.
        if (isLast)
            malloc_trim(0);
        lock.lock();
        m_bRuns = false;
        m_over.notify_all();
    }
}
