// The editor of one programmable key.
#include "settings/call/cDssKeyInfo.h"
#include "settings/call/dlgDssKeySetting.h"
#include "support/host/combo.h"
#include "support/host/ime.h"
#include "support/host/language.h"
#include "tests/settings_call/keyPageTest.h"
#include <QAbstractItemView>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLabel>

namespace {

class KeySetting : public KeyPageTest
{
protected:
    KeySetting()
    {
        writeKeys(item("Line", "Line=\"2\"") +
                  item("BLF", "Line=\"1\" Label=\"Anna\" Extension=\"8001\" Value=\"8001\"") +
                  item("Speed Dial", "Line=\"-1\" Label=\"Home\" Value=\"4711\""));
    }
    ~KeySetting() override { GetLanguageHelper()->SetLanguage("English"); }
    // number: from 1.
    void openKey(int number)
    {
        GetDssKeySetting()->ShowByDsskeyIndex(number - 1);
        page = GetDssKeySetting();
        kit::settle();
    }
    // Another key first, so that the type's rules hold.
    void openSwitched(int number)
    {
        openKey(1);
        back();
        openKey(number);
    }
    std::string states() const
    {
        std::string text;
        for (const char* name : {"cmbLine", "editValue", "editLabel", "editExtension"})
            text += page->findChild<QWidget*>(name)->isEnabled() ? "on " : "off ";
        return text + (child<QComboBox>("cmbLine")->findText("Auto") == 0 ? "Auto" : "-");
    }
    std::string memory(int number) const
    {
        const QByteArray section = "memory" + QByteArray::number(number);
        return (stored(PHONE_FILE, section, "DKtype") + "|" + stored(PHONE_FILE, section, "Line") + "|" +
                stored(PHONE_FILE, section, "Value"))
            .toStdString();
    }
    QString chosenLine() const { return child<QComboBox>("cmbLine")->currentText(); }
};

} // namespace

TEST_F(KeySetting, ShowsTheKeyWithItsChoicesAndLimits)
{
    openSwitched(2);
    EXPECT_EQ(title(), "DSS Key Setting");
    EXPECT_EQ(page->findChild<qLeftBar*>()->title(), "DSS Key");
    EXPECT_EQ(page->findChild<qLeftBar*>()->icon(),
              "/phone/resource/theme/default/bmp/menu/menu_speedredial.png");
    EXPECT_EQ(softKeyTitle(0), "Save");
    EXPECT_EQ(softKeyTitle(3), "Back");
    EXPECT_EQ(child<QLabel>("labKeyName")->text(), "DSS Key 02");
    QStringList types;
    for (int i = 0; i < child<QComboBox>("cmbType")->count(); ++i)
        types.append(child<QComboBox>("cmbType")->itemText(i) + ":" +
                     qGetExternValue(child<QComboBox>("cmbType"), i).GetText());
    EXPECT_EQ(types, (QStringList{"None:0", "Line:1", "Speed Dial:2", "BLF:3", "BLF List:4"}));
    EXPECT_EQ(child<QComboBox>("cmbType")->currentIndex(), 3);
    EXPECT_EQ(chosenLine(), "Line 2");
    EXPECT_EQ(child<QLineEdit>("editLabel")->text(), "Anna");
    EXPECT_EQ(child<QLineEdit>("editExtension")->text(), "8001");
    EXPECT_EQ(child<QLineEdit>("editValue")->text(), "8001");
    EXPECT_EQ(child<QLineEdit>("editValue")->maxLength(), 32);
    EXPECT_EQ(child<QLineEdit>("editLabel")->maxLength(), 99);
    EXPECT_EQ(child<QLineEdit>("editExtension")->maxLength(), 99);
    EXPECT_EQ(qGetCurrentIME(child<QLineEdit>("editValue")), "123");
    EXPECT_EQ(qGetCurrentIME(child<QLineEdit>("editLabel")), "2aB");
    EXPECT_EQ(focusName(), "cmbType");
    kit::shot("key-setting");
}

TEST_F(KeySetting, OnlyDigitsGoIntoTheValue)
{
    openSwitched(3);
    kit::tap(child<QLineEdit>("editValue"));
    child<QLineEdit>("editValue")->selectAll();
    kit::type("1a*2");
    EXPECT_EQ(child<QLineEdit>("editValue")->text(), "12");
}

TEST_F(KeySetting, TheTypeSwitchesWhatCanBeEntered)
{
    openKey(1);
    const char* const wanted[] = {"off off off off Auto", "on off off off Auto", "on on on off Auto",
                                  "on on on on -", "on off off off -"};
    for (const int type : {2, 3, 4, 0, 1}) {
        child<QComboBox>("cmbType")->setCurrentIndex(type);
        EXPECT_EQ(states(), wanted[type]) << type;
    }
}

