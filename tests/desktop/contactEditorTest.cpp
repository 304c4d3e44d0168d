#include "support/host/bars.h"
#include "support/host/dialogs.h"
#include "support/host/ime.h"
#include "support/host/picture.h"
#include "tests/desktop/desktopTest.h"
#include <QAbstractItemView>
#include <QComboBox>
#include <QFile>
#include <QImage>
#include <QLineEdit>
#include <QPushButton>

namespace {

const char* const kFile = "/rundata/data/contactData.xml";

class ContactEditor : public DesktopTest
{
protected:
    void open(int index)
    {
        page.EditContact(index);
        page.show();
        kit::settle();
    }
    QLineEdit* name() { return page.findChild<QLineEdit*>("editName"); }
    QLineEdit* number() { return page.findChild<QLineEdit*>("editNumber"); }
    QComboBox* line() { return page.findChild<QComboBox*>("cmbLine"); }
    QComboBox* picture() { return page.findChild<QComboBox*>("cmbPicture"); }
    QPushButton* removeButton() { return page.findChild<QPushButton*>("btnRemove"); }
    QString leftPicture() { return page.findChild<qLeftBar*>()->icon(); }
    // The file without the space between its elements.
    std::string saved() { return readFile(kFile).simplified().replace("> <", "><").toStdString(); }
    void save() { tapSoftKey(&page, 0); }
    static std::string choices(QComboBox* box)
    {
        QStringList texts;
        for (int i = 0; i < box->count(); ++i)
            texts.append(box->itemText(i));
        return texts.join(",").toStdString();
    }
    dlgContactEditor page{nullptr, nullptr};
};

} // namespace

TEST_F(ContactEditor, ShowsTheContactOfTheIndex)
{
    open(2);
    EXPECT_EQ(pageTitle(&page), "Contact");
    EXPECT_EQ(softKeys(&page), "Save|2aB|Delete|Back");
    EXPECT_EQ(name()->text(), "Door");
    EXPECT_EQ(number()->text(), "8100");
    EXPECT_EQ(line()->currentText(), "Auto");
    EXPECT_EQ(picture()->currentText(), "Door.png");
    EXPECT_TRUE(name()->hasFocus());
    EXPECT_EQ(leftPicture(), "/phone/resource/contact-image/Door.png");
    EXPECT_EQ(cutTexts(&page), "");
    kit::shot("contactEditor");
}

TEST_F(ContactEditor, ANewContactIsEmptyAndCannotBeDeleted)
{
    open(-1);
    EXPECT_EQ(name()->text(), "");
    EXPECT_EQ(number()->text(), "");
    EXPECT_EQ(line()->currentText(), "Auto");
    EXPECT_EQ(picture()->currentText(), "None");
    EXPECT_FALSE(removeButton()->isVisible());
    EXPECT_EQ(leftPicture(), "/phone/resource/contact-image/icon_contact.png");
    kit::shot("contactEditorNew");
}

TEST_F(ContactEditor, APictureOfACameraIsReadElsewhereForTheSideBar)
{
    QImage photo(3000, 2000, QImage::Format_RGB32);
    photo.fill(Qt::red);
    ASSERT_TRUE(photo.save(hostPath("/rundata/photo.png")));
    writeFile(kFile, "<contactData><group><contact name=\"Ann\" number=\"1\" "
                     "sImagePath=\"/rundata/photo.png\"/></group></contactData>");
    page.EditContact(0);
    EXPECT_EQ(picturePending(), 0) << "nobody sees it yet";
    page.show();
    auto* const bar = page.findChild<qLeftBar*>();
    bar->grab();
    EXPECT_GT(picturePending(), 0);
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }));
    const QImage shown = bar->grab().toImage();
    EXPECT_EQ(shown.pixelColor(shown.width() / 2, 60), QColor(Qt::red));
    // Who chooses another one meanwhile sees that.
    QFile::copy(hostPath("/rundata/photo.png"), hostPath("/rundata/other.png"));
    bar->setIcon("/rundata/other.png");
    bar->grab();
    EXPECT_GT(picturePending(), 0);
    bar->setIcon("");
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }));
    EXPECT_NE(bar->grab().toImage().pixelColor(shown.width() / 2, 60), QColor(Qt::red));
}

