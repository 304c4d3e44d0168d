// A cycle of the signage client: schedule, layouts, media, and what is taken up when.
#include "signage/nDeckDisplay.h"
#include "signage/nDeckRegister.h"
#include "tests/signage/signageTest.h"
#include <QRegularExpression>

namespace {

using Order = QList<QByteArray>;

class SyncCycle : public SignageTest
{
protected:
    // The time is 2026-11-21 14:05:00.
    QStringList layoutsInWindow(const QByteArray& from, const QByteArray& to,
                                const QByteArray& eventType = "")
    {
        server.layouts = {{"a.xml", "<layout/>", from, to, eventType}};
        EXPECT_TRUE(sync());
        return names(manager.GetDisplayFrame().layouts);
    }
    // The clock shows the same as before.
    static void setZone(const char* text)
    {
        nuxSetRegistryString("/rundata/config/system.ini", "LocalTime", "strTimeName", text);
        netWorldSetClock(chTime(2026, 11, 21, 14, 5, 0).GetTime());
    }
    int shownLayouts() const { return GetNDeckDispaly().GetLayoutsCount(); }
};

} // namespace

TEST_F(SyncCycle, FetchesLayoutsThenMediaAndPutsThemIntoUse)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    server.medias = {{"one.png", "picture one"}, {"two.mp4", "a video"}};
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(server.order.mid(0, 2), (Order{"schedule", "a.xml"}));
    EXPECT_EQ(server.order.size(), 4);
    EXPECT_EQ(deckFiles(), (QStringList{"a.xml", "one.png", "two.mp4"}));
    EXPECT_EQ(deck("one.png"), "picture one");
    EXPECT_EQ(records(), (QStringList{"a.xml", "one.png", "two.mp4"}));
    EXPECT_EQ(names(manager.GetDisplayFrame().layouts), QStringList{"a.xml"});
    EXPECT_EQ(names(manager.GetDisplayFrame().medias), (QStringList{"one.png", "two.mp4"}));
    EXPECT_EQ(shownLayouts(), 1);
}

TEST_F(SyncCycle, AsksWithEverythingInItsOrder)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    server.medias = {{"one.png", "picture one"}};
    ASSERT_TRUE(sync());
    const QByteArray client =
        "serverKey=key&hardwareKey=00:11:22:33:44:55&clientType=hx7206p&version=2.0&language=en";
    EXPECT_EQ(server.lastPath("schedule"), "/service/getschedule.htm?" + client);
    EXPECT_EQ(server.lastPath("a.xml"), "/service/getfile.htm?" + client + "&fileType=layout&filePath=a.xml");
    EXPECT_EQ(server.lastPath("one.png"),
              "/service/getfile.htm?" + client + "&fileType=media&filePath=one.png");
}

TEST_F(SyncCycle, KeepsTheReplyAsTheSchedule)
{
    writeDeck("FileList.xml", "old");
    ASSERT_TRUE(sync());
    EXPECT_EQ(deck("FileList.xml"), server.scheduleText());
    EXPECT_EQ(deckFiles(), QStringList());
}

TEST_F(SyncCycle, RefusesToBeginWhileTheScheduleIsAwaited)
{
    server.silent = {"schedule"};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return server.requests("schedule") == 1; }));
    EXPECT_FALSE(manager.DownloadDisplayFrame());
    EXPECT_TRUE(traces().contains("nDeckFileManager::DownloadDisplayFrame() return FALSE"));
    server.release();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(server.requests("schedule"), 1);
    EXPECT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(quiet());
}

TEST_F(SyncCycle, BeginsAnewWhileFilesOfTheLastOneAreStillOnTheirWay)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    server.silent = {"a.xml"};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return server.requests("a.xml") == 1; }));
    EXPECT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return server.requests("schedule") == 2; }));
    ASSERT_TRUE(kit::waitUntil([] { return taskPendingCount() == 1; })) << "the file alone is on its way";
    kit::settle();
    server.release();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(server.requests("a.xml"), 1);
    EXPECT_EQ(names(manager.GetDisplayFrame().layouts), QStringList{"a.xml"});
}

TEST_F(SyncCycle, IsStartedByTheTimerAtEachInterval)
{
    configure("nUpdateInteval", "30000");
    manager.SetAutoUpdateEnable(1);
    kit::stepTime(29000);
    ASSERT_TRUE(quiet());
    EXPECT_EQ(server.requests("schedule"), 0);
    kit::stepTime(1500);
    ASSERT_TRUE(quiet());
    EXPECT_EQ(server.requests("schedule"), 1);
    kit::stepTime(30000);
    ASSERT_TRUE(quiet());
    EXPECT_EQ(server.requests("schedule"), 2);
    manager.SetAutoUpdateEnable(0);
    kit::stepTime(60000);
    ASSERT_TRUE(quiet());
    EXPECT_EQ(server.requests("schedule"), 2);
}

