#pragma once
// The phone's log since a moment: the making of the reader, or the last mark().
#include "host/services/system/hostLog.h"
#include <QStringList>

namespace kit {

class LogReader
{
public:
    LogReader() { mark(); }
    void mark()
    {
        const QList<tagLogEntry> log = hostLogFrom(1);
        m_nFirst = log.isEmpty() ? 1 : log.last().nNumber + 1;
    }
    // Texts of one kind of entry ("trace", "dial", ...), in order.
    QStringList texts(const QString& kind) const
    {
        QStringList found;
        for (const tagLogEntry& entry : hostLogFrom(m_nFirst)) {
            if (entry.strKind == kind)
                found.append(entry.strText);
        }
        return found;
    }
    QStringList traces() const { return texts("trace"); }
    // The entries of several kinds as they followed each other: "volume 35".
    QStringList entries(const QStringList& kinds) const
    {
        QStringList found;
        for (const tagLogEntry& entry : hostLogFrom(m_nFirst)) {
            if (kinds.contains(entry.strKind))
                found.append(entry.strKind + ' ' + entry.strText);
        }
        return found;
    }

private:
    int m_nFirst = 1;
};

} // namespace kit
