// Imports from a disk that the system mounts, in a mount namespace where a folder becomes the whole device.
// Where a machine allows nobody that, a folder stands for the disk.
#include "support/file/deviceRoot.h"
#include "tests/media/heldWrites.h"
#include "tests/media/importPage.h"
#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char* const kOwnWorld = "HX_TEST_MOUNTS";

class MountedImport : public ImportTest
{
protected:
    MountedImport() { pull(); }
    bool isInOwnWorld() const { return qEnvironmentVariableIsSet(kOwnWorld); }
    // True when the test has been run elsewhere.
    bool hasRunInOwnWorld() const
    {
        if (isInOwnWorld() || QProcess::execute("unshare", {"--map-root-user", "--mount", "true"}) != 0)
            return false;
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(kOwnWorld, "1");
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        process.start("unshare", {"--map-root-user", "--mount", QCoreApplication::applicationFilePath(),
                                  QString("--gtest_filter=MountedImport.") + test->name()});
        EXPECT_TRUE(process.waitForFinished(60000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 0);
        return true;
    }
    void makeWorld() const
    {
        if (!isInOwnWorld())
            return;
        const QByteArray world = root().toUtf8();
        ASSERT_EQ(mkdir(world + "/proc", 0755), 0);
        ASSERT_EQ(mount("/proc", world + "/proc", nullptr, MS_BIND | MS_REC, nullptr), 0);
        ASSERT_EQ(chroot(world), 0);
        ASSERT_EQ(chdir("/"), 0);
        deviceSetRoot("");
    }
    QByteArray machine(const char* devicePath) const
    {
        return isInOwnWorld() ? QByteArray(devicePath) : root().toUtf8() + devicePath;
    }
    void come(const QByteArray& film) const
    {
        ASSERT_EQ(mkdir(machine("/storage/uDisk1"), 0755), 0);
        ASSERT_TRUE(!isInOwnWorld() || mount("disk", "/storage/uDisk1", "tmpfs", 0, nullptr) == 0);
        QFile file(machine("/storage/uDisk1/film.mp4"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(film), film.size());
    }
    // Though the copy has a file of it open, as with a stick that is pulled.
    void go() const
    {
        ASSERT_EQ(isInOwnWorld() ? umount2("/storage/uDisk1", MNT_DETACH)
                                 : rename(machine("/storage/uDisk1"), machine("/gone")),
                  0);
    }
    bool isImported() const { return access(machine("/rundata/media/video/film.mp4"), F_OK) == 0; }
};

TEST_F(MountedImport, AFileOfAMountedDiskArrives)
{
    if (hasRunInOwnWorld())
        return;
    makeWorld();
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
    if (hasRunInOwnWorld())
        return;
    makeWorld();
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
