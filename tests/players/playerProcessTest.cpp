// A player as the phone keeps it: started again when it dies, later each time.
#include "host/services/players/playerProcesses.h"
#include "tests/kit/phoneTest.h"
#include "tests/kit/plain/processes.h"
#include <csignal>

namespace {

class PlayerProcess : public PhoneTest
{
protected:
    // With the pause that the log tells.
    void diesAndWaits(const QString& pause)
    {
        mark();
        ASSERT_TRUE(kit::waitUntil([this] { return player.pid() > 0; }));
        ASSERT_EQ(::kill(pid_t(player.pid()), SIGKILL), 0);
        EXPECT_TRUE(kit::waitUntil([&] { return !traces().filter("it is started again in").isEmpty(); }));
        EXPECT_TRUE(traces().join('|').contains("is started again in " + pause + " ms"))
            << traces().join('|').toStdString();
    }
    void startsAgainAfter(int pause)
    {
        kit::stepTime(pause / 2);
        EXPECT_EQ(player.pid(), 0);
        kit::stepTime(pause - pause / 2 + 20);
        EXPECT_TRUE(kit::waitUntil([this] { return player.pid() > 0; }));
    }

    playerProcess player{"hxMovie", nullptr};
};

} // namespace

TEST_F(PlayerProcess, ThatDiesSoonAgainIsStartedLaterEachTimeUntilItHasRunForTenSeconds)
{
    player.start();
    diesAndWaits("200");
    startsAgainAfter(200);
    diesAndWaits("400");
    startsAgainAfter(400);
    kit::stepTime(9000);
    diesAndWaits("800");
    startsAgainAfter(800);
    kit::stepTime(10000);
    diesAndWaits("200");
}
