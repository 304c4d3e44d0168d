#pragma once
// The calls of the simulated phone: each rings for a moment, then talks until it is hung up; the number
// "busy" is always busy. User-interface thread.
#include "host/services/phone/tagCall.h"
#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <functional>

class simulatedCalls : public QObject
{
public:
    enum : int { RING_MS = 1500 };

    // changed: told each call that begins, changes or ends.
    explicit simulatedCalls(std::function<void(const tagCall&)> changed) : m_changed(std::move(changed)) {}

    // The call's id.
    int begin(const QString& number, int account);
    // A call that comes from outside.
    int ring(const QString& number, int account, const QString& name);
    // A call that cannot be begun is told of all the same, with the reason.
    void refuse(const QString& number, int account, const char* reason);
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
    int add(const tagCall& call);
    static tagCall shown(const tagLiveCall& live);
    int indexOf(int id) const;
    void answered(int id);
    void end(int index, const char* reason);

    std::function<void(const tagCall&)> m_changed;
    QList<tagLiveCall> m_calls;
    int m_nLastId = 0;
};
