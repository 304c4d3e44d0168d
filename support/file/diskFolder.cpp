#include "support/file/diskFolder.h"

#include "support/file/deviceRoot.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const int FOLDER_FLAGS = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

// A descriptor that is closed with its owner.
class Descriptor
{
public:
    explicit Descriptor(int fd = -1) : m_nFd(fd) {}
    ~Descriptor() { Take(-1); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    void Take(int fd)
    {
        if (m_nFd >= 0)
            close(m_nFd);
        m_nFd = fd;
    }
    int Give()
    {
        const int fd = m_nFd;
        m_nFd = -1;
        return fd;
    }
    int Get() const { return m_nFd; }

private:
    int m_nFd;
};

// False for a path that climbs, or that begins nowhere.
bool splitPath(const char* path, std::vector<std::string>& parts)
{
    const std::string text = path ? path : "";
    if (text.empty() || text[0] != '/')
        return false;
    for (size_t start = 1; start <= text.size();) {
        const size_t end = std::min(text.find('/', start), text.size());
        const std::string part = text.substr(start, end - start);
        if (part == "..")
            return false;
        if (!part.empty() && part != ".")
            parts.push_back(part);
        start = end + 1;
    }
    return true;
}

// How many of the first parts are the device's own, whose links lead where they should.
size_t ownParts(const std::vector<std::string>& parts)
{
    if (parts.empty())
        return 0;
    if (parts[0] == "storage")
        return std::min<size_t>(parts.size(), 2);
    return parts[0] == "phone" || parts[0] == "mini-boot" ? 1 : 0;
}

// The folder of the first count parts.
int openFolder(const std::vector<std::string>& parts, size_t count)
{
    const size_t own = std::min(ownParts(parts), count);
    std::string start = "/";
    for (size_t i = 0; i < own; ++i)
        start += (i ? "/" : "") + parts[i];
    Descriptor folder(open(devicePathFollow(start.c_str()), FOLDER_FLAGS));
    for (size_t i = own; i < count && folder.Get() >= 0; ++i)
        folder.Take(openat(folder.Get(), parts[i].c_str(), FOLDER_FLAGS | O_NOFOLLOW));
    return folder.Give();
}

int openFolder(const char* path)
{
    std::vector<std::string> parts;
    return splitPath(path, parts) ? openFolder(parts, parts.size()) : -1;
}

// The folder that holds what the path names, and its name there.
int openFolderOf(const char* path, std::string& name)
{
    std::vector<std::string> parts;
    if (!splitPath(path, parts) || parts.empty() || parts.size() == ownParts(parts))
        return -1;
    name = parts.back();
    return openFolder(parts, parts.size() - 1);
}

// Asked of the file system where the folder does not tell by itself.
mode_t kindOf(int folder, const dirent& entry)
{
    if (entry.d_type != DT_UNKNOWN)
        return DTTOIF(entry.d_type);
    struct stat info;
    return fstatat(folder, entry.d_name, &info, AT_SYMLINK_NOFOLLOW) == 0 ? info.st_mode : 0;
}

} // namespace

int diskListFolder(const char* path, std::vector<tagDiskEntry>& entries, const std::atomic<bool>* cancel)
{
    const int fd = openFolder(path);
    DIR* folder = fd >= 0 ? fdopendir(fd) : nullptr;
    if (!folder) {
        if (fd >= 0)
            close(fd);
        return 0;
    }
    bool givenUp = false;
    while (entries.size() < DISK_ENTRY_LIMIT && !givenUp) {
        const dirent* entry = readdir(folder);
        if (!entry)
            break;
        givenUp = cancel && *cancel;
        const mode_t kind = kindOf(fd, *entry);
        if (strcmp(entry->d_name, ".") != 0 && strcmp(entry->d_name, "..") != 0 &&
            (S_ISREG(kind) || S_ISDIR(kind)))
            entries.push_back({entry->d_name, bool(S_ISDIR(kind))});
    }
    closedir(folder);
    return !givenUp;
}

int diskIsFolder(const char* path)
{
    return Descriptor(openFolder(path)).Get() >= 0;
}

// Looked at first: to open a device may already do something to it.
int diskOpenFile(const char* path)
{
    std::string name;
    const Descriptor folder(openFolderOf(path, name));
    struct stat info;
    if (folder.Get() < 0 || fstatat(folder.Get(), name.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0 ||
        !S_ISREG(info.st_mode))
        return -1;
    Descriptor file(openat(folder.Get(), name.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
    return file.Get() >= 0 && fstat(file.Get(), &info) == 0 && S_ISREG(info.st_mode) ? file.Give() : -1;
}

int diskRemove(const char* path)
{
    std::string name;
    const Descriptor folder(openFolderOf(path, name));
    return folder.Get() >= 0 && (unlinkat(folder.Get(), name.c_str(), 0) == 0 ||
                                 unlinkat(folder.Get(), name.c_str(), AT_REMOVEDIR) == 0);
}
