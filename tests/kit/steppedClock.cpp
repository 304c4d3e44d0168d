// The test program's own clock_gettime: the toolkit's timers and our own read all time through it, so
// that a test moves time instead of waiting for it.
#include "tests/kit/kitTime.h"
#include <atomic>
#include <ctime>
#include <sys/syscall.h>
#include <unistd.h>

namespace {
std::atomic<long long> g_movedMs{0};
constexpr long kNanosecondsPerSecond = 1000000000L;
} // namespace

void kit::moveClocks(long long ms)
{
    g_movedMs += ms;
}

extern "C" __attribute__((visibility("default"))) int clock_gettime(clockid_t id, struct timespec* time)
#ifdef __GLIBC__
    noexcept
#endif
{
    const long result = syscall(SYS_clock_gettime, id, time);
    const bool isWallTime = id == CLOCK_MONOTONIC || id == CLOCK_MONOTONIC_COARSE || id == CLOCK_BOOTTIME ||
                            id == CLOCK_REALTIME || id == CLOCK_REALTIME_COARSE;
    if (result == 0 && isWallTime) {
        const long long moved = g_movedMs;
        time->tv_sec += moved / 1000;
        time->tv_nsec += (moved % 1000) * 1000000L;
        if (time->tv_nsec >= kNanosecondsPerSecond) {
            time->tv_nsec -= kNanosecondsPerSecond;
            ++time->tv_sec;
        }
    }
    return static_cast<int>(result);
}
