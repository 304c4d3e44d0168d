#pragma once
// Keeps the way of a stream through a router open while nothing goes out on it by itself, as in a hold: a
// router forgets a port after half a minute. What the two sides tell each other about the stream keeps the
// other port open, and both where they are one. One thread at a time.
#include "players/sealedSend.h"

class wayKeeper
{
public:
    enum : int { QUIET_MS = 15000 };

    // A packet of the stream has gone out.
    void sent() { m_bSent = true; }
    // From time to time, while there is a stream. A stream that only takes has its way opened at once.
    void step(const tagWayOut& way, qint64 nowUs);

private:
    sockaddr_in m_to = {};
    qint64 m_nLastUs = 0;
    bool m_bSent = false;
};
