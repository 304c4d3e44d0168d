// What the phone finds in the folder when it starts, wherever it was when it went down.
#include "signage/nDeckDisplay.h"
#include "tests/signage/signageTest.h"

namespace {

QByteArray media(const QByteArray& path, const QByteArray& content)
{
    return "<file type=\"media\" path=\"" + path + "\" md5=\"" + signageServer::md5(content) + "\" size=\"" +
           QByteArray::number(content.size()) + "\"/>";
}

QByteArray layout(const QByteArray& path, const QByteArray& content)
{
    return "<file type=\"layout\" path=\"" + path + "\" md5=\"" + signageServer::md5(content) +
           "\" fromdt=\"2000-01-01 00:00:00\" todt=\"2037-01-01 00:00:00\" eventType=\"sametime\"/>";
}

class SyncStart : public SignageTest
{
protected:
    void store(const QByteArray& records) { writeDeck("display.xml", "<files>" + records + "</files>"); }
    QByteArray stored() const { return deck("display.xml"); }
};

} // namespace

TEST_F(SyncStart, WithoutAStoredListKnowsNothing)
{
    EXPECT_FALSE(manager.InitFileList());
    ASSERT_TRUE(quiet());
    EXPECT_FALSE(QFile::exists(hostPath("/rundata/nDeck/display.xml")));
}

TEST_F(SyncStart, TakesWhatIsInTheFolderIntoForce)
{
    store(layout("a.xml", "A") + media("one.png", "1"));
    writeDeck("a.xml", "A");
    writeDeck("one.png", "1");
    EXPECT_TRUE(manager.InitFileList());
    ASSERT_TRUE(quiet());
    EXPECT_EQ(records(), (QStringList{"a.xml", "one.png"}));
    EXPECT_EQ(names(manager.GetDisplayFrame().medias), QStringList{"one.png"});
    const _nDeckLayoutNode& first = manager.GetDisplayFrame().layouts.front();
    EXPECT_STREQ(first.file, "a.xml");
    EXPECT_STREQ(first.md5, signageServer::md5("A"));
    EXPECT_STREQ(first.fromdt, "2000-01-01 00:00:00");
    EXPECT_STREQ(first.todt, "2037-01-01 00:00:00");
    EXPECT_STREQ(first.eventType, "sametime");
    EXPECT_EQ(first.bMeeting, 0);
    EXPECT_EQ(manager.GetReDownloadTimes(signageServer::md5("1").constData()), 3);
    EXPECT_TRUE(server.order.isEmpty());
}

TEST_F(SyncStart, DeletesAPartialFileAndFetchesItWithAFullBudget)
{
    store(media("one.png.ing", "1"));
    writeDeck("one.png.ing", "part");
    server.failing = {"one.png"};
    EXPECT_TRUE(manager.InitFileList());
    EXPECT_FALSE(QFile::exists(hostPath("/rundata/nDeck/one.png.ing")));
    ASSERT_TRUE(quiet());
    EXPECT_EQ(server.requests("one.png"), 4);
    EXPECT_EQ(records(), QStringList{"one.png.ing"});
    EXPECT_TRUE(manager.GetDisplayFrame().medias.empty());
}

TEST_F(SyncStart, FetchesEveryPartialFileOfTheList)
{
    server.medias = {{"one.png", "1"}, {"two.png", "2"}, {"three.png", "3"}};
    store(media("one.png.ing", "1") + media("two.png.ing", "2") + media("three.png", "3") +
          layout("a.xml.ing", "A"));
    server.served["a.xml"] = "A";
    EXPECT_TRUE(manager.InitFileList());
    ASSERT_TRUE(quiet());
    EXPECT_EQ(deckFiles(), (QStringList{"a.xml.new", "one.png.new", "three.png.new", "two.png.new"}));
    EXPECT_EQ(stored().count("<file "), 4);
}

TEST_F(SyncStart, PutsAVerifiedFileIntoUseBeforeAnythingSeesIt)
{
    store(media("one.png.new", "1"));
    writeDeck("one.png.new", "1");
    EXPECT_TRUE(manager.InitFileList());
    EXPECT_EQ(deck("one.png"), "1");
    EXPECT_EQ(records(), QStringList{"one.png"});
    EXPECT_EQ(names(manager.GetDisplayFrame().medias), QStringList{"one.png"});
    ASSERT_TRUE(quiet());
    EXPECT_TRUE(stored().contains("path=\"one.png\""));
}

