#pragma once
// The phone's own agent with an account at some exchange.
#include "tests/sip/agentProcess.h"
#include <gtest/gtest.h>

class PeerAgent
{
public:
    // Registers; false with a failure of the test when that does not succeed.
    bool begin(const char* user, uint32_t port, SIP_TRANSPORT transport = SIP_UDP,
               tagSipSetup setup = AgentProcess::quickSetup(), const char* password = nullptr);
    void dial(uint32_t id, const char* number);
    // Id of a call that has come in; 0 for none.
    uint32_t arrives();
    void ring(uint32_t id) { tellMedia(SIP_RING, id, ""); }
    void answer(uint32_t id) { tellMedia(SIP_ANSWER, id, kAnswer); }
    void tellMedia(SIP_RECORD kind, uint32_t id, const char* sdp);
    void tellStatus(SIP_RECORD kind, uint32_t id, uint32_t status = 0);
    void hangUp(uint32_t id) { tellStatus(SIP_HANG_UP, id); }
    template <typename Record>
    const Record* next(SIP_RECORD kind, uint32_t id, int ms = AgentProcess::WAIT_MS)
    {
        return reinterpret_cast<const Record*>(agent.next(kind, id, ms));
    }
    void expectTalk(uint32_t id) { EXPECT_TRUE(next<tagSipMedia>(SIP_TALK, id)) << id; }
    void expectEnd(uint32_t id, SIP_ENDING ending, uint32_t status);

    static const char* const kOffer;
    static const char* const kAnswer;
    AgentProcess agent;
};
