#pragma once
// The demonstration server in a process of its own, and the folder that it serves.
#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

class SignServer
{
public:
    SignServer();
    ~SignServer() { stop(); }
    // A layout file of the schedule: its content, and further attributes of its entry.
    void putLayout(const QString& name, const QByteArray& content, const QString& attributes = QString());
    void dropLayout(const QString& name);
    // A file of the folder itself, as "stock.xml" is.
    void copyFile(const QString& name, const QString& source);
    void putMedia(const QString& name, const QByteArray& content);
    // Forecasts, quotes and icons of the demonstration.
    void copyFeeds();
    void copyMedia(const QString& name, const QString& source);

    // Listens at the port of its first start ever after.
    bool start();
    void stop();
    qint64 pid() const { return m_process.processId(); }
    QString url() const { return QString("http://127.0.0.1:%1").arg(m_nPort); }
    // The faults in force from now on, a line each; empty for none.
    bool setFaults(const QByteArray& rules);
    // The log: a line each request.
    QStringList log() const;
    int requestsFor(const QString& text) const;

private:
    void writeSchedule();
    QString path(const QString& name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
    QProcess m_process;
    QList<QPair<QString, QString>> m_layouts; // name, attributes
    int m_nPort = 0;
};
