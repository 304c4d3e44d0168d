#pragma once
// The calls of the simulated phone. One that goes out rings for a moment, then talks until it is hung up; one
// that comes in rings until it is answered, or its caller gives up. The number "busy" is always busy, and
// gives up soon. User-interface thread.
#include "host/services/phone/endedCalls.h"
#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <functional>

// A call from outside.
struct tagCaller
{
    QString strNumber; // empty, or one that nobody is to see, for an anonymous caller
    int nLine = 0;     // 0 to 3, or PHONE_LINE_PSTN
    QString strName;
    QString strPicture; // as in tagCall
    bool bAnonymous = false;
    bool bVideo = false;     // wants to be seen
    QStringList forwardedBy; // as in tagCall
};

class simulatedCalls : public QObject
{
public:
    // Until it rings there; until the other side answers; until a caller gives up.
    enum : int { FIRST_RING_MS = 500, RING_MS = 1500, CALLER_MS = 60000 };

    using Told = std::function<void(const tagCall&)>;
    // changed: told each call that begins, changes or ends; arrived: one from outside, before that.
    simulatedCalls(Told changed, Told arrived) : m_changed(std::move(changed)), m_arrived(std::move(arrived))
    {
    }

    // The call's id.
    int begin(const QString& number, int account, const tagCallOptions& options);
    // A call that rings elsewhere talks here.
    int pickUp(const QString& number, int account);
    void arrive(const tagCaller& caller);
    // A call that cannot be begun is told of all the same, with the reason.
    void fail(const QString& number, int account, const char* reason);
    // As those of phoneBackend.
    bool ring(int id);
    bool answer(int id, const tagCallOptions& options);
    bool refuse(int id, CALL_END why);
    bool deflect(int id, const QString& number);
    bool hangUp(int id);
    bool setHeld(int id, bool held);
    bool setMuted(int id, bool muted);
    bool transfer(int id, const QString& number);
    // Not with a call on the analogue line, which can do neither.
    bool connect(int id, int other);
    bool join(int id, int other);
    bool split(int id);
    bool sendTone(int id, QChar tone, bool secret);

    bool holdFromOutside(int id, bool held);
    bool hangUpFromOutside(int id);
    // The other side does not let itself be put through any more, or does again.
    bool refuseFromOutside(int id, bool refuses);
    bool setStreams(int id, const tagCallStreams& streams);
    // As the call came in.
    tagCaller callerOf(int id) const;
    QList<tagCall> calls() const;
    QList<tagCall> endedCalls() const { return m_ended.all(); }
    bool isTalking() const;

private:
    struct tagLiveCall
    {
        tagCall call;
        bool bWantsVideo = false; // the other side
        QElapsedTimer talking;    // valid from the answer on
        bool bRefuses = false;    // the other side, to be put through
    };

    void later(int ms, int id, void (simulatedCalls::*then)(int id));
    static tagCall shown(const tagLiveCall& live);
    int indexOf(int id) const;
    int indexOfRinging(int id) const;
    tagCall* talkingCall(int id);
    bool tellRefused(int id);
    bool tell(int id);
    void ringsThere(int id);
    void answered(int id);
    void givenUp(int id);
    void talk(int index);
    bool end(int index, CALL_END why, const char* reason = "");

    Told m_changed;
    Told m_arrived;
    QList<tagLiveCall> m_calls;
    ::endedCalls m_ended;
};
