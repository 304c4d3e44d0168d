#pragma once
// The folder that the server serves: server.ini, schedule.xml, weather.xml, stock.xml, layouts/, media/ and
// icons/. An edit counts from the next request on. Any thread.
#include "tools/signServer/FileSums.h"
#include <QByteArray>
#include <QString>
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

private:
    int m_fd;
    bool m_good = false;
    struct stat m_status = {};
};

using OpenFilePtr = std::shared_ptr<const OpenFile>;

class SignFolder
{
public:
    explicit SignFolder(const QByteArray& path) : m_path(path) {}

    // Of a file right in the folder; null when it cannot be read.
    QByteArray Content(const char* name) const;
    QByteArray PathOf(const char* name) const { return m_path + "/" + name; }
    // kind: "layout", "media" or "icon". Null when the name may not be asked for, or there is no such file.
    OpenFilePtr Open(const QByteArray& kind, const QByteArray& name) const;
    FileSums& Sums() const { return m_sums; }

private:
    QByteArray m_path;
    mutable FileSums m_sums;
};

// A bare file name: no separators, no leading dot, no control characters, not longer than a file name can be.
bool IsBareName(const QByteArray& name);
