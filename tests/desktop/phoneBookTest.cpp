#include "support/host/dialogs.h"
#include "tests/desktop/desktopTest.h"
#include <QFile>
#include <QLineEdit>
#include <QTableWidget>

namespace {

const char* const kFile = "/rundata/data/contactData.xml";

class PhoneBook : public DesktopTest
{
protected:
    void open()
    {
        page.show();
        kit::settle();
    }
    void writeContacts(const QByteArray& contacts)
    {
        writeFile(kFile, "<contactData><group name=\"Contacts\">" + contacts + "</group></contactData>");
    }
    int row() { return listOf(&page)->currentRow(); }
    dlgPhoneBook page{nullptr, nullptr};
};

} // namespace

TEST_F(PhoneBook, ListsTheContactsInTheOrderOfTheFile)
{
    open();
    EXPECT_EQ(pageTitle(&page), "Local Phonebook");
    EXPECT_EQ(softKeys(&page), "Call|New|Edit|Back");
    EXPECT_EQ(headingsOf(&page), "Name,Number,Line");
    EXPECT_EQ(rowsOf(&page), "Anna,1002,Auto|Front desk,8001,Auto|Door,8100,Auto");
    EXPECT_EQ(noticeOf(&page), "");
    EXPECT_EQ(row(), 0);
    EXPECT_TRUE(listOf(&page)->hasFocus());
    kit::shot("phoneBook");
}

TEST_F(PhoneBook, ListsTheContactsOfAllGroupsAndNothingElse)
{
    writeFile(kFile,
              "<contactData><!-- who --><contact name=\"x\" number=\"9\"/>"
              "<group name=\"A\"><contact name=\"Ann\" number=\"1\" line=\"0\"/><other name=\"y\"/></group>"
              "<list><contact name=\"z\" number=\"8\"/></list>"
              "<group name=\"B\"><contact name=\"Bob\" number=\"2\" line=\"3\"/></group></contactData>");
    open();
    EXPECT_EQ(rowsOf(&page), "Ann,1,Line 1|Bob,2,Line 4");
}

TEST_F(PhoneBook, ALineThatThePhoneDoesNotHaveIsShownAsAuto)
{
    writeContacts("<contact name=\"A\" number=\"1\" line=\"5\"/><contact name=\"B\" number=\"2\"/>"
                  "<contact name=\"C\" number=\"3\" line=\"4\"/>");
    open();
    EXPECT_EQ(rowsOf(&page), "A,1,Auto|B,2,Auto|C,3,PSTN");
}

TEST_F(PhoneBook, AnEmptyBookSaysSo)
{
    writeContacts("");
    open();
    EXPECT_EQ(rowsOf(&page), "");
    EXPECT_EQ(noticeOf(&page), "The phone book is empty.");
    kit::shot("phoneBookEmpty");
}

TEST_F(PhoneBook, AMissingOrBrokenFileIsAnEmptyBook)
{
    QFile::remove(hostPath(kFile));
    open();
    EXPECT_EQ(noticeOf(&page), "The phone book is empty.");
    page.hide();
    writeFile(kFile, "<contactData><group>");
    open();
    EXPECT_EQ(noticeOf(&page), "The phone book is empty.");
}

TEST_F(PhoneBook, AnEmptyBookCallsAndEditsNobody)
{
    writeContacts("");
    open();
    tapSoftKey(&page, 0);
    kit::key(Qt::Key_Return);
    kit::key(Qt::Key_Down);
    tapSoftKey(&page, 2);
    EXPECT_EQ(logged("dial"), "");
    EXPECT_TRUE(page.isActiveWindow());
}

TEST_F(PhoneBook, UpFromTheFirstRowGoesToTheLastAndDownBack)
{
    open();
    kit::key(Qt::Key_Up);
    EXPECT_EQ(row(), 2);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(row(), 0);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(row(), 1);
}

TEST_F(PhoneBook, OkCallsTheContactOnItsLine)
{
    writeContacts(
        "<contact name=\"A\" number=\"1\" line=\"-1\"/><contact name=\"B\" number=\"22\" line=\"2\"/>");
    open();
    kit::key(Qt::Key_Down);
    kit::key(Qt::Key_Return);
    EXPECT_EQ(logged("dial"), "22 2 0");
}

TEST_F(PhoneBook, TheFirstTapChoosesARowAndTheSecondCalls)
{
    open();
    tapRow(&page, 1);
    EXPECT_EQ(row(), 1);
    EXPECT_EQ(logged("dial"), "");
    tapRow(&page, 1);
    EXPECT_EQ(logged("dial"), "8001 -1 0");
}

