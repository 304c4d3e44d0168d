// The list of speed dials with the editor beside it.
#include "frame/roomHooks.h"
#include "settings/call/dlgSpeedDial.h"
#include "support/host/button.h"
#include "support/host/combo.h"
#include "support/host/ime.h"
#include "support/host/language.h"
#include "tests/file/failingCalls.h"
#include "tests/settings_call/keyPageTest.h"
#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>

namespace {

const char* const kTable = "tabWgtList";

class SpeedDial : public KeyPageTest
{
protected:
    SpeedDial()
    {
        writeKeys(item("Line", "Line=\"-1\"") + item("Speed Dial", "Line=\"1\" Extension=\"4711\"") +
                  item("BLF", "Line=\"1\" Label=\"Anna\" Extension=\"8001\" Value=\"8002\"") +
                  item("Speed Dial", "Line=\"4\" Label=\"Ben\" Value=\"99\""));
    }
    ~SpeedDial() override { GetLanguageHelper()->SetLanguage("English"); }
    void openPage()
    {
        getSpeedDialDialog()->show();
        page = getSpeedDialDialog();
        kit::settle();
    }
    std::string row(int number) const { return cells(kTable, number); }
    int current() const { return table(kTable)->currentRow(); }
    void goTo(int number) { getSpeedDialDialog()->SetTabWgtRow(number); }
    void takeType(int type) { child<QComboBox>("cmbBoxType")->setCurrentIndex(type); }
    void ok() { kit::tap(child<QPushButton>("btnOK")); }
    void cancel() { kit::tap(child<QPushButton>("btnCancel")); }
    std::string panel() const
    {
        const QComboBox* account = child<QComboBox>("cmbBoxAccount");
        const QLineEdit* edit = child<QLineEdit>("editExtension");
        return (child<QLabel>("labelKey")->text() + "|" + child<QComboBox>("cmbBoxType")->currentText() +
                "|" + account->currentText() + (account->isEnabled() ? "|on|" : "|off|") + edit->text() +
                (edit->isEnabled() ? "|on" : "|off"))
            .toStdString();
    }
    QString keyCount() const { return QString::number(GetDssKeyManager()->GetKeyCount()); }
};

} // namespace

TEST_F(SpeedDial, ShowsTheKeysItKnowsAndTheFirstInItsPanel)
{
    openPage();
    EXPECT_EQ(title(), "Speed Dial Setting");
    EXPECT_EQ(softKeys(), (QStringList{"", "IME", "Delete", "Back"}));
    const char* const captions[] = {"labTitelKey",   "Key",     "labTitelKey_2", "Type",
                                    "labTitelKey_3", "Account", "labTitelKey_4", "Extension",
                                    "labKey",        "Key",     "labType",       "Type",
                                    "labAccount",    "Account", "labExtension",  "Extension"};
    for (size_t i = 0; i < std::size(captions); i += 2)
        EXPECT_EQ(child<QLabel>(captions[i])->text(), captions[i + 1]);
    EXPECT_EQ(row(0), "DSS Key1|Line|Auto|");
    EXPECT_EQ(row(1), "DSS Key2|Speed Dial|Line 2|4711");
    EXPECT_EQ(row(2), "DSS Key3|||");
    EXPECT_EQ(row(3), "DSS Key4|Speed Dial|Auto|"); // a fifth line is none
    EXPECT_EQ(row(19), "DSS Key20|N/A||");
    EXPECT_EQ(table(kTable)->rowHeight(0), 42);
    EXPECT_EQ(current(), 0);
    EXPECT_EQ(panel(), "DSS Key1|Line|Auto|on||off");
    EXPECT_EQ(focusName(), kTable);
    EXPECT_EQ(child<QLineEdit>("editExtension")->maxLength(), 99);
    kit::shot("speed-dial");
}

TEST_F(SpeedDial, ARowShowsInThePanelAndSwitchesIt)
{
    openPage();
    goTo(1);
    EXPECT_EQ(panel(), "DSS Key2|Speed Dial|Line 2|on|4711|on");
    goTo(5);
    EXPECT_EQ(panel(), "DSS Key6|N/A|Auto|off||off");
    goTo(2);
    EXPECT_EQ(child<QComboBox>("cmbBoxType")->currentIndex(), -1);
    EXPECT_EQ(child<QLineEdit>("editExtension")->text(), "");
}

