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

private:
    int m_nFirst = 1;
};

} // namespace kit
