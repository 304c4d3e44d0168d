#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "settings/system/dlgAccount_Setting_Btn.h"
#include "settings/system/setupAccountButton.h"
#include "support/host/button.h"
#include "support/host/phone.h"
#include "tests/settings_system/systemPageTest.h"
#include <QCheckBox>
#include <QDialog>

namespace {

#define FG02 "/phone/resource/theme/default/bmp/icon/btn_dss_fg02.png"
#define FG03 "/phone/resource/theme/default/bmp/icon/btn_dss_fg03.png"
#define BUTTON_DIR "/phone/resource/theme/default/bmp/button/"

QByteArray accountFile(int index)
{
    return "/rundata/config/user/voip/sipAccount" + QByteArray::number(index) + ".cfg";
}

class AccountList : public SystemPageTest
{
protected:
    void SetUp() override
    {
        for (int index = 0; index < 4; ++index)
            writeFile(accountFile(index), "[account]\nEnable=0\n");
    }

    void store(int index, const char* name, const char* host)
    {
        nuxSetRegistryString(accountFile(index), "account", "DisplayName", name);
        nuxSetRegistryString(accountFile(index), "account", "SIPServerHost", host);
    }

    QWidget* openList() { return open("Account Setting"); }
    qUIPushButton* button(int number)
    {
        return child<qUIPushButton>(qPrintable(QString("btnAccount%1").arg(number)));
    }
    QString text(int number) { return button(number)->text(); }
    QString icon(int number) { return GetButtonImage(button(number), 3); }

    // As the phone service tells it.
    void refresh(unsigned int index, LINE_STATE state, const char* user = "1001",
                 const char* server = "sip.test")
    {
        phoneService::instance().backend();
        tagLineSetting line;
        line.state = state;
        line.user = user;
        line.server = server;
        ASSERT_TRUE(phoneSimulation::instance()->setLine(int(index), line));
        kit::settle();
    }
};

} // namespace

TEST_F(AccountList, FourButtonsStandInTheirPlaces)
{
    openList();
    EXPECT_STREQ(page->metaObject()->className(), "dlgAccount_Setting_Btn");
    const int tops[] = {75, 140, 205, 270};
    for (int i = 0; i < 4; ++i) {
        qUIPushButton* account = button(i + 1);
        EXPECT_EQ(QRect(account->mapToGlobal(QPoint(0, 0)), account->size()),
                  QRect(QPoint(190, tops[i]), QPoint(359, tops[i] + 49)));
    }
    EXPECT_EQ(page->findChild<qTopBar*>()->title(), "Account Setting");
    kit::shot("accounts-empty");
}

TEST_F(AccountList, OnlyBackIsThere)
{
    openList();
    qSoftKeyBar* keys = page->findChild<qSoftKeyBar*>();
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(softKeyTitle(i), "");
    EXPECT_EQ(keys->GetButton(3)->name(), "Back");
    back();
    EXPECT_FALSE(page->isVisible());
}

TEST_F(AccountList, ALineWithoutANameShowsItsNumber)
{
    openList();
    EXPECT_EQ(text(1), " Account 1  ");
    EXPECT_EQ(text(4), " Account 4  ");
    EXPECT_EQ(icon(1), FG03);
    EXPECT_EQ(GetButtonImage(button(1), 0), BUTTON_DIR "btn_dss_bg_m101.png");
    EXPECT_EQ(GetButtonImage(button(1), 1), BUTTON_DIR "btn_dss_bg_m102.png");
    EXPECT_EQ(GetButtonImage(button(1), 2), BUTTON_DIR "btn_dss_bg_m003.png");
}

TEST_F(AccountList, ALineWithANameShowsItAsRegistered)
{
    store(0, "Al", "b.de");
    openList();
    EXPECT_EQ(text(1), " Al@b.de");
    EXPECT_EQ(icon(1), FG02);
    EXPECT_EQ(GetButtonImage(button(1), 0), BUTTON_DIR "btn_dss_bg_m001.png");
    EXPECT_EQ(GetButtonImage(button(1), 1), BUTTON_DIR "btn_dss_bg_m002.png");
    EXPECT_EQ(GetButtonImage(button(1), 2), BUTTON_DIR "btn_dss_bg_m003.png");
}

TEST_F(AccountList, TextsHaveTheirFontAndPlace)
{
    openList();
    EXPECT_EQ(button(1)->font().pixelSize(), 15);
    EXPECT_EQ(button(1)->palette().color(QPalette::ButtonText), QColor(Qt::white));
    EXPECT_EQ(button(1)->textAlign(), 0x81);
}

TEST_F(AccountList, ANameOfNineIsShownWholeAndOneOfTenBecomesTenCharactersAndDots)
{
    store(0, "123456789", "sip.test");
    store(1, "1234567890", "sip.test");
    openList();
    EXPECT_EQ(text(1), " 123456789...");
    EXPECT_EQ(text(2), " 123456789...");
}

