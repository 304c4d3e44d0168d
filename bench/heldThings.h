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
