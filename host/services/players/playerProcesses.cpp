#include "host/services/players/playerProcesses.h"
#include "host/services/messages/messageBus.h"
#include "host/services/players/filmSound.h"
#include "host/services/players/playerSound.h"
#include "host/services/players/videoFrames.h"
#include "support/file/deviceRoot.h"
#include "support/host/player.h"
#include "support/host/trace.h"
#include <QCoreApplication>
#include <algorithm>
#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

constexpr int kFirstDelayMs = 200;
constexpr int kLastDelayMs = 30000;
constexpr int kSteadyMs = 10000; // one that ran so long starts again without delay
constexpr int kEndMs = 500;      // to end by itself
constexpr int kMaxLine = 1000;   // bytes of a line in the log

// A test of many deaths does not wait ten seconds between them.
qint64 steadyMs()
{
    bool isSet = false;
    const int ms = qEnvironmentVariableIntValue("HX_PLAYER_STEADY_MS", &isSet);
    return isSet ? ms : kSteadyMs;
}

// The picture of a film that nobody sends any more would stand still for ever.
void dropPicture()
{
    const PLAYER_STREAMS nothing = {};
    videoFrames::instance().forget();
    msgPostMsgToThreadEx(msgGetThreadByName("app_hxMedia"), MEDIA_MSG_STREAMS, 0, 0, sizeof nothing,
                         &nothing);
}

} // namespace

playerProcess::playerProcess(const QString& program, QObject* parent)
    : QObject(parent), m_program(program), m_nDelayMs(kFirstDelayMs)
{
    m_again.setSingleShot(true);
    connect(&m_again, &QTimer::timeout, this, [this] { start(); });
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    const pid_t phone = getpid();
    m_process.setChildProcessModifier([phone] {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
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

playerProcess::~playerProcess()
{
    stop();
}

void playerProcess::start()
{
    m_bStopped = false;
    m_running.start();
    QStringList arguments;
    const QString root = QString::fromUtf8(deviceGetRoot().GetText());
    if (!root.isEmpty())
        arguments = QStringList{"--sysroot", root};
    m_process.start(QCoreApplication::applicationDirPath() + '/' + m_program, arguments,
                    QIODevice::ReadOnly | QIODevice::Unbuffered);
}

void playerProcess::stop()
{
    m_bStopped = true;
    m_again.stop();
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (m_process.waitForFinished(kEndMs))
        return;
    m_process.kill();
    m_process.waitForFinished(kEndMs);
    messageServiceRemoveDead(("app_" + m_program.toUtf8()).constData());
}

void playerProcess::onEnd(const QString& how)
{
    if (m_bStopped)
        return;
    if (m_running.elapsed() >= steadyMs())
        m_nDelayMs = kFirstDelayMs;
    nuxTrace(TRACE_NOTE, "%s %s, it is started again in %d ms", qPrintable(m_program), qPrintable(how),
             m_nDelayMs);
    dropPicture();
    m_again.start(m_nDelayMs);
    m_nDelayMs = std::min(m_nDelayMs * 2, kLastDelayMs);
}

void playerProcess::logOutput()
{
    m_line += m_process.readAllStandardOutput();
    for (;;) {
        qsizetype end = m_line.indexOf('\n');
        if (end < 0 && m_line.size() < kMaxLine)
            return;
        end = end < 0 ? m_line.size() : end;
        nuxTrace(TRACE_NOTE, "%s: %s", qPrintable(m_program),
                 m_line.left(std::min<qsizetype>(end, kMaxLine)).constData());
        m_line.remove(0, end + 1);
    }
}

void playerProcessesStart()
{
    filmSound::start();
    soundOutput::setInstance(std::make_unique<playerSound>());
    for (const char* program : {"hxMedia", "hxMovie"}) {
        auto* player = new playerProcess(program, QCoreApplication::instance());
        QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, player,
                         [player] { player->stop(); });
        player->start();
    }
}
