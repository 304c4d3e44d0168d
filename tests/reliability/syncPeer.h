#pragma once
// The light phone: only its signage client, in a process and a device root of its own.
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

class SyncPeer
{
public:
    explicit SyncPeer(const QString& serverUrl);
    ~SyncPeer() { kill(); }
    // A key of the signage client; before start().
    void setKey(const QString& key, const QString& value);
    // disk: bytes of the disk that it believes in; 0: the real one.
    bool start(qint64 disk = 0);
    // Until it has asked for the schedule.
    bool waitUp();
    void kill();
    bool runs() const { return m_process.state() == QProcess::Running; }
    // The last colour that it said is in the middle of its screen.
    QString shows();
    qint64 pid() const { return m_process.processId(); }
    QString root() const { return m_root.path(); }

private:
    void readLines();

    QTemporaryDir m_root;
    QMap<QString, QString> m_keys;
    QProcess m_process;
    bool m_bUp = false;
    QString m_shows;
};
