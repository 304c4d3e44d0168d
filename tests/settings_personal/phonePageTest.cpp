// The page "Personalize": the language, and do-not-disturb on the analogue line.
#include "support/host/language.h"
#include "tests/settings_personal/personalPageTest.h"
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QTimer>

namespace {

class PhonePage : public PersonalPageTest
{
protected:
    PhonePage() { writeFile(USER_FILE, "[Language]\nstrGUILanguage=German\n[DND]\nbEffectPstn=1\n"); }
    ~PhonePage() override { GetLanguageHelper()->SetLanguage("English"); }
    void SetUp() override { GetLanguageHelper()->SetLanguage("English"); }
    void openPage() { open("Personalize"); }
    std::string language() const
    {
        return child<QComboBox>("cmbBoxLanguage")->currentData().toString().toStdString();
    }
};

TEST_F(PhonePage, ShowsItsTextsAndWhatIsStored)
{
    openPage();
    EXPECT_EQ(title(), "Phone Setting");
    EXPECT_EQ(softKeys(), (QStringList{"Save", "", "", "Back"}));
    EXPECT_EQ(child<QLabel>("labLanguage")->text(), "Language");
    EXPECT_EQ(child<QCheckBox>("chkDndPstn")->text(), "DND Effect On PSTN");
    EXPECT_EQ(items("cmbBoxLanguage"), (QStringList{"English: English", "中文: Chinese", "Deutsch: German",
                                                    "Français: French", "Español: Spanish"}));
    EXPECT_EQ(language(), "German");
    EXPECT_TRUE(child<QCheckBox>("chkDndPstn")->isChecked());
    EXPECT_EQ(focusName(), "cmbBoxLanguage");
    kit::shot("phone-page");
}

TEST_F(PhonePage, WithNothingStoredItIsEnglishAndWithoutEffect)
{
    writeFile(USER_FILE, "");
    openPage();
    EXPECT_EQ(language(), "English");
    EXPECT_FALSE(child<QCheckBox>("chkDndPstn")->isChecked());
    expectSaved();
    EXPECT_EQ(readFile(USER_FILE), "");
}

TEST_F(PhonePage, LanguagesHaveTheirOwnNamesInEachLanguage)
{
    openPage();
    const QStringList before = items("cmbBoxLanguage");
    GetLanguageHelper()->SetLanguage("Chinese");
    kit::settle();
    EXPECT_EQ(items("cmbBoxLanguage"), before);
    EXPECT_NE(title(), "Phone Setting");
}

TEST_F(PhonePage, WithoutAnotherLanguageNobodyIsAskedAndNothingRestarts)
{
    openPage();
    tick("chkDndPstn", false);
    expectSaved();
    expectStored(USER_FILE, "DND", "bEffectPstn", "0");
    expectChangesTold({"11 0"});
    EXPECT_TRUE(logged("reboot").isEmpty());
}

TEST_F(PhonePage, AnUnchangedSaveTellsAllTheSame)
{
    openPage();
    expectSaved();
    expectChangesTold({"11 0"});
}

TEST_F(PhonePage, ThereAndBackIsNoOtherLanguage)
{
    openPage();
    choose("cmbBoxLanguage", "French");
    choose("cmbBoxLanguage", "German");
    expectSaved();
    EXPECT_TRUE(logged("reboot").isEmpty());
}

TEST_F(PhonePage, NoClosesAndLeavesTheLanguageStoredForTheNextStart)
{
    openPage();
    QDialog* dialog = qobject_cast<QDialog*>(page);
    choose("cmbBoxLanguage", "French");
    kit::BoxAnswers boxes({"no"});
    save();
    EXPECT_EQ(boxes.titles(), QStringList{"Note"});
    EXPECT_EQ(boxes.texts(), QStringList{"Reset language ?"});
    EXPECT_FALSE(page->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    expectStored(USER_FILE, "Language", "strGUILanguage", "French");
    expectChangesTold({"11 0"});
    EXPECT_TRUE(logged("reboot").isEmpty());
    kit::settle();
    EXPECT_EQ(GetLanguageHelper()->GetLanguage(), "English") << "this start's";
}

TEST_F(PhonePage, TheLanguageIsStoredBeforeTheQuestionAndToldBeforeIt)
{
    openPage();
    choose("cmbBoxLanguage", "Spanish");
    QTimer look;
    look.callOnTimeout([&] {
        QDialog* box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!box || !box->isVisible())
            return;
        look.stop();
        expectStored(USER_FILE, "Language", "strGUILanguage", "Spanish");
        expectChangesTold({"11 0"});
        kit::shot("phone-page-question");
        box->reject();
    });
    look.start(1);
    save();
    EXPECT_FALSE(look.isActive()) << "somebody was asked";
    EXPECT_FALSE(page->isVisible());
}

TEST_F(PhonePage, YesRestartsAndDoesNothingElse)
{
    openPage();
    choose("cmbBoxLanguage", "Chinese");
    kit::BoxAnswers boxes({"yes"});
    save();
    EXPECT_EQ(logged("reboot"), QStringList{"1"});
    expectStored(USER_FILE, "Language", "strGUILanguage", "Chinese");
    EXPECT_TRUE(page->isVisible()) << "until the phone goes";
}

TEST_F(PhonePage, ThenTheShownLanguageIsTheOneToCompareWith)
{
    openPage();
    choose("cmbBoxLanguage", "French");
    {
        kit::BoxAnswers boxes({"no"});
        save();
    }
    openPage();
    EXPECT_EQ(language(), "French");
    expectSaved();
}

TEST_F(PhonePage, BackStoresNothing)
{
    const QByteArray before = readFile(USER_FILE);
    openPage();
    choose("cmbBoxLanguage", "French");
    back();
    EXPECT_EQ(readFile(USER_FILE), before);
    expectChangesTold({});
    openPage();
    EXPECT_EQ(language(), "German");
}

TEST_F(PhonePage, AFullDiskIsToldAndNobodyIsAsked)
{
    openPage();
    choose("cmbBoxLanguage", "French");
    expectFailedSave(USER_FILE);
    expectChangesTold({});
    EXPECT_EQ(language(), "French");
}

TEST_F(PhonePage, ItsFilterIsTracedUnderTheNameOfAnotherPage)
{
    openPage();
    EXPECT_EQ(traces().count("-----dlgTvOutPut installEventFilter----------"), 1);
    back();
    EXPECT_EQ(traces().count("-----dlgTvOutPut removeEventFilter----------"), 1);
    EXPECT_TRUE(traces().filter("dlgPhone_Setting installEventFilter").isEmpty());
}

} // namespace
