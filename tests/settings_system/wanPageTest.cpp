#include "support/host/ime.h"
#include "support/host/net.h"
#include "tests/settings_system/pageTest.h"
#include <QButtonGroup>
#include <QRadioButton>

namespace {

const QStringList kAddressKeys{"strWanIP", "strWanMask", "strWanGateway", "strWanPrimaryDNS",
                               "strWanSecondaryDNS"};

class WanPage : public PageTest
{
protected:
    void SetUp() override
    {
        PageTest::SetUp();
        writeFile(SYSTEM_FILE,
                  "[Network]\neWANType=2\nstrPPPoEUser=\nstrPPPoEPin=\nstrWanIP=192.168.1.20\n"
                  "strWanMask=255.255.255.0\nstrWanGateway=192.168.1.1\nstrWanPrimaryDNS=192.168.1.1\n"
                  "strWanSecondaryDNS=9.9.9.9\n[VLAN]\nbEnable=1\n");
        netWorld().state = 2;
    }

    QWidget* openWan() { return page = open("WAN"); }
    void choose(const char* radio) { kit::tap(child<QRadioButton>(page, radio)); }
    void save() { softKey(page, 0); }
    static QString network(const char* key) { return stored(SYSTEM_FILE, "Network", key); }
    static QString vlan() { return stored(SYSTEM_FILE, "VLAN", "bEnable"); }

    void expectRefused(const char* message, const char* focus)
    {
        expectSaveRefused(page, SYSTEM_FILE, message, focus);
        EXPECT_TRUE(logged("reboot").isEmpty());
    }

    void expectSaved(const QString& answer = "no")
    {
        kit::BoxAnswers boxes({answer});
        save();
        EXPECT_EQ(boxes.titles(), QStringList{"Warning"});
        EXPECT_EQ(boxes.texts(), QStringList{"Network configuration has changed, reboot system?"});
        EXPECT_FALSE(page->isVisible());
    }

    QWidget* page = nullptr;
};

} // namespace

TEST_F(WanPage, OpensByNameWithTheStoredValuesAndTheFocusOnDhcp)
{
    openWan();
    EXPECT_STREQ(page->metaObject()->className(), "dlgWan");
    EXPECT_EQ(page->geometry(), QRect(0, 0, 800, 480));
    EXPECT_TRUE(child<QRadioButton>(page, "radBtnStaticIp")->isChecked());
    EXPECT_EQ(child<QLineEdit>(page, "editIPAddress")->text(), "192.168.1.20");
    EXPECT_EQ(child<QLineEdit>(page, "editDNS2")->text(), "9.9.9.9");
    EXPECT_EQ(focusName(), "radBtnDHCP");
    kit::shot("wan-opened");
}

TEST_F(WanPage, CarriesItsTitlesAndAllFourSoftKeys)
{
    openWan();
    EXPECT_EQ(page->findChild<qTopBar*>()->title(), "WAN");
    EXPECT_EQ(page->findChild<qLeftBar*>()->title(), "Account");
    qSoftKeyBar* keys = page->findChild<qSoftKeyBar*>();
    EXPECT_EQ(keys->GetButton(0)->name(), "Save");
    EXPECT_EQ(keys->GetButton(1)->name(), "IME");
    EXPECT_EQ(keys->GetButton(2)->name(), "Delete");
    EXPECT_EQ(keys->GetButton(3)->name(), "Back");
}

TEST_F(WanPage, AMenusInfoReplacesTheFirstLeftBarTitle)
{
    settingOpenPage(chString("WAN"),
                    tagLeftBarInfo{"/phone/resource/theme/default/bmp/menu/menu_wan.png", "WAN"}, nullptr);
    kit::settle();
    EXPECT_EQ(kit::windows().value(0)->findChild<qLeftBar*>()->title(), "WAN");
}

TEST_F(WanPage, AnAbsentTypeIsDhcp)
{
    writeFile(SYSTEM_FILE, "");
    openWan();
    EXPECT_TRUE(child<QRadioButton>(page, "radBtnDHCP")->isChecked());
}

TEST_F(WanPage, TheRadiosAreOneGroupWithTheIdsOfTheirTypes)
{
    openWan();
    QButtonGroup* group = child<QRadioButton>(page, "radBtnDHCP")->group();
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->id(child<QRadioButton>(page, "radBtnDHCP")), 0);
    EXPECT_EQ(group->id(child<QRadioButton>(page, "radBtnPPPoE")), 1);
    EXPECT_EQ(group->id(child<QRadioButton>(page, "radBtnStaticIp")), 2);
}

