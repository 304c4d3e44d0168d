// A show that is kept ("bKeepShow"): through starts without a server, through answers that say nothing, and
// through changes of the schedule whose files take their time.
#include "signage/nDeckRegister.h"
#include "support/host/storage.h"
#include "tests/kit/smallDisk.h"
#include "tests/signage/displayFixture.h"
#include "tests/signage/signageTest.h"
#include <QTimer>

namespace {

// What layouts and pictures look like.
struct Content : DisplayTest
{
    using DisplayTest::picture;
    void TestBody() override {}
    static QByteArray showing(const char* file, const char* seconds = "10")
    {
        return layout(region(image(file, seconds)));
    }
};

const QByteArray kRed = Content::picture(Qt::red);
const QByteArray kGreen = Content::picture(Qt::green);
const QByteArray kBlue = Content::picture(Qt::blue);

class KeepShow : public SignageTest
{
protected:
    KeepShow() { configure("bKeepShow", "1"); }

    static void show()
    {
        nDeckWindowDisplay(1, NDECK_WINDOW_PAGE, nullptr, kFull);
        kit::settle();
    }
    // A red layout of ten seconds runs.
    void runRed()
    {
        server.layouts = {{"a.xml", Content::showing("one.png")}};
        server.medias = {{"one.png", kRed}};
        show();
        ASSERT_TRUE(syncIntoUse());
        kit::stepTime(10100); // its file came into use
        ASSERT_EQ(colour(), QColor(Qt::red));
    }
    // Turn after turn, while the server holds back what another layout needs; then it does not any more.
    void expectRedUntilReleased(const char* awaited)
    {
        show();
        ASSERT_TRUE(manager.DownloadDisplayFrame());
        ASSERT_TRUE(
            kit::waitUntil([&] { return server.requests(awaited) == 1 && colour() == Qt::red; }, 20000));
        for (int i = 0; i < 5; ++i) {
            kit::stepTime(7000);
            EXPECT_EQ(current(), "a.xml");
            EXPECT_EQ(colour(), QColor(Qt::red));
        }
        server.release();
    }
    // As a phone before the restart left it.
    void storeRed() const
    {
        const QByteArray xml = Content::showing("one.png");
        writeDeck("a.xml", xml);
        writeDeck("one.png", kRed);
        writeDeck("display.xml", "<files><file type=\"layout\" path=\"a.xml\" md5=\"" +
                                     signageServer::md5(xml) +
                                     "\" fromdt=\"2000-01-01 00:00:00\" todt=\"2037-01-01 00:00:00\" "
                                     "eventType=\"\"/><file type=\"media\" path=\"one.png\" md5=\"" +
                                     signageServer::md5(kRed) + "\" size=\"1\"/></files>");
    }
    // A file that failed is asked for again, less and less often, at last about once in an hour; a turn takes
    // ten seconds.
    static bool comesLate(const std::function<bool()>& isThere)
    {
        for (int look = 0; look < 900 && !isThere(); ++look) {
            kit::stepTime(7000);
            // A transfer that is still under way would take the next step for a silence of the server.
            if (!kit::waitUntil([] { return taskPendingCount() == 0; }, 20000))
                return false;
            kit::settle();
        }
        return isThere();
    }
    static QColor colour() { return kit::screen().pixelColor(400, 240); }
    static QString background() { return toQString(GetnDeckFrame().GetBackgroundImage()); }
    static QString current()
    {
        nDeckDisplay& display = GetNDeckDispaly();
        return display.GetCurrentLayout() == display.end() ? QString()
                                                           : toQString(display.GetCurrentLayout()->GetName());
    }
    qsizetype turns() const { return traces().filter("nDeckDisplay::OnTimerLoadNextLayout").size(); }
    qsizetype updates() const { return traces().filter("nDeckDisplay::UpdateDisplay(layout count").size(); }
};

} // namespace

TEST_F(KeepShow, AfterAStartTheStoredShowRunsWithNeitherNetworkNorServer)
{
    storeRed();
    netWorld().state = NET_DOWN;
    show();
    EXPECT_EQ(current(), "a.xml");
    EXPECT_EQ(colour(), QColor(Qt::red));
    kit::stepTime(25000);
    EXPECT_EQ(colour(), QColor(Qt::red));
}

