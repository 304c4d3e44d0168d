#include "support/host/storage.h"
#include "host/services/storage/storageList.h"
#include "host/services/storage/storageSpace.h"
#include "host/services/storage/storageWorld.h"
#include "support/file/findFile.h"
#include "support/file/path.h"
#include "tests/kit/phoneTest.h"
#include <QDir>
#include <QFile>
#include <cstdlib>
#include <sys/statvfs.h>

namespace {

class Listener : public chMsgProcesser
{
public:
    int TryThreadMessage(msgObject& msg) override
    {
        if (msg.message != DEVICE_MSG_EVENT)
            return 0;
        events.append(msg.wParam);
        return 1;
    }
    QList<unsigned> events;
};

class Storage : public PhoneTest
{
protected:
    QString disk(const char* name)
    {
        const QString path = m_disks.filePath(name);
        QDir().mkpath(path);
        return path;
    }
    static QStringList paths()
    {
        chObjArray<tagStorageInfo, true, 4> storages;
        device_GetStorageArray(storages);
        QStringList found;
        for (const tagStorageInfo& storage : storages)
            found.append(QString::number(storage.nType) + " " + storage.strPath.GetText() + " " +
                         storage.strName.GetText());
        return found;
    }

private:
    QTemporaryDir m_disks;
};

} // namespace

TEST_F(Storage, WithoutADiskThereIsNone)
{
    EXPECT_EQ(device_GetStorageCount(STORAGE_ANY), 0);
    EXPECT_TRUE(paths().isEmpty());
}

TEST_F(Storage, PluggedDisksAreListedWithTypePathAndName)
{
    EXPECT_EQ(storageWorldPlug(STORAGE_USB, disk("HOLIDAY")), "/storage/uDisk1");
    EXPECT_EQ(storageWorldPlug(STORAGE_SD, disk("CARD")), "/storage/sdCard1");
    EXPECT_EQ(storageWorldPlug(STORAGE_USB, disk("WORK")), "/storage/uDisk2");
    EXPECT_EQ(paths(), QStringList({"2 /storage/sdCard1 CARD", "1 /storage/uDisk1 HOLIDAY",
                                    "1 /storage/uDisk2 WORK"}));
    EXPECT_EQ(device_GetStorageCount(STORAGE_ANY), 3);
    EXPECT_EQ(device_GetStorageCount(STORAGE_USB), 2);
    EXPECT_EQ(device_GetStorageCount(STORAGE_SD), 1);
}

TEST_F(Storage, AnUnpluggedDiskIsGoneAndItsPlaceIsFree)
{
    storageWorldPlug(STORAGE_USB, disk("A"));
    storageWorldPlug(STORAGE_USB, disk("B"));
    EXPECT_EQ(storageWorldUnplug(disk("A")), 1);
    EXPECT_EQ(paths(), QStringList{"1 /storage/uDisk2 B"});
    EXPECT_EQ(storageWorldUnplug(disk("A")), 0);
    EXPECT_EQ(storageWorldPlug(STORAGE_USB, disk("C")), "/storage/uDisk1");
    EXPECT_TRUE(QDir(disk("A")).exists());
}

TEST_F(Storage, ADiskIsPluggedOnlyOnceAndMustBeThere)
{
    EXPECT_EQ(storageWorldPlug(STORAGE_USB, disk("A")), "/storage/uDisk1");
    EXPECT_EQ(storageWorldPlug(STORAGE_USB, disk("A")), "/storage/uDisk1");
    EXPECT_EQ(storageWorldPlug(STORAGE_USB, disk("A") + "/none"), "");
    EXPECT_EQ(device_GetStorageCount(STORAGE_ANY), 1);
}

TEST_F(Storage, ADiskWhoseFolderVanishedIsGoneAndCanBeUnplugged)
{
    const QString path = disk("A");
    storageWorldPlug(STORAGE_USB, path);
    QDir(path).removeRecursively();
    EXPECT_EQ(device_GetStorageCount(STORAGE_ANY), 0);
    EXPECT_EQ(storageWorldUnplug(path), 1);
}

TEST_F(Storage, TheFilesOfAPluggedDiskAreReached)
{
    const QString path = disk("A");
    QDir(path).mkdir("pictures");
    QFile file(path + "/pictures/x.jpg");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    storageWorldPlug(STORAGE_USB, path);
    EXPECT_TRUE(pathFileExist("/storage/uDisk1/pictures/x.jpg"));
    EXPECT_FALSE(pathFileExist("/storage/uDisk1/../../etc/passwd"));
    chObjList_dynamic<chString, 16> files;
    EXPECT_TRUE(nuxFindFile("/storage/uDisk1", "*.jpg", files, 1));
    ASSERT_EQ(files.size(), 1);
    EXPECT_EQ(files.front(), "/storage/uDisk1/pictures/x.jpg");
}

