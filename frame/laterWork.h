#pragma once
// Many small steps on the user-interface thread, spread so that none of its turns gets long: between two of
// them the event loop takes whatever else waits. User-interface thread.
#include <QElapsedTimer>
#include <QTimer>
#include <deque>
#include <functional>

class LaterWork
{
public:
    enum : int { TURN_MS = 4 }; // after which the rest waits for another turn

    LaterWork();
    // The steps run in their order, the first of them at once, while the turn has time.
    void Add(std::function<void()> step);
    // As Add, but nothing more runs in this turn.
    void AddForLater(std::function<void()> step);
    // Forgets the steps that wait.
    void Clear() { m_steps.clear(); }
    bool IsDone() const { return m_steps.empty(); }

private:
    void OnTurn();
    void Run();

    std::deque<std::function<void()>> m_steps;
    QTimer m_nextTurn; // runs from the first step of a turn on
    QElapsedTimer m_turn;
    bool m_bOver = false; // the turn, before its time
    bool m_bRunning = false;
};
