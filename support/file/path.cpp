#include "support/file/path.h"

#include "support/file/deviceRoot.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const mode_t PRIVATE_MODE = 0700;

bool statOf(const char* path, struct stat& info)
{
    const chString place = devicePathFollow(path);
    return !place.IsEmpty() && stat(place, &info) == 0;
}

} // namespace

int pathFileExist(const char* path)
{
    struct stat info;
    return statOf(path, info);
}

int pathIsDirectory(const char* path)
{
    struct stat info;
    return statOf(path, info) && S_ISDIR(info.st_mode);
}

const char* pathGetFileNamePos(const char* path)
{
    if (!path)
        return "";
    const char* slash = strrchr(path, '/');
    return slash ? slash + 1 : path;
}

const char* pathGetFileExtensionPos(const char* path)
{
    const char* name = pathGetFileNamePos(path);
    const char* dot = strrchr(name, '.');
    return dot ? dot : name + strlen(name);
}

int pathRemoveFileSpec(chString& path)
{
    const char* text = path.GetText();
    const long name = pathGetFileNamePos(text) - text;
    // The slash of the root folder stays.
    const long end = name > 1 ? name - 1 : name;
    if (end == long(strlen(text)))
        return 0;
    path = chString(text, int(end));
    return 1;
}

int pathIsSafeName(const char* name)
{
    const std::string text = name ? name : "";
    if (text.empty() || text.size() > 255 || text == "." || text == "..")
        return 0;
    for (const char letter : text)
        if (letter == '/' || (unsigned char)letter < 0x20 || letter == 0x7f)
            return 0;
    return 1;
}

int pathMakeDirectories(const char* path)
{
    const std::string folder = devicePathFollow(path).GetText();
    for (size_t end = folder.find('/', 1); !folder.empty(); end = folder.find('/', end + 1)) {
        if (mkdir(folder.substr(0, end).c_str(), 0777) != 0 && errno != EEXIST)
            return 0;
        if (end == std::string::npos)
            break;
    }
    return pathIsDirectory(path);
}

int pathMakePrivateDirectory(const char* path)
{
    chString above = path;
    const std::string folder = devicePathFollow(path).GetText();
    if (folder.empty() || (pathRemoveFileSpec(above) && !pathMakeDirectories(above)))
        return 0;
    if (mkdir(folder.c_str(), PRIVATE_MODE) != 0 && errno != EEXIST)
        return 0;
    const int fd = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    struct stat info;
    const bool known = fd >= 0 && fstat(fd, &info) == 0;
    const bool open = known && (info.st_mode & 0777) != PRIVATE_MODE;
    const bool closed = known && (!open || fchmod(fd, PRIVATE_MODE) == 0);
    if (fd >= 0)
        close(fd);
    return closed;
}
