#include "support/host/managers.h"
#include "host/services/system/hostLog.h"
#include "support/host/message.h"
#include "support/host/module.h"
#include "support/host/registry.h"
#include "tests/kit/phoneTest.h"

namespace {

const char kKeys[] = "/rundata/data/dsskey.xml";
const char kUserConfig[] = "/rundata/config/user/user.ini";

QStringList g_refreshed;

class Managers : public PhoneTest
{
protected:
    Managers()
    {
        g_refreshed.clear();
        tagModuleEntries entries;
        entries.refreshMenu = [](const chString& file) { g_refreshed.append(QString(file.GetText())); };
        hostSetModule(entries);
    }
    ~Managers() override { hostSetModule(tagModuleEntries()); }
};

TEST_F(Managers, ModuleEntriesAreNullUntilTheyAreHandedOver)
{
    hostSetModule(tagModuleEntries());
    EXPECT_EQ(hostModule().openPage, nullptr);
    EXPECT_EQ(hostModule().iconView, nullptr);
}

TEST_F(Managers, ModuleEntriesAreCopied)
{
    {
        tagModuleEntries entries;
        entries.openFrame = [](const chString&) { return 7; };
        hostSetModule(entries);
        entries.openFrame = nullptr;
    }
    EXPECT_EQ(hostModule().openFrame(chString("Directory")), 7);
}

TEST_F(Managers, FactoryKeyFileHasTwentyKeys)
{
    EXPECT_EQ(GetDssKeyManager()->LoadFile(kKeys, 0), 1);
    EXPECT_EQ(GetDssKeyManager()->GetKeyCount(), 20);
}

TEST_F(Managers, KeysAreTheItemsOfTheFile)
{
    writeFile(
        kKeys,
        "<DssKey><Item Type=\"N/A\"/><note/><Item Type=\"Line\"><ItemData Line=\"0\"/></Item></DssKey>");
    EXPECT_EQ(GetDssKeyManager()->LoadFile(kKeys, 0), 1);
    EXPECT_EQ(GetDssKeyManager()->GetKeyCount(), 2);
}

TEST_F(Managers, BrokenKeyFileLeavesTheKeysAsTheyWere)
{
    GetDssKeyManager()->LoadFile(kKeys, 0);
    writeFile(kKeys, "<DssKey><Item");
    EXPECT_EQ(GetDssKeyManager()->LoadFile(kKeys, 0), 0);
    writeFile(kKeys, "<Other/>");
    EXPECT_EQ(GetDssKeyManager()->LoadFile(kKeys, 0), 0);
    EXPECT_EQ(GetDssKeyManager()->LoadFile("/rundata/none.xml", 0), 0);
    EXPECT_EQ(GetDssKeyManager()->LoadFile(nullptr, 0), 0);
    EXPECT_EQ(GetDssKeyManager()->GetKeyCount(), 20);
}

TEST_F(Managers, GeneratedMenusAreRefreshedByTheirManagers)
{
    GetIPCameraIconViewManager()->RefreshIPCameraIconView();
    GetDoorPhoneIconViewManager()->RefreshIconView();
    EXPECT_EQ(g_refreshed, (QStringList{"ipcameradata.xml", "doorphonedata.xml"}));
}

TEST_F(Managers, DevicesAreReadWhenTheyAreAskedForAndWhenAChangeIsTold)
{
    const char doors[] = "/rundata/data/doorphonedata.xml";
    writeFile(doors, "<DoorPhone><a title='Door Phone 1'><DisplayName>Gate</DisplayName><PhoneNumber>81"
                     "</PhoneNumber><UnlockPIN>7</UnlockPIN><RefuseNewIncall>1</RefuseNewIncall>"
                     "<FullScreen>1</FullScreen></a><b title='Door Phone 2'/></DoorPhone>");
    const QList<DoorPhoneIconViewItem*>& items = GetDoorPhoneIconViewManager()->GetItems();
    ASSERT_EQ(items.size(), 2);
    EXPECT_STREQ(items[0]->m_strTitle, "Door Phone 1");
    EXPECT_STREQ(items[0]->m_strDisplayName, "Gate");
    EXPECT_STREQ(items[0]->m_strPhoneNumber, "81");
    EXPECT_STREQ(items[0]->m_strUnlockPIN, "7");
    EXPECT_TRUE(items[0]->m_bRefuseNewIncall && items[0]->m_bFullScreen);
    EXPECT_FALSE(items[1]->m_bRefuseNewIncall || items[1]->m_bFullScreen);
    writeFile(doors, "<DoorPhone><a title='Door Phone 1'/></DoorPhone>");
    EXPECT_EQ(GetDoorPhoneIconViewManager()->GetItems().size(), 2) << "nobody has told";
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_IP_CAMERA, 0);
    kit::settle();
    EXPECT_EQ(GetDoorPhoneIconViewManager()->GetItems().size(), 2) << "nor of that";
    EXPECT_FALSE(g_refreshed.contains("doorphonedata.xml"));
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_DOOR_PHONE, 0);
    kit::settle();
    EXPECT_EQ(GetDoorPhoneIconViewManager()->GetItems().size(), 1);
    EXPECT_TRUE(g_refreshed.contains("doorphonedata.xml"));
    writeFile(doors, "<DoorPhone><a");
    GetDoorPhoneIconViewManager()->RefreshIconView();
    EXPECT_EQ(GetDoorPhoneIconViewManager()->GetItems().size(), 1) << "a broken file leaves them";
}

