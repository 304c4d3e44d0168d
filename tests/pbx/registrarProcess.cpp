#include "tests/pbx/registrarProcess.h"
#include "tests/kit/plain/deviceFolder.h"
#include "tests/kit/plain/processes.h"
#include <QFile>
#include <csignal>

namespace {

constexpr int kWaitMs = 15000;

}

RegistrarProcess::RegistrarProcess()
{
    m_process.setProcessChannelMode(QProcess::MergedChannels);
}

RegistrarProcess::~RegistrarProcess()
{
    end();
}

bool RegistrarProcess::start(const QStringList& options)
{
    const QString accounts = m_folder.filePath("accounts");
    QFile file(accounts);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write("# of a test\n1001 " + passwordOf("1001") + " Anna\n1002 " + passwordOf("1002") +
               " Ben\n1003 " + passwordOf("1003") + " Cleo & Co\n");
    file.close();
    kit::endWithUs(m_process);
    m_process.start(kit::program("hxRegistrar"), options + QStringList{accounts});
    const QByteArray mark = "sip:127.0.0.1:";
    while (!m_output.contains('\n') && m_process.waitForReadyRead(kWaitMs))
        m_output += m_process.readAll();
    m_nPort = m_output.startsWith(mark) ? m_output.mid(mark.size()).trimmed().toUInt() : 0;
    return m_nPort > 0;
}

int RegistrarProcess::end()
{
    if (!isRunning())
        return m_process.exitCode();
    ::kill(pid_t(pid()), SIGTERM);
    if (m_process.waitForFinished(kWaitMs))
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    m_process.kill();
    m_process.waitForFinished();
    return -1;
}

QByteArray RegistrarProcess::output()
{
    m_process.waitForReadyRead(0);
    m_output += m_process.readAll();
    return m_output;
}
