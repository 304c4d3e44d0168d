#pragma once
// What becomes of calls by the settings, between whoever uses the phone and what makes the calls. It needs no
// screen. User-interface thread.
//
// A call that comes in is, in this order: rejected when its caller is anonymous and the line wants that;
// refused by do-not-disturb; forwarded, when all are; forwarded or busy, when no other call may come;
// forwarded at once, as one that nobody answers, or refused, when what it offers cannot be talked; else it
// rings, and is answered or forwarded when its time is up. Nothing is forwarded to where it came from, or to
// this phone.
//
// A number that goes out is rewritten by the dial plan before a line is chosen. Who talks last talks: the
// others are put on hold, but for those who talk together. Who was held for a call that failed as it was
// answered is taken back.
#include "host/services/phone/callDevices.h"
#include "host/services/phone/callSettings.h"
#include "host/services/phone/phoneBackend.h"
#include "support/host/message.h"
#include <QHash>
#include <QObject>

class HX_HOST_API callRules : public QObject, public phoneEvents, public chMsgProcesser
{
public:
    enum {
        CALLS_MAX = 4,       // at once, as many as the phone has lines
        FORWARDS_MAX = 5,    // of one call, by this phone and others
        CODE_TALK_MS = 2000, // until a code that was dialled for a setting is taken as heard
    };

    // Both outlive the rules. News hears of every call but those that have not been decided yet.
    callRules(phoneBackend& backend, phoneNews& news);

    // account: 0 to 3, PHONE_LINE_PSTN, or -1 for the default one. The call's id, 0 when it was not begun:
    // news is then told why.
    int dial(const QString& number, int account);
    // Of a call from outside that rings.
    bool answer(int id);
    bool decline(int id);
    bool forward(int id, const QString& number);
    // Declines one from outside that rings.
    bool hangUp(int id);
    // Of a call that talks. Who is taken back puts the others on hold.
    bool setHeld(int id, bool held);
    bool setMuted(int id, bool muted);
    bool setCamera(int id, bool on);
    bool transfer(int id, const QString& number);
    // Of two calls that talk: their other sides talk to each other, without the user.
    bool connect(int id, int other);
    // Three talk: both calls are taken back, and what is done to one of them (hold, mute, camera, tones) is
    // done to both, until split() or the end of either. A call talks with one other at most.
    bool join(int id, int other);
    // The call goes on as it is, and the other one is held.
    bool split(int id);
    // "0123456789*#ABCD", in their order; false when one is none of these, and nothing is sent.
    bool sendTones(int id, const QString& tones);
    // Sends the tones that open the door at the other end, which nobody gets to see. False where there is
    // none.
    bool openDoor(int id);

    // The door phone or camera that the call is with; one without a number when it is with none.
    tagCallDevice deviceOf(const tagCall& call);
    // Whether openDoor() has tones to send.
    bool hasDoor(const tagCall& call) { return isTones(deviceOf(call).strUnlockPin); }
    QList<tagCall> calls() const;
    const callSettings& settings() const { return m_settings; }

    void accountChanged(int index) override { m_news.accountChanged(index); }
    void callChanged(const tagCall& call) override;
    void callArrived(const tagCall& call) override;
    tagCallOptions optionsFor(const QString& number, int account) override;
    int TryThreadMessage(msgObject& msg) override;

private:
    struct tagCode
    {
        int nLine;
        bool bReject; // of the rejection, else of the anonymous calls
        QString strNumber;
    };

    tagCall find(int id) const;
    bool rings(int id) const;
    bool talks(int id) const { return find(id).eState == CALL_TALKING; }
    bool isTaken(const tagCall& call);
    bool isRefusedBy(const tagCall& other);
    tagCallOptions optionsOf(const tagCall& call);
    static bool isTones(const QString& tones);
    QString targetFor(const tagCall& call, const tagForward& forward) const;
    bool comesFrom(const tagCall& call, const QString& number) const;
    void startRinging(const tagCall& call);
    void after(int seconds, int id, void (callRules::*then)(int id));
    bool answerWith(int id, const tagCallOptions& options);
    void endOwnCallTo(const tagCall& caller);
    bool isQuietBut(int id) const;
    void answerByItself(int id);
    void answerAsAsked(int id);
    // Who was put on hold.
    QList<int> holdOthers(int id);
    // The answer to the call came to nothing.
    void takeBackHeldFor(int id);
    bool resume(int id);
    QList<int> talkingWith(int id) const;
    int fail(const QString& number, int account, const char* reason);
    int lineFor(int account) const;

    void lineChanged(int line);
    void putCode(const tagCode& code);
    void dialCodes();

    phoneBackend& m_backend;
    phoneNews& m_news;
    callSettings m_settings;
    QHash<int, QList<int>> m_heldFor; // of a call that was answered and has no sound yet: who is held for it
    QList<tagCode> m_codes;           // to be dialled while nobody calls, one after the other
    int m_nCodeCall = 0;
};
