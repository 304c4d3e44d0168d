// A page and a disk that the system mounts. Where a machine allows nobody a world of its own, a folder that
// another program makes stands for the disk.
#include "media/DeviceAssistant.h"
#include "support/host/storage.h"
#include "tests/media/mediaTest.h"
#include "tests/media/ownWorld.h"
#include <QDir>
#include <sys/mount.h>
#include <sys/stat.h>

namespace {

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
    bool come() const
    {
        if (!ownWorld::isInside())
            return QDir().mkdir(hostPath("/storage/uDisk1"));
        return mkdir("/storage/uDisk1", 0755) == 0 &&
               mount("disk", "/storage/uDisk1", "tmpfs", 0, nullptr) == 0;
    }
    bool go() const
    {
        return ownWorld::isInside() ? umount("/storage/uDisk1") == 0
                                    : QDir().rmdir(hostPath("/storage/uDisk1"));
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
    if (ownWorld::hasRun())
        return;
    ownWorld::make(root().toUtf8());
    followADisk();
}

} // namespace
