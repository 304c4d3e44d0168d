#pragma once
// What makes the calls: a SIP stack, or the simulation of one. It knows no settings but those of the
// accounts: what becomes of a call is decided by callRules. User-interface thread.
#include "host/services/phone/tagCall.h"
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
    // account: 0 to 3, PHONE_LINE_PSTN, or -1 where none is registered. The call's id, 0 when it was not
    // begun: where there is such a line, a call that has ended tells why.
    virtual int dial(const QString& number, int account, const tagCallOptions& options) = 0;

    // All of these are false when there is no such call, or it does not wait for that.

    // A call that has arrived rings at both ends.
    virtual bool ring(int id) = 0;
    // What the other side of a call that rings shows is shown before it is answered; nothing goes there.
    // options: with which it is answered later. False where that cannot be had.
    virtual bool preview(int /*id*/, const tagCallOptions& /*options*/) { return false; }
    virtual bool answer(int id, const tagCallOptions& options) = 0;
    // Of a call that comes in: CALL_DECLINED, CALL_BUSY, CALL_DISTURBED or CALL_REJECTED.
    virtual bool refuse(int id, CALL_END why) = 0;
    // Of a call that comes in: sends it to another number.
    virtual bool deflect(int id, const QString& number) = 0;
    virtual bool hangUp(int id) = 0;
    // The rest: of a call that talks.
    virtual bool setHeld(int id, bool held) = 0;
    virtual bool setMuted(int id, bool muted) = 0;
    // Puts the other side through to the number: the call is over here as soon as that was taken. Where it
    // was not, the call goes on and tells so, with a reason; so with connect().
    virtual bool transfer(int id, const QString& number) = 0;
    // Puts the other sides of two calls that talk through to each other: both are over here, as transferred
    // to the other's number. False where this cannot be done.
    virtual bool connect(int /*id*/, int /*other*/) { return false; }
    // The other sides of two calls that talk, and the user, hear each other until split() or the end of
    // either. Both calls have their marks (tagCall::nJoined) before anybody is told of one of them. What is
    // held stays so: the rules take it back.
    virtual bool join(int /*id*/, int /*other*/) { return false; }
    virtual bool split(int /*id*/) { return false; }
    // One of "0123456789*#ABCD". A secret one shows as "•" in what the call tells of its tones.
    virtual bool sendTone(int id, QChar tone, bool secret) = 0;

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
