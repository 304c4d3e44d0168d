#pragma once
// Is every display in step: how each of them stands, those first that somebody has to look after. Any thread.
#include "tools/signServer/Account.h"
#include "tools/signServer/DisplayBook.h"

// The worst first.
enum class Standing {
    Late,       // it did not look at the schedule for some intervals, or never did
    Refused,    // what it asked for last was refused
    Incomplete, // it has not all files of its schedule
    InStep
};

struct StatusRow
{
    DisplayRecord record;
    Standing standing = Standing::InStep;
    bool admitted = true; // or nobody knows it
    int wanted = 0;       // files of its schedule whose time it is
    int whole = 0;        // of these, those that it has
};

struct StatusInput
{
    DisplayBook::Records known, strangers;
    QList<AdmittedDisplay> expected;
    QStringList warnings; // of the content
    bool contentKnown = false;
    int intervalS = 60; // between two looks of a display
    qint64 now = 0;     // seconds since 1970
};

struct StatusReport
{
    explicit StatusReport(const StatusInput& input);

    int Count(Standing standing) const;
    // A display is late when its last look is longer ago than this.
    static int LateAfterS(int intervalS) { return 3 * intervalS; }

    QVector<StatusRow> rows; // in the order in which they are shown
    QStringList warnings;
    bool contentKnown; // all of it was looked at
    int intervalS;
    qint64 now;
};

// The state of one of a record's files; for one whose time has not come, or is over, also when it was not
// fetched.
enum class FileStanding { Whole, Cut, Refused, Missing, NotDue };
FileStanding StandingOf(const DisplayRecord& record, qsizetype file, qint64 now);
