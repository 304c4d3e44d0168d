// How one file comes: verified, tried again, put in place, and what of it outlives the phone.
#include "signage/nDeckFolder.h"
#include "signage/nDeckHttpAction.h"
#include "support/file/path.h"
#include "tests/signage/signageTest.h"

namespace {

class SyncFiles : public SignageTest
{
protected:
    // Asks for one media file in a cycle of its own.
    void fetch(const QByteArray& name, const QByteArray& content, const QByteArray& size = "")
    {
        server.medias = {{name, content, size}};
        ASSERT_TRUE(sync());
    }
    QByteArray stored() const { return deck("display.xml"); }
    static int retries(const nDeckNodeList& list, const char* path)
    {
        for (const _nDeckFileNode& node : list) {
            if (node.path == path)
                return node.nRetries;
        }
        return -1;
    }
    void update(const char* path, const char* md5, const char* type, const char* newPath = "",
                int bRemove = 0)
    {
        manager.UpdateFileList(path, md5, type, "7", "from", "to", "sametime", newPath, bRemove);
    }
};

} // namespace

TEST_F(SyncFiles, AFileThatAlwaysFailsIsRequestedFourTimes)
{
    server.failing = {"one.png"};
    fetch("one.png", "1");
    EXPECT_EQ(server.requests("one.png"), 4);
    EXPECT_EQ(records(), QStringList{"one.png.ing"});
    EXPECT_EQ(retries(manager.GetFileList(), "one.png.ing"), 0);
    EXPECT_EQ(deckFiles(), QStringList());
}

TEST_F(SyncFiles, AFileLiesUnderItsNameOfAFetchWhileItComes)
{
    const auto usual = server.http.onRequest;
    QPointer<QTcpSocket> held;
    server.http.onRequest = [&](QTcpSocket& socket, const QByteArray& path) {
        if (!path.contains("one.png"))
            return usual(socket, path);
        held = &socket;
        socket.write(httpServer::head("200 OK", {"Content-Length: 4"}) + "on");
    };
    server.medias = {{"one.png", "one!"}};
    manager.DownloadDisplayFrame();
    ASSERT_TRUE(kit::waitUntil([&] { return readFile("/rundata/nDeck/one.png.ing") == "on"; }));
    // The list of what is shown may be on its way into the folder.
    EXPECT_TRUE(kit::waitUntil([&] { return deckFiles() == QStringList{"one.png.ing"}; }));
    held->write("e!");
    EXPECT_TRUE(kit::waitUntil([&] { return readFile("/rundata/nDeck/one.png.new") == "one!"; }));
    EXPECT_FALSE(deckFiles().contains("one.png.ing"));
}

// The first answer is slow, and begins when the second one is under way.
TEST_F(SyncFiles, AnAnswerThatIsNotWantedAnyMoreDoesNotGetIntoTheFileOfTheNextOne)
{
    const auto usual = server.http.onRequest;
    QList<QPointer<QTcpSocket>> held;
    server.http.onRequest = [&](QTcpSocket& socket, const QByteArray& path) {
        if (path.contains("one.png"))
            held.append(&socket);
        else
            usual(socket, path);
    };
    server.medias = {{"one.png", "old!"}};
    manager.DownloadDisplayFrame();
    ASSERT_TRUE(kit::waitUntil([&] { return held.size() == 1; }));
    server.medias = {{"one.png", "new!"}};
    manager.DownloadDisplayFrame();
    ASSERT_TRUE(kit::waitUntil([&] { return held.size() == 2; }));
    held[1]->write(httpServer::head("200 OK", {"Content-Length: 4"}) + "ne");
    ASSERT_TRUE(kit::waitUntil([&] { return readFile("/rundata/nDeck/one.png.ing") == "ne"; }));
    held[0]->write(httpServer::head("200 OK", {"Content-Length: 4"}) + "ol");
    EXPECT_FALSE(kit::waitUntil([&] { return readFile("/rundata/nDeck/one.png.ing").startsWith("o"); }, 300));
    held[1]->write("w!");
    EXPECT_TRUE(kit::waitUntil([&] { return readFile("/rundata/nDeck/one.png.new") == "new!"; }));
    held[0]->write("d!");
    EXPECT_TRUE(kit::waitUntil([&] { return held[0]->state() != QTcpSocket::ConnectedState; }))
        << "nobody waits for it";
    EXPECT_EQ(held.size(), 2) << "nothing was asked for again";
}

