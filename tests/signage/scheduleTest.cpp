// What the phone takes a schedule to say, how often it asks for one, and what it never asks for.
#include "signage/nDeckDisplay.h"
#include "signage/nDeckRegister.h"
#include "signage/scheduleReader.h"
#include "signage/scheduleTime.h"
#include "support/xml/xmlFile.h"
#include "tests/signage/displayFixture.h"
#include "tests/signage/signageTest.h"

namespace {

class Schedule : public SignageTest
{
protected:
    static void setZone(const char* text)
    {
        nuxSetRegistryString("/rundata/config/system.ini", "LocalTime", "strTimeName", text);
    }
    // Minutes that a "sametime" layout is shifted by.
    static long shift()
    {
        chTime from, to;
        scheduleWindow("2026-11-21 12:00:00", "2026-11-21 12:00:00", "sametime", from, to);
        return (from - str2Time("2026-11-21 12:00:00")).GetTotalMinutes();
    }
    QByteArray rows(int count, const QByteArray& prefix, const QByteArray& to) const
    {
        QByteArray text;
        for (int i = 0; i < count; ++i)
            text += "<layout file=\"" + prefix + QByteArray::number(i) +
                    "\" fromdt=\"2000-01-01 00:00:00\" todt=\"" + to + "\"/>";
        return text;
    }
    int found(const QByteArray& layouts) const
    {
        writeDeck("FileList.xml", "<norvane><ndeck><schedule>" + layouts + "</schedule></ndeck></norvane>");
        nDeckLayoutList list;
        scheduleReader("/rundata/nDeck/FileList.xml").GetLayouts(list);
        return list.size();
    }
    int looksIn(int ms)
    {
        const int before = server.requests("schedule");
        for (int step = 0; step < ms; step += 100) {
            kit::stepTime(100);
            EXPECT_TRUE(quiet());
        }
        return server.requests("schedule") - before;
    }
};

} // namespace

TEST_F(Schedule, ZonesBeginWithTheirSignedHours)
{
    const std::pair<const char*, long> zones[] = {
        {"+02:00 ", 120}, {"-03:30 ", -210}, {"+05:45 ", 345},        {"-00:30 ", -30},
        {"8", 480},       {"-3", -180},      {"+00:00 ", 0},          {"8 Peking", 480},
        {"nowhere", 0},   {"", 0},           {"+14:99", 14 * 60 + 59}};
    for (const auto& [text, minutes] : zones) {
        setZone(text);
        EXPECT_EQ(shift(), minutes) << text;
    }
}

TEST_F(Schedule, ZonesThatWereStoredWithLettersInFrontCountAsWell)
{
    const std::pair<const char*, long> zones[] = {
        {"GMT+02:00 ", 120}, {"GMT-03:30 ", -210}, {"GMT+05:30", 330}, {"gmt-11:00 ", -660}};
    for (const auto& [text, minutes] : zones) {
        setZone(text);
        EXPECT_EQ(shift(), minutes) << text;
    }
}

TEST_F(Schedule, WithoutAZoneLayoutsOfTheSameTimeAreNotShifted)
{
    writeFile("/rundata/config/system.ini", "");
    EXPECT_EQ(shift(), 0);
}

TEST_F(Schedule, TheSummerTimeOfTheChosenZoneCountsOnItsDays)
{
    setZone("+01:00 ");
    nuxSetRegistryString("/rundata/config/system.ini", "LocalTime", "strZoneName", "Germany, Berlin");
    chTime from, to;
    scheduleWindow("2026-07-01 12:00:00", "2026-12-01 12:00:00", "sametime", from, to);
    EXPECT_EQ(from, str2Time("2026-07-01 14:00:00"));
    EXPECT_EQ(to, str2Time("2026-12-01 13:00:00"));
    scheduleWindow("2026-07-01 12:00:00", "2026-12-01 12:00:00", "", from, to);
    EXPECT_EQ(from, str2Time("2026-07-01 12:00:00"));
}

