#include "host/services/keyfiles/mappedNumber.h"
#include <csignal>
#include <fcntl.h>
#include <mutex>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

static_assert(std::atomic<uint64_t>::is_always_lock_free, "the number lies in memory of several processes");

namespace {

constexpr size_t kSize = sizeof(std::atomic<uint64_t>);
constexpr int kPlaces = 16;

// What the handler of the signal may touch: nothing but atomic words.
struct Page
{
    std::atomic<uintptr_t> start{0}; // 0: free
    std::atomic<bool> lost{false};
};
Page g_pages[kPlaces];
struct sigaction g_before;
const uintptr_t g_pageSize = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));

// True when the page is ours and there is memory at its place again.
bool mend(uintptr_t address)
{
    const uintptr_t start = address & ~(g_pageSize - 1);
    for (Page& page : g_pages) {
        if (start == 0 || page.start != start)
            continue;
        page.lost = true;
        return mmap(reinterpret_cast<void*>(start), g_pageSize, PROT_READ | PROT_WRITE,
                    MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) != MAP_FAILED;
    }
    return false;
}

void onBusError(int number, siginfo_t* info, void* context)
{
    if (mend(reinterpret_cast<uintptr_t>(info->si_addr)))
        return;
    if ((g_before.sa_flags & SA_SIGINFO) && g_before.sa_sigaction)
        g_before.sa_sigaction(number, info, context);
    else if (g_before.sa_handler != SIG_DFL && g_before.sa_handler != SIG_IGN)
        g_before.sa_handler(number);
    else
        sigaction(number, &g_before, nullptr); // the fault comes again, and ends the process as it should
}

void installHandler()
{
    static std::once_flag once;
    std::call_once(once, [] {
        struct sigaction action = {};
        action.sa_sigaction = onBusError;
        action.sa_flags = SA_SIGINFO | SA_NODEFER;
        sigaction(SIGBUS, &action, &g_before);
    });
}

int takePlace(uintptr_t start)
{
    for (int i = 0; i < kPlaces; ++i) {
        uintptr_t none = 0;
        if (!g_pages[i].start.compare_exchange_strong(none, start))
            continue;
        g_pages[i].lost = false; // nobody looks at the page yet
        return i;
    }
    return -1;
}

// Room is taken on the disk, since a write into a hole of a full disk would be a bus error too.
bool hasRoom(int fd)
{
    struct stat info;
    return fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && posix_fallocate(fd, 0, kSize) == 0;
}

} // namespace

bool mappedNumber::Map(int fd)
{
    Unmap();
    if (!hasRoom(fd))
        return false;
    void* place = mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (place == MAP_FAILED)
        return false;
    installHandler();
    m_nPlace = takePlace(reinterpret_cast<uintptr_t>(place));
    if (m_nPlace < 0) {
        munmap(place, kSize);
        return false;
    }
    m_pNumber = static_cast<std::atomic<uint64_t>*>(place);
    return true;
}

void mappedNumber::Unmap()
{
    if (!m_pNumber)
        return;
    munmap(m_pNumber, kSize);
    g_pages[m_nPlace].start = 0;
    m_pNumber = nullptr;
}

bool mappedNumber::IsLost() const
{
    return m_pNumber && g_pages[m_nPlace].lost;
}
