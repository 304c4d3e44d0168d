#pragma once
// The files of a schedule as a display was sent it.
#include <QByteArray>
#include <QPair>
#include <QVector>
#include <memory>

struct ScheduledFile
{
    QByteArray type, name, sum;
    // Of a layout: when it shows, from and to, in seconds since 1970. Without any it is always wanted.
    QVector<QPair<qint64, qint64>> times;

    // A phone fetches a layout when its time has come, and media at once.
    bool IsDue(qint64 now) const
    {
        for (const auto& [from, to] : times) {
            if (from <= now && now <= to)
                return true;
        }
        return times.isEmpty();
    }
};

struct ScheduledFiles
{
    QByteArray id; // of equal ones the same
    QVector<ScheduledFile> files;
};

using ScheduledFilesPtr = std::shared_ptr<const ScheduledFiles>;
