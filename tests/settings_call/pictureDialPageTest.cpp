// The page "Picture-dial Setting": six slots, a panel for the chosen one, and the home screen that is told.
#include "frame/popupDialog.h"
#include "settings/call/dlgPictureDialSetting.h"
#include "support/host/button.h"
#include "support/host/desktop.h"
#include "support/host/ime.h"
#include "support/host/picture.h"
#include "support/xml/xmlFile.h"
#include "tests/file/failingCalls.h"
#include "tests/settings_call/callPageTest.h"
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QTableWidget>

namespace {

#define SLOTS_FILE "/rundata/data/picture-dial.xml"
#define PICTURES "/rundata/picture-dial/"

class PictureDialPage : public CallPageTest
{
protected:
    PictureDialPage()
    {
        QDir().mkpath(hostPath(PICTURES));
        QDir(hostPath(PICTURES)).removeRecursively();
        QDir().mkpath(hostPath(PICTURES));
        paint(PICTURES "Default.png", Qt::gray);
        paint(PICTURES "Door.png", Qt::red);
        paint(PICTURES "Home.png", Qt::green);
        writeFile(SLOTS_FILE,
                  "<picture-dial><icon title='Anna' number='1002' file='Door.png' line='2'/>"
                  "<icon title='Bo' number='1003' file='Home.png' line='-1' more='x'><host a='1'/></icon>"
                  "<icon title='' number='' file='Default.png' line='-1'/>"
                  "<icon title='' number='' file='Home.png' line='-1'/>"
                  "<icon title='' number='' file='Default.png' line='-1'/>"
                  "<icon title='' number='' file='Default.png' line='-1'/>"
                  "<icon title='Surplus' number='7' file='Home.png' line='0'/></picture-dial>");
    }
    void paint(const char* path, const QColor& colour)
    {
        QImage picture(200, 100, QImage::Format_RGB32);
        picture.fill(colour);
        ASSERT_TRUE(picture.save(hostPath(path)));
    }
    void openSlots()
    {
        open("Picture-dial Setting");
        drainPictures();
    }
    static void drainPictures()
    {
        ASSERT_TRUE(kit::waitUntil([] { return picturePending() == 0; }));
        kit::settle();
    }
    QTableWidget* table() const { return child<QTableWidget>("tabWgtList"); }
    QComboBox* pictures() const { return child<QComboBox>("cmbPic"); }
    QString cell(int row, int column) const
    {
        const QTableWidgetItem* item = table()->item(row, column);
        return item ? item->text() : "(none)";
    }
    void choosePicture(const char* file)
    {
        pictures()->setFocus();
        for (int step = 0; step < pictures()->count() && pictures()->currentText() != file; ++step)
            kit::key(Qt::Key_Right);
        ASSERT_EQ(pictures()->currentText(), file);
    }
    void goTo(int row)
    {
        table()->setFocus();
        table()->setCurrentCell(row, 0);
        kit::settle();
    }
    void ok() { kit::tap(child<QWidget>("btnOK")); }
    void cancel() { kit::tap(child<QWidget>("btnNO")); }
    // "title number file line" of a slot in the file, with the names of its children.
    QString slot(int index) const
    {
        xmlFile file(SLOTS_FILE);
        xmlElement* icon = xmlFindElementFromRoot(&file, "picture-dial", "icon", 0);
        for (int i = 0; icon && i < index; ++i)
            icon = xmlGetNextElement(icon);
        if (!icon)
            return "(none)";
        QString all;
        for (const char* name : {"title", "number", "file", "line"})
            all += QString(icon->GetAttributeValue(name).GetText()) + "|";
        for (xmlElement* child = icon->GetFirstChildElement(); child; child = xmlGetNextElement(child))
            all += child->GetName();
        return all;
    }
    QString panel() const
    {
        return child<QLineEdit>("editName")->text() + "|" + child<QLineEdit>("editNumber")->text() + "|" +
               child<QComboBox>("cmbAccount")->currentText() + "|" + pictures()->currentText();
    }
    QColor shownColour() const
    {
        const QPixmap shown = child<QLabel>("labPic")->pixmap();
        EXPECT_EQ(shown.size(), child<QLabel>("labPic")->size());
        return shown.isNull() ? QColor() : shown.toImage().pixelColor(shown.width() / 2, 3);
    }
    // The text of a quick key of the home screen.
    static QString homeKey(int number)
    {
        const auto* key =
            frmDesktop::GetInstance()->findChild<QAbstractButton*>(QString("quickKey%1").arg(number));
        return key ? key->text() : "(none)";
    }
};

} // namespace