TEST_F(Schedule, EveryZoneOfThePhonesTableIsRead)
{
    xmlFile table;
    ASSERT_TRUE(table.LoadFromFile("/phone/resource/AutoDST.xml"));
    int count = 0;
    for (xmlElement* zone = table.GetRootElement()->GetFirstChildElement(); zone;
         zone = xmlGetNextElement(zone)) {
        const chString text = zone->GetAttributeValue("szTime").GetString();
        ASSERT_TRUE(text.GetText()[0] == '+' || text.GetText()[0] == '-') << text.GetText();
        int hours = 0, minutes = 0;
        ASSERT_EQ(sscanf(text.GetText() + 1, "%d:%d", &hours, &minutes), 2) << text.GetText();
        setZone(text);
        EXPECT_EQ(shift(), (text.GetText()[0] == '-' ? -1 : 1) * (hours * 60 + minutes)) << text.GetText();
        ++count;
    }
    EXPECT_GT(count, 50);
}

TEST_F(Schedule, OnlyLayoutsWhoseTimeItIsCountToTheLimit)
{
    const QByteArray past = "2001-01-01 00:00:00", good = "2037-01-01 00:00:00";
    EXPECT_EQ(found(rows(500, "past", past) + rows(3, "good", good)), 3);
    EXPECT_TRUE(traces().filter("are left out").isEmpty());
}

TEST_F(Schedule, WhatIsBeyondTheLimitIsTold)
{
    EXPECT_EQ(found(rows(SCHEDULE_LAYOUT_LIMIT + 7, "good", "2037-01-01 00:00:00")), SCHEDULE_LAYOUT_LIMIT);
    EXPECT_TRUE(traces().contains("the schedule names more than 256 layouts: 7 are left out"));
}

TEST_F(Schedule, AnIntervalThatIsNoPositiveNumberIsTheDefault)
{
    for (const char* interval : {"0", "abc", "-5", ""}) {
        configure("nUpdateInteval", interval);
        manager.SetAutoUpdateEnable(1);
        EXPECT_EQ(looksIn(2000), 0) << interval;
        kit::stepTime(58100);
        ASSERT_TRUE(quiet());
        manager.SetAutoUpdateEnable(0);
    }
    EXPECT_EQ(server.requests("schedule"), 4);
}

TEST_F(Schedule, TwoLooksAreATenthOfASecondApartAtLeast)
{
    const std::pair<const char*, int> intervals[] = {{"1", 100},   {"99", 100},    {"100", 100},
                                                     {"150", 150}, {"abc", 60000}, {"-1", 60000}};
    for (const auto& [text, interval] : intervals) {
        configure("nUpdateInteval", text);
        EXPECT_EQ(nDeckUpdateInterval(), interval) << text;
    }
    configure("nUpdateInteval", "1");
    manager.SetAutoUpdateEnable(1);
    EXPECT_GE(looksIn(2000), 15);
    manager.SetAutoUpdateEnable(0);
}

TEST_F(Schedule, AFileReplacedUnderItsNameIsFetchedOnce)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    server.medias = {{"film.mp4", "first"}};
    ASSERT_TRUE(syncIntoUse());
    server.medias[0].content = "second";
    ASSERT_TRUE(sync()); // it waits through the next look
    for (int look = 0; look < 5; ++look)
        ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(server.requests("film.mp4"), 2);
    EXPECT_EQ(deck("film.mp4"), "second");
}

TEST_F(Schedule, WhatStayedOnTheDiskThroughAnOutageIsNotFetchedAgain)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    server.medias = {{"film.mp4", "film"}};
    ASSERT_TRUE(syncIntoUse());
    server.scheduleStatus = "500 Broken";
    ASSERT_TRUE(sync());
    server.scheduleStatus = "200 OK";
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(server.requests("film.mp4"), 1);
    EXPECT_EQ(deckFiles(), (QStringList{"a.xml", "film.mp4"}));
}

TEST_F(Schedule, AFileThatSomebodyRemovedIsFetchedAgain)
{
    server.layouts = {{"a.xml", "<layout/>"}};
    server.medias = {{"film.mp4", "film"}};
    ASSERT_TRUE(syncIntoUse());
    server.scheduleStatus = "500 Broken";
    ASSERT_TRUE(sync());
    server.scheduleStatus = "200 OK";
    QFile::remove(hostPath("/rundata/nDeck/film.mp4"));
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(server.requests("film.mp4"), 2);
    EXPECT_EQ(deck("film.mp4"), "film");
}

