#pragma once
// The last schedule of each display that could be made, for the time in which the next one cannot. Bounded,
// whoever registers: displays that have the same schedule share it. Any thread.
#include "tools/signServer/ScheduledFiles.h"
#include <QHash>
#include <QMutex>
#include <memory>

struct MadeSchedule
{
    QByteArray reply;
    ScheduledFilesPtr files;
};

using MadeSchedulePtr = std::shared_ptr<const MadeSchedule>;

class GoodSchedules
{
public:
    enum : int { LIMIT = 5000 }; // displays

    void Keep(const QByteArray& display, const MadeSchedule& schedule);
    // Null when there is none any more.
    MadeSchedulePtr LastOf(const QByteArray& display);
    // Displays of which one is kept.
    qsizetype Count() const;

private:
    struct Entry
    {
        MadeSchedulePtr schedule;
        quint64 used = 0;
    };

    MadeSchedulePtr Shared(const MadeSchedule& schedule);
    void MakeRoom();

    mutable QMutex m_lock;
    QHash<QByteArray, Entry> m_entries;                          // by display
    QHash<QByteArray, std::weak_ptr<const MadeSchedule>> m_made; // by reply
    quint64 m_nUses = 0;
};