TEST_F(PictureDialPage, ListPanelAndButtonsStandInTheirPlaces)
{
    openSlots();
    EXPECT_EQ(pageClass(), "dlgPictureDialSetting");
    EXPECT_EQ(title(), "Picture-dial Setting");
    EXPECT_EQ(placeOf("btnOK"), QRect(488, 365, 78, 40));
    EXPECT_EQ(placeOf("btnNO"), QRect(628, 365, 78, 40));
    EXPECT_EQ(GetButtonImage(child<QPushButton>("btnOK"), 1),
              "/phone/resource/theme/default/bmp/button/btn_ok_bg02.png");
    EXPECT_EQ(GetButtonImage(child<QPushButton>("btnNO"), 2),
              "/phone/resource/theme/default/bmp/button/btn_cancel_bg03.png");
    EXPECT_EQ(table()->rowCount(), 6);
    EXPECT_EQ(table()->rowHeight(0), 45);
    const int widths[] = {80, 140, 140};
    for (int column = 0; column < 3; ++column)
        EXPECT_EQ(table()->columnWidth(column), widths[column]);
    EXPECT_EQ(softKeys(), (QStringList{"", "", "Delete", "Back"}));
    EXPECT_EQ(focusName(), "tabWgtList");
    EXPECT_EQ(child<QLabel>("labTitelNumber")->text(), "Phone Number");
    QStringList accounts;
    for (int i = 0; i < child<QComboBox>("cmbAccount")->count(); ++i)
        accounts.append(child<QComboBox>("cmbAccount")->itemText(i));
    EXPECT_EQ(accounts, (QStringList{"Auto", "Line 1", "Line 2", "Line 3", "Line 4"}));
    expectBackground("general/gen_bg_has_topbar_and_softkey.jpg");
    kit::shot("picture-dial");
}

TEST_F(PictureDialPage, TheFirstSlotIsShownBeforeTheListOfPicturesIsFilled)
{
    auto* made = GetdlgPictureDialSetting();
    page = made;
    made->show();
    EXPECT_EQ(pictures()->count(), 1);
    EXPECT_EQ(panel(), "Anna|1002|Line 3|Door.png");
    EXPECT_EQ(cell(2, 1), "(none)") << "empty cells are made later";
    drainPictures();
    EXPECT_EQ(shownColour(), QColor(Qt::red));
    EXPECT_EQ(pictures()->count(), 3);
    EXPECT_EQ(panel(), "Anna|1002|Line 3|Door.png");
    EXPECT_EQ(cell(2, 1), "");
    EXPECT_EQ(cell(5, 2), "");
}

TEST_F(PictureDialPage, RowsShowTheSlotsAndThePanelFollowsThem)
{
    openSlots();
    EXPECT_EQ(cell(0, 0) + cell(0, 1) + cell(0, 2), "1Anna1002");
    EXPECT_EQ(cell(5, 0) + cell(5, 1) + cell(5, 2), "6");
    kit::key(Qt::Key_Down);
    EXPECT_EQ(panel(), "Bo|1003|Auto|Home.png");
    drainPictures();
    EXPECT_EQ(shownColour(), QColor(Qt::green));
    kit::key(Qt::Key_Up);
    kit::key(Qt::Key_Up);
    EXPECT_EQ(table()->currentRow(), 5) << "round";
    EXPECT_EQ(panel(), "||Auto|Default.png");
}

TEST_F(PictureDialPage, OkStoresTheSlotAndTellsTheHomeScreen)
{
    frmDesktop::GetInstance()->ReloadQuickKeys();
    EXPECT_EQ(homeKey(3), "");
    openSlots();
    goTo(2);
    enter("editName", "Cleo");
    enter("editNumber", "1004");
    choose("cmbAccount", "3");
    choosePicture("Door.png");
    ok();
    EXPECT_EQ(slot(2), "Cleo|1004|Door.png|3|");
    EXPECT_EQ(slot(1), "Bo|1003|Home.png|-1|host") << "others stay as they are";
    EXPECT_EQ(slot(6), "Surplus|7|Home.png|0|") << "those without a row as well";
    EXPECT_EQ(cell(2, 1) + cell(2, 2), "Cleo1004");
    EXPECT_EQ(focusName(), "tabWgtList");
    EXPECT_EQ(homeKey(3), "Cleo");
    EXPECT_TRUE(readFile(SLOTS_FILE).contains("more=\"x\""));
}

