#pragma once
// Puts the packets of a stream of pictures in order. One that is missing is waited for a little, since what
// is behind it shows nothing without it. Times are microseconds of one clock. One thread.
#include <QByteArray>
#include <map>

class packetOrder
{
public:
    enum : int {
        WAIT_MS = 60,     // for one that is missing
        MAX_PACKETS = 600 // that wait; more would be a flood
    };
    void put(quint16 sequence, const QByteArray& packet, qint64 nowUs);
    // The next one; lost: some before it did not come. False when none is due.
    bool take(qint64 nowUs, QByteArray& packet, bool& lost);
    // Another source begins: what waits goes.
    void clear();

private:
    struct tagEntry
    {
        QByteArray packet;
        qint64 nCame;
    };
    std::map<qint64, tagEntry> m_packets; // by number
    bool m_bAny = false;
    qint64 m_nNext = 0;
};
