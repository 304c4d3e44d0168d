#include "sip/sessionRefresh.h"
#include <algorithm>
#include <sofia-sip/sip_header.h>
#include <string>
#include <strings.h>
#include <utility>

namespace {

constexpr unsigned kPart = 3; // of a session; the stack's own time is near its half

} // namespace

SessionRefresh::SessionRefresh(su_root_t* root, std::function<void()> refresh)
    : m_refresh(std::move(refresh)), m_timer(root)
{
}

void SessionRefresh::agree(const sip_t& message)
{
    m_bPeerCounts = m_bPeerCounts || sip_has_feature(message.sip_supported, "timer");
    if (message.sip_allow)
        m_bUpdate = sip_is_allowed(message.sip_allow, sip_method_update, "UPDATE") != 0;
    const sip_session_expires_t* expires = message.sip_session_expires;
    const unsigned long asked = expires ? expires->x_delta : unsigned(SIP_SESSION_SECONDS);
    m_nSeconds = std::clamp<unsigned>(unsigned(std::min<unsigned long>(asked, SIP_SESSION_SECONDS)),
                                      SIP_SESSION_LEAST_SECONDS, SIP_SESSION_SECONDS);
    if (isOurs(message))
        start();
    else
        stop();
}

// As the stack decides it.
bool SessionRefresh::isOurs(const sip_t& message) const
{
    const sip_session_expires_t* expires = message.sip_session_expires;
    const std::string who = expires && expires->x_refresher ? expires->x_refresher : "";
    const bool isReply = message.sip_status != nullptr;
    if (!m_bPeerCounts)
        return true;
    if (who.empty())
        return isReply || (expires && sip_has_feature(message.sip_require, "timer"));
    return strcasecmp(who.c_str(), isReply ? "uac" : "uas") == 0;
}

void SessionRefresh::start()
{
    m_timer.start(m_nSeconds * 1000 / kPart, [this] {
        start();
        m_refresh();
    });
}
