#include "support/file/chFileImport.h"

#include "support/file/chAtomicFile.h"
#include "support/file/deviceRoot.h"
#include "support/file/diskFolder.h"

#include <errno.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const size_t BLOCK_SIZE = 256 * 1024; // between two looks at a cancel

void removeLink(const char* path)
{
    const chString file = devicePathFollowFolder(path);
    struct stat info;
    if (lstat(file, &info) == 0 && S_ISLNK(info.st_mode))
        unlink(file);
}

} // namespace

int chFileImport::Run()
{
    const int fd = diskOpenFile(m_strSource.c_str());
    if (fd < 0)
        return 0;
    struct stat info;
    if (fstat(fd, &info) == 0)
        m_nSize = info.st_size;
    removeLink(m_strTarget.c_str());
    chAtomicFile target;
    const bool copied = target.Open(m_strTarget.c_str()) && CopyTo(target, fd);
    close(fd);
    int copying = COPYING;
    return copied && m_eState.compare_exchange_strong(copying, COMPLETE) && target.Commit(0);
}

// The end of the source is its last byte, whatever its size was at the beginning.
bool chFileImport::CopyTo(chAtomicFile& target, int fd)
{
    posix_fadvise(fd, 0, 0, POSIX_FADV_SEQUENTIAL);
    const std::unique_ptr<char[]> block(new char[BLOCK_SIZE]);
    while (m_eState == COPYING) {
        const ssize_t count = read(fd, block.get(), BLOCK_SIZE);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return count == 0;
        if (!target.Write(block.get(), size_t(count)))
            return false;
        m_nDone += count;
    }
    return false;
}

int chFileImport::Cancel()
{
    int copying = COPYING;
    return m_eState.compare_exchange_strong(copying, CANCELLED) || copying == CANCELLED;
}

int chFileImport::Percent() const
{
    const long long size = m_nSize;
    const long long done = m_nDone;
    return size <= 0 || done >= size ? (done > 0 ? 100 : 0) : int(done * 100 / size);
}
