// The soft keys "IME" and "Delete" follow the focus as each page declares it.
#include "frame/settingPage.h"
#include "support/host/ime.h"
#include "support/host/language.h"
#include "tests/frame/frameTest.h"
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLineEdit>
#include <QTableWidget>
#include <QTimer>

namespace {

class dlgFocus : public SettingPage
{
public:
    dlgFocus() : SettingPage(nullptr, nullptr)
    {
        QFrame* background = new QFrame(this);
        background->setGeometry(0, 0, 800, 480);
        background->lower();
        QWidget* const widgets[] = {m_pText, m_pPlain, m_pPassword, m_pBox, m_pTable, m_pCheck};
        int y = 50;
        for (QWidget* widget : widgets) {
            widget->setGeometry(200, y, 300, 50);
            y += 60;
        }
        BuildFrame(background, HX_TR("WAN"), KEYS_EDIT);
        qInstallIME(m_pText, "abc,123");
    }
    using SettingPage::FollowFocus;
    using SettingPage::Refuse;
    using SettingPage::SetFilter;
    QString ime() const { return m_frame.m_pSoftKeyBar->GetButtonTitle(SOFT_KEY_IME); }
    QString deleteKey() const { return m_frame.m_pSoftKeyBar->GetButtonTitle(SOFT_KEY_DELETE); }

    QLineEdit* m_pText = new QLineEdit(this);
    QLineEdit* m_pPlain = new QLineEdit(this); // without input methods
    QLineEdit* m_pPassword = new QLineEdit(this);
    QComboBox* m_pBox = new QComboBox(this);
    QTableWidget* m_pTable = new QTableWidget(2, 1, this);
    QCheckBox* m_pCheck = new QCheckBox(this);
};

class FocusKeysTest : public FrameTest
{
protected:
    // As on the phone, where the home screen lies below every page.
    void SetUp() override { below.show(); }
    void open()
    {
        page.show();
        kit::settle();
        ASSERT_TRUE(page.isActiveWindow());
    }
    void go(QWidget* widget)
    {
        widget->setFocus();
        kit::settle();
        ASSERT_TRUE(widget->hasFocus());
    }
    QWidget below;
    dlgFocus page;
};

} // namespace

TEST_F(FocusKeysTest, APageThatDeclaresNothingShowsTheMethodOfTheFocus)
{
    open();
    go(page.m_pText);
    EXPECT_EQ(page.ime(), "abc");
    go(page.m_pPlain);
    EXPECT_EQ(page.ime(), "");
    EXPECT_EQ(page.deleteKey(), "Delete");
}

TEST_F(FocusKeysTest, EditsShowTheirMethodOrTheFirstOfAll)
{
    page.FollowFocus({{FOCUS_EDIT, SHOWS_METHOD, SHOWS_LABEL}});
    open();
    go(page.m_pText);
    EXPECT_EQ(page.ime(), "abc");
    go(page.m_pPlain);
    EXPECT_EQ(page.ime(), "2aB");
}

TEST_F(FocusKeysTest, ListsAndComboBoxesBlankTheKeysAsDeclared)
{
    page.FollowFocus({{FOCUS_EDIT, SHOWS_METHOD, SHOWS_LABEL},
                      {FOCUS_COMBO, SHOWS_NOTHING, SHOWS_NOTHING},
                      {FOCUS_TABLE, SHOWS_NOTHING, SHOWS_LABEL}});
    open();
    go(page.m_pBox);
    EXPECT_EQ(page.ime() + page.deleteKey(), "");
    go(page.m_pTable);
    EXPECT_EQ(page.ime(), "");
    EXPECT_EQ(page.deleteKey(), "Delete");
    go(page.m_pBox);
    go(page.m_pText);
    EXPECT_EQ(page.ime(), "abc");
    EXPECT_EQ(page.deleteKey(), "Delete");
}

TEST_F(FocusKeysTest, AFocusOfNoRowLeavesTheKeysAsTheyAre)
{
    page.FollowFocus({{FOCUS_EDIT, SHOWS_METHOD, SHOWS_LABEL}});
    open();
    go(page.m_pText);
    go(page.m_pCheck);
    EXPECT_EQ(page.ime(), "abc");
}

TEST_F(FocusKeysTest, APasswordLeavesTheTitleAlone)
{
    page.FollowFocus({{page.m_pPassword, SHOWS_AS_BEFORE, SHOWS_LABEL},
                      {FOCUS_EDIT, SHOWS_METHOD, SHOWS_LABEL},
                      {FOCUS_ANY, SHOWS_NOTHING, SHOWS_NOTHING}});
    open();
    go(page.m_pText);
    go(page.m_pPassword);
    EXPECT_EQ(page.ime(), "abc");
    EXPECT_EQ(page.deleteKey(), "Delete");
    go(page.m_pCheck);
    EXPECT_EQ(page.ime() + page.deleteKey(), "");
    go(page.m_pPassword);
    EXPECT_EQ(page.ime(), "");
    EXPECT_EQ(page.deleteKey(), "Delete");
}

