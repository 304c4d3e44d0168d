// Long work on the user-interface thread, which leaves room for others.
#include "signage/laterWork.h"
#include "tests/kit/phoneTest.h"

namespace {

class LaterWork : public PhoneTest
{
protected:
    // A step that takes longer than a turn may.
    void addLong(const char* name)
    {
        work.Add([this, name] {
            QElapsedTimer timer;
            timer.start();
            while (!timer.hasExpired(laterWork::TURN_MS + 1))
                continue;
            done.append(name);
        });
    }
    void add(const char* name)
    {
        work.Add([this, name] { done.append(name); });
    }
    laterWork work;
    QStringList done;
};

} // namespace

TEST_F(LaterWork, ShortStepsAreDoneAtOnceInTheirOrder)
{
    add("one");
    add("two");
    EXPECT_EQ(done, (QStringList{"one", "two"}));
}

TEST_F(LaterWork, ALongStepLeavesTheRestToOtherTurns)
{
    addLong("one");
    addLong("two");
    addLong("three");
    add("four");
    EXPECT_EQ(done, QStringList{"one"});
    EXPECT_TRUE(kit::waitUntil([this] { return done.size() == 4; }));
    EXPECT_EQ(done, (QStringList{"one", "two", "three", "four"}));
}

TEST_F(LaterWork, AStepThatAsksForMoreIsFinishedFirst)
{
    work.Add([this] {
        add("inner");
        done.append("outer");
    });
    EXPECT_EQ(done, (QStringList{"outer", "inner"}));
}