TEST_F(WanPage, EntriesHaveTheirInputMethodsAndLengths)
{
    openWan();
    for (const char* name : {"editUserName", "editPassword"})
        EXPECT_EQ(qGetCurrentIME(child<QLineEdit>(page, name)), "2aB") << name;
    for (const char* name : {"editIPAddress", "editMASK", "editGateway", "editDNS1", "editDNS2"}) {
        EXPECT_EQ(qGetCurrentIME(child<QLineEdit>(page, name)), "123_IP") << name;
        EXPECT_EQ(child<QLineEdit>(page, name)->maxLength(), 99) << name;
    }
    EXPECT_EQ(child<QLineEdit>(page, "editUserName")->maxLength(), 99);
    EXPECT_EQ(child<QLineEdit>(page, "editPassword")->maxLength(), QLineEdit().maxLength());
}

TEST_F(WanPage, TheHiddenPasswordKeepsItsInputMethods)
{
    openWan();
    QLineEdit* password = child<QLineEdit>(page, "editPassword");
    EXPECT_EQ(password->echoMode(), QLineEdit::Password);
    EXPECT_TRUE(password->testAttribute(Qt::WA_InputMethodEnabled));
    kit::tap(password);
    kit::padKey('2');
    kit::stepTime(1500);
    EXPECT_EQ(password->text(), "A");
}

TEST_F(WanPage, TheInputMethodsStartAnewAtEachShow)
{
    openWan();
    qSetCurrentIME(child<QLineEdit>(page, "editUserName"), "123");
    softKey(page, 3);
    openWan();
    EXPECT_EQ(qGetCurrentIME(child<QLineEdit>(page, "editUserName")), "2aB");
}

TEST_F(WanPage, TheImeKeyFollowsTheFocus)
{
    openWan();
    kit::tap(child<QLineEdit>(page, "editUserName"));
    EXPECT_EQ(page->findChild<qSoftKeyBar*>()->GetButtonTitle(1), "2aB");
    kit::tap(child<QLineEdit>(page, "editMASK"));
    EXPECT_EQ(page->findChild<qSoftKeyBar*>()->GetButtonTitle(1), "123_IP");
    kit::tap(child<QLineEdit>(page, "editUserName"));
    softKey(page, 1);
    EXPECT_EQ(page->findChild<qSoftKeyBar*>()->GetButtonTitle(1), "ABC");
}

TEST_F(WanPage, DeleteRemovesTheCharacterBeforeTheCursor)
{
    openWan();
    kit::tap(child<QLineEdit>(page, "editMASK"));
    child<QLineEdit>(page, "editMASK")->setCursorPosition(3);
    softKey(page, 2);
    EXPECT_EQ(child<QLineEdit>(page, "editMASK")->text(), "25.255.255.0");
}

TEST_F(WanPage, TheTabOrderGoesFromTheUserNameOverThePasswordToStaticIp)
{
    openWan();
    kit::tap(child<QLineEdit>(page, "editUserName"));
    kit::key(Qt::Key_Down);
    EXPECT_EQ(focusName(), "editPassword");
    kit::key(Qt::Key_Down);
    EXPECT_EQ(focusName(), "radBtnStaticIp");
}

TEST_F(WanPage, EveryRadioIsReachedByTheArrows)
{
    openWan();
    QStringList seen;
    for (int i = 0; i < 10; ++i) {
        seen.append(focusName());
        kit::key(Qt::Key_Down);
    }
    EXPECT_EQ(seen,
              (QStringList{"radBtnDHCP", "radBtnPPPoE", "editUserName", "editPassword", "radBtnStaticIp",
                           "editIPAddress", "editMASK", "editGateway", "editDNS1", "editDNS2"}));
    EXPECT_EQ(focusName(), "radBtnDHCP");
}

TEST_F(WanPage, OkChoosesTheRadioUnderTheFocus)
{
    openWan();
    kit::key(Qt::Key_Down);
    kit::key(Qt::Key_Return);
    EXPECT_TRUE(child<QRadioButton>(page, "radBtnPPPoE")->isChecked());
    EXPECT_TRUE(page->isVisible());
}