TEST_F(SyncStart, FetchesAFileThatIsMissing)
{
    store(media("one.png", "1"));
    server.served["one.png"] = "1";
    EXPECT_TRUE(manager.InitFileList());
    EXPECT_EQ(records(), QStringList{"one.png.ing"});
    EXPECT_TRUE(manager.GetDisplayFrame().medias.empty());
    ASSERT_TRUE(quiet());
    EXPECT_EQ(deck("one.png.new"), "1");
}

TEST_F(SyncStart, EndsAtARecordWithoutAType)
{
    store(media("one.png", "1") + "<file/>" + media("two.png", "2"));
    writeDeck("one.png", "1");
    writeDeck("two.png", "2");
    EXPECT_TRUE(manager.InitFileList());
    ASSERT_TRUE(quiet());
    EXPECT_EQ(records(), QStringList{"one.png"});
    EXPECT_FALSE(stored().contains("two.png"));
}

TEST_F(SyncStart, GivesUpAtARecordWithoutAPathAndStoresNothing)
{
    store(media("one.png", "1") + "<file type=\"media\"/>" + media("two.png", "2"));
    writeDeck("one.png", "1");
    const QByteArray before = stored();
    EXPECT_FALSE(manager.InitFileList());
    ASSERT_TRUE(quiet());
    EXPECT_EQ(records(), QStringList{"one.png"});
    EXPECT_EQ(stored(), before);
}

TEST_F(SyncStart, TakesANewerFileThatCameIntoUseBeforeItsRecordWasStored)
{
    store(media("one.png", "old") + media("one.png.new", "new"));
    writeDeck("one.png", "new");
    EXPECT_TRUE(manager.InitFileList());
    ASSERT_TRUE(quiet());
    EXPECT_EQ(records(), QStringList{"one.png"});
    EXPECT_STREQ(manager.GetFileList().front().md5, signageServer::md5("new"));
    EXPECT_EQ(manager.GetDisplayFrame().medias.size(), 1);
}

TEST_F(SyncStart, RemovesFilesOnTheirWayThatNoRecordSpeaksOf)
{
    store(media("one.png", "1") + media("two.png.ing", "2"));
    writeDeck("one.png", "1");
    writeDeck("lost.png.ing", "x");
    writeDeck("lost.png.new", "x");
    writeDeck("two.png.new", "2"); // verified, but its record still said that it was on its way
    writeDeck(".cut.png.ing.save0", "x");
    writeDeck("FileList.xml.new", "x");
    writeDeck("stranger.png", "x");
    server.silent = {"two.png"};
    EXPECT_TRUE(manager.InitFileList());
    const QStringList left = {"FileList.xml.new", "one.png", "stranger.png"};
    EXPECT_TRUE(kit::waitUntil([&] { return deckFiles() == left; }));
    server.served["two.png"] = "2";
    ASSERT_TRUE(kit::waitUntil([&] { return server.requests("two.png") == 1; }));
    server.release();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(deck("two.png.new"), "2");
}

TEST_F(SyncStart, RemovesFilesOnTheirWayWithoutAStoredList)
{
    writeDeck("lost.png.ing", "x");
    writeDeck("lost.png.new", "x");
    EXPECT_FALSE(manager.InitFileList());
    ASSERT_TRUE(quiet());
    EXPECT_EQ(deckFiles(), QStringList());
}

TEST_F(SyncStart, KeepsADamagedListAsideAndTakesWhatItHolds)
{
    writeDeck("one.png", "1");
    writeDeck("display.xml", "<files>" + media("one.png", "1") + "<file type=\"me");
    EXPECT_TRUE(manager.InitFileList());
    ASSERT_TRUE(quiet());
    EXPECT_EQ(records(), QStringList{"one.png"});
    EXPECT_TRUE(deck("display.xml.bad").endsWith("type=\"me"));
    EXPECT_TRUE(stored().endsWith("</files>\n") || stored().endsWith("</files>"));
}