TEST_F(PictureDialPage, OkWithoutNameAndNumberKeepsTheChosenPicture)
{
    openSlots();
    enter("editName", "");
    enter("editNumber", "");
    choosePicture("Home.png");
    ok();
    EXPECT_EQ(slot(0), "||Home.png|2|");
}

TEST_F(PictureDialPage, CancelPutsThePanelBack)
{
    openSlots();
    enter("editName", "Z");
    enter("editNumber", "9");
    choose("cmbAccount", "-1");
    choosePicture("Default.png");
    cancel();
    EXPECT_EQ(panel(), "Anna|1002|Line 3|Door.png");
    EXPECT_EQ(slot(0), "Anna|1002|Door.png|2|");
    goTo(2);
    enter("editName", "Z");
    cancel();
    EXPECT_EQ(panel(), "||Auto|Default.png");
}

TEST_F(PictureDialPage, DeleteAsksAndEmptiesTheSlot)
{
    openSlots();
    goTo(1);
    {
        kit::BoxAnswers boxes({"no"});
        softKey(2);
        EXPECT_EQ(boxes.titles(), QStringList{"Note"});
        EXPECT_EQ(boxes.texts(), QStringList{"Delete Bo?"});
    }
    EXPECT_EQ(slot(1), "Bo|1003|Home.png|-1|host");
    kit::BoxAnswers boxes({"yes"});
    softKey(2);
    EXPECT_EQ(slot(1), "||Default.png|-1|");
    EXPECT_EQ(panel(), "||Auto|Default.png");
    EXPECT_EQ(cell(1, 1) + cell(1, 2), "");
    EXPECT_TRUE(readFile(SLOTS_FILE).contains("more=\"x\""));
    EXPECT_EQ(homeKey(1), "Anna") << "the home screen has read again";
}

TEST_F(PictureDialPage, AnEmptySlotIsNotAskedForAndNothingIsWritten)
{
    openSlots();
    goTo(2);
    const QByteArray before = readFile(SLOTS_FILE);
    const kit::BoxAnswers boxes;
    softKey(2);
    EXPECT_TRUE(boxes.texts().isEmpty());
    EXPECT_EQ(readFile(SLOTS_FILE), before);
}

TEST_F(PictureDialPage, ASlotWithOnlyAPictureIsNotEmpty)
{
    openSlots();
    goTo(3);
    kit::BoxAnswers boxes({"yes"});
    softKey(2);
    EXPECT_EQ(boxes.texts(), QStringList{"Delete ?"});
    EXPECT_EQ(slot(3), "||Default.png|-1|");
}

TEST_F(PictureDialPage, ASlotWithOneThingOnlyIsNotEmpty)
{
    const struct
    {
        const char* attributes;
        const char* question;
    } cases[] = {{"title='Eve' number='' file='Default.png' line='-1'", "Delete Eve?"},
                 {"title='' number='5' file='Default.png' line='-1'", "Delete ?"},
                 {"title='' number='' file='Default.png' line='0'", "Delete ?"}};
    for (const auto& one : cases) {
        writeFile(SLOTS_FILE, QByteArray("<picture-dial><icon ") + one.attributes + "/></picture-dial>");
        openSlots();
        kit::BoxAnswers boxes({"yes"});
        softKey(2);
        EXPECT_EQ(boxes.texts(), QStringList{one.question}) << one.attributes;
        EXPECT_EQ(slot(0), "||Default.png|-1|") << one.attributes;
        back();
    }
}

TEST_F(PictureDialPage, ADeletedSlotShowsTheDefaultLine)
{
    openSlots();
    ASSERT_EQ(panel(), "Anna|1002|Line 3|Door.png");
    kit::BoxAnswers boxes({"yes"});
    softKey(2);
    EXPECT_EQ(panel(), "||Auto|Default.png");
    ok();
    EXPECT_EQ(slot(0), "||Default.png|-1|") << "and is stored with it";
}

