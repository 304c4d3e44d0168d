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

void checkSums::finish(const Sum& sum, QObject* context, ToldCall told)
{
    QMetaObject::invokeMethod(
        &m_worker,
        [sum, context, told = std::move(told)] {
            QMetaObject::invokeMethod(
                context, [told, result = sum->result().toHex()] { told(result); }, Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
}
