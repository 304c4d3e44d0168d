// The phone's own agents call each other through the exchange that comes along.
#include "tests/pbx/agentStories.h"
#include "tests/pbx/registrarProcess.h"

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
    // Ben holds, over the connection of his own.
    const uint32_t id = storyTalkAndHold(anna, 1, ben);
    anna.hangUp(1);
    ben.expectEnd(id, SIP_HUNG_UP, 0);
    anna.expectEnd(1, SIP_HUNG_UP, 0);
}

TEST_F(PbxAgents, BusyDeclinedGivenUpAndNobodyThere)
{
    begin();
    storyWithoutAWord(anna, ben);
    anna.dial(4, "1003");
    anna.expectEnd(4, SIP_REFUSED, 480);
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
