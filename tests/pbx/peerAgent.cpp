#include "tests/pbx/peerAgent.h"
#include "tests/pbx/registrarProcess.h"

namespace {

constexpr const char* kOffer = "v=0\r\no=- 1 1 IN IP4 127.0.0.1\r\ns=offer\r\nc=IN IP4 127.0.0.1\r\n"
                               "t=0 0\r\nm=audio 40000 RTP/AVP 8\r\na=rtpmap:8 PCMA/8000\r\n";
constexpr const char* kAnswer = "v=0\r\no=- 2 1 IN IP4 127.0.0.1\r\ns=answer\r\nc=IN IP4 127.0.0.1\r\n"
                                "t=0 0\r\nm=audio 40002 RTP/AVP 8\r\na=rtpmap:8 PCMA/8000\r\n";

} // namespace

PeerAgent::PeerAgent() : AgentOrders(kOffer) {}

bool PeerAgent::begin(const char* user, uint32_t port, SIP_TRANSPORT transport, tagSipSetup setup,
                      const char* password)
{
    if (!agent.start(setup)) {
        ADD_FAILURE() << "the agent does not start";
        return false;
    }
    m_user = user;
    tagSipAccount account = accountAt(0, port, transport);
    sipWire::setText(account.szUser, user);
    sipWire::setText(account.szDisplayName, std::string("User ") + user);
    sipWire::setText(account.szAuthName, "");
    sipWire::setText(account.szPassword,
                     password ? std::string(password) : RegistrarProcess::passwordOf(user).toStdString());
    agent.tell(account);
    if (password)
        return true;
    const bool isRegistered = agent.nextLine(0, SIP_LINE_REGISTERED) != nullptr;
    EXPECT_TRUE(isRegistered) << user;
    return isRegistered;
}

void PeerAgent::answer(uint32_t id)
{
    tellMedia(SIP_ANSWER, id, kAnswer);
}

uint32_t PeerAgent::arrives()
{
    const tagSipArrived* arrived = nextArrived();
    EXPECT_TRUE(arrived) << "no call";
    return arrived ? arrived->head.nId : 0;
}

void PeerAgent::expectLamp(uint32_t watch, SIP_LAMP_STATE lamp)
{
    const auto* told = next<tagSipLamp>(SIP_LAMP, watch);
    ASSERT_TRUE(told) << lamp;
    EXPECT_EQ(told->eLamp, uint32_t(lamp));
}