TEST_F(SyncCycle, IsStartedEveryMinuteByDefault)
{
    manager.SetAutoUpdateEnable(1);
    kit::stepTime(59000);
    ASSERT_TRUE(quiet());
    EXPECT_EQ(server.requests("schedule"), 0);
    kit::stepTime(1500);
    ASSERT_TRUE(quiet());
    EXPECT_EQ(server.requests("schedule"), 1);
    manager.SetAutoUpdateEnable(0);
}

TEST_F(SyncCycle, AnswersOneToItsTimer)
{
    msgObject tick;
    EXPECT_EQ(manager.OnTimerUpdate(tick), 1);
    ASSERT_TRUE(quiet());
    EXPECT_EQ(server.requests("schedule"), 1);
}

TEST_F(SyncCycle, WithNoLayoutInItsWindowShowsTheDefaultPicture)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    ASSERT_TRUE(sync());
    EXPECT_EQ(shownLayouts(), 1);
    EXPECT_EQ(layoutsInWindow("2037-01-01 00:00:00", "2037-01-02 00:00:00"), QStringList());
    EXPECT_EQ(shownLayouts(), 0);
    EXPECT_EQ(server.requests("a.xml"), 1);
    EXPECT_EQ(deckFiles(), QStringList());
    EXPECT_TRUE(traces().contains("nDeckDisplay::UpdateDisplay layouts count=0 then show default layout"));
}

TEST_F(SyncCycle, CountsBothEndsOfAWindowToIt)
{
    EXPECT_EQ(layoutsInWindow("2026-11-21 14:05:00", "2026-11-21 14:06:00"), QStringList{"a.xml"});
    EXPECT_EQ(layoutsInWindow("2026-11-21 14:07:00", "2026-11-21 14:08:00"), QStringList());
    EXPECT_EQ(layoutsInWindow("2026-11-21 14:00:00", "2026-11-21 14:04:59"), QStringList());
}

TEST_F(SyncCycle, MovesTheWindowOfTheSameTimeByThePhonesZone)
{
    setZone("8 Peking");
    EXPECT_EQ(layoutsInWindow("2026-11-21 06:00:00", "2026-11-21 07:00:00", "sametime"),
              QStringList{"a.xml"});
    EXPECT_TRUE(traces().contains("SetLayoutSchedule FromDt(2026-11-21 14:00:00) ToDt(2026-11-21 15:00:00)"));
    EXPECT_EQ(layoutsInWindow("2026-11-21 06:00:00", "2026-11-21 07:00:00", "Sametime"), QStringList());
    EXPECT_EQ(layoutsInWindow("2026-11-21 14:00:00", "2026-11-21 15:00:00", "sametime"), QStringList());
    setZone("-3");
    EXPECT_EQ(layoutsInWindow("2026-11-21 17:00:00", "2026-11-21 18:00:00", "sametime"),
              QStringList{"a.xml"});
}

TEST_F(SyncCycle, KeepsTheTimesOfALayoutAsTheReplyHasThem)
{
    setZone("8");
    EXPECT_EQ(layoutsInWindow("2026-11-21 6:0:0", "2026-11-21 07:00:00", "sametime"), QStringList{"a.xml"});
    const _nDeckLayoutNode& layout = manager.GetDisplayFrame().layouts.front();
    EXPECT_STREQ(layout.fromdt, "2026-11-21 6:0:0");
    EXPECT_STREQ(layout.todt, "2026-11-21 07:00:00");
    EXPECT_STREQ(layout.eventType, "sametime");
}

TEST_F(SyncCycle, KnowsAMeetingByItsApplet)
{
    server.layouts = {{"a.xml", "<layout/>"}, {"b.xml", "<layout/>"}, {"c.xml", "<layout/>"}};
    server.layouts[1].applet = "meeting";
    server.layouts[2].applet = "Meeting";
    ASSERT_TRUE(sync());
    QList<int> meetings;
    for (const _nDeckLayoutNode& layout : manager.GetDisplayFrame().layouts)
        meetings.append(layout.bMeeting);
    EXPECT_EQ(meetings, (QList<int>{0, 1, 0}));
}

