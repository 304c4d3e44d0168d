#include "bench/runningPhone.h"
#include "tests/kit/plain/deviceFolder.h"
#include "tests/kit/plain/processes.h"
#include <QThread>

double residentMegabytes(qint64 pid)
{
    return double(kit::statusKiB(pid, "VmRSS:")) / 1024;
}

RunningPhone::RunningPhone()
{
    kit::fillDeviceFolder(root(), kit::Firmware::Link);
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
    kit::endWithUs(m_process);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(kit::program("hxPhone"),
                    QStringList{"--sysroot", root(), "--control", root() + "/control"} + options);
    if (!m_process.waitForStarted() || !waitForHome())
        return false;
    ctl({"wait", "idle", "5000"});
    return true;
}

bool RunningPhone::ctl(const QStringList& command) const
{
    QProcess process;
    process.start(kit::program("hxctl"), QStringList{"-s", root() + "/control"} + command);
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