TEST_F(Storage, WhoRegisteredHearsOfComingAndGoing)
{
    Listener listener;
    device_RegisterNotify(&listener, "/storage");
    storageWorldPlug(STORAGE_USB, disk("A"));
    EXPECT_TRUE(listener.events.isEmpty());
    kit::settle();
    EXPECT_EQ(listener.events, QList<unsigned>{DEVICE_EVENT_REFRESH});
    storageWorldUnplug(disk("A"));
    kit::settle();
    EXPECT_EQ(listener.events, QList<unsigned>({DEVICE_EVENT_REFRESH, DEVICE_EVENT_REMOVE}));
}

TEST_F(Storage, AFolderThatAnotherProgramMakesIsNoticed)
{
    Listener listener;
    device_RegisterNotify(&listener, "/storage");
    ASSERT_TRUE(QDir().mkdir(hostPath("/storage/sdcard")));
    EXPECT_TRUE(kit::waitUntil([&] { return !listener.events.isEmpty(); }));
    EXPECT_EQ(listener.events, QList<unsigned>{DEVICE_EVENT_REFRESH});
    EXPECT_EQ(device_GetStorageCount(STORAGE_SD), 1);
    ASSERT_TRUE(QDir().rmdir(hostPath("/storage/sdcard")));
    EXPECT_TRUE(kit::waitUntil([&] { return listener.events.size() == 2; }));
    EXPECT_EQ(listener.events.last(), unsigned(DEVICE_EVENT_REMOVE));
}

TEST_F(Storage, OneEventIsToldOnceAndOnlyToThoseWhoseFolderHoldsTheDisk)
{
    Listener both;
    Listener own;
    Listener other;
    device_RegisterNotify(&both, "/storage");
    device_RegisterNotify(&both, "/storage/uDisk1/");
    device_RegisterNotify(&own, "/storage/uDisk1");
    device_RegisterNotify(&own, "/storage/uDisk1");
    device_RegisterNotify(&other, "/storage/uDisk");
    storageWorldPlug(STORAGE_USB, disk("A"));
    kit::settle();
    EXPECT_EQ(both.events.size(), 1);
    EXPECT_EQ(own.events.size(), 1);
    EXPECT_EQ(other.events.size(), 0);
}

TEST_F(Storage, WhoUnregisteredOrEndedHearsNothing)
{
    Listener listener;
    device_RegisterNotify(&listener, "/storage");
    device_RegisterNotify(&listener, "/storage/uDisk1");
    device_RegisterNotify(&listener, "/storage/uDisk1");
    device_UnRegisterNotify(&listener, "/storage");
    device_UnRegisterNotify(&listener, "/storage/uDisk1/");
    device_UnRegisterNotify(&listener, "/never");
    device_RegisterNotify(nullptr, "/storage");
    {
        Listener ended;
        device_RegisterNotify(&ended, "/storage");
        storageWorldPlug(STORAGE_USB, disk("A"));
    }
    storageWorldPlug(STORAGE_USB, disk("B"));
    kit::settle();
    EXPECT_TRUE(listener.events.isEmpty());
}

TEST_F(Storage, AnotherDiskInTheSamePlaceIsAChange)
{
    storageWorldPlug(STORAGE_USB, disk("A"));
    Listener listener;
    device_RegisterNotify(&listener, "/storage");
    const QString link = hostPath("/storage/uDisk1");
    ASSERT_TRUE(QFile::remove(link) && QFile::link(disk("B"), link));
    EXPECT_TRUE(kit::waitUntil([&] { return !listener.events.isEmpty(); }));
    EXPECT_EQ(listener.events, QList<unsigned>{DEVICE_EVENT_REFRESH});
}

TEST_F(Storage, FreeSpaceIsThatOfTheFileSystem)
{
    struct statvfs info;
    ASSERT_EQ(statvfs(hostPath("/rundata").toUtf8(), &info), 0);
    const long long expected = static_cast<long long>(info.f_bavail) * static_cast<long long>(info.f_frsize);
    EXPECT_NEAR(static_cast<double>(getFreeSpace("/rundata")), static_cast<double>(expected), 50e6);
    EXPECT_NEAR(static_cast<double>(getFreeSpace("/rundata/none/yet/file.bin")),
                static_cast<double>(expected), 50e6);
    EXPECT_EQ(getFreeSpace("relative/none"), -1);
    EXPECT_EQ(getFreeSpace(nullptr), -1);
}