TEST_F(KeepShow, WithoutTheKeyAStartBeginsWithTheDefaultPicture)
{
    configure("bKeepShow", "0");
    storeRed();
    netWorld().state = NET_DOWN;
    show();
    EXPECT_EQ(current(), "");
    EXPECT_EQ(background(), NDECK_DEFAULT_PICTURE);
}

TEST_F(KeepShow, AServerThatKnowsTheDisplayDoesNotBeginTheShowAnew)
{
    storeRed();
    show();
    const qsizetype before = updates();
    nDeckRegisterDisplay();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(server.requests("register"), 1);
    EXPECT_EQ(GetNDeckRegister().GetRegisterStatus(), 1);
    EXPECT_EQ(updates(), before);
    EXPECT_EQ(colour(), QColor(Qt::red));
}

TEST_F(KeepShow, AServerThatDoesNotKnowTheDisplayEndsTheStoredShow)
{
    storeRed();
    show();
    server.schedule = "<norvane><ndeck><result><error>not registered</error></result></ndeck></norvane>";
    ASSERT_TRUE(sync());
    EXPECT_EQ(current(), "");
    EXPECT_EQ(background(), NDECK_DEFAULT_PICTURE);
}

TEST_F(KeepShow, AnAnswerThatIsNoScheduleLeavesShowAndFilesAsTheyAre)
{
    ASSERT_NO_FATAL_FAILURE(runRed());
    const QByteArray good = deck("FileList.xml");
    const QByteArray cut = server.scheduleText().chopped(20);
    for (const QByteArray& answer :
         {QByteArray(""), QByteArray("<html><body>Please log in</body></html>"), QByteArray("busy"), cut}) {
        server.schedule = answer.isEmpty() ? QByteArray("") : answer;
        const qsizetype told = traces().filter("no schedule came").size();
        ASSERT_TRUE(sync());
        EXPECT_EQ(traces().filter("no schedule came").size(), told + 1) << answer.constData();
        EXPECT_EQ(deckFiles(), (QStringList{"a.xml", "one.png"})) << answer.constData();
        EXPECT_EQ(deck("FileList.xml"), good);
        EXPECT_EQ(GetNDeckRegister().GetRegisterStatus(), 1);
        kit::stepTime(10100);
        EXPECT_EQ(colour(), QColor(Qt::red)) << answer.constData();
    }
}

TEST_F(KeepShow, AServerThatIsOutOfServiceLeavesShowAndFilesAsTheyAre)
{
    ASSERT_NO_FATAL_FAILURE(runRed());
    server.scheduleStatus = "503 Service Unavailable";
    ASSERT_TRUE(sync());
    ASSERT_TRUE(sync());
    kit::stepTime(10100);
    EXPECT_EQ(deckFiles(), (QStringList{"a.xml", "one.png"}));
    EXPECT_EQ(colour(), QColor(Qt::red));
}

TEST_F(KeepShow, AnEmptyRegistrationReplyLeavesTheShow)
{
    ASSERT_NO_FATAL_FAILURE(runRed());
    server.registration = "";
    nDeckRegisterDisplay();
    ASSERT_TRUE(quiet());
    kit::stepTime(10100);
    EXPECT_EQ(colour(), QColor(Qt::red));
}

TEST_F(KeepShow, ALayoutWhoseFileIsMissingTakesItsTurnWhenItHasCome)
{
    server.layouts = {{"a.xml", Content::showing("one.png")}, {"b.xml", Content::showing("two.png")}};
    server.medias = {{"one.png", kRed}, {"two.png", kBlue}};
    server.silent = {"two.png"};
    ASSERT_NO_FATAL_FAILURE(expectRedUntilReleased("two.png"));
    EXPECT_TRUE(kit::waitUntil([&] { return colour() == Qt::blue; }, 20000));
    kit::stepTime(9000);
    EXPECT_EQ(current(), "b.xml");
    kit::stepTime(1500);
    EXPECT_EQ(current(), "a.xml");
    kit::stepTime(10000);
    EXPECT_EQ(current(), "b.xml");
}

