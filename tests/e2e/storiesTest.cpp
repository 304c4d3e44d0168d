// What a person does with the phone, from the home screen on and back to it.
#include "tests/e2e/livePhone.h"
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <functional>

namespace {

#define SYSTEM_FILE "/rundata/config/system.ini"
#define ACCOUNT_FILE "/rundata/config/user/voip/sipAccount0.cfg"

class Story : public LivePhone
{
protected:
    QStringList networkKeys()
    {
        QStringList values;
        for (const char* key : {"eWANType", "strWanIP", "strWanMask", "strWanGateway", "strWanPrimaryDNS",
                                "strWanSecondaryDNS"})
            values.append(config(SYSTEM_FILE, "Network", key));
        return values;
    }

    // Five addresses on the digit pad, field by field; "*" is the point.
    void enterAddresses(const std::function<void(const QString&)>& goTo)
    {
        const std::pair<const char*, const char*> entries[] = {{"editIPAddress", "192*168*7*20"},
                                                               {"editMASK", "255*255*255*0"},
                                                               {"editGateway", "192*168*7*1"},
                                                               {"editDNS1", "192*168*7*1"},
                                                               {"editDNS2", "9*9*9*9"}};
        for (const auto& [edit, digits] : entries) {
            goTo(edit);
            for (int left = widget(edit)["text"].toString().size(); left > 0; --left)
                key("Backspace");
            pad(digits);
        }
    }

    void expectStaticAddressStored()
    {
        EXPECT_EQ(networkKeys(), (QStringList{"2", "192.168.7.20", "255.255.255.0", "192.168.7.1",
                                              "192.168.7.1", "9.9.9.9"}));
        QFile file(root() + SYSTEM_FILE);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_TRUE(file.readAll().contains("strWanIP=192.168.7.20"));
    }

    void arrowTo(const QString& name)
    {
        for (int steps = 0; steps < 24 && focusWidget()["name"] != name; ++steps)
            key("Down");
        ASSERT_EQ(focusWidget()["name"].toString(), name);
    }
};

} // namespace

TEST_F(Story, AStaticAddressIsSetByFinger)
{
    shot("story-home");
    tap("tileSetting");
    waitPage("dlgIconviewForm");
    shot("story-menu");
    tap(233, 120);
    waitPage("dlgWan");
    EXPECT_EQ(topWindow()["title"], "WAN");
    tap("radBtnStaticIp");
    enterAddresses([this](const QString& edit) { tap(edit); });
    shot("story-wan-filled");
    softKey(0);
    waitPage("dlgMessageBox");
    EXPECT_EQ(widget("labText")["text"], "Network configuration has changed, reboot system?");
    shot("story-wan-question");
    restartByTap("btnYes");
    expectStaticAddressStored();
}

TEST_F(Story, AStaticAddressIsSetByKeys)
{
    // The focus starts on "Setting".
    EXPECT_EQ(focusWidget()["name"], "tileSetting");
    key("Return");
    waitPage("dlgIconviewForm");
    key("Return");
    waitPage("dlgWan");
    arrowTo("radBtnStaticIp");
    key("Return");
    EXPECT_TRUE(widget("radBtnStaticIp")["checked"].toBool());
    enterAddresses([this](const QString& edit) { arrowTo(edit); });
    key("F1");
    waitPage("dlgMessageBox");
    EXPECT_EQ(focusWidget()["name"], "btnYes");
    key("Right");
    key("Return");
    ctl({"wait", "idle", "5000"});
    EXPECT_TRUE(logOf("reboot").isEmpty());
    EXPECT_EQ(topWindow()["class"], "dlgIconviewForm");
    expectStaticAddressStored();
}

