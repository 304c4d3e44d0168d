// What the phone says of calls while nobody answers it, and what is left of them.
#include "tests/services/sipStand.h"
#include <atomic>
#include <private/qhooks_p.h>

namespace {

constexpr uint32_t OUT = SIP_CALL_FIRST;
constexpr int CALLS = 40; // each way

// Objects of the toolkit that have begun and not ended since it counts.
class LiveObjects
{
public:
    LiveObjects()
    {
        qtHookData[QHooks::AddQObject] = reinterpret_cast<quintptr>(&begins);
        qtHookData[QHooks::RemoveQObject] = reinterpret_cast<quintptr>(&ends);
    }
    ~LiveObjects() { qtHookData[QHooks::AddQObject] = qtHookData[QHooks::RemoveQObject] = 0; }
    static int count() { return s_count; }

private:
    static void begins(QObject*) { ++s_count; }
    static void ends(QObject*) { --s_count; }
    static inline std::atomic<int> s_count{0};
};

class SipUnheard : public SipPhone
{
protected:
    void SetUp() override { begin(); }
    static callRules& rules() { return phoneService::instance().rules(); }
};

} // namespace

TEST_F(SipUnheard, AHoldAndItsEndCountAtOnceAndAreToldAsUnheardUntilTheyAreAnswered)
{
    talksOut();
    const int id = call().nId;
    kit::stepTime(5000);
    EXPECT_FALSE(call().bUnheard) << "nothing is asked";
    EXPECT_TRUE(rules().setHeld(id, true));
    EXPECT_TRUE(media->stills.value(id)) << "whatever the other side knows";
    EXPECT_EQ(nextMedia(SIP_MEDIA), "offer 2");
    kit::stepTime(1000);
    EXPECT_FALSE(call().bUnheard);
    kit::stepTime(1500);
    EXPECT_TRUE(call().bUnheard);
    // Also while the offer before has no answer.
    EXPECT_TRUE(rules().setHeld(id, false));
    EXPECT_FALSE(media->stills.value(id));
    EXPECT_TRUE(rules().setHeld(id, true));
    EXPECT_TRUE(media->stills.value(id));
    EXPECT_TRUE(call().bUnheard);
    tellMedia(SIP_TALK, OUT, "held");
    EXPECT_FALSE(call().bUnheard);
    kit::stepTime(5000);
    EXPECT_FALSE(call().bUnheard);

    EXPECT_TRUE(rules().setHeld(id, false));
    EXPECT_EQ(nextMedia(SIP_MEDIA), "offer 3");
    kit::stepTime(2500);
    EXPECT_TRUE(call().bUnheard);
    tellMedia(SIP_OFFER, OUT, "theirs goes first");
    EXPECT_FALSE(call().bUnheard) << "somebody is there";
}

TEST_F(SipUnheard, WhoDialsIsToldThatTheServerSaysNothing)
{
    dials("300");
    auto progress = sipWire::make<tagSipProgress>(SIP_PROGRESS, OUT);
    agent.tell(progress);
    EXPECT_TRUE(kit::waitUntil([] { return call().bUnheard; }));
    EXPECT_TRUE(heard.last().bUnheard);
    progress.nStatus = 100;
    agent.tell(progress);
    EXPECT_TRUE(kit::waitUntil([] { return !call().bUnheard; }));
    EXPECT_FALSE(call().bRingsThere);
    progress.nStatus = 0;
    agent.tell(progress);
    EXPECT_TRUE(kit::waitUntil([] { return call().bUnheard; }));
    tellEnd(OUT, SIP_REDIRECTED, 302, "sip:301@example.com");
    ASSERT_TRUE(agent.next<tagSipDial>(SIP_DIAL));
    EXPECT_FALSE(call().bUnheard) << "it is another server's, perhaps";
    progress.head.nId = OUT + 1;
    agent.tell(progress);
    EXPECT_TRUE(kit::waitUntil([] { return call().bUnheard; }));
    EXPECT_TRUE(phoneService::instance().hangUp(call().nId)) << "it need not be waited for";
    EXPECT_EQ(nextStatus(SIP_HANG_UP), 0u);
    EXPECT_TRUE(calls().isEmpty());
}

TEST_F(SipUnheard, NothingOfACallOutlivesIt)
{
    uint32_t wire = IN;
    const auto both = [&] {
        const int id = arrives(arrival(wire++));
        EXPECT_TRUE(phoneService::instance().hangUp(id));
        const uint32_t out = dials("300");
        tellEnd(out, SIP_REFUSED, 486);
        EXPECT_TRUE(kit::waitUntil([] { return calls().isEmpty(); }));
        kit::settle();
    };
    const LiveObjects alive;
    both();
    const int before = LiveObjects::count();
    for (int round = 0; round < CALLS; ++round)
        both();
    // What began before may end meanwhile; what a call leaves is there as often as there were calls.
    EXPECT_TRUE(kit::waitUntil([&] { return LiveObjects::count() - before < CALLS / 4; }))
        << LiveObjects::count() - before;
}
