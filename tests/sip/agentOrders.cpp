#include "tests/sip/agentOrders.h"

void AgentOrders::dial(uint32_t id, const char* target, bool isAnonymous)
{
    auto record = sipWire::make<tagSipDial>(SIP_DIAL, id);
    record.bAnonymous = isAnonymous;
    sipWire::setText(record.szTarget, target);
    sipWire::setText(record.szSdp, m_pOffer);
    agent.tell(record);
}

void AgentOrders::pickUp(uint32_t id, const char* number, uint32_t line)
{
    auto record = sipWire::make<tagSipPickUp>(SIP_PICK_UP, id);
    record.nLine = line;
    sipWire::setText(record.szNumber, number);
    sipWire::setText(record.szSdp, m_pOffer);
    agent.tell(record);
}

void AgentOrders::tellMedia(SIP_RECORD kind, uint32_t id, const char* sdp)
{
    auto record = sipWire::make<tagSipMedia>(kind, id);
    sipWire::setText(record.szSdp, sdp);
    agent.tell(record);
}

void AgentOrders::tellStatus(SIP_RECORD kind, uint32_t id, uint32_t status)
{
    auto record = sipWire::make<tagSipStatus>(kind, id);
    record.nStatus = status;
    agent.tell(record);
}

void AgentOrders::tellTarget(SIP_RECORD kind, uint32_t id, const char* target)
{
    auto record = sipWire::make<tagSipTarget>(kind, id);
    sipWire::setText(record.szTarget, target);
    agent.tell(record);
}

void AgentOrders::watch(uint32_t id, const char* number, uint32_t line)
{
    auto record = sipWire::make<tagSipWatch>(SIP_WATCH, id);
    record.nLine = line;
    sipWire::setText(record.szNumber, number);
    agent.tell(record);
}

void AgentOrders::expectTaken()
{
    agent.tell(sipWire::make<tagSipHead>(SIP_PING, 0));
    ASSERT_TRUE(agent.next(SIP_PONG, 0));
}

const tagSipArrived* AgentOrders::nextArrived(int ms)
{
    return reinterpret_cast<const tagSipArrived*>(
        agent.next([](const tagSipHead& head) { return head.eKind == SIP_ARRIVED; }, ms));
}

void AgentOrders::expectEnd(uint32_t id, SIP_ENDING ending, uint32_t status)
{
    const auto* ended = next<tagSipEnded>(SIP_ENDED, id);
    ASSERT_TRUE(ended) << id;
    EXPECT_EQ(ended->eEnding, uint32_t(ending)) << ended->szReason;
    EXPECT_EQ(ended->nStatus, status) << ended->szReason;
}
