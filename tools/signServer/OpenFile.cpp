#include "tools/signServer/OpenFile.h"
#include <fcntl.h>
#include <unistd.h>

OpenFile::OpenFile(const QByteArray& path)
    : m_fd(open(path.constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK))
{
    m_good = m_fd >= 0 && fstat(m_fd, &m_status) == 0 && S_ISREG(m_status.st_mode);
}

OpenFile::~OpenFile()
{
    if (m_fd >= 0)
        close(m_fd);
}

QByteArray OpenFile::Read(qint64 from, qint64 most) const
{
    QByteArray bytes(most, Qt::Uninitialized);
    qint64 have = 0;
    while (have < most) {
        const ssize_t n = pread(m_fd, bytes.data() + have, size_t(most - have), from + have);
        if (n <= 0)
            break;
        have += n;
    }
    bytes.truncate(have);
    return bytes;
}
