#pragma once
// A run of SIPp against some port of this machine.
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <cstdint>

class SippRun
{
public:
    // scenario: a file of this folder. localPort: its own. Fails the test when it does not start.
    void start(const char* scenario, uint32_t localPort, uint32_t remotePort, int calls,
               const QStringList& further = {});
    // All of its calls went as they are written.
    void expectDone();

private:
    QTemporaryDir m_folder;
    QProcess m_process;
};
