#include "tests/kit/plain/processes.h"
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QList>
#include <QThread>
#include <algorithm>
#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

constexpr int kLookEveryMs = 10;
constexpr int kRestAtMostMs = 50;

QByteArray readProc(qint64 pid, const char* name)
{
    QFile file(QString("/proc/%1/%2").arg(pid).arg(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The fields of /proc/PID/stat behind the program's name: state, parent, ...
QList<QByteArray> statFields(const QByteArray& stat)
{
    return stat.mid(stat.lastIndexOf(')') + 2).split(' ');
}

} // namespace

void kit::endWithUs(QProcess& process, uid_t user)
{
    process.setChildProcessModifier([user] {
        if (user != 0 && setresuid(user, user, user) != 0)
            _exit(1);
        prctl(PR_SET_PDEATHSIG, SIGKILL); // a change of the user takes it away
    });
}

qint64 kit::childOf(qint64 parent, const QByteArray& program)
{
    for (const QString& entry : QDir("/proc").entryList(QDir::Dirs)) {
        if (entry.toInt() <= 0)
            continue;
        const QByteArray stat = readProc(entry.toInt(), "stat");
        const QList<QByteArray> fields = statFields(stat);
        if (stat.mid(stat.indexOf('(')).startsWith('(' + program + ')') && fields.value(0) != "Z" &&
            fields.value(1).toLongLong() == parent)
            return entry.toInt();
    }
    return 0;
}

// The youngest of the engine's processes that descend from this one.
pid_t kit::textProcess()
{
    QHash<pid_t, pid_t> parents;
    QList<pid_t> engine;
    for (const QString& entry : QDir("/proc").entryList(QDir::Dirs)) {
        const QByteArray stat = entry.toInt() > 0 ? readProc(entry.toInt(), "stat") : QByteArray();
        const QList<QByteArray> fields = statFields(stat);
        parents[entry.toInt()] = fields.value(1).toInt();
        if (stat.mid(stat.indexOf('(')).startsWith("(QtWebEngine") && fields.value(0) != "Z")
            engine.append(entry.toInt());
    }
    pid_t youngest = 0;
    for (const pid_t process : engine) {
        pid_t ancestor = process;
        while (ancestor > 1 && ancestor != getpid())
            ancestor = parents.value(ancestor);
        if (ancestor == getpid())
            youngest = qMax(youngest, process);
    }
    return youngest;
}

qint64 kit::statusKiB(qint64 pid, const char* name)
{
    for (const QByteArray& line : readProc(pid, "status").split('\n')) {
        if (line.startsWith(name))
            return line.simplified().split(' ').value(1).toLongLong();
    }
    return 0;
}

double kit::cpuSeconds(qint64 pid)
{
    const QList<QByteArray> fields = statFields(readProc(pid, "stat"));
    return (fields.value(11).toDouble() + fields.value(12).toDouble()) / double(sysconf(_SC_CLK_TCK));
}

qint64 kit::scheduledNs(qint64 pid)
{
    qint64 sum = 0;
    const QString tasks = QString("/proc/%1/task").arg(pid);
    for (const QString& task : QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(tasks + '/' + task + "/schedstat");
        if (file.open(QIODevice::ReadOnly))
            sum += file.readAll().split(' ').value(0).toLongLong();
    }
    return sum;
}

qint64 kit::queuedNs(qint64 pid)
{
    QFile file(QString("/proc/%1/task/%1/schedstat").arg(pid));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLongLong() : 0;
}

bool kit::waits(const std::function<bool()>& holds, int ms)
{
    QElapsedTimer time;
    time.start();
    for (;;) {
        const qint64 before = time.elapsed();
        if (holds())
            return true;
        const qint64 now = time.elapsed();
        if (now > ms)
            return false;
        // A look that takes long leaves the processor to those that are waited for.
        QThread::msleep(ulong(std::clamp<qint64>(2 * (now - before), kLookEveryMs, kRestAtMostMs)));
    }
}
