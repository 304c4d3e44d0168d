#include "support/host/binder.h"
#include "support/host/combo.h"
#include "support/host/ime.h"
#include "tests/file/failingCalls.h"
#include "tests/kit/phoneTest.h"
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

namespace {

const char kFile[] = "/rundata/config/test.ini";

class Binder : public PhoneTest
{
protected:
    Binder()
    {
        page.setWindowFlags(Qt::FramelessWindowHint);
        page.setGeometry(0, 0, 800, 480);
        qAddComboBoxItem(&combo, "Zero", "0");
        qAddComboBoxItem(&combo, "One", "1");
        qAddComboBoxItem(&combo, "Two", "2");
        qSetExternValue(&dhcp, "0");
        qSetExternValue(&pppoe, "1");
        qSetExternValue(&fixed, "2");
        for (QRadioButton* radio : {&dhcp, &pppoe, &fixed})
            group.addButton(radio);
    }

    void store(const QByteArray& content) { writeFile(kFile, content); }
    HREGISTRY section(const char* name = "S") { return registryOpen(kFile, name); }
    QString stored(const char* key, const char* sectionName = "S")
    {
        return QString::fromUtf8(registryGetString(section(sectionName), key, "(absent)").GetText());
    }
    QString value(QWidget* widget) { return QString::fromUtf8(binder.GetWidgetValue(widget).GetText()); }