// The rules come with the first change of the type.
TEST_F(KeySetting, OnItsFirstOpeningAFreeKeyLeavesEverythingOpen)
{
    openKey(4);
    EXPECT_EQ(child<QComboBox>("cmbType")->currentIndex(), 0);
    EXPECT_EQ(states(), "on on on on -");
    back();
    openSwitched(4);
    EXPECT_EQ(states(), "off off off off Auto");
}

TEST_F(KeySetting, AutoGoesWithAKeyThatWatches)
{
    openKey(3);
    EXPECT_EQ(chosenLine(), "Auto");
    child<QComboBox>("cmbType")->setCurrentIndex(3);
    EXPECT_EQ(chosenLine(), "Line 1");
    child<QComboBox>("cmbLine")->setCurrentIndex(2);
    child<QComboBox>("cmbType")->setCurrentIndex(2);
    EXPECT_EQ(chosenLine(), "Line 3");
    child<QComboBox>("cmbType")->setCurrentIndex(4);
    EXPECT_EQ(chosenLine(), "Line 3");
}

TEST_F(KeySetting, ALineThatHasNoItemLeavesTheChoice)
{
    openKey(1);
    EXPECT_EQ(chosenLine(), "Line 3");
    back();
    writeKeys(item("BLF", "Line=\"-1\" Value=\"1\""));
    openKey(1);
    EXPECT_EQ(chosenLine(), "Line 3");
}

TEST_F(KeySetting, AWordOfThePhonesIsShownTranslated)
{
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("German"), 1);
    writeKeys(item("Speed Dial", "Line=\"0\" Label=\"Media\" Value=\"1\"") +
              item("Speed Dial", "Line=\"0\" Label=\"Zoe\" Value=\"1\""));
    openKey(1);
    EXPECT_EQ(child<QLineEdit>("editLabel")->text(), "Medien");
    EXPECT_EQ(child<QLabel>("labKeyName")->text(), "DSS-Taste 01");
    openKey(2);
    EXPECT_EQ(child<QLineEdit>("editLabel")->text(), "Zoe");
}

TEST_F(KeySetting, ASpeedDialIsStoredInBothFilesAndTold)
{
    openSwitched(4);
    child<QComboBox>("cmbType")->setCurrentIndex(2);
    choose("cmbLine", "1");
    enter("editLabel", "Ben");
    enter("editValue", "8002");
    expectSaved();
    EXPECT_EQ(keyInFile(4), "Speed Dial|1,Ben,,8002");
    EXPECT_EQ(memory(4), "0|1|8002");
    expectChangesTold({"26 0"});
    EXPECT_EQ(keyInFile(2), "BLF|1,Anna,8001,8001");
}

TEST_F(KeySetting, AKeyThatWatchesIsToldTwice)
{
    openSwitched(4);
    child<QComboBox>("cmbType")->setCurrentIndex(3);
    enter("editValue", "8003");
    enter("editExtension", "8004");
    expectSaved();
    EXPECT_EQ(keyInFile(4), "BLF|0,,8004,8003");
    EXPECT_EQ(memory(4), "16|0|8003");
    expectChangesTold({"26 0", "10 0"});
    openKey(4);
    child<QComboBox>("cmbType")->setCurrentIndex(4);
    expectSaved();
    EXPECT_EQ(keyInFile(4), "BLF List|0,,,");
    EXPECT_EQ(memory(4), "39|0|");
    expectChangesTold({"26 0", "10 0"});
}

TEST_F(KeySetting, AKeyThatWatchedIsToldTwiceAndThenNoMore)
{
    openSwitched(2);
    choose("cmbType", "0"); // by the keys
    expectSaved();
    EXPECT_EQ(keyInFile(2), "N/A|,,,");
    EXPECT_EQ(memory(2), "0|-1|");
    expectChangesTold({"26 0", "10 0"});
    openKey(2);
    choose("cmbType", "1");
    expectSaved();
    expectChangesTold({"26 0"});
}

TEST_F(KeySetting, AKeyOfTheListIsToldTwiceWhenItComesAndWhenItGoes)
{
    openSwitched(4);
    child<QComboBox>("cmbType")->setCurrentIndex(4);
    expectSaved();
    expectChangesTold({"26 0", "10 0"});
    openKey(4);
    choose("cmbType", "1");
    expectSaved();
    expectChangesTold({"26 0", "10 0"});
    openKey(4);
    expectSaved();
    expectChangesTold({"26 0"});
}

