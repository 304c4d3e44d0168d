#include "tools/signServer/GoodSchedules.h"
#include <algorithm>
#include <vector>

namespace {

constexpr qsizetype kMadeBeforeSweep = 64;

} // namespace

void GoodSchedules::Keep(const QByteArray& display, const MadeSchedule& schedule)
{
    QMutexLocker locker(&m_lock);
    if (m_entries.size() >= LIMIT && !m_entries.contains(display))
        MakeRoom();
    m_entries[display] = {Shared(schedule), ++m_nUses};
}

MadeSchedulePtr GoodSchedules::LastOf(const QByteArray& display)
{
    QMutexLocker locker(&m_lock);
    const auto entry = m_entries.find(display);
    if (entry == m_entries.end())
        return nullptr;
    entry->used = ++m_nUses;
    return entry->schedule;
}

qsizetype GoodSchedules::Count() const
{
    QMutexLocker locker(&m_lock);
    return m_entries.size();
}

MadeSchedulePtr GoodSchedules::Shared(const MadeSchedule& schedule)
{
    if (m_made.size() > kMadeBeforeSweep)
        m_made.removeIf([](const auto& entry) { return entry.value().expired(); });
    MadeSchedulePtr shared = m_made.value(schedule.reply).lock();
    // One reply may stand for other times of the day.
    if (!shared || shared->files->id != schedule.files->id)
        m_made[schedule.reply] = shared = std::make_shared<const MadeSchedule>(schedule);
    return shared;
}

// Many at a time: a flood of new ones does not cost a search each.
void GoodSchedules::MakeRoom()
{
    std::vector<quint64> uses;
    for (const Entry& entry : std::as_const(m_entries))
        uses.push_back(entry.used);
    const auto last = uses.begin() + LIMIT / 8;
    std::nth_element(uses.begin(), last, uses.end());
    m_entries.removeIf([&](const auto& entry) { return entry.value().used < *last; });
}
