#pragma once
// The media of calls as "app_hxMedia" has them: asks that process, and hears of it. A question that it does
// not answer in time finds it missing. User-interface thread.
#include "host/services/phone/sipMedia.h"
#include "support/host/message.h"
#include <QHash>
#include <QMap>
#include <QTimer>

struct CALL_WISH;

class HX_HOST_API mediaSessions : public sipMedia, public chMsgProcesser
{
public:
    enum : int { ANSWER_MS = 3000, MAX_TONE_MS = 5000, MIN_TONE_MS = 40 };

    mediaSessions();
    void setNews(sipMediaNews* news) override { m_pNews = news; }
    void prepare() override;
    int judge(const QByteArray& offer, const tagMediaWish& wish) override;
    void offer(int call, const tagMediaWish& wish) override;
    void answer(int call, const QByteArray& offer, const tagMediaWish& wish) override;
    void agree(int call, const QByteArray& answer) override;
    void begin(int call) override;
    void withdraw(int call) override;
    void setMuted(int call, bool muted) override;
    void setStill(int call, bool still) override;
    bool sendTone(int call, QChar tone, int ms) override;
    bool join(int call, int other) override;
    void split(int call) override;
    void end(int call) override;

    int TryThreadMessage(msgObject& msg) override;

private:
    struct tagState
    {
        unsigned int nAsked = 0;  // number of the question that waits; 0: none
        qint64 nSince = 0;        // ms
        unsigned int nAgreed = 0; // number of the last answer of the other side
        tagCallStreams streams;
        bool bTones = false;
    };
    void ask(unsigned int message, int call, const QByteArray& record);
    qint64 askedSince(bool isSent);
    void look();
    void judged(unsigned int question, CALL_FIT fit);
    void described(const msgObject& msg);
    void changed(const msgObject& msg);
    void unfit(const msgObject& msg);
    void isUp();

    sipMediaNews* m_pNews = nullptr;
    QHash<int, tagState> m_calls;
    QMap<unsigned int, qint64> m_judging; // questions that wait, and since when (ms)
    unsigned int m_nAsked = 0;
    bool m_bPrepared = false;
    QTimer m_look;
};
