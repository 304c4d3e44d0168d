#include "tests/sip/sippTest.h"
#include "tests/kit/plain/ports.h"

namespace {

const int kLimitSeconds = qEnvironmentVariableIsSet("HX_LONG") ? 400 : 60;

} // namespace

void SipSipp::calls(const SippScenario& scenario, int count, const QStringList& further)
{
    begin(AgentProcess::calmSetup());
    sipp.setLimit(kLimitSeconds);
    sipp.startText(scenario.text(), kit::freePort(), agent.port(), count,
                   QStringList{"-s", contact} + further);
}

void SipSipp::isCalled(const SippScenario& scenario, int count)
{
    begin(AgentProcess::calmSetup());
    const uint32_t port = peer->port();
    peer->reply(peer->receive("SUBSCRIBE"), "489 Bad Event"); // else the peer is missed when it has gone
    peer.reset();
    sipp.setLimit(kLimitSeconds);
    sipp.startText(scenario.text(), port, agent.port(), count);
}

SippScenario SipSipp::callerTalks(const QByteArray& lines)
{
    SippScenario scenario(SippScenario::CALLER);
    scenario.asks("INVITE", lines, kOffer).mayHear(100).mayHear(180).hears(200).asks("ACK");
    return scenario;
}

SippScenario SipSipp::calledTalks()
{
    SippScenario scenario(SippScenario::CALLED);
    scenario.hears("INVITE").answersCall("200 OK", {}, kAnswer).hears("ACK");
    return scenario;
}

void SipSipp::takeCall(uint32_t id)
{
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, id));
    tellMedia(SIP_RING, id, "");
    tellMedia(SIP_ANSWER, id, "v=0\r\ns=answer\r\n");
    ASSERT_TRUE(next<tagSipMedia>(SIP_TALK, id));
}

void SipSipp::makeCall(uint32_t id)
{
    dial(id, "300");
    ASSERT_TRUE(next<tagSipMedia>(SIP_TALK, id));
}

void SipSipp::expectTalk(uint32_t id, const char* sdp)
{
    const auto* talk = next<tagSipMedia>(SIP_TALK, id);
    ASSERT_TRUE(talk) << sdp;
    EXPECT_STREQ(talk->szSdp, sdp);
}

void SipSipp::expectDone(uint32_t id)
{
    expectEnd(id, SIP_HUNG_UP, 0);
    sipp.expectDone();
}
