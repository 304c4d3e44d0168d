#include "bench/sippCallers.h"
#include "places.h"
#include "tests/kit/plain/processes.h"
#include "tests/sip/udpPeer.h"
#include <QFile>
#include <cstdio>

namespace {

constexpr int kStartMs = 15000;
const char* const kStuckMs = "30000"; // beyond all that is repeated

} // namespace

SippCallers::~SippCallers()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished();
}

void SippCallers::start(const char* scenario, uint32_t localPort, uint32_t remotePort, int calls,
                        const QStringList& further)
{
    kit::endWithUs(m_process);
    m_process.setWorkingDirectory(m_folder.path());
    m_process.setStandardOutputFile(QProcess::nullDevice());
    QStringList arguments{"127.0.0.1:" + QString::number(remotePort),
                          "-sf",
                          QString(HX_SOURCE_DIR "/bench/") + scenario,
                          "-i",
                          "127.0.0.1",
                          "-p",
                          QString::number(localPort),
                          "-nostdin",
                          "-timer_resol",
                          "1",
                          "-recv_timeout",
                          kStuckMs,
                          "-trace_err",
                          "-error_file",
                          m_folder.filePath("errors")};
    if (calls > 0)
        arguments += {"-m", QString::number(calls)};
    m_process.start("sipp", arguments + further);
    if (!m_process.waitForStarted())
        qFatal("sipp (package sip-tester) is missing");
    const auto isBound = [&] { return !isRunning() || UdpPeer("127.0.0.1", localPort).port() == 0; };
    if (!kit::waits(isBound, kStartMs))
        qFatal("sipp does not come up");
}

QStringList SippCallers::list(const QList<QByteArray>& lines)
{
    QFile file(m_folder.filePath("calls"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        file.write("SEQUENTIAL\n" + lines.join('\n') + '\n') <= 0)
        qFatal("no room for a list of calls");
    return {"-inf", file.fileName()};
}

bool SippCallers::waitForDone(int ms)
{
    const bool hasEnded = m_process.state() == QProcess::NotRunning || m_process.waitForFinished(ms);
    if (hasEnded && m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0)
        return true;
    QFile errors(m_folder.filePath("errors"));
    const QByteArray said = errors.open(QIODevice::ReadOnly) ? errors.readAll() : QByteArray();
    printf("sipp: %s, exit code %d\n%s%s\n", hasEnded ? "ended" : "does not end", m_process.exitCode(),
           said.left(4000).constData(), m_process.readAllStandardError().left(2000).constData());
    return false;
}
