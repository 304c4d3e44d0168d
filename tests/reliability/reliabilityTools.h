#pragma once
// What the tests of this folder share.
#include <QByteArray>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>
#include <functional>

// Real time, for other processes. False when ms went by.
inline bool waits(const std::function<bool()>& holds, int ms)
{
    QElapsedTimer time;
    time.start();
    while (!holds()) {
        if (time.elapsed() > ms)
            return false;
        QThread::msleep(20);
    }
    return true;
}

// A line of /proc/PID/status in KiB ("VmHWM", "VmRSS"); 0 when there is no such process.
inline qint64 statusKiB(qint64 pid, const char* name)
{
    QFile file(QString("/proc/%1/status").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith(name))
            return line.simplified().split(' ').value(1).toLongLong();
    }
    return 0;
}
