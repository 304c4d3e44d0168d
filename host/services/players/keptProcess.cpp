#include "host/services/players/keptProcess.h"
#include "support/host/trace.h"
#include <QCoreApplication>
#include <algorithm>
#include <sys/prctl.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr int kFirstDelayMs = 200;
constexpr int kSteadyMs = 10000; // one that ran so long starts again without delay
constexpr int kEndMs = 500;      // to end when asked to
constexpr int kMaxLine = 1000;   // bytes of a line in the log

// A test of many deaths does not wait ten seconds between them.
qint64 steadyMs()
{
    bool isSet = false;
    const int ms = qEnvironmentVariableIntValue("HX_PLAYER_STEADY_MS", &isSet);
    return isSet ? ms : kSteadyMs;
}

} // namespace

keptProcess::keptProcess(tagKeptProgram program, QObject* parent)
    : QObject(parent), m_program(std::move(program)), m_nDelayMs(kFirstDelayMs)
{
    m_again.setSingleShot(true);
    connect(&m_again, &QTimer::timeout, this, [this] { start(); });
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.setWorkingDirectory(m_program.strFolder);
    const pid_t phone = getpid();
    const int signal = m_program.nDeathSignal;
    m_process.setChildProcessModifier([phone, signal] {
        prctl(PR_SET_PDEATHSIG, signal);
        if (getppid() != phone) // it has gone already
            _exit(1);
    });
    connect(&m_process, &QProcess::readyReadStandardOutput, this, [this] { logOutput(); });
    connect(&m_process, &QProcess::finished, this, [this](int code, QProcess::ExitStatus status) {
        onEnd(status == QProcess::CrashExit ? QString("was killed or crashed")
                                            : QString("ended with %1").arg(code));
    });
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            onEnd("cannot be started");
    });
}

keptProcess::~keptProcess()
{
    stop();
}

void keptProcess::start()
{
    m_bStopped = false;
    m_running.start();
    m_process.start(QCoreApplication::applicationDirPath() + '/' + m_program.strName, m_program.arguments,
                    QIODevice::ReadOnly | QIODevice::Unbuffered);
}

void keptProcess::stop(int graceMs)
{
    m_bStopped = true;
    m_again.stop();
    if (m_process.state() == QProcess::NotRunning || (graceMs > 0 && m_process.waitForFinished(graceMs)))
        return;
    m_process.terminate();
    if (m_process.waitForFinished(kEndMs))
        return;
    m_process.kill();
    m_process.waitForFinished(kEndMs);
    if (m_program.killed)
        m_program.killed();
}

void keptProcess::onEnd(const QString& how)
{
    if (m_bStopped)
        return;
    if (m_running.elapsed() >= steadyMs())
        m_nDelayMs = kFirstDelayMs;
    nuxTrace(TRACE_NOTE, "%s %s, it is started again in %d ms", qPrintable(m_program.strName),
             qPrintable(how), m_nDelayMs);
    m_again.start(m_nDelayMs);
    m_nDelayMs = std::min(m_nDelayMs * 2, m_program.nLastDelayMs);
    if (m_program.died)
        m_program.died();
}

void keptProcess::logOutput()
{
    m_line += m_process.readAllStandardOutput();
    for (;;) {
        qsizetype end = m_line.indexOf('\n');
        if (end < 0 && m_line.size() < kMaxLine)
            return;
        end = end < 0 ? m_line.size() : end;
        nuxTrace(TRACE_NOTE, "%s: %s", qPrintable(m_program.strName),
                 m_line.left(std::min<qsizetype>(end, kMaxLine)).constData());
        m_line.remove(0, end + 1);
    }
}
