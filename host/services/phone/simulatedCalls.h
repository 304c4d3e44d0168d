#pragma once
// The calls of the simulated phone. One that goes out rings for a moment, then talks until it is hung up; one
// that comes in rings until it is answered, or its caller gives up. The number "busy" is always busy, and
// gives up soon. User-interface thread.
#include "host/services/phone/phoneCalls.h"
#include <QObject>
#include <utility>

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

class simulatedCalls : public QObject, public phoneCalls
{
public:
    // Until it rings there; until the other side answers; until a caller gives up.
    enum : int { FIRST_RING_MS = 500, RING_MS = 1500, CALLER_MS = 60000 };

    explicit simulatedCalls(tagCallNews news) : phoneCalls(std::move(news)) {}

    // The call's id.
    int begin(const QString& number, int account, const tagCallOptions& options);
    // A call that rings elsewhere talks here.
    int pickUp(const QString& number, int account);
    void arrive(const tagCaller& caller);
    bool ring(int id) override;
    bool answer(int id, const tagCallOptions& options) override;
    bool refuse(int id, CALL_END why) override;
    bool deflect(int id, const QString& number) override;
    bool hangUp(int id) override;
    bool setHeld(int id, bool held) override;
    bool setMuted(int id, bool muted) override;
    bool transfer(int id, const QString& number) override;
    // Not with a call on the analogue line, which can do neither.
    bool connect(int id, int other) override;
    bool join(int id, int other) override;
    bool split(int id) override;
    bool sendTone(int id, QChar tone, bool secret) override;

    bool holdFromOutside(int id, bool held);
    bool hangUpFromOutside(int id);
    // The other side does not let itself be put through any more, or does again.
    bool refuseFromOutside(int id, bool refuses);
    bool setStreams(int id, const tagCallStreams& streams);
    // As the call came in.
    tagCaller callerOf(int id) const;
    QList<tagCall> calls() const override { return allShown(m_calls); }

private:
    struct tagSimulated : public tagLiveCall
    {
        bool bWantsVideo = false; // the other side
        bool bRefuses = false;    // the other side, to be put through
    };

    void add(const tagCall& call, bool wantsVideo);
    void later(int ms, int id, void (simulatedCalls::*then)(int id));
    int indexOf(int id) const;
    int indexOfRinging(int id) const;
    tagCall* talkingCall(int id);
    bool tellRefused(int id);
    bool tellOf(int id);
    void ringsThere(int id);
    void answered(int id);
    void givenUp(int id);
    void talk(int index);
    bool end(int index, CALL_END why, const char* reason = "");

    QList<tagSimulated> m_calls;
};