TEST_F(Schedule, NamesThatCannotBeAskedForAreRefused)
{
    for (const QByteArray& name :
         {QByteArray("a&b.png"), QByteArray("a#b.png"), QByteArray("a%41.png"), QByteArray("%2f.png")})
        server.medias.append({QByteArray(name).replace("&", "&amp;"), name});
    server.medias.append(signageServer::tagMedia{"100%.png", "good"});
    server.medias.append(signageServer::tagMedia{"50%gain.png", "good"});
    server.served = {{"100%25.png", "good"}, {"50%25gain.png", "good"}}; // as they are on the wire
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(deckFiles(), (QStringList{"100%.png", "50%gain.png"}));
    EXPECT_EQ(server.order.size(), 3);
    EXPECT_TRUE(traces().contains("nDeckFileManager refuses the file name(a&b.png)"));
}

TEST_F(Schedule, AValueThatWouldArriveAsAnotherIsToldAndNotSent)
{
    for (const char* key : {"strServerKey", "strServerPwd", "strDisplayName"}) {
        for (const char* value : {"Lobby&Bar", "Room #4", "10%20"}) {
            configure(key, value);
            nDeckRegisterDisplay();
            EXPECT_FALSE(manager.DownloadDisplayFrame()) << value;
            ASSERT_TRUE(quiet());
            const QStringList told = traces().filter(QString("the value of ") + key + " cannot be sent");
            EXPECT_FALSE(told.isEmpty()) << key;
            EXPECT_TRUE(told.filter(value).isEmpty());
        }
        configure(key, "100% +?");
    }
    EXPECT_TRUE(server.order.isEmpty());
    nDeckRegisterDisplay();
    ASSERT_TRUE(sync());
    EXPECT_EQ(server.order.size(), 2);
}

TEST_F(Schedule, AnAddressThatWouldSwallowThePathIsToldAndNothingIsAskedOfIt)
{
    int told = 0;
    for (const char* end : {"/?", "?a=b", "/#", "#top", "/sign?", "/a?#/"}) {
        configure("strServerURL", server.http.url(end));
        nDeckRegisterDisplay();
        EXPECT_FALSE(manager.DownloadDisplayFrame()) << end;
        ASSERT_TRUE(quiet());
        told += 2;
        EXPECT_EQ(traces().filter("the value of strServerURL cannot be used").size(), told) << end;
    }
    EXPECT_TRUE(server.http.paths.isEmpty());
    configure("strServerURL", server.http.url("/sign%20age/"));
    nDeckRegisterDisplay();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(server.http.paths.size(), 1);
}

// ---- A clock that is wrong for a moment

class WrongClock : public DisplayTest
{
protected:
    void SetUp() override
    {
        DisplayTest::SetUp();
        addFile("red.png", picture(Qt::red));
        m_now = netGetLocalTime();
        addLayout("a.xml", layout(region(image("red.png", "10"))));
        addLayout("b.xml", layout(region(image("red.png", "10"))));
        addLayout("c.xml", layout(region(image("red.png", "10"))));
    }
    void setClock(long offset) { netWorldSetClock(m_now + offset); }

    long m_now = 0;
};

TEST_F(WrongClock, LayoutsThatWereRemovedForItComeBackInTheirOrder)
{
    takeUp();
    EXPECT_EQ(current(), "a.xml");
    setClock(10L * 365 * 86400);
    kit::stepTime(10100);
    EXPECT_EQ(current(), "a.xml");
    EXPECT_EQ(display().GetLayoutsCount(), 1);
    setClock(20);
    kit::stepTime(10100);
    EXPECT_EQ(display().GetLayoutsCount(), 3);
    EXPECT_EQ(current(), "a.xml");
    kit::stepTime(10000);
    EXPECT_EQ(current(), "b.xml");
    kit::stepTime(10000);
    EXPECT_EQ(current(), "c.xml");
}

TEST_F(WrongClock, AShowThatDidNotBeginForItBeginsWithTheNextSchedule)
{
    for (const long offset : {-40L * 365 * 86400, 10L * 365 * 86400}) {
        setClock(offset);
        takeUp();
        EXPECT_EQ(current(), "");
        setClock(0);
        display().OnFrameStays();
        EXPECT_EQ(current(), "a.xml");
        EXPECT_EQ(display().GetLayoutsCount(), 3);
    }
}

TEST_F(WrongClock, ALayoutThatIsOverStaysRemoved)
{
    addLayout("over.xml", layout(region(image("red.png", "10"))), -3600, 15);
    takeUp();
    kit::stepTime(45000);
    EXPECT_EQ(display().GetLayoutsCount(), 3);
    kit::stepTime(40000);
    EXPECT_EQ(display().GetLayoutsCount(), 3);
}
