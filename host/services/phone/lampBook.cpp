#include "host/services/phone/lampBook.h"

lampBook& lampBook::instance()
{
    static lampBook* book = new lampBook; // backends tell until the end
    return *book;
}

void lampBook::setLamps(phoneLamps* lamps)
{
    if (m_pLamps && m_pLamps != lamps)
        m_pLamps->setNews(nullptr);
    m_pLamps = lamps;
    if (lamps)
        lamps->setNews(this);
    // What the backend before has told is nobody's word any more.
    for (const tagLampWatch& watch : m_watches.keys())
        lampChanged(watch, LAMP_UNKNOWN);
    for (const int line : m_lists.keys())
        listChanged(line, {});
    renew();
}

void lampBook::renew()
{
    if (!m_pLamps)
        return;
    for (const int line : m_lists.keys())
        m_pLamps->watchList(line);
    for (const tagLampWatch& watch : m_watches.keys())
        m_pLamps->watch(watch);
}

void lampBook::watch(const tagLampWatch& watch)
{
    if (!m_watches.contains(watch) && m_watches.size() >= WATCHES_MAX)
        return;
    if (++m_watches[watch].nWatchers == 1 && m_pLamps)
        m_pLamps->watch(watch);
}

void lampBook::unwatch(const tagLampWatch& watch)
{
    const auto entry = m_watches.find(watch);
    if (entry == m_watches.end() || --entry->nWatchers > 0)
        return;
    m_watches.erase(entry);
    if (m_pLamps)
        m_pLamps->unwatch(watch);
}

void lampBook::watchList(int line)
{
    if (++m_lists[line].nWatchers == 1 && m_pLamps)
        m_pLamps->watchList(line);
}

void lampBook::unwatchList(int line)
{
    const auto list = m_lists.find(line);
    if (list == m_lists.end() || --list->nWatchers > 0)
        return;
    m_lists.erase(list);
    if (m_pLamps)
        m_pLamps->unwatchList(line);
}

LAMP_STATE lampBook::state(const tagLampWatch& watch) const
{
    return m_watches.value(watch).eState;
}

QList<tagLampMember> lampBook::list(int line) const
{
    return m_lists.value(line).members;
}

int lampBook::pickUp(const tagLampWatch& watch)
{
    return m_pLamps ? m_pLamps->pickUp(watch) : 0;
}

int lampBook::addListener(tagListener listener)
{
    m_listeners.insert(++m_nLastListener, std::move(listener));
    return m_nLastListener;
}

void lampBook::removeListener(int listener)
{
    m_listeners.remove(listener);
}

// A listener may take itself, or a watch, away.
void lampBook::lampChanged(const tagLampWatch& watch, LAMP_STATE state)
{
    const auto entry = m_watches.find(watch);
    if (entry == m_watches.end() || entry->eState == state)
        return;
    entry->eState = state;
    for (const int listener : m_listeners.keys()) {
        const tagListener told = m_listeners.value(listener);
        if (told.lamp)
            told.lamp(watch, state);
    }
}

void lampBook::listChanged(int line, const QList<tagLampMember>& members)
{
    const auto list = m_lists.find(line);
    const QList<tagLampMember> known = members.mid(0, MEMBERS_MAX);
    if (list == m_lists.end() || list->members == known)
        return;
    list->members = known;
    for (const int listener : m_listeners.keys()) {
        const tagListener told = m_listeners.value(listener);
        if (told.list)
            told.list(line);
    }
}
