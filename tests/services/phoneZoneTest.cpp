// The zone that is stored, its rules for summer time, and the clock that follows them.
#include "host/services/system/phoneZone.h"
#include "host/services/system/netWorld.h"
#include "support/host/clock.h"
#include "support/host/net.h"
#include "support/host/registry.h"
#include "support/host/zone.h"
#include "support/xml/xmlFile.h"
#include "tests/kit/kitTime.h"
#include "tests/kit/phoneTest.h"
#include <QFile>
#include <ctime>

#define SYSTEM_FILE "/rundata/config/system.ini"

namespace {

class PhoneZone : public PhoneTest
{
protected:
    void writeTable(const QByteArray& table) const { writeFile("/phone/resource/AutoDST.xml", table); }
    static void store(const char* time, const char* name)
    {
        nuxSetRegistryString(SYSTEM_FILE, "LocalTime", "strTimeName", time);
        nuxSetRegistryString(SYSTEM_FILE, "LocalTime", "strZoneName", name);
    }
    static long utc(int month, int day, int hour, int minute = 0, int second = 0)
    {
        return chTime(2027, month, day, hour, minute, second).GetTime();
    }
    static QString text(long local)
    {
        return QString::fromUtf8(chTime(local).Format("%m-%d %H:%M:%S").GetText());
    }
    static QString local(long utcSeconds) { return text(zoneLocalOf(utcSeconds)); }
    static QString now() { return text(netGetLocalTime()); }
};

} // namespace

TEST_F(PhoneZone, HoursAreReadAsTheyWereStoredAtAnyTime)
{
    const std::pair<const char*, long> texts[] = {
        {"+02:00 ", 7200},      {"-03:30 ", -12600}, {"+05:45 ", 20700}, {"GMT+05:30 ", 19800},
        {"gmt-11:00 ", -39600}, {"8 Peking", 28800}, {"-3", -10800},     {"+00:00 ", 0}};
    for (const auto& [stored, seconds] : texts) {
        bool isNumber = false;
        EXPECT_EQ(zoneSeconds(stored, &isNumber), seconds) << stored;
        EXPECT_TRUE(isNumber) << stored;
    }
    for (const char* stored : {"", "nowhere", "GMT"}) {
        bool isNumber = true;
        EXPECT_EQ(zoneSeconds(stored, &isNumber), 0) << stored;
        EXPECT_FALSE(isNumber) << stored;
    }
}

TEST_F(PhoneZone, AZoneFitsByItsWholeNameThenByItsPlaceThenByItsHours)
{
    const char* const row = "Germany, Berlin";
    EXPECT_EQ(zoneMatch("+01:00 ", "Germany, Berlin", "+01:00 ", row), ZONE_SAME);
    EXPECT_EQ(zoneMatch("GMT+01:00 ", "berlin", "+01:00 ", row), ZONE_SAME_PLACE);
    EXPECT_EQ(zoneMatch("GMT+01:00 ", "Germany, Berlin", "+01:00 ", row), ZONE_SAME_PLACE);
    EXPECT_EQ(zoneMatch("+01:00 ", "Bonn", "+01:00 ", row), ZONE_SAME_HOURS);
    EXPECT_EQ(zoneMatch("+01:00 ", "lin", "+01:00 ", row), ZONE_SAME_HOURS) << "not the whole place";
    EXPECT_EQ(zoneMatch("+01:00 ", "", "+01:00 ", row), ZONE_SAME_HOURS);
    EXPECT_EQ(zoneMatch("+02:00 ", "Berlin", "+01:00 ", row), ZONE_OTHER);
    EXPECT_EQ(zoneMatch("", "Berlin", "+00:00 ", "Berlin"), ZONE_OTHER);
}

TEST_F(PhoneZone, SummerTimeBeginsAndEndsAtItsSecond)
{
    store("+01:00 ", "Germany, Berlin");
    EXPECT_EQ(local(utc(3, 28, 0, 59, 59)), "03-28 01:59:59");
    EXPECT_EQ(local(utc(3, 28, 1, 0, 0)), "03-28 03:00:00");
    EXPECT_EQ(local(utc(3, 28, 0, 59, 59)), "03-28 01:59:59") << "back again";
    EXPECT_EQ(local(utc(10, 31, 0, 59, 59)), "10-31 02:59:59");
    EXPECT_EQ(local(utc(10, 31, 1, 0, 0)), "10-31 02:00:00");
    EXPECT_EQ(netGetSummerTime(utc(7, 1, 0)), 3600);
    EXPECT_EQ(netGetSummerTime(utc(1, 1, 0)), 0);
    store("+10:00 ", "Australia, Sydney");
    EXPECT_EQ(local(utc(1, 1, 0)), "01-01 11:00:00") << "summer in the south";
    EXPECT_EQ(local(utc(7, 1, 0)), "07-01 10:00:00");
    store("+10:30 ", "Australia, Lord Howe");
    EXPECT_EQ(netGetSummerTime(utc(1, 1, 0)), 1800) << "half an hour is enough there";
}

