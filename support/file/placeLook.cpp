#include "support/file/placeLook.h"
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

tagPlaceLook placeLook(const char* machinePath)
{
    struct stat info;
    if (lstat(machinePath, &info) != 0)
        return {false, false, 0};
    return {true, S_ISREG(info.st_mode), info.st_size};
}

std::string placeText(const char* machinePath, size_t most)
{
    const int file = open(machinePath, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0)
        return "";
    struct stat info;
    const bool isFile = fstat(file, &info) == 0 && S_ISREG(info.st_mode);
    std::string text;
    char bytes[4096];
    ssize_t count = isFile ? read(file, bytes, sizeof bytes) : 0;
    for (; count > 0 && text.size() < most; count = read(file, bytes, sizeof bytes))
        text.append(bytes, size_t(count));
    close(file);
    if (text.size() > most)
        text.resize(most);
    return text;
}
