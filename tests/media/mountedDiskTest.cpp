// A page and a disk that the system mounts. Mounting needs a world of its own: the test starts itself again
// in a mount namespace, where a folder becomes the whole device. Where a machine allows nobody that, a folder
// that another program makes stands for the disk.
#include "media/DeviceAssistant.h"
#include "support/file/deviceRoot.h"
#include "support/host/storage.h"
#include "tests/media/mediaTest.h"
#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char* const kOwnWorld = "HX_TEST_MOUNTS";

class Page : public chMsgProcesser
{
public:
    int TryThreadMessage(msgObject& msg) override
    {
        heard.append(msg.wParam);
        return msg.message == DEVICE_MSG_EVENT;
    }
    QList<unsigned> heard;
};

class MountedDisk : public MediaTest
{
protected:
    bool isInOwnWorld() const { return qEnvironmentVariableIsSet(kOwnWorld); }
    static bool canHaveOwnWorld()
    {
        return QProcess::execute("unshare", {"--map-root-user", "--mount", "true"}) == 0;
    }
    static int runInOwnWorld(const char* test)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(kOwnWorld, "1");
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        process.start("unshare", {"--map-root-user", "--mount", QCoreApplication::applicationFilePath(),
                                  QString("--gtest_filter=") + test});
        EXPECT_TRUE(process.waitForFinished(60000));
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
    void makeWorld()
    {
        const QByteArray world = root().toUtf8();
        ASSERT_EQ(mkdir(world + "/proc", 0755), 0);
        ASSERT_EQ(mount("/proc", world + "/proc", nullptr, MS_BIND | MS_REC, nullptr), 0);
        ASSERT_EQ(chroot(world), 0);
        ASSERT_EQ(chdir("/"), 0);
        deviceSetRoot("");
    }
    bool come() const
    {
        if (!isInOwnWorld())
            return QDir().mkdir(hostPath("/storage/uDisk1"));
        return mkdir("/storage/uDisk1", 0755) == 0 &&
               mount("disk", "/storage/uDisk1", "tmpfs", 0, nullptr) == 0;
    }
    bool go() const
    {
        return isInOwnWorld() ? umount("/storage/uDisk1") == 0 : QDir().rmdir(hostPath("/storage/uDisk1"));
    }
    void followADisk() const
    {
        Page page;
        DeviceAssistant assistant(&page);
        EXPECT_FALSE(IsExistCurrentStorage("/storage/uDisk1/a.jpg"));
        ASSERT_TRUE(come());
        EXPECT_TRUE(kit::waitUntil([&] { return !page.heard.isEmpty(); })) << "nobody asked for the disks";
        EXPECT_EQ(page.heard, QList<unsigned>{DEVICE_EVENT_REFRESH});
        assistant.Refresh();
        EXPECT_TRUE(IsExistCurrentStorage("/storage/uDisk1/a.jpg"));
        EXPECT_EQ(device_GetStorageCount(STORAGE_USB), 1);
        page.heard.clear();
        ASSERT_TRUE(go());
        EXPECT_TRUE(kit::waitUntil([&] { return !page.heard.isEmpty(); }));
        EXPECT_EQ(page.heard, QList<unsigned>{DEVICE_EVENT_REMOVE});
        EXPECT_FALSE(IsExistCurrentStorage("/storage/uDisk1/a.jpg"));
    }
};

TEST_F(MountedDisk, IsNoticedByAPageWithoutAsking)
{
    if (!isInOwnWorld() && canHaveOwnWorld()) {
        EXPECT_EQ(runInOwnWorld("MountedDisk.IsNoticedByAPageWithoutAsking"), 0);
        return;
    }
    if (isInOwnWorld())
        makeWorld();
    followADisk();
}

} // namespace
