#pragma once
// A phone that wants to be told of something here. One notice is under way at a time: what changes meanwhile
// is told by the next one, whole.
#include "registrar/eventBody.h"
#include "registrar/ownDialog.h"
#include "registrar/pbxStack.h"
#include <functional>
#include <string>

class Subscription : public ReplyTaker
{
public:
    using Body = std::function<tagEventBody(unsigned version)>;

    // event: the value of its header. isList: the phone has to know lists.
    Subscription(nta_agent_t* agent, OwnDialog dialog, std::string event, bool isList, Body body);
    ~Subscription() override;
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;

    OwnDialog& dialog() { return m_dialog; }
    // The phone has said how long; 0 ends it with a last notice.
    void last(long seconds, long now);
    void tell(long now);
    bool isOver(long now) const { return m_bGone || (now >= m_nEnds && !m_pNotice); }
    void onReply(nta_outgoing_t* request, const sip_t* reply) override;

private:
    nta_agent_t* const m_pAgent;
    OwnDialog m_dialog;
    const std::string m_event;
    const bool m_bList;
    const Body m_body;
    nta_outgoing_t* m_pNotice = nullptr;
    unsigned m_nVersion = 0;
    long m_nEnds = 0;
    bool m_bWaits = false; // there is more to tell
    bool m_bGone = false;  // the phone does not want it any more
};
