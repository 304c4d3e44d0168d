#pragma once
// What a process holds, as the system sees it.
#include <QString>
#include <QtGlobal>

// Of memory that is the process's own and was written; with what the allocator has over.
double privateDirtyKiB(qint64 pid);
int handlesOf(qint64 pid);
int threadsOf(qint64 pid);
// Files below a folder, without the one that is named by its path below it.
int filesBelow(const QString& root, const char* without);

struct tagHeld
{
    double usedKiB = 0;  // of what it has asked the allocator for
    double dirtyKiB = 0; // of memory that is its own, with what the allocator has over
    int handles = 0;
    int threads = 0;
};

// usedKiB: as somebody else has counted it.
tagHeld heldBy(qint64 pid, double usedKiB);
// A line that says so.
void printHeld(int calls, const char* process, const tagHeld& held);
// In percent.
double grownBy(double now, double before);
