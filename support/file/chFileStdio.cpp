#include "support/file/chFileStdio.h"

#include "support/file/deviceRoot.h"

#include <string>
#include <sys/stat.h>

int chFileStdio::Open(const char* path, const char* mode)
{
    Close();
    if (!path || !mode)
        return 0;
    m_bFailed = false;
    m_eLast = LAST_NONE;
    m_pFile = fopen(devicePathFollow(path), (std::string(mode) + "e").c_str());
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
