#pragma once
// What the server has seen of each display: its looks at the schedule, the files that went out to it whole,
// what it was refused. Bounded, whoever asks and how often. Any thread.
#include "tools/signServer/ScheduledFiles.h"
#include <QHash>
#include <QMutex>

// A request of a display, and what it got.
struct DisplayEvent
{
    enum Kind { Registration, Look, File };

    Kind kind = Look;
    QByteArray key, name, address; // as the display tells them
    QByteArray refused;            // why it did not get what it asked for
    ScheduledFilesPtr files;       // of a look
    QByteArray fileType, fileName, sum;
    bool whole = false; // the file went out to its last byte, as it is
};

struct Refusal
{
    qint64 at = 0; // the last time, in seconds since 1970
    QByteArray what, why;
    int times = 1;
};

// How far a display got with a file.
enum FileState : char { FILE_MISSING = '-', FILE_WHOLE = 'w', FILE_CUT = 'c', FILE_REFUSED = 'r' };

struct DisplayRecord
{
    QByteArray key, name, address;
    // In seconds since 1970; 0 is never. Those that were refused do not count as looks and registrations.
    qint64 lastLook = 0, lastRegistration = 0, heard = 0;
    bool refused = false;      // its last look or registration was
    QVector<Refusal> refusals; // the newest first
    ScheduledFilesPtr files;   // of its present schedule; null before the first look
    QByteArray states;         // a FileState for each of them
};

class DisplayBook
{
public:
    using Records = QHash<QByteArray, DisplayRecord>; // by key

    enum : int {
        DISPLAY_LIMIT = 5000, // displays that are kept
        STRANGER_LIMIT = 100, // likewise, of those that never were admitted
        REFUSAL_LIMIT = 4,    // of a display
        TEXT_LIMIT = 140      // bytes of a key, a name or a reason
    };

    void Note(const DisplayEvent& event, qint64 now);

    // Those that were admitted once, and those that never were.
    Records Known() const;
    Records Strangers() const;
    // Counts up with everything that is noted.
    quint64 Changes() const;
    // Of an earlier run of the server.
    void Restore(const Records& known, const Records& strangers, qint64 now);

private:
    DisplayRecord& RecordOf(const DisplayEvent& event);
    void MakeRoom();
    void TakeBack(DisplayRecord record, Records& records, qint64 now);
    static void Apply(DisplayRecord& record, const DisplayEvent& event, qint64 now);
    static void NoteRefusal(DisplayRecord& record, const DisplayEvent& event, qint64 now);
    void NoteFiles(DisplayRecord& record, const ScheduledFilesPtr& files);
    static void NoteFile(DisplayRecord& record, const DisplayEvent& event);

    mutable QMutex m_lock;
    Records m_known, m_strangers;
    QHash<QByteArray, std::weak_ptr<const ScheduledFiles>> m_schedules; // by id, so that displays share them
    quint64 m_nChanges = 0;
};
