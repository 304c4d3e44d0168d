#pragma once
// Notices storages that come and go, and tells whoever registered. On the thread of its first use.
#include "host/services/messages/processerBook.h"
#include "host/services/storage/storageList.h"
#include "host/services/system/folderWatch.h"
#include <QFile>

class storageWatch : public QObject
{
public:
    // Made at the first call; lives until the process ends.
    static storageWatch& GetInstance();
    // Kept up to date by the watch.
    const QList<storageList::tagEntry>& Storages();
    void Register(chMsgProcesser* processer, const QByteArray& path);
    void UnRegister(chMsgProcesser* processer, const QByteArray& path);
    // Compares what is there with what was, and posts the difference.
    void Check();

private:
    struct tagListener
    {
        tagProcesserRef processer;
        QByteArray path;
    };

    storageWatch();
    void FollowRoot();
    void WatchMounts();
    void Tell(unsigned int event, const storageList::tagEntry& storage);

    folderWatch m_folder;
    QFile m_mounts;
    unsigned m_nRoot = 0;
    QList<storageList::tagEntry> m_storages;
    QList<tagListener> m_listeners;
};
