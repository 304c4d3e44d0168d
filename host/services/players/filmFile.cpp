#include "host/services/players/filmFile.h"
#include "support/file/deviceRoot.h"
#include <sys/stat.h>
#include <unistd.h>

bool filmFileFind(const QByteArray& devicePath, QByteArray& machinePath, tagFileStat& stat)
{
    if (!devicePath.startsWith('/'))
        return false;
    const chString mapped = devicePathFollow(devicePath.constData());
    struct stat info;
    // A pipe or a device would keep the player waiting.
    if (::stat(mapped.GetText(), &info) != 0 || !S_ISREG(info.st_mode) || access(mapped.GetText(), R_OK) != 0)
        return false;
    machinePath = QByteArray(mapped.GetText());
    return fileStat(devicePath.constData(), stat) != 0;
}
