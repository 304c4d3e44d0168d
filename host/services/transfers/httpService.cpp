#include "host/services/transfers/httpService.h"
#include "host/services/system/giveWay.h"
#include "host/services/transfers/checkSums.h"
#include "host/services/transfers/httpLoop.h"
#include "host/services/transfers/httpTransfer.h"
#include "support/host/http.h"
#include <QHash>
#include <QMutex>
#include <QThread>
#include <algorithm>
#include <atomic>
#include <utility>

namespace {

constexpr const char* kWayGivers = " files"; // no address ends so

struct tagAsked
{
    quint64 nTurn = 0;
    QList<tagHttpJob> jobs; // not begun
};

struct Asked
{
    QMutex mutex;
    QHash<quint64, tagAsked> actions;
};

Asked& theAsked()
{
    static Asked* asked = new Asked;
    return *asked;
}

std::atomic<bool> g_isRunning{false};

bool isLatest(const tagHttpJob& job)
{
    Asked& asked = theAsked();
    QMutexLocker lock(&asked.mutex);
    return asked.actions.value(job.hold->number()).nTurn == job.nTurn;
}

// The thread ends before the process's statics do.
class NetworkThread : public QThread
{
public:
    explicit NetworkThread(httpService* service) : m_pService(service)
    {
        m_pService->moveToThread(this);
        setObjectName("network");
        start();
        g_isRunning = true;
    }
    ~NetworkThread() override
    {
        g_isRunning = false;
        quit();
        wait();
        delete m_pService;
    }

protected:
    void run() override
    {
        threadGiveWay(GIVE_WAY_TRANSFERS);
        exec();
        m_pService->close();
    }

private:
    httpService* m_pService;
};

} // namespace

httpService& httpService::instance()
{
    // Made and moved by one thread, also when two ask for it first.
    static httpService* const service = [] {
        httpService* made = new httpService;
        static NetworkThread thread(made);
        return made;
    }();
    return *service;
}

void httpService::prepare(HttpAction& action, const taskHoldRef& hold)
{
    tagHttpJob job;
    job.url = action.strRemoteUrl.GetText();
    job.file = action.strLocalFile.GetText();
    job.bUnfinished = action.bUnfinished != 0;
    job.bGivesWay = action.bGivesWay != 0;
    job.server = httpTransfer::serverOf(job.url) + (job.bGivesWay ? kWayGivers : "");
    job.nSizeLimit = action.nSizeLimit;
    job.nTimeLimit = action.nTimeLimit;
    job.bFlush = action.bFlush != 0;
    job.bCheckSum = action.bCheckSum != 0;
    job.hold = hold;
    Asked& asked = theAsked();
    QMutexLocker lock(&asked.mutex);
    tagAsked& mine = asked.actions[hold->number()];
    job.nTurn = ++mine.nTurn;
    mine.jobs.append(job);
}

tagHttpJob httpService::takeJob(HttpAction& action)
{
    const quint64 number = taskBook::numberOf(action);
    Asked& asked = theAsked();
    QMutexLocker lock(&asked.mutex);
    tagAsked& mine = asked.actions[number];
    if (!mine.jobs.isEmpty())
        return mine.jobs.takeFirst();
    lock.unlock();
    prepare(action, std::make_shared<taskHold>(action));
    return takeJob(action);
}

void httpService::start(const tagHttpJob& job)
{
    QMetaObject::invokeMethod(
        this, [this, job] { enqueue(job); }, Qt::QueuedConnection);
}

// What waits for its thread goes with the next turn, as it does when the action is posted again.
void httpService::abandon(quint64 action)
{
    Asked& asked = theAsked();
    QMutexLocker lock(&asked.mutex);
    const auto its = asked.actions.find(action);
    if (its == asked.actions.end())
        return;
    ++its->nTurn;
    lock.unlock();
    giveUpSoon(action);
}

void httpService::forget(quint64 action)
{
    Asked& asked = theAsked();
    QMutexLocker lock(&asked.mutex);
    const tagAsked ended = asked.actions.take(action);
    lock.unlock();
    if (ended.nTurn != 0)
        giveUpSoon(action);
}

void httpService::giveUpSoon(quint64 action)
{
    if (!g_isRunning)
        return;
    httpService& service = instance();
    QMetaObject::invokeMethod(
        &service, [&service, action] { service.giveUp(action); }, Qt::QueuedConnection);
}