TEST_F(SyncCycle, TakesTheMd5OfALayoutFromItsFileOnly)
{
    server.schedule =
        "<norvane><ndeck><schedule>"
        "<layout file=\"a.xml\" fromdt=\"2000-01-01 00:00:00\" todt=\"2037-01-01 00:00:00\" md5=\"no\"/>"
        "</schedule><files><file type=\"media\" path=\"a.xml\" md5=\"no\"/>"
        "<file type=\"layout\" path=\"a.xml\" md5=\"yes\"/></files></ndeck></norvane>";
    server.silent = {"a.xml"};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return server.requests("a.xml") == 1; }));
    EXPECT_STREQ(manager.GetFileList().front().md5, "yes");
}

TEST_F(SyncCycle, FetchesALayoutWithoutAnMd5ButNeverTakesIt)
{
    server.schedule = "<norvane><ndeck><schedule>"
                      "<layout file=\"a.xml\" fromdt=\"2000-01-01 00:00:00\" todt=\"2037-01-01 00:00:00\"/>"
                      "</schedule></ndeck></norvane>";
    server.served["a.xml"] = "<layout/>";
    ASSERT_TRUE(sync());
    EXPECT_EQ(server.requests("a.xml"), 1);
    EXPECT_EQ(records(), QStringList{"a.xml.ing"});
    EXPECT_EQ(names(manager.GetDisplayFrame().layouts), QStringList());
}

TEST_F(SyncCycle, TakesOnlyMediaIntoTheMediaOfTheFrame)
{
    server.schedule = "<norvane><ndeck><files><file type=\"font\" path=\"a.ttf\" md5=\"1\"/>"
                      "<file type=\"media\" path=\"b.png\" md5=\"2\" size=\"3\"/></files></ndeck></norvane>";
    ASSERT_TRUE(sync());
    EXPECT_EQ(names(manager.GetDisplayFrame().medias), QStringList{"b.png"});
    EXPECT_EQ(server.requests("a.ttf"), 0);
}

TEST_F(SyncCycle, FetchesNothingThatItHas)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    server.medias = {{"one.png", "picture one"}};
    ASSERT_TRUE(syncIntoUse());
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(server.order, (Order{"schedule", "a.xml", "one.png", "schedule"}));
}

TEST_F(SyncCycle, DoesNotTouchTheDisplayWhileNothingChanges)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    ASSERT_TRUE(sync());
    const auto updates = [this] {
        return traces().filter("nDeckDisplay::UpdateDisplay(layout count").size();
    };
    const qsizetype before = updates();
    EXPECT_GE(before, 1);
    ASSERT_TRUE(sync());
    EXPECT_EQ(updates(), before);
    server.layouts[0].to = "2036-01-01 00:00:00";
    ASSERT_TRUE(sync());
    EXPECT_EQ(updates(), before + 1);
}

TEST_F(SyncCycle, DoesNotCompareEventTypeAndMeeting)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    ASSERT_TRUE(sync());
    server.layouts[0].applet = "meeting";
    server.layouts[0].eventType = "sametime";
    ASSERT_TRUE(sync());
    EXPECT_EQ(manager.GetDisplayFrame().layouts.front().bMeeting, 0);
    EXPECT_STREQ(manager.GetDisplayFrame().layouts.front().eventType, "");
}

TEST_F(SyncCycle, ReplacesALayoutOnlyWhenTheNewOneIsVerified)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    ASSERT_TRUE(sync());
    server.layouts[0].content = "<layout width=\"1\"/>";
    server.silent = {"a.xml"};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return server.requests("a.xml") == 2; }));
    EXPECT_EQ(deck("a.xml"), "<layout/>");
    EXPECT_EQ(records(), (QStringList{"a.xml", "a.xml.ing"}));
    server.release();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(deck("a.xml"), "<layout width=\"1\"/>");
    EXPECT_EQ(records(), QStringList{"a.xml"});
    EXPECT_EQ(deckFiles(), QStringList{"a.xml"});
}

TEST_F(SyncCycle, ReplacesAMediaFileOnlyBetweenLayouts)
{
    server.medias = {{"one.png", "first"}};
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(deck("one.png"), "first");
    server.medias = {{"one.png", "second"}, {"two.png", "more"}};
    ASSERT_TRUE(sync());
    EXPECT_EQ(deck("one.png"), "first");
    EXPECT_EQ(deck("one.png.new"), "second");
    manager.RemoveOldFileByFileList();
    EXPECT_EQ(deck("one.png"), "second");
    EXPECT_EQ(records(), (QStringList{"one.png", "two.png"}));
    EXPECT_EQ(deckFiles(), (QStringList{"one.png", "two.png"}));
    EXPECT_TRUE(traces().contains("ndeck download picture StockPictureToCache(/rundata/nDeck/one.png)"));
}