TEST_F(KeepShow, ALayoutWhoseBackgroundIsMissingTakesItsTurnWhenItHasCome)
{
    const QByteArray small = kit::signRegion(QRect(0, 0, 100, 100), kit::signImage("one.png", "10"));
    server.layouts = {{"a.xml", Content::showing("one.png")},
                      {"b.xml", kit::signLayout(small, "background=\"sky.png\"")},
                      {"c.xml", kit::signLayout(small, "background=\"unlisted.png\"")}};
    server.medias = {{"one.png", kRed}, {"sky.png", kBlue}};
    server.silent = {"sky.png"};
    ASSERT_NO_FATAL_FAILURE(expectRedUntilReleased("sky.png"));
    EXPECT_TRUE(kit::waitUntil([&] { return colour() == Qt::blue; }, 20000));
    EXPECT_EQ(current(), "b.xml");
    for (int i = 0; i < 5; ++i) {
        kit::stepTime(7000);
        EXPECT_NE(current(), "c.xml") << "of which one file is fetched by nobody";
    }
}

TEST_F(KeepShow, ALayoutAloneIsDrawnAsSoonAsItsLastFileHasCome)
{
    server.layouts = {{"a.xml", Content::showing("one.png", "600")}};
    server.medias = {{"one.png", kRed}};
    server.silent = {"one.png"};
    show();
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return server.requests("one.png") == 1; }));
    EXPECT_EQ(background(), NDECK_LOADING_PICTURE);
    server.release();
    EXPECT_TRUE(kit::waitUntil([&] { return colour() == Qt::red; }, 20000));
}

TEST_F(KeepShow, LayoutAndMediaOfAScheduleChangeTogether)
{
    ASSERT_NO_FATAL_FAILURE(runRed());
    const QByteArray before = server.layouts[0].content;
    server.layouts[0].content = Content::showing("two.png");
    server.medias = {{"one.png", kGreen}, {"two.png", kBlue}};
    server.silent = {"two.png"};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return records().contains("one.png.new"); }));
    ASSERT_TRUE(kit::waitUntil([&] { return server.requests("two.png") == 1; }));
    kit::stepTime(25000);
    EXPECT_EQ(deck("a.xml"), before);
    EXPECT_EQ(deck("one.png"), kRed);
    EXPECT_EQ(colour(), QColor(Qt::red));
    server.release();
    EXPECT_TRUE(kit::waitUntil([&] { return colour() == Qt::blue; }, 20000));
    EXPECT_EQ(deck("a.xml"), server.layouts[0].content);
    EXPECT_EQ(deck("one.png"), kGreen);
    ASSERT_TRUE(quiet());
    EXPECT_EQ(deckFiles(), (QStringList{"a.xml", "one.png", "two.png"}));
}

TEST_F(KeepShow, MediaThatChangeUnderUnchangedLayoutsChangeTogether)
{
    ASSERT_NO_FATAL_FAILURE(runRed());
    server.medias = {{"one.png", kGreen}, {"two.png", kBlue}};
    ASSERT_TRUE(syncIntoUse());
    server.medias = {{"one.png", kBlue}, {"two.png", kGreen}};
    server.silent = {"two.png"};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return records().contains("one.png.new"); }));
    kit::stepTime(25000);
    EXPECT_EQ(deck("one.png"), kGreen);
    server.release();
    ASSERT_TRUE(quiet());
    kit::stepTime(10100);
    EXPECT_EQ(deck("one.png"), kBlue);
    EXPECT_EQ(deck("two.png"), kGreen);
}

TEST_F(KeepShow, AScheduleWhoseFilesWaitIsTakenUpThoughTheNextLookSaysNothing)
{
    ASSERT_NO_FATAL_FAILURE(runRed());
    server.layouts[0].content = Content::showing("two.png");
    server.medias = {{"two.png", kBlue}};
    server.silent = {"two.png"};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return server.requests("two.png") == 1; }));
    server.scheduleStatus = "503 Service Unavailable";
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return server.requests("schedule") == 3; }));
    ASSERT_TRUE(kit::waitUntil([this] { return !traces().filter("no schedule came").isEmpty(); }));
    kit::stepTime(10100);
    EXPECT_EQ(colour(), QColor(Qt::red));
    server.release();
    EXPECT_TRUE(kit::waitUntil([&] { return colour() == Qt::blue; }, 20000));
}

