#pragma once
// What another process of this user has taken so far. Any thread.
#include <QtGlobal>
#include <sys/types.h>

struct tagProcessUse
{
    bool bThere = false;
    qint64 nProcessorMs = 0; // of all its threads
    qint64 nMemory = 0;      // bytes of its own: neither programs nor files
};
tagProcessUse processUse(pid_t process);
// What it may take of memory that it can write, from now on; more is refused by the system, which ends it.
void processLimitMemory(pid_t process, qint64 bytes);