TEST_F(SyncFiles, TheBudgetIsConfigured)
{
    configure("nReDownLoadNum", "1");
    server.failing = {"one.png"};
    fetch("one.png", "1");
    EXPECT_EQ(server.requests("one.png"), 2);
}

TEST_F(SyncFiles, AFileWithOtherBytesIsRemovedAndRequestedAgain)
{
    server.served["one.png"] = "forged";
    fetch("one.png", "1");
    EXPECT_EQ(server.requests("one.png"), 4);
    EXPECT_EQ(deckFiles(), QStringList());
    const QString md5 = signageServer::md5("1"), other = signageServer::md5("forged");
    EXPECT_TRUE(traces().contains("nDeck DownFile(one.png) md5(" + md5 + ") compare:(" + other +
                                  ") md5 is invalid then remove"));
    for (int left : {3, 2, 1, 0})
        EXPECT_TRUE(traces().contains(
            QString("GetReDownloadTimes (file:one.png,md5:%1,ntimes:%2)").arg(md5).arg(left)));
}

TEST_F(SyncFiles, TheMd5IsComparedExactly)
{
    const QByteArray upper = signageServer::md5("1").toUpper();
    ASSERT_NE(upper, signageServer::md5("1"));
    server.schedule = "<norvane><ndeck><files><file type=\"media\" path=\"one.png\" md5=\"" + upper +
                      "\" size=\"1\"/></files></ndeck></norvane>";
    server.served["one.png"] = "1";
    ASSERT_TRUE(sync());
    EXPECT_EQ(server.requests("one.png"), 4);
    EXPECT_EQ(deckFiles(), QStringList());
}

TEST_F(SyncFiles, AFailureIsForgivenWithinTheBudget)
{
    server.failing = {"one.png"};
    server.http.onRequest = [this, inner = server.http.onRequest](QTcpSocket& socket,
                                                                  const QByteArray& path) {
        if (server.requests("one.png") == 2)
            server.failing = {};
        inner(socket, path);
    };
    fetch("one.png", "1");
    EXPECT_EQ(server.requests("one.png"), 3);
    EXPECT_EQ(deck("one.png.new"), "1");
    EXPECT_EQ(retries(manager.GetFileList(), "one.png.new"), 1);
}

TEST_F(SyncFiles, OfTwoRecordsWithOneMd5OnlyTheFirstCountsDown)
{
    configure("nReDownLoadNum", "2");
    server.medias = {{"one.png", "same"}, {"two.png", "same"}};
    server.failing = {"one.png", "two.png"};
    ASSERT_TRUE(sync());
    EXPECT_EQ(server.requests("one.png") + server.requests("two.png"), 4);
    EXPECT_EQ(retries(manager.GetFileList(), "one.png.ing"), 0);
    EXPECT_EQ(retries(manager.GetFileList(), "two.png.ing"), 2);
}

TEST_F(SyncFiles, TheBudgetOfAnUnknownMd5IsZero)
{
    EXPECT_EQ(manager.GetReDownloadTimes("nothing"), 0);
    manager.UpdateReDownloadTimes("nothing", 5);
    EXPECT_EQ(manager.GetReDownloadTimes("nothing"), 0);
    update("a.png.ing", "m", "media");
    EXPECT_EQ(manager.GetReDownloadTimes("m"), 3);
    manager.UpdateReDownloadTimes("m", 1);
    EXPECT_EQ(manager.GetReDownloadTimes("m"), 1);
    ASSERT_TRUE(quiet());
}

TEST_F(SyncFiles, AMediaFileOfEightMegabytesIsFetchedAndOneByteMoreIsNot)
{
    fetch("one.mp4", "1", "8388608");
    EXPECT_EQ(server.requests("one.mp4"), 1);
    fetch("two.mp4", "2", "8388609");
    EXPECT_EQ(server.requests("two.mp4"), 0);
    EXPECT_TRUE(traces().contains("DownLoadMediaFile no free space return"));
    EXPECT_FALSE(records().contains("two.mp4.ing"));
}

