#include "host/services/system/phoneClock.h"
#include "host/services/system/hostLog.h"
#include "host/services/system/netWorld.h"
#include "host/services/system/phoneZone.h"
#include "host/services/system/shellCommand.h"
#include "host/services/system/thisDevice.h"
#include "support/host/clock.h"
#include "support/host/net.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

namespace {

constexpr long long kMsPerSecond = 1000;
constexpr long kNanosecondsPerMs = 1000000;
constexpr long long kNotWorthStoring = kMsPerSecond; // what nobody sees on a clock of minutes
constexpr long long kLargestAhead = 200LL * 366 * 86400 * kMsPerSecond;
const char* const kSystemIni = "/rundata/config/system.ini";
const char* const kSection = "LocalTime";
const char* const kAheadKey = "nAheadMs";

long long storedAhead()
{
    const chString text = NUX_SubClass::nuxGetRegistryString(kSystemIni, kSection, kAheadKey, "0");
    const long long ahead = strtoll(text, nullptr, 10);
    return ahead >= -kLargestAhead && ahead <= kLargestAhead ? ahead : 0;
}

// What the phone's clock is ahead of the machine's, in milliseconds. Read when a clock is asked for first.
std::atomic<long long>& ahead()
{
    static std::atomic<long long> value{isThisDevice() ? 0 : storedAhead()};
    return value;
}

long long machineMs()
{
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    return now.tv_sec * kMsPerSecond + now.tv_nsec / kNanosecondsPerMs;
}

long secondsOf(long long ms)
{
    return long(ms >= 0 ? ms / kMsPerSecond : -((-ms + kMsPerSecond - 1) / kMsPerSecond));
}

bool store(long long value)
{
    if (std::llabs(storedAhead() - value) < kNotWorthStoring ||
        nuxSetRegistryString(kSystemIni, kSection, kAheadKey, std::to_string(value).c_str()))
        return true;
    nuxTrace(TRACE_NOTE, "The clock cannot be stored");
    return false;
}

bool setClock(long long utcMs)
{
    const long long wanted = utcMs - machineMs();
    if (!store(wanted))
        return false;
    ahead() = wanted;
    return true;
}

bool setMachineClock(long long utcMs)
{
    const timespec now = {time_t(secondsOf(utcMs)), long(utcMs % kMsPerSecond) * kNanosecondsPerMs};
    if (clock_settime(CLOCK_REALTIME, &now) != 0) {
        nuxTrace(TRACE_NOTE, "The clock cannot be set: %s", strerror(errno));
        return false;
    }
    shellCommand::start("hwclock -w -u");
    return true;
}

bool isDate(const chTime& time, int year, int month, int day, int hour, int minute, int second)
{
    return time.GetYear() == year && time.GetMonth() == month && time.GetDay() == day &&
           time.GetHour() == hour && time.GetMinute() == minute && time.GetSecond() == second;
}

} // namespace

long long phoneClockUtcMs()
{
    return machineMs() + ahead();
}

// What cannot be stored is asked for again after the next start.
void phoneClockFollowUtcMs(long long utcMs)
{
    if (isThisDevice()) {
        setMachineClock(utcMs);
        return;
    }
    ahead() = utcMs - machineMs();
    store(ahead());
}

long netGetLocalTime()
{
    return zoneLocalOf(secondsOf(phoneClockUtcMs()));
}

long netGetSummerTime(long utcSeconds)
{
    return zoneSummerSeconds(utcSeconds);
}

void netWorldSetClock(long localSeconds)
{
    ahead() = zoneUtcOf(localSeconds) * kMsPerSecond - machineMs();
}

int netSetLocalTime(int year, int month, int day, int hour, int minute, int second)
{
    const chTime time(year, month, day, hour, minute, second);
    if (!isDate(time, year, month, day, hour, minute, second)) {
        nuxTrace(TRACE_NOTE, "%d-%d-%d %d:%d:%d is no time to set the clock to", year, month, day, hour,
                 minute, second);
        return 0;
    }
    hostLog("clock", toQString(time.Format("%Y-%m-%d %H:%M:%S")));
    const long long utcMs = zoneUtcOf(time.GetTime()) * kMsPerSecond;
    return isThisDevice() ? setMachineClock(utcMs) : setClock(utcMs);
}
