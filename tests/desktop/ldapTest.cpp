#include "host/desktop/directorySearch.h"
#include "host/desktop/ldapCopySearch.h"
#include "support/host/dialogs.h"
#include "tests/desktop/desktopTest.h"
#include <QLineEdit>
#include <QTableWidget>

namespace {

const char* const kCopy = "/rundata/data/ldap.xml";

// A directory that answers when the test says so.
class slowSearch : public directorySearch
{
public:
    void search(const QString& text, Done done) override
    {
        asked.append(text);
        answer = done;
    }
    void stop() override { answer = nullptr; }
    QStringList asked;
    Done answer;
};

class Ldap : public DesktopTest
{
protected:
    ~Ldap() override { directorySearchSet(std::make_unique<ldapCopySearch>()); }
    void open(const char* title = "Staff")
    {
        page.initData(title);
        page.show();
        kit::settle();
    }
    void writeCopy()
    {
        writeFile(kCopy, "<ldap><item name=\"Anna Lee\" number=\"1002\"/><item name=\"Bob\" number=\"22\"/>"
                         "<item name=\"ANNABEL\" number=\"1033\"/></ldap>");
    }
    void searchFor(const char* text)
    {
        field()->setText(text);
        tapSoftKey(&page, 0);
    }
    QLineEdit* field() { return page.findChild<QLineEdit*>("editSearch"); }
    dlgLDAP page{nullptr, nullptr};
};

} // namespace

TEST_F(Ldap, BeginsWithAnEmptyFieldAndNothingFound)
{
    open();
    EXPECT_EQ(pageTitle(&page), "Staff");
    EXPECT_EQ(softKeys(&page), "Search|2aB|Delete|Back");
    EXPECT_EQ(headingsOf(&page), "Name,Number");
    EXPECT_TRUE(field()->hasFocus());
    EXPECT_EQ(field()->text(), "");
    EXPECT_EQ(rowsOf(&page), "");
    EXPECT_EQ(cutTexts(&page), "");
    kit::shot("ldap");
}

TEST_F(Ldap, FindsNamesWithoutRegardToCase)
{
    writeCopy();
    open();
    searchFor("anna");
    EXPECT_EQ(rowsOf(&page), "Anna Lee,1002|ANNABEL,1033");
    EXPECT_TRUE(listOf(&page)->hasFocus());
    kit::shot("ldapFound");
}

TEST_F(Ldap, FindsNumbersAndAnEmptySearchFindsAll)
{
    writeCopy();
    open();
    searchFor("22");
    EXPECT_EQ(rowsOf(&page), "Bob,22");
    searchFor(" ");
    EXPECT_EQ(listOf(&page)->rowCount(), 3);
}

TEST_F(Ldap, OkInTheFieldSearches)
{
    writeCopy();
    open();
    kit::padKey('2');
    kit::padKey('2');
    kit::key(Qt::Key_Return);
    EXPECT_EQ(field()->text(), "B");
    EXPECT_EQ(rowsOf(&page), "Bob,22|ANNABEL,1033");
}

TEST_F(Ldap, SaysWhenNothingWasFound)
{
    writeCopy();
    open();
    searchFor("zzz");
    EXPECT_EQ(noticeOf(&page), "Nothing was found.");
    EXPECT_TRUE(field()->hasFocus());
}

TEST_F(Ldap, WithoutACopyOfTheDirectoryItIsNotReachable)
{
    open();
    searchFor("anna");
    EXPECT_EQ(noticeOf(&page), "LDAP server is not reachable");
    kit::shot("ldapUnreachable");
    writeFile(kCopy, "<ldap><item");
    searchFor("anna");
    EXPECT_EQ(noticeOf(&page), "LDAP server is not reachable");
}

TEST_F(Ldap, DownGoesToTheResultsAndUpFromTheFirstBackToTheField)
{
    writeCopy();
    open();
    kit::key(Qt::Key_Down);
    EXPECT_TRUE(field()->hasFocus());
    searchFor("anna");
    EXPECT_EQ(softKeys(&page), "Search||Delete|Back");
    kit::key(Qt::Key_Down);
    EXPECT_EQ(listOf(&page)->currentRow(), 1);
    kit::key(Qt::Key_Up);
    EXPECT_EQ(listOf(&page)->currentRow(), 0);
    kit::key(Qt::Key_Up);
    EXPECT_TRUE(field()->hasFocus());
    EXPECT_EQ(softKeys(&page), "Search|2aB|Delete|Back");
    kit::key(Qt::Key_Up);
    EXPECT_TRUE(field()->hasFocus());
    kit::key(Qt::Key_Down);
    EXPECT_TRUE(listOf(&page)->hasFocus());
}

TEST_F(Ldap, OkOnAResultAndASecondTapCall)
{
    writeCopy();
    open();
    searchFor("anna");
    kit::key(Qt::Key_Down);
    kit::key(Qt::Key_Return);
    EXPECT_EQ(logged("dial"), "1033 -1 0");
    tapRow(&page, 0);
    tapRow(&page, 0);
    EXPECT_EQ(logged("dial"), "1033 -1 0|1002 -1 0");
}

TEST_F(Ldap, TheImeAndDeleteKeysServeTheField)
{
    open();
    field()->setText("abc");
    tapSoftKey(&page, 2);
    EXPECT_EQ(field()->text(), "ab");
    tapSoftKey(&page, 1);
    EXPECT_EQ(softKeys(&page), "Search|ABC|Delete|Back");
}

TEST_F(Ldap, InitDataForgetsTheLastSearch)
{
    // As on the phone, where the home screen lies below every page.
    QWidget below;
    below.show();
    kit::settle();
    writeCopy();
    open();
    searchFor("anna");
    page.hide();
    kit::settle();
    open("Others");
    EXPECT_EQ(pageTitle(&page), "Others");
    EXPECT_EQ(field()->text(), "");
    EXPECT_EQ(rowsOf(&page), "");
    EXPECT_EQ(noticeOf(&page), "");
    EXPECT_TRUE(field()->hasFocus());
}

TEST_F(Ldap, ASlowDirectoryIsWaitedForAndNotAfterTheClose)
{
    auto slow = std::make_unique<slowSearch>();
    slowSearch* search = slow.get();
    directorySearchSet(std::move(slow));
    open();
    searchFor("anna");
    EXPECT_EQ(noticeOf(&page), "Loading...");
    EXPECT_EQ(search->asked, QStringList("anna"));
    search->answer(true, {{"Anna", "1"}});
    EXPECT_EQ(rowsOf(&page), "Anna,1");
    searchFor("bob");
    tapSoftKey(&page, 3);
    EXPECT_FALSE(page.isVisible());
    EXPECT_FALSE(search->answer);
}

TEST_F(Ldap, NothingIsCutInAnyLanguage)
{
    for (const char* language : {"German", "French", "Spanish", "Chinese"}) {
        page.hide();
        setLanguage(language);
        open();
        searchFor("a");
        EXPECT_EQ(cutTexts(&page), "") << language;
        kit::shot(QString("ldap") + language);
    }
}
