#include "host/services/storage/diskRoom.h"
#include "host/services/storage/storageSpace.h"
#include <QtGlobal>

bool diskRoom::has(const QByteArray& folder, qint64 bytes)
{
    return m_granted.value(folder) >= bytes || ask(folder, bytes);
}

bool diskRoom::ask(const QByteArray& folder, qint64 bytes)
{
    const qint64 free = getFreeSpace(folder.constData());
    const qint64 room = free < 0 ? STEP : free - PathReservedSpace(folder, storageSpaceOf(folder));
    m_granted[folder] = qBound<qint64>(0, room, STEP);
    return free < 0 || room >= bytes; // of a disk that does not say the write itself will tell
}

bool diskRoom::take(const QByteArray& folder, qint64 bytes)
{
    if (!has(folder, bytes))
        return false;
    m_granted[folder] -= bytes;
    return true;
}
