#include "host/services/pictures/pictureSource.h"
#include "support/file/fileTools.h"
#include <algorithm>
#include <ctime>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 kNsPerMs = 1000000;

} // namespace

qint64 PictureSource::threadNs()
{
    timespec used;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return used.tv_sec * 1000 * kNsPerMs + used.tv_nsec;
}

PictureSource::PictureSource(const std::atomic<bool>* cancel, int cpuMs)
    : m_pCancel(cancel), m_nEndNs(threadNs() + cpuMs * kNsPerMs)
{
}

PictureSource::~PictureSource()
{
    if (m_nFile >= 0)
        ::close(m_nFile);
}

bool PictureSource::openPath(const char* path)
{
    m_nFile = fileOpenToRead(path);
    struct stat info;
    if (m_nFile < 0 || fstat(m_nFile, &info) != 0)
        return false;
    m_nSize = info.st_size;
    // Unbuffered, so that what is asked for is what a decoder asks for.
    return open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

bool PictureSource::seek(qint64 position)
{
    m_nAt = position;
    return QIODevice::seek(position);
}

bool PictureSource::readAt(qint64 position, void* data, qint64 count)
{
    return pread(m_nFile, data, size_t(count), position) == count;
}

bool PictureSource::isGivenUp()
{
    m_bGivenUp = m_bGivenUp || (m_pCancel && *m_pCancel) || threadNs() + m_nElsewhereNs > m_nEndNs;
    return m_bGivenUp;
}

qint64 PictureSource::readData(char* data, qint64 most)
{
    if (isGivenUp())
        return -1;
    const qint64 count = pread(m_nFile, data, size_t(most), m_nAt);
    m_bBeyondEnd = m_bBeyondEnd || (count == 0 && most > 0);
    m_bShort = m_bShort || count < most;
    m_nAt += std::max<qint64>(count, 0);
    return count;
}
