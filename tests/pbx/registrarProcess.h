#pragma once
// The exchange in a process of its own, with the accounts 1001 "Anna", 1002 "Ben" and 1003 "Cleo".
#include "tests/kit/plain/sideProgram.h"
#include <QByteArray>
#include <QStringList>
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

    // False when it does not come up.
    bool start(const QStringList& options = {});
    uint32_t port() const
    {
        return m_nPort;
    }
    qint64 pid() const
    {
        return m_program.pid();
    }
    bool isRunning() const
    {
        return m_program.isRunning();
    }
    // Asks it to end; its exit code, -1 when it does not end by itself.
    int end()
    {
        return m_program.end();
    }
    QByteArray output()
    {
        return m_program.output();
    }
    static QByteArray passwordOf(const QByteArray& user)
    {
        return "pw-" + user;
    }

private:
    kit::SideProgram m_program;
    uint32_t m_nPort = 0;
};
