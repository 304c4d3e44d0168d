// The threads that sound goes through come before all others, where the system lets them.
#include "players/soundThread.h"
#include "players/deviceSound.h"
#include "tests/calls/callStand.h"
#include <QDir>
#include <atomic>
#include <cstdlib>
#include <gst/gst.h>
#include <sched.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace {

bool comesFirst(pid_t thread)
{
    return (sched_getscheduler(thread) & ~SCHED_RESET_ON_FORK) == SCHED_RR ||
           getpriority(PRIO_PROCESS, id_t(thread)) < 0;
}

class SoundThread : public CallStand
{
protected:
    void SetUp() override
    {
        bool mayCome = false;
        std::thread([&] {
            soundThreadComesFirst();
            mayCome = comesFirst(gettid());
        }).join();
        if (!mayCome)
            GTEST_SKIP() << "this system lets nobody come first";
    }
    static int first()
    {
        int count = 0;
        for (const QString& thread : QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            count += comesFirst(thread.toInt()) ? 1 : 0;
        return count;
    }
};

struct LookedAt : public soundPort
{
    void read(short* frame) override
    {
        std::fill(frame, frame + callSession::FRAME_SAMPLES, short(0));
        bFirst = comesFirst(gettid());
        ++nFrames;
    }
    void write(const short*) override {}

    std::atomic<bool> bFirst{false};
    std::atomic<int> nFrames{0};
};

} // namespace

TEST_F(SoundThread, ThatOfTheCallsComesFirstAndNoOtherDoes)
{
    LookedAt port;
    callDesk desk(port);
    EXPECT_EQ(first(), 0);
    desk.add(1, std::make_unique<callSession>(callSockets::open()));
    ASSERT_TRUE(waitFor([&] { return port.nFrames > 0; }));
    EXPECT_TRUE(port.bFirst);
    EXPECT_EQ(first(), 1);
    EXPECT_FALSE(comesFirst(gettid()));
}

TEST_F(SoundThread, ThoseOfLoudspeakerAndMicrophoneComeFirst)
{
    setenv("HX_SOUND_SINK", kit::recordingSink("/dev/null").constData(), 1);
    setenv("HX_SOUND_SOURCE", "audiotestsrc is-live=true", 1);
    deviceSound devices;
    devices.open();
    EXPECT_TRUE(waitFor([] { return first() == 2; })) << first();
    devices.close();
    EXPECT_TRUE(waitFor([] { return first() == 0; })) << "others go on with them";
    unsetenv("HX_SOUND_SINK");
    unsetenv("HX_SOUND_SOURCE");
}
