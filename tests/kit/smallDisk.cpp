// The test program's own statvfs: a disk is as full as a test needs it.
#include "tests/kit/smallDisk.h"
#include <atomic>
#include <sys/statvfs.h>

namespace {

std::atomic<long long> g_free{-1};

} // namespace

void kit::limitDisk(long long freeBytes)
{
    g_free = freeBytes;
}

extern "C" int __real_statvfs(const char* path, struct statvfs* info);
extern "C" int __wrap_statvfs(const char* path, struct statvfs* info);

int __wrap_statvfs(const char* path, struct statvfs* info)
{
    const int result = __real_statvfs(path, info);
    const long long bytes = g_free;
    if (result == 0 && bytes >= 0)
        info->f_bavail = static_cast<fsblkcnt_t>(bytes) / info->f_frsize;
    return result;
}
