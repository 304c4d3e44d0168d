#pragma once
// Whole files. Paths are device paths; answers are 1 or 0 unless stated. Any thread.
#include "support/text/chString.h"
#include "support/text/nuxExport.h"
#include <string>

// Tells a file that was changed from one that was not.
struct tagFileStat
{
    long long nSize = 0;           // bytes
    long long nModifiedNs = 0;     // nanoseconds since 1970
    unsigned long long nInode = 0; // another number means another file under the old name
    bool operator==(const tagFileStat& other) const
    {
        return nSize == other.nSize && nModifiedNs == other.nModifiedNs && nInode == other.nInode;
    }
    bool operator!=(const tagFileStat& other) const { return !(*this == other); }
};

// What became of a read. Only a file that was read, or is too large to be, can be called damaged: one that
// could not be read (no descriptors left, no right to it, a failing disk, no plain file) may be sound.
enum FILE_READ { FILE_READ_DONE, FILE_READ_MISSING, FILE_READ_TOO_LARGE, FILE_READ_FAILED };

NUX_API int fileStat(const char* path, tagFileStat& stat);
// As fileStat, and tells a file that is not there from one that cannot be looked at.
NUX_API FILE_READ fileLook(const char* path, tagFileStat& stat);
// Bytes; -1 when there is no such file.
NUX_API long long fileSize(const char* path);
// Removes a file or a link, not a folder. Links on the way to it are followed, as everywhere.
NUX_API int fileRemove(const char* path);
// Takes the place of a file of the new name.
NUX_API int fileRename(const char* from, const char* to);
// Makes everything that was stored on the folder's disk so far safe from a loss of power; takes its time.
NUX_API int fileFlushFolder(const char* path);
// The same for all disks; takes its time too.
NUX_API void fileFlushAll();
// Replaces the target whole or leaves it alone.
NUX_API int fileCopy(const char* from, const char* to);
// For a library that reads by itself: a descriptor, the caller's to close. -1 for what is no plain file or
// device, and in a folder where any user may put things for what is not ours.
NUX_API int fileOpenToRead(const char* path);
// All bytes of the file; data is empty unless done.
NUX_API FILE_READ fileRead(const char* path, std::string& data, size_t limit = 256u << 20);
// 1 for FILE_READ_DONE.
NUX_API int fileReadWhole(const char* path, std::string& data, size_t limit = 256u << 20);
// The text of a file, as it stands; empty when it cannot be read.
NUX_API chString nuxDumpTextFileA(const char* path);
// Makes link a link to target, which is stored as it stands. It takes the place of a file or another link of
// that name, in one step; one that is right already stays. Makes the folders on the way.
NUX_API int fileMakeLink(const char* target, const char* link);