TEST_F(ContactEditor, APictureOfAnyShapeFillsItsPlaceInTheSideBar)
{
    for (const QSize& size : {QSize(300, 600), QSize(800, 200), QSize(20, 10)}) {
        QImage photo(size, QImage::Format_RGB32);
        photo.fill(Qt::red);
        const QByteArray path = "/rundata/shape" + QByteArray::number(size.width()) + ".png";
        ASSERT_TRUE(photo.save(hostPath(path.constData())));
        page.show();
        auto* const bar = page.findChild<qLeftBar*>();
        bar->setIcon(path);
        bar->grab();
        EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }));
        const QImage shown = bar->grab().toImage();
        for (const QPoint& at : {QPoint(30, 40), QPoint(120, 40), QPoint(30, 128), QPoint(120, 128)})
            EXPECT_EQ(shown.pixelColor(at), QColor(Qt::red)) << size.width() << " at " << at.y();
    }
}

TEST_F(ContactEditor, AnIndexOutOfRangeIsANewContact)
{
    open(3);
    EXPECT_EQ(name()->text(), "");
    EXPECT_FALSE(removeButton()->isVisible());
}

TEST_F(ContactEditor, OffersAutoAndTheFourLines)
{
    open(-1);
    EXPECT_EQ(choices(line()), "Auto,Line 1,Line 2,Line 3,Line 4");
}

