#pragma once
// Accounts and calls: what the phone's pages and screens do with calls goes through the rules to the backend;
// what these tell goes to the module and to the call screen, and into the history of calls. User-interface
// thread.
#include "host/services/messages/processerBook.h"
#include "host/services/phone/callRules.h"
#include "host/services/phone/phoneBackend.h"
#include <QMap>
#include <QMutex>
#include <functional>
#include <memory>

class HX_HOST_API phoneService : public phoneNews
{
public:
    static phoneService& instance();

    // Puts a backend to work, in place of the one before. Without a call the simulation works from the
    // first use on.
    void setBackend(std::unique_ptr<phoneBackend> backend);
    phoneBackend& backend();

    // What may be done with calls, and what is set for them.
    callRules& rules();
    QList<tagCall> calls() { return rules().calls(); }
    bool answer(int id) { return rules().answer(id); }
    bool hangUp(int id) { return rules().hangUp(id); }
    // At the end of the phone: the calls that are still there are stored as calls that end now.
    void finish();
    // Called with each call that begins, changes or ends. The answer is for removeCallListener.
    using CallListener = std::function<void(const tagCall& call)>;
    int addCallListener(CallListener listener);
    void removeCallListener(int listener);

    // As phone_RegAccountNotify and phone_UnRegAccountNotify; account -1 takes away all of the
    // processer's. Who comes back is told what has changed meanwhile.
    void addAccountNotify(const chMsgProcesser* processer, int account);
    void removeAccountNotify(const chMsgProcesser* processer, int account);

    void accountChanged(int index) override;
    void callChanged(const tagCall& call) override;

private:
    struct tagNotify
    {
        tagProcesserRef processer;
        int nAccount;
        int told[PHONE_ACCOUNT_COUNT] = {}; // the last change of each account that it has heard of
        bool bWants = true;                 // false: it has gone, and may come back
    };

    phoneService() = default;
    QList<tagProcesserRef> processersFor(int index) const;
    void tellOfAccount(const tagProcesserRef& processer, int index);
    static bool wants(const tagNotify& notify, int index);
    bool hears(const tagProcesserRef& processer, int index, int change);

    // In this order: the rules hear from the backend until it is gone.
    std::unique_ptr<callRules> m_pRules;
    std::unique_ptr<phoneBackend> m_pBackend;
    QMap<int, CallListener> m_listeners;
    int m_nLastListener = 0;
    mutable QMutex m_mutex; // of what follows: it is looked at again on the processer's thread
    QList<tagNotify> m_notifies;
    int m_changes[PHONE_ACCOUNT_COUNT] = {};
    unsigned int m_states[PHONE_ACCOUNT_COUNT] = {}; // with the last of them
};