// With two taps on the list of the types.
TEST_F(KeySetting, ATypeThatIsTouchedInItsListIsToldTwiceToo)
{
    openSwitched(2);
    QComboBox* types = child<QComboBox>("cmbType");
    kit::tap(types);
    kit::stepTime(1000);
    const auto touch = [&](int row) {
        QAbstractItemView* list = types->view();
        const QRect at = list->visualRect(types->model()->index(row, 0));
        kit::tap(list->viewport()->mapToGlobal(at.center()));
    };
    touch(1);
    touch(1);
    ASSERT_EQ(types->currentIndex(), 1);
    expectSaved();
    expectChangesTold({"26 0", "10 0"});
}

TEST_F(KeySetting, LeavingAKeyThatWatchesForgetsIt)
{
    openSwitched(2);
    back();
    openKey(1);
    expectSaved();
    expectChangesTold({"26 0"});
    openKey(2);
    kit::key(Qt::Key_Escape);
    openKey(1);
    expectSaved();
    expectChangesTold({"26 0"});
}

TEST_F(KeySetting, WhatClosesOverItForgetsItToo)
{
    openSwitched(2);
    QCloseEvent close;
    QCoreApplication::sendEvent(child<QLabel>("labKeyName"), &close);
    choose("cmbType", "1");
    expectSaved();
    expectChangesTold({"26 0"});
}

TEST_F(KeySetting, ALineKeyOnAutoIsMinusOneInBothFiles)
{
    openKey(1);
    choose("cmbLine", "-1");
    expectSaved();
    EXPECT_EQ(keyInFile(1), "Line|-1,,,");
    EXPECT_EQ(memory(1), "0|-1|");
}

TEST_F(KeySetting, AListKeyLosesALabelThatWasLeft)
{
    writeKeys(item("BLF List", "Line=\"1\" Label=\"old\" Extension=\"e\" Value=\"1\""));
    openKey(1);
    expectSaved();
    EXPECT_EQ(keyInFile(1), "BLF List|1,,,");
}

TEST_F(KeySetting, AKeyThatBecomesOneOfTheListLosesTheLabelThatIsStillShown)
{
    openSwitched(2);
    child<QComboBox>("cmbType")->setCurrentIndex(4);
    EXPECT_EQ(child<QLineEdit>("editLabel")->text(), "Anna");
    expectSaved();
    EXPECT_EQ(keyInFile(2), "BLF List|1,,,");
}

TEST_F(KeySetting, OnTheFirstOpeningAFreeKeyStoresItsOpenControls)
{
    openKey(4);
    enter("editLabel", "note");
    expectSaved();
    EXPECT_EQ(keyInFile(4), "N/A|0,note,,");
    EXPECT_EQ(memory(4), "0|0|");
}

TEST_F(KeySetting, AKeyWithoutANumberIsRefused)
{
    for (const int type : {2, 3}) {
        openSwitched(4);
        child<QComboBox>("cmbType")->setCurrentIndex(type);
        mark();
        expectRefused(KEY_FILE, "Value can't be empty!", "editValue");
        EXPECT_TRUE(logged("broadcast").isEmpty());
        back();
    }
    openKey(4);
    child<QComboBox>("cmbType")->setCurrentIndex(1);
    expectSaved();
}

TEST_F(KeySetting, WhatItDoesNotKnowStays)
{
    writeFile(KEY_FILE,
              "<DssKey version=\"2\"><!-- keys --><Item Type=\"Line\" colour=\"red\"><ItemData Line=\"0\" "
              "tone=\"3\"/><extra/></Item></DssKey>");
    openKey(1);
    choose("cmbLine", "1");
    expectSaved();
    const QByteArray file = readFile(KEY_FILE);
    for (const char* kept : {"version=\"2\"", "<!-- keys -->", "colour=\"red\"", "tone=\"3\"", "<extra/>"})
        EXPECT_TRUE(file.contains(kept)) << kept << " in " << file.constData();
}

TEST_F(KeySetting, AFullDiskIsToldAndKeepsWhatWasEntered)
{
    openSwitched(3);
    enter("editLabel", "Ben");
    expectFailedSave(KEY_FILE);
    EXPECT_EQ(child<QLineEdit>("editLabel")->text(), "Ben");
    expectChangesTold({});
    expectSaved();
    EXPECT_EQ(keyInFile(3), "Speed Dial|-1,Ben,,4711");
}