TEST_F(PhoneBook, AFingerThatSlidesToAnotherRowCallsNobody)
{
    open();
    QTableWidget* table = listOf(&page);
    const auto middle = [&](int at) {
        return table->viewport()->mapToGlobal(table->visualItemRect(table->item(at, 0)).center());
    };
    kit::press(middle(0));
    kit::moveTo(middle(1));
    kit::release(middle(1));
    EXPECT_EQ(logged("dial"), "");
}

TEST_F(PhoneBook, TheCallKeyCallsTheChosenContact)
{
    open();
    kit::key(Qt::Key_F1);
    EXPECT_EQ(logged("dial"), "1002 -1 0");
}

TEST_F(PhoneBook, BackCloses)
{
    open();
    tapSoftKey(&page, 3);
    EXPECT_FALSE(page.isVisible());
}

TEST_F(PhoneBook, EachShowReadsTheFileAndBeginsAtTheFirstRow)
{
    open();
    kit::key(Qt::Key_Down);
    page.hide();
    writeContacts("<contact name=\"New\" number=\"5\"/><contact name=\"Other\" number=\"6\"/>");
    open();
    EXPECT_EQ(rowsOf(&page), "New,5,Auto|Other,6,Auto");
    EXPECT_EQ(row(), 0);
}

TEST_F(PhoneBook, EditOpensTheChosenContactAndTheListShowsTheChange)
{
    open();
    kit::key(Qt::Key_Down);
    tapSoftKey(&page, 2);
    dlgContactEditor* editor = getContactEditorDlg();
    ASSERT_TRUE(editor && editor->isActiveWindow());
    EXPECT_EQ(editor->findChild<QLineEdit*>("editName")->text(), "Front desk");
    editor->findChild<QLineEdit*>("editNumber")->setText("8009");
    tapSoftKey(editor, 0);
    EXPECT_TRUE(page.isActiveWindow());
    EXPECT_EQ(rowsOf(&page), "Anna,1002,Auto|Front desk,8009,Auto|Door,8100,Auto");
    EXPECT_EQ(row(), 1);
}

TEST_F(PhoneBook, NewAddsAContactAtTheEnd)
{
    open();
    tapSoftKey(&page, 1);
    dlgContactEditor* editor = getContactEditorDlg();
    ASSERT_TRUE(editor && editor->isActiveWindow());
    EXPECT_EQ(editor->findChild<QLineEdit*>("editName")->text(), "");
    editor->findChild<QLineEdit*>("editName")->setText("Zoe");
    editor->findChild<QLineEdit*>("editNumber")->setText("77");
    tapSoftKey(editor, 0);
    EXPECT_EQ(rowsOf(&page), "Anna,1002,Auto|Front desk,8001,Auto|Door,8100,Auto|Zoe,77,Auto");
}

TEST_F(PhoneBook, TheEditorThatWasMadeAtBootIsUsed)
{
    dlgContactEditor editor(nullptr, nullptr);
    open();
    tapSoftKey(&page, 1);
    EXPECT_TRUE(editor.isActiveWindow());
}

TEST_F(PhoneBook, ALongBookScrollsToTheChosenRow)
{
    QByteArray contacts;
    for (int i = 1; i <= 60; ++i)
        contacts += QString("<contact name=\"Person with a name that is far too long %1\" number=\"%1\"/>")
                        .arg(i)
                        .toUtf8();
    writeContacts(contacts);
    open();
    kit::key(Qt::Key_Up);
    EXPECT_EQ(row(), 59);
    QTableWidget* table = listOf(&page);
    EXPECT_TRUE(table->viewport()->rect().contains(table->visualItemRect(table->item(59, 0))));
    kit::shot("phoneBookLong");
}

TEST_F(PhoneBook, ShowsItsTextsInTheLanguageOfTheMoment)
{
    open();
    for (const char* language : {"German", "French", "Spanish", "Chinese"}) {
        page.hide();
        setLanguage(language);
        open();
        EXPECT_EQ(cutTexts(&page), "") << language;
        EXPECT_NE(softKeys(&page), "Call|New|Edit|Back") << language;
        EXPECT_NE(headingsOf(&page), "Name,Number,Line") << language;
        EXPECT_NE(pageTitle(&page), "Local Phonebook") << language;
        kit::shot(QString("phoneBook") + language);
    }
}