TEST_F(SyncCycle, FetchesALayoutAgainThatStillWaitsForItsUse)
{
    server.layouts = {{"a.xml", "<layout/>"}, {"b.xml", "<b/>"}};
    server.silent = {"b.xml"};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return records().contains("a.xml.new"); }));
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return server.requests("a.xml") == 2; }));
    EXPECT_EQ(server.requests("b.xml"), 1);
    server.release();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(deckFiles(), (QStringList{"a.xml", "b.xml"}));
    EXPECT_EQ(records().size(), 2);
    EXPECT_EQ(shownLayouts(), 2);
}

TEST_F(SyncCycle, WaitsForAllLayoutsBeforeItAsksForMedia)
{
    server.layouts = {{"a.xml", "<layout/>"}, {"b.xml", "<b/>"}};
    server.medias = {{"one.png", "picture one"}};
    server.silent = {"b.xml"};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return records().contains("a.xml.new"); }));
    kit::settle();
    EXPECT_EQ(server.requests("one.png"), 0);
    EXPECT_EQ(shownLayouts(), 0);
    server.release();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(server.requests("one.png"), 1);
    EXPECT_TRUE(traces().contains("IsDownloadLayoutsFinished then UpdateDisplayFrame"));
}

TEST_F(SyncCycle, RemovesWhatTheNextScheduleNoLongerNames)
{
    server.layouts = {{"a.xml", "<layout/>"}, {"b.xml", "<b/>"}};
    server.medias = {{"one.png", "1"}, {"two.mp4", "22"}};
    ASSERT_TRUE(syncIntoUse());
    server.layouts.removeFirst();
    server.medias.removeFirst();
    ASSERT_TRUE(sync());
    EXPECT_EQ(deckFiles(), (QStringList{"b.xml", "two.mp4"}));
    EXPECT_EQ(records(), (QStringList{"b.xml", "two.mp4"}));
    EXPECT_TRUE(traces().contains("nDeckFileManager::RemoveOldMediaFile(one.png)"));
}

TEST_F(SyncCycle, RemovesATransferThatTheNextScheduleNoLongerNames)
{
    server.medias = {{"gone.png", "1"}, {"stays.png", "22"}};
    server.failing = {"gone.png", "stays.png"};
    ASSERT_TRUE(sync());
    EXPECT_EQ(records(), (QStringList{"gone.png.ing", "stays.png.ing"}));
    server.medias.removeFirst();
    ASSERT_TRUE(sync());
    EXPECT_EQ(records(), QStringList{"stays.png.ing"});
}

TEST_F(SyncCycle, DropsAFileThatLandsAfterItsScheduleHasGone)
{
    server.medias = {{"late.png", "1"}};
    server.silent = {"late.png"};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return server.requests("late.png") == 1; }));
    server.medias = {};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return records().isEmpty(); }));
    server.medias = {{"late.png", "1"}}; // it is answered all the same
    server.release();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(deckFiles(), QStringList());
    EXPECT_EQ(records(), QStringList());
}

TEST_F(SyncCycle, WithoutAServerLosesItsLayoutsAndKeepsItsMedia)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    server.medias = {{"one.png", "1"}};
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(shownLayouts(), 1);
    server.scheduleStatus = "500 Broken";
    ASSERT_TRUE(sync());
    EXPECT_EQ(deckFiles(), QStringList{"one.png"});
    EXPECT_EQ(records(), QStringList{"one.png"});
    EXPECT_EQ(shownLayouts(), 0);
    EXPECT_TRUE(manager.GetDisplayFrame().layouts.empty());
    EXPECT_TRUE(manager.GetDisplayFrame().medias.empty());
    EXPECT_EQ(GetNDeckRegister().GetRegisterStatus(), 1);
}

TEST_F(SyncCycle, WithoutANetworkRunsOnUnchanged)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    server.medias = {{"one.png", "1"}};
    ASSERT_TRUE(syncIntoUse());
    netWorld().state = NET_DOWN;
    server.scheduleStatus = "500 Broken";
    ASSERT_TRUE(sync());
    EXPECT_EQ(deckFiles(), (QStringList{"a.xml", "one.png"}));
    EXPECT_EQ(shownLayouts(), 1);
    EXPECT_EQ(names(manager.GetDisplayFrame().layouts), QStringList{"a.xml"});
    EXPECT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(quiet());
}

