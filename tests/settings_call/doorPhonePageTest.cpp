// The pages of door phones.
#include "frame/pageLists.h"
#include "settings/call/dlgDoorPhone.h"
#include "support/host/ime.h"
#include "support/host/managers.h"
#include "support/xml/xmlFile.h"
#include "tests/settings_call/callPageTest.h"
#include <QCheckBox>
#include <QFile>
#include <sys/stat.h>

namespace {

#define DOORS_FILE "/rundata/data/doorphonedata.xml"

class DoorPhonePage : public CallPageTest
{
protected:
    DoorPhonePage()
    {
        writeFile(DOORS_FILE, "<DoorPhone>" + door(1, "Gate", "8101", "111", "1") +
                                  door(2, "Yard", "8102", "222", "0") + "</DoorPhone>");
        GetDoorPhoneIconViewManager()->RefreshIconView();
    }
    static QByteArray door(int number, const char* name, const char* phone, const char* pin,
                           const char* refuses)
    {
        return "<d" + QByteArray::number(number) + " title='Door Phone " + QByteArray::number(number) +
               "' own='1'><DeviceModel>2N</DeviceModel><DisplayName>" + name + "</DisplayName><PhoneNumber>" +
               phone + "</PhoneNumber><UnlockPIN>" + pin + "</UnlockPIN><RefuseNewIncall>" + refuses +
               "</RefuseNewIncall><FullScreen>0</FullScreen><Own>x</Own></d" + QByteArray::number(number) +
               ">";
    }
    void openDoor(const char* name = "Door Phone1") { open(name); }
    // "model|name|number|pin|refuses|full" of an entry of the file.
    QString entry(const char* title) const
    {
        xmlFile file(DOORS_FILE);
        const xmlElement* list = xmlFindElementFromRoot(&file, "DoorPhone", 0);
        const xmlElement* found = list ? list->FindChildElementByAttribute("title", title) : nullptr;
        if (!found)
            return "(none)";
        QStringList values;
        for (const char* name :
             {"DeviceModel", "DisplayName", "PhoneNumber", "UnlockPIN", "RefuseNewIncall", "FullScreen"}) {
            chString value;
            const xmlElement* child = found->FindChildElement(name);
            PeekValue(child, value);
            values.append(child ? value.GetText() : "(none)");
        }
        return values.join('|');
    }
    QString fields() const
    {
        return child<QComboBox>("cmbDevModel")->currentText() + "|" + child<QLineEdit>("editName")->text() +
               "|" + child<QLineEdit>("editNumber")->text() + "|" + child<QLineEdit>("editPin")->text() +
               "|" + (child<QCheckBox>("checkRing")->isChecked() ? "1" : "0");
    }
};

} // namespace

TEST_F(DoorPhonePage, ShowsItsEntryWhateverThatIsCalled)
{
    openDoor();
    EXPECT_EQ(pageClass(), "dlgDoorPhone");
    EXPECT_EQ(title(), "Door Phone 1");
    EXPECT_EQ(page->findChild<qLeftBar*>()->title(), "Door Phone");
    EXPECT_EQ(fields(), "2N|Gate|8101|111|1");
    EXPECT_EQ(focusName(), "cmbDevModel");
    EXPECT_EQ(softKeys(), (QStringList{"Save", "", "Delete", "Back"}));
    QStringList models;
    for (int i = 0; i < child<QComboBox>("cmbDevModel")->count(); ++i)
        models.append(child<QComboBox>("cmbDevModel")->itemText(i) + " " +
                      child<QComboBox>("cmbDevModel")->itemData(i).toString());
    EXPECT_EQ(models, (QStringList{"Mobotix 0", "2N 1", "Linkcom 2", "Custom 3"}));
    kit::shot("door-phone");
    back();
    openDoor("Door Phone2");
    EXPECT_EQ(title(), "Door Phone 2");
    EXPECT_EQ(fields(), "2N|Yard|8102|222|0");
    GetLanguageHelper()->SetLanguage("German");
    kit::settle();
    EXPECT_EQ(title(), "Türstation 2");
}

TEST_F(DoorPhonePage, IsMadeOnceForEachNumber)
{
    openDoor();
    QWidget* first = page;
    back();
    openDoor("Door Phone2");
    EXPECT_NE(page, first);
    back();
    openDoor();
    EXPECT_EQ(page, first);
    EXPECT_EQ(PopupDoorPhoneDialog(1, 0), first);
}

TEST_F(DoorPhonePage, OfADigitThatIsNoneIsEmptyAndSavesNothing)
{
    openDoor("Door Phonex");
    EXPECT_EQ(pageClass(), "dlgDoorPhone");
    EXPECT_EQ(fields(), "Mobotix||||0");
    enter("editName", "Nobody");
    const QByteArray before = readFile(DOORS_FILE);
    expectSaved();
    expectChangesTold({});
    EXPECT_EQ(readFile(DOORS_FILE), before);
}

