#pragma once
// Looks at all of the content again and again, away from the requests: what no phone will fetch or play is
// told before somebody stands before a dark screen. Starts a thread of its own.
#include "tools/signServer/ContentNotes.h"
#include "tools/signServer/FileCheck.h"
#include "tools/signServer/ScheduleReply.h"
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

class ContentWatch
{
public:
    // folder and notes outlive it. afterLook: called on its thread after each look, and at the end.
    ContentWatch(const SignFolder& folder, ContentNotes& notes, std::function<void(bool isEnd)> afterLook);
    // Waits for the thread.
    ~ContentWatch();

private:
    void Work();
    void Look();
    bool Rest(qint64 ms);

    const SignFolder& m_folder;
    ContentNotes& m_notes;
    const std::function<void(bool)> m_afterLook;
    std::atomic<bool> m_stopping{false};
    FileCheck m_check;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::thread m_thread;
};