    QDialog page;
    QLineEdit edit{&page};
    QLineEdit second{&page};
    QCheckBox check{&page};
    QComboBox combo{&page};
    QRadioButton dhcp{&page};
    QRadioButton pppoe{&page};
    QRadioButton fixed{&page};
    QButtonGroup group;
    qConfigBinder binder;
};

TEST_F(Binder, BindingShowsTheStoredValueAtOnce)
{
    store("[S]\nstrName=Anna\nbOn=1\neType=2\neWAN=1\n");
    binder.BindWidget(&edit, section(), "strName", "");
    binder.BindWidget(&check, section(), "bOn", "0");
    binder.BindWidget(&combo, section(), "eType", "0");
    binder.BindWidget(&dhcp, section(), "eWAN", "0");
    EXPECT_EQ(edit.text(), "Anna");
    EXPECT_TRUE(check.isChecked());
    EXPECT_EQ(combo.currentText(), "Two");
    EXPECT_TRUE(pppoe.isChecked());
    EXPECT_EQ(binder.size(), 4);
}

TEST_F(Binder, BindingShowsTheDefaultOfAnAbsentKey)
{
    binder.BindWidget(&edit, section(), "strName", "nobody");
    binder.BindWidget(&check, section(), "bOn", "1");
    binder.BindWidget(&combo, section(), "eType", "1");
    binder.BindWidget(&dhcp, section(), "eWAN", "0");
    EXPECT_EQ(edit.text(), "nobody");
    EXPECT_TRUE(check.isChecked());
    EXPECT_EQ(combo.currentText(), "One");
    EXPECT_TRUE(dhcp.isChecked());
}

TEST_F(Binder, NullDefaultIsTheEmptyText)
{
    binder.BindWidget(&edit, section(), "strName", nullptr);
    EXPECT_EQ(edit.text(), "");
}

TEST_F(Binder, ValuesHaveTheirStoredForm)
{
    store("[S]\nstrName=Anna\nbOn=1\neType=2\neWAN=1\n");
    binder.BindWidget(&edit, section(), "strName", "");
    binder.BindWidget(&check, section(), "bOn", "0");
    binder.BindWidget(&combo, section(), "eType", "0");
    binder.BindWidget(&dhcp, section(), "eWAN", "0");
    edit.setText("Eva");
    check.setChecked(false);
    combo.setCurrentIndex(1);
    fixed.setChecked(true);
    EXPECT_EQ(value(&edit), "Eva");
    EXPECT_EQ(value(&check), "0");
    EXPECT_EQ(value(&combo), "1");
    EXPECT_EQ(value(&dhcp), "2");
}

TEST_F(Binder, SaveStoresWhatWasChanged)
{
    store("; kept\n[S]\nstrName=Anna\nbOn=1\nother=x\neType=2\neWAN=1\n");
    binder.BindWidget(&edit, section(), "strName", "");
    binder.BindWidget(&check, section(), "bOn", "0");
    binder.BindWidget(&combo, section(), "eType", "0");
    binder.BindWidget(&dhcp, section(), "eWAN", "0");
    edit.setText("Eva");
    check.setChecked(false);
    combo.setCurrentIndex(0);
    fixed.setChecked(true);
    EXPECT_NE(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(stored("strName"), "Eva");
    EXPECT_EQ(stored("bOn"), "0");
    EXPECT_EQ(stored("eType"), "0");
    EXPECT_EQ(stored("eWAN"), "2");
    EXPECT_EQ(stored("other"), "x");
    EXPECT_TRUE(readFile(kFile).startsWith("; kept"));
}

TEST_F(Binder, SaveOfAnUnchangedPageAnswersZeroAndWritesNothing)
{
    store("[S]\nstrName=Anna\nbOn=1\neType=2\neWAN=1\n");
    const QByteArray before = readFile(kFile);
    binder.BindWidget(&edit, section(), "strName", "");
    binder.BindWidget(&check, section(), "bOn", "0");
    binder.BindWidget(&combo, section(), "eType", "0");
    binder.BindWidget(&dhcp, section(), "eWAN", "0");
    EXPECT_EQ(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(readFile(kFile), before);
}

TEST_F(Binder, AbsentKeyWithItsDefaultIsNoDifference)
{
    binder.BindWidget(&edit, section(), "strName", "nobody");
    binder.BindWidget(&check, section(), "bOn", "");
    binder.BindWidget(&combo, section(), "eType", "1");
    binder.BindWidget(&dhcp, section(), "eWAN", "0");
    EXPECT_EQ(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(stored("strName"), "(absent)");
    EXPECT_EQ(stored("bOn"), "(absent)");
    EXPECT_FALSE(QFile::exists(hostPath(kFile)));
}

TEST_F(Binder, SecondSaveOfTheSameValuesAnswersZero)
{
    binder.BindWidget(&edit, section(), "strName", "");
    edit.setText("Eva");
    EXPECT_NE(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(binder.SaveConfigsToRegistry(), 0);
}

TEST_F(Binder, EverySectionGetsItsOwnChanges)
{
    store("[S]\nstrName=Anna\n[T]\nb=0\n");
    binder.BindWidget(&edit, section(), "strName", "");
    binder.BindWidget(&second, section(), "strOther", "");
    binder.BindWidget(&check, section("T"), "b", "0");
    edit.setText("Eva");
    second.setText("Bob");
    check.setChecked(true);
    EXPECT_NE(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(stored("strName"), "Eva");
    EXPECT_EQ(stored("strOther"), "Bob");
    EXPECT_EQ(stored("b", "T"), "1");
}

TEST_F(Binder, SaveThatFailsAnswersZeroAndTheChangeIsStillThere)
{
    binder.BindWidget(&edit, section(), "strName", "");
    edit.setText("a\nb");
    EXPECT_EQ(binder.SaveConfigsToRegistry(), 0);
    EXPECT_TRUE(binder.doesWidgetValueChanged(&edit));
    EXPECT_EQ(stored("strName"), "(absent)");
}

TEST_F(Binder, SectionIsOneSaveOfTheFileWholeOrNotAtAll)
{
    binder.BindWidget(&second, section(), "strOther", "");
    binder.BindWidget(&edit, section(), "strName", "");
    second.setText("good");
    edit.setText("a\nb");
    EXPECT_EQ(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(stored("strOther"), "(absent)");
}

TEST_F(Binder, SectionThatFailsDoesNotKeepTheOthersFromBeingSaved)
{
    binder.BindWidget(&edit, section(), "strName", "");
    binder.BindWidget(&check, section("T"), "b", "0");
    edit.setText("a\nb");
    check.setChecked(true);
    EXPECT_NE(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(stored("b", "T"), "1");
}

TEST_F(Binder, ResetDropsEditsThatWereNotSaved)
{
    store("[S]\nstrName=Anna\nbOn=1\neType=2\neWAN=1\n");
    binder.BindWidget(&edit, section(), "strName", "");
    binder.BindWidget(&check, section(), "bOn", "0");
    binder.BindWidget(&combo, section(), "eType", "0");
    binder.BindWidget(&dhcp, section(), "eWAN", "0");
    edit.setText("Eva");
    check.setChecked(false);
    combo.setCurrentIndex(0);
    dhcp.setChecked(true);
    binder.ResetConfigsToRegistry();
    EXPECT_EQ(edit.text(), "Anna");
    EXPECT_TRUE(check.isChecked());
    EXPECT_EQ(combo.currentText(), "Two");
    EXPECT_TRUE(pppoe.isChecked());
}

TEST_F(Binder, ResetShowsWhatSomebodyElseStored)
{
    binder.BindWidget(&edit, section(), "strName", "");
    nuxSetRegistryString(kFile, "S", "strName", "other");
    EXPECT_EQ(edit.text(), "");
    binder.ResetConfigsToRegistry();
    EXPECT_EQ(edit.text(), "other");
}

TEST_F(Binder, ValueIsChangedWhileItDiffersFromTheStoredOne)
{
    store("[S]\nstrName=Anna\n");
    binder.BindWidget(&edit, section(), "strName", "");
    EXPECT_FALSE(binder.doesWidgetValueChanged(&edit));
    edit.setText("Eva");
    EXPECT_TRUE(binder.doesWidgetValueChanged(&edit));
    edit.setText("Anna");
    EXPECT_FALSE(binder.doesWidgetValueChanged(&edit));
}

TEST_F(Binder, RadioButtonsAreChangedAsAGroup)
{
    store("[S]\neWAN=1\n");
    binder.BindWidget(&dhcp, section(), "eWAN", "0");
    EXPECT_FALSE(binder.doesWidgetValueChanged(&dhcp));
    fixed.setChecked(true);
    EXPECT_TRUE(binder.doesWidgetValueChanged(&dhcp));
}

TEST_F(Binder, RadioButtonsWithoutAGroupBelongTogetherByTheirParent)
{
    QWidget box;
    QRadioButton first(&box);
    QRadioButton last(&box);
    qSetExternValue(&first, "a");
    qSetExternValue(&last, "b");
    store("[S]\ne=b\n");
    binder.BindWidget(&first, section(), "e", "a");
    EXPECT_TRUE(last.isChecked());
    first.setChecked(true);
    EXPECT_EQ(value(&first), "a");
}

TEST_F(Binder, ValueThatNoRadioButtonHasChecksNoneAndIsNotRewritten)
{
    store("[S]\neWAN=9\n");
    dhcp.setChecked(true);
    binder.BindWidget(&dhcp, section(), "eWAN", "0");
    EXPECT_EQ(group.checkedButton(), nullptr);
    EXPECT_EQ(value(&dhcp), "9");
    EXPECT_FALSE(binder.doesWidgetValueChanged(&dhcp));
    EXPECT_EQ(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(stored("eWAN"), "9");
    pppoe.setChecked(true);
    fixed.setChecked(true);
    EXPECT_FALSE(pppoe.isChecked());
    EXPECT_NE(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(stored("eWAN"), "2");
}

TEST_F(Binder, ValueThatNoItemHasSelectsNoneAndIsNotRewritten)
{
    store("[S]\neType=9\n");
    binder.BindWidget(&combo, section(), "eType", "0");
    EXPECT_EQ(combo.currentIndex(), -1);
    EXPECT_EQ(value(&combo), "9");
    EXPECT_FALSE(binder.doesWidgetValueChanged(&combo));
    EXPECT_EQ(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(stored("eType"), "9");
}

TEST_F(Binder, NothingStoredShowsTheFirstItemAndIsNotWritten)
{
    combo.setCurrentIndex(2);
    binder.BindWidget(&combo, section(), "eType", "");
    EXPECT_EQ(combo.currentIndex(), 0);
    EXPECT_EQ(value(&combo), "0");
    EXPECT_FALSE(binder.doesWidgetValueChanged(&combo));
    EXPECT_EQ(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(stored("eType"), "(absent)");
    combo.setCurrentIndex(1);
    EXPECT_TRUE(binder.doesWidgetValueChanged(&combo));
    binder.ResetConfigsToRegistry();
    EXPECT_EQ(combo.currentIndex(), 0);
}

TEST_F(Binder, NothingStoredIsTheItemOfTheEmptyValueWhereThereIsOne)
{
    qAddComboBoxItem(&combo, "None", "");
    binder.BindWidget(&combo, section(), "eType", "");
    EXPECT_EQ(combo.currentIndex(), 3);
    combo.setCurrentIndex(0);
    EXPECT_NE(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(stored("eType"), "0");
}

TEST_F(Binder, NothingStoredChecksTheFirstRadioButtonAndIsNotWritten)
{
    fixed.setChecked(true);
    binder.BindWidget(&dhcp, section(), "eWAN", "");
    EXPECT_TRUE(dhcp.isChecked());
    EXPECT_EQ(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(stored("eWAN"), "(absent)");
    pppoe.setChecked(true);
    EXPECT_NE(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(stored("eWAN"), "1");
}

TEST_F(Binder, WhetherAllIsStoredIsAskedAfterASave)
{
    binder.BindWidget(&edit, section(), "strName", "");
    binder.BindWidget(&check, section("T"), "b", "0");
    EXPECT_EQ(binder.AreConfigsSaved(), 1);
    edit.setText("Eva");
    check.setChecked(true);
    EXPECT_EQ(binder.AreConfigsSaved(), 0);
    {
        FailingCalls disk;
        disk.setSpace(0);
        EXPECT_EQ(binder.SaveConfigsToRegistry(), 0);
        EXPECT_EQ(binder.AreConfigsSaved(), 0);
    }
    EXPECT_EQ(edit.text(), "Eva");
    EXPECT_NE(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(binder.AreConfigsSaved(), 1);
}

TEST_F(Binder, TickOfAnUnusualNumberIsNotRewritten)
{
    store("[S]\nbOn=2\n");
    binder.BindWidget(&check, section(), "bOn", "0");
    EXPECT_TRUE(check.isChecked());
    EXPECT_EQ(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(stored("bOn"), "2");
    check.setChecked(false);
    EXPECT_NE(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(stored("bOn"), "0");
}

TEST_F(Binder, TextLongerThanTheEditIsNotCutByAnUnchangedSave)
{
    store("[S]\nstrName=abcdef\n");
    binder.BindWidget(&edit, section(), "strName", "");
    edit.setMaxLength(3);
    EXPECT_EQ(edit.text(), "abc");
    EXPECT_FALSE(binder.doesWidgetValueChanged(&edit));
    EXPECT_EQ(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(stored("strName"), "abcdef");
    edit.setText("ab");
    EXPECT_NE(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(stored("strName"), "ab");
}

TEST_F(Binder, TextsAreUtf8)
{
    const QString name = QString::fromUtf8("J\xC3\xBCrgen \xE4\xB8\xAD");
    binder.BindWidget(&edit, section(), "strName", "");
    edit.setText(name);
    EXPECT_NE(binder.SaveConfigsToRegistry(), 0);
    EXPECT_TRUE(readFile(kFile).contains(name.toUtf8()));
    EXPECT_EQ(value(&edit), name);
}

TEST_F(Binder, LetterThatIsBeingChosenBelongsToTheValue)
{
    page.show();
    page.activateWindow();
    kit::settle();
    edit.setFocus();
    qInstallIME(&edit, "abc");
    binder.BindWidget(&edit, section(), "strName", "");
    kit::padKey('2');
    EXPECT_TRUE(binder.doesWidgetValueChanged(&edit));
    kit::padKey('3');
    EXPECT_NE(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(stored("strName"), "ad");
}

TEST_F(Binder, LetterThatIsBeingChosenIsDroppedByAReset)
{
    page.show();
    page.activateWindow();
    kit::settle();
    edit.setFocus();
    qInstallIME(&edit, "abc");
    binder.BindWidget(&edit, section(), "strName", "");
    kit::padKey('2');
    binder.ResetConfigsToRegistry();
    kit::stepTime(1100);
    EXPECT_EQ(edit.text(), "");
}

TEST_F(Binder, WidgetThatIsNotBoundIsNeverChanged)
{
    edit.setText("x");
    EXPECT_FALSE(binder.doesWidgetValueChanged(&edit));
    EXPECT_FALSE(binder.doesWidgetValueChanged(nullptr));
    EXPECT_EQ(value(&edit), "x");
    EXPECT_EQ(value(nullptr), "");
}

TEST_F(Binder, WidgetWithoutAStoredFormKeepsWhatIsStored)
{
    store("[S]\nstr=text\n");
    QLabel label("label");
    binder.BindWidget(&label, section(), "str", "");
    EXPECT_EQ(value(&label), "text");
    EXPECT_EQ(binder.SaveConfigsToRegistry(), 0);
    EXPECT_EQ(stored("str"), "text");
    EXPECT_EQ(label.text(), "label");
}

TEST_F(Binder, NullWidgetIsNotBound)
{
    binder.BindWidget(nullptr, section(), "str", "");
    EXPECT_EQ(binder.size(), 0);
}

TEST_F(Binder, BindingTellsThePageWhatChanged)
{
    store("[S]\neWAN=2\n");
    int toggles = 0;
    QObject::connect(&fixed, &QRadioButton::toggled, [&](bool on) { toggles += on; });
    binder.BindWidget(&dhcp, section(), "eWAN", "0");
    EXPECT_EQ(toggles, 1);
}

} // namespace
