#pragma once
// Puts the packets of one sound stream in order, and holds each as long as the network needs to bring the
// late ones. How long that is follows the network, from 60 ms up. Times are microseconds of one clock. One
// thread.
#include <QByteArray>
#include <map>

struct tagHeldPacket
{
    int nPayload = 0;
    QByteArray content;
};

class jitterBuffer
{
public:
    enum : int {
        LEAST_MS = 60,
        MOST_MS = 300,
        MAX_PACKETS = 100, // more would be a flood
        MAX_CONCEALED = 5  // packets in a row: what is made up for longer is noise
    };
    // PACKET: the next one. LOST: it will not come. LATE: it may still come, and the sound goes on without
    // it. NOTHING: nobody sends.
    enum class TAKEN { PACKET, LOST, LATE, NOTHING };

    struct tagCounts
    {
        qint64 nLost = 0;
        qint64 nLate = 0;    // came after its turn; counted as lost before
        qint64 nDropped = 0; // to catch up
        qint64 nPlayed = 0;
    };

    void put(quint16 sequence, quint32 time, int clock, const tagHeldPacket& packet, qint64 nowUs);
    // One without sound, whose time says nothing: a tone.
    void putSilent(quint16 sequence, const tagHeldPacket& packet, qint64 nowUs);
    TAKEN take(qint64 nowUs, tagHeldPacket& packet);
    // Another source begins: what is held goes.
    void clear();
    // How long packets are held.
    int delayMs() const { return int(m_nDelay / 1000); }
    const tagCounts& counts() const { return m_counts; }

private:
    struct tagEntry
    {
        qint64 nTime; // of the stream
        tagHeldPacket packet;
    };
    qint64 extended(quint16 sequence) const;
    void measure(qint64 time, qint64 nowUs);
    qint64 dueUs(qint64 time) const { return time + m_nFastest + m_nDelay; }
    void catchUp(qint64 nowUs);
    void hold(qint64 number, qint64 streamUs, const tagHeldPacket& packet);
    TAKEN conceal(TAKEN how);

    std::map<qint64, tagEntry> m_packets; // by number
    bool m_bAny = false;                  // something has come
    bool m_bPlays = false;
    qint64 m_nLast = 0; // the highest number that has come
    qint64 m_nNext = 0;
    quint32 m_nRtpTime = 0; // of the packet that came last
    qint64 m_nTime = 0;     // the same, of the stream
    qint64 m_nPacket = 20000;
    qint64 m_nFastest = 0; // arrival less the time of the stream, of the quickest packet
    qint64 m_nFastestBefore = 0;
    qint64 m_nFastestNew = 0;
    qint64 m_nWindow = 0; // begin of the present one
    qint64 m_nLateness = 0;
    qint64 m_nDelay = LEAST_MS * 1000;
    qint64 m_nCaughtUp = 0;
    int m_nConcealed = 0;
    int m_nLateOnes = 0; // in a row
    tagCounts m_counts;
};
