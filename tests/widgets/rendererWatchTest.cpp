// The budgets of the processes that draw texts, as they are shipped. What each process has taken says the
// test.
#include "host/web/rendererWatch.h"
#include "host/web/processUse.h"
#include "tests/kit/kitTime.h"
#include "tests/kit/phoneTest.h"
#include <QHash>
#include <QProcess>
#include <unistd.h>

namespace {

constexpr qint64 kMiB = 1024 * 1024;

QHash<pid_t, tagProcessUse>& uses()
{
    static QHash<pid_t, tagProcessUse> all;
    return all;
}

} // namespace

tagProcessUse processUse(pid_t process)
{
    return uses().value(process);
}

void processLimitMemory(pid_t, qint64) {}

namespace {

class RendererWatch : public PhoneTest
{
protected:
    RendererWatch()
    {
        kit::holdClocks(true);
        m_process.start("sleep", {"1000"});
        EXPECT_TRUE(m_process.waitForStarted());
        use().bThere = true;
        // What it took before it drew for us is not held against it.
        use().nProcessorMs = 60000;
        QObject::connect(&watch(), &rendererWatch::ending, &m_user,
                         [this](pid_t, int reason) { reasons.append(reason); });
    }
    ~RendererWatch() override
    {
        kit::holdClocks(false);
        watch().leave(&m_user);
        m_process.kill();
        m_process.waitForFinished();
    }
    static rendererWatch& watch() { return rendererWatch::instance(); }
    tagProcessUse& use() { return uses()[pid_t(m_process.processId())]; }
    void draws(bool hasText) { watch().use(&m_user, pid_t(m_process.processId()), hasText); }
    // So much at the beginning of a second.
    void takes(int ms)
    {
        use().nProcessorMs += ms;
        kit::stepTime(1000);
    }
    bool isEnded()
    {
        return kit::waitUntil([this] { return m_process.state() == QProcess::NotRunning; });
    }

    QList<int> reasons;

private:
    QProcess m_process;
    QObject m_user;
};

} // namespace

TEST_F(RendererWatch, MayTakeSixSecondsAtOnce)
{
    draws(true);
    takes(6000);
    EXPECT_EQ(reasons, QList<int>());
    takes(300); // of which it had 450 at least
    EXPECT_EQ(reasons, QList<int>());
    takes(1500);
    EXPECT_EQ(reasons, QList<int>{rendererWatch::TOO_BUSY});
    EXPECT_TRUE(isEnded());
}

TEST_F(RendererWatch, MayNotTakeMoreThanSixSecondsAtOnce)
{
    draws(true);
    for (int second = 0; second < 100; ++second)
        takes(0);
    takes(6001);
    EXPECT_EQ(reasons, QList<int>{rendererWatch::TOO_BUSY});
}

TEST_F(RendererWatch, MayTakeSixtyPercentForEver)
{
    draws(true);
    for (int second = 0; second < 200; ++second)
        takes(600);
    EXPECT_EQ(reasons, QList<int>());
    for (int second = 0; second < 120; ++second)
        takes(640);
    EXPECT_EQ(reasons, QList<int>()) << "what it has saved up";
    for (int second = 0; second < 60; ++second)
        takes(640);
    EXPECT_EQ(reasons, QList<int>{rendererWatch::TOO_BUSY});
}

TEST_F(RendererWatch, WithoutATextMayTakeASecondAndFivePercent)
{
    draws(false);
    takes(1000);
    takes(30);
    EXPECT_EQ(reasons, QList<int>());
    takes(100);
    EXPECT_EQ(reasons, QList<int>{rendererWatch::TOO_BUSY});
    EXPECT_TRUE(isEnded());
}

TEST_F(RendererWatch, WithoutATextMayNotTakeMoreThanASecondAtOnce)
{
    draws(false);
    takes(1001);
    EXPECT_EQ(reasons, QList<int>{rendererWatch::TOO_BUSY});
}

TEST_F(RendererWatch, IsHeldToTheBudgetOfItsHost)
{
    watch().setBudget({20, 500});
    draws(true);
    takes(500);
    takes(100);
    EXPECT_EQ(reasons, QList<int>());
    takes(350);
    EXPECT_EQ(reasons, QList<int>{rendererWatch::TOO_BUSY});
}

TEST_F(RendererWatch, HoldsMemoryToItsBound)
{
    draws(true);
    use().nMemory = 128 * kMiB;
    takes(0);
    EXPECT_EQ(reasons, QList<int>());
    ++use().nMemory;
    takes(0);
    EXPECT_EQ(reasons, QList<int>{rendererWatch::TOO_LARGE});
}

TEST_F(RendererWatch, HoldsMemoryOfAProcessWithoutATextToHalfOfIt)
{
    draws(false);
    use().nMemory = 64 * kMiB;
    takes(0);
    EXPECT_EQ(reasons, QList<int>());
    ++use().nMemory;
    takes(0);
    EXPECT_EQ(reasons, QList<int>{rendererWatch::TOO_LARGE});
}

TEST_F(RendererWatch, EndsAllWhenThePhoneGrows)
{
    uses()[getpid()] = {true, 0, 100 * kMiB};
    draws(true);
    uses()[getpid()].nMemory += 128 * kMiB;
    takes(0);
    EXPECT_EQ(reasons, QList<int>());
    ++uses()[getpid()].nMemory;
    takes(0);
    EXPECT_EQ(reasons, QList<int>{rendererWatch::TOO_LARGE});
}
