#include "support/host/task.h"
#include "host/services/messages/threadQueue.h"
#include "host/services/transfers/httpService.h"
#include "host/services/transfers/taskBook.h"
#include "support/host/http.h"
#include <QHash>
#include <QMutex>
#include <QThread>
#include <QThreadPool>
#include <utility>

namespace {

constexpr int kTaskThreads = 2;
constexpr unsigned long kGatherUs = 500;
constexpr unsigned int kTaskDone = 0xFFFF3001; // wParam: the trip's number

// A completion on its way to a callback's thread.
struct tagTrip
{
    const chMsgProcesser* pTarget = nullptr;
    taskHoldRef hold; // null for a completion without an action
    std::function<bool()> prepare;
    quint32 nNumber = 0;
    ~tagTrip();
};

// The trips that are under way, by number: a message that another process makes up finds none.
struct Trips
{
    QMutex mutex;
    QHash<quint32, std::weak_ptr<tagTrip>> underWay;
    quint32 last = 0;
};

Trips& theTrips()
{
    static Trips* trips = new Trips;
    return *trips;
}

tagTrip::~tagTrip()
{
    Trips& trips = theTrips();
    QMutexLocker lock(&trips.mutex);
    trips.underWay.remove(nNumber);
}

void numberTrip(const std::shared_ptr<tagTrip>& trip)
{
    Trips& trips = theTrips();
    QMutexLocker lock(&trips.mutex);
    do {
        trip->nNumber = ++trips.last;
    } while (trips.underWay.contains(trip->nNumber));
    trips.underWay.insert(trip->nNumber, trip);
}

std::shared_ptr<tagTrip> arrivedTrip(quint32 number, const chMsgProcesser* target)
{
    Trips& trips = theTrips();
    QMutexLocker lock(&trips.mutex);
    const std::shared_ptr<tagTrip> trip = trips.underWay.value(number).lock();
    if (!trip || trip->pTarget != target)
        return nullptr;
    trips.underWay.remove(number);
    return trip;
}

void sendTrip(const tagProcesserRef& target, const std::shared_ptr<tagTrip>& trip)
{
    numberTrip(trip);
    tagDelivery delivery;
    delivery.msg = msgObject(kTaskDone, trip->nNumber, 0);
    delivery.nTarget = target.nNumber;
    delivery.keep = trip;
    target.queue->post(std::move(delivery));
}

// Actions whose exec() has begun work that ends later, until somebody says so.
struct Unfinished
{
    QMutex mutex;
    QHash<quint64, QList<taskHoldRef>> holds;
};

Unfinished& theUnfinished()
{
    static Unfinished* unfinished = new Unfinished;
    return *unfinished;
}

void addUnfinished(const taskHoldRef& hold)
{
    Unfinished& unfinished = theUnfinished();
    QMutexLocker lock(&unfinished.mutex);
    if (!hold->isOver())
        unfinished.holds[hold->number()].append(hold);
}

taskHoldRef takeUnfinished(quint64 number)
{
    Unfinished& unfinished = theUnfinished();
    QMutexLocker lock(&unfinished.mutex);
    const auto found = unfinished.holds.find(number);
    if (found == unfinished.holds.end())
        return nullptr;
    const taskHoldRef hold = found->takeFirst();
    if (found->isEmpty())
        unfinished.holds.erase(found);
    return hold;
}

// It is over, whether or not it has begun.
bool removeUnfinished(const taskHoldRef& hold)
{
    Unfinished& unfinished = theUnfinished();
    QMutexLocker lock(&unfinished.mutex);
    hold->setOver();
    const auto found = unfinished.holds.find(hold->number());
    const bool removed = found != unfinished.holds.end() && found->removeOne(hold);
    if (removed && found->isEmpty())
        unfinished.holds.erase(found);
    return removed;
}

class TaskThreads : public QThreadPool
{
public:
    TaskThreads() { setMaxThreadCount(kTaskThreads); }
    ~TaskThreads() override { clear(); }
};

QThreadPool& theThreads()
{
    static TaskThreads threads;
    return threads;
}

// On a task thread.
void runAction(const taskHoldRef& hold)
{
    const taskUse use(*hold);
    if (!use.action())
        return;
    addUnfinished(hold);
    if (use.action()->exec() && removeUnfinished(hold))
        taskDone(hold);
}

// Actions that give way come many at a time, and to wake a thread for each costs more than to begin it: one
// thread gathers them for a moment.
class WayGivers
{
public:
    void add(const taskHoldRef& hold)
    {
        QMutexLocker lock(&m_mutex);
        m_holds.append(hold);
        if (!std::exchange(m_bRuns, true))
            theThreads().start([this] { run(); });
    }

private:
    void run()
    {
        for (;;) {
            QThread::usleep(kGatherUs);
            const QList<taskHoldRef> holds = take();
            if (holds.isEmpty())
                return;
            for (const taskHoldRef& hold : holds)
                runAction(hold);
        }
    }

