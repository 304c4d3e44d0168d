#pragma once
// The two player programs, which lie beside the phone's own. They are started with the phone, started again
// when they die, later each time, and end with it, however it ends. What they print is in the phone's log.
// User-interface thread.
#include "support/host/api.h"
#include <QByteArray>
#include <QElapsedTimer>
#include <QProcess>
#include <QTimer>

class HX_HOST_API playerProcess : public QObject
{
public:
    // program: its bare name.
    playerProcess(const QString& program, QObject* parent);
    ~playerProcess() override;
    void start();
    // Ends it and leaves it so.
    void stop();
    qint64 pid() const { return m_process.processId(); }

private:
    void onEnd(const QString& how);
    void logOutput();

    QString m_program;
    QProcess m_process;
    QTimer m_again;
    QElapsedTimer m_running;
    int m_nDelayMs;
    bool m_bStopped = false;
    QByteArray m_line; // printed, but not yet to its end
};

// Starts both; they end with the application object.
HX_HOST_API void playerProcessesStart();
