#include "support/file/chDiskWork.h"

#include <cstdint>
#include <mutex>
#include <poll.h>
#include <sys/eventfd.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

struct chDiskWork::State
{
    State() : nOver(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
    ~State()
    {
        if (nOver >= 0)
            close(nOver);
    }
    void End(int answer)
    {
        const std::lock_guard<std::mutex> guard(lock);
        isOver = true;
        result = answer;
        const uint64_t one = 1;
        [[maybe_unused]] const ssize_t written = write(nOver, &one, sizeof one);
        if (done)
            done();
    }

    std::mutex lock;
    const int nOver; // readable when it is over; -1 when there was no descriptor left
    bool isOver = false;
    int result = 0;
    std::function<void()> done;
};

chDiskWork::chDiskWork(std::function<int()> work) : m_state(std::make_shared<State>())
{
    const auto run = [state = m_state, work = std::move(work)] { state->End(work()); };
    try {
        std::thread(run).detach();
    } catch (const std::system_error&) {
        run(); // the system has no thread left
    }
}

chDiskWork::~chDiskWork()
{
    const std::lock_guard<std::mutex> guard(m_state->lock);
    m_state->done = nullptr;
}

int chDiskWork::Wait(int ms) const
{
    pollfd over = {m_state->nOver, POLLIN, 0};
    if (ms > 0)
        poll(&over, 1, ms);
    const std::lock_guard<std::mutex> guard(m_state->lock);
    return m_state->isOver;
}

int chDiskWork::Result() const
{
    const std::lock_guard<std::mutex> guard(m_state->lock);
    return m_state->result;
}

void chDiskWork::Tell(std::function<void()> done)
{
    const std::lock_guard<std::mutex> guard(m_state->lock);
    if (!m_state->isOver)
        m_state->done = std::move(done);
    else if (done)
        done();
}
