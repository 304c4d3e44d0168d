// What surrounds every page: background, bars, soft keys, filter, input method key.
#include "frame/settingPage.h"
#include "frame/noteBox.h"
#include "support/host/combo.h"
#include "support/host/ime.h"
#include "support/host/language.h"
#include "tests/frame/frameTest.h"
#include "tests/frame/testPages.h"
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

namespace {

class PageFrameTest : public FrameTest
{
protected:
    static void open(QWidget& page)
    {
        page.show();
        kit::settle();
        ASSERT_TRUE(page.isActiveWindow());
    }
    static qSoftButton* key(dlgBarePage& page, int index)
    {
        return page.frame().m_pSoftKeyBar->GetButton(index);
    }
};

} // namespace

TEST_F(PageFrameTest, BarsCoverTheirPartsOfTheScreen)
{
    dlgBarePage page;
    EXPECT_EQ(page.size(), QSize(800, 480));
    EXPECT_EQ(page.frame().m_pTopBar->geometry(), QRect(0, 0, 800, 40));
    EXPECT_EQ(page.m_pLeftBar->geometry(), QRect(0, 40, 152, 400));
    EXPECT_EQ(page.frame().m_pSoftKeyBar->geometry(), QRect(0, 440, 800, 40));
    EXPECT_TRUE(page.frame().m_pTopBar->testAttribute(Qt::WA_DeleteOnClose));
    EXPECT_TRUE(page.frame().m_pSoftKeyBar->testAttribute(Qt::WA_DeleteOnClose));
    EXPECT_EQ(page.frame().m_pTopBar->title(), "WAN");
    EXPECT_EQ(page.m_pLeftBar->title(), "");
    EXPECT_EQ(page.m_pLeftBar->icon(), "");
}

TEST_F(PageFrameTest, TheLeftBarShowsTheInfoOfTheConstructor)
{
    tagLeftBarInfo info{HX_THEME("menu/menu_wan.png"), "WAN"};
    dlgBarePage page(nullptr, &info);
    EXPECT_EQ(page.m_pLeftBar->title(), "WAN");
    EXPECT_EQ(page.m_pLeftBar->icon(), info.strIcon);
}

TEST_F(PageFrameTest, ALeftBarWithoutBarOrInfoIsLeftAlone)
{
    LeftBarOperation none;
    none.setLeftBar();
    tagLeftBarInfo info{"icon", "title"};
    none.setLeftBar(&info);
    none.setLeftBar();
    EXPECT_EQ(none.m_pLeftBarInfo, &info);
}

TEST_F(PageFrameTest, ThePagesOwnLeftBarIsShownUntilARecordTakesItsPlace)
{
    // As on the phone, where the home screen lies below every page.
    QWidget below;
    open(below);
    dlgBarePage page;
    page.frame().SetLeftBar(HX_THEME("menu/menu_account.png"), "Save");
    open(page);
    EXPECT_EQ(page.m_pLeftBar->title(), "Save");
    EXPECT_EQ(page.m_pLeftBar->icon(), HX_THEME("menu/menu_account.png"));
    tagLeftBarInfo info{HX_THEME("menu/menu_wan.png"), "WAN"};
    for (tagLeftBarInfo* record : {&info, static_cast<tagLeftBarInfo*>(nullptr)}) {
        page.hide();
        kit::settle();
        page.m_pLeftBarInfo = record;
        page.setLeftBar();
        open(page);
        EXPECT_EQ(page.m_pLeftBar->title(), "WAN");
        EXPECT_EQ(page.m_pLeftBar->icon(), info.strIcon);
    }
}

TEST_F(PageFrameTest, ThePagesOwnLeftBarFollowsTheLanguage)
{
    dlgBarePage page;
    page.frame().SetLeftBar(nullptr, "Save");
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("German"), 1);
    open(page);
    EXPECT_EQ(page.m_pLeftBar->title(), qTranslate("Save"));
    EXPECT_NE(page.m_pLeftBar->title(), "Save");
    EXPECT_EQ(page.m_pLeftBar->icon(), "");
    GetLanguageHelper()->SetLanguage("English");
}

TEST_F(PageFrameTest, SoftKeysHaveTheirFixedPlacesNamesAndLabels)
{
    dlgBarePage page;
    const char* const names[] = {"Save", "IME", "Delete", "Back"};
    for (int i = 0; i < SOFT_KEY_COUNT; ++i) {
        EXPECT_EQ(key(page, i)->name(), names[i]);
        EXPECT_EQ(key(page, i)->title(), names[i]);
    }
}

TEST_F(PageFrameTest, APageWithoutEditsHasOnlySaveAndBack)
{
    dlgBarePage page(nullptr, nullptr, KEYS_CHOICE);
    EXPECT_EQ(key(page, 0)->name(), "Save");
    EXPECT_EQ(key(page, 1)->name(), "");
    EXPECT_EQ(key(page, 2)->name(), "");
    EXPECT_EQ(key(page, 3)->name(), "Back");
}

TEST_F(PageFrameTest, AKeyOfThePagesOwnCallsItsSlot)
{
    dlgBarePage page(nullptr, nullptr, KEY_BACK);
    page.frame().SetSoftKey(1, "Close", "Back", SLOT(on_click_Back()));
    page.frame().SetSoftKey(4, "Nowhere", "Back", SLOT(on_click_Back()));
    EXPECT_EQ(key(page, 1)->name(), "Close");
    open(page);
    kit::tap(key(page, 1));
    EXPECT_FALSE(page.isVisible());
}

