#pragma once
// The calls of the simulated phone. One that goes out rings for a moment, then talks until it is hung up; one
// that comes in rings until it is answered, or its caller gives up. The number "busy" is always busy, and
// gives up soon. User-interface thread.
#include "host/services/phone/tagCall.h"
#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <functional>

class simulatedCalls : public QObject
{
public:
    // Until the other side answers; until a caller gives up.
    enum : int { RING_MS = 1500, CALLER_MS = 60000 };

    // changed: told each call that begins, changes or ends.
    explicit simulatedCalls(std::function<void(const tagCall&)> changed) : m_changed(std::move(changed)) {}

    // The call's id.
    int begin(const QString& number, int account);
    // A call that comes from outside.
    int ring(const QString& number, int account, const QString& name);
    // A call that cannot be begun is told of all the same, with the reason.
    void refuse(const QString& number, int account, const char* reason);
    // A call from outside that was refused for the user: told as one that has ended.
    void turnAway(const QString& number, int account, const QString& name);
    // False unless the call comes in and rings.
    bool answer(int id);
    bool hangUp(int id);
    QList<tagCall> calls() const;
    bool isTalking() const;

private:
    struct tagLiveCall
    {
        tagCall call;
        QElapsedTimer talking; // valid from the answer on
    };

    tagCall newCall(const QString& number, int account);
    int add(const tagCall& call, int ms, void (simulatedCalls::*then)(int id));
    static tagCall shown(const tagLiveCall& live);
    int indexOf(int id) const;
    void answered(int id);
    void givenUp(int id);
    void talk(int index);
    void end(int index, const char* reason);

    std::function<void(const tagCall&)> m_changed;
    QList<tagLiveCall> m_calls;
    int m_nLastId = 0;
};
