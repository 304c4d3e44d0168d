#include "bench/runningPhone.h"
#include "bench/phoneBench.h"
#include "places.h"
#include <QFile>
#include <QThread>
#include <unistd.h>

namespace {

QByteArray readProc(qint64 pid, const char* name)
{
    QFile file(QString("/proc/%1/%2").arg(pid).arg(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A line "Name:  1234 kB" of such a file, in MB.
double megabytesIn(const QByteArray& text, const char* name)
{
    for (const QByteArray& line : text.split('\n')) {
        if (line.startsWith(name))
            return line.mid(int(qstrlen(name))).simplified().split(' ').first().toDouble() / 1024;
    }
    return 0;
}

} // namespace

QString benchProgram(const char* name)
{
    return QString(HX_BUILD_DIR "/bin/") + name;
}

double cpuSecondsOf(qint64 pid)
{
    const QByteArray all = readProc(pid, "stat");
    const QList<QByteArray> fields = all.mid(all.lastIndexOf(')') + 2).split(' ');
    return (fields.value(11).toDouble() + fields.value(12).toDouble()) / double(sysconf(_SC_CLK_TCK));
}

double residentMegabytes(qint64 pid)
{
    return megabytesIn(readProc(pid, "status"), "VmRSS:");
}

RunningPhone::RunningPhone()
{
    makeBenchRoot(root());
}

RunningPhone::~RunningPhone()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    ctl({"quit"});
    if (!m_process.waitForFinished(5000))
        m_process.kill();
    m_process.waitForFinished(5000);
}

bool RunningPhone::start(const QStringList& options)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(benchProgram("hxPhone"),
                    QStringList{"--sysroot", root(), "--control", root() + "/control"} + options);
    if (!m_process.waitForStarted() || !waitForHome())
        return false;
    ctl({"wait", "idle", "5000"});
    return true;
}

bool RunningPhone::ctl(const QStringList& command) const
{
    QProcess process;
    process.start(benchProgram("hxctl"), QStringList{"-s", root() + "/control"} + command);
    return process.waitForFinished(60000) && process.exitCode() == 0;
}

bool RunningPhone::waitForHome() const
{
    for (int attempt = 0; attempt < 100; ++attempt) {
        if (ctl({"wait", "page", "frmDesktop", "10000"}))
            return true;
        QThread::msleep(100);
    }
    return false;
}
