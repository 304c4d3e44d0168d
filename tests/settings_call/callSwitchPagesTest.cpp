// The pages "Hotline", "Call Waiting" and "Key As Send".
#include "host/services/phone/phoneSimulation.h"
#include "support/host/ime.h"
#include "support/host/phone.h"
#include "tests/settings_call/callSettingTest.h"
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>

namespace {

class HotlinePage : public CallSettingTest
{
protected:
    HotlinePage() { writeFile(USER_FILE, "[Hotline]\nstrNumber=112\nnTimeDelay=5\n"); }
    void openPage()
    {
        open("Hotline");
        ASSERT_STREQ(page->metaObject()->className(), "dlgHotline");
    }
    QString number() const { return child<QLineEdit>("editNumber")->text(); }
    QString delay() const { return child<QLineEdit>("editDelayTime")->text(); }
};

TEST_F(HotlinePage, ShowsItsTextsAndWhatIsStored)
{
    openPage();
    EXPECT_EQ(title(), "Hotline");
    EXPECT_EQ(softKeys(), (QStringList{"Save", "123", "Delete", "Back"}));
    EXPECT_EQ(child<QLabel>("labNumber")->text(), "Hotline Number");
    EXPECT_EQ(child<QLabel>("labTimeDelay")->text(), "Hotline Delay(0~10s)");
    EXPECT_EQ(number(), "112");
    EXPECT_EQ(delay(), "5");
    EXPECT_EQ(focusName(), "editNumber");
    EXPECT_EQ(child<QLineEdit>("editNumber")->maxLength(), 32);
    expectFilterTraced("Hotline", "dlgHotline");
}

TEST_F(HotlinePage, ADelayThatIsMissingShowsAsTwo)
{
    for (const char* stored : {"", "[Hotline]\nnTimeDelay=\n"}) {
        writeFile(USER_FILE, stored);
        openPage();
        EXPECT_EQ(number(), "");
        EXPECT_EQ(delay(), "2");
        back();
    }
}

TEST_F(HotlinePage, TheKeyForInputMethodsOnlyShowsTheOneInUse)
{
    openPage();
    softKey(1);
    EXPECT_EQ(softKeyTitle(1), "123");
    EXPECT_EQ(qGetCurrentIME(child<QLineEdit>("editNumber")), "123");
    kit::key(Qt::Key_End);
    softKey(2);
    EXPECT_EQ(number(), "11");
    kit::tap(child<QLineEdit>("editDelayTime"));
    EXPECT_EQ(softKeyTitle(1), "123");
    child<QLineEdit>("editDelayTime")->selectAll();
    kit::type("a-1");
    EXPECT_EQ(delay(), "1");
}

TEST_F(HotlinePage, ADelayUpToTenSecondsPasses)
{
    for (const char* good : {"0", "10", "07"}) {
        openPage();
        enter("editDelayTime", good);
        expectSaved();
        expectStored(USER_FILE, "Hotline", "nTimeDelay", QByteArray::number(atoi(good)));
    }
}

TEST_F(HotlinePage, AnotherDelayIsRefusedAndTheFocusStays)
{
    openPage();
    for (const char* bad : {"11", "010", "", "99"}) {
        enter("editDelayTime", bad);
        kit::tap(child<QLineEdit>("editNumber"));
        expectRefused(USER_FILE, "Time limited(0-10s)!", "editNumber");
        EXPECT_EQ(delay(), bad);
    }
}

TEST_F(HotlinePage, SaveStoresAnyNumberAndTellsNobody)
{
    openPage();
    enter("editNumber", "");
    mark();
    expectSaved();
    expectStored(USER_FILE, "Hotline", "strNumber", "");
    EXPECT_EQ(logged("broadcast"), QStringList());
    openPage();
    enter("editNumber", "anna@pbx.test");
    back();
    openPage();
    EXPECT_EQ(number(), "") << "Back stores nothing";
    enter("editNumber", "anna@pbx.test");
    expectFailedSave(USER_FILE);
    EXPECT_EQ(number(), "anna@pbx.test");
}

class CallWaitingPage : public CallSettingTest
{
protected:
    CallWaitingPage()
    {
        writeFile(USER_FILE, "[CallWaiting]\nbEnable=1\nbEffectPstn=1\n");
        phone_GetCallTotal();
        phoneSimulation::instance()->setPstn(1);
    }
    void openPage()
    {
        open("Call Waiting");
        ASSERT_STREQ(page->metaObject()->className(), "dlgCall_Waiting");
    }
};

TEST_F(CallWaitingPage, ShowsItsTextsAndWhatIsStored)
{
    openPage();
    EXPECT_EQ(title(), "Call Waiting");
    EXPECT_EQ(softKeys(), (QStringList{"Save", "", "", "Back"}));
    EXPECT_EQ(child<QCheckBox>("chkBoxenable")->text(), "Enable Call Waiting");
    EXPECT_EQ(child<QLabel>("labPSTN")->text(), "Effect On PSTN");
    EXPECT_EQ(items("cmbBoxPSTN"), (QStringList{"Disabled: 0", "Enabled: 1"}));
    EXPECT_TRUE(child<QCheckBox>("chkBoxenable")->isChecked());
    EXPECT_EQ(chosen("cmbBoxPSTN"), "1");
    EXPECT_TRUE(child<QComboBox>("cmbBoxPSTN")->isVisible());
    EXPECT_EQ(focusName(), "chkBoxenable");
    // In the name that its logs have always had.
    expectFilterTraced("Call Waiting", "dlgTvOutPut");
}

TEST_F(CallWaitingPage, WithoutAnAnalogueLineItsChoiceIsHiddenForGoodAndStored)
{
    phoneSimulation::instance()->setPstn(0);
    openPage();
    EXPECT_FALSE(child<QComboBox>("cmbBoxPSTN")->isVisible());
    EXPECT_FALSE(child<QLabel>("labPSTN")->isVisible());
    phoneSimulation::instance()->setPstn(1);
    back();
    openPage();
    EXPECT_FALSE(child<QComboBox>("cmbBoxPSTN")->isVisible());
    child<QComboBox>("cmbBoxPSTN")->setCurrentIndex(0);
    expectSaved();
    expectStored(USER_FILE, "CallWaiting", "bEffectPstn", "0");
}

TEST_F(CallWaitingPage, AChangeIsStoredAndTold)
{
    openPage();
    tick("chkBoxenable", false);
    choose("cmbBoxPSTN", "0");
    expectSaved();
    expectStored(USER_FILE, "CallWaiting", "bEnable", "0");
    expectStored(USER_FILE, "CallWaiting", "bEffectPstn", "0");
    expectChangesTold({"13 0"});
    openPage();
    expectSaved();
    expectChangesTold({});
    openPage();
    tick("chkBoxenable", true);
    expectFailedSave(USER_FILE);
    EXPECT_TRUE(child<QCheckBox>("chkBoxenable")->isChecked());
}

class KeyAsSendPage : public CallSettingTest
{
protected:
    KeyAsSendPage() { writeFile(USER_FILE, "[KeyAsSend]\neType=2\n"); }
    void openPage()
    {
        open("Key As Send");
        ASSERT_STREQ(page->metaObject()->className(), "dlgKey_As_Send");
    }
};

TEST_F(KeyAsSendPage, ShowsItsTextsAndWhatIsStored)
{
    openPage();
    EXPECT_EQ(title(), "Key As Send");
    EXPECT_EQ(softKeys(), (QStringList{"Save", "", "", "Back"}));
    EXPECT_EQ(child<QLabel>("labKeyAsSend")->text(), "Key As Send");
    EXPECT_EQ(items("cmbBoxKeyAsSend"), (QStringList{"Disabled: 0", "Key #: 1", "Key *: 2"}));
    EXPECT_EQ(chosen("cmbBoxKeyAsSend"), "2");
    EXPECT_EQ(child<QComboBox>("cmbBoxKeyAsSend")->focusPolicy(), Qt::StrongFocus);
    EXPECT_EQ(focusName(), "cmbBoxKeyAsSend");
    // In the name that its logs have always had.
    expectFilterTraced("Key As Send", "dlgTvOutPut");
}

TEST_F(KeyAsSendPage, AChangeIsStoredAndTold)
{
    openPage();
    choose("cmbBoxKeyAsSend", "1");
    expectSaved();
    expectStored(USER_FILE, "KeyAsSend", "eType", "1");
    expectChangesTold({"22 0"});
    openPage();
    expectSaved();
    expectChangesTold({});
    openPage();
    choose("cmbBoxKeyAsSend", "0");
    back();
    openPage();
    EXPECT_EQ(chosen("cmbBoxKeyAsSend"), "1");
    choose("cmbBoxKeyAsSend", "0");
    expectFailedSave(USER_FILE);
}

} // namespace
