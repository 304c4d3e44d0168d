#pragma once
// The actions that are known, and who is told of their end. An action is the module's and may be
// destroyed at any time; what the host's threads keep of it is checked here. Any thread.
#include "host/services/messages/processerBook.h"
#include "support/host/task.h"
#include <atomic>
#include <functional>

// One reference on an action, given up on the thread that took it.
class taskHold
{
public:
    explicit taskHold(taskAction& action);
    ~taskHold();
    taskHold(const taskHold&) = delete;
    taskHold& operator=(const taskHold&) = delete;
    // Null when it was destroyed.
    taskAction* action() const;
    quint64 number() const { return m_nNumber; }
    const threadQueueRef& poster() const { return m_poster; }
    // Its work has ended. That may come before the thread that takes it up: two postings of one action are
    // taken up in any order.
    bool isOver() const { return m_bOver; }
    void setOver() { m_bOver = true; }

private:
    taskAction* m_pAction;
    quint64 m_nNumber;
    threadQueueRef m_poster;
    std::atomic<bool> m_bOver{false};
};
using taskHoldRef = std::shared_ptr<taskHold>;

// Keeps an action from being destroyed while another thread works on it.
class taskUse
{
public:
    explicit taskUse(const taskHold& hold);
    ~taskUse();
    taskUse(const taskUse&) = delete;
    taskUse& operator=(const taskUse&) = delete;
    // Null when it was destroyed before.
    taskAction* action() const { return m_pAction; }

private:
    taskAction* m_pAction;
    quint64 m_nNumber;
};

namespace taskBook {

// A number that is never given again.
quint64 numberOf(const taskAction& action);
bool isThere(quint64 number);
void setCallback(const taskAction& action, const ActionCallback* callback);
// The callback, if it is still there.
tagProcesserRef callbackOf(quint64 number);
// The action is being destroyed: waits until no other thread works on it.
void forget(const taskAction& action);

} // namespace taskBook

// Tells the action's callback, on its thread, that the action is done. prepare runs there first, also
// when there is no callback; when it answers false, nobody is told.
void taskDone(const taskHoldRef& hold, std::function<bool()> prepare = {});
// The work was given up: nobody is told.
void taskGiveUp(const taskHoldRef& hold);
// First thing in the destructor of an action that other threads work on: it waits until they have left.
void taskForget(const taskAction& action);
// Actions that are posted and whose callbacks were not told yet, in the whole process.
int taskPendingCount();
