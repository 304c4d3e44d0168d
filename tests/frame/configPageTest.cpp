// Pages whose widgets are tied to configuration keys by a table.
#include "frame/configPage.h"
#include "frame/configFiles.h"
#include "frame/noteBox.h"
#include "support/host/ime.h"
#include "support/host/language.h"
#include "support/host/net.h"
#include "support/host/text.h"
#include "tests/frame/frameTest.h"
#include "tests/frame/testPages.h"
#include <QDir>
#include <QFile>
#include <QRegularExpressionValidator>

namespace {

int g_asked = 0;

int isNumber(chString text)
{
    ++g_asked;
    bool ok = false;
    toQString(text).toInt(&ok);
    return ok;
}

class BoundPage : public FrameTest
{
protected:
    BoundPage() { g_asked = 0; }
    static void open(QWidget& page)
    {
        page.show();
        kit::settle();
    }
    static void save(dlgConfigPage& page) { kit::tap(page.frame().m_pSoftKeyBar->GetButton(0)); }
    static void back(dlgConfigPage& page) { kit::tap(page.frame().m_pSoftKeyBar->GetButton(3)); }
    QByteArray stored() const { return readFile(SYSTEM_INI); }
};

} // namespace

TEST_F(BoundPage, WidgetsShowTheirDefaults)
{
    dlgConfigPage page;
    EXPECT_EQ(page.m_pName->text(), "nobody");
    EXPECT_EQ(page.m_pAddress->text(), "");
    EXPECT_EQ(page.m_pKind->currentIndex(), 1);
    EXPECT_TRUE(page.m_pEnable->isChecked());
    EXPECT_EQ(page.m_pName->maxLength(), 12);
    EXPECT_GT(page.m_pAddress->maxLength(), 99);
}

TEST_F(BoundPage, WidgetsShowTheStoredValues)
{
    writeKey(SYSTEM_INI, "Test", "strName", "anna");
    writeKey(SYSTEM_INI, "Test", "eKind", "one");
    writeKey(SYSTEM_INI, "Test", "bEnable", "0");
    dlgConfigPage page;
    EXPECT_EQ(page.m_pName->text(), "anna");
    EXPECT_EQ(page.m_pKind->currentIndex(), 0);
    EXPECT_FALSE(page.m_pEnable->isChecked());
}

TEST_F(BoundPage, AShowAfterBackShowsTheStoredValuesAgain)
{
    dlgConfigPage page;
    open(page);
    page.m_pName->setText("abandoned");
    page.m_pKind->setCurrentIndex(0);
    back(page);
    EXPECT_FALSE(page.isVisible());
    open(page);
    EXPECT_EQ(page.m_pName->text(), "nobody");
    EXPECT_EQ(page.m_pKind->currentIndex(), 1);
    EXPECT_FALSE(stored().contains("abandoned"));
}

TEST_F(BoundPage, AShowSeesWhatOthersStored)
{
    dlgConfigPage page;
    writeKey(SYSTEM_INI, "Test", "strName", "other");
    open(page);
    EXPECT_EQ(page.m_pName->text(), "other");
}

TEST_F(BoundPage, EachShowRefreshesSetsInputMethodsAndTheFocus)
{
    dlgConfigPage page;
    open(page);
    EXPECT_EQ(page.m_nRefreshed, 1);
    EXPECT_EQ(qGetCurrentIME(page.m_pName), "ABC");
    EXPECT_EQ(qGetCurrentIME(page.m_pAddress), "123");
    EXPECT_EQ(page.focusWidget(), page.m_pAddress);
    qShift2NextIME(page.m_pName);
    page.m_pKind->setFocus();
    back(page);
    open(page);
    EXPECT_EQ(page.m_nRefreshed, 2);
    EXPECT_EQ(qGetCurrentIME(page.m_pName), "ABC");
    EXPECT_EQ(page.focusWidget(), page.m_pAddress);
}

TEST_F(BoundPage, ARefreshSeesWhatIsStoredAndNotWhatWasLeft)
{
    dlgConfigPage page;
    open(page);
    page.m_pName->setText("abandoned");
    back(page);
    open(page);
    EXPECT_EQ(page.m_strRefreshedWith, "nobody");
}

TEST_F(BoundPage, SaveStoresTellsAndCloses)
{
    writeKey(SYSTEM_INI, "Test", "strName", "anna");
    dlgConfigPage page;
    open(page);
    page.m_pName->setText("berta");
    page.m_pKind->setCurrentIndex(0);
    save(page);
    EXPECT_EQ(page.m_nBroadcasts, 1);
    EXPECT_FALSE(page.isVisible());
    EXPECT_EQ(page.result(), QDialog::Accepted);
    EXPECT_STREQ(NUX_SubClass::nuxGetRegistryString(SYSTEM_INI, "Test", "strName", "").GetText(), "berta");
    EXPECT_STREQ(NUX_SubClass::nuxGetRegistryString(SYSTEM_INI, "Test", "eKind", "").GetText(), "one");
}

TEST_F(BoundPage, SaveOfAnUnchangedPageTellsNobody)
{
    const char* const stored[][2] = {
        {"strName", "anna"}, {"strAddress", "1"}, {"eKind", "one"}, {"bEnable", "0"}};
    for (const auto& pair : stored)
        writeKey(SYSTEM_INI, "Test", pair[0], pair[1]);
    dlgConfigPage page;
    open(page);
    save(page);
    EXPECT_EQ(page.m_nBroadcasts, 0);
    EXPECT_FALSE(page.isVisible());
}

