#pragma once
// Messages to the players that expect an answer. The phone waits a frame or two for it, never longer: a
// player may be busy with another film, or stand still. User-interface thread.
#include "support/host/message.h"

class playerQuestion
{
public:
    enum : int { WAIT_MS = 25 };

    playerQuestion() = default;
    ~playerQuestion();
    playerQuestion(const playerQuestion&) = delete;
    playerQuestion& operator=(const playerQuestion&) = delete;

    // Takes the place of one that is open. thread: a name that lives as long as this. False when the thread
    // is not there.
    bool ask(const char* thread, unsigned int message, unsigned int wParam, int size, const void* data);
    bool isOpen() const { return m_pMessage != nullptr; }
    // Waits for the answer. True when it has come, or when none will, which is an empty one; the question is
    // closed then.
    bool wait(msgObject& answer);
    void drop();

private:
    const char* m_pThread = nullptr; // its name
    chThreadRemote m_remote;
    msgObject* m_pMessage = nullptr;
};
