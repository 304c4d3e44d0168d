#pragma once
// When this side has to tell a peer that a call is still there (RFC 4028). It does so before the stack would,
// which knows neither what the peer understands nor what the call's media are by now.
#include "sip/sipStack.h"
#include "sip/sipTimer.h"
#include <functional>

class SessionRefresh
{
public:
    SessionRefresh(su_root_t* root, std::function<void()> refresh);

    // The request of the peer that was taken, or its reply that takes one of ours: the time begins anew.
    void agree(const sip_t& message);
    bool peerKnowsUpdate() const { return m_bUpdate; }
    // That were agreed on.
    unsigned seconds() const { return m_nSeconds; }
    void stop() { m_timer.stop(); }

private:
    void start();
    bool isOurs(const sip_t& message) const;

    const std::function<void()> m_refresh;
    SipTimer m_timer;
    unsigned m_nSeconds = SIP_SESSION_SECONDS;
    bool m_bPeerCounts = false; // it knows of sessions that end by themselves
    bool m_bUpdate = false;
};
