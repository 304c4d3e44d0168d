// The records of the folder: found by MD5, kept while they are wanted, saved in time.
#include "signage/nDeckDisplay.h"
#include "signage/nDeckListSaver.h"
#include "tests/signage/signageTest.h"

namespace {

_nDeckFileNode record(const char* path, const char* md5, int retries = 3)
{
    _nDeckFileNode node;
    node.path = path;
    node.md5 = md5;
    node.nRetries = retries;
    return node;
}

class FileList : public SignageTest
{
protected:
    QByteArray stored() const { return deck("display.xml"); }

    nDeckFileList list;
};

} // namespace

TEST_F(FileList, OfTwoRecordsWithOneMd5TheSecondIsFoundWhenTheFirstGoes)
{
    ASSERT_TRUE(list.append(record("a.png", "m", 1)));
    ASSERT_TRUE(list.append(record("b.png", "m", 2)));
    EXPECT_STREQ(list.findMd5("m")->path, "a.png");
    EXPECT_TRUE(list.removeRecord("a.png"));
    ASSERT_TRUE(list.findMd5("m"));
    EXPECT_STREQ(list.findMd5("m")->path, "b.png");
    EXPECT_EQ(list.findMd5("m")->nRetries, 2);
}

TEST_F(FileList, ARecordThatGoesIsNoMoreFoundByItsMd5)
{
    ASSERT_TRUE(list.append(record("a.png", "m")));
    EXPECT_TRUE(list.removeRecord("a.png"));
    EXPECT_EQ(list.findMd5("m"), nullptr);
}

TEST_F(FileList, ALayoutOnItsWayIsNoStrayWhileItsContentIsWanted)
{
    nDeckNodeList records;
    records.append(record("a.xml.new", "A"));
    records.append(record("b.xml.new", "B"));
    records.append(record("c.png.ing", "C"));
    DisplayFrame wanted;
    _nDeckLayoutNode layout;
    layout.file = "a.xml";
    layout.md5 = "A";
    wanted.layouts.push_back(layout);
    layout.file = "b.xml";
    layout.md5 = "other";
    wanted.layouts.push_back(layout);
    QStringList strays;
    for (const chString& path : frameStrays(records, DisplayFrame(), wanted))
        strays.append(toQString(path));
    EXPECT_EQ(strays, (QStringList{"b.xml.new", "c.png.ing"}));
}

TEST_F(FileList, ALayoutIsStoredWithItsTimes)
{
    server.layouts = {{"a.xml", "<layout/>", "2001-02-03 00:00:01", "2036-05-06 23:59:58"}};
    ASSERT_TRUE(syncIntoUse());
    EXPECT_TRUE(stored().contains("fromdt=\"2001-02-03 00:00:01\" todt=\"2036-05-06 23:59:58\""))
        << stored().constData();
    const _nDeckFileNode& first = manager.GetFileList().front();
    EXPECT_STREQ(first.fromdt, "2001-02-03 00:00:01");
    EXPECT_STREQ(first.todt, "2036-05-06 23:59:58");
}

TEST_F(FileList, ALayoutIsInUseBeforeTheDisplayReadsIt)
{
    server.layouts = {{"a.xml", "<layout><region width=\"800\" height=\"480\">"
                                "<media type=\"text\" duration=\"7\"><text>hello</text></media>"
                                "</region></layout>"}};
    ASSERT_TRUE(sync());
    ASSERT_EQ(GetNDeckDispaly().GetLayoutsCount(), 1);
    EXPECT_EQ(GetNDeckDispaly().begin()->GetLayoutDuration(), 7000);
}

TEST_F(FileList, WhatIsStoredAtOnceIsThere)
{
    nDeckListSaver saver([] { return std::string("now"); });
    saver.StoreNow();
    EXPECT_EQ(stored(), "now");
    EXPECT_FALSE(traces().contains("the list of the signage files cannot be saved"));
}

TEST_F(FileList, WhatCannotBeStoredAtOnceIsTraced)
{
    QDir().mkpath(hostPath("/rundata/nDeck/display.xml"));
    nDeckListSaver saver([] { return std::string("now"); });
    saver.StoreNow();
    EXPECT_TRUE(traces().contains("the list of the signage files cannot be saved"));
}

TEST_F(FileList, APauseBetweenTwoSavesIsFollowedByOneOnly)
{
    int saves = 0;
    nDeckListSaver saver([&saves] {
        ++saves;
        return std::string("text");
    });
    saver.Touch(false);
    ASSERT_TRUE(kit::waitUntil([&] { return saves == 1; }));
    saver.Touch(false); // while the first is under way
    ASSERT_TRUE(kit::waitUntil([] { return taskPendingCount() == 0; }));
    kit::settle();
    EXPECT_EQ(saves, 1);
    kit::stepTime(nDeckListSaver::PAUSE_MS + 100);
    EXPECT_EQ(saves, 2);
    ASSERT_TRUE(kit::waitUntil([&] { return !saver.IsBehind(); }));
    kit::stepTime(5 * nDeckListSaver::PAUSE_MS);
    kit::settle();
    EXPECT_EQ(saves, 2);
}