TEST_F(PictureDialPage, EachShowBeginsWithItsMethods)
{
    // Also where there is no slot to be shown.
    for (const QByteArray& content : {readFile(SLOTS_FILE), QByteArray("<picture-dial/>")}) {
        writeFile(SLOTS_FILE, content);
        openSlots();
        for (const char* edit : {"editName", "editNumber"}) {
            kit::tap(child<QLineEdit>(edit));
            softKey(1);
        }
        back();
        for (const char* edit : {"editName", "editNumber"})
            qShift2NextIME(child<QLineEdit>(edit));
        page->show();
        EXPECT_EQ(qGetCurrentIME(child<QLineEdit>("editName")), "2aB");
        EXPECT_EQ(qGetCurrentIME(child<QLineEdit>("editNumber")), "123");
        drainPictures();
        back();
    }
}

TEST_F(PictureDialPage, DeleteInAnEditTakesACharacter)
{
    openSlots();
    kit::tap(child<QLineEdit>("editName"));
    kit::key(Qt::Key_End);
    EXPECT_EQ(softKeys(), (QStringList{"", "2aB", "Delete", "Back"}));
    const kit::BoxAnswers boxes;
    softKey(2);
    EXPECT_EQ(child<QLineEdit>("editName")->text(), "Ann");
    EXPECT_EQ(slot(0), "Anna|1002|Door.png|2|");
    kit::tap(child<QLineEdit>("editNumber"));
    EXPECT_EQ(softKeyTitle(1), "123");
    softKey(1);
    EXPECT_EQ(softKeyTitle(1), "2aB");
    child<QComboBox>("cmbAccount")->setFocus();
    EXPECT_EQ(softKeys(), (QStringList{"", "", "", "Back"})) << "nothing to delete there";
    table()->setFocus();
    EXPECT_EQ(softKeys(), (QStringList{"", "", "Delete", "Back"}));
    kit::tap(child<QLineEdit>("editNumber"));
    kit::key(Qt::Key_End);
    softKey(2);
    EXPECT_EQ(child<QLineEdit>("editNumber")->text(), "100");
    goTo(1);
    kit::tap(child<QLineEdit>("editNumber"));
    EXPECT_EQ(softKeyTitle(1), "123") << "another row begins anew";
}

TEST_F(PictureDialPage, ANameHasTwentyFourCharactersAndIsShownFromItsFifteenth)
{
    writeFile(SLOTS_FILE, "<picture-dial><icon title='12345678901234567890' number='1' file='Home.png' "
                          "line='-1'/></picture-dial>");
    openSlots();
    EXPECT_EQ(child<QLineEdit>("editName")->cursorPosition(), 15);
    kit::tap(child<QLineEdit>("editName"));
    child<QLineEdit>("editName")->clear();
    kit::type("abcdefghijklmnopqrstuvwx");
    EXPECT_EQ(child<QLineEdit>("editName")->text().size(), 24);
    kit::type("y");
    EXPECT_EQ(child<QLineEdit>("editName")->text().size(), 24);
    EXPECT_EQ(child<QLineEdit>("editNumber")->maxLength(), 99);
    ok();
    EXPECT_EQ(slot(0), "abcdefghijklmnopqrstuvwx|1|Home.png|-1|");
    cancel();
    EXPECT_EQ(child<QLineEdit>("editName")->cursorPosition(), 15);
}

TEST_F(PictureDialPage, AFullDiskIsToldAndWhatWasTypedStays)
{
    openSlots();
    enter("editName", "Zoe");
    const QByteArray before = readFile(SLOTS_FILE);
    {
        FailingCalls disk;
        disk.setSpace(0);
        kit::BoxAnswers boxes({"ok"});
        ok();
        EXPECT_EQ(boxes.texts(), QStringList{"The settings cannot be saved!"});
    }
    EXPECT_EQ(readFile(SLOTS_FILE), before);
    EXPECT_EQ(child<QLineEdit>("editName")->text(), "Zoe");
    EXPECT_TRUE(page->isVisible());
    ok();
    EXPECT_EQ(slot(0), "Zoe|1002|Door.png|2|");
}

