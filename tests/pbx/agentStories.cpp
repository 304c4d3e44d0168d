#include "tests/pbx/agentStories.h"
#include <cstring>

uint32_t storyTalkAndHold(PeerAgent& caller, uint32_t id, PeerAgent& called)
{
    caller.dial(id, called.user().c_str());
    const tagSipArrived* arrived = called.nextArrived();
    EXPECT_TRUE(arrived) << "no call";
    if (!arrived)
        return 0;
    EXPECT_EQ(arrived->szNumber, caller.user());
    EXPECT_EQ(arrived->szName, "User " + caller.user());
    EXPECT_TRUE(strstr(arrived->szSdp, "s=offer")) << arrived->szSdp;
    const uint32_t there = arrived->head.nId;
    called.ring(there);
    EXPECT_TRUE(caller.next<tagSipProgress>(SIP_PROGRESS, id));
    called.answer(there);
    caller.expectTalk(id);
    called.expectTalk(there);
    called.tellMedia(SIP_MEDIA, there, "v=0\r\ns=hold\r\na=sendonly\r\n");
    const auto* offer = caller.next<tagSipMedia>(SIP_OFFER, id);
    EXPECT_TRUE(offer && strstr(offer->szSdp, "a=sendonly"));
    caller.tellMedia(SIP_MEDIA, id, "v=0\r\ns=held\r\na=recvonly\r\n");
    called.expectTalk(there);
    return there;
}

void storyWithoutAWord(PeerAgent& caller, PeerAgent& called)
{
    caller.dial(1, called.user().c_str());
    called.tellStatus(SIP_REFUSE, called.arrives(), 486);
    caller.expectEnd(1, SIP_REFUSED, 486);
    caller.dial(2, called.user().c_str());
    const uint32_t there = called.arrives();
    called.ring(there);
    ASSERT_TRUE(caller.next<tagSipProgress>(SIP_PROGRESS, 2));
    caller.hangUp(2);
    called.expectEnd(there, SIP_CANCELLED, 0);
    caller.expectEnd(2, SIP_HUNG_UP, 0);
    caller.dial(3, "1009");
    caller.expectEnd(3, SIP_REFUSED, 404);
}

void storyPickUpByLamp(PeerAgent& caller, PeerAgent& called, PeerAgent& watcher)
{
    watcher.watch(1, called.user().c_str());
    watcher.expectLamp(1, SIP_LAMP_IDLE);
    caller.dial(1, called.user().c_str());
    const uint32_t atCalled = called.arrives();
    called.ring(atCalled);
    watcher.expectLamp(1, SIP_LAMP_RINGING);
    ASSERT_TRUE(caller.next<tagSipProgress>(SIP_PROGRESS, 1));
    watcher.pickUp(7, called.user().c_str());
    const tagSipArrived* arrived = caller.nextArrived();
    ASSERT_TRUE(arrived);
    EXPECT_EQ(arrived->nReplaces, 1u);
    const uint32_t atCaller = arrived->head.nId;
    caller.answer(atCaller);
    watcher.expectTalk(7);
    caller.expectTalk(atCaller);
    called.expectEnd(atCalled, SIP_ELSEWHERE, 0);
    watcher.expectLamp(1, SIP_LAMP_IDLE);
    watcher.hangUp(7);
    caller.expectEnd(atCaller, SIP_HUNG_UP, 0);
}
