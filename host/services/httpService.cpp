#include "host/services/httpService.h"
#include "host/services/httpTransfer.h"
#include "support/host/http.h"
#include <QHash>
#include <QMutex>
#include <QNetworkAccessManager>
#include <QThread>
#include <atomic>

namespace {

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

private:
    httpService* m_pService;
};

} // namespace

httpService& httpService::instance()
{
    static httpService* service = new httpService;
    static NetworkThread thread(service);
    return *service;
}

void httpService::prepare(HttpAction& action, const taskHoldRef& hold)
{
    tagHttpJob job;
    job.url = action.strRemoteUrl.GetText();
    job.file = action.strLocalFile.GetText();
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

void httpService::forget(quint64 action)
{
    Asked& asked = theAsked();
    QMutexLocker lock(&asked.mutex);
    const tagAsked ended = asked.actions.take(action);
    lock.unlock();
    if (ended.nTurn == 0 || !g_isRunning)
        return;
    httpService& service = instance();
    QMetaObject::invokeMethod(
        &service, [&service, action] { service.giveUp(action); }, Qt::QueuedConnection);
}

bool httpService::isHere() const
{
    return QThread::currentThread() == thread();
}

httpTransfer* httpService::transferOf(QNetworkReply* reply) const
{
    for (httpTransfer* transfer : m_active) {
        if (reply && transfer->reply() == reply)
            return transfer;
    }
    return nullptr;
}

void httpService::enqueue(const tagHttpJob& job)
{
    if (!isLatest(job)) {
        taskGiveUp(job.hold);
        return;
    }
    giveUp(job.hold->number());
    m_waiting.append(job);
    startNext();
}

// Everything the action asked for so far.
void httpService::giveUp(quint64 action)
{
    const auto isIts = [action](const tagHttpJob& job) { return job.hold->number() == action; };
    for (qsizetype i = m_waiting.size() - 1; i >= 0; --i) {
        if (isIts(m_waiting[i]))
            taskGiveUp(m_waiting.takeAt(i).hold);
    }
    const QList<httpTransfer*> active = m_active;
    for (httpTransfer* transfer : active) {
        if (!isIts(transfer->job()))
            continue;
        m_active.removeOne(transfer);
        transfer->giveUp();
        taskGiveUp(transfer->job().hold);
        transfer->deleteLater();
    }
    startNext();
}

int httpService::activeFor(const tagHttpJob& job) const
{
    const QByteArray server = httpTransfer::serverOf(job.url);
    int count = 0;
    for (const httpTransfer* transfer : m_active)
        count += httpTransfer::serverOf(transfer->job().url) == server;
    return count;
}

void httpService::startNext()
{
    for (qsizetype i = 0; i < m_waiting.size();) {
        if (activeFor(m_waiting[i]) >= MAX_FOR_SERVER)
            ++i;
        else
            begin(m_waiting.takeAt(i));
    }
}

void httpService::begin(const tagHttpJob& job)
{
    if (!m_pManager)
        m_pManager = new QNetworkAccessManager(this);
    httpTransfer* transfer =
        new httpTransfer(job, [this](httpTransfer* ended, bool good) { done(ended, good); });
    m_active.append(transfer);
    transfer->start(*m_pManager);
}

void httpService::done(httpTransfer* transfer, bool good)
{
    if (!m_active.removeOne(transfer))
        return;
    const tagHttpJob job = transfer->job();
    transfer->deleteLater();
    taskDone(job.hold, [job, good] {
        HttpAction* action = static_cast<HttpAction*>(job.hold->action());
        if (!action || !isLatest(job))
            return false;
        action->nResult = good;
        return true;
    });
    // A transfer that ends at once must not make the list of those that wait go deeper and deeper.
    QMetaObject::invokeMethod(
        this, [this] { startNext(); }, Qt::QueuedConnection);
}
