// A network that goes while files are on their way takes nothing away: neither what shows nor what was to
// come.
#include "signage/nDeckDisplay.h"
#include "signage/nDeckRegister.h"
#include "tests/signage/signageTest.h"

namespace {

class Outage : public SignageTest
{
protected:
    // Until the schedule that was asked for has failed.
    void loseTheNetwork()
    {
        netWorld().state = NET_DOWN;
        server.scheduleStatus = "500 Broken";
        const int asked = server.requests("schedule");
        ASSERT_TRUE(manager.DownloadDisplayFrame());
        ASSERT_TRUE(kit::waitUntil([&] { return server.requests("schedule") == asked + 1; }));
        ASSERT_TRUE(kit::waitUntil([this] { return traces().contains(kGoesOn); }));
    }
    void findTheNetwork()
    {
        netWorld().state = NET_UP;
        server.scheduleStatus = "200 OK";
        server.failing = {};
    }
    // The transport asks once more when a connection ends without a word.
    void breakOff(const QSet<QByteArray>& files)
    {
        server.failing = files;
        server.drop();
        ASSERT_TRUE(quiet());
    }
    int shownLayouts() const { return GetNDeckDispaly().GetLayoutsCount(); }

    const QString kGoesOn = "no schedule came: the show goes on with what is there";
};

} // namespace

TEST_F(Outage, AFileThatLandsAfterTheNetworkHasGoneTakesNothingAway)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    server.medias = {{"one.png", "1"}, {"late.png", "2"}};
    server.silent = {"late.png"};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([this] { return server.requests("late.png") == 1 && shownLayouts() == 1; }));
    ASSERT_NO_FATAL_FAILURE(loseTheNetwork());
    server.release();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(shownLayouts(), 1);
    EXPECT_EQ(names(manager.GetDisplayFrame().layouts), QStringList{"a.xml"});
    manager.RemoveOldFileByFileList();
    EXPECT_EQ(deckFiles(), (QStringList{"a.xml", "late.png", "one.png"}));
}

TEST_F(Outage, ALayoutThatLandsAfterTheNetworkHasGoneIsStillTheOneThatWasWanted)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    ASSERT_TRUE(sync());
    server.layouts = {{"a.xml", "<layout/>"}, {"b.xml", "<b/>"}};
    server.silent = {"b.xml"};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([this] { return server.requests("b.xml") == 1; }));
    ASSERT_NO_FATAL_FAILURE(loseTheNetwork());
    EXPECT_EQ(shownLayouts(), 1);
    server.release();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(names(manager.GetDisplayFrame().layouts), (QStringList{"a.xml", "b.xml"}));
    EXPECT_EQ(deckFiles(), (QStringList{"a.xml", "b.xml"}));
}

TEST_F(Outage, AfterAStartNothingIsLostThoughAFileLandsBeforeAnySchedule)
{
    const auto file = [](const QByteArray& kind, const QByteArray& path, const QByteArray& content) {
        return "<file type=\"" + kind + "\" path=\"" + path + "\" md5=\"" + signageServer::md5(content) +
               "\" size=\"1\" fromdt=\"2000-01-01 00:00:00\" todt=\"2037-01-01 00:00:00\"/>";
    };
    writeDeck("display.xml", "<files>" + file("layout", "a.xml", "<layout/>") +
                                 file("media", "one.png.ing", "1") + "</files>");
    writeDeck("a.xml", "<layout/>");
    server.served["one.png"] = "1";
    server.silent = {"one.png"};
    GetNDeckDispaly().InitDisplay();
    ASSERT_TRUE(kit::waitUntil([this] { return server.requests("one.png") == 1; }));
    ASSERT_NO_FATAL_FAILURE(loseTheNetwork());
    server.release();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(shownLayouts(), 1);
    manager.RemoveOldFileByFileList();
    EXPECT_EQ(deckFiles(), (QStringList{"a.xml", "one.png"}));
}

// With the budget that phones are shipped with.
TEST_F(Outage, FilesThatBreakOffWithTheNetworkComeWithTheNextSchedule)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    server.medias = {{"one.png", "1"}, {"two.png", "2"}};
    server.silent = {"one.png", "two.png"};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([this] { return server.order.size() == 4; }));
    ASSERT_NO_FATAL_FAILURE(loseTheNetwork());
    breakOff({"one.png", "two.png"});
    EXPECT_EQ(manager.GetReDownloadTimes(signageServer::md5("1").constData()), 3);
    findTheNetwork();
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(deckFiles(), (QStringList{"a.xml", "one.png", "two.png"}));
    EXPECT_EQ(shownLayouts(), 1);
}

TEST_F(Outage, ALayoutThatBreaksOffWithTheNetworkComesWithTheNextSchedule)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    server.silent = {"a.xml"};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([this] { return server.requests("a.xml") == 1; }));
    ASSERT_NO_FATAL_FAILURE(loseTheNetwork());
    breakOff({"a.xml"});
    findTheNetwork();
    ASSERT_TRUE(sync());
    EXPECT_EQ(deckFiles(), QStringList{"a.xml"});
    EXPECT_EQ(shownLayouts(), 1);
}

TEST_F(Outage, WhatBrokeOffAndIsWantedNoMoreIsNotAskedForAgain)
{
    server.medias = {{"one.png", "1"}};
    server.silent = {"one.png"};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([this] { return server.requests("one.png") == 1; }));
    ASSERT_NO_FATAL_FAILURE(loseTheNetwork());
    breakOff({"one.png"});
    const int asked = server.requests("one.png");
    findTheNetwork();
    server.medias = {};
    ASSERT_TRUE(sync());
    EXPECT_EQ(server.requests("one.png"), asked);
    EXPECT_EQ(records(), QStringList());
}

TEST_F(Outage, AScheduleAndARegistrationGoBeforeManyFilesThatCrawl)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    for (int i = 0; i < 30; ++i) {
        const QByteArray name = "crawl" + QByteArray::number(i) + ".mp4";
        server.medias.append({name, name});
        server.silent.insert(name);
    }
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([this] { return server.order.size() >= 2 + 6; }));
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    EXPECT_TRUE(kit::waitUntil([this] { return server.requests("schedule") == 2; }));
    nDeckRegisterDisplay();
    EXPECT_TRUE(kit::waitUntil([this] { return server.requests("register") == 1; }));
    server.release();
    ASSERT_TRUE(quiet());
}
