#include "host/services/phone/phoneService.h"
#include "host/services/messages/threadQueue.h"
#include "host/services/phone/callHistory.h"
#include "host/services/phone/lampBook.h"
#include "host/services/phone/phoneSimulation.h"
#include <algorithm>
#include <iterator>
#include <utility>

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

void phoneService::finish()
{
    const QList<tagCall> left = m_pRules ? calls() : QList<tagCall>();
    for (tagCall call : left) {
        call.eEnd = call.bIncoming && call.eState == CALL_RINGING ? CALL_MISSED : CALL_HUNG_UP;
        callHistoryAdd(call);
    }
    callHistoryFinish();
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
    const tagProcesserRef coming = processerBook::find(processer);
    QList<int> missed;
    {
        QMutexLocker lock(&m_mutex);
        m_notifies.removeIf([](const tagNotify& old) { return !processerBook::isThere(old.processer); });
        const auto known = std::find_if(m_notifies.begin(), m_notifies.end(), [&](const tagNotify& old) {
            return old.processer == coming && old.nAccount == account;
        });
        if (known == m_notifies.end()) {
            tagNotify notify{coming, account};
            std::copy(std::begin(m_changes), std::end(m_changes), notify.told);
            if (coming.queue)
                m_notifies.append(notify);
            return;
        }
        if (std::exchange(known->bWants, true))
            return;
        for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index) {
            if (wants(*known, index) && known->told[index] != m_changes[index])
                missed.append(index);
        }
    }
    for (const int index : std::as_const(missed))
        tellOfAccount(coming, index);
}

void phoneService::removeAccountNotify(const chMsgProcesser* processer, int account)
{
    const tagProcesserRef leaving = processerBook::find(processer);
    QMutexLocker lock(&m_mutex);
    for (tagNotify& notify : m_notifies) {
        if (notify.processer == leaving && (account == -1 || notify.nAccount == account))
            notify.bWants = false;
    }
}

bool phoneService::wants(const tagNotify& notify, int index)
{
    return notify.bWants && (notify.nAccount == -1 || notify.nAccount == index);
}

// Whether it still is to be told of the account; that change counts as told.
bool phoneService::hears(const tagProcesserRef& processer, int index, int change)
{
    QMutexLocker lock(&m_mutex);
    bool isWanted = false;
    for (tagNotify& notify : m_notifies) {
        if (!(notify.processer == processer) || !wants(notify, index))
            continue;
        notify.told[index] = change;
        isWanted = true;
    }
    return isWanted;
}

// Each of them once.
QList<tagProcesserRef> phoneService::processersFor(int index) const
{
    QMutexLocker lock(&m_mutex);
    QList<tagProcesserRef> found;
    for (const tagNotify& notify : m_notifies) {
        if (wants(notify, index) && !found.contains(notify.processer))
            found.append(notify.processer);
    }
    return found;
}

void phoneService::accountChanged(int index)
{
    const unsigned int state = backend().account(index).eState;
    {
        QMutexLocker lock(&m_mutex);
        ++m_changes[index];
        m_states[index] = state;
    }
    for (const tagProcesserRef& processer : processersFor(index))
        tellOfAccount(processer, index);
}

void phoneService::tellOfAccount(const tagProcesserRef& processer, int index)
{
    QMutexLocker lock(&m_mutex);
    const msgObject msg(PHONE_PUBLIC_MSG_ACCOUNT_REFRESH, static_cast<unsigned int>(index), m_states[index]);
    const int change = m_changes[index];
    lock.unlock();
    tagDelivery delivery;
    delivery.nTarget = processer.nNumber;
    // One that has left since the change is not told any more.
    delivery.call = [this, processer, index, change, msg] {
        chMsgProcesser* receiver = processer.queue->findProcesser(processer.nNumber);
        msgObject copy = msg;
        if (receiver && hears(processer, index, change))
            receiver->TryThreadMessage(copy);
    };
    processer.queue->post(std::move(delivery));
}
