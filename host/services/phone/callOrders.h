#pragma once
// What can be done to the calls of a phone. All of these are false when there is no such call, or it does not
// wait for that. User-interface thread.
#include "host/services/phone/tagCall.h"

class HX_HOST_API callOrders
{
public:
    virtual ~callOrders() = default;
    // A call that has arrived rings at both ends.
    virtual bool ring(int id) = 0;
    // What the other side of a call that rings shows is shown before it is answered; nothing goes there.
    // options: with which it is answered later. False where that cannot be had.
    virtual bool preview(int /*id*/, const tagCallOptions& /*options*/) { return false; }
    virtual bool answer(int id, const tagCallOptions& options) = 0;
    // Of a call that comes in: CALL_DECLINED, CALL_BUSY, CALL_DISTURBED, CALL_REJECTED or CALL_UNFIT.
    virtual bool refuse(int id, CALL_END why) = 0;
    // Of a call that comes in: sends it to another number.
    virtual bool deflect(int id, const QString& number) = 0;
    virtual bool hangUp(int id) = 0;
    // The rest: of a call that talks.
    virtual bool setHeld(int id, bool held) = 0;
    virtual bool setMuted(int id, bool muted) = 0;
    // The user's picture goes to the other side, where that takes it. False where there is none.
    virtual bool setCamera(int /*id*/, bool /*on*/) { return false; }
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
};
