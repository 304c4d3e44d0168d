#include "host/services/messages/threadQueue.h"
#include "support/host/message.h"
#include <QObject>
#include <QThread>
#include <algorithm>
#include <climits>

namespace {

// What a running timer does when it fires. A call that is under way holds it, so a handler may end or
// restart its own timer.
struct tagTask
{
    tagProcesserRef target;
    std::function<void(msgObject&)> call;
    unsigned int nId = 0;
    std::atomic<bool> bEnded{false};

    bool isRunning() const { return !bEnded && processerBook::isThere(target); }
};
using TaskRef = std::shared_ptr<tagTask>;

void callHandler(const TaskRef& task)
{
    if (!task->isRunning())
        return;
    msgObject msg(0, task->nId, 0);
    task->call(msg);
}

void fire(const TaskRef& task)
{
    if (task->target.queue->isCurrent()) {
        callHandler(task);
        return;
    }
    tagDelivery delivery;
    delivery.nTarget = task->target.nNumber;
    delivery.call = [task] { callHandler(task); };
    task->target.queue->post(std::move(delivery));
}

// The toolkit's timer, on the thread that set it.
class Clock : public QObject
{
public:
    Clock(const TaskRef& task, int periodMs) : m_task(task)
    {
        m_nTimer = startTimer(periodMs, Qt::PreciseTimer);
    }
    TaskRef task() const { return m_task; }

protected:
    // The handler may delete this object: nothing of it is touched after the call.
    void timerEvent(QTimerEvent*) override
    {
        const TaskRef task = m_task;
        if (!task->isRunning()) {
            killTimer(m_nTimer);
            return;
        }
        fire(task);
    }

private:
    TaskRef m_task;
    int m_nTimer = 0;
};

} // namespace

struct chThreadTimer::Private
{
    unsigned int nId = 0;
    Clock* pClock = nullptr;
};

chThreadTimer::chThreadTimer(unsigned int id) : m_p(new Private)
{
    m_p->nId = id;
}

chThreadTimer::~chThreadTimer()
{
    KillTimer();
    delete m_p;
}

int chThreadTimer::Start(long long periodMs, void* cookie, chMsgProcesser* target,
                         std::function<void(msgObject&)> call)
{
    KillTimer();
    m_pCookie = cookie;
    const TaskRef task = std::make_shared<tagTask>();
    task->target = processerBook::find(target);
    task->call = std::move(call);
    task->nId = m_p->nId;
    m_p->pClock = new Clock(task, int(std::clamp<long long>(periodMs, 1, INT_MAX)));
    return 1;
}

void chThreadTimer::KillTimer()
{
    Clock* clock = m_p->pClock;
    m_p->pClock = nullptr;
    if (!clock)
        return;
    clock->task()->bEnded = true;
    if (clock->thread() == QThread::currentThread())
        delete clock;
    else
        clock->deleteLater();
}

bool chThreadTimer::IsTimerRuning() const
{
    return m_p->pClock && m_p->pClock->task()->isRunning();
}
