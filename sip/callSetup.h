#pragma once
// The INVITE of a call from here, and the servers that it may go to, one after the other. All of them are
// told the same call: whoever hears of it from two sees that it is one.
#include "sip/sipStack.h"
#include <sofia-sip/sip.h>
#include <string>
#include <vector>

class Registration;

// Why a call is made, where it is not for its target alone.
struct tagCallOrigin
{
    std::string replaces;       // the header that names a call whose place it takes; empty for none
    std::string referredBy;     // the header that says who has asked for it; empty for nobody
    bool bReplacesOnly = false; // whoever does not know of replacing is not to take it
};

class CallSetup
{
public:
    CallSetup(const tagSipStack& stack, const Registration& line, const tagSipDial& dial,
              const tagCallOrigin& origin);

    // By the next server; null when the number makes no address that the line can call.
    nua_handle_t* invite(StackOwner* owner);
    // Whether the next one is the server of before once more, with provisional answers that are acknowledged:
    // it has asked for these, and none like it has before.
    bool demandReliable(const sip_t& refusal);
    const std::string& callId() const { return m_callId; }
    // There is another one.
    bool hasNext() const { return m_nNext < m_hops.size(); }
    const std::string& target() const { return m_target; }
    // The best of the places that the reply names and the line can call, the better one first.
    std::vector<std::string> movedTo(const sip_t& reply) const;

private:
    bool canCall(const std::string& target) const;
    // As the line calls it; empty when it cannot.
    std::string targetOf(const url_t& place) const;

    const tagSipStack& m_stack;
    const std::string m_server;
    std::vector<std::string> m_hops;
    size_t m_nNext = 0;
    unsigned int m_nNumber = 1; // of the INVITE, in its call
    bool m_bReliable = false;
    std::string m_target;
    std::string m_from;
    std::string m_callId;
    std::string m_contact;
    std::string m_transport;
    bool m_bHidden = false; // the caller is not to be told
    std::string m_lines;    // further headers
    const tagCallOrigin m_origin;
    std::string m_sdp;
};
