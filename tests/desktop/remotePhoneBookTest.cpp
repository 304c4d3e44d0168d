#include "host/desktop/directoryEntry.h"
#include "support/host/dialogs.h"
#include "tests/desktop/desktopTest.h"
#include "tests/services/httpServer.h"
#include <QFile>
#include <QPointer>
#include <QTableWidget>

namespace {

const char* const kBook = "<CompanyIPPhoneDirectory><Title>All</Title>"
                          "<DirectoryEntry><Name>Anna</Name><Telephone>1002</Telephone></DirectoryEntry>"
                          "<DirectoryEntry><Name>Bob &amp; Co</Name><Telephone>7</Telephone>"
                          "<Telephone>8</Telephone></DirectoryEntry>"
                          "<Menu><item name=\"Carl\" number=\"9\"/></Menu></CompanyIPPhoneDirectory>";

class RemotePhoneBook : public DesktopTest
{
protected:
    RemotePhoneBook()
    {
        server.onRequest = [this](QTcpSocket& socket, const QByteArray& path) {
            if (path == "/slow")
                held = &socket;
            else
                socket.write(path == "/book" ? httpServer::answer(body) : httpServer::answer("", "404 Gone"));
        };
    }
    void showUp(const QByteArray& path)
    {
        page.ShowUp(chString(server.url(path).constData()), "Company");
        kit::settle();
    }
    bool waitForNotice(const std::string& text)
    {
        return kit::waitUntil([&] { return noticeOf(&page) == text; });
    }
    bool waitForRows()
    {
        return kit::waitUntil([&] { return listOf(&page)->rowCount() > 0; });
    }
    httpServer server;
    QByteArray body = kBook;
    QTcpSocket* held = nullptr;
    dlgRemotePhoneBook page{nullptr, nullptr};
};

} // namespace

TEST_F(RemotePhoneBook, ListsWhatTheServerSends)
{
    showUp("/book");
    EXPECT_TRUE(page.isActiveWindow());
    EXPECT_EQ(pageTitle(&page), "Company");
    EXPECT_EQ(softKeys(&page), "Call|||Back");
    EXPECT_EQ(headingsOf(&page), "Name,Number");
    ASSERT_TRUE(waitForRows());
    EXPECT_EQ(rowsOf(&page), "Anna,1002|Bob & Co,7|Bob & Co,8|Carl,9");
    EXPECT_EQ(noticeOf(&page), "");
    EXPECT_EQ(listOf(&page)->currentRow(), 0);
    kit::shot("remotePhoneBook");
}

TEST_F(RemotePhoneBook, SaysThatItLoadsUntilTheReplyIsThere)
{
    showUp("/slow");
    EXPECT_EQ(noticeOf(&page), "Loading...");
    kit::shot("remotePhoneBookLoading");
    ASSERT_TRUE(kit::waitUntil([this] { return held != nullptr; }));
    held->write(httpServer::answer(kBook));
    EXPECT_TRUE(waitForRows());
}

TEST_F(RemotePhoneBook, AFailedTransferIsTold)
{
    showUp("/nothing");
    EXPECT_TRUE(waitForNotice("The phone book cannot be loaded."));
}

TEST_F(RemotePhoneBook, AnAddressThatIsNoneIsAFailedTransfer)
{
    page.ShowUp("file:///rundata/data/contactData.xml", "Company");
    EXPECT_TRUE(waitForNotice("The phone book cannot be loaded."));
    EXPECT_EQ(rowsOf(&page), "");
}

TEST_F(RemotePhoneBook, ABookThatIsNoXmlIsTold)
{
    body = "<html><p>Sorry";
    showUp("/book");
    EXPECT_TRUE(waitForNotice("The phone book cannot be loaded."));
}

TEST_F(RemotePhoneBook, ABookWithoutEntriesIsEmpty)
{
    body = "<Directory><DirectoryEntry><Name>No number</Name></DirectoryEntry></Directory>";
    showUp("/book");
    EXPECT_TRUE(waitForNotice("The phone book is empty."));
}

TEST_F(RemotePhoneBook, ABookBeyondTheLimitIsNotLoaded)
{
    body = "<Directory><!--" + QByteArray(DIRECTORY_BYTES_MAX, 'x') +
           "--><item name=\"A\" number=\"1\"/></Directory>";
    showUp("/book");
    EXPECT_TRUE(waitForNotice("The phone book cannot be loaded."));
}

TEST_F(RemotePhoneBook, NoMoreEntriesThanTheLimitAreListed)
{
    body = "<Directory>";
    for (int i = 0; i < DIRECTORY_ENTRIES_MAX + 10; ++i)
        body += "<item name=\"A\" number=\"1\"/>";
    body += "</Directory>";
    showUp("/book");
    ASSERT_TRUE(waitForRows());
    EXPECT_EQ(listOf(&page)->rowCount(), int(DIRECTORY_ENTRIES_MAX));
}

