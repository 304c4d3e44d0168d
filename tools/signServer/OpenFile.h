#pragma once
// A file that is sent, or looked at before it is. Any thread.
#include <QByteArray>
#include <memory>
#include <sys/stat.h>

// A file held open, so that what was measured is what is sent, also when the file is replaced meanwhile.
class OpenFile
{
public:
    explicit OpenFile(const QByteArray& path);
    ~OpenFile();
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    // A plain file that is neither a link nor a folder.
    bool IsGood() const { return m_good; }
    qint64 Size() const { return m_status.st_size; }
    const struct stat& Status() const { return m_status; }
    // At most `most` bytes; fewer at the end of the file or after a read error.
    QByteArray Read(qint64 from, qint64 most) const;
    // The same behind what is there, in its memory where there is room. How many they were.
    qint64 Append(QByteArray& bytes, qint64 from, qint64 most) const;

private:
    int m_fd;
    bool m_good = false;
    struct stat m_status = {};
};

using OpenFilePtr = std::shared_ptr<const OpenFile>;