TEST_F(AccountList, ATextOfNineCharactersIsNotCut)
{
    store(0, "123456", "t");
    store(1, "1234567", "t");
    openList();
    EXPECT_EQ(text(1), " 123456@t");
    EXPECT_EQ(text(2), " 1234567@t...");
}

TEST_F(AccountList, ACutNeverSplitsACharacter)
{
    store(0, "12345678😀", "sip.test");
    store(1, "1234567😀", "sip.test");
    openList();
    EXPECT_EQ(text(1), " 12345678...");
    EXPECT_EQ(text(2), " 1234567😀...");
}

TEST_F(AccountList, EachButtonOpensItsAccount)
{
    for (int number = 1; number <= 4; ++number) {
        store(number - 1, qPrintable(QString("name%1").arg(number)), "sip.test");
        openList();
        kit::tap(button(number));
        page = kit::windows().value(0);
        ASSERT_STREQ(page->metaObject()->className(), "dlgAccount_Setting");
        EXPECT_EQ(child<QLineEdit>("editDisplayName")->text(), QString("name%1").arg(number));
        back();
    }
}

TEST_F(AccountList, ALineThatRegistersIsShownLive)
{
    openList();
    refresh(1, LINE_REGISTERED, "42", "b.de");
    EXPECT_EQ(text(2), " 42@b.de");
    EXPECT_EQ(icon(2), FG02);
    EXPECT_TRUE(logged("trace").contains("PHONE_PUBLIC_MSG_ACCOUNT_REFRESH(1, 2)"));
    EXPECT_TRUE(logged("trace").contains("strAccountName =  42@b.de"));
}

TEST_F(AccountList, TheIconFollowsTheState)
{
    openList();
    refresh(0, LINE_REGISTERED);
    EXPECT_EQ(icon(1), FG02);
    for (const LINE_STATE off : {LINE_DISABLED, LINE_REGISTER_FAILED, LINE_UNREGISTERED}) {
        refresh(0, LINE_DEFAULT_ACCOUNT);
        EXPECT_EQ(icon(1), FG02);
        refresh(0, off);
        EXPECT_EQ(icon(1), FG03) << off;
    }
    for (const LINE_STATE silent : {LINE_REGISTERING, LINE_INEXISTENCE, LINE_UNREGISTERING, LINE_EXIT}) {
        refresh(0, LINE_REGISTERED);
        refresh(0, silent);
        EXPECT_EQ(icon(1), FG02) << silent;
        refresh(0, LINE_UNREGISTERED);
        refresh(0, silent);
        EXPECT_EQ(icon(1), FG03) << silent;
    }
}

TEST_F(AccountList, ALineThatLosesItsUserShowsItsNumberAgain)
{
    store(0, "Al", "b.de");
    openList();
    refresh(0, LINE_DISABLED, "", "");
    EXPECT_EQ(text(1), " Account 1  ");
    EXPECT_EQ(icon(1), FG03);
    EXPECT_EQ(GetButtonImage(button(1), 0), BUTTON_DIR "btn_dss_bg_m101.png");
}

TEST_F(AccountList, ARefreshOfAnUnknownAccountChangesNothing)
{
    openList();
    QStringList before;
    for (int i = 1; i <= 4; ++i)
        before.append(text(i) + icon(i));
    msgObject msg(PHONE_PUBLIC_MSG_ACCOUNT_REFRESH, 7, LINE_REGISTERED);
    EXPECT_EQ(dynamic_cast<dlgAccount_Setting_Btn*>(page)->TryThreadMessage(msg), 1);
    QStringList after;
    for (int i = 1; i <= 4; ++i)
        after.append(text(i) + icon(i));
    EXPECT_EQ(after, before);
}

TEST_F(AccountList, OtherMessagesAreNotTaken)
{
    openList();
    msgObject msg(CONFIG_MSG_BCAST_CHANGED, 3, 0);
    EXPECT_EQ(dynamic_cast<dlgAccount_Setting_Btn*>(page)->TryThreadMessage(msg), 0);
}

TEST_F(AccountList, ALineThatIsDisabledOnItsPageLosesItsMark)
{
    writeFile(accountFile(0), "[account]\nEnable=1\nDisplayName=Anna\nAuthName=11\nUserName=11\n"
                              "SIPServerHost=b.de\nSIPServerPort=5060\n");
    phoneService::instance().backend();
    const auto state = [] {
        tagAccountInfo info;
        phone_GetAccountInfoById(0, &info);
        return info.eState;
    };
    ASSERT_TRUE(kit::waitUntil([&] { return state() == LINE_DEFAULT_ACCOUNT; }));
    openList();
    EXPECT_EQ(icon(1), FG02);
    kit::tap(button(1));
    QWidget* account = kit::windows().value(0);
    kit::tap(account->findChild<QCheckBox*>("chkEnableLine"));
    kit::tap(account->findChild<qSoftKeyBar*>()->GetButton(0));
    ASSERT_TRUE(kit::waitUntil([&] { return state() == LINE_DISABLED; }));
    kit::settle();
    EXPECT_EQ(icon(1), FG03);
}

