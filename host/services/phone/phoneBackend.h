#pragma once
// What makes the calls: a SIP stack, or the simulation of one. It knows no settings but those of the
// accounts: what becomes of a call is decided by callRules. User-interface thread.
#include "host/services/phone/callOrders.h"
#include "support/host/phone.h"
#include <QList>

class phoneLamps;

// Hears what becomes of accounts and calls.
class phoneNews
{
public:
    virtual ~phoneNews() = default;
    // Anything of the account changed.
    virtual void accountChanged(int index) = 0;
    // A call began, changed or ended; an ended one is gone from calls().
    virtual void callChanged(const tagCall& call) = 0;
};

// Hears from the backend. Names and numbers of callers have at most CALL_NUMBER_MAX characters: what the
// network sends beyond that the backend leaves out.
class phoneEvents : public phoneNews
{
public:
    // A call from outside. It is among calls(), and nobody was told of it: before this returns, one of
    // ring(), answer(), refuse() and deflect() says what becomes of it.
    virtual void callArrived(const tagCall& call) = 0;
    // What a call begins with that the user makes.
    virtual tagCallOptions optionsFor(const QString& number, int account) = 0;
};

class HX_HOST_API phoneBackend : public callOrders
{
public:
    // events outlives the backend. Accounts are registered from here on.
    virtual void start(phoneEvents* events) = 0;
    // index: 0 to PHONE_ACCOUNT_COUNT - 1.
    virtual tagAccountInfo account(int index) const = 0;
    // The account calls go out on; -1 when none is registered.
    virtual int defaultAccount() const = 0;
    // account: 0 to 3, PHONE_LINE_PSTN, or -1 where none is registered. The call's id, 0 when it was not
    // begun: where there is such a line, a call that has ended tells why.
    virtual int dial(const QString& number, int account, const tagCallOptions& options) = 0;

    virtual QList<tagCall> calls() const = 0;
    // The last ones, newest first, those that were never begun too.
    virtual QList<tagCall> endedCalls() const { return {}; }
    // As the module sees them; a simulation may count calls that nobody made here.
    virtual int callTotal() const = 0;
    virtual bool isInTalk() const = 0;
    virtual bool hasPstn() const = 0;
    // What is said in a call is heard and sent by whoever makes it: the phone has no session for its sound.
    virtual bool hasOwnSound() const { return false; }
    // The states of other extensions; null where the backend cannot see any. They live as long as it does.
    virtual phoneLamps* lamps() { return nullptr; }
};
