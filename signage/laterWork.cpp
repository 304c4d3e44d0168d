#include "signage/laterWork.h"

void laterWork::Add(std::function<void()> step)
{
    m_steps.push_back(std::move(step));
    if (!m_bTurn)
        OpenTurn();
    Run();
}

void laterWork::OnCallback(taskAction*)
{
    m_bTurn = false;
    if (m_steps.empty())
        return;
    OpenTurn();
    Run();
}

// Its end comes back as a message, behind whatever else waits for the thread.
void laterWork::OpenTurn()
{
    m_bTurn = true;
    m_turn.start();
    Callback(nullptr);
}

void laterWork::Run()
{
    if (m_bRunning)
        return;
    m_bRunning = true;
    while (!m_steps.empty() && !m_turn.hasExpired(TURN_MS)) {
        const std::function<void()> step = std::move(m_steps.front());
        m_steps.pop_front();
        step();
    }
    m_bRunning = false;
}
