#pragma once
// A call to the voice mail: it is answered, nothing is heard, and it is hung up after a moment.
#include "registrar/ownDialog.h"
#include "registrar/pbxStack.h"
#include "sip/sipTimer.h"
#include <string>

class MailCall : public ReplyTaker
{
public:
    enum : uint32_t { TALK_MS = 3000 };

    // Answers the call, or refuses it where nothing can be agreed on.
    MailCall(su_root_t* root, nta_agent_t* agent, const std::string& place, nta_incoming_t* call);
    ~MailCall() override;
    MailCall(const MailCall&) = delete;
    MailCall& operator=(const MailCall&) = delete;

    bool isAnswered() const { return m_bAnswered; }
    bool isOver() const { return m_bOver; }
    bool holds(const sip_t& request) const { return m_dialog.holds(request); }
    // A request of the caller's within the call; it is answered.
    void take(nta_incoming_t* request);
    void onReply(nta_outgoing_t* request, const sip_t* reply) override;

    // The answer to an offer of plain sound, which goes to that port here; empty when there is none.
    static std::string answerTo(const std::string& offer, unsigned port);

private:
    // Where what the caller says is thrown away; 0 when there is no room for it.
    unsigned openEar();
    void hangUp();

    nta_agent_t* const m_pAgent;
    nta_incoming_t* m_pCall;
    OwnDialog m_dialog;
    nta_outgoing_t* m_pBye = nullptr;
    int m_nEar = -1;
    bool m_bAnswered = false;
    bool m_bOver = false;
    SipTimer m_limit;
};
