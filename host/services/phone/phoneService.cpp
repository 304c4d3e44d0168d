#include "host/services/phone/phoneService.h"
#include "host/services/messages/threadQueue.h"
#include "host/services/phone/callHistory.h"
#include "host/services/phone/lampBook.h"
#include "host/services/phone/phoneSimulation.h"

phoneService& phoneService::instance()
{
    static phoneService* service = new phoneService; // calls may end after the statics
    return *service;
}

void phoneService::setBackend(std::unique_ptr<phoneBackend> backend)
{
    lampBook::instance().setLamps(nullptr);
    m_pBackend = std::move(backend);
    m_pRules.reset();
    if (!m_pBackend)
        return;
    m_pRules = std::make_unique<callRules>(*m_pBackend, *this);
    m_pBackend->start(m_pRules.get());
    lampBook::instance().setLamps(m_pBackend->lamps());
}

phoneBackend& phoneService::backend()
{
    if (!m_pBackend)
        setBackend(std::make_unique<phoneSimulation>());
    return *m_pBackend;
}

callRules& phoneService::rules()
{
    backend();
    return *m_pRules;
}

int phoneService::addCallListener(CallListener listener)
{
    m_listeners.insert(++m_nLastListener, std::move(listener));
    return m_nLastListener;
}

void phoneService::removeCallListener(int listener)
{
    m_listeners.remove(listener);
}

void phoneService::callChanged(const tagCall& call)
{
    if (call.eState == CALL_ENDED)
        callHistoryAdd(call);
    // A listener may take itself or another one away.
    const QList<int> all = m_listeners.keys();
    for (const int listener : all) {
        const CallListener told = m_listeners.value(listener);
        if (told)
            told(call);
    }
}

void phoneService::addAccountNotify(const chMsgProcesser* processer, int account)
{
    const tagNotify notify{processerBook::find(processer), account};
    QMutexLocker lock(&m_mutex);
    m_notifies.removeIf([](const tagNotify& old) { return !processerBook::isThere(old.processer); });
    for (const tagNotify& old : m_notifies) {
        if (old.processer == notify.processer && old.nAccount == account)
            return;
    }
    if (notify.processer.queue)
        m_notifies.append(notify);
}

void phoneService::removeAccountNotify(const chMsgProcesser* processer, int account)
{
    const tagProcesserRef leaving = processerBook::find(processer);
    QMutexLocker lock(&m_mutex);
    m_notifies.removeIf([&](const tagNotify& notify) {
        return notify.processer == leaving && (account == -1 || notify.nAccount == account);
    });
}

bool phoneService::wantsAccount(const tagProcesserRef& processer, int index) const
{
    return processersFor(index).contains(processer);
}

// Each of them once.
QList<tagProcesserRef> phoneService::processersFor(int index) const
{
    QMutexLocker lock(&m_mutex);
    QList<tagProcesserRef> found;
    for (const tagNotify& notify : m_notifies) {
        const bool wanted = notify.nAccount == -1 || notify.nAccount == index;
        if (wanted && !found.contains(notify.processer))
            found.append(notify.processer);
    }
    return found;
}

void phoneService::accountChanged(int index)
{
    const msgObject msg(PHONE_PUBLIC_MSG_ACCOUNT_REFRESH, static_cast<unsigned int>(index),
                        backend().account(index).eState);
    for (const tagProcesserRef& processer : processersFor(index)) {
        tagDelivery delivery;
        delivery.nTarget = processer.nNumber;
        // One that has left since the change is not told any more.
        delivery.call = [this, processer, index, msg] {
            chMsgProcesser* receiver = processer.queue->findProcesser(processer.nNumber);
            msgObject copy = msg;
            if (receiver && wantsAccount(processer, index))
                receiver->TryThreadMessage(copy);
        };
        processer.queue->post(std::move(delivery));
    }
}