TEST_F(FocusKeysTest, AnEditThatIsLeftBlanksTheKeysAsDeclared)
{
    page.FollowFocus(
        {{FOCUS_EDIT, SHOWS_METHOD, SHOWS_LABEL}, {FOCUS_LEFT_EDIT, SHOWS_NOTHING, SHOWS_AS_BEFORE}});
    open();
    go(page.m_pText);
    go(page.m_pTable);
    EXPECT_EQ(page.ime(), "");
    EXPECT_EQ(page.deleteKey(), "Delete");
    go(page.m_pBox);
    EXPECT_EQ(page.ime(), "");
}

TEST_F(FocusKeysTest, AListThatIsLeftIsNoEdit)
{
    page.FollowFocus(
        {{FOCUS_TABLE, SHOWS_METHOD, SHOWS_LABEL}, {FOCUS_LEFT_EDIT, SHOWS_NOTHING, SHOWS_NOTHING}});
    open();
    go(page.m_pTable);
    ASSERT_EQ(page.ime(), "2aB");
    go(page.m_pCheck);
    EXPECT_EQ(page.ime(), "2aB");
    EXPECT_EQ(page.deleteKey(), "Delete");
}

TEST_F(FocusKeysTest, ABlankKeyDoesNothingAndComesBackWithItsJob)
{
    page.FollowFocus(
        {{page.m_pPlain, SHOWS_NOTHING, SHOWS_NOTHING}, {FOCUS_EDIT, SHOWS_METHOD, SHOWS_LABEL}});
    open();
    for (QLineEdit* edit : {page.m_pPlain, page.m_pText}) {
        edit->setText("ab");
        go(edit);
        kit::key(Qt::Key_F3);
    }
    EXPECT_EQ(page.m_pPlain->text(), "ab");
    EXPECT_EQ(page.m_pText->text(), "a");
}

TEST_F(FocusKeysTest, TheKeysFollowTheFocusAfterABoxAndAfterALanguageToo)
{
    page.FollowFocus({{FOCUS_EDIT, SHOWS_METHOD, SHOWS_LABEL}, {FOCUS_COMBO, SHOWS_NOTHING, SHOWS_NOTHING}});
    open();
    go(page.m_pText);
    kit::BoxAnswers boxes({"ok"});
    page.Refuse(page.m_pBox, "User name is invalid!");
    EXPECT_EQ(page.ime() + page.deleteKey(), "");
    page.hide();
    kit::settle();
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("German"), 1);
    open();
    go(page.m_pBox);
    EXPECT_EQ(page.ime() + page.deleteKey(), "");
    go(page.m_pText);
    EXPECT_EQ(page.ime(), "abc");
    EXPECT_EQ(page.deleteKey(), qTranslate("Delete"));
    EXPECT_NE(page.deleteKey(), "Delete");
}

TEST_F(FocusKeysTest, TheFilterIsTracedUnderTheNameThatThePageGives)
{
    page.SetFilter(FILTER_WHILE_ACTIVE, "dlgTvOutPut");
    open();
    EXPECT_EQ(tracedTimes("-----dlgTvOutPut installEventFilter----------"), 1);
    {
        kit::BoxAnswers boxes({"ok"});
        page.Refuse(page.m_pText, "User name is invalid!");
    }
    EXPECT_EQ(tracedTimes("-----dlgTvOutPut removeEventFilter----------"), 1);
    EXPECT_EQ(tracedTimes("-----dlgTvOutPut installEventFilter----------"), 2);
    EXPECT_FALSE(traced("dlgFocus"));
}

TEST_F(FocusKeysTest, AFilterThatLastsWhileThePageIsShownOutlivesABoxButLeavesItItsKeys)
{
    page.SetFilter(FILTER_WHILE_SHOWN, "dlgFocus");
    open();
    go(page.m_pTable);
    page.m_pTable->setCurrentCell(0, 0);
    kit::BoxAnswers boxes({"keep"});
    QTimer::singleShot(50, [this] {
        kit::key(Qt::Key_Down);
        EXPECT_EQ(page.m_pTable->currentRow(), 0);
        kit::key(Qt::Key_Return);
    });
    page.Refuse(page.m_pTable, "User name is invalid!");
    EXPECT_EQ(tracedTimes("-----dlgFocus installEventFilter----------"), 1);
    EXPECT_FALSE(traced("-----dlgFocus removeEventFilter----------"));
    kit::key(Qt::Key_Down);
    EXPECT_EQ(page.m_pTable->currentRow(), 1);
    page.hide();
    EXPECT_EQ(tracedTimes("-----dlgFocus removeEventFilter----------"), 1);
}
