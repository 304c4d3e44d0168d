// What servers tell of, from the user agent's records to those who use the phone.
#include "host/services/phone/lampBook.h"
#include "tests/services/sipStand.h"

namespace {

const tagLampWatch kBen{0, "1002"};

tagAccountInfo infoOf(int line)
{
    tagAccountInfo info;
    EXPECT_NE(phone_GetAccountInfoById(line, &info), 0);
    return info;
}

class SipTold : public SipPhone
{
protected:
    ~SipTold() override
    {
        lampBook::instance().unwatch(kBen);
        lampBook::instance().unwatchList(0);
    }
    void tellLamp(uint32_t id, SIP_LAMP_STATE lamp)
    {
        auto record = sipWire::make<tagSipLamp>(SIP_LAMP, id);
        record.eLamp = lamp;
        agent.tell(record);
    }
    void tellMessages(bool isKnown, uint32_t fresh, uint32_t old)
    {
        auto record = sipWire::make<tagSipMessages>(SIP_MESSAGES, 0);
        record.bKnown = isKnown;
        record.nNew = fresh;
        record.nOld = old;
        agent.tell(record);
    }
    static bool comesTo(LAMP_STATE state)
    {
        return kit::waitUntil([&] { return lampBook::instance().state(kBen) == state; });
    }
};

} // namespace

TEST_F(SipTold, MessagesThatWaitAreCountedAtTheirLine)
{
    begin();
    tellMessages(true, 2, 8);
    EXPECT_TRUE(kit::waitUntil([] { return infoOf(0).nNewMessages == 2; }));
    EXPECT_EQ(infoOf(0).nOldMessages, 8);
    EXPECT_EQ(infoOf(1).nNewMessages, 0);
    tellMessages(false, 0, 0);
    EXPECT_TRUE(kit::waitUntil([] { return infoOf(0).nNewMessages == 0; }));
    tellMessages(true, 3, 0);
    EXPECT_TRUE(kit::waitUntil([] { return infoOf(0).nNewMessages == 3; }));
    agent.leave();
    EXPECT_TRUE(kit::waitUntil([] { return infoOf(0).nNewMessages == 0; }));
}

TEST_F(SipTold, AWatchedExtensionRingsAndItsCallIsTaken)
{
    begin();
    lampBook::instance().watch(kBen);
    const auto* watch = agent.next<tagSipWatch>(SIP_WATCH);
    ASSERT_TRUE(watch);
    EXPECT_STREQ(watch->szNumber, "1002");
    EXPECT_EQ(watch->nLine, 0u);
    const uint32_t id = watch->head.nId;
    EXPECT_EQ(lampBook::instance().pickUp(kBen), 0);
    tellLamp(id, SIP_LAMP_RINGING);
    EXPECT_TRUE(comesTo(LAMP_RINGING));
    const int call = lampBook::instance().pickUp(kBen);
    EXPECT_NE(call, 0);
    const auto* wanted = agent.next<tagSipPickUp>(SIP_PICK_UP);
    ASSERT_TRUE(wanted);
    EXPECT_STREQ(wanted->szNumber, "1002");
    EXPECT_EQ(wanted->nLine, 0u);
    EXPECT_STRNE(wanted->szSdp, "");
    tellMedia(SIP_TALK, wanted->head.nId, "their answer");
    EXPECT_TRUE(kit::waitUntil([] { return SipPhone::call().eState == CALL_TALKING; }));
    EXPECT_EQ(SipPhone::call().nId, call);
    tellEnd(wanted->head.nId, SIP_HUNG_UP);
    EXPECT_TRUE(waitsForEnd());
    agent.leave();
    EXPECT_TRUE(comesTo(LAMP_UNKNOWN));
    agentComes();
    ASSERT_TRUE((watch = agent.next<tagSipWatch>(SIP_WATCH)));
    EXPECT_GT(watch->head.nId, id);
}

TEST_F(SipTold, ACallThatIsTakenBeginsAsOneThatIsDialled)
{
    begin();
    writeAccount(0, readFile("/rundata/config/user/voip/sipAccount0.cfg") + "AnonymousCall=1\n");
    tellAccountChanged(0);
    tellLine(0, SIP_LINE_REGISTERED, 200);
    ASSERT_TRUE(kit::waitUntil([] { return stateOf(0) == LINE_DEFAULT_ACCOUNT; }));
    const tagCallOptions set = phoneService::instance().rules().settings().line(0).options;
    ASSERT_TRUE(set.bVideo && set.bAnonymous);
    lampBook::instance().watch(kBen);
    const auto* watch = agent.next<tagSipWatch>(SIP_WATCH);
    ASSERT_TRUE(watch);
    tellLamp(watch->head.nId, SIP_LAMP_RINGING);
    ASSERT_TRUE(comesTo(LAMP_RINGING));
    const int call = lampBook::instance().pickUp(kBen);
    ASSERT_NE(call, 0);
    const auto* wanted = agent.next<tagSipPickUp>(SIP_PICK_UP);
    ASSERT_TRUE(wanted);
    EXPECT_EQ(wanted->bAnonymous, 1u);
    EXPECT_TRUE(media->wishes[call].options.bVideo);
    EXPECT_EQ(media->wishes[call].options.bCamera, set.bCamera);
}

TEST_F(SipTold, TheCodeAndTheListOfALineAreThoseOfItsFile)
{
    writeAccount(0, "[account]\nEnable=1\nUserName=100\npassword=s3cret\nSIPServerHost=sip.example.com\n"
                    "PickUpCode=*8\nListAddress=all@pbx\n");
    boot();
    lampBook::instance().watchList(0);
    agentComes();
    const auto* account = agent.next<tagSipAccount>(SIP_ACCOUNT);
    ASSERT_TRUE(account);
    EXPECT_STREQ(account->szPickUp, "*8");
    const auto* list = agent.next<tagSipTarget>(SIP_WATCH_LIST);
    ASSERT_TRUE(list);
    EXPECT_STREQ(list->szTarget, "all@pbx");
    tellLine(0, SIP_LINE_REGISTERED, 200);
    writeAccount(0, "[account]\nEnable=1\nUserName=100\npassword=s3cret\nSIPServerHost=sip.example.com\n");
    tellAccountChanged(0);
    ASSERT_TRUE((list = agent.next<tagSipTarget>(SIP_WATCH_LIST)));
    EXPECT_STREQ(list->szTarget, "");
}