TEST_F(SpeedDial, ATypeOfTheUsersSwitchesThePanelAndClearsTheNumber)
{
    openPage();
    goTo(1);
    takeType(1);
    EXPECT_EQ(panel(), "DSS Key2|Line|Line 2|on||off");
    takeType(2);
    EXPECT_EQ(panel(), "DSS Key2|Speed Dial|Line 2|on||on");
    takeType(0);
    EXPECT_EQ(panel(), "DSS Key2|N/A|Line 2|off||off");
}

TEST_F(SpeedDial, TheEditOfATypeWithoutNumberIsGrey)
{
    openPage();
    const QWidget* edit = child<QLineEdit>("editExtension");
    EXPECT_EQ(edit->palette().color(QPalette::WindowText), QColor(90, 90, 90, 190));
    goTo(1);
    EXPECT_EQ(edit->palette().color(QPalette::WindowText), QColor(0, 0, 0, 255));
}

TEST_F(SpeedDial, OkStoresASpeedDialInExtensionAndLeavesTheRest)
{
    openPage();
    goTo(2);
    takeType(2);
    child<QComboBox>("cmbBoxAccount")->setCurrentIndex(3);
    enter("editExtension", "5511");
    ok();
    EXPECT_EQ(keyInFile(3), "Speed Dial|2,Anna,5511,8002");
    EXPECT_EQ(row(2), "DSS Key3|Speed Dial|Line 3|5511");
    EXPECT_EQ(focusName(), kTable);
}

TEST_F(SpeedDial, OkMakesTheSettingsOfAKeyThatHasNone)
{
    openPage();
    goTo(5);
    takeType(2);
    enter("editExtension", "5512");
    ok();
    EXPECT_EQ(keyInFile(6), "Speed Dial|-1,-,5512,-");
    goTo(6);
    takeType(1);
    ok();
    EXPECT_EQ(keyInFile(7), "Line|-1,-,-,-");
    EXPECT_EQ(row(6), "DSS Key7|Line|Auto|");
}

TEST_F(SpeedDial, OkOnALineLeavesTheNumberInTheFile)
{
    openPage();
    goTo(1);
    takeType(1);
    child<QComboBox>("cmbBoxAccount")->setCurrentIndex(4);
    ok();
    EXPECT_EQ(keyInFile(2), "Line|3,-,4711,-");
    EXPECT_EQ(row(1), "DSS Key2|Line|Line 4|");
}

TEST_F(SpeedDial, OkOnNoTypeTakesTheSettingsAway)
{
    openPage();
    goTo(3);
    takeType(0);
    ok();
    EXPECT_EQ(keyInFile(4), "N/A");
    EXPECT_EQ(row(3), "DSS Key4|N/A||");
}

TEST_F(SpeedDial, AnEmptyNumberIsRefused)
{
    openPage();
    goTo(1);
    enter("editExtension", "");
    const QByteArray before = readFile(KEY_FILE);
    kit::BoxAnswers boxes({"ok"});
    ok();
    EXPECT_EQ(boxes.titles(), QStringList{"Note"});
    EXPECT_EQ(boxes.texts(), QStringList{"Extension is invalid!"});
    EXPECT_EQ(readFile(KEY_FILE), before);
    EXPECT_EQ(row(1), "DSS Key2|Speed Dial|Line 2|4711");
}

TEST_F(SpeedDial, CancelPutsThePanelBack)
{
    openPage();
    goTo(1);
    takeType(0);
    child<QComboBox>("cmbBoxAccount")->setCurrentIndex(0);
    cancel();
    EXPECT_EQ(panel(), "DSS Key2|Speed Dial|Line 2|on|4711|on");
    goTo(5);
    takeType(2);
    enter("editExtension", "1");
    child<QComboBox>("cmbBoxAccount")->setCurrentIndex(3);
    cancel();
    EXPECT_EQ(panel(), "DSS Key6|N/A|Auto|off||off");
}

TEST_F(SpeedDial, DeleteTakesARecordAwayAtOnceWhenItIsMeant)
{
    openPage();
    goTo(3);
    const QByteArray before = readFile(KEY_FILE);
    {
        kit::BoxAnswers boxes({"no"});
        softKey(2);
        EXPECT_EQ(boxes.titles(), QStringList{"Note"});
        EXPECT_EQ(boxes.texts(), QStringList{"Delete the record?"});
    }
    EXPECT_EQ(readFile(KEY_FILE), before);
    kit::BoxAnswers boxes({"yes"});
    softKey(2);
    EXPECT_EQ(keyInFile(4), "N/A");
    EXPECT_EQ(row(3), "DSS Key4|N/A||");
    EXPECT_EQ(panel(), "DSS Key4|N/A|Auto|off||off");
}

