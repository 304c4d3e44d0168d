#include "bench/runningPhone.h"
#include "tests/kit/plain/processes.h"
#include <QElapsedTimer>
#include <QThread>
#include <cstring>
#include <ctime>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr int kStartMs = 10000;

// Where a process says that it is up; -1 when there is no such socket.
int noticeSocket(const QByteArray& path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.size() >= qsizetype(sizeof address.sun_path))
        return -1;
    memcpy(address.sun_path, path.constData(), size_t(path.size()));
    const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    unlink(path.constData());
    if (socket >= 0 && bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return socket;
    close(socket);
    return -1;
}

} // namespace

double residentMegabytes(qint64 pid)
{
    return double(kit::statusKiB(pid, "VmRSS:")) / 1024;
}

double processorMs(qint64 pid)
{
    clockid_t clock = 0;
    timespec time = {};
    if (clock_getcpuclockid(pid_t(pid), &clock) != 0 || clock_gettime(clock, &time) != 0)
        return 0;
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

RunningPhone::RunningPhone(kit::Firmware firmware)
{
    kit::fillDeviceFolder(root(), firmware);
}

RunningPhone::~RunningPhone()
{
    end();
}

void RunningPhone::end()
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

bool RunningPhone::startOnly(tagStart& cost)
{
    const QByteArray path = (root() + "/ready").toUtf8();
    const int notices = noticeSocket(path);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("NOTIFY_SOCKET", path);
    m_process.setProcessEnvironment(environment);
    kit::endWithUs(m_process);
    QElapsedTimer clock;
    clock.start();
    m_process.start(kit::program("hxPhone"),
                    QStringList{"--sysroot", root(), "--control", root() + "/control"});
    pollfd wait = {notices, POLLIN, 0};
    const bool isUp = notices >= 0 && m_process.waitForStarted() && poll(&wait, 1, kStartMs) == 1;
    cost = {double(clock.nsecsElapsed()) / 1e6, processorMs(pid())};
    close(notices);
    return isUp;
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
