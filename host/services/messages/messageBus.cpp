#include "host/services/messages/messageBus.h"
#include "host/services/messages/messagePump.h"
#include "host/services/messages/messageSocket.h"
#include "host/services/messages/replyBook.h"
#include "host/services/system/hostLog.h"
#include "support/host/message.h"
#include <QCoreApplication>
#include <QThread>

namespace {

constexpr int kUserInterfaceWaitMs = 2000; // nobody keeps the screen waiting for longer

// The thread of that name, wherever it lives now.
class namedThread : public chThreadBase
{
public:
    explicit namedThread(const QByteArray& name) : m_name(name) {}
    int EmitThreadMessage(msgObject& msg) override;
    int WaitThreadMessageReply(msgObject& msg, int timeoutMs) override;

private:
    int emitHere(const threadQueueRef& queue, msgObject& msg);
    int emitThere(const msgObject& msg);

    QByteArray m_name;
};

int namedThread::EmitThreadMessage(msgObject& msg)
{
    messagePump& pump = messagePump::instance();
    const threadQueueRef own = pump.isListeningAs(m_name) ? pump.ownQueue() : nullptr;
    return own ? emitHere(own, msg) : emitThere(msg);
}

int namedThread::emitHere(const threadQueueRef& queue, msgObject& msg)
{
    const quint32 ticket = Ticket(msg);
    if (ticket)
        replyBook::expect(ticket, 0);
    if (ticket && queue->isCurrent()) {
        replyBook::answer(ticket, queue->deliverNow(msg));
        return 1;
    }
    tagDelivery delivery;
    delivery.msg = msg;
    delivery.pSender = threadQueue::current().get();
    if (ticket)
        delivery.reply = [ticket](const std::optional<tagReply>& reply) { replyBook::answer(ticket, reply); };
    const bool posted = queue->post(std::move(delivery));
    if (!posted && ticket)
        replyBook::forget(ticket);
    return posted;
}

int namedThread::emitThere(const msgObject& msg)
{
    if (msg.GetExtraSize() > messageWire::MAX_EXTRA)
        return 0;
    messageWire::tagFrame frame;
    frame.eKind = Ticket(msg) ? messageWire::KIND_SEND : messageWire::KIND_POST;
    frame.nTicket = Ticket(msg);
    frame.message = msg.message;
    frame.wParam = msg.wParam;
    frame.lParam = msg.lParam;
    frame.extra = Extra(msg);
    return messagePump::instance().send(m_name, frame);
}

int namedThread::WaitThreadMessageReply(msgObject& msg, int timeoutMs)
{
    tagReply reply;
    if (!replyBook::wait(Ticket(msg), timeoutMs, reply))
        return 0;
    msg.nResult = reply.nResult;
    SetExtra(msg, reply.extra);
    return 1;
}

// Handles live until the process ends.
chThreadBase* handleOf(const QByteArray& name)
{
    static QMutex mutex;
    static QHash<QByteArray, namedThread*>* handles = new QHash<QByteArray, namedThread*>;
    QMutexLocker lock(&mutex);
    namedThread*& handle = (*handles)[name];
    if (!handle)
        handle = new namedThread(name);
    return handle;
}

bool isUserInterfaceThread()
{
    const QCoreApplication* application = QCoreApplication::instance();
    return application && application->thread() == QThread::currentThread();
}

} // namespace

int messageServiceStart(const char* name)
{
    return messagePump::instance().listen(name, threadQueue::current());
}

bool messageServiceIsTaken(const char* name)
{
    return messageSocket::isTaken(name);
}

void messageServiceRemoveDead(const char* name)
{
    messageSocket::removeDead(name);
}

void messageServiceStop()
{
    messagePump::instance().stop();
}

chThreadBase* msgGetThreadByName(const char* name)
{
    const QByteArray key(name);
    if (!messageSocket::isValidName(key))
        return nullptr;
    messagePump& pump = messagePump::instance();
    return pump.isListeningAs(key) || pump.isReachable(key) ? handleOf(key) : nullptr;
}

int msgPostMsgToThread(chThreadBase* thread, unsigned int message, unsigned int wParam, unsigned int lParam)
{
    return msgPostMsgToThreadEx(thread, message, wParam, lParam, 0, nullptr);
}

int msgPostMsgToThreadEx(chThreadBase* thread, unsigned int message, unsigned int wParam, unsigned int lParam,
                         int extraSize, const void* extraData)
{
    if (!thread)
        return 0;
    msgObject msg(message, wParam, lParam, extraData, extraSize);
    return thread->EmitThreadMessage(msg);
}

int msgSendMsgToThread(chThreadBase* thread, unsigned int message, unsigned int wParam, unsigned int lParam)
{
    return msgSendMsgToThreadEx(thread, message, wParam, lParam, 0, nullptr);
}

int msgSendMsgToThreadEx(chThreadBase* thread, unsigned int message, unsigned int wParam, unsigned int lParam,
                         int extraSize, const void* extraData)
{
    if (!thread)
        return 0;
    msgObject* msg = thread->AllocThreadMessage(int(message), true, extraSize, extraData);
    msg->wParam = wParam;
    msg->lParam = lParam;
    const int timeoutMs = isUserInterfaceThread() ? kUserInterfaceWaitMs : -1;
    const bool answered = thread->EmitThreadMessage(*msg) && thread->WaitThreadMessageReply(*msg, timeoutMs);
    const int result = answered ? msg->nResult : 0;
    thread->CloseSendMessage(*msg);
    return result;
}

void msgBroadpostThreadMsg(unsigned int message, unsigned int wParam, unsigned int lParam)
{
    hostLog("broadcast", QString::asprintf("0x%x %u %u", message, wParam, lParam));
    tagDelivery delivery;
    delivery.msg = msgObject(message, wParam, lParam);
    delivery.bBroadcast = true;
    delivery.pSender = threadQueue::current().get();
    for (const threadQueueRef& queue : threadQueue::listening())
        queue->post(tagDelivery(delivery));
    messageWire::tagFrame frame;
    frame.eKind = messageWire::KIND_BROADCAST;
    frame.message = message;
    frame.wParam = wParam;
    frame.lParam = lParam;
    messagePump::instance().broadcast(frame);
}
