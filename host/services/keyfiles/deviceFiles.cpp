#include "host/services/keyfiles/deviceFiles.h"
#include "host/services/keyfiles/keyFileCache.h"
#include "host/services/system/runFolder.h"
#include "support/file/deviceRoot.h"
#include "support/file/path.h"
#include "support/host/trace.h"
#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char* kSettings = "/rundata/config";
constexpr const char* kData = "/rundata/data";
// Where the user's own files go; those above stand before those in them.
constexpr const char* kMedia[] = {"/rundata/media",           "/rundata/media/image",
                                  "/rundata/media/video",     "/rundata/media/ring",
                                  "/rundata/media/wallpaper", "/rundata/media/contact-image"};
constexpr mode_t kModeBits = 07777;
constexpr mode_t kOthers = 0077;
constexpr int kDepth = 8; // folders in folders; the phone's own have three

bool g_isStored = true;

int g_nStayOpen = 0;

void closeToOthers(int fd, const struct stat& info)
{
    if ((info.st_mode & kOthers) && fchmod(fd, info.st_mode & ~kOthers & kModeBits) != 0)
        ++g_nStayOpen;
}

// Takes from other users what is in the folder, and the folder itself. No link is followed. Ends fd.
void closeFolder(int fd, int depth)
{
    DIR* folder = fdopendir(fd);
    if (!folder) {
        close(fd);
        return;
    }
    while (const dirent* entry = readdir(folder)) {
        const std::string name = entry->d_name;
        struct stat info;
        const int file = name == "." || name == ".." ? -1
                                                     : openat(dirfd(folder), entry->d_name,
                                                              O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        if (file < 0)
            continue;
        const bool isKnown = fstat(file, &info) == 0;
        if (isKnown && (S_ISREG(info.st_mode) || S_ISDIR(info.st_mode)))
            closeToOthers(file, info);
        if (isKnown && S_ISDIR(info.st_mode) && depth < kDepth)
            closeFolder(file, depth + 1);
        else
            close(file);
    }
    closedir(folder);
}

void closeTree(const char* path)
{
    const int fd = open(devicePathFollow(path), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    struct stat info;
    if (fd < 0)
        return;
    if (fstat(fd, &info) == 0)
        closeToOthers(fd, info);
    closeFolder(fd, 0);
}

// A phone without settings may make them.
bool canStore()
{
    const char* place = pathIsDirectory(kSettings) ? kSettings : "/rundata";
    return !pathIsDirectory(place) || access(devicePathFollow(place), W_OK | X_OK) == 0;
}

} // namespace

void deviceFilesStart()
{
    g_isStored = canStore();
    keyFileCache::GetInstance().KeepInMemory(!g_isStored);
    if (!g_isStored)
        nuxTrace(TRACE_NOTE, "%s cannot be written: settings are kept in memory until the phone ends",
                 kSettings);
    for (const char* tree : {kSettings, kData})
        closeTree(tree);
    for (const char* folder : kMedia) {
        if (g_isStored && !pathMakePrivateDirectory(folder))
            ++g_nStayOpen;
    }
    if (g_nStayOpen > 0)
        nuxTrace(TRACE_NOTE, "%d files and folders of the phone stay open to other users", g_nStayOpen);
    if (runFolder::make() && runFolder::isWritable())
        return;
    nuxTrace(TRACE_NOTE, "The run folder cannot be written, %s takes its place",
             runFolder::replace() ? runFolder::path().c_str() : "nothing");
}

bool deviceFilesAreStored()
{
    return g_isStored;
}

void deviceFilesStop()
{
    runFolder::removeReplacement();
}
