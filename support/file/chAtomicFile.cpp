#include "support/file/chAtomicFile.h"

#include "support/file/deviceRoot.h"
#include "support/file/fileSystemCalls.h"
#include "support/file/keepAside.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <sys/file.h>
#include <sys/random.h>
#include <unistd.h>

namespace {

const int SLOT_COUNT = 16;             // saves of one file at a time
const size_t NAME_IN_TEMPORARY = 200;  // leaves room for what is put around it in a name of 255 bytes
const char TEMPORARY_MARK[] = ".save"; // behind the file's name, then the slot
const mode_t MODE_BITS = 07777;
const mode_t NEW_FILE_MODE = 0666; // less the process's mask

const fileSystemCalls& sys()
{
    return fileGetSystemCalls();
}

enum class Claim { MINE, LOST, FAILED };

Claim lockFile(int fd)
{
    if (sys().flock(fd, LOCK_EX | LOCK_NB) == 0)
        return Claim::MINE;
    return errno == EWOULDBLOCK ? Claim::LOST : Claim::FAILED;
}

// Locks the file that was just made and looks whether it is still there: a rival may have taken it for a
// stale one in between, and removed it.
Claim claimMade(int fd)
{
    struct stat made;
    const Claim claim = lockFile(fd);
    if (claim != Claim::MINE)
        return claim;
    if (sys().fstat(fd, &made) != 0)
        return Claim::FAILED;
    return made.st_nlink > 0 ? Claim::MINE : Claim::LOST;
}

// Locks a file that was found and looks whether it still is the one of that name: whoever made it may have
// put it in its place in between.
Claim claimFound(int fd, const char* path)
{
    struct stat opened, named;
    const Claim claim = lockFile(fd);
    if (claim != Claim::MINE)
        return claim;
    if (sys().fstat(fd, &opened) != 0)
        return Claim::FAILED;
    if (sys().lstat(path, &named) != 0)
        return errno == ENOENT ? Claim::LOST : Claim::FAILED;
    return opened.st_ino == named.st_ino && opened.st_dev == named.st_dev ? Claim::MINE : Claim::LOST;
}

} // namespace

int chAtomicFile::Open(const char* path, mode_t mode)
{
    Abandon();
    m_nMode = mode;
    SetTarget(devicePathFollow(path).GetText());
    return LookAtTarget() && (m_ePlace == PLACE_OURS ? OpenTemporary() : OpenUnguessable());
}

int chAtomicFile::OpenUnfinished(const char* path)
{
    Abandon();
    SetTarget(devicePathFollowFolder(path).GetText());
    return m_ePlace == PLACE_OURS ? OpenInPlace() : Open(path);
}

void chAtomicFile::SetTarget(const char* machinePath)
{
    m_strTarget = machinePath;
    const size_t slash = m_strTarget.rfind('/');
    m_strFolder = slash == std::string::npos ? "." : slash == 0 ? "/" : m_strTarget.substr(0, slash);
    m_ePlace = filePlaceOf(m_strTarget.c_str());
}

// A file of its own also where one is there: what still writes to that one does not write to this.
bool chAtomicFile::OpenInPlace()
{
    m_nMode = 0;
    m_bReplaces = false;
    m_strTemporary = m_strTarget;
    m_nFd = MakeTemporary();
    if (m_nFd < 0 && errno == EEXIST && sys().unlink(m_strTarget.c_str()) == 0)
        m_nFd = MakeTemporary();
    return m_nFd >= 0;
}

bool chAtomicFile::LookAtTarget()
{
    m_bReplaces = sys().lstat(m_strTarget.c_str(), &m_old) == 0;
    if (!m_bReplaces)
        return errno == ENOENT;
    if (m_ePlace != PLACE_OURS)
        return LookAtSharedTarget();
    // A rename would replace a file that is not to be written to, so that is asked before.
    const bool writable = (m_old.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) != 0;
    return S_ISREG(m_old.st_mode) && writable && sys().access(m_strTarget.c_str(), W_OK) == 0;
}

// Whatever a stranger has put there makes room for the file, if it can: nothing of it is taken over.
bool chAtomicFile::LookAtSharedTarget()
{
    m_bReplaces = S_ISREG(m_old.st_mode) && fileIsTrusted(m_old) && m_old.st_nlink == 1;
    return m_ePlace == PLACE_SHARED && !S_ISDIR(m_old.st_mode);
}

// Where anybody may make files, a name that he can guess is one that he can take.
bool chAtomicFile::OpenUnguessable()
{
    const std::string name = m_strTarget.substr(m_strTarget.rfind('/') + 1, NAME_IN_TEMPORARY);
    for (int i = 0; i < SLOT_COUNT && m_ePlace == PLACE_SHARED; ++i) {
        unsigned long long number;
        if (getrandom(&number, sizeof number, 0) != ssize_t(sizeof number))
            return false;
        char digits[2 * sizeof number + 1];
        snprintf(digits, sizeof digits, "%016llx", number);
        m_strTemporary = m_strFolder + "/." + name + "." + digits;
        m_nFd = MakeTemporary();
        if (m_nFd >= 0 || errno != EEXIST)
            return m_nFd >= 0;
    }
    return false;
}

