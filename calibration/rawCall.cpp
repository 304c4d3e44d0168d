#include "calibration/rawCall.h"
#include <cstdlib>
#include <cstring>
#include <linux/input-event-codes.h>

namespace {

// Kept from call to call: a call may end between the two halves of a position.
struct tagLast
{
    int x = 0;
    int y = 0;
    int nPressure = 0;
    bool bSeenX = false;
    bool bSeenY = false;
};
tagLast g_last;

} // namespace

RawCall::RawCall(const tsdev* device) : m_nDescriptor(device->fd), m_eRecord(rawDeviceRecord(device->fd)) {}

bool RawCall::IsEnabled()
{
    static const char* const kOwnKind = "NORVANE";
    const char* kind = getenv("TSLIB_TSEVENTTYPE");
    return !kind || strcmp(kind, kOwnKind) == 0;
}

void RawCall::TimeOut(ts_sample& sample)
{
    sample.x = 0;
    sample.y = 0;
    sample.tv = {};
}

RAW_RESULT RawCall::Take(ts_sample& sample)
{
    tagRawEvent event;
    const int got = rawDeviceRead(m_nDescriptor, m_eRecord, event);
    m_bLost = got < 0;
    if (got <= 0)
        return RAW_ENDED;
    if (event.nType == EV_ABS)
        takeAxis(event);
    if (!isBegun())
        return more();
    if (!m_bTimed) {
        m_bTimed = true;
        m_time = event.time;
    }
    if (!isWhole()) {
        const int waits = rawDeviceWait(m_nDescriptor, 0);
        if (waits != 0)
            return waits < 0 ? RAW_ENDED : more();
    }
    return deliver(sample);
}

// A position that comes while the sample has one is the next one's, and so is an x behind a y.
void RawCall::takeAxis(const tagRawEvent& event)
{
    switch (event.nCode) {
    case ABS_X:
        if (!g_last.bSeenX && !g_last.bSeenY) {
            g_last.bSeenX = true;
            g_last.x = event.nValue;
        } else {
            m_pendingX = {true, event.nValue};
        }
        break;
    case ABS_Y:
        if (!g_last.bSeenY) {
            g_last.bSeenY = true;
            g_last.y = event.nValue;
        } else {
            m_pendingY = {true, event.nValue};
        }
        break;
    case ABS_Z: // which is where these panels report their pressure
        m_bPressure = true;
        g_last.nPressure = event.nValue;
        break;
    default:
        break;
    }
}

bool RawCall::isBegun() const
{
    return g_last.bSeenX || g_last.bSeenY || m_bPressure;
}

bool RawCall::isWhole() const
{
    return (g_last.bSeenX && g_last.bSeenY) || m_bPressure || m_pendingX.bThere || m_pendingY.bThere;
}

RAW_RESULT RawCall::more()
{
    return ++m_nRecords < RAW_RECORD_LIMIT ? RAW_MORE : RAW_ENDED;
}

RAW_RESULT RawCall::deliver(ts_sample& sample)
{
    sample.x = g_last.x;
    sample.y = g_last.y;
    sample.pressure = unsigned(g_last.nPressure);
    sample.tv = m_time;
    g_last.bSeenX = m_pendingX.bThere;
    if (m_pendingX.bThere)
        g_last.x = m_pendingX.nValue;
    g_last.bSeenY = m_pendingY.bThere;
    if (m_pendingY.bThere)
        g_last.y = m_pendingY.nValue;
    m_pendingX = {};
    m_pendingY = {};
    m_bTimed = false;
    m_nRecords = 0;
    return RAW_SAMPLE;
}
