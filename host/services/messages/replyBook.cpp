#include "host/services/messages/replyBook.h"
#include "host/services/messages/threadQueue.h"
#include <QDeadlineTimer>
#include <QHash>
#include <QMutex>
#include <algorithm>

namespace {

enum class STATE { WAITING, ANSWERED, LOST };

struct tagExpected
{
    quint64 nConnection = 0;
    threadQueueRef waiter;
    STATE eState = STATE::WAITING;
    tagReply reply;
};

struct Book
{
    QMutex mutex;
    QHash<quint32, tagExpected> expected;
    quint32 last = 0;
};

Book& theBook()
{
    static Book* book = new Book;
    return *book;
}

void settle(tagExpected& expected, STATE state, const tagReply& reply)
{
    if (expected.eState != STATE::WAITING)
        return;
    expected.eState = state;
    expected.reply = reply;
    expected.waiter->nudge();
}

tagExpected look(quint32 ticket)
{
    Book& book = theBook();
    QMutexLocker lock(&book.mutex);
    tagExpected unknown;
    unknown.eState = STATE::LOST;
    return book.expected.value(ticket, unknown);
}

// Looks at the clock at least this often: a test's clock can be moved meanwhile.
constexpr int kLookMs = 100;

int sleepTime(const QDeadlineTimer& deadline)
{
    return deadline.isForever() ? -1 : int(std::clamp<qint64>(deadline.remainingTime(), 0, kLookMs));
}

} // namespace

quint32 replyBook::newTicket()
{
    Book& book = theBook();
    QMutexLocker lock(&book.mutex);
    do {
        ++book.last;
    } while (book.last == 0 || book.expected.contains(book.last));
    return book.last;
}

void replyBook::expect(quint32 ticket, quint64 connection)
{
    const threadQueueRef waiter = threadQueue::current();
    Book& book = theBook();
    QMutexLocker lock(&book.mutex);
    book.expected.insert(ticket, {connection, waiter, STATE::WAITING, tagReply()});
}

void replyBook::answer(quint32 ticket, const std::optional<tagReply>& reply)
{
    Book& book = theBook();
    QMutexLocker lock(&book.mutex);
    const auto found = book.expected.find(ticket);
    if (found != book.expected.end())
        settle(*found, reply ? STATE::ANSWERED : STATE::LOST, reply.value_or(tagReply()));
}

void replyBook::endConnection(quint64 connection)
{
    Book& book = theBook();
    QMutexLocker lock(&book.mutex);
    for (tagExpected& expected : book.expected) {
        if (expected.nConnection == connection)
            settle(expected, STATE::LOST, tagReply());
    }
}

int replyBook::wait(quint32 ticket, int timeoutMs, tagReply& reply)
{
    const QDeadlineTimer deadline =
        timeoutMs < 0 ? QDeadlineTimer(QDeadlineTimer::Forever) : QDeadlineTimer(timeoutMs);
    const threadQueueRef queue = threadQueue::current();
    for (;;) {
        const tagExpected now = look(ticket);
        if (now.eState == STATE::ANSWERED) {
            reply = now.reply;
            return 1;
        }
        if (now.eState == STATE::LOST || deadline.hasExpired())
            return 0;
        queue->deliverSent();
        if (look(ticket).eState == STATE::WAITING)
            queue->waitForNudge(sleepTime(deadline));
    }
}

void replyBook::forget(quint32 ticket)
{
    Book& book = theBook();
    QMutexLocker lock(&book.mutex);
    book.expected.remove(ticket);
}
