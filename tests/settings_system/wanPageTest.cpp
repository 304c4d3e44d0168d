#include "frame/modSetting.h"
#include "host/services/system/netWorld.h"
#include "settings/system/dlgWan.h"
#include "support/host/ime.h"
#include "support/host/net.h"
#include "tests/settings_system/systemPageTest.h"
#include <QButtonGroup>
#include <QRadioButton>
#include <arpa/inet.h>

namespace {

const QStringList kAddressKeys{"strWanIP", "strWanMask", "strWanGateway", "strWanPrimaryDNS",
                               "strWanSecondaryDNS"};

class WanPage : public SystemPageTest
{
protected:
    void SetUp() override
    {
        writeFile(SYSTEM_FILE,
                  "[Network]\neWANType=2\nstrPPPoEUser=\nstrPPPoEPin=\nstrWanIP=192.168.1.20\n"
                  "strWanMask=255.255.255.0\nstrWanGateway=192.168.1.1\nstrWanPrimaryDNS=192.168.1.1\n"
                  "strWanSecondaryDNS=9.9.9.9\n[VLAN]\nbEnable=1\n");
        netWorld().state = 2;
    }

    QWidget* openWan() { return open("WAN"); }
    void chooseType(const char* radio) { kit::tap(child<QRadioButton>(radio)); }
    static QString network(const char* key) { return stored(SYSTEM_FILE, "Network", key); }
    static QString vlan() { return stored(SYSTEM_FILE, "VLAN", "bEnable"); }

    void expectRefused(const char* message, const char* focus)
    {
        PageTest::expectRefused(SYSTEM_FILE, message, focus);
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
};

// Some toolkits take its input methods from an edit whose text is hidden. The one in use does not: while this
// is set, the linker leads the calls to one that does.
bool s_bEchoEndsInput = false;

} // namespace

extern "C" void __real__ZN9QLineEdit11setEchoModeENS_8EchoModeE(QLineEdit* edit, QLineEdit::EchoMode mode);
extern "C" void __wrap__ZN9QLineEdit11setEchoModeENS_8EchoModeE(QLineEdit* edit, QLineEdit::EchoMode mode)
{
    __real__ZN9QLineEdit11setEchoModeENS_8EchoModeE(edit, mode);
    if (s_bEchoEndsInput)
        edit->setAttribute(Qt::WA_InputMethodEnabled, mode == QLineEdit::Normal);
}

TEST_F(WanPage, OpensByNameWithTheStoredValuesAndTheFocusOnDhcp)
{
    openWan();
    EXPECT_STREQ(page->metaObject()->className(), "dlgWan");
    EXPECT_EQ(page->geometry(), QRect(0, 0, 800, 480));
    EXPECT_TRUE(child<QRadioButton>("radBtnStaticIp")->isChecked());
    EXPECT_EQ(child<QLineEdit>("editIPAddress")->text(), "192.168.1.20");
    EXPECT_EQ(child<QLineEdit>("editDNS2")->text(), "9.9.9.9");
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
    EXPECT_TRUE(child<QRadioButton>("radBtnDHCP")->isChecked());
}

TEST_F(WanPage, TheRadiosAreOneGroupWithTheIdsOfTheirTypes)
{
    openWan();
    QButtonGroup* group = child<QRadioButton>("radBtnDHCP")->group();
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->id(child<QRadioButton>("radBtnDHCP")), 0);
    EXPECT_EQ(group->id(child<QRadioButton>("radBtnPPPoE")), 1);
    EXPECT_EQ(group->id(child<QRadioButton>("radBtnStaticIp")), 2);
}

TEST_F(WanPage, EntriesHaveTheirInputMethodsAndLengths)
{
    openWan();
    for (const char* name : {"editUserName", "editPassword"})
        EXPECT_EQ(qGetCurrentIME(child<QLineEdit>(name)), "2aB") << name;
    for (const char* name : {"editIPAddress", "editMASK", "editGateway", "editDNS1", "editDNS2"}) {
        EXPECT_EQ(qGetCurrentIME(child<QLineEdit>(name)), "123_IP") << name;
        EXPECT_EQ(child<QLineEdit>(name)->maxLength(), 99) << name;
    }
    EXPECT_EQ(child<QLineEdit>("editUserName")->maxLength(), 99);
    EXPECT_EQ(child<QLineEdit>("editPassword")->maxLength(), QLineEdit().maxLength());
}

TEST_F(WanPage, TheHiddenPasswordKeepsItsInputMethods)
{
    openWan();
    QLineEdit* password = child<QLineEdit>("editPassword");
    EXPECT_EQ(password->echoMode(), QLineEdit::Password);
    EXPECT_TRUE(password->testAttribute(Qt::WA_InputMethodEnabled));
    kit::tap(password);
    kit::padKey('2');
    kit::stepTime(1500);
    EXPECT_EQ(password->text(), "A");
}