TEST_F(RemotePhoneBook, AReplyThatComesAfterTheCloseIsIgnored)
{
    showUp("/slow");
    ASSERT_TRUE(kit::waitUntil([this] { return held != nullptr; }));
    tapSoftKey(&page, 3);
    EXPECT_FALSE(page.isVisible());
    // The phone may have gone already; otherwise it gets all of the answer.
    QPointer<QTcpSocket> slow(held);
    if (server.closed == 0)
        slow->write(httpServer::answer(kBook));
    ASSERT_TRUE(kit::waitUntil([&] { return server.closed > 0 || slow->bytesToWrite() == 0; }));
    page.show();
    kit::settle();
    EXPECT_EQ(rowsOf(&page), "");
}

TEST_F(RemotePhoneBook, ASecondBookTakesThePlaceOfTheFirst)
{
    showUp("/slow");
    ASSERT_TRUE(kit::waitUntil([this] { return held != nullptr; }));
    body = "<Directory><item name=\"Second\" number=\"2\"/></Directory>";
    showUp("/book");
    ASSERT_TRUE(waitForRows());
    EXPECT_EQ(rowsOf(&page), "Second,2");
    showUp("/nothing");
    EXPECT_EQ(rowsOf(&page), "");
}

TEST_F(RemotePhoneBook, TheFetchedFileDoesNotStay)
{
    showUp("/book");
    ASSERT_TRUE(waitForRows());
    EXPECT_FALSE(QFile::exists(hostPath("/rundata/run/remotePhoneBook.xml")));
}

TEST_F(RemotePhoneBook, CallsTheChosenEntryOnTheDefaultLine)
{
    showUp("/book");
    ASSERT_TRUE(waitForRows());
    kit::key(Qt::Key_Up);
    kit::key(Qt::Key_Return);
    EXPECT_EQ(logged("dial"), "9 -1 0");
    tapRow(&page, 1);
    tapRow(&page, 1);
    EXPECT_EQ(logged("dial"), "9 -1 0|7 -1 0");
    tapSoftKey(&page, 0);
    EXPECT_EQ(logged("dial"), "9 -1 0|7 -1 0|7 -1 0");
}

TEST_F(RemotePhoneBook, WithoutEntriesNobodyIsCalled)
{
    showUp("/nothing");
    ASSERT_TRUE(waitForNotice("The phone book cannot be loaded."));
    tapSoftKey(&page, 0);
    kit::key(Qt::Key_Return);
    EXPECT_EQ(logged("dial"), "");
}

TEST_F(RemotePhoneBook, WithoutATitleItHasItsOwn)
{
    page.ShowUp(chString(server.url("/book").constData()), "");
    EXPECT_EQ(pageTitle(&page), "Remote Phonebook");
}

TEST(DirectoryEntries, TextIsTakenFromDataSectionsAndTrimmed)
{
    QList<tagDirectoryEntry> entries;
    ASSERT_TRUE(directoryEntriesRead("<a><DirectoryEntry><Name><![CDATA[ A  B ]]></Name>"
                                     "<Telephone>\n 12 \n</Telephone></DirectoryEntry></a>",
                                     entries));
    ASSERT_EQ(entries.size(), 1);
    EXPECT_EQ(entries[0].strName, "A B");
    EXPECT_EQ(entries[0].strNumber, "12");
}

TEST(DirectoryEntries, AnEntryWithoutANameIsNamedByItsNumber)
{
    QList<tagDirectoryEntry> entries;
    ASSERT_TRUE(directoryEntriesRead("<a><item number=\"5\"/></a>", entries));
    ASSERT_EQ(entries.size(), 1);
    EXPECT_EQ(entries[0].strName, "5");
}

TEST(DirectoryEntries, EntriesAreFoundAtAnyDepthInTheirOrder)
{
    QList<tagDirectoryEntry> entries;
    ASSERT_TRUE(directoryEntriesRead("<a><item number=\"1\"><b><item number=\"2\"/></b></item>"
                                     "<b><c/></b><item number=\"3\"/></a>",
                                     entries));
    ASSERT_EQ(entries.size(), 3);
    EXPECT_EQ(entries[2].strNumber, "3");
}

TEST(DirectoryEntries, WhatIsNoXmlGivesNothing)
{
    QList<tagDirectoryEntry> entries;
    EXPECT_FALSE(directoryEntriesRead("", entries));
    EXPECT_FALSE(directoryEntriesRead("<a><item number=\"1\"/>", entries));
    EXPECT_TRUE(entries.isEmpty());
}
