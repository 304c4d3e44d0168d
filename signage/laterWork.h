#pragma once
// Many small steps on the user-interface thread, spread so that none of its turns gets long.
#include "support/host/task.h"
#include <QElapsedTimer>
#include <deque>
#include <functional>

class laterWork : public ActionCallback
{
public:
    enum : int { TURN_MS = 4 }; // after which the rest waits for another turn

    // The steps run in their order, the first of them at once.
    void Add(std::function<void()> step);
    void OnCallback(taskAction* action) override;

private:
    void OpenTurn();
    void Run();

    std::deque<std::function<void()>> m_steps;
    QElapsedTimer m_turn;
    bool m_bTurn = false;
    bool m_bRunning = false;
};
