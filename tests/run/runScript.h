#pragma once
// "./run" in a process of its own, on the programs of this build and a device root of its own.
#include "tests/kit/plain/controlLink.h"
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <functional>

class RunScript
{
public:
    RunScript();
    // Ends it.
    ~RunScript();

    // Without a display; until the home screen is shown and the address is known. Fails the test otherwise.
    void startPage(const QStringList& options = {});
    // In a window on that display, whose key is in the file.
    void startWindow(const QString& display, const QString& cookie);
    // Nothing is waited for; source: the folder with ./run and tools/.
    void launch(const QStringList& options, const QString& source = {}, uid_t user = 0);
    bool waitEnd(int ms = 20000);

    qint64 pid() const { return m_process.processId(); }
    int exitCode() const { return m_process.exitCode(); }
    void signal(int number) const;
    // To all whom a key of a terminal reaches, or its end.
    void signalTerminal(int number) const;
    // All that it has printed so far.
    QByteArray output();
    QString root() const { return m_root.path(); }

    // Parts of the printed address.
    int port() const { return m_nPort; }
    QByteArray token() const { return m_token; }
    // Where its weather and stocks come from; one of its own, unless it is told another's.
    int feedsPort() const { return m_nFeedsPort; }
    void shareFeeds(const RunScript& other) { m_nFeedsPort = other.m_nFeedsPort; }
    QByteArray host() const { return "127.0.0.1:" + QByteArray::number(m_nPort); }
    QByteArray origin() const { return "http://" + host(); }
    QByteArray address() const { return origin() + '/' + m_token + '/'; }

    // Processes that it has started, and theirs.
    QList<qint64> descendants() const;
    // The one of that program among them; 0 when there is none.
    qint64 processOf(const QByteArray& program) const;
    // The folder with its sockets.
    QString folder() const;
    // The number of its display.
    QByteArray display() const;

    QJsonValue ctl(const QStringList& words) { return m_control.ask(words); }
    // What the phone itself says that it shows.
    QImage phoneShot();

private:
    void waitHome();
    void takeAddress();

    QTemporaryDir m_root;
    QProcess m_process;
    ControlLink m_control;
    QByteArray m_output;
    QByteArray m_token;
    int m_nPort = 0;
    int m_nFeedsPort;
};

// With events delivered meanwhile; false when ms went by.
bool eventually(const std::function<bool()>& holds, int ms = 20000);
// The share of pixels that plainly differ, of pictures of one size; 1 for others.
double difference(const QImage& a, const QImage& b);
bool isAlive(qint64 pid);
