#include "bench/heldThings.h"
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <cstdio>

namespace {

int entriesOf(const QString& folder)
{
    const auto kinds = QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot;
    return int(QDir(folder).entryList(kinds).size());
}

} // namespace

double privateDirtyKiB(qint64 pid)
{
    QFile file(QString("/proc/%1/smaps_rollup").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no smaps_rollup");
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith("Private_Dirty:"))
            return line.simplified().split(' ').value(1).toDouble();
    }
    return 0;
}

int handlesOf(qint64 pid)
{
    return entriesOf(QString("/proc/%1/fd").arg(pid));
}

int threadsOf(qint64 pid)
{
    return entriesOf(QString("/proc/%1/task").arg(pid));
}

int filesBelow(const QString& root, const char* without)
{
    int count = 0;
    const auto kinds = QDir::Files | QDir::Hidden | QDir::System;
    for (QDirIterator files(root, kinds, QDirIterator::Subdirectories); files.hasNext();)
        count += files.next() != root + without;
    return count;
}

tagHeld heldBy(qint64 pid, double usedKiB)
{
    return {usedKiB, privateDirtyKiB(pid), handlesOf(pid), threadsOf(pid)};
}

void printHeld(int calls, const char* process, const tagHeld& held)
{
    printf("after %5d calls: %-8s %6.0f KiB in use, %6.0f KiB of private memory, %d handles, %d threads\n",
           calls, process, held.usedKiB, held.dirtyKiB, held.handles, held.threads);
    fflush(stdout);
}

double grownBy(double now, double before)
{
    return 100 * (now / before - 1);
}