TEST_F(PhoneZone, AnotherPlaceOfTheSameHoursHasRulesOfItsOwn)
{
    store("+01:00 ", "Germany, Berlin");
    EXPECT_EQ(local(utc(7, 1, 0)), "07-01 02:00:00");
    store("+01:00 ", "Nigeria, Lagos");
    EXPECT_EQ(local(utc(7, 1, 0)), "07-01 01:00:00");
    store("+01:00 ", "Germany, Berlin");
    EXPECT_EQ(local(utc(7, 1, 0)), "07-01 02:00:00");
    store("+02:00 ", "Germany, Berlin");
    EXPECT_EQ(local(utc(7, 1, 0)), "07-01 02:00:00");
    EXPECT_EQ(local(utc(1, 1, 0)), "01-01 02:00:00") << "the place has other hours: no rules fit";
}

TEST_F(PhoneZone, TheOldNamesOfZonesHaveTheirRulesToo)
{
    for (const auto& [time, name] : {std::pair{"GMT+02:00 ", "Helsinki"}, std::pair{"+02:00 ", "Athens"}}) {
        store(time, name);
        EXPECT_EQ(local(utc(1, 1, 0)), "01-01 02:00:00") << name;
        EXPECT_EQ(local(utc(7, 1, 0)), "07-01 03:00:00") << name;
    }
}

TEST_F(PhoneZone, AZoneThatTheTableDoesNotKnowKeepsItsHoursAllYear)
{
    store("GMT+08:00 ", "Atlantis");
    EXPECT_EQ(local(utc(7, 1, 0)), "07-01 08:00:00");
    EXPECT_EQ(netGetSummerTime(utc(7, 1, 0)), 0);
    EXPECT_TRUE(traces().contains("The zone \"GMT+08:00 Atlantis\" has no rules for summer time"));
    mark();
    EXPECT_EQ(local(utc(1, 1, 0)), "01-01 08:00:00");
    EXPECT_EQ(traces(), QStringList()) << "said once";
}

TEST_F(PhoneZone, ATableThatIsMissingOrBrokenOrHasNoRulesKeepsTheHours)
{
    const QByteArray row =
        "<DSTData><DST szTime=\"+01:00 \" szZone=\"Germany, Berlin\" szRule=\"Nowhere/At_All\"/>"
        "</DSTData>";
    for (const QByteArray& table : {QByteArray("<DSTData>"), QByteArray("<DSTData/>"), row,
                                    QByteArray(row).replace("szRule=\"Nowhere/At_All\"", "")}) {
        writeTable(table);
        store("+00:00 ", "elsewhere");
        zoneLocalOf(0);
        store("+01:00 ", "Germany, Berlin");
        EXPECT_EQ(local(utc(7, 1, 0)), "07-01 01:00:00") << table.constData();
    }
    QFile::remove(hostPath("/phone/resource/AutoDST.xml"));
    store("+01:00 ", "elsewhere");
    EXPECT_EQ(local(utc(7, 1, 0)), "07-01 01:00:00");
}

TEST_F(PhoneZone, TheTableIsReadWhenAZoneIsChosenAndNotAgain)
{
    store("+01:00 ", "Germany, Berlin");
    EXPECT_EQ(local(utc(7, 1, 0)), "07-01 02:00:00");
    QFile::remove(hostPath("/phone/resource/AutoDST.xml"));
    EXPECT_EQ(local(utc(1, 1, 0)), "01-01 01:00:00");
    EXPECT_EQ(local(utc(7, 1, 0)), "07-01 02:00:00");
}

TEST_F(PhoneZone, WithoutAStoredZoneTheMachinesHolds)
{
    setenv("TZ", "XYZ-3:30", 1);
    tzset();
    store("", "");
    EXPECT_EQ(local(utc(7, 1, 0)), "07-01 03:30:00");
    EXPECT_EQ(netGetSummerTime(utc(7, 1, 0)), 0);
    unsetenv("TZ");
    tzset();
}

TEST_F(PhoneZone, EveryLocalTimeHasItsMomentWhereverThePhoneIs)
{
    for (const auto& [time, name] :
         {std::pair{"+01:00 ", "Germany, Berlin"}, std::pair{"-05:00 ", "United States, New York"},
          std::pair{"+10:00 ", "Australia, Sydney"}, std::pair{"-03:30 ", "Canada, St. John's"},
          std::pair{"+05:45 ", "Nepal, Kathmandu"}}) {
        store(time, name);
        int doubled = 0;
        for (const auto& [from, to] :
             {std::pair{utc(3, 10, 0), utc(4, 7, 0)}, {utc(9, 30, 0), utc(11, 9, 0)}}) {
            for (long moment = from; moment < to; moment += 1800) {
                const long back = zoneUtcOf(zoneLocalOf(moment));
                EXPECT_EQ(zoneLocalOf(back), zoneLocalOf(moment)) << name;
                doubled += back != moment;
            }
        }
        EXPECT_LE(doubled, 2) << name << ": the hour that comes twice";
    }
    // The hour that is left out.
    store("+01:00 ", "Germany, Berlin");
    const long left = zoneLocalOf(zoneUtcOf(utc(3, 28, 2, 30)));
    EXPECT_EQ(text(left), "03-28 03:30:00");
}

