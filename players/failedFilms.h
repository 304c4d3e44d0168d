#pragma once
// Films that could not be played, so that a damaged one that is asked for again and again costs neither time
// nor trace lines: until its file changes, or it is time for another try. One thread.
#include "support/file/fileTools.h"
#include <QByteArray>
#include <QElapsedTimer>
#include <QHash>

class failedFilms
{
public:
    enum : int {
        MAX_FILMS = 64, // all are forgotten when there are more
        AGAIN_MS = 60000
    };

    // device: its device path. The film of that file did not play, or not to its end.
    void add(const QByteArray& device, const tagFileStat& stat, bool hasBegun);
    void remove(const QByteArray& device) { m_films.remove(device); }
    // It failed already: its failure needs no line any more.
    bool isKnown(const QByteArray& device, const tagFileStat& stat) const;
    // It failed just now before anything of it was seen: it needs no try either.
    bool isHopeless(const QByteArray& device, const tagFileStat& stat) const;

private:
    struct tagFailed
    {
        tagFileStat stat;
        bool bBegun;
        QElapsedTimer since;
    };
    QHash<QByteArray, tagFailed> m_films;
};
