#pragma once
// A program that runs beside a test, with a folder of its own. It is asked to end when the test is over, and
// ends with it however that ends.
#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace kit {

class SideProgram
{
public:
    enum { WAIT_MS = 15000 };

    SideProgram();
    ~SideProgram();

    QString path(const QString& name = {}) const { return m_folder.filePath(name); }
    // A file of its folder, for nobody else; false when it is not whole there.
    bool write(const QString& name, const QByteArray& text) const;
    // False when there is no such program.
    bool start(const QString& program, const QStringList& arguments);
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    qint64 pid() const { return m_process.processId(); }
    // Waits for more to be printed; false when nothing is.
    bool prints(int ms = WAIT_MS) { return m_process.waitForReadyRead(ms); }
    // All that it has printed.
    const QByteArray& output();
    // By itself; false when it has not by then.
    bool ends(int ms) { return !isRunning() || m_process.waitForFinished(ms); }
    // Asks it to end; its exit code, -1 when it does not end by itself.
    int end();

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    QByteArray m_output;
};

} // namespace kit