TEST_F(WanPage, TheHiddenPasswordKeepsItsInputMethodsWithAToolkitThatTakesThem)
{
    s_bEchoEndsInput = true;
    dlgWan wan(nullptr, nullptr);
    s_bEchoEndsInput = false;
    show(wan);
    EXPECT_TRUE(child<QLineEdit>("editPassword")->testAttribute(Qt::WA_InputMethodEnabled));
}

TEST_F(WanPage, TheInputMethodsStartAnewAtEachShow)
{
    openWan();
    qSetCurrentIME(child<QLineEdit>("editUserName"), "123");
    back();
    openWan();
    EXPECT_EQ(qGetCurrentIME(child<QLineEdit>("editUserName")), "2aB");
}

TEST_F(WanPage, TheImeKeyFollowsTheFocus)
{
    openWan();
    kit::tap(child<QLineEdit>("editUserName"));
    EXPECT_EQ(softKeyTitle(1), "2aB");
    kit::tap(child<QLineEdit>("editMASK"));
    EXPECT_EQ(softKeyTitle(1), "123_IP");
    kit::tap(child<QLineEdit>("editUserName"));
    softKey(1);
    EXPECT_EQ(softKeyTitle(1), "ABC");
}

TEST_F(WanPage, DeleteRemovesTheCharacterBeforeTheCursor)
{
    openWan();
    kit::tap(child<QLineEdit>("editMASK"));
    child<QLineEdit>("editMASK")->setCursorPosition(3);
    softKey(2);
    EXPECT_EQ(child<QLineEdit>("editMASK")->text(), "25.255.255.0");
}

TEST_F(WanPage, TheTabOrderGoesFromTheUserNameOverThePasswordToStaticIp)
{
    openWan();
    kit::tap(child<QLineEdit>("editUserName"));
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
    EXPECT_TRUE(child<QRadioButton>("radBtnPPPoE")->isChecked());
    EXPECT_TRUE(page->isVisible());
}

TEST_F(WanPage, BackDropsWhatWasEntered)
{
    openWan();
    enter("editIPAddress", "10.0.0.9");
    chooseType("radBtnDHCP");
    back();
    EXPECT_FALSE(page->isVisible());
    EXPECT_EQ(network("strWanIP"), "192.168.1.20");
    openWan();
    EXPECT_EQ(child<QLineEdit>("editIPAddress")->text(), "192.168.1.20");
    EXPECT_TRUE(child<QRadioButton>("radBtnStaticIp")->isChecked());
}

TEST_F(WanPage, DhcpNeedsNoChecks)
{
    openWan();
    chooseType("radBtnDHCP");
    enter("editIPAddress", "");
    enter("editMASK", "nonsense");
    expectSaved();
    EXPECT_EQ(network("eWANType"), "0");
    EXPECT_EQ(network("strWanIP"), "");
    EXPECT_EQ(network("strWanMask"), "nonsense");
    EXPECT_EQ(vlan(), "1");
}

TEST_F(WanPage, PppoeChecksInItsOrder)
{
    openWan();
    chooseType("radBtnPPPoE");
    expectRefused("User name is invalid!", "editUserName");
    enter("editUserName", "bad\"name");
    expectRefused("Password is invalid!", "editPassword");
    enter("editPassword", "secret");
    expectRefused("User name is invalid!", "editUserName");
    EXPECT_EQ(vlan(), "1");
    enter("editUserName", "anna");
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
    chooseType("radBtnPPPoE");
    expectSaved();
}

TEST_F(WanPage, AnUnchangedBadPppoePasswordIsRefused)
{
    nuxSetRegistryString(SYSTEM_FILE, "Network", "strPPPoEUser", "anna");
    openWan();
    chooseType("radBtnPPPoE");
    expectRefused("Password is invalid!", "editPassword");
}

TEST_F(WanPage, PppoeSwitchesVlanOffWithoutAsking)
{
    openWan();
    chooseType("radBtnPPPoE");
    enter("editUserName", "anna");
    enter("editPassword", "secret");
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
        enter(name, "300.1");
    expectRefused("IP address is invalid!", "editIPAddress");
    enter("editIPAddress", "10.0.0.7");
    expectRefused("Ip Address is used!", "editIPAddress");
    enter("editIPAddress", "10.0.0.8");
    expectRefused("Subnet mask is invalid!", "editMASK");
    enter("editMASK", "255.0.0.0");
    expectRefused("Gateway is invalid!", "editGateway");
    enter("editGateway", "10.0.0.1");
    expectRefused("DNS1 is invalid!", "editDNS1");
    enter("editDNS1", "10.0.0.1");
    expectRefused("DNS2 is invalid!", "editDNS2");
    enter("editDNS2", "10.0.0.2");
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
        const QString before = child<QLineEdit>(edit)->text();
        enter(edit, "");
        expectRefused(message, edit);
        enter(edit, before);
    }
}

