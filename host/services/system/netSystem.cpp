#include "host/services/system/hostLog.h"
#include "host/services/system/netWorld.h"
#include "host/services/system/shellCommand.h"
#include "host/services/system/thisDevice.h"
#include "support/host/clock.h"
#include "support/host/net.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include <atomic>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <sys/reboot.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

// What the phone's clock is ahead of the machine's, in seconds: a machine with a device root keeps its own
// clock, whatever the phone sets.
std::atomic<long> g_ahead{0};

void (*g_pRestart)() = nullptr;

long machineLocalTime()
{
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    tm parts = {};
    localtime_r(&now.tv_sec, &parts);
    return timegm(&parts);
}

bool isDate(const chTime& time, int year, int month, int day, int hour, int minute, int second)
{
    return time.GetYear() == year && time.GetMonth() == month && time.GetDay() == day &&
           time.GetHour() == hour && time.GetMinute() == minute && time.GetSecond() == second;
}

void setMachineClock(long localSeconds)
{
    time_t local = localSeconds;
    tm parts = {};
    gmtime_r(&local, &parts);
    parts.tm_isdst = -1;
    const timeval now = {mktime(&parts), 0};
    if (settimeofday(&now, nullptr) != 0)
        nuxTrace(TRACE_NOTE, "The clock cannot be set: %s", strerror(errno));
    else
        shellCommand::start("hwclock -w -u");
}

} // namespace

long netGetLocalTime()
{
    return machineLocalTime() + g_ahead;
}

void netWorldSetClock(long localSeconds)
{
    g_ahead = localSeconds - machineLocalTime();
}

void netWorldSetRestart(void (*restart)())
{
    g_pRestart = restart;
}

void netSetLocalTime(int year, int month, int day, int hour, int minute, int second)
{
    const chTime time(year, month, day, hour, minute, second);
    if (!isDate(time, year, month, day, hour, minute, second)) {
        nuxTrace(TRACE_NOTE, "%d-%d-%d %d:%d:%d is no time to set the clock to", year, month, day, hour,
                 minute, second);
        return;
    }
    hostLog("clock", toQString(time.Format("%Y-%m-%d %H:%M:%S")));
    if (isThisDevice())
        setMachineClock(time.GetTime());
    else
        netWorldSetClock(time.GetTime());
}

void sysreboot(int mode)
{
    hostLog("reboot", QString::number(mode));
    if (!isThisDevice()) {
        nuxTrace(TRACE_NOTE, "The phone restarts, the machine does not");
        if (g_pRestart)
            g_pRestart();
        return;
    }
    sync();
    if (reboot(RB_AUTOBOOT) != 0)
        nuxTrace(TRACE_NOTE, "The phone cannot be restarted: %s", strerror(errno));
}

int sysCommand(const char* command)
{
    if (!command || !*command)
        return -1;
    hostLog("command", QString::fromUtf8(command));
    if (!isThisDevice() && shellCommand::stopsMachine(command)) {
        nuxTrace(TRACE_NOTE, "\"%s\" would stop or restart the phone now", command);
        return 0;
    }
    return shellCommand::run(command);
}
