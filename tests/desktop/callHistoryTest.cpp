#include "host/services/phone/callHistory.h"
#include "host/desktop/callRecords.h"
#include "host/desktop/historyNote.h"
#include "host/desktop/missedCalls.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "host/services/system/netWorld.h"
#include "support/host/clock.h"
#include "support/host/dialogs.h"
#include "support/host/net.h"
#include "support/host/phone.h"
#include "support/host/registry.h"
#include "tests/desktop/desktopTest.h"
#include <QFile>
#include <QTableWidget>

namespace {

const char* const kFile = "/rundata/data/callHistory.xml";
const char* const kCalls =
    "<CallHistory>"
    "<Call number=\"1002\" name=\"\" line=\"2\" direction=\"out\" start=\"2026-11-21 14:03:59\" "
    "seconds=\"65\"/>"
    "<Call number=\"555\" name=\"Doctor\" line=\"1\" direction=\"in\" start=\"2026-11-20 12:30:00\" "
    "seconds=\"3723\"/>"
    "<Call number=\"556\" name=\"\" line=\"3\" direction=\"in\" start=\"2026-11-20 08:00:00\" seconds=\"0\"/>"
    "</CallHistory>";

class CallHistory : public DesktopTest
{
protected:
    void open()
    {
        page.show();
        kit::settle();
    }
    void openWithCalls()
    {
        const chTime now(2026, 11, 21, 14, 5, 0);
        netWorldSetClock((now - chTime(0)).GetTotalSeconds());
        writeFile(kFile, kCalls);
        open();
    }
    dlgCallHistroy page{nullptr, nullptr};
};

} // namespace

TEST_F(CallHistory, ListsWhoWhenAndHowLong)
{
    openWithCalls();
    EXPECT_EQ(pageTitle(&page), "Call Histroy");
    EXPECT_EQ(softKeys(&page), "Call||Clear|Back");
    EXPECT_EQ(headingsOf(&page), "Name,Number,Line,Time,Duration");
    EXPECT_EQ(rowsOf(&page), "Anna,1002,Line 2,14:03,1:05|Doctor,555,Line 1,2026-11-20 12:30,1:02:03|"
                             "556,556,Line 3,2026-11-20 08:00,");
    EXPECT_EQ(listOf(&page)->currentRow(), 0);
    for (int row = 0; row < 3; ++row)
        EXPECT_FALSE(listOf(&page)->item(row, 0)->icon().isNull());
    EXPECT_EQ(cutTexts(&page), "");
    kit::shot("callHistory");
}

TEST_F(CallHistory, FollowsTheZoneThatIsChosen)
{
    const char* const file = "/rundata/config/system.ini";
    const auto choose = [&](const char* hours) {
        nuxSetRegistryString(file, "LocalTime", "strTimeName", hours);
        nuxSetRegistryString(file, "LocalTime", "strZoneName", "Nowhere");
    };
    choose("+08:00 ");
    netSetLocalTime(2026, 7, 10, 12, 50, 0);
    const QByteArray moment = QByteArray::number(qlonglong(chTime(2026, 7, 10, 4, 48, 0).GetTime()));
    writeFile(kFile, "<CallHistory><Call number=\"1\" start=\"2026-07-10 12:48:00\" utc=\"" + moment +
                         "\"/><Call number=\"2\" start=\"2026-07-10 12:40:00\"/><Call number=\"3\" "
                         "start=\"then\" utc=\"soon\"/></CallHistory>");
    open();
    EXPECT_EQ(rowsOf(&page), "1,1,Auto,12:48,|2,2,Auto,12:40,|3,3,Auto,,");
    page.hide();
    choose("-05:00 ");
    open();
    EXPECT_EQ(rowsOf(&page), "1,1,Auto,23:48,|2,2,Auto,2026-07-10 12:40,|3,3,Auto,,");
}

TEST_F(CallHistory, TellsTheTimeAsItIsChosen)
{
    nuxSetRegistryInt("/rundata/config/user/user.ini", "DateTime", "eTimeFormat", 1);
    for (const char* language : {"English", "German", "French", "Spanish", "Chinese"}) {
        page.hide();
        setLanguage(language);
        openWithCalls();
        EXPECT_EQ(cutTexts(&page), "") << language;
        kit::shot(QString("callHistoryTwelve") + language);
        if (language == std::string("English")) {
            EXPECT_EQ(rowsOf(&page),
                      "Anna,1002,Line 2,2:03 PM,1:05|Doctor,555,Line 1,2026-11-20 12:30 PM,1:02:03|"
                      "556,556,Line 3,2026-11-20 8:00 AM,");
        }
    }
}

