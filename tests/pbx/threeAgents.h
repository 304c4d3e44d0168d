#pragma once
// Three of the phone's own agents at one exchange; the third one by TCP.
#include "tests/pbx/peerAgent.h"

class ThreeAgents : public ::testing::Test
{
protected:
    void beginAt(uint32_t port)
    {
        ASSERT_TRUE(anna.begin("1001", port, SIP_UDP, AgentProcess::calmSetup()));
        ASSERT_TRUE(ben.begin("1002", port, SIP_UDP, AgentProcess::calmSetup()));
        ASSERT_TRUE(cleo.begin("1003", port, SIP_TCP, AgentProcess::calmSetup()));
    }

    PeerAgent anna, ben, cleo;
};
