#include "signage/scheduleTime.h"
#include "support/host/net.h"
#include "support/host/registry.h"
#include <algorithm>
#include <cstdio>

namespace {

constexpr int kYearLimit = 9999;
constexpr int kFieldLimit = 100000; // of the others, so that no sum leaves the range
constexpr long kHourSeconds = 3600;

int within(int value, int limit)
{
    return std::clamp(value, -limit, limit);
}

// Hours that the phone's zone is ahead.
long zoneHours()
{
    const int hours = nuxGetRegistryInt("/rundata/config/system.ini", "LocalTime", "strTimeName", 0);
    return within(hours, kFieldLimit);
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
    const chTimeSpan shift(eventType == "sametime" ? zoneHours() * kHourSeconds : 0);
    from = str2Time(fromdt) + shift;
    to = str2Time(todt) + shift;
}
