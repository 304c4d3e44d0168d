#include "host/services/system/hostLog.h"
#include <QMutex>
#include <deque>

namespace {

constexpr size_t kKept = 2000;

struct Log
{
    QMutex mutex;
    std::deque<tagLogEntry> entries;
    int last = 0;
};

Log& theLog()
{
    static Log log;
    return log;
}

} // namespace

void hostLog(const char* kind, const QString& text)
{
    Log& log = theLog();
    QMutexLocker lock(&log.mutex);
    log.entries.push_back({++log.last, QString::fromLatin1(kind), text});
    if (log.entries.size() > kKept)
        log.entries.pop_front();
}

QList<tagLogEntry> hostLogFrom(int number)
{
    Log& log = theLog();
    QMutexLocker lock(&log.mutex);
    QList<tagLogEntry> found;
    for (const tagLogEntry& entry : log.entries) {
        if (entry.nNumber >= number)
            found.append(entry);
    }
    return found;
}
