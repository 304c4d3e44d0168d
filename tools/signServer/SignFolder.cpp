#include "tools/signServer/SignFolder.h"
#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr qint64 kLargestText = 4 << 20; // bytes of a file that is read whole
constexpr int kLongestName = 255;

} // namespace

bool IsBareName(const QByteArray& name)
{
    if (name.isEmpty() || name.size() > kLongestName || name[0] == '.')
        return false;
    return std::none_of(name.begin(), name.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < ' ' || byte == 0x7f || c == '/' || c == '\\';
    });
}

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

QByteArray SignFolder::Content(const char* name) const
{
    const OpenFile file(PathOf(name));
    return file.IsGood() ? file.Read(0, std::min(file.Size(), kLargestText)) : QByteArray();
}

OpenFilePtr SignFolder::Open(const QByteArray& kind, const QByteArray& name) const
{
    const char* folder = kind == "layout"  ? "layouts/"
                         : kind == "media" ? "media/"
                         : kind == "icon"  ? "icons/"
                                           : nullptr;
    if (!folder || !IsBareName(name))
        return nullptr;
    auto file = std::make_shared<OpenFile>(PathOf(folder) + name);
    return file->IsGood() ? file : nullptr;
}
