#pragma once
// A run of SIPp against some port of this machine.
#include "tests/kit/plain/sideProgram.h"
#include <QByteArray>
#include <QStringList>
#include <cstdint>

class SippRun
{
public:
    // Seconds that a run takes at most, from its next start on.
    void setLimit(int seconds) { m_nLimit = seconds; }
    // scenario: a file below "tests". localPort: its own. Fails the test when it does not start.
    void start(const QByteArray& scenario, uint32_t localPort, uint32_t remotePort, int calls,
               const QStringList& further = {});
    // The same of a scenario that is no file.
    void startText(const QByteArray& scenario, uint32_t localPort, uint32_t remotePort, int calls,
                   const QStringList& further = {});
    // All of its calls went as they are written.
    void expectDone();

private:
    void run(const QString& file, uint32_t localPort, uint32_t remotePort, int calls,
             const QStringList& further);

    kit::SideProgram m_program;
    int m_nLimit = 240;
};
