#include "bench/sipUsers.h"
#include <QFile>

namespace {

void changeFile(const QString& path, const QList<QPair<QByteArray, QByteArray>>& changes)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite))
        qFatal("cannot be changed: %s", qPrintable(path));
    QByteArray text = file.readAll();
    for (const auto& change : changes) {
        if (!text.contains(change.first))
            qFatal("%s has no %s", qPrintable(path), change.first.constData());
        text.replace(change.first, change.second);
    }
    file.resize(0);
    if (!file.seek(0) || file.write(text) != text.size())
        qFatal("cannot be written: %s", qPrintable(path));
}

} // namespace

void putSipAccount(const QString& root, int line, const tagSipUser& user)
{
    changeFile(root + "/rundata/config/user/voip/sipAccount" + QString::number(line) + ".cfg",
               {{"[account]\nEnable=0\n",
                 "[account]\nEnable=1\nTransport=" + QByteArray(user.szTransport) + "\nExpires=3600\n"},
                {"DisplayName=\n", "DisplayName=" + user.user + "\n"},
                {"AuthName=\n", "AuthName=" + user.user + "\n"},
                {"UserName=\n", "UserName=" + user.user + "\n"},
                {"password=\n", "password=pw-" + user.user + "\n"},
                {"SIPServerHost=\nSIPServerPort=5060\n",
                 "SIPServerHost=127.0.0.1\nSIPServerPort=" + QByteArray::number(user.nPort) + "\n"}});
}

void askNoWeather(const QString& root)
{
    changeFile(root + "/rundata/config/user/user.ini", {{"bDesktop=1", "bDesktop=0"}});
}
