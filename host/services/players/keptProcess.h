#pragma once
// A program that lies beside the phone's own and is kept running: it is started again when it dies, later
// each time, and ends with the phone. What it prints is in the phone's log. User-interface thread.
#include "support/host/api.h"
#include <QByteArray>
#include <QElapsedTimer>
#include <QProcess>
#include <QStringList>
#include <QTimer>
#include <csignal>
#include <functional>

struct tagKeptProgram
{
    QString strName; // bare
    QStringList arguments;
    QString strFolder;            // it works there; empty: where the phone does
    int nDeathSignal = SIGKILL;   // it gets that when the phone dies; 0 for one that notices by itself
    int nLastDelayMs = 30000;     // the longest until it is started again
    std::function<void()> died;   // told before it is started again; may be empty
    std::function<void()> killed; // told when it did not end by itself; may be empty
};

class HX_HOST_API keptProcess : public QObject
{
public:
    keptProcess(tagKeptProgram program, QObject* parent);
    ~keptProcess() override;
    void start();
    // Ends it and leaves it so; graceMs: how long it may take to end by itself before it is asked to.
    void stop(int graceMs = 0);
    // What it says is of no use: it is ended, which is a death like any other.
    void discard() { m_process.kill(); }
    // 0 while it does not run.
    qint64 pid() const { return m_process.processId(); }

private:
    void onEnd(const QString& how);
    void logOutput();

    const tagKeptProgram m_program;
    QProcess m_process;
    QTimer m_again;
    QElapsedTimer m_running;
    int m_nDelayMs;
    bool m_bStopped = false;
    QByteArray m_line; // printed, but not yet to its end
};
