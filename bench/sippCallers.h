#pragma once
// SIPp in a process of its own, with a scenario of this folder.
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <cstdint>

class SippCallers
{
public:
    SippCallers() = default;
    ~SippCallers();
    SippCallers(const SippCallers&) = delete;
    SippCallers& operator=(const SippCallers&) = delete;

    // remotePort: where its requests go. It ends after so many calls; 0: with this object.
    void start(const char* scenario, uint32_t localPort, uint32_t remotePort, int calls,
               const QStringList& further);
    // The lines that its calls take their words from, one after the other: an argument for start().
    QStringList list(const QList<QByteArray>& lines);
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    // All of its calls went as they are written; prints what did not.
    bool waitForDone(int ms);

private:
    QTemporaryDir m_folder;
    QProcess m_process;
};
