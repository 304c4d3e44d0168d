#pragma once
// Both ends of a call in time that is counted here: however busy the machine is, frames are taken and packets
// come when they are due. On the way between the ends packets are lost and delayed by chance.
#include "tests/players/callSide.h"
#include <map>
#include <random>

class SteppedCall
{
public:
    // Each says its tone and hears the other's, as the negotiations have it.
    // So many percent of the packets are lost; the others take up to jitterMs.
    SteppedCall(double hertz, double otherHertz, int lossPercent, int jitterMs);
    ~SteppedCall();
    SteppedCall(const SteppedCall&) = delete;
    SteppedCall& operator=(const SteppedCall&) = delete;

    callNegotiation& negotiation() { return *m_one.negotiation; }
    callNegotiation& otherNegotiation() { return *m_other.negotiation; }
    // The streams go as the negotiations have it; ptime: ms of sound in a packet.
    void apply(int ptime = callSession::FRAME_MS);
    void setLoss(int percent) { m_nLoss = percent; }
    void run(int ms);
    // The clock that the sessions are told.
    qint64 nowUs() const { return m_nNowUs; }

    const ToneVoice& otherVoice() const { return m_other.voice; }
    callSession& session() { return *m_one.session; }
    callSession& otherSession() { return *m_other.session; }

private:
    struct tagEnd
    {
        explicit tagEnd(double hertz);
        ToneVoice voice;
        int nDescriptor = -1; // of the session's port
        int nPort = 0;
        int nWaitingMs = 0; // of sound that has not filled a packet
        std::unique_ptr<callNegotiation> negotiation;
        std::unique_ptr<callSession> session;
    };
    struct tagWaiting
    {
        QByteArray packet;
        tagEnd* pTo;
    };

    void step(tagEnd& end);
    void takeFrom(tagEnd& end);
    void take(tagEnd& to, bool& isSound);
    void bringDue(qint64 untilUs);

    tagEnd m_one;
    tagEnd m_other;
    int m_nLoss;
    const int m_nJitterMs;
    int m_nPtime = callSession::FRAME_MS;
    int m_nWay; // the socket between them
    int m_nWayPort = 0;
    qint64 m_nNowUs = 1000000000;
    std::minstd_rand m_chance{11};
    std::multimap<qint64, tagWaiting> m_waiting; // by when they arrive
};
