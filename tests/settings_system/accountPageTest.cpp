#include "frame/pageLists.h"
#include "settings/system/dlgAccount_Setting.h"
#include "support/host/ime.h"
#include "tests/settings_system/systemPageTest.h"
#include <QCheckBox>

namespace {

#define ACCOUNT_FILE "/rundata/config/user/voip/sipAccount1.cfg"

class AccountPage : public SystemPageTest
{
protected:
    void SetUp() override
    {
        writeFile(ACCOUNT_FILE, "[account]\nEnable=1\nDisplayName=Anna\nAuthName=1002\nUserName=1002\n"
                                "password=secret\nSIPServerHost=sip.example.org\nSIPServerPort=5060\n"
                                "UseOutboundProxy=0\n[NAT]\nNATTraversal=0\n");
    }

    QWidget* openAccount(int index = 1)
    {
        page = PopupAccountDialog(index, 1);
        kit::settle();
        return page;
    }

    void expectRefused(const char* message, const char* focus)
    {
        PageTest::expectRefused(ACCOUNT_FILE, message, focus);
    }

    static QString account(const char* key) { return stored(ACCOUNT_FILE, "account", key); }
};

} // namespace

TEST_F(AccountPage, ShowsTheFileOfItsIndexWithTheFocusOnEnableLine)
{
    openAccount();
    EXPECT_EQ(page->findChild<qTopBar*>()->title(), "Account Setting");
    EXPECT_EQ(page->findChild<qLeftBar*>()->title(), "Account Setting");
    EXPECT_EQ(page->findChild<qLeftBar*>()->icon(),
              "/phone/resource/theme/default/bmp/menu/menu_account.png");
    EXPECT_TRUE(child<QCheckBox>("chkEnableLine")->isChecked());
    EXPECT_EQ(child<QLineEdit>("editDisplayName")->text(), "Anna");
    EXPECT_EQ(child<QLineEdit>("editServer0")->text(), "sip.example.org");
    EXPECT_EQ(focusName(), "chkEnableLine");
    kit::shot("account-opened");
}

TEST_F(AccountPage, InputMethodsAreThoseOfEachField)
{
    openAccount();
    const std::pair<const char*, const char*> methods[] = {
        {"editDisplayName", "2aB"}, {"editRegisterName", "123"}, {"editUserName", "123"},
        {"editPassword", "2aB"},    {"editServer0", "2aB"},      {"editPort0", "123"},
        {"editServer1", "2aB"},     {"editPort1", "123"},        {"editServer2", "2aB"},
        {"editPort2", "123"}};
    for (const auto& [edit, method] : methods)
        EXPECT_EQ(qGetCurrentIME(child<QLineEdit>(edit)), method) << edit;
}

TEST_F(AccountPage, NumbersStepThroughAllMethodsAndPortsHaveOne)
{
    openAccount();
    QLineEdit* user = child<QLineEdit>("editUserName");
    QStringList seen;
    for (int i = 0; i < 5; ++i) {
        seen.append(qGetCurrentIME(user));
        qShift2NextIME(user);
    }
    EXPECT_EQ(seen, (QStringList{"123", "2aB", "ABC", "abc", "123"}));
    QLineEdit* port = child<QLineEdit>("editPort0");
    qShift2NextIME(port);
    EXPECT_EQ(qGetCurrentIME(port), "123");
}

TEST_F(AccountPage, EmptyLineEntriesAreRefusedInTheirOrder)
{
    openAccount();
    for (const char* name :
         {"editDisplayName", "editRegisterName", "editUserName", "editServer0", "editPort0"})
        enter(name, "");
    expectRefused("Display name is invalid!", "editDisplayName");
    enter("editDisplayName", "Anna");
    expectRefused("Register name is invalid!", "editRegisterName");
    enter("editRegisterName", "1002");
    expectRefused("User name is invalid!", "editUserName");
    enter("editUserName", "1002");
    expectRefused("SIP proxy is invalid!", "editServer0");
    enter("editServer0", "sip.example.org");
    expectRefused("SIP proxy port is invalid!", "editPort0");
    enter("editPort0", "5061");
    expectSaved();
    EXPECT_EQ(account("SIPServerPort"), "5061");
}

