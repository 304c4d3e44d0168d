#pragma once
// The files of a schedule as a display was sent it.
#include <QByteArray>
#include <QHash>
#include <QPair>
#include <QVector>
#include <memory>
#include <mutex>

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

    // Of the file, which is there once; -1 when it is not. From the first call on the files stay. Any thread.
    qsizetype PlaceOf(const QByteArray& type, const QByteArray& name) const
    {
        std::call_once(m_placed, [this] {
            for (qsizetype i = 0; i < files.size(); ++i)
                m_places[{files[i].type, files[i].name}] = i;
        });
        return m_places.value({type, name}, -1);
    }

private:
    mutable std::once_flag m_placed;
    mutable QHash<QPair<QByteArray, QByteArray>, qsizetype> m_places;
};

using ScheduledFilesPtr = std::shared_ptr<const ScheduledFiles>;
