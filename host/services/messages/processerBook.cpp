#include "host/services/messages/processerBook.h"
#include "host/services/messages/threadQueue.h"
#include <QHash>
#include <QMutex>

namespace {

struct Book
{
    QMutex mutex;
    QHash<const chMsgProcesser*, tagProcesserRef> processers;
    quint64 last = 0;
};

// Never destroyed: receivers that are statics leave after everything else.
Book& theBook()
{
    static Book* book = new Book;
    return *book;
}

} // namespace

void processerBook::add(chMsgProcesser* processer)
{
    const threadQueueRef queue = threadQueue::current();
    Book& book = theBook();
    QMutexLocker lock(&book.mutex);
    const tagProcesserRef entry{++book.last, queue};
    book.processers.insert(processer, entry);
    queue->addProcesser(entry.nNumber, processer);
}

void processerBook::remove(chMsgProcesser* processer)
{
    Book& book = theBook();
    QMutexLocker lock(&book.mutex);
    const tagProcesserRef entry = book.processers.take(processer);
    if (entry.queue)
        entry.queue->removeProcesser(entry.nNumber);
}

tagProcesserRef processerBook::find(const chMsgProcesser* processer)
{
    Book& book = theBook();
    QMutexLocker lock(&book.mutex);
    return book.processers.value(processer);
}

bool processerBook::isThere(const tagProcesserRef& processer)
{
    return processer.queue && processer.queue->findProcesser(processer.nNumber);
}

bool processerBook::post(const tagProcesserRef& processer, const msgObject& msg)
{
    if (!processer.queue)
        return false;
    tagDelivery delivery;
    delivery.msg = msg;
    delivery.nTarget = processer.nNumber;
    return processer.queue->post(std::move(delivery));
}
