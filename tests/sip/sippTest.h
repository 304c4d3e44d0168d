#pragma once
// The agent and its line, and SIPp at the other side of its calls.
#include "tests/sip/callTest.h"
#include "tests/sip/sippScenario.h"

class SipSipp : public SipCalls
{
protected:
    static constexpr uint32_t kFirst = SIP_CALL_FIRST_INCOMING;
    static constexpr const char* kOffer = "v=0\ns=offer";
    static constexpr const char* kAnswer = "v=0\ns=answer";

    // SIPp calls the line.
    void calls(const SippScenario& scenario, int count = 1, const QStringList& further = {});
    // SIPp takes the place of the line's server, and is called by it.
    void isCalled(const SippScenario& scenario, int count = 1);
    // A caller's scenario up to where the call talks.
    static SippScenario callerTalks(const QByteArray& lines = {});
    // The same of one who is called.
    static SippScenario calledTalks();
    // The call of callerTalks comes in, and is answered.
    void takeCall(uint32_t id = kFirst);
    // A call of calledTalks.
    void makeCall(uint32_t id);
    void expectTalk(uint32_t id, const char* sdp);
    // The scenario of a call that talks has come to its end, and so has the call.
    void expectDone(uint32_t id);
};
