#include "host/services/keyfiles/sharedGeneration.h"
#include "support/file/deviceRoot.h"
#include "support/file/path.h"
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

static_assert(std::atomic<uint64_t>::is_always_lock_free, "the number lies in memory of several processes");

namespace {

constexpr uint64_t kRetryMs = 1000;
constexpr size_t kSize = sizeof(std::atomic<uint64_t>);

int openNumber()
{
    // The run folder is made on a phone's file system only, never on that of a machine that is none.
    if (!pathIsDirectory("/rundata") || !pathMakeDirectories("/rundata/run"))
        return -1;
    return open(devicePath("/rundata/run/registry.gen"), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
}

// Room is taken on the disk, since a write into a hole of a full disk would end the process.
bool hasRoom(int fd)
{
    struct stat info;
    return fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && posix_fallocate(fd, 0, kSize) == 0;
}

} // namespace

sharedGeneration::~sharedGeneration()
{
    Unmap();
}

void sharedGeneration::Follow(unsigned rootNumber, uint64_t nowMs)
{
    const bool sameRoot = rootNumber == m_nRoot;
    if (sameRoot && (m_pShared || nowMs - m_nTriedAt < kRetryMs))
        return;
    m_nRoot = rootNumber;
    m_nTriedAt = nowMs;
    Unmap();
    Map();
}

void sharedGeneration::CountUp()
{
    m_own.fetch_add(1);
    if (m_pShared)
        m_pShared->fetch_add(1, std::memory_order_acq_rel);
}

void sharedGeneration::Map()
{
    const int fd = openNumber();
    if (fd < 0)
        return;
    if (hasRoom(fd)) {
        void* place = mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
        if (place != MAP_FAILED)
            m_pShared = static_cast<std::atomic<uint64_t>*>(place);
    }
    close(fd);
}

void sharedGeneration::Unmap()
{
    if (m_pShared)
        munmap(m_pShared, kSize);
    m_pShared = nullptr;
}
