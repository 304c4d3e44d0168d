#pragma once
// Receivers of messages that tests look into.
#include "support/host/message.h"
#include <QByteArray>
#include <QList>
#include <functional>

struct tagReceived
{
    unsigned int message = 0;
    unsigned int wParam = 0;
    unsigned int lParam = 0;
    QByteArray extra;
};

class Recorder : public chMsgProcesser
{
public:
    explicit Recorder(bool takes = true) : m_bTakes(takes) {}
    int TryThreadMessage(msgObject& msg) override
    {
        received.append({msg.message, msg.wParam, msg.lParam,
                         QByteArray(static_cast<const char*>(msg.GetExtraData()), msg.GetExtraSize())});
        // The handler may delete this receiver.
        const bool takes = m_bTakes;
        const std::function<void(msgObject&)> handler = onMessage;
        if (handler)
            handler(msg);
        return takes;
    }
    QList<unsigned int> wParams() const
    {
        QList<unsigned int> all;
        for (const tagReceived& one : received)
            all.append(one.wParam);
        return all;
    }

    QList<tagReceived> received;
    std::function<void(msgObject&)> onMessage;

private:
    bool m_bTakes;
};
