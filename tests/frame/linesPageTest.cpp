// A page with a tab and a body for each line.
#include "frame/linesPage.h"
#include "frame/configFiles.h"
#include "support/host/ime.h"
#include "support/host/language.h"
#include "support/host/message.h"
#include "tests/file/failingCalls.h"
#include "tests/kit/pageTest.h"
#include <QDir>
#include <QFile>
#include <QFrame>
#include <QLabel>
#include <QStackedWidget>
#include <QTabWidget>

namespace {

const tagChoice kCalls[] = {{HX_TR("Disabled"), "0"}, {HX_TR("Auto"), "1"}};

QByteArray lineFile(int line)
{
    return SIP_ACCOUNT_FILE + QByteArray::number(line) + ".cfg";
}

class subDlgCode : public LineBody
{
public:
    subDlgCode()
    {
        m_pCaption->setText("Password");
        m_pCaption->setGeometry(340, 10, 200, 36);
        m_pOn->setObjectName("editOn");
        m_pOff->setObjectName("editOff");
        m_pCalls->setObjectName("cmbCalls");
        m_pCalls->setGeometry(20, 10, 300, 36);
        m_pOn->setGeometry(20, 60, 300, 36);
        m_pOff->setGeometry(20, 110, 300, 36);
    }
    QWidget* FirstFocus() override { return m_pCalls; }

    QLabel* m_pCaption = new QLabel(this);
    QComboBox* m_pCalls = new QComboBox(this);
    QLineEdit* m_pOn = new QLineEdit(this);
    QLineEdit* m_pOff = new QLineEdit(this);
    int m_nBound = 0;
    int m_nRefreshed = 0;
    QString m_strRefreshedWith;

protected:
    void BindLine(int line) override
    {
        ++m_nBound;
        const HREGISTRY account = registryOpen(lineFile(line).constData(), "Code");
        Bind({
            {m_pCalls, account, "eCalls", "", kCalls},
            {m_pOn, account, "On", "", "2aB,ABC,abc,123", "123", 32},
            {m_pOff, account, "Off", "", "2aB,ABC,abc,123", "123"},
        });
    }
    void RefreshData() override
    {
        ++m_nRefreshed;
        m_strRefreshedWith = m_pOn->text();
    }
    int save() override
    {
        if (m_pOn->text().isEmpty())
            return 1;
        return Check({{m_pOff, CHECK_FILLED, nullptr, "Password is invalid!"}});
    }
    void BroadcastChange() override
    {
        msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_ACCOUNT, unsigned(m_iLine));
    }
};

class dlgCodes : public LinesPage
{
public:
    dlgCodes() : LinesPage(nullptr, nullptr)
    {
        QFrame* background = new QFrame(this);
        background->setGeometry(0, 0, 800, 480);
        QLabel* place = new QLabel(this);
        place->setGeometry(160, 50, 630, 380);
        BuildFrame(background, HX_TR("WAN"), KEYS_EDIT);
        BuildLines(place);
    }
    using LinesPage::Body;
    int Bodies() const { return findChild<qLinePages*>()->GetLinePageCount(); }

protected:
    LineBody* MakeBody() override { return new subDlgCode; }
};

class LinesPages : public PageTest
{
protected:
    LinesPages()
    {
        for (int line = 0; line < 4; ++line)
            writeFile(lineFile(line), "[Code]\neCalls=1\nOn=\nOff=\n");
    }
    subDlgCode* body(int line) { return static_cast<subDlgCode*>(dialog.Body(line)); }
    int tab() const { return dialog.findChild<qLinePages*>()->m_pTabs->currentIndex(); }
    void goTo(int line) { dialog.findChild<qLinePages*>()->m_pTabs->setCurrentIndex(line); }

    dlgCodes dialog;
};

} // namespace

TEST_F(LinesPages, OneBodyIsMadeWithThePageAndTheOthersAfterIt)
{
    EXPECT_EQ(dialog.Bodies(), 1);
    EXPECT_EQ(dialog.findChild<qLinePages*>()->m_pTabs->count(), 4);
    show(dialog);
    EXPECT_EQ(dialog.Bodies(), 4);
    EXPECT_EQ(dialog.findChild<qLinePages*>()->m_pPages->count(), 4);
    kit::shot("lines-page");
}

TEST_F(LinesPages, EachBodyShowsTheKeysOfItsLine)
{
    nuxSetRegistryString(lineFile(2), "Code", "On", "77");
    show(dialog);
    EXPECT_EQ(body(0)->m_pOn->text(), "");
    EXPECT_EQ(body(2)->m_pOn->text(), "77");
    EXPECT_EQ(body(2)->m_pCalls->currentText(), "Auto");
    EXPECT_EQ(qGetCurrentIME(body(3)->m_pOn), "123");
    EXPECT_EQ(body(1)->m_pOn->maxLength(), 32);
}

TEST_F(LinesPages, EveryShowStartsOnTheFirstLineWithTheStoredValues)
{
    show(dialog);
    goTo(2);
    body(2)->m_pOn->setText("abandoned");
    qSetCurrentIME(body(2)->m_pOn, "abc");
    back();
    nuxSetRegistryString(lineFile(1), "Code", "Off", "other");
    show(dialog);
    EXPECT_EQ(tab(), 0);
    EXPECT_EQ(dialog.focusWidget(), body(0)->m_pCalls);
    EXPECT_EQ(body(2)->m_pOn->text(), "");
    EXPECT_EQ(body(1)->m_pOff->text(), "other");
    EXPECT_EQ(qGetCurrentIME(body(2)->m_pOn), "123");
    EXPECT_EQ(body(2)->m_nBound, 1);
}