TEST_F(SyncStart, OfAListWithTheSameNameTwiceTakesTheFirst)
{
    store(media("one.png", "1") + media("one.png", "2"));
    writeDeck("one.png", "1");
    EXPECT_TRUE(manager.InitFileList());
    ASSERT_TRUE(quiet());
    EXPECT_EQ(records(), QStringList{"one.png"});
    EXPECT_EQ(manager.GetDisplayFrame().medias.size(), 1);
}

TEST_F(SyncStart, ASecondStartIsTheSameAsTheFirst)
{
    store(layout("a.xml", "A") + media("one.png", "1"));
    writeDeck("a.xml", "A");
    writeDeck("one.png", "1");
    EXPECT_TRUE(manager.InitFileList());
    EXPECT_TRUE(manager.InitFileList());
    ASSERT_TRUE(quiet());
    EXPECT_EQ(records(), (QStringList{"a.xml", "one.png"}));
    EXPECT_EQ(manager.GetDisplayFrame().medias.size(), 1);
    EXPECT_EQ(manager.GetDisplayFrame().layouts.size(), 1);
}

TEST_F(SyncStart, ReadsItsOwnListWhileASaveIsStillToCome)
{
    manager.UpdateFileList("one.png", signageServer::md5("1").constData(), "media", "1", "", "", "", "", 0);
    writeDeck("one.png", "1");
    EXPECT_TRUE(manager.InitFileList());
    EXPECT_EQ(records(), QStringList{"one.png"});
    ASSERT_TRUE(quiet());
}

TEST_F(SyncStart, FindsWhatTheListKnewBeforeAScheduleReplacesIt)
{
    store(media("one.png", "1") + media("old.png", "o"));
    writeDeck("one.png", "1");
    writeDeck("old.png", "o");
    server.medias = {{"one.png", "1"}};
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(records(), QStringList{"one.png"});
    EXPECT_EQ(deckFiles(), QStringList{"one.png"});
}

TEST_F(SyncStart, AfterItFetchesOnlyWhatTheScheduleChanges)
{
    server.layouts = {{"a.xml", "A"}};
    server.medias = {{"one.png", "1"}, {"two.png", "2"}};
    store(layout("a.xml", "A") + media("one.png", "1"));
    writeDeck("a.xml", "A");
    writeDeck("one.png", "1");
    EXPECT_TRUE(manager.InitFileList());
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(server.order, (QList<QByteArray>{"schedule", "two.png"}));
    EXPECT_EQ(deckFiles(), (QStringList{"a.xml", "one.png", "two.png"}));
}

TEST_F(SyncStart, MakesTheFolderThatIsNotThere)
{
    QDir(hostPath("/rundata/nDeck")).removeRecursively();
    server.layouts = {{"a.xml", "A"}};
    ASSERT_TRUE(sync());
    EXPECT_EQ(deckFiles(), QStringList{"a.xml"});
}

TEST_F(SyncStart, GivesUpATransferOfTheLastRunThatTheScheduleWantsNoMore)
{
    server.layouts = {{"a.xml", "A"}};
    server.medias = {{"one.png", "1"}};
    store(layout("a.xml", "A") + media("one.png", "1") + media("one.png.ing", "other"));
    writeDeck("a.xml", "A");
    writeDeck("one.png", "1");
    EXPECT_TRUE(manager.InitFileList());
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(records(), (QStringList{"a.xml", "one.png"}));
    // The transfer that is given up takes what it has begun along when it hears of that.
    EXPECT_TRUE(kit::waitUntil([&] { return deckFiles() == QStringList{"a.xml", "one.png"}; }));
}

TEST_F(SyncStart, TheRecordIsStoredBeforeItsFileReplacesAnother)
{
    server.medias = {{"one.png", "old"}};
    ASSERT_TRUE(syncIntoUse());
    server.medias = {{"one.png", "new"}, {"two.png", "2"}};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return records().contains("one.png.new"); }));
    manager.UpdateFileList("extra.png", "m", "media", "1", "", "", "", "", 0); // a save is still to come
    manager.RemoveOldFileByFileList();
    EXPECT_EQ(deck("one.png"), "new");
    // As the phone finds it when it is killed here.
    EXPECT_TRUE(stored().contains("path=\"one.png.new\" md5=\"" + signageServer::md5("new")));
    ASSERT_TRUE(quiet());
    EXPECT_FALSE(stored().contains("one.png.new")); // the other one may have come only now, and waits
}
