#include "tests/kit/plain/sideProgram.h"
#include "tests/kit/plain/processes.h"
#include <QFile>
#include <csignal>

kit::SideProgram::SideProgram()
{
    m_process.setProcessChannelMode(QProcess::MergedChannels);
}

kit::SideProgram::~SideProgram()
{
    end();
}

bool kit::SideProgram::write(const QString& name, const QByteArray& text) const
{
    QFile file(path(name));
    return file.open(QIODevice::WriteOnly, QFile::ReadOwner | QFile::WriteOwner) &&
           file.write(text) == text.size() && file.flush();
}

bool kit::SideProgram::start(const QString& program, const QStringList& arguments)
{
    kit::endWithUs(m_process);
    m_process.setWorkingDirectory(m_folder.path());
    m_process.start(program, arguments);
    return m_process.waitForStarted();
}

const QByteArray& kit::SideProgram::output()
{
    m_process.waitForReadyRead(0);
    m_output += m_process.readAll();
    return m_output;
}

int kit::SideProgram::end()
{
    if (!isRunning())
        return m_process.exitCode();
    ::kill(pid_t(pid()), SIGTERM);
    if (m_process.waitForFinished(WAIT_MS))
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    m_process.kill();
    m_process.waitForFinished();
    return -1;
}
