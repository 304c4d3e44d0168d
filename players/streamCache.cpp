#include "players/streamCache.h"
#include "host/services/players/filmFile.h"
#include "players/filmStreams.h"
#include "support/host/trace.h"

bool streamCache::find(const QByteArray& device, MOV_SDP& sdp)
{
    sdp = {};
    QByteArray file;
    tagFileStat stat;
    if (!filmFileFind(device, file, stat)) {
        nuxTrace(TRACE_NOTE, "%s: no file that can be read", device.constData());
        return false;
    }
    const auto known = m_entries.constFind(device);
    if (known != m_entries.constEnd() && known->stat == stat) {
        sdp = known->sdp;
        return known->bGood;
    }
    if (m_order.removeAll(device) == 0 && m_order.size() >= MAX_FILES)
        m_entries.remove(m_order.takeFirst());
    m_order.append(device);
    tagEntry& entry = m_entries[device];
    entry = {stat, false, {}};
    entry.bGood = filmStreams::describeFile(file, MAX_ASK_MS, entry.sdp);
    sdp = entry.sdp;
    return entry.bGood;
}
