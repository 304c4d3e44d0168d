#pragma once
// One question to a STUN server, sent until it is answered: after ever longer times, as RFC 5389 (7.2.1) has
// it. What is sent and received is the owner's. One thread.
#include "sip/stunMessage.h"

// When it is sent again.
struct tagStunPace
{
    int64_t nFirstMs; // after the first time; doubled each time
    int nTimes;       // in all
    int64_t nLastMs;  // how long the last one waits
};

class StunQuery
{
public:
    // As the standard has it: given up after 39.5 seconds.
    static constexpr tagStunPace STANDARD = {500, 7, 8000};
    // Of a call, for which somebody waits: given up after 0.4 seconds.
    static constexpr tagStunPace OF_A_CALL = {60, 3, 220};

    // A question of its own.
    StunQuery(const tagStunPace& pace, int64_t nowMs);

    // It is to be sent now; each time is told once.
    bool isDue(int64_t nowMs);
    const stunMessage::Request& request() const { return m_request; }
    // When to look again.
    int64_t nextMs() const { return m_nNextMs; }
    // A packet of the server that was asked. False when it answers something else.
    bool take(const unsigned char* bytes, size_t size);
    // It was answered, refused, or is given up.
    bool isOver(int64_t nowMs) const;
    // Its port 0: it was not answered.
    const tagStunPlace& place() const { return m_place; }

private:
    const tagStunPace m_pace;
    stunMessage::Id m_id;
    stunMessage::Request m_request;
    int m_nTimes = 0;
    int64_t m_nWaitMs;
    int64_t m_nNextMs;
    bool m_bOver = false;
    tagStunPlace m_place;
};