TEST_F(CallHistory, AnIconTellsHowTheCallWent)
{
    tagCallRecord call;
    EXPECT_TRUE(callRecordPicture(call).endsWith("call_out.png"));
    call.bIncoming = true;
    call.bMissed = true;
    EXPECT_TRUE(callRecordPicture(call).endsWith("call_missed.png"));
    call.bMissed = false;
    EXPECT_TRUE(callRecordPicture(call).endsWith("call_in.png"));
}

TEST_F(CallHistory, TellsMissedCallsFromDeclinedOnesAndOlderListsByTheirTime)
{
    writeFile(kFile, "<CallHistory><Call number=\"1\" direction=\"in\" missed=\"1\" seconds=\"0\"/>"
                     "<Call number=\"2\" direction=\"in\" missed=\"0\" seconds=\"0\"/>"
                     "<Call number=\"3\" direction=\"in\" seconds=\"0\"/>"
                     "<Call number=\"4\" direction=\"in\" seconds=\"5\"/></CallHistory>");
    QList<bool> missed;
    for (const tagCallRecord& call : callRecordsRead())
        missed.append(call.bMissed);
    EXPECT_EQ(missed, (QList<bool>{true, false, true, false}));
}

TEST_F(CallHistory, ADurationHasHoursOnlyWhenItNeedsThem)
{
    EXPECT_EQ(durationText(0), "0:00");
    EXPECT_EQ(durationText(59), "0:59");
    EXPECT_EQ(durationText(60), "1:00");
    EXPECT_EQ(durationText(3599), "59:59");
    EXPECT_EQ(durationText(3600), "1:00:00");
    EXPECT_EQ(durationText(36061), "10:01:01");
}

TEST_F(CallHistory, OkCallsAgainOnTheSameLine)
{
    openWithCalls();
    kit::key(Qt::Key_Return);
    EXPECT_EQ(logged("dial"), "1002 1 0");
}

TEST_F(CallHistory, TheCallKeyAndASecondTapCallTheChosenOne)
{
    openWithCalls();
    tapRow(&page, 2);
    EXPECT_EQ(logged("dial"), "");
    tapRow(&page, 2);
    EXPECT_EQ(logged("dial"), "556 2 0");
    tapSoftKey(&page, 0);
    EXPECT_EQ(logged("dial"), "556 2 0|556 2 0");
}

TEST_F(CallHistory, WithoutCallsItSaysSoAndDoesNothing)
{
    open();
    EXPECT_EQ(noticeOf(&page), "There are no calls yet.");
    kit::BoxAnswers boxes;
    kit::key(Qt::Key_Return);
    tapSoftKey(&page, 0);
    tapSoftKey(&page, 2);
    EXPECT_EQ(logged("dial"), "");
    EXPECT_TRUE(boxes.texts().isEmpty());
    kit::shot("callHistoryEmpty");
}

TEST_F(CallHistory, AMissingOrBrokenFileIsAnEmptyHistory)
{
    QFile::remove(hostPath(kFile));
    open();
    EXPECT_EQ(noticeOf(&page), "There are no calls yet.");
    page.hide();
    writeFile(kFile, "<CallHistory><Call");
    open();
    EXPECT_EQ(noticeOf(&page), "There are no calls yet.");
}

TEST_F(CallHistory, ClearAsksFirst)
{
    openWithCalls();
    kit::BoxAnswers boxes({"no", "yes"});
    tapSoftKey(&page, 2);
    EXPECT_EQ(boxes.titles(), QStringList("Note"));
    EXPECT_EQ(boxes.texts(), QStringList("Delete all calls?"));
    EXPECT_EQ(listOf(&page)->rowCount(), 3);
    tapSoftKey(&page, 2);
    EXPECT_EQ(noticeOf(&page), "There are no calls yet.");
    EXPECT_FALSE(readFile(kFile).contains("<Call "));
}

TEST_F(CallHistory, CallsThatCannotBeDeletedStay)
{
    openWithCalls();
    makeSavesFail();
    kit::BoxAnswers boxes({"yes", "ok"});
    tapSoftKey(&page, 2);
    EXPECT_EQ(boxes.texts(), QStringList({"Delete all calls?", "The calls cannot be deleted!"}));
    EXPECT_EQ(listOf(&page)->rowCount(), 3);
}

TEST_F(CallHistory, ACallMadeMeanwhileIsThereAtTheNextShow)
{
    open();
    page.hide();
    phone_CallNumber("8001", 0, 0);
    kit::stepTime(1600);
    DesktopTest::hangUpAll();
    ASSERT_TRUE(kit::waitUntil([this] { return readFile(kFile).contains("8001"); }));
    open();
    EXPECT_EQ(listOf(&page)->item(0, 0)->text(), "Front desk");
}

