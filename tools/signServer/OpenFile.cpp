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
    QByteArray bytes;
    Append(bytes, from, most);
    return bytes;
}

qint64 OpenFile::Append(QByteArray& bytes, qint64 from, qint64 most) const
{
    const qsizetype before = bytes.size();
    bytes.resize(before + most);
    qint64 have = 0;
    while (have < most) {
        const ssize_t n = pread(m_fd, bytes.data() + before + have, size_t(most - have), from + have);
        if (n <= 0)
            break;
        have += n;
    }
    bytes.truncate(before + have);
    return have;
}
