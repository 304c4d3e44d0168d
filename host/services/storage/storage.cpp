#include "support/host/storage.h"
#include "host/services/storage/storageSpace.h"
#include "host/services/storage/storageWatch.h"
#include "host/services/storage/storageWorld.h"
#include "support/file/deviceRoot.h"
#include "support/file/fileTools.h"
#include "support/file/path.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <string>
#include <sys/statvfs.h>

namespace {

constexpr long long kMegabyte = 1 << 20;
// The phone's partition holds its settings and logs too. Signage fills its folder by itself, without a
// person who could make room, so it leaves more. A removable disk needs only its own bookkeeping.
constexpr long long kReserved[] = {8 * kMegabyte, 1 * kMegabyte, 16 * kMegabyte};

bool isBelow(const std::string& path, const std::string& folder)
{
    return path == folder || path.compare(0, folder.size() + 1, folder + '/') == 0;
}

QString freeLinkName(STORAGE_TYPE type)
{
    const QString start =
        type == STORAGE_SD ? QStringLiteral("/storage/sdCard") : QStringLiteral("/storage/uDisk");
    int number = 1;
    while (pathFileExist((start + QString::number(number)).toUtf8()))
        ++number;
    return start + QString::number(number);
}

// The device path of the link to dir, also when dir is gone; empty when there is none.
QString pluggedAs(const QString& dir)
{
    const QFileInfo folder(dir);
    const QString source =
        folder.exists() ? folder.canonicalFilePath() : QDir::cleanPath(folder.absoluteFilePath());
    const QDir storages(toQString(devicePath("/storage")));
    for (const QFileInfo& link :
         storages.entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)) {
        if (link.isSymLink() && link.symLinkTarget() == source)
            return QStringLiteral("/storage/") + link.fileName();
    }
    return QString();
}

} // namespace

COUNT_ENOUTH_SPACE_INDEX storageSpaceOf(const char* path)
{
    const std::string text = path ? path : "";
    if (isBelow(text, "/rundata/nDeck"))
        return SPACE_NDECK;
    return isBelow(text, "/storage") ? SPACE_STORAGE : SPACE_MEDIA;
}

int device_GetStorageCount(STORAGE_TYPE type)
{
    int count = 0;
    for (const storageList::tagEntry& storage : storageWatch::GetInstance().Storages())
        count += type == STORAGE_ANY || storage.nType == type ? 1 : 0;
    return count;
}

void device_GetStorageArray(chObjArray<tagStorageInfo, true, 4>& storages)
{
    storages.SetArraySize(0);
    for (const storageList::tagEntry& storage : storageWatch::GetInstance().Storages()) {
        tagStorageInfo info;
        info.nType = storage.nType;
        info.strPath = storage.path.constData();
        info.strName = storage.name.constData();
        storages.Append(info);
    }
}

void device_RegisterNotify(chMsgProcesser* processer, const char* path)
{
    if (processer && path)
        storageWatch::GetInstance().Register(processer, path);
}

void device_UnRegisterNotify(chMsgProcesser* processer, const char* path)
{
    if (processer && path)
        storageWatch::GetInstance().UnRegister(processer, path);
}

// Of the folder that the file would be in, or of the nearest one above that is there.
long long getFreeSpace(const char* path)
{
    chString place(path);
    struct statvfs info;
    while (statvfs(devicePathFollow(place), &info) != 0) {
        if (!pathRemoveFileSpec(place))
            return -1;
    }
    return static_cast<long long>(info.f_bavail) * static_cast<long long>(info.f_frsize);
}

long long PathReservedSpace(const char* path, COUNT_ENOUTH_SPACE_INDEX index)
{
    return storageSpaceOf(path) == SPACE_STORAGE ? kReserved[SPACE_STORAGE] : kReserved[index];
}

int IsEnoughSpace(const char* source, const char* directory, COUNT_ENOUTH_SPACE_INDEX index)
{
    const long long size = fileSize(source);
    return size >= 0 && getFreeSpace(directory) - PathReservedSpace(directory, index) >= size ? 1 : 0;
}

QString storageWorldPlug(STORAGE_TYPE type, const QString& dir)
{
    const QFileInfo folder(dir);
    if (deviceGetRoot().IsEmpty() || !folder.isDir() || !pathMakeDirectories("/storage"))
        return QString();
    const QString known = pluggedAs(dir);
    if (!known.isEmpty())
        return known;
    const QString path = freeLinkName(type);
    if (!QFile::link(folder.canonicalFilePath(), toQString(devicePath(path.toUtf8())))) {
        nuxTrace(TRACE_NOTE, "%s cannot be plugged", dir.toUtf8().constData());
        return QString();
    }
    storageWatch::GetInstance().Check();
    return path;
}

int storageWorldUnplug(const QString& dir)
{
    const QString path = pluggedAs(dir);
    if (deviceGetRoot().IsEmpty() || path.isEmpty())
        return 0;
    const bool removed = QFile::remove(toQString(devicePath(path.toUtf8())));
    storageWatch::GetInstance().Check();
    return removed ? 1 : 0;
}