httpService::httpService() = default;

httpService::~httpService() = default;

void httpService::close()
{
    qDeleteAll(std::exchange(m_active, {}));
    m_loop.reset();
    m_wayGivers.reset();
    m_sums.reset();
}

void httpService::enqueue(const tagHttpJob& job)
{
    if (!isLatest(job)) {
        taskGiveUp(job.hold);
        return;
    }
    giveUp(job.hold->number());
    ++m_jobs[job.hold->number()];
    m_servers[job.server].waiting.push_back(job);
    startNext(job.server);
}

// Everything the action asked for so far. Most actions have nothing left when they go.
void httpService::giveUp(quint64 action)
{
    if (m_jobs.remove(action) == 0)
        return;
    giveUpWaiting(action);
    const QList<httpTransfer*> active = m_active;
    for (httpTransfer* transfer : active) {
        if (transfer->job().hold->number() != action)
            continue;
        ended(transfer);
        transfer->giveUp();
        taskGiveUp(transfer->job().hold);
        transfer->deleteLater();
        startNext(transfer->job().server);
    }
}

void httpService::giveUpWaiting(quint64 action)
{
    for (tagServer& server : m_servers) {
        const auto isIts = [action](const tagHttpJob& job) { return job.hold->number() == action; };
        for (const tagHttpJob& job : server.waiting) {
            if (isIts(job))
                taskGiveUp(job.hold);
        }
        server.waiting.erase(std::remove_if(server.waiting.begin(), server.waiting.end(), isIts),
                             server.waiting.end());
    }
}

void httpService::startNext(const QByteArray& server)
{
    for (;;) {
        tagServer& its = m_servers[server];
        if (its.waiting.empty() || its.nActive >= CONNECTIONS)
            break;
        const tagHttpJob job = its.waiting.front();
        its.waiting.pop_front();
        begin(job);
    }
    const tagServer& its = m_servers[server];
    if (its.waiting.empty() && its.nActive == 0)
        m_servers.remove(server);
}

void httpService::begin(const tagHttpJob& job)
{
    httpTransfer* transfer =
        new httpTransfer(job, m_room, sums(), [this](httpTransfer* its, bool good) { done(its, good); });
    m_active.append(transfer);
    ++m_servers[job.server].nActive;
    const curlLibrary& curl = curlLibrary::instance();
    if (curl.isThere())
        transfer->start(loopFor(job));
    else
        transfer->fail(curl.failure().constData());
}

httpLoop& httpService::loopFor(const tagHttpJob& job)
{
    std::unique_ptr<httpLoop>& loop = job.bGivesWay ? m_wayGivers : m_loop;
    if (!loop)
        loop = std::make_unique<httpLoop>(CONNECTIONS);
    return *loop;
}

checkSums& httpService::sums()
{
    if (!m_sums)
        m_sums = std::make_unique<checkSums>();
    return *m_sums;
}

void httpService::ended(httpTransfer* transfer)
{
    m_active.removeOne(transfer);
    --m_servers[transfer->job().server].nActive;
}

void httpService::done(httpTransfer* transfer, bool good)
{
    if (!m_active.contains(transfer))
        return;
    ended(transfer);
    const tagHttpJob job = transfer->job();
    transfer->deleteLater();
    if (--m_jobs[job.hold->number()] <= 0)
        m_jobs.remove(job.hold->number());
    if (good && transfer->isCounted())
        transfer->countLast([job](const QByteArray& checkSum) { tell(job, true, checkSum); });
    else
        tell(job, good, QByteArray());
    // A transfer that ends at once must not make the list of those that wait go deeper and deeper.
    QMetaObject::invokeMethod(
        this, [this, server = job.server] { startNext(server); }, Qt::QueuedConnection);
}

void httpService::tell(const tagHttpJob& job, bool good, const QByteArray& checkSum)
{
    taskDone(job.hold, [job, good, checkSum] {
        HttpAction* action = static_cast<HttpAction*>(job.hold->action());
        if (!action || !(isLatest(job) || (good && job.bUnfinished)))
            return false;
        action->nResult = good;
        action->strCheckSum = checkSum.constData();
        return true;
    });
}