TEST_F(AccountPage, ChangedBadEntriesAreRefused)
{
    openAccount();
    const std::pair<const char*, const char*> entries[] = {{"editDisplayName", "Display name is invalid!"},
                                                           {"editRegisterName", "Register name is invalid!"},
                                                           {"editUserName", "User name is invalid!"},
                                                           {"editServer0", "SIP proxy server is invalid!"},
                                                           {"editPort0", "SIP proxy port is invalid!"}};
    for (const auto& [edit, message] : entries) {
        const QString before = child<QLineEdit>(edit)->text();
        enter(edit, "bad<>name");
        expectRefused(message, edit);
        enter(edit, before);
    }
}

TEST_F(AccountPage, AChangedBadPasswordIsRefusedAndAnEmptyOneIsNot)
{
    openAccount();
    child<QLineEdit>("editPassword")->setText(QString("a") + QChar(1) + "b");
    expectRefused("Password is invalid!", "editPassword");
    enter("editPassword", "");
    expectSaved();
    EXPECT_EQ(account("password"), "");
}

TEST_F(AccountPage, UnchangedBadEntriesPass)
{
    nuxSetRegistryString(ACCOUNT_FILE, "account", "UserName", "bad<>name");
    nuxSetRegistryString(ACCOUNT_FILE, "account", "SIPServerPort", "99999");
    openAccount();
    expectSaved();
}

TEST_F(AccountPage, ADisabledLineSavesWhateverIsThere)
{
    openAccount();
    tick("chkEnableLine", false);
    enter("editDisplayName", "");
    enter("editServer0", "<>");
    enter("editPort0", "nonsense");
    expectSaved();
    EXPECT_EQ(account("Enable"), "0");
    EXPECT_EQ(account("SIPServerHost"), "<>");
    EXPECT_EQ(account("SIPServerPort"), "nonsense");
}

TEST_F(AccountPage, ADisabledLineHasItsOtherGroupsChecked)
{
    openAccount();
    tick("chkEnableLine", false);
    tick("chkEnableOutBound", true);
    enter("editServer2", "not a host");
    expectRefused("OutBound server is invalid!", "editServer2");
    tick("chkEnableStun", true);
    expectRefused("STUN server is invalid!", "editServer1");
}

TEST_F(AccountPage, StunIsCheckedWhenItIsOn)
{
    openAccount();
    enter("editPort1", "0");
    tick("chkEnableStun", true);
    expectRefused("STUN server is invalid!", "editServer1");
    enter("editServer1", "not a host");
    expectRefused("STUN server is invalid!", "editServer1");
    enter("editServer1", "stun.example.org");
    expectRefused("STUN server port is invalid!", "editPort1");
    enter("editPort1", "3478");
    expectSaved();
    EXPECT_EQ(stored(ACCOUNT_FILE, "NAT", "NATTraversal"), "1");
    EXPECT_EQ(stored(ACCOUNT_FILE, "NAT", "STUNServer"), "stun.example.org");
    EXPECT_EQ(stored(ACCOUNT_FILE, "NAT", "STUNPort"), "3478");
}

TEST_F(AccountPage, TheOutboundProxyIsCheckedWhenItIsOn)
{
    openAccount();
    tick("chkEnableOutBound", true);
    expectRefused("OutBound server is invalid!", "editServer2");
    enter("editServer2", "proxy.example.org");
    expectRefused("OutBound server port is invalid!", "editPort2");
    enter("editPort2", "70000");
    expectRefused("OutBound server port is invalid!", "editPort2");
    enter("editPort2", "5060");
    expectSaved();
    EXPECT_EQ(account("UseOutboundProxy"), "1");
    EXPECT_EQ(account("OutboundHost"), "proxy.example.org");
    EXPECT_EQ(account("OutboundPort"), "5060");
}

