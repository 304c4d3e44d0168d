#include "support/file/path.h"

#include "support/file/deviceRoot.h"

#include <errno.h>
#include <string.h>
#include <string>
#include <sys/stat.h>

namespace {

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
    const std::string folder = devicePath(path).GetText();
    for (size_t end = folder.find('/', 1); !folder.empty(); end = folder.find('/', end + 1)) {
        if (mkdir(folder.substr(0, end).c_str(), 0777) != 0 && errno != EEXIST)
            return 0;
        if (end == std::string::npos)
            break;
    }
    return pathIsDirectory(path);
}
