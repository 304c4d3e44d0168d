// The test program's own clock_gettime: the toolkit's timers and our own read all time through it, so
// that a test moves time instead of waiting for it.
#include "tests/kit/kitTime.h"
#include <atomic>
#include <ctime>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr long long kNanosecondsPerMs = 1000000;
constexpr long long kNanosecondsPerSecond = 1000000000;
constexpr clockid_t kMoved[] = {CLOCK_REALTIME, CLOCK_MONOTONIC, CLOCK_REALTIME_COARSE,
                                CLOCK_MONOTONIC_COARSE, CLOCK_BOOTTIME};

// One number for each clock, so that a thread that reads sees the clock before or after a change: what it is
// ahead of the machine's, or where it is held, in nanoseconds times two, with 1 for a clock that is held.
std::atomic<long long> g_clocks[CLOCK_BOOTTIME + 1];
bool g_areHeld = false;

bool isMoved(clockid_t id)
{
    for (const clockid_t moved : kMoved) {
        if (id == moved)
            return true;
    }
    return false;
}

long long machineTime(clockid_t id)
{
    timespec time = {};
    syscall(SYS_clock_gettime, id, &time);
    return time.tv_sec * kNanosecondsPerSecond + time.tv_nsec;
}

} // namespace

void kit::moveClocks(long long ms)
{
    for (const clockid_t id : kMoved)
        g_clocks[id] += ms * kNanosecondsPerMs * 2;
}

bool kit::areClocksHeld()
{
    return g_areHeld;
}

void kit::holdClocks(bool isHeld)
{
    if (isHeld == g_areHeld)
        return;
    g_areHeld = isHeld;
    for (const clockid_t id : kMoved) {
        const long long machine = machineTime(id) * 2;
        g_clocks[id] += isHeld ? machine + 1 : -machine - 1;
    }
}

extern "C" __attribute__((visibility("default"))) int clock_gettime(clockid_t id, struct timespec* time)
#ifdef __GLIBC__
    noexcept
#endif
{
    const long result = syscall(SYS_clock_gettime, id, time);
    if (result == 0 && isMoved(id)) {
        const long long clock = g_clocks[id];
        const bool isHeld = clock & 1;
        const long long machine = isHeld ? 0 : time->tv_sec * kNanosecondsPerSecond + time->tv_nsec;
        const long long now = (clock - (isHeld ? 1 : 0)) / 2 + machine;
        time->tv_sec = now / kNanosecondsPerSecond;
        time->tv_nsec = now % kNanosecondsPerSecond;
    }
    return static_cast<int>(result);
}
