#pragma once
// The exchange in a process of its own, with the accounts 1001 "Anna", 1002 "Ben" and 1003 "Cleo".
#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <cstdint>

class RegistrarProcess
{
public:
    // More than it ever has; freed memory stays for a while where that is watched.
#if defined(__SANITIZE_ADDRESS__)
    enum : qint64 { MOST_KIB = 256 << 10 };
#else
    enum : qint64 { MOST_KIB = 64 << 10 };
#endif

    RegistrarProcess();
    ~RegistrarProcess();

    // False when it does not come up.
    bool start(const QStringList& options = {});
    uint32_t port() const
    {
        return m_nPort;
    }
    qint64 pid() const
    {
        return m_process.processId();
    }
    bool isRunning() const
    {
        return m_process.state() == QProcess::Running;
    }
    // Asks it to end; its exit code, -1 when it does not end by itself.
    int end();
    QByteArray output();
    static QByteArray passwordOf(const QByteArray& user)
    {
        return "pw-" + user;
    }

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    QByteArray m_output;
    uint32_t m_nPort = 0;
};
