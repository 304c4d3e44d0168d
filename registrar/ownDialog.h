#pragma once
// A dialog whose one end is the exchange itself: it was begun by a request from a phone.
#include "registrar/pbxStack.h"
#include <string>

class OwnDialog
{
public:
    // place: of the exchange. False from isGood() when the request has no address to answer to.
    OwnDialog(nta_agent_t* agent, const std::string& place, nta_incoming_t* begun);

    bool isGood() const { return !m_target.empty(); }
    // Of the same dialog, and newer than what came before.
    bool holds(const sip_t& request) const;
    bool isNewer(const sip_t& request) const { return request.sip_cseq->cs_seq > m_nRemoteSequence; }
    // The phone may have moved.
    void follow(const sip_t& request);
    const std::string& ownAddress() const { return m_own; }
    // The next request to the phone; the caller adds what it is about. Null when it cannot be made.
    msg_t* request(const char* method);

private:
    nta_agent_t* const m_pAgent;
    std::string m_own; // our address, as a contact
    std::string m_target;
    std::string m_route;
    std::string m_callId, m_ownTag, m_remoteTag;
    std::string m_local, m_remote; // header values
    uint32_t m_nSequence = 0;
    uint32_t m_nRemoteSequence = 0;
};
