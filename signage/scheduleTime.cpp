#include "signage/scheduleTime.h"
#include "support/host/net.h"
#include "support/host/registry.h"
#include "support/host/zone.h"
#include <algorithm>
#include <cstdio>

namespace {

constexpr int kYearLimit = 9999;
constexpr int kFieldLimit = 100000; // of the others, so that no sum leaves the range

int within(int value, int limit)
{
    return std::clamp(value, -limit, limit);
}

// A moment of UTC in the phone's zone: its hours, and its summer time where the phone knows the rules.
chTime phoneTime(const chTime& utc)
{
    const chString zone =
        NUX_SubClass::nuxGetRegistryString("/rundata/config/system.ini", "LocalTime", "strTimeName", "0");
    return utc + chTimeSpan(zoneSeconds(zone) + netGetSummerTime(utc.GetTime()));
}

} // namespace

chTime str2Time(const char* text)
{
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    // Nine digits always fit into an int.
    sscanf(text ? text : "", "%9d-%9d-%9d %9d:%9d:%9d", &year, &month, &day, &hour, &minute, &second);
    return chTime(within(year, kYearLimit), within(month, kFieldLimit), within(day, kFieldLimit),
                  within(hour, kFieldLimit), within(minute, kFieldLimit), within(second, kFieldLimit));
}

bool IsScheduleValid(const chTime& from, const chTime& to)
{
    const chTime now(netGetLocalTime());
    return from <= now && now <= to;
}

bool IsSchedulePassed(const chTime& to)
{
    return to < chTime(netGetLocalTime());
}

void scheduleWindow(const chString& fromdt, const chString& todt, const chString& eventType, chTime& from,
                    chTime& to)
{
    const bool isUtc = eventType == "sametime";
    from = isUtc ? phoneTime(str2Time(fromdt)) : str2Time(fromdt);
    to = isUtc ? phoneTime(str2Time(todt)) : str2Time(todt);
}
