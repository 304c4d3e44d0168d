#include "support/file/fileSystemCalls.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

int openFile(const char* path, int flags, mode_t mode)
{
    return ::open(path, flags, mode);
}

} // namespace

fileSystemCalls fileDefaultSystemCalls()
{
    fileSystemCalls calls;
    calls.open = openFile;
    calls.flock = ::flock;
    calls.fstat = ::fstat;
    calls.lstat = ::lstat;
    calls.access = ::access;
    calls.write = ::write;
    calls.fchmod = ::fchmod;
    calls.fchown = ::fchown;
    calls.fsync = ::fsync;
    calls.dup = ::dup;
    calls.close = ::close;
    calls.rename = ::rename;
    calls.link = ::link;
    calls.unlink = ::unlink;
    return calls;
}

fileSystemCalls& fileGetSystemCalls()
{
    static fileSystemCalls calls = fileDefaultSystemCalls();
    return calls;
}
