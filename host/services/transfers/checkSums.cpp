#include "host/services/transfers/checkSums.h"

checkSums::checkSums()
{
    m_thread.setObjectName("sums");
    m_worker.moveToThread(&m_thread);
    m_thread.start();
}

checkSums::~checkSums()
{
    m_thread.quit();
    m_thread.wait();
}

void checkSums::add(const Sum& sum, const QByteArray& block)
{
    m_room.acquire(int(block.size()));
    QMetaObject::invokeMethod(
        &m_worker,
        [this, sum, block] {
            sum->addData(block);
            m_room.release(int(block.size()));
        },
        Qt::QueuedConnection);
}

void checkSums::finish(const Sum& sum, const QByteArray& last, ToldCall told)
{
    m_room.acquire(int(last.size()));
    QMetaObject::invokeMethod(
        &m_worker,
        [this, sum, last, told = std::move(told)] {
            sum->addData(last);
            m_room.release(int(last.size()));
            told(sum->result().toHex());
        },
        Qt::QueuedConnection);
}