TEST_F(PageFrameTest, SaveAcceptsAndBackRejects)
{
    dlgBarePage page;
    open(page);
    kit::tap(key(page, 0));
    EXPECT_FALSE(page.isVisible());
    EXPECT_EQ(page.result(), QDialog::Accepted);
    open(page);
    kit::key(Qt::Key_F4);
    EXPECT_FALSE(page.isVisible());
    EXPECT_EQ(page.result(), QDialog::Rejected);
}

TEST_F(PageFrameTest, ThePageFiltersWhileItIsTheActiveWindow)
{
    const QString install = "-----dlgBarePage installEventFilter----------";
    const QString remove = "-----dlgBarePage removeEventFilter----------";
    dlgBarePage page;
    QCheckBox check(&page);
    check.setGeometry(200, 100, 200, 36);
    open(page);
    EXPECT_EQ(tracedTimes(install), 1);
    check.setFocus();
    kit::key(Qt::Key_Return);
    EXPECT_TRUE(check.isChecked());
    page.hide();
    kit::settle();
    EXPECT_EQ(tracedTimes(remove), 1) << show(logged("trace"));
    QKeyEvent ok(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(&check, &ok);
    EXPECT_TRUE(check.isChecked());
}

TEST_F(PageFrameTest, ABoxOverThePageSuspendsItsFilter)
{
    dlgBarePage page;
    open(page);
    kit::BoxAnswers boxes({"ok"});
    EXPECT_EQ(page.Refuse(page.m_pBackground, "Time server is invalid!"), 0);
    kit::settle();
    EXPECT_EQ(tracedTimes("removeEventFilter"), 1) << show(logged("trace"));
    EXPECT_EQ(tracedTimes("installEventFilter"), 2);
}

TEST_F(PageFrameTest, OfTwoPagesOnlyTheOneOnTopFilters)
{
    dlgBarePage below;
    dlgConfigPage above;
    open(below);
    open(above);
    EXPECT_EQ(tracedTimes("-----dlgBarePage removeEventFilter----------"), 1);
    EXPECT_EQ(tracedTimes("-----dlgConfigPage installEventFilter----------"), 1);
}

TEST_F(PageFrameTest, TheImeKeyFollowsTheFocus)
{
    dlgConfigPage page;
    open(page);
    EXPECT_EQ(page.frame().m_pSoftKeyBar->GetButtonTitle(1), "123");
    page.m_pName->setFocus();
    kit::settle();
    EXPECT_EQ(page.frame().m_pSoftKeyBar->GetButtonTitle(1), "ABC");
    kit::tap(page.frame().m_pSoftKeyBar->GetButton(1));
    EXPECT_EQ(qGetCurrentIME(page.m_pName), "abc");
    EXPECT_EQ(page.frame().m_pSoftKeyBar->GetButtonTitle(1), "abc");
    page.m_pEnable->setFocus();
    kit::settle();
    EXPECT_EQ(page.frame().m_pSoftKeyBar->GetButtonTitle(1), "");
}

TEST_F(PageFrameTest, APageWithoutImeKeyKeepsThatKeyEmpty)
{
    dlgBarePage page(nullptr, nullptr, KEYS_CHOICE);
    QLineEdit edit(&page);
    qInstallIME(&edit, "123");
    open(page);
    edit.setFocus();
    kit::settle();
    EXPECT_EQ(page.frame().m_pSoftKeyBar->GetButtonTitle(1), "");
}

TEST_F(PageFrameTest, DeleteRemovesTheCharacterAtTheCursor)
{
    dlgConfigPage page;
    open(page);
    page.m_pAddress->setFocus();
    page.m_pAddress->setText("1234");
    page.m_pAddress->setCursorPosition(2);
    kit::tap(page.frame().m_pSoftKeyBar->GetButton(2));
    EXPECT_EQ(page.m_pAddress->text(), "134");
}

TEST_F(PageFrameTest, ARefusalTellsWhyAndMovesTheFocus)
{
    dlgConfigPage page;
    open(page);
    kit::BoxAnswers boxes({"ok"});
    EXPECT_EQ(page.Check({{page.m_pName, CHECK_VALUE, [](chString) { return 0; }, "User name is invalid!"}}),
              0);
    EXPECT_EQ(boxes.texts(), QStringList("User name is invalid!"));
    EXPECT_EQ(boxes.titles(), QStringList("Note"));
    EXPECT_EQ(page.focusWidget(), page.m_pName);
    EXPECT_TRUE(page.isVisible());
}

TEST_F(PageFrameTest, TextsAreShownInThePresentLanguageWithEachShow)
{
    dlgBarePage page;
    QLabel label("Save", &page);
    QPushButton button("Delete", &page);
    QLabel value("Save", &page);
    page.frame().Build(&page, &page, page.m_pBackground, "WAN", KEYS_EDIT);
    value.setText("192.168.1.1");
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("German"), 1);
    open(page);
    EXPECT_EQ(label.text(), qTranslate("Save"));
    EXPECT_NE(label.text(), "Save");
    EXPECT_EQ(button.text(), qTranslate("Delete"));
    EXPECT_EQ(page.frame().m_pSoftKeyBar->GetButtonTitle(3), qTranslate("Back"));
    EXPECT_EQ(value.text(), "192.168.1.1");
    GetLanguageHelper()->SetLanguage("English");
}

TEST_F(PageFrameTest, AQuestionMayHaveAnotherTitle)
{
    kit::BoxAnswers boxes({"yes", "no"});
    EXPECT_NE(questionBox("Reboot device?", nullptr, "Warning"), 0);
    EXPECT_EQ(questionBox("Reboot device?", nullptr), 0);
    EXPECT_EQ(boxes.titles(), QStringList({"Warning", "Note"}));
}