TEST_F(KeepShow, AScheduleThatIsBeingTakenUpOutlivesALookThatFails)
{
    constexpr int kFiles = 1000; // they come into use over many turns
    ASSERT_NO_FATAL_FAILURE(runRed());
    server.layouts[0].content = Content::showing("two.png");
    server.medias = {{"two.png", kBlue}};
    for (int i = 0; i < kFiles; ++i)
        server.medias.append({QByteArray::number(i) + ".txt", QByteArray::number(i)});
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    bool isBetween = false;
    QTimer eachTurn;
    eachTurn.callOnTimeout([&] {
        const bool isBegun = deck("a.xml") == server.layouts[0].content;
        isBetween = isBegun && manager.GetDisplayFrame().medias.size() == 1;
        if (!isBegun)
            return;
        eachTurn.stop();
        server.silent = {"schedule"};
        server.scheduleStatus = "503 Service Unavailable";
        EXPECT_TRUE(manager.DownloadDisplayFrame());
    });
    eachTurn.start(0);
    ASSERT_TRUE(kit::waitUntil(
        [&] { return server.requests("schedule") == 3 && deckFiles().filter(".new").isEmpty(); }, 20000));
    ASSERT_TRUE(isBetween) << "the test came too late";
    EXPECT_EQ(colour(), QColor(Qt::red));
    server.release();
    EXPECT_TRUE(kit::waitUntil([&] { return colour() == Qt::blue; }, 20000));
    EXPECT_EQ(names(manager.GetDisplayFrame().medias).size(), kFiles + 1);
}

TEST_F(KeepShow, AFileThatWaitsForRoomComesWhenThereIsSome)
{
    server.medias = {{"one.png", kRed, "9000"}};
    kit::limitDisk(PathReservedSpace("/rundata/nDeck", SPACE_NDECK) + 8192);
    ASSERT_TRUE(sync());
    EXPECT_EQ(server.requests("one.png"), 0);
    EXPECT_TRUE(traces().contains("DownLoadMediaFile no free space return"));
    EXPECT_EQ(records(), QStringList());
    kit::limitDisk(-1);
    kit::stepTime(70000);
    EXPECT_TRUE(kit::waitUntil([&] { return records() == QStringList{"one.png.new"}; }));
}

TEST_F(KeepShow, AFileThatNeverComesKeepsOnlyItsOwnLayoutAway)
{
    ASSERT_NO_FATAL_FAILURE(runRed());
    server.layouts = {{"a.xml", Content::showing("two.png")}, {"b.xml", Content::showing("never.png")}};
    server.medias = {{"two.png", kBlue}, {"never.png", kGreen}};
    server.failing = {"never.png"};
    ASSERT_TRUE(sync());
    EXPECT_TRUE(kit::waitUntil([&] { return colour() == Qt::blue; }, 20000));
    kit::stepTime(10100);
    EXPECT_EQ(current(), "a.xml");
    EXPECT_EQ(colour(), QColor(Qt::blue));
}

TEST_F(KeepShow, ALayoutThatNeverComesKeepsOnlyItselfAway)
{
    server.layouts = {{"a.xml", Content::showing("one.png")}, {"never.xml", Content::showing("one.png")}};
    server.medias = {{"one.png", kRed}};
    server.failing = {"never.xml"};
    show();
    manager.DownloadDisplayFrame();
    EXPECT_TRUE(kit::waitUntil([&] { return colour() == Qt::red; }, 20000)) << "of a phone without a show";
    server.layouts = {{"a.xml", Content::showing("two.png")}, {"never.xml", Content::showing("three.png")}};
    server.medias = {{"two.png", kBlue}, {"three.png", kGreen}};
    manager.DownloadDisplayFrame();
    EXPECT_TRUE(kit::waitUntil([&] { return colour() == Qt::blue; }, 20000)) << "of one that has one";
    kit::stepTime(10100);
    EXPECT_EQ(current(), "a.xml");
    const qsizetype before = turns();
    kit::stepTime(30000);
    EXPECT_EQ(turns(), before + 3) << "what nobody could read yet takes no turn";
    EXPECT_EQ(colour(), QColor(Qt::blue));
    server.failing = {};
    EXPECT_TRUE(comesLate([] { return current() == "never.xml"; }));
    EXPECT_EQ(colour(), QColor(Qt::green));
}

