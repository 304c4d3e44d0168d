#pragma once
// The system calls that storing a file is made of. A table, so that a test can make each of them fail.
#include "support/text/nuxExport.h"
#include <sys/types.h>

struct stat;

struct fileSystemCalls
{
    int (*open)(const char* path, int flags, mode_t mode);
    int (*flock)(int fd, int operation);
    int (*fstat)(int fd, struct stat* info);
    int (*lstat)(const char* path, struct stat* info);
    int (*access)(const char* path, int mode);
    ssize_t (*write)(int fd, const void* data, size_t size);
    int (*fchmod)(int fd, mode_t mode);
    int (*fchown)(int fd, uid_t user, gid_t group);
    int (*fsync)(int fd);
    int (*dup)(int fd);
    int (*close)(int fd);
    int (*rename)(const char* from, const char* to);
    int (*link)(const char* from, const char* to);
    int (*unlink)(const char* path);
};

// The table in force. Changed by tests only, while no other thread stores a file.
NUX_API fileSystemCalls& fileGetSystemCalls();
// What the system offers.
NUX_API fileSystemCalls fileDefaultSystemCalls();
