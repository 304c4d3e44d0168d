#include "host/services/transfers/taskBook.h"
#include "host/services/messages/threadQueue.h"
#include <QHash>
#include <QThread>
#include <QWaitCondition>
#include <atomic>

namespace {

struct tagKnown
{
    const taskAction* pAction = nullptr;
    tagProcesserRef callback;
    QList<Qt::HANDLE> users; // threads at work on it
};

struct Book
{
    QMutex mutex;
    QWaitCondition unused;
    QHash<const taskAction*, quint64> numbers;
    QHash<quint64, tagKnown> known;
    quint64 last = 0;
};

// Never destroyed: actions that are statics leave after everything else.
Book& theBook()
{
    static Book* book = new Book;
    return *book;
}

quint64 numberLocked(Book& book, const taskAction& action)
{
    quint64& number = book.numbers[&action];
    if (number == 0) {
        number = ++book.last;
        book.known[number].pAction = &action;
    }
    return number;
}

bool isUsedElsewhere(Book& book, quint64 number)
{
    const QList<Qt::HANDLE> users = book.known.value(number).users;
    return users.count(QThread::currentThreadId()) != users.size();
}

void releaseIfThere(taskAction* action, quint64 number)
{
    if (taskBook::isThere(number))
        action->Release();
}

} // namespace

namespace {
std::atomic<int> g_nHolds{0};
} // namespace

int taskPendingCount()
{
    return g_nHolds;
}

taskHold::taskHold(taskAction& action)
    : m_pAction(&action), m_nNumber(taskBook::numberOf(action)), m_poster(threadQueue::current())
{
    ++g_nHolds;
    action.AddRef();
}

taskHold::~taskHold()
{
    --g_nHolds;
    if (m_poster->isCurrent()) {
        releaseIfThere(m_pAction, m_nNumber);
        return;
    }
    tagDelivery delivery;
    delivery.call = [action = m_pAction, number = m_nNumber] { releaseIfThere(action, number); };
    if (!m_poster->post(std::move(delivery)))
        releaseIfThere(m_pAction, m_nNumber);
}

taskAction* taskHold::action() const
{
    return taskBook::isThere(m_nNumber) ? m_pAction : nullptr;
}

taskUse::taskUse(const taskHold& hold) : m_pAction(nullptr), m_nNumber(hold.number())
{
    Book& book = theBook();
    QMutexLocker lock(&book.mutex);
    const auto found = book.known.find(m_nNumber);
    if (found == book.known.end())
        return;
    m_pAction = const_cast<taskAction*>(found->pAction);
    found->users.append(QThread::currentThreadId());
}

taskUse::~taskUse()
{
    Book& book = theBook();
    QMutexLocker lock(&book.mutex);
    const auto found = book.known.find(m_nNumber);
    if (m_pAction && found != book.known.end())
        found->users.removeOne(QThread::currentThreadId());
    book.unused.wakeAll();
}

quint64 taskBook::numberOf(const taskAction& action)
{
    Book& book = theBook();
    QMutexLocker lock(&book.mutex);
    return numberLocked(book, action);
}

bool taskBook::isThere(quint64 number)
{
    Book& book = theBook();
    QMutexLocker lock(&book.mutex);
    return book.known.contains(number);
}

void taskBook::setCallback(const taskAction& action, const ActionCallback* callback)
{
    const tagProcesserRef receiver = processerBook::find(callback);
    Book& book = theBook();
    QMutexLocker lock(&book.mutex);
    book.known[numberLocked(book, action)].callback = receiver;
}

tagProcesserRef taskBook::callbackOf(quint64 number)
{
    Book& book = theBook();
    QMutexLocker lock(&book.mutex);
    const tagProcesserRef callback = book.known.value(number).callback;
    lock.unlock();
    return processerBook::isThere(callback) ? callback : tagProcesserRef();
}

void taskBook::forget(const taskAction& action)
{
    Book& book = theBook();
    QMutexLocker lock(&book.mutex);
    const quint64 number = book.numbers.take(&action);
    while (number && isUsedElsewhere(book, number))
        book.unused.wait(&book.mutex);
    book.known.remove(number);
}
