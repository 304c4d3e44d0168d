// The phone's own agents call each other through the exchange that comes along.
#include "tests/pbx/peerAgent.h"
#include "tests/pbx/registrarProcess.h"
#include <cstring>

namespace {

class PbxAgents : public ::testing::Test
{
protected:
    void begin(const QStringList& options = {})
    {
        ASSERT_TRUE(pbx.start(options)) << pbx.output().constData();
        ASSERT_TRUE(anna.begin("1001", pbx.port()));
        ASSERT_TRUE(ben.begin("1002", pbx.port(), SIP_TCP));
    }

    RegistrarProcess pbx;
    PeerAgent anna, ben;
};

} // namespace

TEST_F(PbxAgents, CallEachOtherTalkHoldAndHangUp)
{
    begin();
    anna.dial(1, "1002");
    const auto* arrived = reinterpret_cast<const tagSipArrived*>(
        ben.agent.next([](const tagSipHead& head) { return head.eKind == SIP_ARRIVED; }));
    ASSERT_TRUE(arrived);
    EXPECT_STREQ(arrived->szNumber, "1001");
    EXPECT_STREQ(arrived->szName, "User 1001");
    EXPECT_TRUE(strstr(arrived->szSdp, "s=offer"));
    const uint32_t id = arrived->head.nId;
    ben.ring(id);
    EXPECT_TRUE(anna.next<tagSipProgress>(SIP_PROGRESS, 1));
    ben.answer(id);
    anna.expectTalk(1);
    ben.expectTalk(id);
    // Ben holds, over the connection of his own.
    ben.tellMedia(SIP_MEDIA, id, "v=0\r\ns=hold\r\na=sendonly\r\n");
    const auto* offer = anna.next<tagSipMedia>(SIP_OFFER, 1);
    ASSERT_TRUE(offer);
    EXPECT_TRUE(strstr(offer->szSdp, "a=sendonly"));
    anna.tellMedia(SIP_MEDIA, 1, "v=0\r\ns=held\r\na=recvonly\r\n");
    ben.expectTalk(id);
    anna.hangUp(1);
    ben.expectEnd(id, SIP_HUNG_UP, 0);
    anna.expectEnd(1, SIP_HUNG_UP, 0);
}

TEST_F(PbxAgents, BusyDeclinedGivenUpAndNobodyThere)
{
    begin();
    anna.dial(1, "1002");
    uint32_t id = ben.arrives();
    ben.tellStatus(SIP_REFUSE, id, 486);
    anna.expectEnd(1, SIP_REFUSED, 486);
    anna.dial(2, "1002");
    id = ben.arrives();
    ben.ring(id);
    ASSERT_TRUE(anna.next<tagSipProgress>(SIP_PROGRESS, 2));
    anna.hangUp(2);
    ben.expectEnd(id, SIP_CANCELLED, 0);
    anna.expectEnd(2, SIP_HUNG_UP, 0);
    anna.dial(3, "1003");
    anna.expectEnd(3, SIP_REFUSED, 480);
    anna.dial(4, "1009");
    anna.expectEnd(4, SIP_REFUSED, 404);
}

TEST_F(PbxAgents, TwoPhonesOfANumberAndOneOfThemAnswers)
{
    begin();
    PeerAgent other;
    ASSERT_TRUE(other.begin("1002", pbx.port()));
    anna.dial(1, "1002");
    const uint32_t atBen = ben.arrives(), atOther = other.arrives();
    ben.ring(atBen);
    other.ring(atOther);
    ben.answer(atBen);
    other.expectEnd(atOther, SIP_ELSEWHERE, 0);
    ben.expectTalk(atBen);
}
