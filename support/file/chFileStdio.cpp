#include "support/file/chFileStdio.h"

#include "support/file/deviceRoot.h"
#include "support/file/sharedFolder.h"

#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const mode_t NEW_FILE_MODE = 0666; // less the process's mask

// What open(2) calls a mode of the C library.
int flagsOf(const char* mode)
{
    const int access = strchr(mode, '+') ? O_RDWR : mode[0] == 'r' ? O_RDONLY : O_WRONLY;
    const int made = mode[0] == 'r' ? 0 : O_CREAT | (mode[0] == 'a' ? O_APPEND : O_TRUNC);
    return access | made | (strchr(mode, 'x') ? O_EXCL : 0);
}

FILE* openStream(const char* path, const char* mode)
{
    if (!*mode || !strchr("rwa", *mode))
        return nullptr;
    const int fd = fileOpenSafely(path, flagsOf(mode), NEW_FILE_MODE);
    FILE* stream = fd >= 0 ? fdopen(fd, mode) : nullptr;
    if (fd >= 0 && !stream)
        close(fd);
    return stream;
}

} // namespace

int chFileStdio::Open(const char* path, const char* mode)
{
    Close();
    if (!path || !mode)
        return 0;
    m_bFailed = false;
    m_eLast = LAST_NONE;
    m_pFile = openStream(devicePathFollow(path), mode);
    struct stat info;
    if (m_pFile && fstat(fileno(m_pFile), &info) == 0 && S_ISDIR(info.st_mode))
        Close();
    return IsOpen();
}

// The C library wants a seek between reading and writing one file.
void chFileStdio::Turn(LAST next)
{
    if (m_eLast != LAST_NONE && m_eLast != next)
        fseeko(m_pFile, 0, SEEK_CUR);
    m_eLast = next;
}

int chFileStdio::Read(void* buffer, int size)
{
    if (!m_pFile || !buffer || size <= 0)
        return 0;
    Turn(LAST_READ);
    return int(fread(buffer, 1, size_t(size), m_pFile));
}

int chFileStdio::Write(const void* buffer, int size)
{
    if (!m_pFile || !buffer || size <= 0)
        return 0;
    Turn(LAST_WRITE);
    const int written = int(fwrite(buffer, 1, size_t(size), m_pFile));
    m_bFailed = m_bFailed || written != size;
    return written;
}

int chFileStdio::IsEOF()
{
    if (!m_pFile)
        return 0;
    Turn(LAST_READ);
    const int letter = getc(m_pFile);
    if (letter != EOF)
        ungetc(letter, m_pFile);
    return letter == EOF && feof(m_pFile);
}

int chFileStdio::Seek(long long offset, int origin)
{
    m_eLast = LAST_NONE;
    return m_pFile && fseeko(m_pFile, offset, origin) == 0;
}

long long chFileStdio::Tell()
{
    return m_pFile ? ftello(m_pFile) : -1;
}

int chFileStdio::Flush()
{
    if (!m_pFile || fflush(m_pFile) != 0)
        m_bFailed = true;
    return !m_bFailed;
}

int chFileStdio::Close()
{
    if (!m_pFile)
        return 1;
    if (fclose(m_pFile) != 0)
        m_bFailed = true;
    m_pFile = nullptr;
    return !m_bFailed;
}
