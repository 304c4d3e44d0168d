#include "frame/pageLists.h"
#include "settings/system/dlgAccount_Setting.h"
#include "support/host/ime.h"
#include "tests/settings_system/pageTest.h"
#include <QCheckBox>

namespace {

#define ACCOUNT_FILE "/rundata/config/user/voip/sipAccount1.cfg"

class AccountPage : public PageTest
{
protected:
    void SetUp() override
    {
        PageTest::SetUp();
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

    void check(const char* box, bool on)
    {
        if (child<QCheckBox>(page, box)->isChecked() != on)
            kit::tap(child<QCheckBox>(page, box));
        ASSERT_EQ(child<QCheckBox>(page, box)->isChecked(), on);
    }

    void expectRefused(const char* message, const char* focus)
    {
        expectSaveRefused(page, ACCOUNT_FILE, message, focus);
    }

    void expectSaved()
    {
        kit::BoxAnswers boxes;
        softKey(page, 0);
        EXPECT_TRUE(boxes.texts().isEmpty());
        EXPECT_FALSE(page->isVisible());
    }

    static QString account(const char* key) { return stored(ACCOUNT_FILE, "account", key); }
    QWidget* page = nullptr;
};

} // namespace

TEST_F(AccountPage, ShowsTheFileOfItsIndexWithTheFocusOnEnableLine)
{
    openAccount();
    EXPECT_EQ(page->findChild<qTopBar*>()->title(), "Account Setting");
    EXPECT_EQ(page->findChild<qLeftBar*>()->title(), "Account Setting");
    EXPECT_EQ(page->findChild<qLeftBar*>()->icon(),
              "/phone/resource/theme/default/bmp/menu/menu_account.png");
    EXPECT_TRUE(child<QCheckBox>(page, "chkEnableLine")->isChecked());
    EXPECT_EQ(child<QLineEdit>(page, "editDisplayName")->text(), "Anna");
    EXPECT_EQ(child<QLineEdit>(page, "editServer0")->text(), "sip.example.org");
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
        EXPECT_EQ(qGetCurrentIME(child<QLineEdit>(page, edit)), method) << edit;
}

TEST_F(AccountPage, NumbersStepThroughAllMethodsAndPortsHaveOne)
{
    openAccount();
    QLineEdit* user = child<QLineEdit>(page, "editUserName");
    QStringList seen;
    for (int i = 0; i < 5; ++i) {
        seen.append(qGetCurrentIME(user));
        qShift2NextIME(user);
    }
    EXPECT_EQ(seen, (QStringList{"123", "2aB", "ABC", "abc", "123"}));
    QLineEdit* port = child<QLineEdit>(page, "editPort0");
    qShift2NextIME(port);
    EXPECT_EQ(qGetCurrentIME(port), "123");
}

TEST_F(AccountPage, EmptyLineEntriesAreRefusedInTheirOrder)
{
    openAccount();
    for (const char* name :
         {"editDisplayName", "editRegisterName", "editUserName", "editServer0", "editPort0"})
        enter(page, name, "");
    expectRefused("Display name is invalid!", "editDisplayName");
    enter(page, "editDisplayName", "Anna");
    expectRefused("Register name is invalid!", "editRegisterName");
    enter(page, "editRegisterName", "1002");
    expectRefused("User name is invalid!", "editUserName");
    enter(page, "editUserName", "1002");
    expectRefused("SIP proxy is invalid!", "editServer0");
    enter(page, "editServer0", "sip.example.org");
    expectRefused("SIP proxy port is invalid!", "editPort0");
    enter(page, "editPort0", "5061");
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
        const QString before = child<QLineEdit>(page, edit)->text();
        enter(page, edit, "bad<>name");
        expectRefused(message, edit);
        enter(page, edit, before);
    }
}

TEST_F(AccountPage, AChangedBadPasswordIsRefusedAndAnEmptyOneIsNot)
{
    openAccount();
    child<QLineEdit>(page, "editPassword")->setText(QString("a") + QChar(1) + "b");
    expectRefused("Password is invalid!", "editPassword");
    enter(page, "editPassword", "");
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
    check("chkEnableLine", false);
    enter(page, "editDisplayName", "");
    enter(page, "editServer0", "<>");
    enter(page, "editPort0", "nonsense");
    expectSaved();
    EXPECT_EQ(account("Enable"), "0");
    EXPECT_EQ(account("SIPServerHost"), "<>");
    EXPECT_EQ(account("SIPServerPort"), "nonsense");
}

