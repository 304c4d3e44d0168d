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

int onScreen(long long sum, int scale, int size)
{
    return int(std::clamp(sum / scale, 0LL, static_cast<long long>(size - 1)));
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
    const long long wideX = x;
    const long long wideY = y;
    return {onScreen(wideX * m_ax + wideY * m_bx + m_cx, m_nScale, look::kScreenWidth),
            onScreen(wideX * m_ay + wideY * m_by + m_cy, m_nScale, look::kScreenHeight)};
}
