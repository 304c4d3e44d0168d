#pragma once
// The pictures of one call: its ports, and both ways between them and pictures. It has a thread of its own
// from the first agreement on: a picture is many packets, and sound does not wait for them.
#include "players/callSockets.h"
#include "players/packetOrder.h"
#include "players/pictureDecoder.h"
#include "players/pictureEncoder.h"
#include "players/pictureRate.h"
#include "players/rtcpReports.h"
#include "players/rtpPeer.h"
#include "players/sealedSend.h"
#include "players/streamKeys.h"
#include <atomic>
#include <mutex>
#include <thread>

// Where pictures are seen. Each on a thread of its own; end(), before the session goes on or ends.
class pictureEnd
{
public:
    virtual ~pictureEnd() = default;
    virtual void showOther(const GstVideoFrame& frame) = 0;
    virtual void showOwn(const GstVideoFrame& frame) = 0;
    // No pictures of the other side come any more; own ones.
    virtual void endOther() = 0;
    virtual void endOwn() = 0;
};

class pictureSession
{
public:
    struct tagCounts
    {
        qint64 nStrangers = 0; // packets that were no part of the call
        int nShown = 0;        // pictures
        int nAsked = 0;        // for a new picture, at the other side
        int nKeyed = 0;        // the same, by the other side
        int nKbit = 0;         // that go out
    };

    // end outlives the session.
    pictureSession(std::unique_ptr<callSockets> sockets, pictureEnd& end);
    ~pictureSession();
    int port() const { return m_sockets->port(); }

    // The streams go as agreed from now on. It takes as long as a camera needs.
    void agree(const tagAgreedPicture& agreed);
    // A camera works for it.
    bool sends() const;
    tagCounts counts() const;

private:
    void run();
    void waitForPackets() const;
    void receive();
    void takePacket(unsigned char* packet, int size, const sockaddr_in& from, qint64 nowUs);
    void takeReport(unsigned char* packet, int size, const sockaddr_in& from, qint64 nowUs);
    void decode(qint64 nowUs);
    void put(const QByteArray& packet, qint64 nowUs);
    bool askPicture(qint64 nowUs);
    void sendPacket(const unsigned char* packet, int size);
    tagWayOut wayOut() const { return {*m_sockets, m_peer, m_agreed, m_keys.sealer()}; }
    void follow(qint64 nowUs);
    void steerEncoder();
    void endEncoder();
    const tagPictureFormat* formatOf(int payload) const;

    std::unique_ptr<callSockets> m_sockets;
    pictureEnd& m_end;
    mutable std::mutex m_encoderMutex;         // taken before the other one
    std::unique_ptr<pictureEncoder> m_encoder; // ended without any lock, which its packets take
    std::thread m_thread;
    std::atomic<bool> m_bRuns{false};

    mutable std::mutex m_mutex; // of what follows, up to the next line like this
    tagAgreedPicture m_agreed;
    rtpPeer m_peer;
    streamKeys m_keys;
    rtcpReports m_reports;
    packetOrder m_order;
    pictureRate m_rate;
    tagCounts m_counts;
    quint16 m_nSequence;
    quint32 m_nTime; // of the first picture
    bool m_bKeyWanted = false;
    bool m_bRateChanged = false;
    bool m_bNewDecoder = false;
    PICTURE_CODEC m_eCodec = PICTURE_CODEC::NONE; // of what comes
    QList<std::pair<QByteArray, bool>> m_ready;   // packets, and whether some before it are lost

    // Of the session's thread.
    std::unique_ptr<pictureDecoder> m_decoder;
    int m_nReportsSeen = 0;
    int m_nWantedSeen = 0;
    qint64 m_nAskedUs = 0;
    qint64 m_nKeyedUs = 0;
    bool m_bDamaged = false;
    std::atomic<int> m_nShown{0};
    std::atomic<bool> m_bSeen{false}; // a picture, of this decoder
};
