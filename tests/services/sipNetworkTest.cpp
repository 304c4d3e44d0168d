// What a call's media and its other side need to know of the network, and of media that are away.
#include "host/services/phone/callNumber.h"
#include "tests/services/sipStand.h"

namespace {

class SipNetworkOf : public SipPhone
{
protected:
    void SetUp() override { begin(); }
};

} // namespace

TEST_F(SipNetworkOf, AnOfferThatMeetsAMissingMediaProcessMayBeMadeAgain)
{
    talksIn(IN);
    media->bMissing = media->bEmpty = true;
    agent.isQuiet(SIP_MEDIA);
    tellMedia(SIP_OFFER, IN, "hold");
    ASSERT_TRUE(agent.next<tagSipHead>(SIP_NO_MEDIA));
    EXPECT_EQ(call().eState, CALL_TALKING);
    media->bMissing = media->bEmpty = false;
    tellMedia(SIP_OFFER, IN, "hold");
    EXPECT_NE(QString(agent.next<tagSipMedia>(SIP_MEDIA)->szSdp), "");
}

TEST_F(SipNetworkOf, TheMediaAskTheServerOfTheirLineThatIsThere)
{
    ASSERT_NE(dials("300"), 0u);
    EXPECT_EQ(media->lastWish.stunServer, "") << "nobody has heard of one";
    const auto tellStun = [this](uint32_t line, const char* address) {
        auto record = sipWire::make<tagSipStun>(SIP_STUN, line);
        sipWire::setText(record.szAddress, address);
        record.nPort = address[0] ? 3479 : 0;
        agent.tell(record);
        kit::settle();
    };
    tellStun(1, "203.0.113.8");
    tellStun(0, "203.0.113.7");
    ASSERT_NE(dials("301"), 0u);
    EXPECT_EQ(media->lastWish.stunServer, "203.0.113.7");
    EXPECT_EQ(media->lastWish.nStunPort, 3479);
    phoneService::instance().hangUp(call().nId);
    tellStun(0, "");
    ASSERT_NE(dials("302"), 0u);
    EXPECT_EQ(media->lastWish.stunServer, "");
    // The next agent has asked no server yet.
    tellStun(0, "203.0.113.7");
    agent.leave();
    ASSERT_TRUE(kit::waitUntil([] { return calls().isEmpty(); }));
    agentComes();
    tellLine(0, SIP_LINE_REGISTERED, 200);
    ASSERT_TRUE(kit::waitUntil([] { return stateOf(0) == LINE_DEFAULT_ACCOUNT; }));
    ASSERT_NE(dials("303"), 0u);
    EXPECT_EQ(media->lastWish.stunServer, "");
}

TEST(CallNumberAt, AnAddressAtTheLinesOwnServerIsShownAsItsNumber)
{
    EXPECT_EQ(callNumberAt("sip:1003@pbx.test:5070;transport=udp", "PBX.test", 5070), "1003");
    EXPECT_EQ(callNumberAt("sips:1003@pbx.test", "pbx.test", 5070), "1003");
    EXPECT_EQ(callNumberAt("sip:a%20b@pbx.test:5060", "pbx.test", 0), "a b");
    EXPECT_EQ(callNumberAt("sip:1003@[::1]:5070", "::1", 5070), "1003");
    EXPECT_EQ(callNumberAt("sip:1003@pbx.test:5071", "pbx.test", 5070), "1003@pbx.test:5071");
    EXPECT_EQ(callNumberAt("sip:1003@other.test", "pbx.test", 0), "1003@other.test");
    EXPECT_EQ(callNumberAt("sip:pbx.test", "pbx.test", 0), "pbx.test") << "it has no number";
}
