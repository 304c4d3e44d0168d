#pragma once
// When a device for sound is looked for again after none was found. A look is not for nothing: what asks a
// sound server that is not there leaves a thread of the toolkit's behind.
#include <QByteArray>
#include <QtGlobal>

class soundLooks
{
public:
    enum : int { FIRST_MS = 30000, LAST_MS = 3600000 };

    // places: soundPlaces() of now. isDescribed: somebody has said where the device is, so that a look leaves
    // nothing.
    bool isDue(qint64 nowMs, const QByteArray& places, bool isDescribed) const;
    void inVain(qint64 nowMs, const QByteArray& places);
    bool hasLooked() const { return m_bLooked; }

private:
    bool m_bLooked = false;
    qint64 m_nLast = 0;
    int m_nDelayMs = FIRST_MS;
    QByteArray m_places;
};
