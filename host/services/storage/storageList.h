#pragma once
// The storages that are there now, read from the file system. Any thread.
#include "support/host/storage.h"
#include <QByteArray>
#include <QList>

namespace storageList {

struct tagEntry
{
    int nType = STORAGE_ANY;
    QByteArray path;   // device path
    QByteArray name;   // what a person calls it
    QByteArray source; // what stands behind it; another one means another disk
    bool operator==(const tagEntry& other) const
    {
        return path == other.path && nType == other.nType && name == other.name && source == other.source;
    }
};

// On a phone the mount points in "/storage"; with a device root every folder there, or link to one. By path.
QList<tagEntry> read();
// The type that a folder's name in "/storage" tells: "sd" and "sd1" are cards, as "mmc..." are; "sda1" and
// all others are USB disks.
STORAGE_TYPE typeOf(const QByteArray& name);
// The mount points directly in folder, of the text of a mountinfo table, with what is mounted there.
QList<QPair<QByteArray, QByteArray>> mountsIn(const QByteArray& mountInfo, const QByteArray& folder);

} // namespace storageList
