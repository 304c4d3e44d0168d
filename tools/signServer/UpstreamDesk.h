#pragma once
// Answers of one service, kept for their time. Who asks for the same while it is on its way gets the same
// answer. Any thread.
#include "tools/signServer/GatewayPlan.h"
#include "tools/signServer/RequestLog.h"
#include "tools/signServer/UpstreamClient.h"
#include <QDateTime>
#include <QElapsedTimer>

// fields: what the service told; null: it does not know. Nothing at all: it could not be asked, or gave no
// answer.
using UpstreamValues = std::shared_ptr<const NamedTexts>;
struct UpstreamResult
{
    bool isAnswer = false;
    UpstreamValues values;
};

class UpstreamDesk
{
public:
    using Done = std::function<void(const UpstreamResult&)>;

    // All outlive it. days: for how many days the fields that begin with "day." are read. proof: the field
    // without which the service does not know.
    UpstreamDesk(const ServicePlan& plan, const char* proof, int days, UpstreamClient& client,
                 RequestLog& log);
    // done: once, on any thread.
    void Ask(const QByteArray& key, const NamedValues& values, const Done& done);

private:
    struct Entry
    {
        UpstreamResult result;
        qint64 until = -1;      // what there is counts until then
        qint64 lastResort = -1; // and until then if no better is to be had
        QList<Done> waiting;
        bool isAsked = false;
    };

    bool MayAsk(qint64 now);
    void Take(const QByteArray& key, const UpstreamReply& reply);
    UpstreamResult Read(const UpstreamReply& reply, QByteArray& fault) const;
    qint64 PauseOf(const UpstreamReply& reply) const;
    void MakeRoom(qint64 now);

    const ServicePlan& m_plan;
    const QByteArray m_proof;
    const int m_nDays;
    UpstreamClient& m_client;
    RequestLog& m_log;
    QElapsedTimer m_time;
    QMutex m_lock; // of all that follows
    QHash<QByteArray, Entry> m_entries;
    qint64 m_nPausedUntil = -1;
    qint64 m_nMinuteEnds = -1;
    int m_nInMinute = 0;
};
