#pragma once
// What the two sides of a stream tell each other about it (RTCP, RFC 3550), and what is counted for that.
// Times are microseconds of one clock. One thread.
#include "players/rtpPacket.h"

class rtcpReports
{
public:
    enum : int { EVERY_MS = 5000, FIRST_MS = 1000 };

    // source: this side's, as in its packets.
    rtcpReports(quint32 source, const QByteArray& name);

    quint32 source() const { return m_nSource; }
    void sent(quint32 time, int bytes);
    // timed: when it came says something, which it does not for a tone.
    void took(const tagRtpHead& head, int clock, qint64 nowUs, bool timed);
    // One is due.
    bool isDue(qint64 nowUs) const { return nowUs >= m_nNext; }
    // What is due, of the whole of the packet.
    QByteArray report(qint64 nowUs);
    QByteArray farewell();
    // Asks the other side for a picture that stands for itself (RFC 4585, or RFC 5104).
    QByteArray pictureLost(bool fir);
    // How often it has asked for one.
    int picturesWanted() const { return m_nPicturesWanted; }
    // What the other side tells, of a packet of any length and content.
    void read(const unsigned char* packet, int size, qint64 nowUs);

    // Of what this side sends, by the last report of the other; 0 to 100.
    int lossThereInPercent() const { return m_nLossThere; }
    int roundTripMs() const { return m_nRoundTripMs; } // 0: not known
    // Since the beginning: packets that should have come, and that came.
    qint64 expected() const { return m_bTakes ? m_nHighest - m_nFirst + 1 : 0; }
    qint64 received() const { return m_nReceived; }
    int reportsRead() const { return m_nReportsRead; }
    int jitterMs() const { return m_nClock ? int(m_jitter * 1000 / m_nClock) : 0; }

private:
    void readBlocks(const unsigned char* blocks, int count);
    bool wantsPicture(const unsigned char* packet, int length) const;
    QByteArray blockAboutPeer(qint64 nowUs);
    QByteArray names() const;

    quint32 m_nSource;
    QByteArray m_name;
    qint64 m_nNext = 0; // of the reports; 0: at once
    qint64 m_nSentPackets = 0;
    qint64 m_nSentBytes = 0;
    qint64 m_nSentBefore = 0; // packets, at the last report
    quint32 m_nSentTime = 0;

    bool m_bTakes = false;
    quint32 m_nPeer = 0;
    qint64 m_nFirst = 0;
    qint64 m_nHighest = 0;
    qint64 m_nReceived = 0;
    qint64 m_nExpectedBefore = 0;
    qint64 m_nReceivedBefore = 0;
    int m_nClock = 0;
    qint64 m_nWay = 0; // of the packet before, in units of the clock
    double m_jitter = 0;

    quint32 m_nLastReport = 0; // of the other side, the middle of its time
    qint64 m_nLastReportUs = 0;
    int m_nLossThere = 0;
    int m_nRoundTripMs = 0;
    int m_nReportsRead = 0;
    int m_nPicturesWanted = 0;
    quint8 m_nFirNumber = 0;
};
