#include "host/services/messages/threadReceiver.h"
#include "host/services/messages/threadQueue.h"
#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEvent>
#include <QTimerEvent>

void threadReceiver::wake()
{
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void threadReceiver::setBacklog(bool more)
{
    if (more == m_backlog.isActive())
        return;
    if (more && QAbstractEventDispatcher::instance())
        m_backlog.start(0, this);
    else
        m_backlog.stop();
}

bool threadReceiver::event(QEvent* event)
{
    const bool isOurs = event->type() == QEvent::User || event->type() == QEvent::Timer;
    if (!isOurs)
        return QObject::event(event);
    const threadQueueRef alive = m_queue.shared_from_this();
    if (event->type() == QEvent::User)
        alive->wakeCame();
    alive->deliver();
    return true;
}