TEST_F(DoorPhonePage, EditsHaveTheirMethodsAndLimits)
{
    openDoor();
    EXPECT_EQ(child<QLineEdit>("editName")->maxLength(), 99);
    EXPECT_EQ(child<QLineEdit>("editNumber")->maxLength(), 32);
    EXPECT_EQ(child<QLineEdit>("editPin")->maxLength(), 32);
    EXPECT_EQ(child<QLineEdit>("editPin")->echoMode(), QLineEdit::Password);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(focusName() + " " + softKeyTitle(1), "editName 2aB");
    kit::key(Qt::Key_Down);
    EXPECT_EQ(focusName() + " " + softKeyTitle(1), "editNumber 123");
    softKey(1);
    EXPECT_EQ(softKeyTitle(1), "2aB");
    kit::key(Qt::Key_Down);
    EXPECT_EQ(focusName() + " " + softKeyTitle(1), "editPin ") << "without methods of its own";
    kit::padKey('7');
    EXPECT_TRUE(child<QLineEdit>("editPin")->text().contains('7'));
    kit::key(Qt::Key_Down);
    EXPECT_EQ(focusName(), "checkRing");
    EXPECT_TRUE(traces().contains("-----dlgDoorPhone installEventFilter----------"));
    back();
    EXPECT_TRUE(traces().contains("-----dlgDoorPhone removeEventFilter----------"));
}

TEST_F(DoorPhonePage, DeleteTakesACharacterOfAnEditAndNothingElse)
{
    openDoor();
    softKey(2);
    EXPECT_EQ(fields(), "2N|Gate|8101|111|1");
    kit::tap(child<QLineEdit>("editNumber"));
    kit::key(Qt::Key_End);
    softKey(2);
    EXPECT_EQ(fields(), "2N|Gate|810|111|1");
}

TEST_F(DoorPhonePage, SaveStoresTheEntryAndTells)
{
    openDoor();
    choose("cmbDevModel", "2");
    enter("editName", "Main gate");
    enter("editNumber", "9001");
    enter("editPin", "4242");
    tick("checkRing", false);
    expectSaved();
    expectChangesTold({"23 0"});
    EXPECT_EQ(entry("Door Phone 1"), "Linkcom|Main gate|9001|4242|0|0");
    EXPECT_EQ(entry("Door Phone 2"), "2N|Yard|8102|222|0|0");
    EXPECT_TRUE(readFile(DOORS_FILE).contains("own=\"1\""));
    EXPECT_TRUE(readFile(DOORS_FILE).contains("<Own>x</Own>"));
    openDoor();
    EXPECT_EQ(fields(), "Linkcom|Main gate|9001|4242|0");
}

TEST_F(DoorPhonePage, OnlyOneModelIsShownOverTheWholeScreen)
{
    const char* const models[] = {"Mobotix", "2N", "Linkcom", "Custom"};
    for (int model = 0; model < 4; ++model) {
        openDoor();
        choose("cmbDevModel", qPrintable(QString::number(model)));
        expectSaved();
        EXPECT_EQ(entry("Door Phone 1"),
                  QString("%1|Gate|8101|111|1|%2").arg(models[model]).arg(model == 0 ? 1 : 0));
    }
}

TEST_F(DoorPhonePage, AModelThatNobodyKnowsIsTheFirst)
{
    QByteArray doors = readFile(DOORS_FILE);
    writeFile(DOORS_FILE, doors.replace("2N", "Nix"));
    openDoor();
    EXPECT_EQ(fields(), "Mobotix|Gate|8101|111|1");
    EXPECT_TRUE(traces().contains("Door Phone DevModel Fail!"));
}

TEST_F(DoorPhonePage, ANameOfAnotherDoorPhoneIsRefusedAndItsOwnIsNot)
{
    openDoor();
    enter("editName", " Yard ");
    expectRefused(DOORS_FILE, "Display Name already exists!", "editName");
    EXPECT_EQ(child<QLineEdit>("editName")->text(), "");
    enter("editName", "yard");
    expectSaved();
    openDoor();
    enter("editNumber", "1");
    expectSaved();
    EXPECT_EQ(entry("Door Phone 1"), "2N|yard|1|111|1|0");
}

TEST_F(DoorPhonePage, EmptyNamesAreNobodys)
{
    for (const char* name : {"Door Phone1", "Door Phone2"}) {
        openDoor(name);
        enter("editName", "");
        expectSaved();
        kit::settle();
    }
    EXPECT_EQ(entry("Door Phone 2"), "2N||8102|222|0|0");
}

TEST_F(DoorPhonePage, AChildThatIsMissingLeavesTheBoxAndIsNotMade)
{
    writeFile(DOORS_FILE, "<DoorPhone><item title='Door Phone 1'><DeviceModel>2N</DeviceModel>"
                          "<DisplayName>A</DisplayName></item></DoorPhone>");
    openDoor();
    EXPECT_FALSE(child<QCheckBox>("checkRing")->isChecked());
    tick("checkRing", true);
    enter("editPin", "9");
    expectSaved();
    EXPECT_EQ(entry("Door Phone 1"), "2N|A|(none)|(none)|(none)|(none)");
    openDoor();
    EXPECT_TRUE(child<QCheckBox>("checkRing")->isChecked()) << "there is nothing to read";
    EXPECT_EQ(child<QLineEdit>("editPin")->text(), "");
}