TEST_F(Managers, CamerasHaveTheirValuesAndTheirPlaceInTheFile)
{
    writeFile("/rundata/data/ipcameradata.xml",
              "<IPCamera><item title='A'/><note/><item title='B'><DeviceModel>1</DeviceModel><Account>2"
              "</Account><AccessPIN>9</AccessPIN><Fullscreen>1</Fullscreen><Notsendvideo>2</Notsendvideo>"
              "<Notsendaudio>0</Notsendaudio></item></IPCamera>");
    const QList<IPCameraIconViewItem*>& items = GetIPCameraIconViewManager()->GetItems();
    ASSERT_EQ(items.size(), 2);
    EXPECT_EQ(items[0]->m_iAccount, -1);
    EXPECT_EQ(items[0]->m_iIndex, 0);
    EXPECT_EQ(items[1]->m_iIndex, 1);
    EXPECT_EQ(items[1]->m_iAccount, 2);
    EXPECT_EQ(items[1]->m_iDeviceModel, 1);
    EXPECT_STREQ(items[1]->m_strAccessPIN, "9");
    EXPECT_TRUE(items[1]->m_bFullscreen && items[1]->m_bNotSendVideo);
    EXPECT_FALSE(items[1]->m_bNotSendAudio);
}

TEST_F(Managers, RefreshThatComesBackToItsManagerEnds)
{
    tagModuleEntries entries;
    entries.refreshMenu = [](const chString& file) {
        g_refreshed.append(QString(file.GetText()));
        GetIPCameraIconViewManager()->RefreshIPCameraIconView();
    };
    hostSetModule(entries);
    GetIPCameraIconViewManager()->RefreshIPCameraIconView();
    GetIPCameraIconViewManager()->RefreshIPCameraIconView();
    EXPECT_EQ(g_refreshed.size(), 2);
}

TEST_F(Managers, RefreshWithoutAModuleDoesNothing)
{
    hostSetModule(tagModuleEntries());
    GetIPCameraIconViewManager()->RefreshIPCameraIconView();
    GetDoorPhoneIconViewManager()->RefreshIconView();
    EXPECT_TRUE(g_refreshed.isEmpty());
}

TEST_F(Managers, ManagersAreTheSameAtEveryCall)
{
    EXPECT_EQ(GetDssKeyManager(), GetDssKeyManager());
    EXPECT_EQ(GetIPCameraIconViewManager(), GetIPCameraIconViewManager());
    EXPECT_EQ(GetDoorPhoneIconViewManager(), GetDoorPhoneIconViewManager());
}

} // namespace
