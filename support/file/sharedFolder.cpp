#include "support/file/sharedFolder.h"

#include "support/file/deviceRoot.h"

#include <errno.h>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace {

int refuse(int fd)
{
    if (fd >= 0)
        close(fd);
    errno = EACCES;
    return -1;
}

int openShared(const char* path, int flags, mode_t mode)
{
    const int fd = open(path, (flags & ~O_TRUNC) | O_NOFOLLOW | O_NONBLOCK, mode);
    if (fd < 0)
        return -1;
    struct stat info;
    // A second name would make it a file from somewhere else.
    if (fstat(fd, &info) != 0 || !S_ISREG(info.st_mode) || !fileIsTrusted(info) || info.st_nlink != 1)
        return refuse(fd);
    if ((flags & O_TRUNC) && ftruncate(fd, 0) != 0)
        return refuse(fd);
    return fd;
}

bool isShared(const struct stat& info)
{
    return S_ISDIR(info.st_mode) && (info.st_mode & S_ISVTX) && (info.st_mode & S_IWOTH);
}

} // namespace

bool fileIsSharedFolder(const char* folder)
{
    struct stat info;
    return lstat(folder, &info) == 0 && isShared(info);
}

bool fileIsTrusted(const struct stat& info)
{
    return info.st_uid == geteuid() || info.st_uid == 0;
}

SHARED_PLACE filePlaceOf(const char* path)
{
    const std::string file = path;
    const std::string root = deviceGetRoot().GetText();
    if (file.compare(0, root.size() + 1, root + "/") != 0)
        return PLACE_OURS;
    bool shared = false;
    for (size_t end = root.size(); end != std::string::npos; end = file.find('/', end + 1)) {
        struct stat info;
        if (lstat(end == 0 ? "/" : file.substr(0, end).c_str(), &info) != 0)
            break;
        if (shared && (!S_ISDIR(info.st_mode) || !fileIsTrusted(info)))
            return PLACE_STRANGERS;
        shared = shared || isShared(info);
    }
    return shared ? PLACE_SHARED : PLACE_OURS;
}

int fileOpenSafely(const char* path, int flags, mode_t mode)
{
    const SHARED_PLACE place = filePlaceOf(path);
    if (place == PLACE_STRANGERS)
        return refuse(-1);
    flags |= O_CLOEXEC;
    return place == PLACE_SHARED ? openShared(path, flags, mode) : open(path, flags, mode);
}
