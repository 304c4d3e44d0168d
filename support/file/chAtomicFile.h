#pragma once
// A file that takes its place only when it is complete. One thread at a time.
#include "support/file/sharedFolder.h"
#include "support/text/nuxExport.h"
#include <string>
#include <sys/stat.h>

class NUX_API chAtomicFile
{
public:
    chAtomicFile() = default;
    ~chAtomicFile() { Abandon(); }
    chAtomicFile(const chAtomicFile&) = delete;
    chAtomicFile& operator=(const chAtomicFile&) = delete;

    // path: device path of the file to replace or make; a link is followed, but not in a folder where any
    // user may put things, where the file takes the link's place. 0 when it could not be replaced:
    // read-only, no plain file, no folder to make one in.
    // mode: the file's from its first byte on; 0 keeps the old file's.
    int Open(const char* path, mode_t mode = 0);
    // Of a file whose name says that it is still on its way, and that one thread of one process writes: it
    // grows under that name, in place of what is there, and is gone when it is given up. That spares a
    // temporary file and its rename. A link is not followed. 0 as above; its Commit
    // fails when another took its place meanwhile.
    int OpenUnfinished(const char* path);
    // 0 when the bytes cannot all be stored.
    int Write(const char* data, size_t size);
    // What was written is on the disk, which takes a while; the file is not yet in its place.
    int Flush() const { return m_nFd >= 0 && FlushData(); }
    // Puts the file in its place, safe from a loss of power. 0: the old one is as it was. Closes.
    // bFlush 0: safe from that only when the folder was flushed (FlushFolder, fileFlushFolder).
    int Commit(int bFlush = 1);
    // After a Commit without a flush: puts the file's name on the disk too.
    int FlushFolder() const;
    // Leaves the old file as it was and nothing beside it.
    void Abandon();
    // Removes what processes that were killed, or a loss of power, left of files that were to come into the
    // folder, a device path. Those that are being written stay. The next save of a file does so for its own.
    static void Sweep(const char* folder);

private:
    bool LookAtTarget();
    bool LookAtSharedTarget();
    bool OpenTemporary();
    bool OpenUnguessable();
    bool OpenInPlace();
    int CreateTemporary() const;
    int MakeTemporary() const;
    static bool RemoveStale(const char* path);
    bool TakeOverOwner() const;
    bool FlushData() const;
    int OpenFolder() const;
    bool Publish(bool flush) const;
    bool PutInPlace() const;
    bool IsInPlace() const;

    void SetTarget(const char* machinePath);
    void RemoveTemporary() const;

    std::string m_strTarget; // machine paths
    std::string m_strFolder;
    std::string m_strTemporary;
    struct stat m_old = {};
    bool m_bReplaces = false;
    SHARED_PLACE m_ePlace = PLACE_OURS;
    mode_t m_nMode = 0; // asked for, 0: none
    int m_nFd = -1;     // holds the lock that says the temporary file is in use
};