TEST_F(KeySetting, AKeyThatOnlyTheListCouldTakeIsToldAndTheNextSaveWritesTheRest)
{
    openSwitched(3);
    enter("editValue", "4712");
    QFile::remove(hostPath(PHONE_FILE));
    ASSERT_TRUE(QDir().mkpath(hostPath(PHONE_FILE))) << "nothing can be stored in a folder";
    {
        kit::BoxAnswers boxes({"ok"});
        save();
        EXPECT_EQ(boxes.texts(), QStringList{"The settings cannot be saved!"});
    }
    EXPECT_TRUE(page->isVisible());
    EXPECT_EQ(keyInFile(3), "Speed Dial|-1,Home,,4712");
    expectChangesTold({"26 0"});
    ASSERT_TRUE(QDir().rmdir(hostPath(PHONE_FILE)));
    expectSaved();
    EXPECT_EQ(memory(3), "0|-1|4712");
}

TEST_F(KeySetting, ABrokenFileIsToldAndNeverReplaced)
{
    openSwitched(3);
    for (const char* broken : {"<DssKey><Item", "<Other/>", "<DssKey><Item Type=\"Line\"/></DssKey>"}) {
        writeFile(KEY_FILE, broken);
        mark();
        kit::BoxAnswers boxes({"ok"});
        save();
        EXPECT_EQ(boxes.texts(), QStringList{"The settings cannot be saved!"}) << broken;
        EXPECT_EQ(readFile(KEY_FILE), broken);
        EXPECT_TRUE(page->isVisible());
        EXPECT_TRUE(logged("broadcast").isEmpty());
    }
    writeFile(KEY_FILE, "<DssKey><Item");
    mark();
    EXPECT_TRUE(GetDssKeySetting()->SaveValue2Xml());
    EXPECT_EQ(reports("Fail to load xml file [/rundata/data/dsskey.xml]"), 1);
    EXPECT_EQ(reports("pNodeRoot != NULL"), 1);
}

TEST_F(KeySetting, AKeyThatIsNotThereOpensNothing)
{
    for (const int number : {21, 0, -5}) {
        GetDssKeySetting()->ShowByDsskeyIndex(number - 1);
        kit::settle();
        EXPECT_FALSE(GetDssKeySetting()->isVisible()) << number;
    }
    writeFile(KEY_FILE, "<DssKey><Item");
    GetDssKeySetting()->ShowByDsskeyIndex(0);
    EXPECT_FALSE(GetDssKeySetting()->isVisible());
    EXPECT_EQ(reports("Fail to load xml file [/rundata/data/dsskey.xml]"), 1);
}

TEST_F(KeySetting, ThereIsOneEditor)
{
    EXPECT_EQ(GetDssKeySetting(), getDssKeySettingDlg());
    EXPECT_EQ(dlgDssKeySetting::getInstance(nullptr, nullptr), getDssKeySettingDlg());
}

TEST_F(KeySetting, SoftKeysFollowTheFocus)
{
    openSwitched(2);
    EXPECT_EQ(softKeyTitle(1), "");
    EXPECT_EQ(softKeyTitle(2), "");
    kit::tap(child<QLineEdit>("editLabel"));
    EXPECT_EQ(softKeyTitle(1), "2aB");
    EXPECT_EQ(softKeyTitle(2), "Delete");
    softKey(1);
    EXPECT_EQ(softKeyTitle(1), "ABC");
    kit::tap(child<QLineEdit>("editValue"));
    EXPECT_EQ(softKeyTitle(1), "123");
    child<QLineEdit>("editValue")->end(false);
    softKey(2);
    EXPECT_EQ(child<QLineEdit>("editValue")->text(), "800");
    EXPECT_EQ(keyInFile(2), "BLF|1,Anna,8001,8001");
}

TEST_F(KeySetting, EachShowBeginsWithItsMethods)
{
    openSwitched(2);
    for (const char* edit : {"editLabel", "editExtension"}) {
        kit::tap(child<QLineEdit>(edit));
        softKey(1);
        EXPECT_EQ(qGetCurrentIME(child<QLineEdit>(edit)), "ABC") << edit;
    }
    back();
    openKey(2);
    EXPECT_EQ(qGetCurrentIME(child<QLineEdit>("editLabel")), "2aB");
    EXPECT_EQ(qGetCurrentIME(child<QLineEdit>("editExtension")), "2aB");
}

TEST_F(KeySetting, ItsFilterIsTraced)
{
    openKey(1);
    EXPECT_EQ(traces().count("-----dlgDssKeySetting installEventFilter----------"), 1);
    back();
    EXPECT_EQ(traces().count("-----dlgDssKeySetting removeEventFilter----------"), 1);
}

TEST_F(KeySetting, BackStoresNothing)
{
    const QByteArray before = readFile(KEY_FILE);
    openSwitched(3);
    enter("editLabel", "Ben");
    back();
    EXPECT_EQ(readFile(KEY_FILE), before);
    openKey(3);
    EXPECT_EQ(child<QLineEdit>("editLabel")->text(), "Home");
}