TEST_F(PictureDialPage, WithoutAFileOrAListThereIsNothingToChange)
{
    for (const char* content : {"", "<picture-dial><icon", "<other/>"}) {
        writeFile(SLOTS_FILE, content);
        openSlots();
        EXPECT_EQ(table()->rowCount(), 6) << content;
        EXPECT_EQ(cell(0, 0), "(none)");
        const kit::BoxAnswers boxes;
        ok();
        cancel();
        table()->setFocus();
        softKey(2);
        EXPECT_TRUE(boxes.texts().isEmpty());
        EXPECT_EQ(readFile(SLOTS_FILE), content) << "never replaced";
        back();
    }
}

TEST_F(PictureDialPage, ANameOfAPictureNeverLeadsOutOfItsFolder)
{
    paint("/rundata/secret.png", Qt::blue);
    QDir().mkpath(hostPath(PICTURES "sub"));
    paint(PICTURES "sub/in.png", Qt::blue);
    for (const char* file : {"../secret.png", "/rundata/secret.png", "sub/in.png", "..", "a&#10;b.png"}) {
        writeFile(SLOTS_FILE, "<picture-dial><icon title='Eve' number='1' file='" + QByteArray(file) +
                                  "' line='-1'/></picture-dial>");
        openSlots();
        EXPECT_TRUE(child<QLabel>("labPic")->pixmap().isNull()) << file;
        back();
    }
}

TEST_F(PictureDialPage, APictureThatCannotBeReadIsEmptyAndItsSlotKeepsIt)
{
    writeFile(PICTURES "broken.png", "no picture");
    writeFile(SLOTS_FILE,
              "<picture-dial><icon title='A' number='1' file='broken.png' line='-1'/><icon title='B' "
              "number='2' file='gone.png' line='-1'/></picture-dial>");
    const kit::BoxAnswers boxes;
    openSlots();
    EXPECT_TRUE(child<QLabel>("labPic")->pixmap().isNull());
    goTo(1);
    drainPictures();
    EXPECT_TRUE(child<QLabel>("labPic")->pixmap().isNull());
    EXPECT_EQ(pictures()->currentText(), "gone.png");
    ok();
    EXPECT_EQ(slot(1), "B|2|gone.png|-1|");
    EXPECT_TRUE(boxes.texts().isEmpty());
}

TEST_F(PictureDialPage, ALineThatIsNoneIsAuto)
{
    writeFile(SLOTS_FILE, "<picture-dial><icon title='A' number='1' file='Home.png' line='9'/><icon "
                          "title='B' number='2' file='Home.png'/></picture-dial>");
    openSlots();
    EXPECT_EQ(panel(), "A|1|Auto|Home.png");
    goTo(1);
    EXPECT_EQ(panel(), "B|2|Auto|Home.png");
    ok();
    EXPECT_EQ(slot(1), "B|2|Home.png|-1|");
}

TEST_F(PictureDialPage, APictureOfAnySizeIsReadElsewhere)
{
    QImage photo(4000, 3000, QImage::Format_RGB32);
    photo.fill(Qt::red);
    ASSERT_TRUE(photo.save(hostPath(PICTURES "Big.png")));
    writeFile(SLOTS_FILE,
              "<picture-dial><icon title='A' number='1' file='Big.png' line='-1'/></picture-dial>");
    page = GetdlgPictureDialSetting();
    page->show();
    EXPECT_GT(picturePending(), 0);
    drainPictures();
    EXPECT_EQ(shownColour(), QColor(Qt::red));
}

TEST_F(PictureDialPage, OkOnTheListLeadsToThePictures)
{
    openSlots();
    kit::key(Qt::Key_Return);
    EXPECT_EQ(focusName(), "cmbPic");
    EXPECT_EQ(softKeys(), (QStringList{"", "", "", "Back"}));
}

TEST_F(PictureDialPage, AHiddenPageIsAtItsFirstSlotAgain)
{
    openSlots();
    goTo(4);
    back();
    EXPECT_EQ(table()->currentRow(), 0);
    EXPECT_TRUE(traces().contains("-----dlgPictureDialSetting installEventFilter----------"));
    EXPECT_TRUE(traces().contains("-----dlgPictureDialSetting removeEventFilter----------"));
}