TEST_F(SpeedDial, DeleteOnAFreeKeyAsksNothing)
{
    openPage();
    goTo(5);
    kit::BoxAnswers boxes;
    softKey(2);
    EXPECT_TRUE(boxes.texts().isEmpty());
}

TEST_F(SpeedDial, DeleteInTheEditErasesACharacter)
{
    openPage();
    goTo(1);
    kit::tap(child<QLineEdit>("editExtension"));
    child<QLineEdit>("editExtension")->end(false);
    kit::BoxAnswers boxes;
    softKey(2);
    EXPECT_EQ(child<QLineEdit>("editExtension")->text(), "471");
    EXPECT_TRUE(boxes.texts().isEmpty());
    EXPECT_EQ(row(1), "DSS Key2|Speed Dial|Line 2|4711");
}

TEST_F(SpeedDial, TheHostReadsTheKeysWithBackAndNotBefore)
{
    GetDssKeyManager()->LoadFile(KEY_FILE, 0);
    openPage();
    goTo(5);
    takeType(1);
    ok();
    writeKeys("", 7);
    EXPECT_EQ(keyCount(), "20");
    mark();
    back();
    EXPECT_EQ(keyCount(), "7");
    EXPECT_TRUE(logged("broadcast").isEmpty());
    EXPECT_FALSE(page->isVisible());
    openPage();
    writeKeys("", 9);
    kit::key(Qt::Key_Escape);
    EXPECT_EQ(keyCount(), "9");
}

TEST_F(SpeedDial, ArrowsGoThroughTheRowsAndRoundAtTheTwentieth)
{
    openPage();
    kit::key(Qt::Key_Up);
    EXPECT_EQ(current(), 19);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(current(), 0);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(current(), 1);
    kit::key(Qt::Key_Up);
    EXPECT_EQ(current(), 0);
}

TEST_F(SpeedDial, AShortListEndsAtItsEnds)
{
    writeKeys(item("Line", "Line=\"0\""), 3);
    openPage();
    kit::key(Qt::Key_Up);
    EXPECT_EQ(current(), 0);
    kit::key(Qt::Key_Down);
    kit::key(Qt::Key_Down);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(current(), 2);
}

TEST_F(SpeedDial, KeysAloneReachTheEditorAndComeBack)
{
    openPage();
    kit::key(Qt::Key_Down);
    kit::key(Qt::Key_Return);
    EXPECT_EQ(focusName(), "cmbBoxType");
    kit::key(Qt::Key_Left); // from Speed Dial to Line
    kit::key(Qt::Key_Down);
    EXPECT_EQ(focusName(), "cmbBoxAccount");
    kit::key(Qt::Key_Down);
    EXPECT_EQ(focusName(), "btnOK");
    kit::key(Qt::Key_Return);
    EXPECT_EQ(keyInFile(2), "Line|1,-,4711,-");
    EXPECT_EQ(focusName(), kTable);
}

TEST_F(SpeedDial, TheSoftKeyShowsTheMethodWhileTheEditHasTheFocus)
{
    openPage();
    goTo(1);
    kit::tap(child<QLineEdit>("editExtension"));
    EXPECT_EQ(softKeyTitle(1), "123");
    softKey(1);
    EXPECT_EQ(softKeyTitle(1), "2aB");
    table(kTable)->setFocus();
    EXPECT_EQ(softKeyTitle(1), "");
    EXPECT_EQ(softKeyTitle(2), "Delete");
    back();
    openPage();
    EXPECT_EQ(qGetCurrentIME(child<QLineEdit>("editExtension")), "123");
}

TEST_F(SpeedDial, AFingerLiftedElsewhereAlsoEatsTheNextPress)
{
    openPage();
    goTo(1);
    QWidget elsewhere;
    elsewhere.setGeometry(0, 0, 10, 10);
    QMouseEvent lifted(QEvent::MouseButtonRelease, QPointF(1, 1), QPointF(1, 1), Qt::LeftButton, Qt::NoButton,
                       Qt::NoModifier);
    QCoreApplication::sendEvent(&elsewhere, &lifted);
    QPushButton* button = child<QPushButton>("btnCancel");
    int clicks = 0;
    QObject::connect(button, &QPushButton::clicked, page, [&] { ++clicks; });
    kit::tap(button);
    EXPECT_EQ(clicks, 0);
    kit::tap(button);
    EXPECT_EQ(clicks, 1);
}