TEST_F(Storage, EachPlaceHasItsReserve)
{
    constexpr long long mb = 1 << 20;
    EXPECT_EQ(PathReservedSpace("/rundata/media/image", SPACE_MEDIA), 8 * mb);
    EXPECT_EQ(PathReservedSpace("/rundata/nDeck/", SPACE_NDECK), 16 * mb);
    EXPECT_EQ(PathReservedSpace("/rundata/x", SPACE_STORAGE), 1 * mb);
    EXPECT_EQ(PathReservedSpace("/storage/uDisk1/x", SPACE_MEDIA), 1 * mb);
    EXPECT_EQ(PathReservedSpace("/storage", SPACE_NDECK), 1 * mb);
    EXPECT_EQ(PathReservedSpace(nullptr, SPACE_MEDIA), 8 * mb);
}

TEST_F(Storage, ThePathTellsWhichReserveATransferKeeps)
{
    EXPECT_EQ(storageSpaceOf("/rundata/media/image"), SPACE_MEDIA);
    EXPECT_EQ(storageSpaceOf("/rundata/nDeckOther"), SPACE_MEDIA);
    EXPECT_EQ(storageSpaceOf("/rundata/nDeck/"), SPACE_NDECK);
    EXPECT_EQ(storageSpaceOf("/rundata/nDeck"), SPACE_NDECK);
    EXPECT_EQ(storageSpaceOf("/storage/uDisk1/x"), SPACE_STORAGE);
    EXPECT_EQ(storageSpaceOf(nullptr), SPACE_MEDIA);
}

// Makes a file of a size that takes no room.
void writeHole(const QString& path, long long size)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(size));
}

TEST_F(Storage, AFileFitsWhenTheReserveStaysFree)
{
    constexpr long long mb = 1 << 20;
    bool calm = false;
    // Other programs use the disk too: only a try in which its room hardly changed counts.
    for (int tries = 0; tries < 50 && !calm; ++tries) {
        const long long free = getFreeSpace("/rundata");
        writeHole(hostPath("/rundata/twelve"), free - 12 * mb);
        writeHole(hostPath("/rundata/four"), free - 4 * mb);
        const int storage = IsEnoughSpace("/rundata/four", "/rundata/media", SPACE_STORAGE);
        const int media = IsEnoughSpace("/rundata/twelve", "/rundata/media", SPACE_MEDIA);
        const int noMedia = IsEnoughSpace("/rundata/four", "/rundata/media", SPACE_MEDIA);
        const int noSignage = IsEnoughSpace("/rundata/twelve", "/rundata/nDeck", SPACE_NDECK);
        calm = std::llabs(getFreeSpace("/rundata") - free) < mb;
        if (calm) {
            EXPECT_EQ(storage, 1);
            EXPECT_EQ(media, 1);
            EXPECT_EQ(noMedia, 0);
            EXPECT_EQ(noSignage, 0);
        }
    }
    EXPECT_TRUE(calm);
}

TEST_F(Storage, AFileThatIsNotThereFitsNowhere)
{
    writeFile("/rundata/empty", "");
    EXPECT_EQ(IsEnoughSpace("/rundata/empty", "/rundata/media", SPACE_MEDIA), 1);
    EXPECT_EQ(IsEnoughSpace("/rundata/none", "/rundata/media", SPACE_MEDIA), 0);
    EXPECT_EQ(IsEnoughSpace("/rundata/empty", "relative/none", SPACE_MEDIA), 0);
}

TEST(StorageList, TheNameTellsTheType)
{
    for (const char* name : {"sd", "sd1", "sdCard1", "SD2", "sdcard", "mmcblk0p1"})
        EXPECT_EQ(storageList::typeOf(name), STORAGE_SD) << name;
    for (const char* name : {"uDisk1", "usb1", "sda1", "sdb", "disk", "USB"})
        EXPECT_EQ(storageList::typeOf(name), STORAGE_USB) << name;
}

TEST(StorageList, MountPointsDirectlyInTheFolderAreDisks)
{
    const QByteArray table = "22 1 8:1 / / rw - ext4 /dev/sda1 rw\n"
                             "40 22 8:17 / /storage/uDisk1 rw,noatime shared:5 - vfat /dev/sdb1 rw\n"
                             "41 22 8:33 / /storage/my\\040disk rw - vfat /dev/sdc1 rw\n"
                             "42 22 8:34 / /storage/uDisk1/deep rw - vfat /dev/sdd1 rw\n"
                             "43 22 8:35 / /storage rw - ext4 /dev/sde1 rw\n"
                             "44 22 8:36 / /storages/x rw - ext4 /dev/sdf1 rw\nshort line\n";
    const auto found = storageList::mountsIn(table, "/storage");
    ASSERT_EQ(found.size(), 2);
    EXPECT_EQ(found[0], (QPair<QByteArray, QByteArray>("uDisk1", "8:17 /dev/sdb1")));
    EXPECT_EQ(found[1].first, "my disk");
}
