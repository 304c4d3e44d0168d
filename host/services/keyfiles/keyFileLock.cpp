#include "host/services/keyfiles/keyFileLock.h"
#include "support/file/fileSystemCalls.h"
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char* kName = "/.registry.lock";
constexpr mode_t kMode = 0600;
constexpr mode_t kOthers = 0077;
constexpr long kPauseNs = 200 * 1000; // between two attempts

long long nowUs()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * 1000000LL + now.tv_nsec / 1000;
}

} // namespace

keyFileLock::keyFileLock(const std::string& folder)
{
    const int flags = O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    m_nFd = fileGetSystemCalls().open((folder + kName).c_str(), flags, kMode);
    if (m_nFd < 0 || !IsOurs(folder))
        return;
    const long long deadlineUs = nowUs() + WAIT_MS * 1000LL;
    if (!Take(NEXT, deadlineUs))
        return;
    m_bTaken = Take(WORK, deadlineUs);
    Set(NEXT, F_UNLCK);
}

keyFileLock::~keyFileLock()
{
    if (m_bTaken)
        Set(WORK, F_UNLCK); // also when a child that was just started still has the descriptor
    if (m_nFd >= 0)
        fileGetSystemCalls().close(m_nFd);
}

bool keyFileLock::IsOurs(const std::string& folder) const
{
    struct stat file, above;
    if (fstat(m_nFd, &file) != 0 || stat(folder.c_str(), &above) != 0 || !S_ISREG(file.st_mode))
        return false;
    // The superuser may work for the folder's owner.
    const bool owned = file.st_uid == geteuid() || (geteuid() == 0 && file.st_uid == above.st_uid);
    return owned && (!(file.st_mode & kOthers) || fchmod(m_nFd, kMode) == 0);
}

bool keyFileLock::Take(BYTE byte, long long deadlineUs)
{
    while (!Set(byte, F_WRLCK)) {
        m_bBusy = errno == EAGAIN || errno == EACCES;
        if ((!m_bBusy && errno != EINTR) || nowUs() >= deadlineUs)
            return false;
        const timespec pause = {0, kPauseNs};
        nanosleep(&pause, nullptr);
    }
    m_bBusy = false;
    return true;
}

// The lock belongs to the open file, not to the process, so it holds between threads as well.
bool keyFileLock::Set(BYTE byte, short type) const
{
    struct flock place = {};
    place.l_type = type;
    place.l_whence = SEEK_SET;
    place.l_start = byte;
    place.l_len = 1;
    return fcntl(m_nFd, F_OFD_SETLK, &place) == 0;
}
