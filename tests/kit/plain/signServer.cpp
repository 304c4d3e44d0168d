#include "tests/kit/plain/signServer.h"
#include "places.h"
#include "tests/kit/plain/deviceFolder.h"
#include "tests/kit/plain/processes.h"
#include <QDir>
#include <QFile>
#include <QTcpSocket>

namespace {

constexpr int kWaitMs = 10000;

void writeWhole(const QString& path, const QByteArray& content)
{
    // A server that reads meanwhile sees the old file or the new one.
    QFile file(path + ".part");
    if (file.open(QIODevice::WriteOnly))
        file.write(content);
    file.close();
    QFile::remove(path);
    QFile::rename(path + ".part", path);
}

} // namespace

SignServer::SignServer()
{
    QDir(m_folder.path()).mkpath("layouts");
    QDir(m_folder.path()).mkpath("media");
    writeWhole(path("server.ini"), "[server]\nkey=hall\npassword=secret\n[displays]\n*=*\n");
    writeSchedule();
}

void SignServer::putLayout(const QString& name, const QByteArray& content, const QString& attributes)
{
    writeWhole(path("layouts/" + name), content);
    m_layouts.removeIf([&](const QPair<QString, QString>& layout) { return layout.first == name; });
    m_layouts.append({name, attributes});
    writeSchedule();
}

void SignServer::dropLayout(const QString& name)
{
    m_layouts.removeIf([&](const QPair<QString, QString>& layout) { return layout.first == name; });
    writeSchedule();
}

void SignServer::copyFile(const QString& name, const QString& source)
{
    QFile file(source);
    if (file.open(QIODevice::ReadOnly))
        writeWhole(path(name), file.readAll());
}

void SignServer::putMedia(const QString& name, const QByteArray& content)
{
    writeWhole(path("media/" + name), content);
}

void SignServer::copyMedia(const QString& name, const QString& source)
{
    QFile file(source);
    if (file.open(QIODevice::ReadOnly))
        putMedia(name, file.readAll());
}

void SignServer::copyFeeds()
{
    const QString demo = HX_BUILD_DIR "/signageDemo/";
    const QStringList own = {"schedule.xml", "server.ini"};
    for (const QString& name : QDir(demo).entryList(QDir::Files)) {
        if (!own.contains(name))
            QFile::copy(demo + name, path(name));
    }
    QDir().mkpath(path("icons"));
    for (const QString& name : QDir(demo + "icons").entryList(QDir::Files))
        QFile::copy(demo + "icons/" + name, path("icons/" + name));
}

void SignServer::writeSchedule()
{
    QByteArray text = "<schedule>\n";
    for (const auto& [name, attributes] : m_layouts)
        text += QString("<layout file=\"%1\" %2/>\n").arg(name, attributes).toUtf8();
    writeWhole(path("schedule.xml"), text + "</schedule>\n");
}

bool SignServer::start()
{
    kit::endWithUs(m_process);
    m_process.start(kit::program("hxSignServer"),
                    {"--port", QString::number(m_nPort), "--log", path("log"), m_folder.path()});
    if (!m_process.waitForStarted(kWaitMs))
        return false;
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(kWaitMs))
            return false;
    }
    m_nPort = QString::fromLatin1(m_process.readLine()).trimmed().section(':', -1).toInt();
    return m_nPort > 0;
}

void SignServer::stop()
{
    m_process.kill();
    m_process.waitForFinished(kWaitMs);
}

bool SignServer::setFaults(const QByteArray& rules)
{
    QTcpSocket socket;
    socket.connectToHost("127.0.0.1", quint16(m_nPort));
    if (!socket.waitForConnected(kWaitMs))
        return false;
    socket.write("POST /faults HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\nX-Signage-Change: 1\r\n"
                 "Content-Length: " +
                 QByteArray::number(rules.size()) + "\r\n\r\n" + rules);
    QByteArray reply;
    while (socket.waitForReadyRead(kWaitMs))
        reply += socket.readAll();
    return reply.startsWith("HTTP/1.1 200");
}

QStringList SignServer::log() const
{
    QFile file(path("log"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts)
                                          : QStringList();
}

int SignServer::requestsFor(const QString& text) const
{
    return int(log().filter(text).size());
}
