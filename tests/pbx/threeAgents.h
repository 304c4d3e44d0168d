#pragma once
// Three of the phone's own agents at one exchange; the third one by TCP.
#include "tests/pbx/peerAgent.h"

class ThreeAgents : public ::testing::Test
{
protected:
    void beginAt(uint32_t port, const tagSipSetup& setup)
    {
        ASSERT_TRUE(anna.begin("1001", port, SIP_UDP, setup));
        ASSERT_TRUE(ben.begin("1002", port, SIP_UDP, setup));
        ASSERT_TRUE(cleo.begin("1003", port, SIP_TCP, setup));
    }

    PeerAgent anna, ben, cleo;
};
