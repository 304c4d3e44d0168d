#pragma once
// Holds whatever is stored in its second write, so that a test can act in the middle of it.
#include "support/file/fileSystemCalls.h"
#include <condition_variable>
#include <mutex>

class HeldWrites
{
public:
    HeldWrites()
    {
        the() = this;
        fileGetSystemCalls().write = [](int fd, const void* data, size_t size) {
            the()->pass();
            return fileDefaultSystemCalls().write(fd, data, size);
        };
    }
    ~HeldWrites()
    {
        release();
        std::unique_lock<std::mutex> guard(m_lock);
        m_changed.wait(guard, [this] { return m_inside == 0; });
        fileGetSystemCalls() = fileDefaultSystemCalls();
    }
    bool isHeld()
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        return m_inside > 0 && m_writes >= 2 && !m_isReleased;
    }
    void release()
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        m_isReleased = true;
        m_changed.notify_all();
    }

private:
    static HeldWrites*& the()
    {
        static HeldWrites* instance = nullptr;
        return instance;
    }
    void pass()
    {
        std::unique_lock<std::mutex> guard(m_lock);
        ++m_writes;
        ++m_inside;
        m_changed.wait(guard, [this] { return m_isReleased || m_writes < 2; });
        --m_inside;
        m_changed.notify_all();
    }

    std::mutex m_lock;
    std::condition_variable m_changed;
    int m_writes = 0;
    int m_inside = 0;
    bool m_isReleased = false;
};
