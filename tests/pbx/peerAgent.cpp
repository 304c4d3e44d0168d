#include "tests/pbx/peerAgent.h"
#include "tests/pbx/registrarProcess.h"

const char* const PeerAgent::kOffer = "v=0\r\no=- 1 1 IN IP4 127.0.0.1\r\ns=offer\r\nc=IN IP4 127.0.0.1\r\n"
                                      "t=0 0\r\nm=audio 40000 RTP/AVP 8\r\na=rtpmap:8 PCMA/8000\r\n";
const char* const PeerAgent::kAnswer = "v=0\r\no=- 2 1 IN IP4 127.0.0.1\r\ns=answer\r\nc=IN IP4 127.0.0.1\r\n"
                                       "t=0 0\r\nm=audio 40002 RTP/AVP 8\r\na=rtpmap:8 PCMA/8000\r\n";

bool PeerAgent::begin(const char* user, uint32_t port, SIP_TRANSPORT transport, tagSipSetup setup,
                      const char* password)
{
    if (!agent.start(setup)) {
        ADD_FAILURE() << "the agent does not start";
        return false;
    }
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

void PeerAgent::dial(uint32_t id, const char* number)
{
    auto record = sipWire::make<tagSipDial>(SIP_DIAL, id);
    sipWire::setText(record.szTarget, number);
    sipWire::setText(record.szSdp, kOffer);
    agent.tell(record);
}

uint32_t PeerAgent::arrives()
{
    const tagSipHead* head = agent.next([](const tagSipHead& each) { return each.eKind == SIP_ARRIVED; });
    EXPECT_TRUE(head) << "no call";
    return head ? head->nId : 0;
}

void PeerAgent::tellMedia(SIP_RECORD kind, uint32_t id, const char* sdp)
{
    auto record = sipWire::make<tagSipMedia>(kind, id);
    sipWire::setText(record.szSdp, sdp);
    agent.tell(record);
}

void PeerAgent::tellStatus(SIP_RECORD kind, uint32_t id, uint32_t status)
{
    auto record = sipWire::make<tagSipStatus>(kind, id);
    record.nStatus = status;
    agent.tell(record);
}

void PeerAgent::expectEnd(uint32_t id, SIP_ENDING ending, uint32_t status)
{
    const auto* ended = next<tagSipEnded>(SIP_ENDED, id);
    ASSERT_TRUE(ended) << id;
    EXPECT_EQ(ended->eEnding, uint32_t(ending)) << ended->szReason;
    EXPECT_EQ(ended->nStatus, status) << ended->szReason;
}
