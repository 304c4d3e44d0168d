#include "support/file/placeLook.h"
#include <sys/stat.h>

tagPlaceLook placeLook(const char* machinePath)
{
    struct stat info;
    if (lstat(machinePath, &info) != 0)
        return {false, false, 0};
    return {true, S_ISREG(info.st_mode), info.st_size};
}
