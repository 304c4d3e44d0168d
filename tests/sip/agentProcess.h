#pragma once
// The agent in a process of its own, with the test in the phone's place.
#include "sip/sipWire.h"
#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <functional>

class AgentProcess
{
public:
    enum { WAIT_MS = 15000 };

    AgentProcess();
    ~AgentProcess();

    // A setup with short times, at a free port of the loopback interface.
    static tagSipSetup quickSetup();
    // The same where a busy machine's server must not be taken for a silent one.
    static tagSipSetup calmSetup();
    // Starts it and tells it the setup. False when there is no answer.
    bool start(const tagSipSetup& setup = quickSetup(), const QStringList& environment = {});
    template <typename Record>
    void tell(const Record& record)
    {
        tellBytes(&record, sizeof record);
    }
    void tellBytes(const void* bytes, size_t size);
    // The next record that fits; others before it are dropped. Null when none comes.
    const tagSipHead* next(const std::function<bool(const tagSipHead&)>& fits, int ms = WAIT_MS);
    const tagSipHead* next(uint32_t kind, uint32_t id, int ms = WAIT_MS);
    // Null when the line does not come to that state.
    const tagSipLine* nextLine(uint32_t line, SIP_LINE_STATE state, int ms = WAIT_MS);
    // What it does not tell within a moment.
    bool isQuiet(int ms)
    {
        return next([](const tagSipHead&) { return true; }, ms) == nullptr;
    }
    void closeLink();
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    // It ended by itself within the time.
    bool ends(int ms = WAIT_MS);
    int exitCode() const { return m_process.exitCode(); }
    bool hasCrashed() const { return m_process.exitStatus() == QProcess::CrashExit; }
    qint64 pid() const { return m_process.processId(); }
    uint32_t port() const { return m_nPort; }
    // All that it has printed.
    QByteArray output();

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    int m_nListener = -1;
    int m_nLink = -1;
    uint32_t m_nPort = 0;
    sipWire::Reader m_reader;
    QByteArray m_output;
};

// An account of a line at a server of the loopback interface.
tagSipAccount accountAt(uint32_t line, uint32_t port, SIP_TRANSPORT transport = SIP_UDP);
// The first line's, of a server that only the proxy at that port of this machine knows.
tagSipAccount accountBehind(uint32_t proxyPort, const char* server = "nobody.invalid");
