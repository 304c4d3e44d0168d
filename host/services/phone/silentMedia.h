#pragma once
// The media of a phone that has no media process: calls are made and taken, and nothing is heard in them. An
// offered sound is agreed on as one that nobody sends. User-interface thread.
#include "host/services/phone/sipMedia.h"
#include <QHash>
#include <QObject>

class silentMedia : public QObject, public sipMedia
{
public:
    enum : int { STREAMS_MAX = 16 }; // of one offer

    void setNews(sipMediaNews* news) override { m_pNews = news; }
    int judge(const QByteArray& offer, const tagMediaWish& wish) override;
    void offer(int call, const tagMediaWish& wish) override;
    void answer(int call, const QByteArray& offer, const tagMediaWish& wish) override;
    void agree(int, const QByteArray&) override {}
    void withdraw(int) override {}
    void setMuted(int, bool) override {}
    void setStill(int, bool) override {}
    bool sendTone(int, QChar, int) override { return false; }
    bool join(int, int) override { return false; }
    void split(int) override {}
    void end(int call) override { m_versions.remove(call); }

private:
    QByteArray head(int call);
    void tellLater(int call, const QByteArray& sdp);

    sipMediaNews* m_pNews = nullptr;
    QHash<int, int> m_versions; // of each call's descriptions
    int m_nJudged = 0;
};
