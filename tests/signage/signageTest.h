#pragma once
// A phone whose signage client is set up for a server of the test's own.
#include "host/services/system/hostLog.h"
#include "host/services/system/netWorld.h"
#include "host/services/transfers/taskBook.h"
#include "signage/nDeckFileManager.h"
#include "support/host/clock.h"
#include "support/host/net.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include "tests/kit/phoneTest.h"
#include "tests/signage/signageServer.h"
#include <QDir>
#include <QFile>

class SignageTest : public PhoneTest
{
protected:
    static constexpr int kPausePartMs = 100;

    SignageTest() : manager(GetNDeckFileManager())
    {
        netWorld().state = NET_UP;
        netWorld().mac = "00:11:22:33:44:55";
        netWorldSetClock(chTime(2026, 11, 21, 14, 5, 0).GetTime());
        QDir().mkpath(hostPath("/tmp"));
        configure("strServerURL", server.http.url(""));
        configure("strServerKey", "key");
        configure("strServerPwd", "pwd");
        configure("strDisplayName", "lobby");
        configure("bEnable", "1");
    }

    static void configure(const char* key, const QByteArray& value)
    {
        nuxSetRegistryString("/rundata/config/system.ini", "nDeck", key, value);
    }
    // Until nothing is asked for or saved any more. The pause between two saves of the list is not waited
    // for.
    bool quiet() const
    {
        int still = 0;
        return kit::waitUntil(
            [&] {
                if (taskPendingCount() == 0 && !manager.IsFileListStored())
                    kit::stepTime(kPausePartMs);
                const bool isStill = taskPendingCount() == 0 && manager.IsFileListStored();
                return (still = isStill ? still + 1 : 0) > 5;
            },
            20000);
    }
    // One cycle to its end.
    bool sync() { return manager.DownloadDisplayFrame() && quiet(); }
    // The same, with the layout change that puts what has come into use.
    bool syncIntoUse()
    {
        const bool done = sync();
        manager.RemoveOldFileByFileList();
        return quiet() && done;
    }

    QByteArray deck(const QByteArray& name) const { return readFile("/rundata/nDeck/" + name); }
    void writeDeck(const QByteArray& name, const QByteArray& content) const
    {
        writeFile("/rundata/nDeck/" + name, content);
    }
    // All files of the folder but the client's own.
    QStringList deckFiles() const
    {
        QStringList names;
        const QDir folder(hostPath("/rundata/nDeck"));
        for (const QString& name : folder.entryList(QDir::Files | QDir::Hidden, QDir::Name)) {
            if (name != "FileList.xml" && name != "display.xml" && name != "register.tmp")
                names.append(name);
        }
        return names;
    }
    // Paths of the list, in its order.
    QStringList records() const
    {
        QStringList paths;
        for (const _nDeckFileNode& node : manager.GetFileList())
            paths.append(toQString(node.path));
        return paths;
    }
    static QStringList names(const nDeckLayoutList& layouts)
    {
        QStringList files;
        for (const _nDeckLayoutNode& layout : layouts)
            files.append(toQString(layout.file));
        return files;
    }
    static QStringList names(const nDeckNodeList& medias)
    {
        QStringList paths;
        for (const _nDeckFileNode& media : medias)
            paths.append(toQString(media.path));
        return paths;
    }
    signageServer server;
    nDeckFileManager& manager;
};
