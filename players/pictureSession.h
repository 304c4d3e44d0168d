#pragma once
// The pictures of one call: its ports, and both ways between them and pictures. It has a thread of its own
// from the first agreement on: a picture is many packets, and sound does not wait for them.
#include "players/callSockets.h"
#include "players/paceBudget.h"
#include "players/packetOrder.h"
#include "players/pictureDecoder.h"
#include "players/pictureEncoder.h"
#include "players/pictureRate.h"
#include "players/rtcpReports.h"
#include "players/rtpPeer.h"
#include "players/sealedSend.h"
#include "players/streamKeys.h"
#include "players/wayKeeper.h"
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
    enum : int {
        QUIET_MS = 3000,     // without a picture: they do not come any more
        HELD_QUIET_MS = 500, // of who holds the call: what was under way may still be seen for a moment
        BUILD_MS = 1000,     // until a decoder takes the place of the one before, when that was the first
        PACKETS = 3000,      // a second; what is beyond is lost
        PACKETS_AT_ONCE = 1500,
        SHOWN = 60, // pictures a second
        SHOWN_AT_ONCE = 10,
        CAMERA_MS = 5000 // until a camera that does not work is tried again
    };

    struct tagCounts
    {
        qint64 nStrangers = 0; // packets that were no part of the call
        int nShown = 0;        // pictures
        int nAsked = 0;        // for a new picture, at the other side
        int nKeyed = 0;        // the same, by the other side
        int nKbit = 0;         // that go out
        int nDecoders = 0;     // that were made
        qint64 nTooMany = 0;   // packets
        bool bRefused = false; // what comes is of a kind that is not shown
    };

    // end and camera outlive the session.
    pictureSession(std::unique_ptr<callSockets> sockets, pictureEnd& end, pictureCamera& camera);
    ~pictureSession();
    int port() const { return m_sockets->port(); }

    // The streams go as agreed from now on. It takes as long as a camera needs, as the next two do.
    void agree(const tagAgreedPicture& agreed);
    // The call gets the camera's pictures, where it is agreed to send some. At first it does not.
    void setCamera(bool own);
    // From time to time: a camera that does not work any more, or did not, is tried again.
    void watchCamera();
    // Pictures are to go out, whoever has the camera.
    bool wantsCamera() const { return m_agreed.bPicture && m_agreed.bSends && !m_bStill; }
    // No pictures go out, whatever is agreed; the camera is to be given anew after it.
    void setStill(bool still) { m_bStill = still; }
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
    void renewEncoder();
    void endEncoder();
    void tellFault(const QByteArray& fault);
    void endDecoder();
    void makeDecoder(PICTURE_CODEC codec);
    void show(const GstVideoFrame& frame);
    bool isRefused();
    void watchPictures(qint64 nowUs);
    const tagPictureFormat* formatOf(int payload) const;

    std::unique_ptr<callSockets> m_sockets;
    pictureEnd& m_end;
    pictureCamera& m_camera;
    mutable std::mutex m_encoderMutex;         // taken before the other one
    std::unique_ptr<pictureEncoder> m_encoder; // ended without any lock, which its packets take
    bool m_bCamera = false;                    // of the thread that agrees, as the next ones
    bool m_bStill = false;
    qint64 m_nTriedUs = 0; // the camera
    QByteArray m_fault;    // of the camera, as it was told
    std::thread m_thread;
    std::atomic<bool> m_bRuns{false};

    mutable std::mutex m_mutex; // of what follows, up to the next line like this
    tagAgreedPicture m_agreed;
    rtpPeer m_peer;
    wayKeeper m_way;
    streamKeys m_keys;
    rtcpReports m_reports;
    packetOrder m_order;
    pictureRate m_rate;
    paceBudget m_packets{PACKETS, PACKETS_AT_ONCE};
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
    qint64 m_nAskUs = 0; // until it is asked for again
    qint64 m_nKeyedUs = 0;
    bool m_bDamaged = false;
    paceBudget m_builds{1000 / BUILD_MS, 2};
    std::atomic<int> m_nDecoders{0};
    bool m_bRefusedTold = false;
    std::atomic<bool> m_bRefused{false};
    // Of the decoder's thread as well.
    paceBudget m_shows{SHOWN, SHOWN_AT_ONCE};
    std::atomic<int> m_nShown{0};
    std::atomic<qint64> m_nSeenUs{0}; // the last picture of this decoder; 0: none
};