TEST_F(PhoneZone, TheClockGoesOverTheChangeWhileItRuns)
{
    store("+00:00 ", "Britain (UK), London");
    netWorldSetClock(utc(3, 28, 0, 59, 58));
    EXPECT_EQ(now(), "03-28 00:59:58");
    kit::holdClocks(true);
    kit::moveClocks(3000);
    EXPECT_EQ(now().left(11), "03-28 02:00");
    netWorldSetClock(utc(10, 31, 0, 59, 59));
    kit::moveClocks(3600 * 1000);
    EXPECT_EQ(now(), "10-31 01:59:59");
    kit::moveClocks(2000);
    EXPECT_EQ(now().left(11), "10-31 01:00");
    kit::holdClocks(false);
}

TEST_F(PhoneZone, ATableThatIsFarTooLargeHasNoRules)
{
    writeTable("<DSTData><DST szTime=\"+01:00 \" szZone=\"A\" szRule=\"Europe/Berlin\"/></DSTData>" +
               QByteArray(XML_TABLE_LIMIT, ' '));
    store("+01:00 ", "A");
    mark();
    zoneSummerSeconds(1814400000);
    EXPECT_FALSE(traces().filter("No zone has rules for summer time: The file is too large.").isEmpty());
}

TEST_F(PhoneZone, AnotherZoneShowsTheSameMoment)
{
    store("+00:00 ", "Britain (UK), London");
    kit::holdClocks(true);
    netSetLocalTime(2027, 7, 1, 12, 0, 0);
    store("+05:30 ", "India, New Delhi");
    EXPECT_EQ(now(), "07-01 16:30:00");
    store("-08:00 ", "United States, Los Angeles");
    EXPECT_EQ(now(), "07-01 04:00:00");
    netSetLocalTime(2027, 7, 1, 12, 0, 0);
    EXPECT_EQ(now(), "07-01 12:00:00") << "by hand it is set in the zone that is stored";
    kit::holdClocks(false);
}

TEST_F(PhoneZone, WhatTheClockIsAheadIsStoredForTheNextStart)
{
    kit::holdClocks(true);
    timespec machine;
    clock_gettime(CLOCK_REALTIME, &machine);
    store("+00:00 ", "Iceland, Reykjavik");
    netSetLocalTime(2027, 7, 1, 12, 0, 0);
    const long long ahead = (utc(7, 1, 12) - machine.tv_sec) * 1000LL - machine.tv_nsec / 1000000;
    EXPECT_EQ(NUX_SubClass::nuxGetRegistryString(SYSTEM_FILE, "LocalTime", "nAheadMs", ""),
              chString(QByteArray::number(ahead)));
    netWorldSetClock(utc(7, 2, 12));
    EXPECT_EQ(NUX_SubClass::nuxGetRegistryString(SYSTEM_FILE, "LocalTime", "nAheadMs", ""),
              chString(QByteArray::number(ahead)))
        << "the world's clock is not the phone's own";
    kit::holdClocks(false);
}

TEST_F(PhoneZone, AClockThatWasSetBeforeIsThatOfTheStart)
{
    nuxSetRegistryString(SYSTEM_FILE, "LocalTime", "nAheadMs", "-3600000");
    store("", "");
    timespec machine;
    clock_gettime(CLOCK_REALTIME, &machine);
    const long difference = netGetLocalTime() - zoneLocalOf(machine.tv_sec);
    EXPECT_GE(difference, -3601);
    EXPECT_LE(difference, -3599);
}

TEST_F(PhoneZone, ADifferenceThatIsNoneIsLeftAlone)
{
    nuxSetRegistryString(SYSTEM_FILE, "LocalTime", "nAheadMs", "99999999999999999999");
    store("", "");
    timespec machine;
    clock_gettime(CLOCK_REALTIME, &machine);
    EXPECT_LE(std::abs(netGetLocalTime() - zoneLocalOf(machine.tv_sec)), 1);
}

TEST_F(PhoneZone, ADifferenceInThePastThatIsNoneIsLeftAlone)
{
    nuxSetRegistryString(SYSTEM_FILE, "LocalTime", "nAheadMs", "-99999999999999999999");
    store("", "");
    timespec machine;
    clock_gettime(CLOCK_REALTIME, &machine);
    EXPECT_LE(std::abs(netGetLocalTime() - zoneLocalOf(machine.tv_sec)), 1);
}

TEST_F(PhoneZone, ADifferenceOfMoreThanCenturiesBackIsLeftAlone)
{
    nuxSetRegistryString(SYSTEM_FILE, "LocalTime", "nAheadMs", "-7000000000000");
    store("", "");
    timespec machine;
    clock_gettime(CLOCK_REALTIME, &machine);
    EXPECT_LE(std::abs(netGetLocalTime() - zoneLocalOf(machine.tv_sec)), 1);
}