TEST_F(DoorPhonePage, WithoutItsListSaveDoesNothingAtAll)
{
    for (const char* content : {"<DoorPhone><item", "<Other/>"}) {
        writeFile(DOORS_FILE, content);
        openDoor();
        const kit::BoxAnswers boxes;
        save();
        EXPECT_TRUE(page->isVisible());
        EXPECT_TRUE(boxes.texts().isEmpty());
        EXPECT_EQ(readFile(DOORS_FILE), content) << "never replaced";
        back();
    }
    expectChangesTold({});
}

TEST_F(DoorPhonePage, BackForgetsWhatWasTypedAndDrawsTheMenuAgain)
{
    openDoor();
    enter("editName", "Other");
    mark();
    back();
    EXPECT_FALSE(page->isVisible());
    EXPECT_EQ(child<QLineEdit>("editName")->text() + child<QLineEdit>("editNumber")->text() +
                  child<QLineEdit>("editPin")->text(),
              "");
    EXPECT_TRUE(traces().contains("RefreshXMLIconView(doorphonedata.xml)"));
    openDoor();
    EXPECT_EQ(fields(), "2N|Gate|8101|111|1");
    mark();
    expectSaved();
    EXPECT_EQ(entry("Door Phone 1"), "2N|Gate|8101|111|1|0");
}

TEST_F(DoorPhonePage, AFullDiskIsToldAndWhatWasTypedStays)
{
    openDoor();
    enter("editNumber", "9009");
    expectFailedSave(DOORS_FILE);
    expectChangesTold({});
    EXPECT_EQ(child<QLineEdit>("editNumber")->text(), "9009");
    expectSaved();
    EXPECT_EQ(entry("Door Phone 1"), "2N|Gate|9009|111|1|0");
}

TEST_F(DoorPhonePage, ThePinIsInNoTraceAndTheFileIsThePhonesAlone)
{
    ASSERT_EQ(chmod(qPrintable(hostPath(DOORS_FILE)), 0644), 0);
    openDoor();
    expectPinStaysSecret(DOORS_FILE);
}

TEST_F(DoorPhonePage, TheManagerReadsAgainWhenAChangeIsTold)
{
    openDoor();
    enter("editName", "Barn");
    expectSaved();
    kit::settle();
    const auto& items = GetDoorPhoneIconViewManager()->GetItems();
    ASSERT_EQ(items.size(), 2);
    EXPECT_STREQ(items[0]->m_strDisplayName, "Barn");
    EXPECT_STREQ(items[0]->m_strUnlockPIN, "111");
    EXPECT_TRUE(items[0]->m_bRefuseNewIncall);
    EXPECT_FALSE(items[1]->m_bRefuseNewIncall);
}

TEST_F(DoorPhonePage, ARefusalThatIsSwitchedOffElsewhereUnticksTheBox)
{
    openDoor();
    EXPECT_TRUE(child<QCheckBox>("checkRing")->isChecked());
    back();
    writeFile(DOORS_FILE, "<DoorPhone>" + door(1, "Gate", "8101", "111", "0") + "</DoorPhone>");
    openDoor();
    EXPECT_EQ(fields(), "2N|Gate|8101|111|0");
}

TEST_F(DoorPhonePage, EachShowBeginsAtTheModelWithItsMethods)
{
    openDoor();
    for (const char* edit : {"editName", "editNumber"}) {
        kit::tap(child<QLineEdit>(edit));
        softKey(1);
    }
    ASSERT_EQ(focusName(), "editNumber");
    back();
    openDoor();
    EXPECT_EQ(focusName(), "cmbDevModel");
    EXPECT_EQ(qGetCurrentIME(child<QLineEdit>("editName")), "2aB");
    EXPECT_EQ(qGetCurrentIME(child<QLineEdit>("editNumber")), "123");
}

TEST_F(DoorPhonePage, WhatOthersStoreWhileItIsOpenStays)
{
    openDoor();
    enter("editNumber", "9009");
    QByteArray file = readFile(DOORS_FILE);
    writeFile(DOORS_FILE, file.replace("Yard", "Garden"));
    expectSaved();
    EXPECT_EQ(entry("Door Phone 1"), "2N|Gate|9009|111|1|0");
    EXPECT_EQ(entry("Door Phone 2"), "2N|Garden|8102|222|0|0");
}

TEST_F(DoorPhonePage, AFileThatBreaksOrGoesMeanwhileIsToldAndNeverReplaced)
{
    openDoor();
    enter("editNumber", "9009");
    for (const char* content : {"<DoorPhone><item", ""}) {
        writeFile(DOORS_FILE, content);
        kit::BoxAnswers boxes({"ok"});
        softKey(0);
        EXPECT_EQ(boxes.texts(), QStringList{"The settings cannot be saved!"});
        EXPECT_EQ(readFile(DOORS_FILE), content);
        EXPECT_TRUE(page->isVisible());
        EXPECT_EQ(child<QLineEdit>("editNumber")->text(), "9009");
    }
}
