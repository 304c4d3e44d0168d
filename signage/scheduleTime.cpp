#include "signage/scheduleTime.h"
#include "support/host/net.h"
#include "support/host/registry.h"
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <strings.h>

namespace {

constexpr int kYearLimit = 9999;
constexpr int kFieldLimit = 100000; // of the others, so that no sum leaves the range
constexpr long kHourSeconds = 3600;
constexpr long kMinuteSeconds = 60;
constexpr int kMinutesInHour = 60;
constexpr const char* kOldPrefix = "GMT";

int within(int value, int limit)
{
    return std::clamp(value, -limit, limit);
}

// Seconds that the phone's zone is ahead: "+05:30 ", "-3" or, as phones stored it once, "GMT+05:30 ".
long zoneSeconds()
{
    const chString zone =
        NUX_SubClass::nuxGetRegistryString("/rundata/config/system.ini", "LocalTime", "strTimeName", "0");
    const char* text = zone;
    text += strncasecmp(text, kOldPrefix, strlen(kOldPrefix)) == 0 ? strlen(kOldPrefix) : 0;
    int hours = 0, minutes = 0;
    // Without a colon right behind the hours there are no minutes.
    sscanf(text, "%9d:%2d", &hours, &minutes);
    const bool isBehind = text[strspn(text, " \t")] == '-';
    const long shift = std::clamp(minutes, 0, kMinutesInHour - 1) * kMinuteSeconds;
    return within(hours, kFieldLimit) * kHourSeconds + (isBehind ? -shift : shift);
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
    const chTimeSpan shift(eventType == "sametime" ? zoneSeconds() : 0);
    from = str2Time(fromdt) + shift;
    to = str2Time(todt) + shift;
}