    QList<taskHoldRef> take()
    {
        QMutexLocker lock(&m_mutex);
        m_bRuns = !m_holds.isEmpty();
        return std::exchange(m_holds, {});
    }

    QMutex m_mutex;
    QList<taskHoldRef> m_holds;
    bool m_bRuns = false;
};

WayGivers& theWayGivers()
{
    static WayGivers* givers = new WayGivers;
    return *givers;
}

} // namespace

void taskDone(const taskHoldRef& hold, std::function<bool()> prepare)
{
    removeUnfinished(hold);
    const tagProcesserRef callback = taskBook::callbackOf(hold->number());
    if (!callback.queue) {
        tagDelivery delivery;
        delivery.call = [hold, prepare] {
            if (prepare)
                prepare();
        };
        hold->poster()->post(std::move(delivery));
        return;
    }
    const auto trip = std::make_shared<tagTrip>();
    trip->pTarget = callback.queue->findProcesser(callback.nNumber);
    trip->hold = hold;
    trip->prepare = std::move(prepare);
    sendTrip(callback, trip);
}

void taskGiveUp(const taskHoldRef& hold)
{
    removeUnfinished(hold);
}

void taskForget(const taskAction& action)
{
    const quint64 number = taskBook::numberOf(action);
    taskBook::forget(action);
    Unfinished& unfinished = theUnfinished();
    QMutexLocker lock(&unfinished.mutex);
    const QList<taskHoldRef> ended = unfinished.holds.take(number);
    lock.unlock(); // the holds end without it
}

ActionCallback::~ActionCallback() = default;

int ActionCallback::TryThreadMessage(msgObject& msg)
{
    if (msg.message != kTaskDone)
        return 0;
    const std::shared_ptr<tagTrip> trip = arrivedTrip(msg.wParam, this);
    if (!trip)
        return 0;
    taskAction* action = trip->hold ? trip->hold->action() : nullptr;
    const bool isGone = trip->hold && !action;
    if (isGone || (trip->prepare && !trip->prepare()))
        return 1;
    OnCallback(action);
    return 1;
}

void ActionCallback::OnCallback(taskAction*) {}

void ActionCallback::Callback(taskAction* action)
{
    const tagProcesserRef target = processerBook::find(this);
    if (!target.queue)
        return;
    const auto trip = std::make_shared<tagTrip>();
    trip->pTarget = this;
    if (action) {
        trip->hold = takeUnfinished(taskBook::numberOf(*action));
        if (!trip->hold)
            trip->hold = std::make_shared<taskHold>(*action);
    }
    sendTrip(target, trip);
}

taskAction::~taskAction()
{
    taskForget(*this);
}

void taskAction::SetCallback(ActionCallback* callback)
{
    m_pCallback = callback;
    taskBook::setCallback(*this, callback);
}

int PostAction(taskAction& action)
{
    const auto hold = std::make_shared<taskHold>(action);
    HttpAction* http = dynamic_cast<HttpAction*>(&action);
    if (http)
        httpService::prepare(*http, hold);
    if (http && http->bGivesWay)
        theWayGivers().add(hold);
    else
        theThreads().start([hold] { runAction(hold); });
    return 1;
}