TEST_F(WanPage, BackDropsWhatWasEntered)
{
    openWan();
    enter(page, "editIPAddress", "10.0.0.9");
    choose("radBtnDHCP");
    softKey(page, 3);
    EXPECT_FALSE(page->isVisible());
    EXPECT_EQ(network("strWanIP"), "192.168.1.20");
    openWan();
    EXPECT_EQ(child<QLineEdit>(page, "editIPAddress")->text(), "192.168.1.20");
    EXPECT_TRUE(child<QRadioButton>(page, "radBtnStaticIp")->isChecked());
}

TEST_F(WanPage, DhcpNeedsNoChecks)
{
    openWan();
    choose("radBtnDHCP");
    enter(page, "editIPAddress", "");
    enter(page, "editMASK", "nonsense");
    expectSaved();
    EXPECT_EQ(network("eWANType"), "0");
    EXPECT_EQ(network("strWanIP"), "");
    EXPECT_EQ(network("strWanMask"), "nonsense");
    EXPECT_EQ(vlan(), "1");
}

TEST_F(WanPage, PppoeChecksInItsOrder)
{
    openWan();
    choose("radBtnPPPoE");
    expectRefused("User name is invalid!", "editUserName");
    enter(page, "editUserName", "bad\"name");
    expectRefused("Password is invalid!", "editPassword");
    enter(page, "editPassword", "secret");
    expectRefused("User name is invalid!", "editUserName");
    EXPECT_EQ(vlan(), "1");
    enter(page, "editUserName", "anna");
    expectSaved();
    EXPECT_EQ(network("eWANType"), "1");
    EXPECT_EQ(network("strPPPoEUser"), "anna");
    EXPECT_EQ(network("strPPPoEPin"), "secret");
}

TEST_F(WanPage, AnUnchangedBadPppoeUserPasses)
{
    nuxSetRegistryString(SYSTEM_FILE, "Network", "strPPPoEUser", "bad\"name");
    nuxSetRegistryString(SYSTEM_FILE, "Network", "strPPPoEPin", "secret");
    openWan();
    choose("radBtnPPPoE");
    expectSaved();
}

TEST_F(WanPage, AnUnchangedBadPppoePasswordIsRefused)
{
    nuxSetRegistryString(SYSTEM_FILE, "Network", "strPPPoEUser", "anna");
    openWan();
    choose("radBtnPPPoE");
    expectRefused("Password is invalid!", "editPassword");
}

TEST_F(WanPage, PppoeSwitchesVlanOffWithoutAsking)
{
    openWan();
    choose("radBtnPPPoE");
    enter(page, "editUserName", "anna");
    enter(page, "editPassword", "secret");
    expectSaved();
    EXPECT_EQ(vlan(), "0");
}

TEST_F(WanPage, PppoeSwitchesVlanOffWhereNobodySetIt)
{
    writeFile(SYSTEM_FILE, "[Network]\neWANType=1\nstrPPPoEUser=anna\nstrPPPoEPin=secret\n");
    openWan();
    expectSaved();
    EXPECT_EQ(vlan(), "0");
}

TEST_F(WanPage, StaticIpChecksInItsOrder)
{
    netWorld().usedAddresses = QStringList{"10.0.0.7"};
    openWan();
    for (const char* name : {"editIPAddress", "editMASK", "editGateway", "editDNS1", "editDNS2"})
        enter(page, name, "300.1");
    expectRefused("IP address is invalid!", "editIPAddress");
    enter(page, "editIPAddress", "10.0.0.7");
    expectRefused("Ip Address is used!", "editIPAddress");
    enter(page, "editIPAddress", "10.0.0.8");
    expectRefused("Subnet mask is invalid!", "editMASK");
    enter(page, "editMASK", "255.0.0.0");
    expectRefused("Gateway is invalid!", "editGateway");
    enter(page, "editGateway", "10.0.0.1");
    expectRefused("DNS1 is invalid!", "editDNS1");
    enter(page, "editDNS1", "10.0.0.1");
    expectRefused("DNS2 is invalid!", "editDNS2");
    enter(page, "editDNS2", "10.0.0.2");
    expectSaved();
    QStringList values;
    for (const QString& key : kAddressKeys)
        values.append(network(key.toLatin1().constData()));
    EXPECT_EQ(values, (QStringList{"10.0.0.8", "255.0.0.0", "10.0.0.1", "10.0.0.1", "10.0.0.2"}));
}

