#pragma once
// By what one tells that a file is still what it was: which it is, how large, and when it last changed.
#include <QtGlobal>
#include <ctime>
#include <sys/stat.h>

struct FileMark
{
    FileMark() = default; // of no file
    explicit FileMark(const struct stat& status)
        : inode(status.st_ino), size(status.st_size), written(Ns(status.st_mtim)), changed(Ns(status.st_ctim))
    {
    }
    static FileMark OfPath(const char* path)
    {
        struct stat status = {};
        return stat(path, &status) == 0 ? FileMark(status) : FileMark();
    }

    bool operator==(const FileMark& other) const
    {
        return inode == other.inode && size == other.size && written == other.written &&
               changed == other.changed;
    }
    bool operator!=(const FileMark& other) const { return !(*this == other); }
    // It may change again within one tick of the file system's clock without its mark telling.
    bool IsSettled() const
    {
        constexpr qint64 kTickNs = 2000000000;
        timespec now = {};
        clock_gettime(CLOCK_REALTIME, &now);
        return Ns(now) - changed > kTickNs;
    }

    quint64 inode = 0;
    qint64 size = -1;
    qint64 written = 0, changed = 0; // nanoseconds since 1970; the second cannot be set by anybody

private:
    static qint64 Ns(const timespec& time) { return time.tv_sec * 1000000000LL + time.tv_nsec; }
};
