#pragma once
// Ends what takes its time, on a thread of its own: whoever gives it up does not wait. Any thread.
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

class lateEnds
{
public:
    lateEnds() = default;
    // When all of them are over.
    ~lateEnds();
    lateEnds(const lateEnds&) = delete;
    lateEnds& operator=(const lateEnds&) = delete;

    // One after the other.
    void add(std::function<void()> end);
    // Until nothing waits or runs.
    void wait();
    // How many have not begun.
    size_t waiting();

private:
    void run();

    std::mutex m_mutex; // of what follows
    std::condition_variable m_more;
    std::condition_variable m_over;
    bool m_bRuns = false; // one of them
    std::deque<std::function<void()>> m_ends;
    bool m_bEnding = false;
    std::thread m_thread;
};