TEST_F(LinesPages, EachShowRefreshesEveryBodyWithWhatIsStored)
{
    show(dialog);
    back();
    for (int line = 0; line < 4; ++line) {
        nuxSetRegistryString(lineFile(line), "Code", "On", "77");
        body(line)->m_nRefreshed = 0;
    }
    show(dialog);
    for (int line = 0; line < 4; ++line) {
        EXPECT_EQ(body(line)->m_nRefreshed, 1) << line;
        EXPECT_EQ(body(line)->m_strRefreshedWith, "77") << line;
    }
}

TEST_F(LinesPages, ABodyOfAnotherLineIsBoundAnew)
{
    nuxSetRegistryString(lineFile(3), "Code", "On", "33");
    subDlgCode lone;
    lone.LoadLineInfo(0);
    lone.LoadLineInfo(3);
    EXPECT_EQ(lone.m_pOn->text(), "33");
    EXPECT_EQ(lone.m_pCalls->count(), 2);
    lone.m_pOn->setText("44");
    EXPECT_TRUE(lone.SaveLineInfo());
    expectStored(lineFile(3), "Code", "On", "44");
    expectStored(lineFile(0), "Code", "On", "");
    EXPECT_FALSE(lone.SaveLineInfo());
}

TEST_F(LinesPages, SaveTellsOfTheLinesThatChanged)
{
    show(dialog);
    body(1)->m_pOff->setText("1");
    body(3)->m_pCalls->setCurrentIndex(0);
    expectSaved();
    expectStored(lineFile(1), "Code", "Off", "1");
    expectStored(lineFile(3), "Code", "eCalls", "0");
    expectChangesTold({"3 1", "3 3"});
    show(dialog);
    expectSaved();
    expectChangesTold({});
}

TEST_F(LinesPages, BadInputOnALineRefusesAllAndOpensItsTab)
{
    show(dialog);
    body(0)->m_pOff->setText("1");
    body(2)->m_pOn->setText("2");
    expectRefused(lineFile(0), "Password is invalid!", "editOff");
    EXPECT_EQ(tab(), 2);
    EXPECT_EQ(dialog.focusWidget(), body(2)->m_pOff);
    expectStored(lineFile(2), "Code", "On", "");
    expectChangesTold({});
}

TEST_F(LinesPages, AFullDiskIsToldOnTheFirstLineThatIsNotStored)
{
    show(dialog);
    body(1)->m_pOn->setText("5");
    body(1)->m_pOff->setText("6");
    expectFailedSave(lineFile(1));
    EXPECT_EQ(tab(), 1);
    EXPECT_EQ(body(1)->m_pOn->text(), "5");
    expectChangesTold({});
    expectSaved();
    expectStored(lineFile(1), "Code", "On", "5");
    expectChangesTold({"3 1"});
}

TEST_F(LinesPages, LinesThatCannotBeStoredDoNotKeepTheOthersFromIt)
{
    show(dialog);
    for (int line : {1, 2, 3})
        body(line)->m_pOn->setText("5");
    for (int line : {1, 2, 3})
        body(line)->m_pOff->setText("6");
    for (int line : {1, 2}) {
        QFile::remove(hostPath(lineFile(line)));
        ASSERT_TRUE(QDir().mkpath(hostPath(lineFile(line))));
    }
    kit::BoxAnswers boxes({"ok"});
    save();
    EXPECT_EQ(boxes.texts(), QStringList("The settings cannot be saved!"));
    EXPECT_EQ(tab(), 1) << "the first that failed";
    expectStored(lineFile(3), "Code", "On", "5");
    expectChangesTold({"3 3"});
    for (int line : {1, 2})
        ASSERT_TRUE(QDir().rmdir(hostPath(lineFile(line))));
    expectSaved();
    expectStored(lineFile(1), "Code", "On", "5");
    expectStored(lineFile(2), "Code", "Off", "6");
}

TEST_F(LinesPages, APageMadeInAnotherLanguageShowsItOnEveryLine)
{
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("German"), 1);
    dlgCodes german;
    show(german);
    for (int line = 0; line < 4; ++line) {
        const auto* made = static_cast<subDlgCode*>(german.Body(line));
        EXPECT_EQ(made->m_pCaption->text(), qTranslate("Password")) << line;
        EXPECT_EQ(made->m_pCalls->itemText(0), qTranslate("Disabled")) << line;
    }
    EXPECT_NE(qTranslate("Password"), "Password");
}

TEST_F(LinesPages, TabsCaptionsAndChoicesFollowTheLanguage)
{
    show(dialog);
    back();
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("German"), 1);
    show(dialog);
    for (int line = 0; line < 4; ++line) {
        EXPECT_EQ(dialog.findChild<qLinePages*>()->m_pTabs->tabText(line),
                  QString("Leitung %1").arg(line + 1));
        EXPECT_EQ(body(line)->m_pCaption->text(), qTranslate("Password")) << line;
        EXPECT_EQ(body(line)->m_pCalls->itemText(0), qTranslate("Disabled")) << line;
        EXPECT_EQ(body(line)->m_pCalls->currentIndex(), 1) << line;
    }
    EXPECT_NE(qTranslate("Password"), "Password");
    expectSaved();
    expectChangesTold({});
}