TEST_F(AccountPage, TheLineIsCheckedBeforeStunAndStunBeforeTheProxy)
{
    openAccount();
    tick("chkEnableStun", true);
    tick("chkEnableOutBound", true);
    enter("editDisplayName", "");
    expectRefused("Display name is invalid!", "editDisplayName");
    enter("editDisplayName", "Anna");
    expectRefused("STUN server is invalid!", "editServer1");
    enter("editServer1", "stun.example.org");
    enter("editPort1", "3478");
    expectRefused("OutBound server is invalid!", "editServer2");
}

TEST_F(AccountPage, AReadOnlyServerIsDisabledAndStillChecked)
{
    nuxSetRegistryInt(ACCOUNT_FILE, "account", "bSIPServerHostReadOnly", 1);
    nuxSetRegistryString(ACCOUNT_FILE, "account", "SIPServerHost", "");
    openAccount();
    EXPECT_FALSE(child<QLineEdit>("editServer0")->isEnabled());
    kit::BoxAnswers boxes({"ok"});
    save();
    EXPECT_EQ(boxes.texts(), QStringList{"SIP proxy is invalid!"});
}

TEST_F(AccountPage, WithoutTheFlagTheServerIsOpen)
{
    openAccount();
    EXPECT_TRUE(child<QLineEdit>("editServer0")->isEnabled());
}

TEST_F(AccountPage, OnlyOneIsTheFlagOfAReadOnlyServer)
{
    nuxSetRegistryInt(ACCOUNT_FILE, "account", "bSIPServerHostReadOnly", 2);
    openAccount();
    EXPECT_TRUE(child<QLineEdit>("editServer0")->isEnabled());
}

TEST_F(AccountPage, AChangeIsBroadcastWithTheIndex)
{
    openAccount();
    enter("editDisplayName", "Berta");
    expectSaved();
    EXPECT_EQ(logged("broadcast"), QStringList{"0x10007 3 1"});
    EXPECT_EQ(account("DisplayName"), "Berta");
}

TEST_F(AccountPage, SavingUnchangedTellsNobody)
{
    openAccount();
    expectSaved();
    EXPECT_TRUE(logged("broadcast").isEmpty());
}

TEST_F(AccountPage, SaveClosesByTheRejectPath)
{
    openAccount();
    expectSaved();
    EXPECT_EQ(qobject_cast<QDialog*>(page)->result(), int(QDialog::Rejected));
}

TEST_F(AccountPage, BackDropsWhatWasEntered)
{
    openAccount();
    enter("editDisplayName", "Nobody");
    back();
    openAccount();
    EXPECT_EQ(child<QLineEdit>("editDisplayName")->text(), "Anna");
}

TEST_F(AccountPage, EachIndexHasOnePageOfItsOwn)
{
    QWidget* second = openAccount(1);
    back();
    QWidget* third = openAccount(2);
    back();
    EXPECT_NE(second, third);
    EXPECT_EQ(openAccount(1), second);
}

TEST_F(AccountPage, ThePageOpenedByNameIsNumber48AndShowsDefaults)
{
    writeFile("/rundata/config/user/voip/sipAccount0.cfg", "[account]\nDisplayName=Zero\n");
    open("Account1");
    ASSERT_STREQ(page->metaObject()->className(), "dlgAccount_Setting");
    EXPECT_EQ(child<QLineEdit>("editDisplayName")->text(), "");
    EXPECT_FALSE(child<QCheckBox>("chkEnableLine")->isChecked());
    enter("editDisplayName", "Odd");
    expectSaved();
    EXPECT_EQ(stored("/rundata/config/user/voip/sipAccount48.cfg", "account", "DisplayName"), "Odd");
}

TEST_F(AccountPage, ASaveThatFailsIsToldAndKeepsWhatWasTyped)
{
    openAccount();
    enter("editDisplayName", "Berta");
    expectFailedSave(ACCOUNT_FILE);
    EXPECT_EQ(child<QLineEdit>("editDisplayName")->text(), "Berta");
    expectChangesTold({});
    expectSaved();
    EXPECT_EQ(account("DisplayName"), "Berta");
    expectChangesTold({"3 1"});
}
