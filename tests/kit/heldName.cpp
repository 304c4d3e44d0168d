// The test program's own calls of the system that reach for the files of a disk.
#include "tests/kit/heldName.h"
#include <atomic>
#include <condition_variable>
#include <cstdarg>
#include <ctime>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <mutex>
#include <sys/syscall.h>
#include <unistd.h>

#define HX_IN_PLACE_OF_THE_SYSTEMS extern "C" __attribute__((visibility("default")))

namespace {

constexpr double kQuickMs = 250;
constexpr int kTries = 20;

struct tagHeld
{
    std::mutex lock;
    std::condition_variable changed;
    std::string end; // empty: nothing is held
    int waiting = 0;
};

tagHeld& held()
{
    static tagHeld* all = new tagHeld; // threads may outlive the program's end
    return *all;
}

std::atomic<int> g_entries{0};
std::atomic<int> g_closed{0};

bool isHeld(const std::string& name)
{
    const std::string& end = held().end;
    return !end.empty() && name.size() >= end.size() &&
           name.compare(name.size() - end.size(), end.size(), end) == 0;
}

void pass(const char* name)
{
    std::unique_lock<std::mutex> guard(held().lock);
    if (!isHeld(name))
        return;
    ++held().waiting;
    held().changed.notify_all();
    held().changed.wait(guard, [] { return held().end.empty(); });
    --held().waiting;
    held().changed.notify_all();
}

int openAt(int folder, const char* path, int flags, va_list rest)
{
    const mode_t mode = flags & (O_CREAT | __O_TMPFILE) ? va_arg(rest, mode_t) : 0;
    pass(path);
    return int(syscall(SYS_openat, folder, path, flags, mode));
}

template <class T>
T systems(const char* name)
{
    return reinterpret_cast<T>(dlsym(RTLD_NEXT, name));
}

// A clock that no test moves.
double machineMs()
{
    timespec now = {};
    syscall(SYS_clock_gettime, CLOCK_MONOTONIC, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

} // namespace

kit::HeldName::HeldName(const std::string& end)
{
    const std::lock_guard<std::mutex> guard(held().lock);
    held().end = end;
}

kit::HeldName::~HeldName()
{
    release();
    std::unique_lock<std::mutex> guard(held().lock);
    held().changed.wait(guard, [] { return held().waiting == 0; });
}

void kit::HeldName::release()
{
    const std::lock_guard<std::mutex> guard(held().lock);
    held().end.clear();
    held().changed.notify_all();
}

int kit::HeldName::waiting() const
{
    const std::lock_guard<std::mutex> guard(held().lock);
    return held().waiting;
}

int kit::entriesRead()
{
    return g_entries;
}

int kit::foldersClosed()
{
    return g_closed;
}

bool kit::isQuick(const std::function<void()>& call, const std::function<void()>& prepare)
{
    for (int i = 0; i < kTries; ++i) {
        if (prepare)
            prepare();
        const double before = machineMs();
        call();
        if (machineMs() - before < kQuickMs)
            return true;
    }
    return false;
}

HX_IN_PLACE_OF_THE_SYSTEMS int open(const char* path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const int fd = openAt(AT_FDCWD, path, flags, rest);
    va_end(rest);
    return fd;
}

HX_IN_PLACE_OF_THE_SYSTEMS int openat(int folder, const char* path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const int fd = openAt(folder, path, flags, rest);
    va_end(rest);
    return fd;
}

HX_IN_PLACE_OF_THE_SYSTEMS int unlinkat(int folder, const char* path, int flags) noexcept
{
    pass(path);
    return int(syscall(SYS_unlinkat, folder, path, flags));
}

HX_IN_PLACE_OF_THE_SYSTEMS dirent* readdir(DIR* folder)
{
    static const auto real = systems<dirent* (*)(DIR*)>("readdir");
    ++g_entries;
    return real(folder);
}

HX_IN_PLACE_OF_THE_SYSTEMS int closedir(DIR* folder)
{
    static const auto real = systems<int (*)(DIR*)>("closedir");
    const int result = real(folder);
    ++g_closed;
    return result;
}
