#include "players/playList.h"

void playList::clear()
{
    m_files.clear();
    m_nPresent = 0;
}

bool playList::add(const QByteArray& path)
{
    if (m_files.size() >= MAX_FILES)
        return false;
    m_files.append(path);
    return true;
}

void playList::toNext()
{
    if (!m_files.isEmpty())
        m_nPresent = (m_nPresent + 1) % size();
}

void playList::toPrevious()
{
    if (!m_files.isEmpty())
        m_nPresent = (m_nPresent + size() - 1) % size();
}