TEST_F(ContactEditor, SavesAChangedContactInItsPlace)
{
    writeFile(kFile, "<contactData owner=\"me\"><!-- friends --><group name=\"A\" ring=\"7\">"
                     "<contact name=\"Ann\" number=\"1\" line=\"0\" sImagePath=\"/x.png\" "
                     "mail=\"a@b\"><note>n</note></contact>"
                     "<contact name=\"Bea\" number=\"2\"/></group><group name=\"B\"/></contactData>");
    open(0);
    name()->setText("Anne");
    number()->setText("11");
    line()->setCurrentIndex(3);
    save();
    EXPECT_FALSE(page.isVisible());
    EXPECT_EQ(saved(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?><contactData owner=\"me\"><!-- friends -->"
                       "<group name=\"A\" ring=\"7\"><contact name=\"Anne\" number=\"11\" line=\"2\" "
                       "sImagePath=\"/x.png\" mail=\"a@b\"><note>n</note></contact>"
                       "<contact name=\"Bea\" number=\"2\"/></group><group name=\"B\"/></contactData>");
}

TEST_F(ContactEditor, ANewContactGoesIntoTheFirstGroup)
{
    writeFile(kFile, "<contactData><group name=\"A\"/><group name=\"B\"/></contactData>");
    open(-1);
    name()->setText("Zoe");
    number()->setText("77");
    save();
    EXPECT_EQ(saved(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?><contactData><group name=\"A\">"
                       "<contact name=\"Zoe\" number=\"77\" line=\"-1\" sImagePath=\"\"/></group>"
                       "<group name=\"B\"/></contactData>");
}

TEST_F(ContactEditor, WithoutAFileTheFirstContactMakesIt)
{
    QFile::remove(hostPath(kFile));
    open(-1);
    name()->setText("Zoe");
    number()->setText("77");
    save();
    EXPECT_TRUE(readFile(kFile).contains("<group name=\"Contacts\">"));
    open(0);
    EXPECT_EQ(name()->text(), "Zoe");
}

TEST_F(ContactEditor, AnEmptyNameIsRefusedBeforeAnEmptyNumber)
{
    const QByteArray before = readFile(kFile);
    open(-1);
    number()->setFocus();
    kit::BoxAnswers boxes({"ok"});
    save();
    EXPECT_EQ(boxes.titles(), QStringList("Note"));
    EXPECT_EQ(boxes.texts(), QStringList("The name is empty!"));
    EXPECT_TRUE(page.isVisible());
    EXPECT_TRUE(name()->hasFocus());
    EXPECT_EQ(readFile(kFile), before);
}

TEST_F(ContactEditor, AnEmptyNumberIsRefused)
{
    open(-1);
    name()->setText("Zoe");
    number()->setText("  ");
    kit::BoxAnswers boxes({"ok"});
    save();
    EXPECT_EQ(boxes.texts(), QStringList("The phone number is empty!"));
    EXPECT_TRUE(page.isVisible());
    EXPECT_TRUE(number()->hasFocus());
}

TEST_F(ContactEditor, SpacesAroundNameAndNumberAreNotSaved)
{
    open(0);
    name()->setText("  Anna Lee ");
    number()->setText(" 1002 ");
    save();
    EXPECT_TRUE(readFile(kFile).contains("name=\"Anna Lee\" number=\"1002\""));
}

TEST_F(ContactEditor, AContactThatCannotBeSavedStaysOpenAndTellsSo)
{
    open(0);
    name()->setText("Other");
    makeSavesFail();
    kit::BoxAnswers boxes({"ok"});
    save();
    EXPECT_EQ(boxes.texts(), QStringList("The contact cannot be saved!"));
    EXPECT_TRUE(page.isVisible());
    EXPECT_FALSE(readFile(kFile).contains("Other"));
}

TEST_F(ContactEditor, BackDropsTheChanges)
{
    const QByteArray before = readFile(kFile);
    open(0);
    name()->setText("Other");
    tapSoftKey(&page, 3);
    EXPECT_FALSE(page.isVisible());
    EXPECT_EQ(readFile(kFile), before);
    open(0);
    EXPECT_EQ(name()->text(), "Anna");
}

TEST_F(ContactEditor, AContactThatMovedMeanwhileIsFoundByWhatItSays)
{
    open(0);
    writeFile(kFile, "<contactData><group name=\"A\"><contact name=\"First\" number=\"1\"/>"
                     "<contact name=\"Anna\" number=\"1002\" line=\"-1\"/></group></contactData>");
    number()->setText("5");
    save();
    const QByteArray after = readFile(kFile);
    EXPECT_TRUE(after.contains("name=\"First\" number=\"1\"/>"));
    EXPECT_TRUE(after.contains("name=\"Anna\" number=\"5\""));
    EXPECT_EQ(after.count("<contact "), 2);
}

TEST_F(ContactEditor, AContactThatWasRemovedMeanwhileIsAddedAgain)
{
    open(0);
    writeFile(kFile,
              "<contactData><group name=\"A\"><contact name=\"First\" number=\"1\"/></group></contactData>");
    save();
    const QByteArray after = readFile(kFile);
    EXPECT_TRUE(after.contains("name=\"First\" number=\"1\"/>"));
    EXPECT_TRUE(after.contains("name=\"Anna\" number=\"1002\""));
}

TEST_F(ContactEditor, TheImeKeyStepsTheMethodOfTheField)
{
    open(-1);
    for (const char* method : {"ABC", "abc", "123", "2aB"}) {
        tapSoftKey(&page, 1);
        EXPECT_EQ(softKeys(&page), std::string("Save|") + method + "|Delete|Back");
    }
}

TEST_F(ContactEditor, TheImeKeyNamesTheMethodOfTheFieldThatHasTheFocus)
{
    open(-1);
    kit::key(Qt::Key_Down);
    EXPECT_TRUE(number()->hasFocus());
    EXPECT_EQ(softKeys(&page), "Save|123|Delete|Back");
    kit::key(Qt::Key_Down);
    EXPECT_TRUE(line()->hasFocus());
    EXPECT_EQ(softKeys(&page), "Save||Delete|Back");
    kit::key(Qt::Key_Up);
    EXPECT_EQ(softKeys(&page), "Save|123|Delete|Back");
}

TEST_F(ContactEditor, TheImeKeyNamesTheMethodInAnotherLanguageToo)
{
    open(-1);
    setLanguage("German");
    kit::settle();
    EXPECT_EQ(softKeys(&page), "Speichern|2aB|Löschen|Zurück");
    setLanguage("English");
}

TEST_F(ContactEditor, TheDigitKeysWriteLettersInTheNameAndDigitsInTheNumber)
{
    open(-1);
    kit::padKey('2');
    kit::padKey('3');
    kit::key(Qt::Key_Down);
    kit::padKey('2');
    kit::padKey('3');
    EXPECT_EQ(name()->text(), "Ad");
    EXPECT_EQ(number()->text(), "23");
    save();
    EXPECT_TRUE(readFile(kFile).contains("name=\"Ad\" number=\"23\""));
}

TEST_F(ContactEditor, ALetterThatIsStillBeingChosenIsSaved)
{
    open(-1);
    number()->setText("5");
    kit::padKey('2');
    save();
    EXPECT_TRUE(readFile(kFile).contains("name=\"A\" number=\"5\""));
}

TEST_F(ContactEditor, DeleteTakesTheCharacterBeforeTheCursor)
{
    open(0);
    name()->setCursorPosition(3);
    tapSoftKey(&page, 2);
    EXPECT_EQ(name()->text(), "Ana");
}

TEST_F(ContactEditor, UpAndDownGoRoundThroughTheFields)
{
    open(0);
    const QList<QWidget*> fields = {number(), line(), picture(), removeButton(), name()};
    for (QWidget* field : fields) {
        kit::key(Qt::Key_Down);
        EXPECT_TRUE(field->hasFocus()) << qPrintable(field->objectName());
    }
    kit::key(Qt::Key_Up);
    EXPECT_TRUE(removeButton()->hasFocus());
    kit::shot("contactEditorButton");
}

TEST_F(ContactEditor, LeftAndRightGoRoundThroughTheLines)
{
    open(-1);
    line()->setFocus();
    kit::key(Qt::Key_Left);
    EXPECT_EQ(line()->currentText(), "Line 4");
    kit::key(Qt::Key_Right);
    EXPECT_EQ(line()->currentText(), "Auto");
    kit::key(Qt::Key_Right);
    EXPECT_EQ(line()->currentText(), "Line 1");
}

TEST_F(ContactEditor, UpAndDownGoRoundInAnOpenList)
{
    open(-1);
    line()->setFocus();
    kit::key(Qt::Key_Return);
    kit::key(Qt::Key_Up);
    EXPECT_EQ(line()->view()->currentIndex().row(), 4);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(line()->view()->currentIndex().row(), 0);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(line()->view()->currentIndex().row(), 1);
    kit::key(Qt::Key_Return);
    EXPECT_EQ(line()->currentText(), "Line 1");
}

TEST_F(ContactEditor, ALineThatThePhoneDoesNotHaveStaysTheContacts)
{
    writeFile(kFile,
              "<contactData><group><contact name=\"Anna\" number=\"1\" line=\"9\"/></group></contactData>");
    open(0);
    EXPECT_EQ(line()->currentText(), "");
    name()->setText("Anne");
    save();
    EXPECT_NE(saved().find("name=\"Anne\" number=\"1\" line=\"9\""), std::string::npos) << saved();
    open(0);
    line()->setFocus();
    kit::key(Qt::Key_Right);
    save();
    EXPECT_NE(saved().find("name=\"Anne\" number=\"1\" line=\"-1\""), std::string::npos) << saved();
}

TEST_F(ContactEditor, AskedForTheSameContactItKeepsWhatWasTyped)
{
    open(1);
    number()->setText("8009");
    page.EditContact(1);
    EXPECT_EQ(number()->text(), "8009");
    page.hide();
    page.EditContact(1);
    EXPECT_EQ(number()->text(), "8001") << "what was given up";
    open(-1);
    name()->setText("Zoe");
    page.EditContact(-1);
    EXPECT_EQ(name()->text(), "Zoe");
}

TEST_F(ContactEditor, AsksBeforeAnotherContactTakesThePlaceOfChanges)
{
    open(1);
    picture()->setCurrentIndex(1);
    kit::BoxAnswers boxes({"no", "yes"});
    page.EditContact(0);
    EXPECT_EQ(boxes.texts(), QStringList("Discard the changes?"));
    EXPECT_EQ(name()->text(), "Front desk");
    EXPECT_EQ(picture()->currentIndex(), 1);
    page.EditContact(0);
    EXPECT_EQ(name()->text(), "Anna");
    page.EditContact(1);
    EXPECT_EQ(name()->text(), "Front desk");
    EXPECT_EQ(boxes.texts().size(), 2) << "nothing was changed";
}

TEST_F(ContactEditor, OkOpensTheListOfLines)
{
    open(-1);
    line()->setFocus();
    kit::key(Qt::Key_Return);
    EXPECT_TRUE(line()->view()->isVisible());
    kit::shot("contactEditorLines");
    kit::key(Qt::Key_Down);
    kit::key(Qt::Key_Down);
    kit::key(Qt::Key_Return);
    EXPECT_FALSE(line()->view()->isVisible());
    EXPECT_EQ(line()->currentText(), "Line 2");
}

TEST_F(ContactEditor, DeleteContactAsksAndRemovesItAlone)
{
    open(1);
    kit::BoxAnswers boxes({"no", "yes"});
    kit::tap(removeButton());
    EXPECT_EQ(boxes.texts(), QStringList("Delete this contact?"));
    EXPECT_TRUE(page.isVisible());
    EXPECT_TRUE(readFile(kFile).contains("Front desk"));
    kit::tap(removeButton());
    EXPECT_FALSE(page.isVisible());
    const QByteArray after = readFile(kFile);
    EXPECT_FALSE(after.contains("Front desk"));
    EXPECT_TRUE(after.contains("Anna") && after.contains("Door"));
}

TEST_F(ContactEditor, AContactThatCannotBeDeletedIsKept)
{
    open(1);
    makeSavesFail();
    kit::BoxAnswers boxes({"yes", "ok"});
    kit::tap(removeButton());
    EXPECT_EQ(boxes.texts(), QStringList({"Delete this contact?", "The contact cannot be saved!"}));
    EXPECT_TRUE(page.isVisible());
    EXPECT_TRUE(readFile(kFile).contains("Front desk"));
}

TEST_F(ContactEditor, TheChosenPictureIsShownAndSaved)
{
    open(0);
    picture()->setCurrentText("Home.png");
    EXPECT_EQ(leftPicture(), "/phone/resource/contact-image/Home.png");
    save();
    EXPECT_TRUE(readFile(kFile).contains("sImagePath=\"/phone/resource/contact-image/Home.png\""));
}

TEST_F(ContactEditor, APictureFromElsewhereStaysTheContacts)
{
    writeFile(kFile, "<contactData><group name=\"A\"><contact name=\"A\" number=\"1\" "
                     "sImagePath=\"/storage/uDisk/me.png\"/></group></contactData>");
    open(0);
    EXPECT_EQ(picture()->currentText(), "me.png");
    save();
    EXPECT_TRUE(readFile(kFile).contains("sImagePath=\"/storage/uDisk/me.png\""));
}

TEST_F(ContactEditor, NewPicturesAreOfferedAfterAReloadAndTheChosenOneStays)
{
    open(0);
    picture()->setCurrentText("Home.png");
    writeFile("/rundata/media/contact-image/aunt.png", "x");
    page.reloadContactImage();
    EXPECT_TRUE(QString::fromStdString(choices(picture())).split(',').contains("aunt.png"));
    EXPECT_EQ(picture()->currentText(), "Home.png");
}

TEST_F(ContactEditor, AChosenPictureThatWasDeletedGivesWayToTheDefaultOne)
{
    const char* const mine = "/rundata/media/contact-image/mine.png";
    writeFile(mine, "x");
    writeFile(kFile,
              QByteArray("<contactData><group name=\"A\"><contact name=\"A\" number=\"1\" sImagePath=\"") +
                  mine + "\"/></group></contactData>");
    open(0);
    ASSERT_EQ(picture()->currentText(), "mine.png");
    ASSERT_TRUE(QFile::remove(hostPath(mine)));
    page.reloadContactImage();
    EXPECT_EQ(choices(picture()).find("mine.png"), std::string::npos);
    EXPECT_EQ(leftPicture(), "/phone/resource/contact-image/icon_contact.png");
    kit::BoxAnswers boxes({"no"});
    page.EditContact(-1);
    EXPECT_EQ(boxes.texts(), QStringList()) << "nobody has changed anything";
}

TEST_F(ContactEditor, ADeletedPictureIsNotStoredAgain)
{
    const char* const mine = "/rundata/media/contact-image/mine.png";
    writeFile(mine, "x");
    open(0);
    picture()->setCurrentText("mine.png");
    ASSERT_EQ(picture()->currentText(), "mine.png");
    ASSERT_TRUE(QFile::remove(hostPath(mine)));
    page.reloadContactImage();
    save();
    EXPECT_FALSE(readFile(kFile).contains(mine));
    EXPECT_TRUE(readFile(kFile).contains("sImagePath=\"/phone/resource/contact-image/icon_contact.png\""));
}

TEST_F(ContactEditor, APictureOfAPulledDiskStaysOverAReload)
{
    writeFile(kFile, "<contactData><group name=\"A\"><contact name=\"A\" number=\"1\" "
                     "sImagePath=\"/storage/uDisk/me.png\"/></group></contactData>");
    open(0);
    page.reloadContactImage();
    save();
    EXPECT_TRUE(readFile(kFile).contains("sImagePath=\"/storage/uDisk/me.png\""));
}

TEST_F(ContactEditor, TheRecordOfAMenuIsShownInTheLeftBar)
{
    tagLeftBarInfo info{"/phone/resource/theme/default/bmp/menu/menu_phonebook.png", "Directory"};
    page.setLeftBar(&info);
    open(-1);
    EXPECT_EQ(page.findChild<qLeftBar*>()->title(), "Directory");
}

TEST_F(ContactEditor, TheLastOneMadeIsTheEditorOfThePhone)
{
    EXPECT_EQ(getContactEditorDlg(), &page);
    {
        dlgContactEditor other(nullptr, nullptr);
        EXPECT_EQ(getContactEditorDlg(), &other);
    }
    EXPECT_EQ(getContactEditorDlg(), nullptr);
}

TEST_F(ContactEditor, NothingIsCutInAnyLanguage)
{
    for (const char* language : {"German", "French", "Spanish", "Chinese"}) {
        page.hide();
        setLanguage(language);
        open(1);
        EXPECT_EQ(cutTexts(&page), "") << language;
        EXPECT_NE(line()->itemText(1), "Line 1") << language;
        kit::shot(QString("contactEditor") + language);
    }
}
