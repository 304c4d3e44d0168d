#pragma once
// The folder that the server serves: server.ini, schedule.xml, weather.xml, stock.xml, layouts/, media/ and
// icons/. An edit counts from the next request on. Any thread.
#include "tools/signServer/FileSums.h"
#include "tools/signServer/OpenFile.h"
#include <QByteArray>
#include <QString>

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
