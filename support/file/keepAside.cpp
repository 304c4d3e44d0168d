#include "support/file/keepAside.h"

#include "support/file/deviceRoot.h"
#include "support/file/fileSystemCalls.h"
#include "support/file/fileTools.h"
#include "support/file/path.h"
#include "support/text/nuxError.h"

#include <algorithm>
#include <atomic>
#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

const int NAME_TRIES = 100;
const mode_t MODE_BITS = 07777;
const mode_t OTHERS = 0077;

std::atomic<fileReportSink> theSink{nullptr};

// The number of a kept file's name: 0 for "<name>.bad", N for "<name>.bad.N", -1 for any other.
long keptNumber(const std::string& entry, const std::string& keptName)
{
    if (entry == keptName)
        return 0;
    const std::string start = keptName + ".";
    if (entry.compare(0, start.size(), start) != 0)
        return -1;
    const std::string digits = entry.substr(start.size());
    const bool plain = !digits.empty() && digits.size() <= 9 && digits[0] != '0' &&
                       digits.find_first_not_of("0123456789") == std::string::npos;
    return plain ? atol(digits.c_str()) : -1;
}

std::vector<long> keptNumbers(const std::string& folder, const std::string& keptName)
{
    std::vector<long> numbers;
    DIR* dir = opendir(devicePathFollow(folder.c_str()));
    if (!dir)
        return numbers;
    while (const dirent* entry = readdir(dir)) {
        const long number = keptNumber(entry->d_name, keptName);
        if (number >= 0)
            numbers.push_back(number);
    }
    closedir(dir);
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

std::string keptPath(const std::string& kept, long number)
{
    return number == 0 ? kept : kept + "." + std::to_string(number);
}

bool isPlainFile(const char* path)
{
    struct stat info;
    return lstat(devicePathFollowFolder(path), &info) == 0 && S_ISREG(info.st_mode);
}

// A second name for the file, and a copy where the disk has no such thing. EEXIST when it is taken.
bool secondName(const std::string& file, const std::string& name)
{
    const chString place = devicePathFollowFolder(name.c_str());
    if (fileGetSystemCalls().link(devicePathFollowFolder(file.c_str()), place) == 0)
        return true;
    if (errno == EEXIST || errno == ENOENT || errno == ENOSPC || errno == EROFS)
        return false;
    if (pathFileExist(name.c_str())) {
        errno = EEXIST;
        return false;
    }
    return fileCopy(file.c_str(), name.c_str()) != 0;
}

// The name it got, empty when it could not be kept. Names are device paths.
std::string keepUnderNewName(const std::string& file)
{
    const std::string folder = file.substr(0, file.rfind('/') + 1);
    const std::string kept = file + ".bad";
    const std::vector<long> numbers =
        keptNumbers(folder.empty() ? "." : folder, kept.substr(kept.rfind('/') + 1));
    long number = numbers.empty() ? 0 : numbers.back() + 1;
    int tries = 0;
    while (!secondName(file, keptPath(kept, number))) {
        if (errno != EEXIST || ++tries >= NAME_TRIES)
            return std::string();
        ++number;
    }
    for (size_t i = 0; i + FILE_KEPT_LIMIT <= numbers.size(); ++i)
        fileGetSystemCalls().unlink(devicePathFollowFolder(keptPath(kept, numbers[i]).c_str()));
    return keptPath(kept, number);
}

// Nobody looks after a kept file any more, and it may hold what others must not read.
void closeToOthers(const std::string& file)
{
    const int fd = open(devicePathFollowFolder(file.c_str()), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    struct stat info;
    if (fd >= 0 && fstat(fd, &info) == 0 && (info.st_mode & OTHERS))
        fchmod(fd, info.st_mode & ~OTHERS & MODE_BITS);
    if (fd >= 0)
        close(fd);
}

} // namespace

int fileCopyAside(const char* path, chString& kept)
{
    const chString file = devicePathTarget(path);
    if (file.IsEmpty() || !isPlainFile(file))
        return 0;
    const std::string name = keepUnderNewName(file.GetText());
    if (name.empty())
        return 0;
    closeToOthers(name);
    kept = name.c_str();
    fileReport(fmtString("%s cannot be understood, kept as %s", path, kept.GetText()));
    return 1;
}

int fileKeepAside(const char* path)
{
    chString kept;
    if (!fileCopyAside(path, kept))
        return 0;
    if (fileGetSystemCalls().unlink(devicePathFollowFolder(devicePathTarget(path))) == 0)
        return 1;
    fileRemove(kept);
    return 0;
}

void fileSetReportSink(fileReportSink sink)
{
    theSink = sink;
}

void fileReport(const char* text)
{
    if (const fileReportSink sink = theSink)
        sink(text);
    else
        nuxErrorMessage(false, __FILE__, __LINE__, text);
}
