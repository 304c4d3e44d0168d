// Whom calls are with, where that is somebody else than was dialled, or who calls at the same time.
#include "support/host/message.h"
#include "support/host/registry.h"
#include "tests/services/sipStand.h"

namespace {

class SipReached : public SipPhone
{
protected:
    void SetUp() override { begin(); }
    void tellPeer(uint32_t wire, const char* address, const char* name)
    {
        auto record = sipWire::make<tagSipPeer>(SIP_PEER, wire);
        sipWire::setText(record.szAddress, address);
        sipWire::setText(record.szName, name);
        agent.tell(record);
        kit::settle();
    }
};

} // namespace

TEST_F(SipReached, OneThatWasSentOnAtTheOwnServerIsWithTheNumberThere)
{
    tellEnd(dials("300"), SIP_REDIRECTED, 302, "sip:301@sip.example.com");
    const auto* dial = agent.next<tagSipDial>(SIP_DIAL);
    ASSERT_TRUE(dial);
    EXPECT_EQ(call().strReached, "301");
    EXPECT_EQ(call().forwardedBy, QStringList{"300"});
    tellMedia(SIP_TALK, dial->head.nId, "their answer");
    EXPECT_EQ(call().eState, CALL_TALKING);
    EXPECT_EQ(call().strReached, "301") << "whoever it talks with";
    EXPECT_EQ(call().forwardedBy, QStringList{"300"});
}

TEST_F(SipReached, TwoWhoCallEachOtherHaveOneCallAndHaveMissedNone)
{
    nuxSetRegistryInt("/rundata/config/user/user.ini", "CallWaiting", "bEnable", 1);
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_CALL_WAITING, 0);
    kit::settle();
    const uint32_t out = dials("200");
    int in = arrives(arrival(IN, "200"));
    EXPECT_TRUE(phoneService::instance().answer(in));
    const auto* over = agent.next<tagSipStatus>(SIP_HANG_UP);
    ASSERT_TRUE(over);
    EXPECT_EQ(over->head.nId, out);
    ASSERT_TRUE(waitsForEnd());
    ASSERT_EQ(calls().size(), 1);
    EXPECT_EQ(call().nId, in);
    tellEnd(IN, SIP_HUNG_UP);
    ASSERT_TRUE(waitsForEnd(2));

    const uint32_t other = dials("300");
    in = arrives(arrival(IN + 3, "200"));
    EXPECT_TRUE(phoneService::instance().answer(in));
    EXPECT_TRUE(agent.isQuiet(SIP_HANG_UP)) << "the one to somebody else goes on";
    EXPECT_EQ(calls().size(), 2);
    EXPECT_EQ(calls()[0].eState, CALL_RINGING);
    tellEnd(other, SIP_REFUSED, 486);
    tellEnd(IN + 3, SIP_HUNG_UP);
    ASSERT_TRUE(waitsForEnd(4));

    // At the other one's phone it is the call that came in that goes.
    const uint32_t answered = dials("200");
    arrives(arrival(IN + 1, "200"));
    tellMedia(SIP_TALK, answered, "their answer");
    tellEnd(IN + 1, SIP_CANCELLED);
    ASSERT_TRUE(waitsForEnd(5));
    EXPECT_EQ(lastEnded().eEnd, CALL_HUNG_UP);
    arrives(arrival(IN + 2, "201"));
    tellEnd(IN + 2, SIP_CANCELLED);
    ASSERT_TRUE(waitsForEnd(6));
    EXPECT_EQ(lastEnded().eEnd, CALL_MISSED) << "who else has called is missed as always";
}

TEST_F(SipReached, WhoPicksUpIsWithTheOneWhoHasCalledThere)
{
    const uint32_t wire = dials("8001");
    tellPeer(wire, "sip:200@sip.example.com", "Ben\u200e");
    EXPECT_EQ(call().strNumber, "200");
    EXPECT_EQ(call().strName, "Ben") << "without what cannot be seen";
    tellMedia(SIP_TALK, wire, "their answer");
    tellEnd(wire, SIP_HUNG_UP);
    ASSERT_TRUE(waitsForEnd());
    EXPECT_EQ(history("number", 1), QStringList{"200"});
    EXPECT_EQ(history("name", 1), QStringList{"Ben"});

    const uint32_t far = dials("8002");
    tellPeer(far, "sip:201@elsewhere.example.org:5070", "");
    EXPECT_EQ(call().strNumber, "201@elsewhere.example.org:5070");
    arrives(arrival(IN, "202"));
    tellPeer(far + 1, "sip:203@sip.example.com", "nobody's");
    EXPECT_EQ(calls()[0].strNumber, "201@elsewhere.example.org:5070");
    EXPECT_EQ(calls()[1].strNumber, "202");
}
