#include "support/file/fileTools.h"

#include "support/file/chAtomicFile.h"
#include "support/file/deviceRoot.h"
#include "support/file/path.h"
#include "support/file/sharedFolder.h"

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const size_t BLOCK_SIZE = 64 * 1024;
const long long NS_PER_SECOND = 1000000000;

// A pipe that nobody writes to would hold the caller for ever, so only files and devices are read.
int openToRead(const char* path, size_t& size)
{
    const int fd = fileOpenSafely(devicePathFollow(path), O_RDONLY | O_NONBLOCK, 0);
    struct stat info;
    if (fd < 0)
        return -1;
    if (fstat(fd, &info) == 0 && (S_ISREG(info.st_mode) || S_ISCHR(info.st_mode))) {
        size = size_t(info.st_size);
        return fd;
    }
    close(fd);
    errno = EINVAL;
    return -1;
}

bool isName(const char* name)
{
    return name[0] != 0 && strcmp(name, ".") != 0 && strcmp(name, "..") != 0;
}

// Where the second path leads, when the first one leads to source. In one folder, what it leads over is
// followed once.
chString besideIn(const chString& source, const char* from, const char* to)
{
    const char* const fromName = strrchr(from, '/');
    const char* const toName = strrchr(to, '/');
    const char* const place = strrchr(source, '/');
    const bool isBeside = fromName && toName && place && isName(fromName + 1) && isName(toName + 1) &&
                          fromName - from == toName - to && strncmp(from, to, size_t(toName - to)) == 0;
    if (!isBeside)
        return devicePathFollowFolder(to);
    return chString(source, int(place - source.GetText())) + toName;
}

// Why the last call of the system did not find a file.
FILE_READ notRead()
{
    return errno == ENOENT || errno == ENOTDIR ? FILE_READ_MISSING : FILE_READ_FAILED;
}

// Bytes read, 0 at the end of the file, -1 when reading failed.
ssize_t readSome(int fd, char* buffer, size_t size)
{
    ssize_t count;
    do
        count = read(fd, buffer, size);
    while (count < 0 && errno == EINTR);
    return count;
}

// The size that the file tells may be wrong, as it is with those of the kernel.
FILE_READ readToEnd(int fd, std::string& data, size_t size, size_t limit)
{
    size_t used = 0;
    size_t room = size + 1;
    for (;;) {
        data.resize(used + room);
        const ssize_t count = readSome(fd, &data[used], room);
        if (count <= 0) {
            data.resize(used);
            return count == 0 ? FILE_READ_DONE : FILE_READ_FAILED;
        }
        used += size_t(count);
        if (used > limit)
            return FILE_READ_TOO_LARGE;
        if (used == data.size())
            room = BLOCK_SIZE;
        else
            room = data.size() - used;
    }
}

bool copyToEnd(int fd, chAtomicFile& target)
{
    std::string block(BLOCK_SIZE, '\0');
    for (;;) {
        const ssize_t count = readSome(fd, &block[0], block.size());
        if (count <= 0)
            return count == 0;
        if (!target.Write(block.data(), size_t(count)))
            return false;
    }
}

} // namespace

int fileStat(const char* path, tagFileStat& result)
{
    return fileLook(path, result) == FILE_READ_DONE;
}

FILE_READ fileLook(const char* path, tagFileStat& result)
{
    const chString place = devicePathFollow(path);
    struct stat info;
    if (stat(place, &info) != 0)
        return notRead();
    result.nSize = info.st_size;
    result.nModifiedNs = info.st_mtim.tv_sec * NS_PER_SECOND + info.st_mtim.tv_nsec;
    result.nInode = info.st_ino;
    return FILE_READ_DONE;
}

long long fileSize(const char* path)
{
    tagFileStat info;
    return fileStat(path, info) ? info.nSize : -1;
}

int fileRemove(const char* path)
{
    return unlink(devicePathFollowFolder(path)) == 0;
}

int fileRename(const char* from, const char* to)
{
    const chString source = devicePathFollowFolder(from);
    return rename(source, besideIn(source, from, to)) == 0;
}

int fileFlushFolder(const char* path)
{
    const int fd = open(devicePathFollow(path), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return 0;
    const bool flushed = syncfs(fd) == 0;
    close(fd);
    return flushed;
}

void fileFlushAll()
{
    sync();
}

int fileCopy(const char* from, const char* to)
{
    size_t size = 0;
    const int fd = openToRead(from, size);
    if (fd < 0)
        return 0;
    chAtomicFile target;
    const bool copied = target.Open(to) && copyToEnd(fd, target) && target.Commit();
    close(fd);
    return copied;
}

FILE_READ fileRead(const char* path, std::string& data, size_t limit)
{
    data.clear();
    size_t size = 0;
    const int fd = openToRead(path, size);
    if (fd < 0)
        return notRead();
    const FILE_READ result = size <= limit ? readToEnd(fd, data, size, limit) : FILE_READ_TOO_LARGE;
    close(fd);
    if (result != FILE_READ_DONE)
        data = std::string();
    return result;
}

int fileOpenToRead(const char* path)
{
    size_t size = 0;
    return openToRead(path, size);
}

int fileReadWhole(const char* path, std::string& data, size_t limit)
{
    return fileRead(path, data, limit) == FILE_READ_DONE;
}

chString nuxDumpTextFileA(const char* path)
{
    std::string text;
    if (!fileReadWhole(path, text))
        return chString();
    return chString(text.data(), int(text.size()));
}

int fileMakeLink(const char* target, const char* link)
{
    chString folder = link;
    if (!pathRemoveFileSpec(folder) || !pathMakeDirectories(folder))
        return 0;
    const chString place = devicePathFollowFolder(link);
    char now[PATH_MAX];
    const ssize_t length = readlink(place, now, sizeof(now));
    if (length == ssize_t(strlen(target)) && memcmp(now, target, size_t(length)) == 0)
        return 1;
    const std::string beside = std::string(place.GetText()) + ".new";
    if (unlink(beside.c_str()) != 0 && errno != ENOENT)
        return 0;
    if (symlink(target, beside.c_str()) != 0)
        return 0;
    if (rename(beside.c_str(), place) == 0)
        return 1;
    unlink(beside.c_str());
    return 0;
}