TEST_F(SpeedDial, AFileThatCannotBeLoadedLeavesTheListAndNothingCanBeStoredThroughIt)
{
    openPage();
    back();
    for (const char* broken : {"<DssKey><Item", "<Other/>"}) {
        writeFile(KEY_FILE, broken);
        openPage();
        EXPECT_EQ(row(1), "DSS Key2|Speed Dial|Line 2|4711") << broken;
        goTo(1);
        kit::BoxAnswers boxes({"ok"});
        ok();
        EXPECT_EQ(boxes.texts(), QStringList{"The settings cannot be saved!"});
        EXPECT_EQ(readFile(KEY_FILE), broken);
        back();
    }
}

TEST_F(SpeedDial, AFullDiskIsToldAndTheNextOkStoresIt)
{
    openPage();
    goTo(1);
    enter("editExtension", "5511");
    {
        FailingCalls disk;
        disk.setSpace(0);
        kit::BoxAnswers boxes({"ok"});
        ok();
        EXPECT_EQ(boxes.texts(), QStringList{"The settings cannot be saved!"});
    }
    EXPECT_EQ(keyInFile(2), "Speed Dial|1,-,4711,-");
    EXPECT_EQ(child<QLineEdit>("editExtension")->text(), "5511");
    ok();
    EXPECT_EQ(keyInFile(2), "Speed Dial|1,-,5511,-");
}

TEST_F(SpeedDial, ARowBeyondTheListIsNoneAndTheCallIsTraced)
{
    openPage();
    goTo(4);
    goTo(25);
    goTo(-1);
    EXPECT_EQ(current(), 4);
    EXPECT_EQ(traces().count("dlgSpeedDial::SetTabWgtRow=======25"), 1);
}

TEST_F(SpeedDial, TheBootMakesItAndOpeningFillsIt)
{
    ASSERT_NE(roomHooks().speedDialPage, nullptr);
    EXPECT_EQ(roomHooks().speedDialPage(), getSpeedDialDialog());
    EXPECT_EQ(getSpeedDialDialog()->findChildren<QWidget*>().size(), 0)
        << "whatever is made at every boot costs every boot";
    openPage();
    EXPECT_EQ(row(0), "DSS Key1|Line|Auto|");
}

TEST_F(SpeedDial, ANewLanguageIsThatOfRowsAndPanel)
{
    openPage();
    goTo(1);
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("German"), 1);
    kit::settle();
    EXPECT_EQ(row(1), "DSS-Taste2|Kurzwahl|Leitung 2|4711");
    EXPECT_EQ(panel(), "DSS-Taste2|Kurzwahl|Leitung 2|on|4711|on");
    ok();
    EXPECT_EQ(keyInFile(2), "Speed Dial|1,-,4711,-");
}

TEST_F(SpeedDial, ItsFilterIsTraced)
{
    openPage();
    EXPECT_EQ(traces().count("-----dlgSpeedDial installEventFilter----------"), 1);
    back();
    EXPECT_EQ(traces().count("-----dlgSpeedDial removeEventFilter----------"), 1);
}