TEST_F(Story, AnAccountIsSetUpAndItsLineComesAliveByFinger)
{
    tap("tileSetting");
    waitPage("dlgIconviewForm");
    tap(395, 120);
    waitPage("dlgAccount_Setting_Btn");
    EXPECT_EQ(widget("btnAccount1")["text"], " Account 1  ");
    tap("btnAccount1");
    waitPage("dlgAccount_Setting");
    tap("chkEnableLine");
    const std::pair<const char*, const char*> entries[] = {
        {"editDisplayName", "Anna"}, {"editRegisterName", "1001"}, {"editUserName", "1001"},
        {"editPassword", "secret"},  {"editServer0", "pbx"},       {"editPort0", "5060"}};
    for (const auto& [edit, text] : entries) {
        tap(edit);
        for (int left = widget(edit)["text"].toString().size(); left > 0; --left)
            key("Backspace");
        ctl({"type", text});
    }
    shot("story-account-filled");
    softKey(0);
    waitPage("dlgAccount_Setting_Btn");
    EXPECT_EQ(config(ACCOUNT_FILE, "account", "DisplayName"), "Anna");
    EXPECT_EQ(logOf("broadcast").filter("0x10007 3 0").size(), 1);

    // The registration itself, then what the network does to it.
    for (int look = 0; look < 50 && !widget("btnAccount1")["text"].toString().contains("1001@pbx"); ++look)
        ctl({"wait", "idle", "200"});
    EXPECT_EQ(widget("btnAccount1")["text"], " 1001@pbx");
    shot("story-account-registered");
    ctl({"set", "line", "0", "state=2", "user=2002", "server=pbx"});
    waitIdle();
    EXPECT_EQ(widget("btnAccount1")["text"], " 2002@pbx");

    softKey(3);
    waitPage("dlgIconviewForm");
    tap("btnHome");
    waitPage("frmDesktop");
    shot("story-home-with-line");
}

TEST_F(Story, AnAccountIsSetUpByKeysAlone)
{
    key("Return");
    waitPage("dlgIconviewForm");
    key("Right");
    key("Return");
    waitPage("dlgAccount_Setting_Btn");
    key("Return");
    waitPage("dlgAccount_Setting");
    EXPECT_EQ(focusWidget()["name"], "chkEnableLine");
    key("Return");
    EXPECT_TRUE(widget("chkEnableLine")["checked"].toBool());
    arrowTo("editDisplayName");
    EXPECT_EQ(widget("editDisplayName")["text"], "");
    // "2aB": the first letter upper case, the others lower.
    pad("26");
    arrowTo("editRegisterName");
    pad("1001");
    arrowTo("editUserName");
    pad("1001");
    arrowTo("editServer0");
    for (int left = widget("editServer0")["text"].toString().size(); left > 0; --left)
        key("Backspace");
    // To "123", where digits and points are typed as they are.
    key("F2", 3);
    pad("10*0*0*5");
    arrowTo("editPort0");
    for (int left = widget("editPort0")["text"].toString().size(); left > 0; --left)
        key("Backspace");
    pad("5060");
    EXPECT_EQ(widget("editDisplayName")["text"], "Am");
    EXPECT_EQ(widget("editRegisterName")["text"], "1001");
    key("F4");
    waitPage("dlgAccount_Setting_Btn");
    EXPECT_EQ(config(ACCOUNT_FILE, "account", "UserName"), "");
    key("F4");
    waitPage("dlgIconviewForm");
}

TEST_F(Story, TheLoadingScreenNamesEachStepInOrder)
{
    const QStringList steps = logOf("trace").filter("settingCacheWindows(");
    QStringList entered;
    for (const QString& line : steps) {
        const QString call = line.mid(line.indexOf("settingCacheWindows("));
        if (!entered.contains(call))
            entered.append(call);
    }
    QStringList expected;
    for (int index = 0; index <= 8; ++index)
        expected.append(QString("settingCacheWindows(%1)").arg(index));
    EXPECT_EQ(entered, expected);
}

TEST_F(Story, ACallDialledFromTheHomeScreenReachesTheLog)
{
    ctl({"set", "line", "0", "state=5", "user=1001", "server=pbx"});
    pad("4711");
    shot("story-home-dialling");
    key("Return");
    waitPage("frmCall");
    EXPECT_EQ(logOf("dial").size(), 1);
    EXPECT_TRUE(logOf("dial").first().contains("4711"));
    shot("story-call");
    softKey(3);
    waitPage("frmDesktop");
    ctl({"open", "Call Histroy"});
    waitPage("dlgCallHistroy");
    EXPECT_TRUE(QString::fromUtf8(QJsonDocument(topWindow()).toJson()).contains("4711"));
    shot("story-callhistory");
}