TEST_F(SyncFiles, ASizeMayBeHexadecimal)
{
    fetch("one.mp4", "1", "0x800000");
    EXPECT_EQ(server.requests("one.mp4"), 1);
    fetch("two.mp4", "2", "0X800001");
    EXPECT_EQ(server.requests("two.mp4"), 0);
    fetch("three.mp4", "3", "0x1000");
    EXPECT_EQ(server.requests("three.mp4"), 1);
}

TEST_F(SyncFiles, ASizeBeyondAllNumbersIsTooLarge)
{
    fetch("one.mp4", "1", "99999999999999999999999");
    EXPECT_EQ(server.requests("one.mp4"), 0);
}

TEST_F(SyncFiles, ALayoutNeedsNoSpaceCheck)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    server.schedule = server.scheduleText().replace("path=\"a.xml\"", "path=\"a.xml\" size=\"99999999999\"");
    ASSERT_TRUE(sync());
    EXPECT_EQ(deckFiles(), QStringList{"a.xml"});
}

TEST_F(SyncFiles, AReplyLongerThanTheLimitIsCutOff)
{
    server.served["one.mp4"] = QByteArray((8 << 20) + 1, 'x');
    configure("nReDownLoadNum", "0");
    fetch("one.mp4", "1", "1");
    EXPECT_EQ(server.requests("one.mp4"), 1);
    EXPECT_EQ(deckFiles(), QStringList());
    EXPECT_TRUE(traces().join('\n').contains("failed: it is too large"));
}

TEST_F(SyncFiles, AReplyOfUnknownLengthIsCutOffAtTheLimit)
{
    qint64 written = 0;
    configure("nReDownLoadNum", "0");
    server.http.onRequest = [&, inner = server.http.onRequest](QTcpSocket& socket, const QByteArray& path) {
        if (!path.endsWith("filePath=one.mp4")) {
            inner(socket, path);
            return;
        }
        socket.write(httpServer::head("200 OK", {"Connection: close"}));
        const auto pour = [&written, &socket] {
            while (written < (32 << 20) && socket.bytesToWrite() < (1 << 20))
                written += socket.write(QByteArray(64 << 10, 'x'));
        };
        QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, pour);
        pour();
    };
    fetch("one.mp4", "1", "1");
    EXPECT_EQ(deckFiles(), QStringList());
    EXPECT_LT(written, 32 << 20);
    ASSERT_TRUE(kit::waitUntil([&] { return server.http.closed > 0; }));
}

TEST_F(SyncFiles, AMediaFileOfTheWholeLimitArrives)
{
    const QByteArray content(8 << 20, 'v');
    fetch("one.mp4", content);
    EXPECT_EQ(deck("one.mp4.new"), content);
}

TEST_F(SyncFiles, AScheduleThatIsTooLargeIsAFailedOne)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    ASSERT_TRUE(sync());
    server.schedule = server.scheduleText() + QByteArray(NDECK_SCHEDULE_LIMIT, ' ');
    ASSERT_TRUE(sync());
    EXPECT_TRUE(manager.GetDisplayFrame().layouts.empty());
    server.schedule = server.scheduleText();
    server.schedule += QByteArray(NDECK_SCHEDULE_LIMIT - server.schedule.size(), ' ');
    ASSERT_TRUE(sync());
    EXPECT_EQ(names(manager.GetDisplayFrame().layouts), QStringList{"a.xml"});
}

TEST_F(SyncFiles, ANewMd5TakesThePlaceOfATransferThatWasGivenUp)
{
    server.served["one.png"] = "new";
    server.medias = {{"one.png", "old"}, {"x.png", "x"}};
    ASSERT_TRUE(sync());
    EXPECT_TRUE(records().contains("one.png.ing"));
    server.medias = {{"one.png", "new"}};
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(deck("one.png"), "new");
    EXPECT_EQ(records(), QStringList{"one.png"});
    EXPECT_STREQ(manager.GetFileList().front().md5, signageServer::md5("new"));
}