TEST_F(AccountList, WhileAnotherWindowIsOnTopNoRefreshArrivesAndWhatWasMissedComesWithTheReturn)
{
    openList();
    refresh(0, LINE_REGISTERED, "11", "b.de");
    kit::tap(button(4));
    QWidget* account = kit::windows().value(0);
    refresh(0, LINE_UNREGISTERED, "22", "b.de");
    EXPECT_EQ(text(1), " 11@b.de");
    kit::tap(account->findChild<qSoftKeyBar*>()->GetButton(3));
    kit::settle();
    EXPECT_EQ(text(1), " 22@b.de");
    EXPECT_EQ(icon(1), FG03);
    refresh(0, LINE_UNREGISTERED, "33", "b.de");
    EXPECT_EQ(text(1), " 33@b.de");
    EXPECT_EQ(icon(1), FG03);
}

TEST_F(AccountList, ALineWithoutANameIsShownInTheLanguageOfTheShow)
{
    openList();
    back();
    GetLanguageHelper()->SetLanguage("German");
    openList();
    EXPECT_EQ(text(1), " " + qTranslate("Account") + " 1  ");
    EXPECT_NE(text(1), " Account 1  ");
    EXPECT_EQ(page->findChild<qLeftBar*>()->title(), qTranslate("Account Setting"));
    EXPECT_NE(page->findChild<qLeftBar*>()->title(), "Account Setting");
}

TEST_F(AccountList, ANameOfTheFileStaysWhenTheLanguageChanges)
{
    store(0, "Al", "b.de");
    openList();
    GetLanguageHelper()->SetLanguage("German");
    kit::settle();
    EXPECT_EQ(text(1), " Al@b.de");
    EXPECT_EQ(text(2), " Konto 2  ");
}

TEST_F(AccountList, ANameOfThePhoneServiceStaysWhenTheLanguageChangesAndGoesWithItsUser)
{
    store(2, "Al", "b.de");
    openList();
    refresh(1, LINE_REGISTERED, "42", "b.de");
    refresh(2, LINE_DISABLED, "", "");
    GetLanguageHelper()->SetLanguage("German");
    kit::settle();
    EXPECT_EQ(text(2), " 42@b.de");
    EXPECT_EQ(text(3), " Konto 3  ");
}

TEST_F(AccountList, TheFirstButtonTakesAText)
{
    openList();
    char text1[] = "hello";
    dynamic_cast<dlgAccount_Setting_Btn*>(page)->Display_Dialog_1(text1);
    EXPECT_EQ(text(1), "hello");
}

TEST_F(AccountList, ArrowsAndOkOpenAnAccount)
{
    openList();
    button(1)->setFocus();
    kit::key(Qt::Key_Down);
    EXPECT_EQ(focusName(), "btnAccount2");
    kit::key(Qt::Key_Return);
    EXPECT_STREQ(kit::windows().value(0)->metaObject()->className(), "dlgAccount_Setting");
}

TEST_F(AccountList, TheSmallButtonShowsTheAccount)
{
    QPushButton small;
    refresh(2, LINE_REGISTERED, "123456", "sip.de");
    setupAccountButton(&small, 2);
    EXPECT_EQ(small.text(), "123456@sip.de");
    EXPECT_EQ(GetButtonImage(&small, 3), FG02);
    EXPECT_EQ(small.font().pixelSize(), 10);
    EXPECT_EQ(small.palette().color(QPalette::ButtonText), QColor(Qt::white));
}

TEST_F(AccountList, TheSmallButtonCutsAtItsOwnLimit)
{
    QPushButton small;
    refresh(2, LINE_UNREGISTERED, "1234567", "sip.de");
    setupAccountButton(&small, 2);
    EXPECT_EQ(small.text(), "1234567@sip.de...");
    EXPECT_EQ(GetButtonImage(&small, 3), FG03);
    refresh(2, LINE_UNREGISTERED, "1234567890", "sip.de");
    setupAccountButton(&small, 2);
    EXPECT_EQ(small.text(), "1234567890@sip...");
}

TEST_F(AccountList, TheSmallButtonOfALineWithoutAccountIsNotTranslated)
{
    GetLanguageHelper()->SetLanguage("German");
    QPushButton small;
    refresh(3, LINE_DISABLED, "", "");
    setupAccountButton(&small, 3);
    EXPECT_EQ(small.text(), "Account4");
    EXPECT_EQ(GetButtonImage(&small, 3), FG03);
}
