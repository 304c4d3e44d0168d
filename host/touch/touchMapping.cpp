#include "host/touch/touchMapping.h"
#include "host/look/look.h"
#include "support/host/trace.h"
#include <algorithm>
#include <cstdio>
#include <string>

namespace {

const char* const kFile = "/rundata/data/pointercal";
constexpr size_t kLongest = 4096; // bytes
constexpr int kParts = 7;

__extension__ using Wide = __int128; // two products of 64 bits and their sum fit

int onScreen(int x, int ofX, int y, int ofY, int offset, int scale, int size)
{
    const Wide sum = Wide(x) * ofX + Wide(y) * ofY + offset;
    return int(std::clamp(sum / scale, Wide(0), Wide(size - 1)));
}

} // namespace

void TouchMapping::look()
{
    tagFileStat now;
    const bool stored = fileStat(kFile, now);
    if (m_bLooked && stored == m_bStored && now == m_seen)
        return;
    m_bLooked = true;
    m_bStored = stored;
    m_seen = now;
    if (read())
        return;
    if (stored)
        nuxTrace(TRACE_NOTE, "%s is damaged: the touch panel is not calibrated", kFile);
    setWhole();
}

bool TouchMapping::read()
{
    std::string text;
    if (!fileReadWhole(kFile, text, kLongest))
        return false;
    const int count =
        sscanf(text.c_str(), "%d %d %d %d %d %d %d", &m_ax, &m_bx, &m_cx, &m_ay, &m_by, &m_cy, &m_nScale);
    return count == kParts && m_nScale != 0;
}

void TouchMapping::setWhole()
{
    m_ax = look::kScreenWidth;
    m_by = look::kScreenHeight;
    m_bx = m_cx = m_ay = m_cy = 0;
    m_nScale = PANEL_COUNTS;
}

QPoint TouchMapping::toScreen(int x, int y) const
{
    return {onScreen(x, m_ax, y, m_bx, m_cx, m_nScale, look::kScreenWidth),
            onScreen(x, m_ay, y, m_by, m_cy, m_nScale, look::kScreenHeight)};
}