TEST_F(WanPage, EveryStaticEntryIsMandatory)
{
    openWan();
    const std::pair<const char*, const char*> entries[] = {{"editIPAddress", "IP address is invalid!"},
                                                           {"editMASK", "Subnet mask is invalid!"},
                                                           {"editGateway", "Gateway is invalid!"},
                                                           {"editDNS1", "DNS1 is invalid!"},
                                                           {"editDNS2", "DNS2 is invalid!"}};
    for (const auto& [edit, message] : entries) {
        const QString before = child<QLineEdit>(page, edit)->text();
        enter(page, edit, "");
        expectRefused(message, edit);
        enter(page, edit, before);
    }
}

TEST_F(WanPage, StaticAddressInUseIsRefusedEvenIfUnchanged)
{
    netWorld().usedAddresses = QStringList{"192.168.1.20"};
    openWan();
    expectRefused("Ip Address is used!", "editIPAddress");
}

TEST_F(WanPage, AnUnchangedStoredMaskPassesThoughItIsInvalid)
{
    nuxSetRegistryString(SYSTEM_FILE, "Network", "strWanMask", "255.0.255.0");
    openWan();
    expectSaved();
    EXPECT_EQ(network("strWanMask"), "255.0.255.0");
}

TEST_F(WanPage, TheQuestionComesWithoutAnyChangeToo)
{
    openWan();
    expectSaved();
    EXPECT_TRUE(logged("broadcast").isEmpty());
}

TEST_F(WanPage, YesRebootsAndNoDoesNot)
{
    openWan();
    expectSaved("no");
    EXPECT_TRUE(logged("reboot").isEmpty());
    openWan();
    expectSaved("yes");
    EXPECT_EQ(logged("reboot").size(), 1);
}

TEST_F(WanPage, NoStoresAndFlushesUnlessTheNetworkIsUp)
{
    openWan();
    enter(page, "editIPAddress", "192.168.1.21");
    expectSaved("no");
    EXPECT_EQ(network("strWanIP"), "192.168.1.21");
    EXPECT_TRUE(logged("flush").isEmpty());

    netWorld().state = 1;
    openWan();
    enter(page, "editIPAddress", "192.168.1.22");
    expectSaved("no");
    EXPECT_EQ(network("strWanIP"), "192.168.1.22");
    EXPECT_EQ(logged("flush").size(), 1);
}

TEST_F(WanPage, YesFlushesAsWellWhileTheNetworkIsDown)
{
    netWorld().state = 0;
    openWan();
    expectSaved("yes");
    EXPECT_EQ(logged("reboot").size(), 1);
    EXPECT_EQ(logged("flush").size(), 1);
}

TEST_F(WanPage, OpeningWithDhcpAndAutoWriteStoresTheLiveAddress)
{
    nuxSetRegistryString(SYSTEM_FILE, "Network", "eWANType", "0");
    nuxSetRegistryString(SYSTEM_FILE, "Network", "bAutoWriteWanIp", "1");
    for (const QString& key : kAddressKeys)
        nuxSetRegistryString(SYSTEM_FILE, "Network", fromQString(key).GetText(), "240.0.0.9");
    openWan();
    const QString live = toQString(addr2String(netGetLocalIPv4()));
    EXPECT_EQ(child<QLineEdit>(page, "editIPAddress")->text(), live);
    EXPECT_EQ(network("strWanIP"), live);
    EXPECT_EQ(network("strWanMask"), toQString(addr2String(netGetWanNetmask())));
    EXPECT_EQ(network("strWanGateway"), toQString(addr2String(netGetWanGateway())));
    EXPECT_EQ(network("strWanPrimaryDNS"), toQString(addr2String(netGetWanPrimaryDNS())));
    EXPECT_EQ(network("strWanSecondaryDNS"), toQString(addr2String(netGetWanSecondaryDNS())));
    EXPECT_EQ(network("eWANType"), "0");
}

TEST_F(WanPage, AStaticAddressIsNotOverwrittenByAutoWrite)
{
    nuxSetRegistryString(SYSTEM_FILE, "Network", "bAutoWriteWanIp", "1");
    openWan();
    EXPECT_EQ(network("strWanIP"), "192.168.1.20");
}

TEST_F(WanPage, WithoutAutoWriteTheStoredAddressStays)
{
    nuxSetRegistryString(SYSTEM_FILE, "Network", "eWANType", "0");
    openWan();
    EXPECT_EQ(network("strWanIP"), "192.168.1.20");
}

TEST_F(WanPage, TracesItsFilter)
{
    openWan();
    EXPECT_EQ(logged("trace").filter("-----dlgWan installEventFilter----------").size(), 1);
    softKey(page, 3);
    EXPECT_EQ(logged("trace").filter("-----dlgWan removeEventFilter----------").size(), 1);
}