TEST_F(PictureDialPage, ThePageIsOneWhoeverMakesIt)
{
    EXPECT_EQ(GetdlgPictureDialSetting(), GetdlgPictureDialSetting());
    EXPECT_EQ(PopupDialog<dlgPictureDialSetting>(nullptr, 1, 0, 0), GetdlgPictureDialSetting());
    EXPECT_FALSE(GetdlgPictureDialSetting()->isVisible());
}

TEST_F(PictureDialPage, ThePictureOfTheHomeScreenShowsItsSlot)
{
    QPixmap decoration(40, 40);
    decoration.fill(Qt::yellow);
    PicDialIconViewItem item(1, "Home.png", QIcon(decoration));
    GetdlgPictureDialSetting()->ShowByIconViewItem(&item);
    page = GetdlgPictureDialSetting();
    EXPECT_TRUE(page->isVisible());
    EXPECT_EQ(table()->currentRow(), 1);
    EXPECT_EQ(pictures()->itemText(0), "Home.png") << "before the list is filled";
    EXPECT_EQ(pictures()->currentText(), "Home.png");
    EXPECT_EQ(shownColour(), QColor(Qt::yellow));
    EXPECT_TRUE(traces().contains("SetCurrentRow(1)"));
    drainPictures();
    EXPECT_EQ(panel(), "Bo|1003|Auto|Home.png");
    EXPECT_EQ(shownColour(), QColor(Qt::green));
    back();
    GetdlgPictureDialSetting()->ShowByIconViewItem(nullptr);
    EXPECT_TRUE(page->isVisible());
    EXPECT_EQ(table()->currentRow(), 0);
    mark();
    GetdlgPictureDialSetting()->SetCurrentRow(-1);
    EXPECT_FALSE(traces().contains("SetCurrentRow(-1)"));
}

TEST_F(PictureDialPage, AFileThatTheListDoesNotHaveIsPutInFront)
{
    openSlots();
    PicDialIconViewItem item(0, "gone.png", QIcon());
    GetdlgPictureDialSetting()->ShowByIconViewItem(&item);
    EXPECT_EQ(pictures()->itemText(0), "gone.png");
    EXPECT_EQ(pictures()->currentIndex(), 0);
    EXPECT_EQ(pictures()->count(), 4);
}

TEST_F(PictureDialPage, TheRestOfATouchThatBeganElsewhereHidesTheNextPress)
{
    QDialog other;
    other.setGeometry(0, 0, 800, 480);
    other.show();
    kit::settle();
    kit::press(QPoint(400, 300));
    openSlots();
    kit::release(QPoint(400, 300));
    child<QLineEdit>("editName")->setText("Z");
    cancel();
    EXPECT_EQ(child<QLineEdit>("editName")->text(), "Z");
    cancel();
    EXPECT_EQ(child<QLineEdit>("editName")->text(), "Anna");
}

TEST_F(PictureDialPage, WhatOthersStoreWhileItIsOpenStays)
{
    openSlots();
    enter("editName", "Zoe");
    QByteArray file = readFile(SLOTS_FILE);
    writeFile(SLOTS_FILE, file.replace("title='Bo'", "title='Bob'"));
    ok();
    EXPECT_EQ(slot(0), "Zoe|1002|Door.png|2|");
    EXPECT_EQ(slot(1).left(4), "Bob|");
    EXPECT_EQ(cell(0, 1), "Zoe");
}

TEST_F(PictureDialPage, AFileThatBreaksOrGoesMeanwhileIsToldAndNeverReplaced)
{
    openSlots();
    enter("editName", "Zoe");
    for (const char* content : {"<picture-dial><icon", ""}) {
        writeFile(SLOTS_FILE, content);
        kit::BoxAnswers boxes({"ok"});
        ok();
        EXPECT_EQ(boxes.texts(), QStringList{"The settings cannot be saved!"});
        EXPECT_EQ(readFile(SLOTS_FILE), content);
        EXPECT_EQ(child<QLineEdit>("editName")->text(), "Zoe");
    }
    QFile::remove(hostPath(SLOTS_FILE));
    kit::BoxAnswers boxes({"ok"});
    ok();
    EXPECT_EQ(boxes.texts(), QStringList{"The settings cannot be saved!"});
    EXPECT_FALSE(QFile::exists(hostPath(SLOTS_FILE)));
}
