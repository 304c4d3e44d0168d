#pragma once
// The phone's own agent with an account at some exchange.
#include "tests/sip/agentOrders.h"
#include <string>

class PeerAgent : public AgentOrders
{
public:
    PeerAgent();
    // Registers; false with a failure of the test when that does not succeed.
    bool begin(const char* user, uint32_t port, SIP_TRANSPORT transport = SIP_UDP,
               tagSipSetup setup = AgentProcess::quickSetup(), const char* password = nullptr);
    const std::string& user() const { return m_user; }
    // Id of a call that has come in; 0 for none.
    uint32_t arrives();
    void ring(uint32_t id) { tellMedia(SIP_RING, id, ""); }
    void answer(uint32_t id);
    void hangUp(uint32_t id) { tellStatus(SIP_HANG_UP, id); }
    void expectTalk(uint32_t id) { EXPECT_TRUE(next<tagSipMedia>(SIP_TALK, id)) << id; }
    // What is told next of the extension that it watches.
    void expectLamp(uint32_t watch, SIP_LAMP_STATE lamp);

private:
    std::string m_user;
};
