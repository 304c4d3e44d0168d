// Long work on the user-interface thread, which leaves room for others.
#include "frame/laterWork.h"
#include "tests/kit/kitTime.h"
#include "tests/kit/phoneTest.h"
#include <QEventLoop>

namespace {

class LaterWorkTest : public PhoneTest
{
protected:
    // A step that takes longer than a turn may.
    void addLong(const char* name)
    {
        work.Add([this, name] {
            kit::moveClocks(LaterWork::TURN_MS + 1);
            done.append(name);
        });
    }
    void add(const char* name)
    {
        work.Add([this, name] { done.append(name); });
    }
    LaterWork work;
    QStringList done;
};

} // namespace

TEST_F(LaterWorkTest, ShortStepsAreDoneAtOnceInTheirOrder)
{
    add("one");
    add("two");
    EXPECT_EQ(done, (QStringList{"one", "two"}));
}

TEST_F(LaterWorkTest, ALongStepLeavesTheRestToOtherTurns)
{
    addLong("one");
    addLong("two");
    addLong("three");
    add("four");
    EXPECT_EQ(done, QStringList{"one"});
    EXPECT_TRUE(kit::waitUntil([this] { return done.size() == 4; }));
    EXPECT_EQ(done, (QStringList{"one", "two", "three", "four"}));
}

TEST_F(LaterWorkTest, AStepThatAsksForMoreIsFinishedFirst)
{
    work.Add([this] {
        add("inner");
        done.append("outer");
    });
    EXPECT_EQ(done, (QStringList{"outer", "inner"}));
}

TEST_F(LaterWorkTest, WhatIsForLaterIsNotDoneInThisTurnAndStaysInItsOrder)
{
    add("now");
    work.AddForLater([this] { done.append("later"); });
    add("last");
    EXPECT_EQ(done, QStringList{"now"});
    EXPECT_FALSE(work.IsDone());
    EXPECT_TRUE(kit::waitUntil([this] { return work.IsDone(); }));
    EXPECT_EQ(done, (QStringList{"now", "later", "last"}));
}

TEST_F(LaterWorkTest, WhatIsClearedIsNeverDone)
{
    work.AddForLater([this] { done.append("later"); });
    work.Clear();
    EXPECT_TRUE(work.IsDone());
    kit::settle();
    EXPECT_TRUE(done.isEmpty());
    add("new");
    EXPECT_EQ(done, QStringList{"new"});
}

TEST_F(LaterWorkTest, OthersHaveTheThreadBetweenTwoTurns)
{
    QTimer::singleShot(0, [this] { done.append("other"); });
    addLong("one");
    addLong("two");
    EXPECT_TRUE(kit::waitUntil([this] { return done.size() == 3; }));
    EXPECT_EQ(done, (QStringList{"one", "other", "two"}));
}

TEST_F(LaterWorkTest, AStepWithAnEventLoopOfItsOwnIsFinishedBeforeTheNext)
{
    work.AddForLater([this] {
        QEventLoop loop;
        QTimer::singleShot(0, &loop, &QEventLoop::quit);
        loop.exec();
        done.append("asked");
    });
    add("next");
    EXPECT_TRUE(kit::waitUntil([this] { return done.size() == 2; }));
    EXPECT_EQ(done, (QStringList{"asked", "next"}));
}
