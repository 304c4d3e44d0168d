#pragma once
// What this side of a call that talks offers of media: one offer at a time, the newest next. Where both sides
// offer at once, each waits for a time of its own and begins again (RFC 3261, 14.1). The stack forgets an
// INVITE that it is given while another request of the call is not answered yet: such offers wait here.
#include "sip/sipTimer.h"
#include <functional>
#include <string>

class MediaOffer
{
public:
    using Sender = std::function<void(const std::string& sdp)>;

    // isOwner: this side has made the call.
    MediaOffer(su_root_t* root, bool isOwner, Sender send);

    void want(const std::string& sdp);
    // A request of this side within the call, and the last answer to one.
    void requestGoes() { ++m_nRequests; }
    void requestIsAnswered();
    // It was sent, and nobody has answered it yet.
    bool isUnderWay() const { return m_bUnderWay; }
    // Nothing is under way or waits.
    bool isIdle() const { return !m_bUnderWay && !m_bWanted; }
    const std::string& sent() const { return m_sent; }
    // The reply to it. False when it collided, and is sent again.
    bool settle(uint32_t status);
    // Nothing is sent any more.
    void stop();

private:
    void sendNext();
    // Where nothing keeps it.
    void sendWanted();

    const bool m_bOwner;
    const Sender m_send;
    SipTimer m_again;
    std::string m_sent;
    std::string m_next;
    bool m_bUnderWay = false;
    bool m_bWanted = false;   // m_next
    bool m_bCollided = false; // and waits for its time
    unsigned m_nCollisions = 0;
    unsigned m_nRequests = 0; // that are not answered yet
};
