#include "tests/reliability/syncPeer.h"
#include "places.h"
#include "tests/kit/plain/deviceFolder.h"
#include <QDir>
#include <QFile>

namespace {

constexpr int kWaitMs = 20000;

} // namespace

SyncPeer::SyncPeer(const QString& serverUrl)
{
    for (const char* folder : {"rundata/config/user", "rundata/run", "tmp"})
        QDir(root()).mkpath(folder);
    QFile::link(HX_BUILD_DIR "/rootfs/phone", root() + "/phone");
    m_keys = {{"bEnable", "1"},           {"strServerURL", serverUrl}, {"strServerKey", "hall"},
              {"strServerPwd", "secret"}, {"strDisplayName", "Lobby"}, {"nUpdateInteval", "300"}};
}

void SyncPeer::setKey(const QString& key, const QString& value)
{
    m_keys[key] = value;
}

bool SyncPeer::start(qint64 disk)
{
    QFile file(root() + "/rundata/config/system.ini");
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write("[nDeck]\n");
    for (auto it = m_keys.cbegin(); it != m_keys.cend(); ++it)
        file.write((it.key() + "=" + it.value() + "\n").toUtf8());
    file.close();

    m_bUp = false;
    m_shows.clear();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(kit::program("syncPeer"), {root(), QString::number(disk)});
    return m_process.waitForStarted(kWaitMs);
}

bool SyncPeer::waitUp()
{
    while (!m_bUp && m_process.waitForReadyRead(kWaitMs))
        readLines();
    return m_bUp;
}

void SyncPeer::kill()
{
    m_process.kill();
    m_process.waitForFinished(kWaitMs);
}

QString SyncPeer::shows()
{
    m_process.waitForReadyRead(1);
    readLines();
    return m_shows;
}

void SyncPeer::readLines()
{
    while (m_process.canReadLine()) {
        const QString line = QString::fromLatin1(m_process.readLine()).trimmed();
        m_bUp = m_bUp || line == "up";
        if (line.startsWith("shows "))
            m_shows = line.mid(6);
    }
}