TEST_F(SyncFiles, TheFileOfAnEarlierMd5ThatLandsLateIsNotTaken)
{
    server.medias = {{"one.png", "old"}};
    server.silent = {"one.png"};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return server.requests("one.png") == 1; }));
    server.medias = {{"one.png", "new"}, {"two.png", "2"}};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return server.requests("one.png") == 2; }));
    server.release();
    ASSERT_TRUE(quiet());
    manager.RemoveOldFileByFileList();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(deck("one.png"), "new");
    EXPECT_EQ(records(), (QStringList{"one.png", "two.png"}));
    EXPECT_EQ(deckFiles(), (QStringList{"one.png", "two.png"}));
}

TEST_F(SyncFiles, AFileIsKnownByItsRecordAndItsPresence)
{
    fetch("one.png", "1");
    EXPECT_FALSE(manager.IsFileExist("one.png", 0));
    manager.RemoveOldFileByFileList();
    EXPECT_TRUE(manager.IsFileExist("one.png", 0));
    EXPECT_TRUE(manager.IsFileExist("one.png", 1));
    QFile::remove(hostPath("/rundata/nDeck/one.png"));
    EXPECT_FALSE(manager.IsFileExist("one.png", 0));
    writeDeck("other.png", "x");
    EXPECT_FALSE(manager.IsFileExist("other.png", 0));
    ASSERT_TRUE(quiet());
}

TEST_F(SyncFiles, AFileIsKnownByItsBareNameBelowTheFolder)
{
    fetch("one.png", "1");
    manager.RemoveOldFileByFileList();
    writeDeck("sub/one.png", "1");
    EXPECT_TRUE(manager.IsFileExist("sub/one.png", 0));
    EXPECT_FALSE(manager.IsFileExist("none/one.png", 0));
    EXPECT_FALSE(manager.IsFileExist("../nDeck/one.png", 0));
    ASSERT_TRUE(quiet());
}

TEST_F(SyncFiles, AFileThatOnlyTheStoredListKnowsIsFetchedOnDemand)
{
    server.served["one.png"] = "1";
    writeDeck("display.xml", "<files><file type=\"media\" path=\"one.png\" md5=\"" + signageServer::md5("1") +
                                 "\" size=\"1\"/></files>");
    EXPECT_FALSE(manager.IsFileExist("one.png", 0));
    ASSERT_TRUE(quiet());
    EXPECT_EQ(server.requests("one.png"), 0);
    EXPECT_FALSE(manager.IsFileExist("one.png", 1));
    ASSERT_TRUE(quiet());
    EXPECT_EQ(server.requests("one.png"), 1);
    EXPECT_EQ(records(), QStringList{"one.png.new"});
}

TEST_F(SyncFiles, AnEmptyMd5FitsEveryRecordOfAList)
{
    nDeckNodeList list;
    _nDeckFileNode node;
    node.path = "a.png";
    node.md5 = "m";
    list.push_back(node);
    EXPECT_TRUE(manager.IsFileExistByList("a.png", "m", list));
    EXPECT_TRUE(manager.IsFileExistByList("a.png", "", list));
    EXPECT_FALSE(manager.IsFileExistByList("a.png", "M", list));
    EXPECT_FALSE(manager.IsFileExistByList("b.png", "", list));
    update("a.png", "m", "media");
    EXPECT_TRUE(manager.IsFileExistByList("a.png", "m", manager.GetFileList()));
    EXPECT_TRUE(manager.IsFileExistByList("a.png", "", manager.GetFileList()));
    EXPECT_FALSE(manager.IsFileExistByList("a.png", "M", manager.GetFileList()));
    nDeckLayoutList layouts;
    layouts.push_back({"a.xml", "m", "", "", "", 0});
    EXPECT_TRUE(manager.IsFileExistByLayoutList("a.xml", layouts));
    EXPECT_FALSE(manager.IsFileExistByLayoutList("b.xml", layouts));
    ASSERT_TRUE(quiet());
}

TEST_F(SyncFiles, TheListIsStoredWithItsAttributesInOrder)
{
    update("a.png", "m1", "media");
    update("b.xml", "m2", "layout");
    update("c.bin", "m3", "other");
    ASSERT_TRUE(quiet());
    QByteArray text = stored();
    EXPECT_TRUE(text.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"")) << text.constData();
    text = text.mid(text.indexOf("?>") + 2).simplified();
    EXPECT_EQ(text, "<files> <file type=\"media\" path=\"a.png\" md5=\"m1\" size=\"7\"/> "
                    "<file type=\"layout\" path=\"b.xml\" md5=\"m2\" fromdt=\"from\" todt=\"to\" "
                    "eventType=\"sametime\"/> <file/> </files>");
}

