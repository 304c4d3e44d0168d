#include "host/services/keyfiles/sharedGeneration.h"
#include "host/services/system/runFolder.h"
#include "support/file/path.h"
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr uint64_t kRetryMs = 1000;

int openNumber()
{
    // The run folder is made on a phone's file system only, never on that of a machine that is none.
    if (!pathIsDirectory("/rundata") || !runFolder::make())
        return -1;
    const std::string file = runFolder::path() + "/registry.gen";
    return open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
}

} // namespace

void sharedGeneration::Follow(unsigned rootNumber, uint64_t nowMs)
{
    const bool sameRoot = rootNumber == m_nRoot;
    const bool lost = m_number.IsLost();
    if (sameRoot && !lost && (IsShared() || nowMs - m_nTriedAt < kRetryMs))
        return;
    m_nRoot = rootNumber;
    m_nTriedAt = nowMs;
    Map();
}

void sharedGeneration::CountUp()
{
    m_own.fetch_add(1);
    if (IsShared())
        m_number.CountUp();
    if (!m_number.IsLost())
        return;
    // Counted where nobody sees it: the file was cut short.
    Map();
    if (IsShared())
        m_number.CountUp();
}

void sharedGeneration::Map()
{
    m_number.Unmap();
    const int fd = openNumber();
    if (fd < 0)
        return;
    m_number.Map(fd);
    close(fd);
}
