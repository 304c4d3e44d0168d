// A player as the phone keeps it: started again when it dies, later each time.
#include "host/services/messages/messageBus.h"
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

class WatchedPlayer : public PhoneTest
{
protected:
    WatchedPlayer() { EXPECT_EQ(messageServiceStart("app_hxPhone"), 1); }
    ~WatchedPlayer() override
    {
        player.stop();
        messageServiceStop();
    }
    // It is asked, and has the time to answer.
    void isAsked()
    {
        kit::stepTime(playerProcess::PING_MS);
        kit::waitUntil([] { return false; }, 300);
    }
    // Another one than so many, and than that one.
    bool isUp(int count = 0, qint64 before = 0)
    {
        return kit::waitUntil([&] { return ears.nUp > count && player.pid() != before; }, 20000);
    }
    struct Ears : public chMsgProcesser
    {
        int TryThreadMessage(msgObject& msg) override
        {
            nUp += msg.message == PLAYER_MSG_UP;
            return 0;
        }
        int nUp = 0;
    };

    playerProcess player{"hxMedia", nullptr};
    Ears ears;
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

TEST_F(WatchedPlayer, ThatIsFrozenIsEndedAndStartedAgain)
{
    player.watch(PLAYER_MEDIA);
    player.start();
    ASSERT_TRUE(isUp());
    const qint64 first = player.pid();
    for (int i = 0; i < 3 * playerProcess::PINGS_LOST_MAX; ++i)
        isAsked();
    EXPECT_EQ(player.pid(), first) << "it answers";
    ASSERT_EQ(::kill(pid_t(first), SIGSTOP), 0);
    for (int i = 0; i < playerProcess::PINGS_LOST_MAX; ++i)
        isAsked();
    EXPECT_EQ(player.pid(), first) << "it may be late";
    mark();
    isAsked();
    EXPECT_TRUE(traces().join('|').contains("app_hxMedia is not alive any more"))
        << traces().join('|').toStdString();
    kit::stepTime(1000);
    EXPECT_TRUE(isUp(1, first));
}
