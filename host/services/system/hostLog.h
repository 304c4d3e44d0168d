#pragma once
// What the phone did, in one numbered list: trace lines, broadcasts and host calls. Any thread. The last
// 2,000 entries are kept. The control interface reads it, and so do tests.
#include "support/host/api.h"
#include <QList>
#include <QString>

struct tagLogEntry
{
    int nNumber;     // from 1, without gaps
    QString strKind; // "trace", "broadcast", "dial", "reboot", "flush", "lamp", "saver", "volume", "mute",
                     // "ring", "tone", "command", "box", "clock"
    QString strText;
};

HX_HOST_API void hostLog(const char* kind, const QString& text);
HX_HOST_API QList<tagLogEntry> hostLogFrom(int number);
