#include "host/desktop/displayClient.h"
#include "host/services/system/netWorld.h"
#include "support/host/net.h"
#include "support/host/registry.h"
#include "tests/desktop/signageStand.h"

namespace {

class DisplayClient : public SignageTest
{
protected:
    void answer(const QByteArray& text) { writeFile("/tmp/ndeck_reg_result.txt", text); }
    void startOn()
    {
        nuxSetRegistryInt("/rundata/config/system.ini", "nDeck", "bEnable", 1);
        displayClient::instance().start();
    }
    static int registered() { return int(told().count("register")); }
    static constexpr int kMinute = 60000;
    static constexpr int kLook = 2 * displayClient::LOOK_MS; // the next look at the network is over
};

const char* const kGood = "<norvane><ndeck><result><success/></result></ndeck></norvane>";
const char* const kBad = "<norvane><ndeck><result><error>no</error></result></ndeck></norvane>";

} // namespace

TEST_F(DisplayClient, IsNotStartedWhileItIsOff)
{
    displayClient::instance().start();
    kit::stepTime(2 * kMinute);
    EXPECT_EQ(asked(), "");
}

TEST_F(DisplayClient, RegistersAtOnceAfterTheBoot)
{
    startOn();
    EXPECT_EQ(asked(), "register");
}

TEST_F(DisplayClient, WaitsForTheNetwork)
{
    netWorld().state = NET_STARTING;
    startOn();
    kit::stepTime(2 * kMinute);
    EXPECT_EQ(asked(), "");
    netWorld().state = NET_UP;
    kit::stepTime(kLook);
    EXPECT_EQ(asked(), "register");
}

TEST_F(DisplayClient, RegistersAgainWhenTheNetworkComesBack)
{
    startOn();
    answer(kGood);
    netWorld().state = NET_DOWN;
    kit::stepTime(kLook);
    netWorld().state = NET_UP;
    kit::stepTime(kLook);
    EXPECT_EQ(registered(), 2);
}

TEST_F(DisplayClient, AsksEachMinuteUntilTheServerAgrees)
{
    startOn();
    kit::stepTime(kMinute - 1000);
    EXPECT_EQ(registered(), 1);
    kit::stepTime(kLook);
    EXPECT_EQ(registered(), 2);
    answer(kBad);
    kit::stepTime(kMinute + kLook);
    EXPECT_EQ(registered(), 3) << "it refused";
    answer("Unknown");
    kit::stepTime(kMinute + kLook);
    EXPECT_EQ(registered(), 4) << "it did not answer";
    answer(kGood);
    kit::stepTime(9 * kMinute);
    EXPECT_EQ(registered(), 4);
    kit::stepTime(kMinute + kLook);
    EXPECT_EQ(registered(), 5) << "it may have lost the display";
}

TEST_F(DisplayClient, AnAnswerOfAnEarlierRunCountsForNothing)
{
    answer(kGood);
    startOn();
    kit::stepTime(kMinute + kLook);
    EXPECT_EQ(registered(), 2);
}

TEST_F(DisplayClient, FollowsItsSwitch)
{
    displayClient::instance().start();
    switchClient(1);
    EXPECT_EQ(asked(), "register");
    switchClient(0);
    EXPECT_EQ(asked(), "register|end");
    kit::stepTime(2 * kMinute);
    EXPECT_EQ(asked(), "register|end");
    switchClient(1);
    switchClient(2);
    EXPECT_EQ(asked(), "register|end|register|end") << "only 1 is on";
}

TEST_F(DisplayClient, RegistersAtAnotherServerAtOnce)
{
    startOn();
    answer(kGood);
    nuxSetRegistryString("/rundata/config/system.ini", "nDeck", "strServerURL", "http://other");
    EXPECT_TRUE(kit::waitUntil([] { return registered() == 2; }));
    EXPECT_EQ(asked(), "register|register");
}
