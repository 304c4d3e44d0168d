#pragma once
// The sound of one call: its ports, and both ways between them and samples. It works in steps of a frame, as
// callDesk says; whoever calls it from another thread holds the desk's lock.
#include "players/callNegotiation.h"
#include "players/callSockets.h"
#include "players/jitterBuffer.h"
#include "players/rtcpReports.h"
#include "players/rtpPeer.h"
#include "players/sealedSend.h"
#include "players/soundCoder.h"
#include "players/streamKeys.h"
#include "players/toneEvents.h"
#include "players/wayKeeper.h"

class callSession
{
public:
    enum : int {
        FRAME_MS = 20,
        FRAME_SAMPLES = soundCoder::SAMPLE_RATE * FRAME_MS / 1000,
        MAX_TAKEN = 200 // packets in one step; what is beyond waits, or the system drops it
    };

    // What a change of the agreement needs; building it takes a while.
    struct tagParts
    {
        std::unique_ptr<soundEncoder> encoder;
        std::unique_ptr<soundDecoder> decoder;
    };

    explicit callSession(std::unique_ptr<callSockets> sockets);
    ~callSession();

    // Any thread, without the lock.
    static tagParts build(const tagAgreedSound& agreed);
    // The streams go as agreed from now on; parts that are no longer used are given back.
    void agree(const tagAgreedSound& agreed, tagParts& parts);
    void setMuted(bool muted) { m_bMuted = muted; }
    bool isMuted() const { return m_bMuted; }
    // Nothing but silence goes out, and comes.
    void setStill(bool still) { m_bStill = still; }
    bool isStill() const { return m_bStill; }
    // As sipMedia::sendTone().
    bool sendTone(char tone, int ms) { return takesTones() && m_tones.add(tone, ms); }
    bool takesTones() const { return m_agreed.bSound && m_agreed.nSendTones >= 0; }
    const tagAgreedSound& agreed() const { return m_agreed; }
    int port() const { return m_sockets->port(); }

    // The steps of a frame, in this order. nowUs: of the steady clock.
    void receive(qint64 nowUs);
    void play(short* samples, qint64 nowUs);
    void send(const short* samples);

    // What is received, since the call before: 0 to 4, -1 where nothing is to come.
    int quality(qint64 nowUs);
    const rtcpReports& reports() const { return m_reports; }
    const jitterBuffer& buffer() const { return m_buffer; }
    // Packets that were no part of the call.
    qint64 strangers() const { return m_nStrangers; }

private:
    void takePacket(unsigned char* packet, int size, const sockaddr_in& from, qint64 nowUs);
    void takeReport(unsigned char* packet, int size, const sockaddr_in& from, qint64 nowUs);
    const tagAgreedCodec* codecOf(int payload) const;
    void sendPacket(int payload, bool marker, quint32 time, const unsigned char* content, int size);
    void sendTones(const QList<toneEvents::tagEvent>& events);
    tagWayOut wayOut() const { return {*m_sockets, m_peer, m_agreed, m_keys.sealer()}; }
    void decode(const tagHeldPacket& packet);

    std::unique_ptr<callSockets> m_sockets;
    tagAgreedSound m_agreed;
    bool m_bMuted = false;
    bool m_bStill = false;
    std::unique_ptr<soundEncoder> m_encoder;
    std::unique_ptr<soundDecoder> m_decoder;
    streamKeys m_keys;
    jitterBuffer m_buffer;
    toneEvents m_tones;
    rtcpReports m_reports;

    rtpPeer m_peer;
    wayKeeper m_way;
    qint64 m_nStrangers = 0;
    qint64 m_nLastCame = 0;
    qint64 m_nBegan = 0; // of receiving

    quint32 m_nSource;
    quint16 m_nSequence;
    quint32 m_nTime;           // of the frame that goes out next
    quint32 m_nPacketTime = 0; // of the sound that waits in the encoder
    quint32 m_nToneTime = 0;
    bool m_bTalks = false; // sound went out in the frame before

    std::vector<short> m_lane; // decoded, not played yet
    struct tagSeen
    {
        qint64 nGood = 0;
        qint64 nBad = 0;
    } m_seen;
    double m_loss = 0; // percent, smoothed
};
