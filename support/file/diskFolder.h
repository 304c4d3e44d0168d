#pragma once
// What lies on a disk that anybody may have filled. Only plain files and folders count that no link leads to:
// pipes, devices and sockets could hold the caller, a link leads somewhere else. Followed are the device's
// own links alone, those in "/storage" that stand for disks, and "/phone" and "/mini-boot". Paths are device
// paths, answers 1 or 0 unless stated. Any thread; a disk takes its time.
#include "support/text/nuxExport.h"
#include <atomic>
#include <string>
#include <vector>

struct tagDiskEntry
{
    std::string strName; // any bytes but a slash
    bool bFolder = false;
};

enum : int { DISK_ENTRY_LIMIT = 50000 }; // of one folder; what comes after them is left out

// Appends the folder's files and folders, in no order. 0 when it cannot be read, or was given up: cancel is
// set by another thread; null for never.
NUX_API int diskListFolder(const char* path, std::vector<tagDiskEntry>& entries,
                           const std::atomic<bool>* cancel);
NUX_API int diskIsFolder(const char* path);
// A descriptor to read the file with, the caller's to close; -1 when it is none.
NUX_API int diskOpenFile(const char* path);
// Removes a file, an empty folder, or what else has the name.
NUX_API int diskRemove(const char* path);