TEST_F(SpeedDial, ListAndButtonsLookAsTheyShould)
{
    openPage();
    expectBackground("general/gen_bg.jpg");
    const QTableWidget* keys = table(kTable);
    expectPlain(keys);
    EXPECT_EQ(keys->horizontalHeader()->sectionResizeMode(0), QHeaderView::Stretch);
    EXPECT_EQ(keys->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_EQ(keys->verticalHeader()->minimumSectionSize(), 42);
    const QString folder = "/phone/resource/theme/default/bmp/button/";
    for (int state = 0; state < 3; ++state) {
        const QString file = QString("0%1.png").arg(state + 1);
        EXPECT_EQ(GetButtonImage(child<QPushButton>("btnOK"), state), folder + "btn_ok_bg" + file);
        EXPECT_EQ(GetButtonImage(child<QPushButton>("btnCancel"), state), folder + "btn_cancel_bg" + file);
    }
}

TEST_F(SpeedDial, EachShowHasTheTwentyKeysOnceAndBeginsAtTheFirst)
{
    openPage();
    goTo(7);
    back();
    openPage();
    EXPECT_EQ(table(kTable)->rowCount(), 20);
    EXPECT_EQ(current(), 0);
    EXPECT_EQ(table(kTable)->currentColumn(), 0);
    EXPECT_EQ(panel(), "DSS Key1|Line|Auto|on||off");
}

TEST_F(SpeedDial, ALoadChoosesTheFirstKeyWhereverTheFocusIs)
{
    openPage();
    goTo(1);
    kit::tap(child<QLineEdit>("editExtension"));
    getSpeedDialDialog()->LoadData();
    EXPECT_EQ(table(kTable)->rowCount(), 20);
    EXPECT_EQ(current(), 0);
    EXPECT_EQ(panel(), "DSS Key1|Line|Auto|on||off");
}

TEST_F(SpeedDial, UnderAnotherWindowItLooksAtNothing)
{
    openPage();
    QDialog other;
    other.setGeometry(0, 0, 800, 480);
    other.show();
    kit::settle();
    ASSERT_TRUE(page->isVisible());
    kit::tap(QPoint(400, 200)); // lifted outside the page
    other.hide();
    kit::settle();
    int clicks = 0;
    QObject::connect(child<QPushButton>("btnCancel"), &QPushButton::clicked, page, [&] { ++clicks; });
    cancel();
    EXPECT_EQ(clicks, 1);
}

// Whoever makes a hidden window the active one does not wake its filter.
TEST_F(SpeedDial, HiddenItLooksAtNothing)
{
    openPage();
    back();
    QApplication::setActiveWindow(page);
    ASSERT_TRUE(page->isActiveWindow());
    QWidget elsewhere;
    for (const QEvent::Type type : {QEvent::MouseButtonRelease, QEvent::MouseButtonPress}) {
        QMouseEvent event(type, QPointF(1, 1), QPointF(1, 1), Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
        EXPECT_FALSE(page->eventFilter(&elsewhere, &event)) << type;
    }
    QApplication::setActiveWindow(nullptr);
}

// The key's editor, which a held key opens over the page, is one of those others.
TEST_F(SpeedDial, WhatOthersStoreWhileItIsOpenStaysAndIsShown)
{
    openPage();
    QByteArray file = readFile(KEY_FILE);
    writeKeys(item("Line", "Line=\"-1\"") + item("Speed Dial", "Line=\"1\" Extension=\"4711\"") +
              item("Speed Dial", "Line=\"0\" Label=\"boss\" Value=\"4242\" Extension=\"12\""));
    goTo(1);
    enter("editExtension", "5511");
    ok();
    EXPECT_EQ(keyInFile(2), "Speed Dial|1,-,5511,-");
    EXPECT_EQ(keyInFile(3), "Speed Dial|0,boss,12,4242");
    EXPECT_EQ(row(1), "DSS Key2|Speed Dial|Line 2|5511");
    EXPECT_EQ(row(2), "DSS Key3|Speed Dial|Line 1|12");
    EXPECT_EQ(current(), 1);

    writeFile(KEY_FILE, file);
    goTo(0);
    kit::BoxAnswers boxes({"yes"});
    goTo(1);
    table(kTable)->setFocus();
    softKey(2);
    EXPECT_EQ(keyInFile(2), "N/A");
    EXPECT_EQ(keyInFile(3), "BLF|1,Anna,8001,8002");
}

TEST_F(SpeedDial, ComingBackToThePageShowsWhatTheEditorHasStored)
{
    openPage();
    goTo(2);
    QWidget over;
    over.show();
    over.activateWindow();
    kit::settle();
    writeKeys(item("Line", "Line=\"-1\"") + item("N/A", "") +
              item("Speed Dial", "Line=\"0\" Value=\"4242\" Extension=\"12\""));
    over.close();
    page->activateWindow();
    kit::settle();
    EXPECT_EQ(row(2), "DSS Key3|Speed Dial|Line 1|12");
    EXPECT_EQ(panel(), "DSS Key3|Speed Dial|Line 1|on|12|on");
    EXPECT_EQ(current(), 2);
}

TEST_F(SpeedDial, AFileThatBreaksOrGoesMeanwhileIsToldAndNeverReplaced)
{
    openPage();
    goTo(1);
    enter("editExtension", "5511");
    for (const char* content : {"<DssKey><Item", ""}) {
        writeFile(KEY_FILE, content);
        kit::BoxAnswers boxes({"ok"});
        ok();
        EXPECT_EQ(boxes.texts(), QStringList{"The settings cannot be saved!"});
        EXPECT_EQ(readFile(KEY_FILE), content);
        EXPECT_EQ(child<QLineEdit>("editExtension")->text(), "5511");
    }
    QFile::remove(hostPath(KEY_FILE));
    kit::BoxAnswers boxes({"ok"});
    ok();
    EXPECT_EQ(boxes.texts(), QStringList{"The settings cannot be saved!"});
    EXPECT_FALSE(QFile::exists(hostPath(KEY_FILE)));
}