TEST_F(AccountPage, StunIsCheckedWhenItIsOn)
{
    openAccount();
    enter(page, "editPort1", "0");
    check("chkEnableStun", true);
    expectRefused("STUN server is invalid!", "editServer1");
    enter(page, "editServer1", "not a host");
    expectRefused("STUN server is invalid!", "editServer1");
    enter(page, "editServer1", "stun.example.org");
    expectRefused("STUN server port is invalid!", "editPort1");
    enter(page, "editPort1", "3478");
    expectSaved();
    EXPECT_EQ(stored(ACCOUNT_FILE, "NAT", "NATTraversal"), "1");
    EXPECT_EQ(stored(ACCOUNT_FILE, "NAT", "STUNServer"), "stun.example.org");
    EXPECT_EQ(stored(ACCOUNT_FILE, "NAT", "STUNPort"), "3478");
}

TEST_F(AccountPage, TheOutboundProxyIsCheckedWhenItIsOn)
{
    openAccount();
    check("chkEnableOutBound", true);
    expectRefused("OutBound server is invalid!", "editServer2");
    enter(page, "editServer2", "proxy.example.org");
    expectRefused("OutBound server port is invalid!", "editPort2");
    enter(page, "editPort2", "70000");
    expectRefused("OutBound server port is invalid!", "editPort2");
    enter(page, "editPort2", "5060");
    expectSaved();
    EXPECT_EQ(account("UseOutboundProxy"), "1");
    EXPECT_EQ(account("OutboundHost"), "proxy.example.org");
    EXPECT_EQ(account("OutboundPort"), "5060");
}

TEST_F(AccountPage, TheLineIsCheckedBeforeStunAndStunBeforeTheProxy)
{
    openAccount();
    check("chkEnableStun", true);
    check("chkEnableOutBound", true);
    enter(page, "editDisplayName", "");
    expectRefused("Display name is invalid!", "editDisplayName");
    enter(page, "editDisplayName", "Anna");
    expectRefused("STUN server is invalid!", "editServer1");
    enter(page, "editServer1", "stun.example.org");
    enter(page, "editPort1", "3478");
    expectRefused("OutBound server is invalid!", "editServer2");
}

TEST_F(AccountPage, AReadOnlyServerIsDisabledAndStillChecked)
{
    nuxSetRegistryInt(ACCOUNT_FILE, "account", "bSIPServerHostReadOnly", 1);
    nuxSetRegistryString(ACCOUNT_FILE, "account", "SIPServerHost", "");
    openAccount();
    EXPECT_FALSE(child<QLineEdit>(page, "editServer0")->isEnabled());
    kit::BoxAnswers boxes({"ok"});
    softKey(page, 0);
    EXPECT_EQ(boxes.texts(), QStringList{"SIP proxy is invalid!"});
}

TEST_F(AccountPage, WithoutTheFlagTheServerIsOpen)
{
    openAccount();
    EXPECT_TRUE(child<QLineEdit>(page, "editServer0")->isEnabled());
}

TEST_F(AccountPage, AChangeIsBroadcastWithTheIndex)
{
    openAccount();
    enter(page, "editDisplayName", "Berta");
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
    enter(page, "editDisplayName", "Nobody");
    softKey(page, 3);
    openAccount();
    EXPECT_EQ(child<QLineEdit>(page, "editDisplayName")->text(), "Anna");
}

TEST_F(AccountPage, EachIndexHasOnePageOfItsOwn)
{
    QWidget* second = openAccount(1);
    softKey(page, 3);
    QWidget* third = openAccount(2);
    softKey(page, 3);
    EXPECT_NE(second, third);
    EXPECT_EQ(openAccount(1), second);
}

TEST_F(AccountPage, ThePageOpenedByNameIsNumber48AndShowsDefaults)
{
    writeFile("/rundata/config/user/voip/sipAccount0.cfg", "[account]\nDisplayName=Zero\n");
    page = open("Account1");
    ASSERT_STREQ(page->metaObject()->className(), "dlgAccount_Setting");
    EXPECT_EQ(child<QLineEdit>(page, "editDisplayName")->text(), "");
    EXPECT_FALSE(child<QCheckBox>(page, "chkEnableLine")->isChecked());
    enter(page, "editDisplayName", "Odd");
    expectSaved();
    EXPECT_EQ(stored("/rundata/config/user/voip/sipAccount48.cfg", "account", "DisplayName"), "Odd");
}
