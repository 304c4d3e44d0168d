// Imports from a disk that the system mounts. Where a machine allows nobody a world of its own, a folder
// stands for the disk.
#include "tests/media/heldWrites.h"
#include "tests/media/importPage.h"
#include "tests/media/ownWorld.h"
#include <QFile>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class MountedImport : public ImportTest
{
protected:
    MountedImport() { pull(); }
    QByteArray machine(const char* devicePath) const
    {
        return ownWorld::isInside() ? QByteArray(devicePath) : root().toUtf8() + devicePath;
    }
    void come(const QByteArray& film) const
    {
        ASSERT_EQ(mkdir(machine("/storage/uDisk1"), 0755), 0);
        ASSERT_TRUE(!ownWorld::isInside() || mount("disk", "/storage/uDisk1", "tmpfs", 0, nullptr) == 0);
        QFile file(machine("/storage/uDisk1/film.mp4"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(film), film.size());
    }
    // Though the copy has a file of it open, as with a stick that is pulled.
    void go() const
    {
        ASSERT_EQ(ownWorld::isInside() ? umount2("/storage/uDisk1", MNT_DETACH)
                                       : rename(machine("/storage/uDisk1"), machine("/gone")),
                  0);
    }
    bool isImported() const { return access(machine("/rundata/media/video/film.mp4"), F_OK) == 0; }
};

TEST_F(MountedImport, AFileOfAMountedDiskArrives)
{
    if (ownWorld::hasRun())
        return;
    ownWorld::make(root().toUtf8());
    come(QByteArray(3 << 20, 'f'));
    open<dlgVideoImport>("video");
    enter();
    EXPECT_EQ(import("film.mp4"), QStringList{"Successful loading!"});
    struct stat info;
    ASSERT_EQ(stat(machine("/rundata/media/video/film.mp4"), &info), 0);
    EXPECT_EQ(info.st_size, 3 << 20);
    go();
    EXPECT_TRUE(kit::waitUntil([this] { return !page; })) << "the last disk has gone";
}

TEST_F(MountedImport, OneThatIsUnmountedInTheMiddleEndsItsImport)
{
    if (ownWorld::hasRun())
        return;
    ownWorld::make(root().toUtf8());
    come(QByteArray(3 << 20, 'f'));
    open<dlgVideoImport>("video");
    enter();
    select("film.mp4");
    HeldWrites writes;
    whenUp("dlgProgressBox", [&] {
        go();
        EXPECT_TRUE(kit::waitUntil([] { return device_GetStorageCount(STORAGE_ANY) == 0; }));
        kit::settle();
        writes.release();
    });
    const kit::BoxAnswers boxes({"ok"});
    softKey(1);
    EXPECT_EQ(boxes.texts(), QStringList{"Loading fail!"});
    EXPECT_FALSE(isImported());
    EXPECT_TRUE(kit::waitUntil([this] { return !page; }));
}

} // namespace
