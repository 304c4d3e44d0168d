// The running phone as a whole: memory after boot, and what its idle home screen costs.
#include "bench/phoneBench.h"
#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <cstdio>
#include <unistd.h>

namespace {

constexpr int kIdleSeconds = 60;

QString bin(const char* name)
{
    return QString(HX_BUILD_DIR "/bin/") + name;
}

bool hxctl(const QString& socket, const QStringList& command)
{
    QProcess process;
    process.start(bin("hxctl"), QStringList{"-s", socket} + command);
    return process.waitForFinished(60000) && process.exitCode() == 0;
}

double residentMegabytes(qint64 pid)
{
    QFile file(QString("/proc/%1/status").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).simplified().split(' ').first().toDouble() / 1024;
    }
    return 0;
}

// Processor time of the process so far, in seconds.
double cpuSeconds(qint64 pid)
{
    QFile file(QString("/proc/%1/stat").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray all = file.readAll();
    const QList<QByteArray> fields = all.mid(all.lastIndexOf(')') + 2).split(' ');
    return (fields.value(11).toDouble() + fields.value(12).toDouble()) / double(sysconf(_SC_CLK_TCK));
}

bool waitForHome(const QString& socket)
{
    for (int attempt = 0; attempt < 100; ++attempt) {
        if (hxctl(socket, {"wait", "page", "frmDesktop", "10000"}))
            return true;
        QThread::msleep(100);
    }
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QTemporaryDir root;
    makeBenchRoot(root.path());
    const QString socket = root.path() + "/control";
    QProcess phone;
    phone.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    phone.start(bin("hxPhone"), {"--sysroot", root.path(), "--control", socket});
    if (!phone.waitForStarted() || !waitForHome(socket)) {
        fprintf(stderr, "the phone did not start\n");
        return 1;
    }
    hxctl(socket, {"wait", "idle", "5000"});
    RatioTable table;
    table.add("resident memory after boot", residentMegabytes(phone.processId()), 70, "MB");
    const double before = cpuSeconds(phone.processId());
    QThread::sleep(kIdleSeconds);
    const double used = cpuSeconds(phone.processId()) - before;
    table.add("idle home screen, share of one core over a minute", 100 * used / kIdleSeconds, 0.5, "%");
    hxctl(socket, {"quit"});
    phone.waitForFinished(5000);
    return table.print() ? 0 : 1;
}
