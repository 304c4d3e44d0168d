// Calls that are put through: whose settings the next one has, and which outcomes count.
#include "support/host/registry.h"
#include "tests/services/sipStand.h"

namespace {

constexpr uint32_t OUT = SIP_CALL_FIRST;

class SipCallTransfer : public SipPhone
{
protected:
    void SetUp() override { begin(); }
    static phoneBackend& backend() { return phoneService::instance().backend(); }
    void addToAccount(const QByteArray& keys)
    {
        writeAccount(0, readFile("/rundata/config/user/voip/sipAccount0.cfg") + keys);
        tellAccountChanged(0);
        kit::settle();
    }
    // The other side of that call wants one to 300.
    tagSipDial isReferred(uint32_t wire)
    {
        auto record = sipWire::make<tagSipReferred>(SIP_REFERRED, wire);
        sipWire::setText(record.szTarget, "sip:300@example.com");
        agent.tell(record);
        const auto* dial = agent.next<tagSipDial>(SIP_DIAL);
        EXPECT_TRUE(dial);
        return dial ? *dial : tagSipDial();
    }
};

} // namespace

TEST_F(SipCallTransfer, ALineThatKeepsItsNumberBackDoesSoWhenItIsPutThrough)
{
    addToAccount("AnonymousCall=1\n[Transfer]\nbByOther=1\n");
    tellLine(0, SIP_LINE_REGISTERED, 200);
    ASSERT_TRUE(kit::waitUntil([] { return stateOf(0) == LINE_DEFAULT_ACCOUNT; }));
    EXPECT_EQ(isReferred(talksOut()).bAnonymous, 1u);
}

TEST_F(SipCallTransfer, OneThatWasAskedForAndIsRedirectedIsAskedForOnce)
{
    addToAccount("[Transfer]\nbByOther=1\n");
    tellLine(0, SIP_LINE_REGISTERED, 200);
    ASSERT_TRUE(kit::waitUntil([] { return stateOf(0) == LINE_DEFAULT_ACCOUNT; }));
    talksIn(IN);
    const tagSipDial first = isReferred(IN);
    EXPECT_EQ(first.nReferrer, uint32_t(IN));
    tellEnd(first.head.nId, SIP_REDIRECTED, 302, "sip:301@example.com");
    const auto* dial = agent.next<tagSipDial>(SIP_DIAL);
    ASSERT_TRUE(dial);
    EXPECT_STREQ(dial->szTarget, "sip:301@example.com");
    EXPECT_EQ(dial->nReferrer, 0u) << "who asked has heard how the first one went";
}

TEST_F(SipCallTransfer, WhoTakesThePlaceOfAnotherIsAnsweredAsThatOneWas)
{
    const int id = arrives(arrival(IN));
    tagCallOptions options;
    options.bVideo = true;
    options.nBandwidth = 512;
    EXPECT_TRUE(backend().answer(id, options));
    EXPECT_TRUE(agent.next<tagSipMedia>(SIP_ANSWER));
    tellMedia(SIP_TALK, IN, "their offer");
    auto record = arrival(IN + 1, "201", "new offer");
    record.nReplaces = IN;
    agent.tell(record);
    EXPECT_EQ(nextMedia(SIP_ANSWER), "answer 2");
    const tagMediaWish wish = media->wishes[calls().last().nId];
    EXPECT_EQ(calls().last().strNumber, "201");
    EXPECT_TRUE(wish.options.bVideo);
    EXPECT_EQ(wish.options.nBandwidth, 512);
}

TEST_F(SipCallTransfer, AnOutcomeThatNobodyWaitsForEndsNothing)
{
    talksOut();
    for (const uint32_t status : {200u, 486u})
        tellStatus(SIP_TRANSFERRED, OUT, status);
    EXPECT_TRUE(agent.isQuiet(SIP_HANG_UP));
    EXPECT_EQ(call().eState, CALL_TALKING);
    EXPECT_EQ(call().strReason, "");
    for (const tagCall& told : heard)
        EXPECT_EQ(told.strReason, "");
}

TEST_F(SipCallTransfer, TwoAreConnectedWhenBothAreAgreed)
{
    nuxSetRegistryInt("/rundata/config/user/user.ini", "CallWaiting", "bEnable", 1);
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_CALL_WAITING, 0);
    kit::settle();
    const int one = talksIn(IN);
    const int two = arrives(arrival(IN + 1));
    EXPECT_TRUE(phoneService::instance().answer(two));
    EXPECT_TRUE(agent.next<tagSipMedia>(SIP_ANSWER));
    EXPECT_FALSE(backend().connect(one, two)) << "the other side does not know yet that it talks";
    EXPECT_FALSE(backend().connect(two, one));
    EXPECT_TRUE(agent.isQuiet(SIP_CONNECT));
    tellMedia(SIP_TALK, IN + 1, "their offer");
    EXPECT_TRUE(backend().connect(one, two));
    EXPECT_TRUE(agent.next<tagSipConnect>(SIP_CONNECT));
}