TEST_F(WanPage, StaticAddressInUseIsRefusedEvenIfUnchanged)
{
    netWorld().usedAddresses = QStringList{"192.168.1.20"};
    openWan();
    expectRefused("Ip Address is used!", "editIPAddress");
}

TEST_F(WanPage, UnchangedStoredEntriesPassThoughTheyAreInvalid)
{
    for (const QString& key : kAddressKeys)
        nuxSetRegistryString(SYSTEM_FILE, "Network", fromQString(key).GetText(), "255.0.255");
    openWan();
    expectSaved();
    for (const QString& key : kAddressKeys)
        EXPECT_EQ(network(fromQString(key).GetText()), "255.0.255") << qPrintable(key);
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
    enter("editIPAddress", "192.168.1.21");
    expectSaved("no");
    EXPECT_EQ(network("strWanIP"), "192.168.1.21");
    EXPECT_TRUE(logged("flush").isEmpty());

    netWorld().state = 1;
    openWan();
    enter("editIPAddress", "192.168.1.22");
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
    // No two are alike, so that none can stand for another.
    netWorld().address = in_addr{inet_addr("10.1.2.3")};
    netWorld().netmask = in_addr{inet_addr("255.255.248.0")};
    netWorld().gateway = in_addr{inet_addr("10.1.0.254")};
    netWorld().primaryDNS = in_addr{inet_addr("10.9.0.1")};
    netWorld().secondaryDNS = in_addr{inet_addr("10.9.0.2")};
    openWan();
    EXPECT_EQ(child<QLineEdit>("editIPAddress")->text(), "10.1.2.3");
    EXPECT_EQ(child<QLineEdit>("editMASK")->text(), "255.255.248.0");
    EXPECT_EQ(child<QLineEdit>("editGateway")->text(), "10.1.0.254");
    EXPECT_EQ(child<QLineEdit>("editDNS1")->text(), "10.9.0.1");
    EXPECT_EQ(child<QLineEdit>("editDNS2")->text(), "10.9.0.2");
    EXPECT_EQ(network("strWanIP"), "10.1.2.3");
    EXPECT_EQ(network("strWanMask"), "255.255.248.0");
    EXPECT_EQ(network("strWanGateway"), "10.1.0.254");
    EXPECT_EQ(network("strWanPrimaryDNS"), "10.9.0.1");
    EXPECT_EQ(network("strWanSecondaryDNS"), "10.9.0.2");
    EXPECT_EQ(network("eWANType"), "0");
}

TEST_F(WanPage, OpeningWithPppoeAndAutoWriteStoresTheLiveAddressToo)
{
    nuxSetRegistryString(SYSTEM_FILE, "Network", "eWANType", "1");
    nuxSetRegistryString(SYSTEM_FILE, "Network", "bAutoWriteWanIp", "1");
    netWorld().address = in_addr{inet_addr("10.1.2.3")};
    openWan();
    EXPECT_EQ(child<QLineEdit>("editIPAddress")->text(), "10.1.2.3");
    EXPECT_EQ(network("strWanIP"), "10.1.2.3");
    EXPECT_EQ(network("eWANType"), "1");
}

TEST_F(WanPage, TheStoredTypeDecidesAboutAutoWriteAndNotTheRadioThatWasLeft)
{
    nuxSetRegistryString(SYSTEM_FILE, "Network", "bAutoWriteWanIp", "1");
    netWorld().address = in_addr{inet_addr("10.1.2.3")};
    openWan();
    chooseType("radBtnDHCP");
    back();
    openWan();
    EXPECT_TRUE(child<QRadioButton>("radBtnStaticIp")->isChecked());
    EXPECT_EQ(child<QLineEdit>("editIPAddress")->text(), "192.168.1.20");
    EXPECT_EQ(network("strWanIP"), "192.168.1.20");
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
    back();
    EXPECT_EQ(logged("trace").filter("-----dlgWan removeEventFilter----------").size(), 1);
}

TEST_F(WanPage, ASaveThatFailsIsToldAndKeepsWhatWasTyped)
{
    openWan();
    enter("editIPAddress", "192.168.1.21");
    expectFailedSave(SYSTEM_FILE);
    EXPECT_EQ(child<QLineEdit>("editIPAddress")->text(), "192.168.1.21");
    EXPECT_TRUE(logged("reboot").isEmpty());
    EXPECT_TRUE(logged("flush").isEmpty());
    expectSaved();
    EXPECT_EQ(network("strWanIP"), "192.168.1.21");
}

TEST_F(WanPage, AVlanThatCannotBeSwitchedOffIsTold)
{
    openWan();
    chooseType("radBtnPPPoE");
    enter("editUserName", "anna");
    enter("editPassword", "secret");
    expectFailedSave(SYSTEM_FILE);
    EXPECT_EQ(vlan(), "1");
    expectSaved();
    EXPECT_EQ(vlan(), "0");
}