// Under the name of the one that shows, beside another or alone, or of one that waits for its turn.
TEST_F(KeepShow, AChangedLayoutThatComesLateTakesThePlaceOfTheOldOne)
{
    ASSERT_NO_FATAL_FAILURE(runRed());
    const QList<QByteArray> shows = {"a.xml b.xml", "b.xml a.xml", "b.xml"}; // the late one first
    for (const QByteArray& names : shows) {
        const QByteArray late = names.split(' ').first();
        server.layouts.clear();
        for (const QByteArray& name : names.split(' '))
            server.layouts.append({name, Content::showing("one.png")});
        server.medias = {{"one.png", kRed}};
        ASSERT_TRUE(quiet() && syncIntoUse());
        kit::stepTime(10100);
        server.layouts[0] = {late, Content::showing("two.png")};
        server.medias = {{"one.png", kRed}, {"two.png", kBlue}};
        server.failing = {late};
        ASSERT_TRUE(quiet() && sync());
        for (int i = 0; i < 5; ++i) {
            kit::stepTime(7000);
            EXPECT_EQ(colour(), QColor(Qt::red)) << names.constData();
        }
        server.failing = {};
        EXPECT_TRUE(comesLate([] { return colour() == Qt::blue; })) << names.constData();
        EXPECT_EQ(current(), QString(late));
    }
}

TEST_F(KeepShow, WithoutTheKeyALayoutThatNeverComesKeepsTheOthersAway)
{
    configure("bKeepShow", "0");
    server.layouts = {{"a.xml", Content::showing("one.png")}, {"never.xml", Content::showing("one.png")}};
    server.medias = {{"one.png", kRed}};
    server.failing = {"never.xml"};
    show();
    manager.DownloadDisplayFrame();
    EXPECT_TRUE(kit::waitUntil([&] { return server.requests("never.xml") == 4; }, 20000));
    kit::settle();
    EXPECT_EQ(server.requests("one.png"), 0);
    EXPECT_EQ(current(), "");
}

TEST_F(KeepShow, AScheduleOfWhichNothingCanBeShownLeavesTheOldShow)
{
    ASSERT_NO_FATAL_FAILURE(runRed());
    server.layouts = {{"a.xml", Content::showing("never.png")}};
    server.medias = {{"never.png", kGreen}};
    server.failing = {"never.png"};
    ASSERT_TRUE(sync());
    kit::stepTime(10100);
    EXPECT_EQ(colour(), QColor(Qt::red));
    server.failing = {};
    kit::stepTime(70000); // it is asked for again
    EXPECT_TRUE(kit::waitUntil([&] { return colour() == Qt::green; }, 20000));
}

TEST_F(KeepShow, AFileWhoseBudgetIsSpentIsAskedForAgainLessAndLessOften)
{
    server.medias = {{"one.png", kRed}};
    server.failing = {"one.png"};
    ASSERT_TRUE(sync());
    EXPECT_EQ(server.requests("one.png"), 4);
    const auto requestsIn = [this](int seconds) {
        const int before = server.requests("one.png");
        kit::stepTime(seconds * 1000);
        EXPECT_TRUE(quiet());
        return server.requests("one.png") - before;
    };
    EXPECT_EQ(requestsIn(55), 0);
    EXPECT_EQ(requestsIn(15), 1);
    EXPECT_EQ(requestsIn(110), 0);
    EXPECT_EQ(requestsIn(20), 1);
    EXPECT_EQ(requestsIn(230), 0);
    server.failing = {};
    EXPECT_EQ(requestsIn(20), 1);
    EXPECT_EQ(requestsIn(3600), 0);
    EXPECT_TRUE(records() == QStringList{"one.png.new"} || records() == QStringList{"one.png"});
}

TEST_F(KeepShow, WithoutTheKeyASpentBudgetStaysSpent)
{
    configure("bKeepShow", "0");
    server.medias = {{"one.png", kRed}};
    server.failing = {"one.png"};
    ASSERT_TRUE(sync());
    kit::stepTime(7200 * 1000);
    ASSERT_TRUE(quiet());
    EXPECT_EQ(server.requests("one.png"), 4);
}