TEST_F(BoundPage, ARefusedSaveStoresNothingAndStaysOpen)
{
    dlgConfigPage page;
    page.m_nSaveResult = 0;
    open(page);
    page.m_pName->setText("berta");
    const QByteArray before = stored();
    save(page);
    EXPECT_TRUE(page.isVisible());
    EXPECT_EQ(page.m_nBroadcasts, 0);
    EXPECT_EQ(stored(), before);
}

TEST_F(BoundPage, TheFirstCheckThatFailsEndsTheSave)
{
    dlgConfigPage page;
    open(page);
    page.m_pName->setText("");
    page.m_pAddress->setText("x");
    kit::BoxAnswers boxes({"ok"});
    EXPECT_EQ(page.Check({{page.m_pName, CHECK_FILLED, nullptr, "User name is invalid!"},
                          {page.m_pAddress, CHECK_VALUE, isNumber, "IP address is invalid!"}}),
              0);
    EXPECT_EQ(boxes.texts(), QStringList("User name is invalid!"));
    EXPECT_EQ(page.focusWidget(), page.m_pName);
    EXPECT_EQ(g_asked, 0);
}

TEST_F(BoundPage, ChecksThatAllPassAskNothing)
{
    dlgConfigPage page;
    open(page);
    page.m_pAddress->setText("12");
    kit::BoxAnswers boxes;
    EXPECT_EQ(page.Check({{page.m_pName, CHECK_FILLED, nullptr, "User name is invalid!"},
                          {page.m_pAddress, CHECK_ENTRY, isNumber, "IP address is invalid!"}}),
              1);
    EXPECT_EQ(boxes.texts(), QStringList());
    EXPECT_EQ(g_asked, 1);
}

TEST_F(BoundPage, AnEntryThatIsUnchangedIsNotValidatedAgainUnlessItIsEmpty)
{
    writeKey(SYSTEM_INI, "Test", "strAddress", "not a number");
    dlgConfigPage page;
    open(page);
    kit::BoxAnswers boxes({"ok", "ok", "ok", "ok"});
    const auto check = [&](PAGE_CHECK rule) {
        return page.Check({{page.m_pAddress, rule, isNumber, "IP address is invalid!"}});
    };
    EXPECT_EQ(check(CHECK_ENTRY), 1);
    EXPECT_EQ(check(CHECK_CHANGED), 1);
    EXPECT_EQ(check(CHECK_VALUE), 0);
    page.m_pAddress->setText("neither");
    EXPECT_EQ(check(CHECK_ENTRY), 0);
    EXPECT_EQ(check(CHECK_CHANGED), 0);
    page.m_pAddress->setText("");
    EXPECT_EQ(check(CHECK_ENTRY), 0);
    EXPECT_EQ(check(CHECK_CHANGED), 1);
    EXPECT_EQ(boxes.texts().size(), 4);
}

TEST_F(BoundPage, AFieldOfDigitsTakesNothingElse)
{
    dlgConfigPage page;
    open(page);
    kit::tap(page.m_pSeconds);
    kit::type("1a*#+ 2");
    kit::padKey('3');
    EXPECT_EQ(page.m_pSeconds->text(), "123");
    kit::type("4");
    EXPECT_EQ(page.m_pSeconds->text(), "123");
    page.m_pSeconds->clear();
    EXPECT_TRUE(page.m_pSeconds->hasAcceptableInput());
}

TEST_F(BoundPage, APagesOwnValidatorStays)
{
    dlgConfigPage page;
    QLineEdit edit(&page);
    QRegularExpressionValidator own(QRegularExpression("[0-9*#]*"));
    edit.setValidator(&own);
    page.Bind({{&edit, registryOpen(SYSTEM_INI, "Test"), "strOwn", "", "123", "123", 3, DIGITS_ONLY}});
    EXPECT_EQ(edit.validator(), &own);
    EXPECT_EQ(edit.maxLength(), 3);
}

TEST_F(BoundPage, WhatWasStoredOfTwoSectionsIsToldThoughTheOtherFailed)
{
    dlgConfigPage page;
    open(page);
    page.m_pName->setText("berta");
    page.m_pSeconds->setText("7");
    QDir().rename(hostPath("/rundata/config/user"), hostPath("/rundata/config/away"));
    QFile(hostPath("/rundata/config/user")).open(QIODevice::WriteOnly);
    kit::BoxAnswers boxes({"ok"});
    save(page);
    EXPECT_EQ(boxes.texts(), QStringList("The settings cannot be saved!"));
    EXPECT_TRUE(page.isVisible());
    EXPECT_EQ(page.m_nBroadcasts, 1);
    EXPECT_EQ(page.m_pSeconds->text(), "7");
    QFile::remove(hostPath("/rundata/config/user"));
    QDir().rename(hostPath("/rundata/config/away"), hostPath("/rundata/config/user"));
    save(page);
    EXPECT_FALSE(page.isVisible());
    EXPECT_EQ(page.m_nBroadcasts, 2);
    EXPECT_STREQ(NUX_SubClass::nuxGetRegistryString(USER_INI, "Test", "nSeconds", "").GetText(), "7");
}

TEST_F(BoundPage, TheNoteOfAFailedSaveSpeaksTheUsersLanguage)
{
    for (const char* language : {"German", "French", "Spanish", "Chinese"}) {
        ASSERT_EQ(GetLanguageHelper()->SetLanguage(language), 1);
        kit::BoxAnswers boxes({"ok"});
        EXPECT_EQ(noteUnlessSaved(0, nullptr), 0);
        EXPECT_EQ(boxes.texts(), QStringList(qTranslate("The settings cannot be saved!")));
        EXPECT_NE(boxes.texts().value(0), "The settings cannot be saved!");
    }
    kit::BoxAnswers boxes;
    EXPECT_EQ(noteUnlessSaved(1, nullptr), 1);
    EXPECT_TRUE(boxes.texts().isEmpty());
}
