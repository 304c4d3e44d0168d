#pragma once
// Processes that a test or a benchmark starts, and what they cost.
#include <QByteArray>
#include <QProcess>
#include <QString>
#include <functional>
#include <sys/types.h>

namespace kit {

// From its next start on the process ends with this one, however that ends. Started from the main thread.
// user: whom it runs for when the test is the superuser's; 0 the test's own.
void endWithUs(QProcess& process, uid_t user = 0);

// The living process of that program whose parent is the given one; 0 when there is none.
qint64 childOf(qint64 parent, const QByteArray& program);
// The process of the rich-text engine that draws for this one; 0 when there is none.
pid_t textProcess();
// A line of /proc/PID/status in KiB ("VmHWM", "VmRSS"); 0 when there is no such process.
qint64 statusKiB(qint64 pid, const char* name);
// Processor time of the process so far, in seconds; 0 when there is none.
double cpuSeconds(qint64 pid);
// The same of its living threads to the nanosecond, as the scheduler counts it.
qint64 scheduledNs(qint64 pid);
// How long the first thread of a process stood ready so far while others had the processors.
qint64 queuedNs(qint64 pid);

// Real time, for other processes; events are not delivered meanwhile. False when ms went by.
bool waits(const std::function<bool()>& holds, int ms);

} // namespace kit