TEST_F(SyncFiles, OnlyAChangeOfTheListIsStored)
{
    update("a.png", "m1", "media");
    ASSERT_TRUE(quiet());
    writeDeck("display.xml", "untouched");
    update("a.png", "m2", "layout");
    ASSERT_TRUE(quiet());
    EXPECT_EQ(stored(), "untouched");
    EXPECT_STREQ(manager.GetFileList().front().md5, "m1");
    update("none.png", "", "", "", 1);
    ASSERT_TRUE(quiet());
    EXPECT_NE(stored(), "untouched");
    EXPECT_EQ(records(), QStringList{"a.png"});
}

TEST_F(SyncFiles, ARecordIsRenamedOrRemoved)
{
    update("a.png.ing", "m1", "media");
    update("a.png.ing", "", "", "a.png.new");
    EXPECT_EQ(records(), QStringList{"a.png.new"});
    EXPECT_STREQ(manager.GetFileList().front().md5, "m1");
    EXPECT_STREQ(manager.GetFileList().front().size, "7");
    update("a.png.new", "", "", "", 1);
    EXPECT_EQ(records(), QStringList());
    ASSERT_TRUE(quiet());
    EXPECT_FALSE(stored().contains("a.png"));
}

TEST_F(SyncFiles, ChangesThatComeTogetherShareOneSave)
{
    for (int i = 0; i < 500; ++i)
        update(QByteArray::number(i), "m", "media");
    EXPECT_FALSE(QFile::exists(hostPath("/rundata/nDeck/display.xml")));
    ASSERT_TRUE(kit::waitUntil([&] { return stored().contains("path=\"499\""); }));
    EXPECT_EQ(stored().count("<file "), 500);
    ASSERT_TRUE(quiet());
}

TEST_F(SyncFiles, TheListHoldsNoMoreThanItsLimit)
{
    for (int i = 0; i < nDeckFileList::RECORD_LIMIT + 5; ++i)
        update(QByteArray::number(i), "m", "media");
    EXPECT_EQ(manager.GetFileList().size(), nDeckFileList::RECORD_LIMIT);
    ASSERT_TRUE(quiet());
}

TEST_F(SyncFiles, AnActionOfSomebodyElseIsVerifiedByItsFile)
{
    update("one.png.ing", signageServer::md5("1"), "media");
    ASSERT_TRUE(quiet());
    writeDeck("one.png.ing", "1");
    nDeckHttpAction action;
    action.strFile = "one.png";
    action.strMd5 = signageServer::md5("1").constData();
    action.strLocalFile = "/rundata/nDeck/one.png.ing";
    action.nResult = 1;
    manager.OnCallback(&action);
    EXPECT_EQ(deck("one.png.new"), "1");
    EXPECT_EQ(records(), QStringList{"one.png.new"});
    ASSERT_TRUE(quiet());
}

TEST_F(SyncFiles, AFileThatIsGoneWhenItIsToBePutIntoUseLeavesTheOldOne)
{
    server.medias = {{"one.png", "old"}};
    ASSERT_TRUE(syncIntoUse());
    server.medias = {{"one.png", "new"}, {"two.png", "2"}};
    ASSERT_TRUE(sync());
    QFile::remove(hostPath("/rundata/nDeck/one.png.new"));
    manager.RemoveOldFileByFileList();
    EXPECT_EQ(deck("one.png"), "old");
    EXPECT_EQ(records(), (QStringList{"one.png", "two.png"}));
    ASSERT_TRUE(quiet());
}

TEST_F(SyncFiles, AFileThatCannotBePutAsideIsRequestedAgainWithinTheBudget)
{
    QDir().mkpath(hostPath("/rundata/nDeck/one.png.new/in the way"));
    server.medias = {{"one.png", "1"}};
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(server.requests("one.png"), 4);
    EXPECT_EQ(records(), QStringList{"one.png.ing"});
}
