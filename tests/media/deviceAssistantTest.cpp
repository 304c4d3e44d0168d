#include "media/DeviceAssistant.h"
#include "host/services/storage/storageWorld.h"
#include "tests/media/mediaTest.h"
#include <QDir>
#include <memory>

namespace {

// A page: what it hears makes it refresh its assistant.
class Page : public chMsgProcesser
{
public:
    int TryThreadMessage(msgObject& msg) override
    {
        if (msg.message != DEVICE_MSG_EVENT)
            return 0;
        heard.append(msg.wParam);
        if (msg.wParam == DEVICE_EVENT_REFRESH && refreshes)
            refreshes->Refresh();
        return 1;
    }
    QList<unsigned> heard;
    DeviceAssistant* refreshes = nullptr;
};

class Devices : public MediaTest
{
protected:
    QString folder(const char* name)
    {
        QDir(m_disks.path()).mkpath(name);
        return m_disks.filePath(name);
    }
    void plug(const char* name)
    {
        EXPECT_FALSE(storageWorldPlug(STORAGE_USB, folder(name)).isEmpty());
        kit::settle();
    }
    void unplug(const char* name)
    {
        EXPECT_EQ(storageWorldUnplug(folder(name)), 1);
        kit::settle();
    }
    // From here on only the notices on the disks' own paths are left.
    void hearOnlyOwnPaths(DeviceAssistant& assistant)
    {
        assistant.UnRegister("/storage");
        page.heard.clear();
    }

    Page page;
    QTemporaryDir m_disks;
};

const unsigned kCame = DEVICE_EVENT_REFRESH;
const unsigned kWent = DEVICE_EVENT_REMOVE;

TEST_F(Devices, APageHearsOfDisksThatComeAndGo)
{
    DeviceAssistant assistant(&page);
    page.refreshes = &assistant;
    plug("A");
    unplug("A");
    plug("B");
    EXPECT_EQ(page.heard, QList<unsigned>({kCame, kWent, kCame}));
}

TEST_F(Devices, DisksThatAreThereAtTheStartAreNoticedOnTheirOwnPaths)
{
    plug("A");
    DeviceAssistant assistant(&page);
    hearOnlyOwnPaths(assistant);
    unplug("A");
    EXPECT_EQ(page.heard, QList<unsigned>{kWent});
}

TEST_F(Devices, ANewDiskIsRegisteredByARefresh)
{
    DeviceAssistant assistant(&page);
    plug("A");
    assistant.Refresh();
    hearOnlyOwnPaths(assistant);
    unplug("A");
    EXPECT_EQ(page.heard, QList<unsigned>{kWent});
}

TEST_F(Devices, WithoutARefreshANewDiskHasNoNoticeOfItsOwn)
{
    DeviceAssistant assistant(&page);
    plug("A");
    hearOnlyOwnPaths(assistant);
    unplug("A");
    EXPECT_TRUE(page.heard.isEmpty());
}

TEST_F(Devices, ADiskThatWentIsUnregisteredByARefresh)
{
    plug("A");
    plug("B");
    DeviceAssistant assistant(&page);
    unplug("A");
    assistant.Refresh();
    hearOnlyOwnPaths(assistant);
    plug("A");
    EXPECT_TRUE(page.heard.isEmpty()) << "the path of the disk that went";
    unplug("B");
    EXPECT_EQ(page.heard, QList<unsigned>{kWent});
}

// One went and another came: the old path is dropped, the new one waits for the next refresh.
TEST_F(Devices, WithAnEqualCountTheOldPathIsDropped)
{
    plug("A"); // usb1
    plug("B"); // usb2
    DeviceAssistant assistant(&page);
    storageWorldUnplug(folder("A"));
    EXPECT_EQ(storageWorldPlug(STORAGE_SD, folder("C")), "/storage/sdCard1");
    kit::settle();
    assistant.Refresh();
    hearOnlyOwnPaths(assistant);
    plug("A");
    EXPECT_TRUE(page.heard.isEmpty());
    storageWorldUnplug(folder("C"));
    kit::settle();
    EXPECT_TRUE(page.heard.isEmpty()) << "a new path is not registered then";
}

TEST_F(Devices, TheEndTakesThePageOffEveryList)
{
    plug("A");
    auto assistant = std::make_unique<DeviceAssistant>(&page);
    plug("B");
    assistant->Refresh();
    page.heard.clear();
    assistant.reset();
    unplug("A");
    unplug("B");
    plug("C");
    EXPECT_TRUE(page.heard.isEmpty());
}

} // namespace
