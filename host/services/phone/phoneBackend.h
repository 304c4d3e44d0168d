#pragma once
// What makes the calls: a SIP stack, or the simulation of one. User-interface thread.
#include "host/services/phone/tagCall.h"
#include "support/host/phone.h"
#include <QList>

// Hears from the backend.
class phoneEvents
{
public:
    virtual ~phoneEvents() = default;
    // Anything of the account changed.
    virtual void accountChanged(int index) = 0;
    // A call began, changed or ended; an ended one is gone from calls().
    virtual void callChanged(const tagCall& call) = 0;
};

class HX_HOST_API phoneBackend
{
public:
    virtual ~phoneBackend() = default;
    // events outlives the backend. Accounts are registered from here on.
    virtual void start(phoneEvents* events) = 0;
    // index: 0 to PHONE_ACCOUNT_COUNT - 1.
    virtual tagAccountInfo account(int index) const = 0;
    // The account calls go out on; -1 when none is registered.
    virtual int defaultAccount() const = 0;
    // account: 0 to 3, PHONE_LINE_PSTN, or -1 for the default one; flags as phone_CallNumber. The call's id,
    // 0 when it was not begun.
    virtual int dial(const QString& number, int account, int flags) = 0;
    // False when there is no such call, or it does not wait for that.
    virtual bool answer(int id) = 0;
    // Of a call that comes in: declines it. False when there is no such call.
    virtual bool hangUp(int id) = 0;
    virtual QList<tagCall> calls() const = 0;
    // As the module sees them; a simulation may count calls that nobody made here.
    virtual int callTotal() const = 0;
    virtual bool isInTalk() const = 0;
    virtual bool hasPstn() const = 0;
};