// The names of temporary files are few and fixed, so those that a killed process leaves behind are
// found and removed by the next save of the file. A lock tells them from those in use.
bool chAtomicFile::OpenTemporary()
{
    const std::string name = m_strTarget.substr(m_strTarget.rfind('/') + 1, NAME_IN_TEMPORARY);
    for (int slot = 0; slot < SLOT_COUNT; ++slot) {
        m_strTemporary = m_strFolder + "/." + name + TEMPORARY_MARK + std::to_string(slot);
        m_nFd = CreateTemporary();
        if (m_nFd < 0 && errno != EEXIST)
            return false;
        if (m_nFd < 0)
            continue;
        const Claim claim = claimMade(m_nFd);
        if (claim == Claim::MINE)
            return true;
        if (claim == Claim::FAILED) {
            Abandon();
            return false;
        }
        sys().close(m_nFd);
        m_nFd = -1;
    }
    return false;
}

int chAtomicFile::CreateTemporary() const
{
    const int fd = MakeTemporary();
    return fd >= 0 || errno != EEXIST || !RemoveStale(m_strTemporary.c_str()) ? fd : MakeTemporary();
}

int chAtomicFile::MakeTemporary() const
{
    const int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
    return sys().open(m_strTemporary.c_str(), flags, m_nMode ? m_nMode : NEW_FILE_MODE);
}

// Keeps errno as EEXIST when the file is in use.
bool chAtomicFile::RemoveStale(const char* path)
{
    const int fd = sys().open(path, O_WRONLY | O_CLOEXEC | O_NOFOLLOW, 0);
    const bool removed = fd >= 0 && claimFound(fd, path) == Claim::MINE && sys().unlink(path) == 0;
    if (fd >= 0)
        sys().close(fd);
    errno = EEXIST;
    return removed;
}

void chAtomicFile::Sweep(const char* folder)
{
    const std::string place = devicePathFollow(folder).GetText();
    DIR* entries = filePlaceOf((place + "/a").c_str()) == PLACE_OURS ? opendir(place.c_str()) : nullptr;
    while (const dirent* entry = entries ? readdir(entries) : nullptr) {
        const std::string name = entry->d_name;
        const size_t mark = name.rfind(TEMPORARY_MARK);
        const bool isTemporary =
            name[0] == '.' && mark != std::string::npos && mark > 0 &&
            name.find_first_not_of("0123456789", mark + strlen(TEMPORARY_MARK)) == std::string::npos;
        if (isTemporary)
            RemoveStale((place + "/" + name).c_str());
    }
    if (entries)
        closedir(entries);
}

int chAtomicFile::Write(const char* data, size_t size)
{
    if (m_nFd < 0)
        return 0;
    while (size > 0) {
        const ssize_t written = sys().write(m_nFd, data, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return 0;
        data += written;
        size -= size_t(written);
    }
    return 1;
}

int chAtomicFile::Commit(int bFlush)
{
    if (m_nFd < 0)
        return 0;
    const bool done = TakeOverOwner() && (!bFlush || FlushData()) && Publish(bFlush != 0);
    if (!done) {
        Abandon();
        return 0;
    }
    sys().close(m_nFd);
    m_nFd = -1;
    return 1;
}

bool chAtomicFile::TakeOverOwner() const
{
    if (!m_bReplaces)
        return true;
    struct stat made;
    if (sys().fstat(m_nFd, &made) != 0)
        return false;
    // Only the superuser may give a file away; anybody else's save makes the file his own.
    if (made.st_uid != m_old.st_uid || made.st_gid != m_old.st_gid)
        if (sys().fchown(m_nFd, m_old.st_uid, m_old.st_gid) != 0 && errno != EPERM)
            return false;
    return sys().fchmod(m_nFd, m_nMode ? m_nMode : m_old.st_mode & MODE_BITS) == 0;
}

// Some file systems tell of a failed write only when a file is closed, so a copy of the descriptor is.
bool chAtomicFile::FlushData() const
{
    if (sys().fsync(m_nFd) != 0)
        return false;
    const int copy = sys().dup(m_nFd);
    return copy >= 0 && sys().close(copy) == 0;
}

int chAtomicFile::FlushFolder() const
{
    const int folder = OpenFolder();
    if (folder < 0)
        return 0;
    const bool flushed = sys().fsync(folder) == 0;
    sys().close(folder);
    return flushed;
}

int chAtomicFile::OpenFolder() const
{
    return sys().open(m_strFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
}

bool chAtomicFile::Publish(bool flush) const
{
    if (!flush)
        return PutInPlace();
    const int folder = OpenFolder();
    if (folder < 0)
        return false;
    const bool renamed = PutInPlace();
    // The new file is in force now and whole; the disk can only be late with its name.
    if (renamed && sys().fsync(folder) != 0)
        fileReport(("the folder of " + m_strTarget + " could not be flushed").c_str());
    sys().close(folder);
    return renamed;
}

bool chAtomicFile::PutInPlace() const
{
    return m_strTemporary == m_strTarget ? IsInPlace()
                                         : sys().rename(m_strTemporary.c_str(), m_strTarget.c_str()) == 0;
}

// One that grows in its place may have given way to another's.
bool chAtomicFile::IsInPlace() const
{
    struct stat mine, named;
    return sys().fstat(m_nFd, &mine) == 0 && sys().lstat(m_strTarget.c_str(), &named) == 0 &&
           mine.st_ino == named.st_ino && mine.st_dev == named.st_dev;
}

void chAtomicFile::RemoveTemporary() const
{
    if (m_strTemporary != m_strTarget || IsInPlace())
        sys().unlink(m_strTemporary.c_str());
}

void chAtomicFile::Abandon()
{
    if (m_nFd < 0)
        return;
    RemoveTemporary();
    sys().close(m_nFd);
    m_nFd = -1;
}
