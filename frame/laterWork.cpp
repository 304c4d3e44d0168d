#include "frame/laterWork.h"
#include <utility>

LaterWork::LaterWork()
{
    m_nextTurn.setInterval(0);
    m_nextTurn.callOnTimeout([this] { OnTurn(); });
}

void LaterWork::Add(std::function<void()> step)
{
    m_steps.push_back(std::move(step));
    if (!m_nextTurn.isActive()) {
        m_turn.start();
        m_nextTurn.start();
    }
    Run();
}

void LaterWork::AddForLater(std::function<void()> step)
{
    m_steps.push_back(std::move(step));
    m_bOver = true;
    m_nextTurn.start();
}

void LaterWork::OnTurn()
{
    m_bOver = false;
    m_turn.start();
    if (m_steps.empty() || m_bRunning) // the step that runs has an event loop of its own
        m_nextTurn.stop();
    Run();
}

void LaterWork::Run()
{
    if (m_bRunning)
        return;
    m_bRunning = true;
    while (!m_steps.empty() && !m_bOver && !m_turn.hasExpired(TURN_MS)) {
        const std::function<void()> step = std::move(m_steps.front());
        m_steps.pop_front();
        step();
    }
    m_bRunning = false;
    if (!m_steps.empty())
        m_nextTurn.start();
}
