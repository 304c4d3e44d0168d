#pragma once
// The last calls that have ended, newest first, for whoever looks into the phone.
#include "host/services/phone/tagCall.h"
#include <QList>

class endedCalls
{
public:
    enum : int { CALLS_MAX = 32 };

    void add(const tagCall& call)
    {
        m_calls.prepend(call);
        if (m_calls.size() > CALLS_MAX)
            m_calls.removeLast();
    }
    const QList<tagCall>& all() const { return m_calls; }

private:
    QList<tagCall> m_calls;
};