TEST_F(CallHistory, WhoKeptNameAndNumberBackStandsThereAsAnonymous)
{
    const int missed = missedCalls::instance().count();
    tagCaller caller;
    caller.bAnonymous = true;
    ASSERT_TRUE(phoneSimulation::instance()->ringFrom(caller));
    kit::settle();
    const tagCall call = phoneService::instance().calls().value(0);
    ASSERT_TRUE(phoneSimulation::instance()->hangUpFromOutside(call.nId));
    EXPECT_EQ(missedCalls::instance().count(), missed + 1);
    ASSERT_TRUE(kit::waitUntil([this] { return readFile(kFile).contains("missed=\"1\""); }));
    const QList<QPair<const char*, QString>> names = {{"English", "Anonymous"},
                                                      {"German", "Anonym"},
                                                      {"French", "Anonyme"},
                                                      {"Spanish", "An\u00f3nimo"},
                                                      {"Chinese", "\u533f\u540d"}};
    for (const auto& name : names) {
        page.hide();
        setLanguage(name.first);
        open();
        ASSERT_EQ(listOf(&page)->rowCount(), 1);
        EXPECT_EQ(listOf(&page)->item(0, 0)->text(), name.second) << name.first;
        EXPECT_EQ(listOf(&page)->item(0, 1)->text(), "");
        EXPECT_EQ(cutTexts(&page), "") << name.first;
    }
    kit::key(Qt::Key_Return);
    EXPECT_TRUE(phoneService::instance().calls().isEmpty()) << "nobody can be called back";
}

TEST_F(CallHistory, UpAndDownGoRoundAndBackCloses)
{
    openWithCalls();
    kit::key(Qt::Key_Up);
    EXPECT_EQ(listOf(&page)->currentRow(), 2);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(listOf(&page)->currentRow(), 0);
    tapSoftKey(&page, 3);
    EXPECT_FALSE(page.isVisible());
}

TEST_F(CallHistory, NothingIsCutInAnyLanguage)
{
    for (const char* language : {"German", "French", "Spanish", "Chinese"}) {
        page.hide();
        setLanguage(language);
        openWithCalls();
        EXPECT_EQ(cutTexts(&page), "") << language;
        EXPECT_NE(headingsOf(&page), "Name,Number,Line,Time,Duration") << language;
        kit::shot(QString("callHistory") + language);
    }
}

TEST_F(CallHistory, ANoteSaysOnceThatCallsCannotBeStoredAndNotDuringACall)
{
    historyNoteInstall();
    QFile::remove(hostPath(kFile));
    writeFile("/rundata/data/callHistory.xml/held", "");
    ASSERT_TRUE(phoneSimulation::instance()->ring("600", 0, "Anna"));
    kit::BoxAnswers boxes({"ok"});
    callHistoryAdd({});
    ASSERT_TRUE(kit::waitUntil([&] { return traces().contains("the call history could not be saved"); }));
    kit::settle();
    EXPECT_EQ(boxes.texts(), QStringList());
    hangUpAll();
    for (int i = 0; i < 3; ++i) {
        kit::stepTime(CALL_HISTORY_AGAIN_MS);
        EXPECT_TRUE(kit::waitUntil([&] { return boxes.texts().size() == 1; }));
    }
    EXPECT_EQ(boxes.texts(), QStringList("The call history cannot be saved!"));
    callHistoryOnFault(nullptr);
}

TEST_F(CallHistory, ANameThatIsCutKeepsClearOfTheNumberBesideIt)
{
    QByteArray calls = "<CallHistory>";
    for (const char* number : {"1", "004420794600001234567890"})
        calls += QByteArray("<Call number=\"") + number +
                 "\" name=\"Maximilian Alexander von Hohenstein\" line=\"1\" direction=\"in\" "
                 "start=\"2026-11-20 12:30:00\" seconds=\"1\"/>";
    writeFile(kFile, calls + "</CallHistory>");
    open();
    kit::shot("callHistory-long");
    QTableWidget* list = listOf(&page);
    const QImage rows = list->viewport()->grab().toImage();
    const QRect second = list->visualItemRect(list->item(1, 0)); // the first one is chosen
    for (const int column : {1, 2}) {
        const int next = list->columnViewportPosition(column);
        for (int x = next - 8; x < next; ++x) {
            for (int y = second.top() + 4; y < second.bottom() - 4; ++y)
                ASSERT_GT(qGray(rows.pixel(x, y)), 200) << column << ' ' << x << ' ' << y;
        }
    }
}
