// The phone's own agents are told of each other, and of messages, by the exchange that comes along.
#include "tests/pbx/agentStories.h"
#include "tests/pbx/registrarProcess.h"
#include "tests/pbx/threeAgents.h"
#include <cstring>

namespace {

class PbxAgentEvents : public ThreeAgents
{
protected:
    void begin(const QStringList& options = {})
    {
        ASSERT_TRUE(pbx.start(options)) << pbx.output().constData();
        beginAt(pbx.port());
    }

    RegistrarProcess pbx;
};

} // namespace

TEST_F(PbxAgentEvents, AWatchedExtensionRingsAndItsCallIsTaken)
{
    begin();
    storyPickUpByLamp(anna, ben, cleo);
}

TEST_F(PbxAgentEvents, AnExtensionWithoutAPhoneIsNotFree)
{
    begin();
    cleo.watch(1, "1002");
    anna.watchList("blf");
    cleo.expectLamp(1, SIP_LAMP_IDLE);
    const auto expectBen = [&](SIP_LAMP_STATE lamp) {
        const tagSipMember* member = nullptr;
        do {
            ASSERT_TRUE((member = anna.next<tagSipMember>(SIP_MEMBER, 0))) << lamp;
        } while (strcmp(member->szNumber, "1002") != 0 || member->eLamp != uint32_t(lamp));
    };
    expectBen(SIP_LAMP_IDLE);
    ben.agent.tell(sipWire::make<tagSipAccount>(SIP_ACCOUNT, 0)); // it has none any more
    cleo.expectLamp(1, SIP_LAMP_UNKNOWN);
    expectBen(SIP_LAMP_UNKNOWN);
}

TEST_F(PbxAgentEvents, TheListOfAllExtensionsComesWithTheirStates)
{
    begin();
    cleo.watchList("blf");
    const auto* told = cleo.next<tagSipList>(SIP_LIST, 0);
    ASSERT_TRUE(told);
    EXPECT_EQ(told->nMembers, 3u);
    const tagSipMember* member = nullptr;
    for (const char* name : {"Anna", "Ben", "Cleo & Co"}) {
        ASSERT_TRUE((member = cleo.next<tagSipMember>(SIP_MEMBER, 0))) << name;
        EXPECT_STREQ(member->szName, name);
        EXPECT_EQ(member->eLamp, uint32_t(SIP_LAMP_IDLE));
    }
    anna.dial(1, "1002");
    const uint32_t atBen = ben.arrives();
    ben.ring(atBen);
    do {
        ASSERT_TRUE((member = cleo.next<tagSipMember>(SIP_MEMBER, 0)));
    } while (strcmp(member->szNumber, "1002") != 0);
    EXPECT_EQ(member->eLamp, uint32_t(SIP_LAMP_RINGING));
}

TEST_F(PbxAgentEvents, ACallThatNobodyAnswersIsAMessageThatWaits)
{
    begin({"--ring", "1"});
    const auto* none = ben.next<tagSipMessages>(SIP_MESSAGES, 0);
    ASSERT_TRUE(none);
    EXPECT_EQ(none->bKnown, 1u);
    EXPECT_EQ(none->nNew, 0u);
    anna.dial(1, "1002");
    ASSERT_NE(ben.arrives(), 0u);
    anna.expectEnd(1, SIP_REFUSED, 480);
    const auto* one = ben.next<tagSipMessages>(SIP_MESSAGES, 0);
    ASSERT_TRUE(one);
    EXPECT_EQ(one->nNew, 1u);
}
