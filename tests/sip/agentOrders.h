#pragma once
// The agent, and what the phone tells it of calls, lamps and lists, and hears of them.
#include "tests/sip/agentProcess.h"
#include <gtest/gtest.h>

class AgentOrders
{
public:
    // offer: the media of calls from here.
    explicit AgentOrders(const char* offer) : m_pOffer(offer) {}

    void dial(uint32_t id, const char* target, bool isAnonymous = false);
    void pickUp(uint32_t id, const char* number, uint32_t line = 0);
    void tellMedia(SIP_RECORD kind, uint32_t id, const char* sdp);
    void tellStatus(SIP_RECORD kind, uint32_t id, uint32_t status = 0);
    void tellTarget(SIP_RECORD kind, uint32_t id, const char* target);
    void watch(uint32_t id, const char* number, uint32_t line = 0);
    void watchList(const char* address) { tellTarget(SIP_WATCH_LIST, 0, address); }

    // As AgentProcess::next().
    template <typename Record>
    const Record* next(SIP_RECORD kind, uint32_t id, int ms = AgentProcess::WAIT_MS)
    {
        return reinterpret_cast<const Record*>(agent.next(kind, id, ms));
    }
    // A call that comes in, of any number; null for none.
    const tagSipArrived* nextArrived(int ms = AgentProcess::WAIT_MS);
    void expectEnd(uint32_t id, SIP_ENDING ending, uint32_t status);
    // All that it was told before has been taken.
    void expectTaken();

    AgentProcess agent;

private:
    const char* const m_pOffer;
};
