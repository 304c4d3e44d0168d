#pragma once
// System calls of which one can be made to fail.
#include "support/file/fileSystemCalls.h"

#include <errno.h>
#include <sys/stat.h>

class FailingCalls
{
public:
    FailingCalls() : m_real(fileDefaultSystemCalls())
    {
        the() = this;
        fileSystemCalls& calls = fileGetSystemCalls();
        calls.open = [](const char* p, int f, mode_t m) { return call(&fileSystemCalls::open, p, f, m); };
        calls.flock = [](int fd, int op) { return call(&fileSystemCalls::flock, fd, op); };
        calls.fstat = [](int fd, struct stat* s) { return call(&fileSystemCalls::fstat, fd, s); };
        calls.lstat = [](const char* p, struct stat* s) { return call(&fileSystemCalls::lstat, p, s); };
        calls.access = [](const char* p, int m) { return call(&fileSystemCalls::access, p, m); };
        calls.write = [](int fd, const void* d, size_t n) { return the()->write(fd, d, n); };
        calls.fchmod = [](int fd, mode_t m) { return call(&fileSystemCalls::fchmod, fd, m); };
        calls.fchown = [](int fd, uid_t u, gid_t g) { return call(&fileSystemCalls::fchown, fd, u, g); };
        calls.fsync = [](int fd) { return call(&fileSystemCalls::fsync, fd); };
        calls.dup = [](int fd) { return call(&fileSystemCalls::dup, fd); };
        calls.close = [](int fd) { return the()->close(fd); };
        calls.rename = [](const char* a, const char* b) { return call(&fileSystemCalls::rename, a, b); };
        calls.link = [](const char* a, const char* b) { return call(&fileSystemCalls::link, a, b); };
        calls.unlink = [](const char* p) { return call(&fileSystemCalls::unlink, p); };
    }
    ~FailingCalls()
    {
        fileGetSystemCalls() = m_real;
        the() = nullptr;
    }

    // The call of that number, from 0 on, fails with this error.
    void failAt(int number, int error)
    {
        m_next = 0;
        m_failing = number;
        m_error = error;
        m_failed = false;
    }
    bool failed() const { return m_failed; }
    int count() const { return m_next; }
    // Each write takes this many bytes at most.
    void setMostBytes(size_t bytes) { m_mostBytes = bytes; }
    // The disk takes this many bytes and no more.
    void setSpace(size_t bytes) { m_space = bytes; }

private:
    static FailingCalls*& the()
    {
        static FailingCalls* instance = nullptr;
        return instance;
    }
    bool failsNow()
    {
        if (m_next++ != m_failing)
            return false;
        m_failed = true;
        errno = m_error;
        return true;
    }
    template <class MEMBER, class... ARGS>
    static int call(MEMBER member, ARGS... args)
    {
        return the()->failsNow() ? -1 : (the()->m_real.*member)(args...);
    }
    ssize_t write(int fd, const void* data, size_t size)
    {
        if (failsNow())
            return -1;
        if (m_space == 0 && size > 0) {
            errno = ENOSPC;
            return -1;
        }
        const size_t taken = size < m_mostBytes ? size : m_mostBytes;
        const ssize_t written = m_real.write(fd, data, taken < m_space ? taken : m_space);
        if (written > 0)
            m_space -= size_t(written);
        return written;
    }
    // A close that tells of an error has closed the file all the same.
    int close(int fd)
    {
        const int result = m_real.close(fd);
        return failsNow() ? -1 : result;
    }

    fileSystemCalls m_real;
    int m_next = 0;
    int m_failing = -1;
    int m_error = 0;
    bool m_failed = false;
    size_t m_mostBytes = size_t(-1);
    size_t m_space = size_t(-1);
};
