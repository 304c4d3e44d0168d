#pragma once
// The built phone in a process of its own, and what a process costs.
#include "tests/kit/plain/deviceFolder.h"
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

// Resident memory of the process in MB. What it shares counts whole: who else uses it comes and goes.
double residentMegabytes(qint64 pid);
// Processor time of the process so far, to the nanosecond, also of its threads that have ended; 0 when there
// is none.
double processorMs(qint64 pid);

class RunningPhone
{
public:
    explicit RunningPhone(kit::Firmware firmware = kit::Firmware::Link);
    ~RunningPhone();
    // False when it does not come up to its home screen.
    bool start(const QStringList& options = QStringList());
    // What a start has cost when the home screen is painted.
    struct tagStart
    {
        double ms = 0;    // by the clock
        double cpuMs = 0; // processor time of the phone itself
    };
    // Starts it and asks it nothing. False when it does not say that it is up.
    bool startOnly(tagStart& cost);
    void end();
    // A command of hxctl; false when it is refused.
    bool ctl(const QStringList& command) const;
    qint64 pid() const { return m_process.processId(); }
    QString root() const { return m_root.path(); }

private:
    bool waitForHome() const;

    QTemporaryDir m_root;
    QProcess m_process;
};
