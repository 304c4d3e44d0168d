#include "players/failedFilms.h"

void failedFilms::add(const QByteArray& device, const tagFileStat& stat, bool hasBegun)
{
    if (m_films.size() >= MAX_FILMS)
        m_films.clear();
    tagFailed& failed = m_films[device];
    failed = {stat, hasBegun, {}};
    failed.since.start();
}

bool failedFilms::isKnown(const QByteArray& device, const tagFileStat& stat) const
{
    const auto film = m_films.constFind(device);
    return film != m_films.constEnd() && film->stat == stat;
}

bool failedFilms::isHopeless(const QByteArray& device, const tagFileStat& stat) const
{
    const auto film = m_films.constFind(device);
    return isKnown(device, stat) && !film->bBegun && film->since.elapsed() < AGAIN_MS;
}