TEST_F(SyncCycle, AfterAFailureFetchesEverythingThatComesBack)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    server.medias = {{"one.png", "1"}};
    ASSERT_TRUE(syncIntoUse());
    server.scheduleStatus = "500 Broken";
    ASSERT_TRUE(sync());
    server.scheduleStatus = "200 OK";
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(deckFiles(), (QStringList{"a.xml", "one.png"}));
    EXPECT_EQ(server.requests("a.xml"), 2);
    EXPECT_EQ(shownLayouts(), 1);
}

TEST_F(SyncCycle, TakesUpAtOnceWhatADamagedScheduleHolds)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    server.medias = {{"one.png", "1"}};
    server.schedule = server.scheduleText();
    server.schedule.chop(20);
    server.silent = {"a.xml"};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return server.requests("one.png") == 1; }));
    EXPECT_EQ(shownLayouts(), 1);
    EXPECT_EQ(names(manager.GetDisplayFrame().medias), QStringList{"one.png"});
    server.release();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(GetNDeckRegister().GetRegisterStatus(), 1);
}

TEST_F(SyncCycle, DoesNotSweepTheFolderAfterADamagedSchedule)
{
    server.medias = {{"one.png", "1"}, {"two.png", "2"}};
    server.failing = {"two.png"};
    ASSERT_TRUE(syncIntoUse());
    server.medias.removeLast();
    server.schedule = server.scheduleText();
    server.schedule.chop(3);
    ASSERT_TRUE(sync());
    EXPECT_TRUE(records().contains("two.png.ing"));
}

TEST_F(SyncCycle, RemovesTheMediaThatADamagedScheduleDoesNotName)
{
    server.medias = {{"one.png", "1"}, {"two.png", "2"}};
    ASSERT_TRUE(syncIntoUse());
    server.medias.removeLast();
    server.schedule = server.scheduleText();
    server.schedule.chop(3);
    ASSERT_TRUE(sync());
    EXPECT_EQ(deckFiles(), QStringList{"one.png"});
    EXPECT_EQ(records(), QStringList{"one.png"});
}

TEST_F(SyncCycle, PassesOverElementsThatItDoesNotKnow)
{
    server.layouts = {{"a.xml", "<layout/>"}, {"b.xml", "<layout/>"}};
    server.medias = {{"one.png", "1"}};
    server.schedule = server.scheduleText();
    server.schedule.replace("<layout file=\"b.xml\"", "<note/><layout file=\"b.xml\"");
    server.schedule.replace("<file type=\"media\"", "<folder type=\"media\"/><file type=\"media\"");
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(names(manager.GetDisplayFrame().layouts), (QStringList{"a.xml", "b.xml"}));
    EXPECT_EQ(names(manager.GetDisplayFrame().medias), QStringList{"one.png"});
}

TEST_F(SyncCycle, AFileThatLandsBeforeTheNextScheduleDoesNotTakeUpAnEmptyFrame)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    server.medias = {{"one.png", "1"}, {"late.png", "2"}};
    server.silent = {"late.png"};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    // The layout may have put it into use already.
    ASSERT_TRUE(
        kit::waitUntil([&] { return records().filter(QRegularExpression("^one.png(.new)?$")).size() == 1; }));
    EXPECT_EQ(shownLayouts(), 1);
    server.silent.insert("schedule");
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return server.requests("schedule") == 2; }));
    server.release();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(shownLayouts(), 1);
    EXPECT_TRUE(deckFiles().contains("a.xml"));
    manager.RemoveOldFileByFileList();
    EXPECT_EQ(deckFiles(), (QStringList{"a.xml", "late.png", "one.png"}));
}

TEST_F(SyncCycle, AsksOnceInACycleForAMediaFileThatChangesUnderUnchangedLayouts)
{
    server.medias = {{"one.png", "first"}, {"two.png", "2"}};
    ASSERT_TRUE(syncIntoUse());
    server.medias[0].content = "second";
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(server.requests("one.png"), 2);
    EXPECT_EQ(server.requests("two.png"), 1);
    EXPECT_EQ(deck("one.png"), "second");
}

TEST_F(SyncCycle, AMediaFileThatGoesBackUnderUnchangedLayoutsIsFetchedBack)
{
    server.medias = {{"one.png", "first"}};
    ASSERT_TRUE(syncIntoUse());
    server.medias[0].content = "second";
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(deck("one.png"), "second");
    server.medias[0].content = "first";
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(deck("one.png"), "first");
    EXPECT_STREQ(manager.GetFileList().front().md5, signageServer::md5("first"));
}
