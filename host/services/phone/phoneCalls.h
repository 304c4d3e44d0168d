#pragma once
// The calls of a backend, as far as every backend keeps them alike. User-interface thread.
#include "host/services/phone/callOrders.h"
#include <QElapsedTimer>
#include <QList>
#include <functional>

struct tagCallNews
{
    std::function<void(const tagCall&)> changed; // each call that begins, changes or ends
    std::function<void(const tagCall&)> arrived; // one from outside, before that
};

// One that has not ended.
struct tagLiveCall
{
    tagCall call;
    QElapsedTimer talking; // valid from the answer on
    QElapsedTimer offered; // valid while the other side's answer to an offer is waited for

    tagCall shown() const;
};

class phoneCalls : public callOrders
{
public:
    enum : int { ENDED_MAX = 32 };

    explicit phoneCalls(tagCallNews news);
    // A call that cannot be begun is told of all the same, with the reason.
    void fail(const QString& number, int account, const char* reason);
    virtual QList<tagCall> calls() const = 0;
    // As of phoneBackend.
    const QList<tagCall>& endedCalls() const { return m_ended; }
    bool isTalking() const;

protected:
    // Whoever hears of it may end the call: it is the last that is done with it.
    void tell(const tagCall& call) const { m_news.changed(call); }
    void tellArrival(const tagCall& call) const { m_news.arrived(call); }
    // Of one that is not among the calls any more.
    void tellEnd(tagCall call, CALL_END why, const char* reason);
    template <typename Live>
    static QList<tagCall> allShown(const QList<Live>& lives)
    {
        QList<tagCall> all;
        for (const tagLiveCall& live : lives)
            all.append(live.shown());
        return all;
    }

private:
    tagCallNews m_news;
    QList<tagCall> m_ended;
};
