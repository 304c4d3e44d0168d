#include "support/host/message.h"
#include "tests/kit/phoneTest.h"
#include <QElapsedTimer>
#include <QThread>
#include <atomic>
#include <memory>

namespace {

class Target : public chMsgProcesser
{
public:
    void onTimer(msgObject& msg)
    {
        ++calls;
        lastId = msg.wParam;
        if (then)
            then();
    }
    int onOtherTimer(msgObject&) { return ++otherCalls; }

    int calls = 0;
    int otherCalls = 0;
    unsigned int lastId = 0;
    std::function<void()> then;
};

class ThreadTimer : public PhoneTest
{
protected:
    std::unique_ptr<chThreadTimer> timer = std::make_unique<chThreadTimer>(7);
    std::unique_ptr<Target> target = std::make_unique<Target>();
};

TEST_F(ThreadTimer, CallsItsHandlerEveryPeriodWithItsId)
{
    EXPECT_FALSE(timer->IsTimerRuning());
    EXPECT_EQ(timer->SetTimer(60000, nullptr, target.get(), &Target::onTimer), 1);
    EXPECT_TRUE(timer->IsTimerRuning());
    kit::stepTime(55000);
    EXPECT_EQ(target->calls, 0);
    kit::stepTime(5100);
    EXPECT_EQ(target->calls, 1);
    kit::stepTime(120000);
    EXPECT_EQ(target->calls, 3);
    EXPECT_EQ(target->lastId, 7u);
}

TEST_F(ThreadTimer, KeepsTheCallersCookie)
{
    int cookie = 0;
    EXPECT_EQ(timer->GetCookie(), nullptr);
    timer->SetTimer(1000, &cookie, target.get(), &Target::onTimer);
    EXPECT_EQ(timer->GetCookie(), &cookie);
}

TEST_F(ThreadTimer, KilledOneIsSilent)
{
    timer->SetTimer(100, nullptr, target.get(), &Target::onTimer);
    timer->KillTimer();
    timer->KillTimer();
    EXPECT_FALSE(timer->IsTimerRuning());
    kit::stepTime(500);
    EXPECT_EQ(target->calls, 0);
}

TEST_F(ThreadTimer, RunningOneIsStartedAnewWithANewHandler)
{
    timer->SetTimer(60000, nullptr, target.get(), &Target::onTimer);
    kit::stepTime(50000);
    timer->SetTimer(60000, nullptr, target.get(), &Target::onOtherTimer);
    kit::stepTime(50000);
    EXPECT_EQ(target->otherCalls, 0);
    kit::stepTime(10100);
    EXPECT_EQ(target->otherCalls, 1);
    EXPECT_EQ(target->calls, 0);
}

TEST_F(ThreadTimer, PeriodIsAtLeastAMillisecond)
{
    timer->SetTimer(-5, nullptr, target.get(), &Target::onTimer);
    kit::stepTime(20);
    EXPECT_GE(target->calls, 1);
    EXPECT_LE(target->calls, 50);
}

TEST_F(ThreadTimer, PeriodOfMonthsDoesNotFireAtOnce)
{
    timer->SetTimer(5000000000LL, nullptr, target.get(), &Target::onTimer);
    EXPECT_TRUE(timer->IsTimerRuning());
    kit::stepTime(1000);
    EXPECT_EQ(target->calls, 0);
}

TEST_F(ThreadTimer, HandlerMayKillIt)
{
    target->then = [&] { timer->KillTimer(); };
    timer->SetTimer(100, nullptr, target.get(), &Target::onTimer);
    kit::stepTime(500);
    EXPECT_EQ(target->calls, 1);
    EXPECT_FALSE(timer->IsTimerRuning());
}

TEST_F(ThreadTimer, HandlerMaySetItAnew)
{
    target->then = [&] { timer->SetTimer(20000, nullptr, target.get(), &Target::onOtherTimer); };
    timer->SetTimer(10000, nullptr, target.get(), &Target::onTimer);
    kit::stepTime(55000);
    EXPECT_EQ(target->calls, 1);
    EXPECT_EQ(target->otherCalls, 2);
}

TEST_F(ThreadTimer, HandlerMayDeleteIt)
{
    target->then = [&] { timer.reset(); };
    timer->SetTimer(100, nullptr, target.get(), &Target::onTimer);
    kit::stepTime(500);
    EXPECT_EQ(target->calls, 1);
}

TEST_F(ThreadTimer, HandlerMayDeleteItInAnEventLoopOfItsOwn)
{
    target->then = [&] {
        timer.reset();
        kit::settle();
    };
    timer->SetTimer(100, nullptr, target.get(), &Target::onTimer);
    kit::stepTime(500);
    EXPECT_EQ(target->calls, 1);
}

TEST_F(ThreadTimer, HandlerMayDeleteItsTarget)
{
    int calls = 0;
    target->then = [&] {
        ++calls;
        target.reset();
    };
    timer->SetTimer(100, nullptr, target.get(), &Target::onTimer);
    kit::stepTime(500);
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(timer->IsTimerRuning());
}

TEST_F(ThreadTimer, EndsWithItsTarget)
{
    timer->SetTimer(100, nullptr, target.get(), &Target::onTimer);
    target.reset();
    EXPECT_FALSE(timer->IsTimerRuning());
    kit::stepTime(500);
}

TEST_F(ThreadTimer, OneWithoutATargetDoesNotRun)
{
    timer->SetTimer(100, nullptr, static_cast<Target*>(nullptr), &Target::onTimer);
    EXPECT_FALSE(timer->IsTimerRuning());
    kit::stepTime(500);
}

TEST_F(ThreadTimer, TimersFireInTheOrderOfTheirTimes)
{
    QList<int> order;
    Target other;
    chThreadTimer second;
    target->then = [&] { order.append(1); };
    other.then = [&] { order.append(2); };
    timer->SetTimer(30000, nullptr, target.get(), &Target::onTimer);
    second.SetTimer(20000, nullptr, &other, &Target::onTimer);
    kit::stepTime(31000);
    EXPECT_EQ(order, (QList<int>{2, 1}));
}

TEST_F(ThreadTimer, HandlerRunsOnItsTargetsThread)
{
    QThread worker;
    QObject context;
    context.moveToThread(&worker);
    worker.start();
    std::atomic<QThread*> where{nullptr};
    QMetaObject::invokeMethod(
        &context,
        [&] {
            target = std::make_unique<Target>();
            target->then = [&] { where = QThread::currentThread(); };
        },
        Qt::BlockingQueuedConnection);
    timer->SetTimer(100, nullptr, target.get(), &Target::onTimer);
    kit::stepTime(110);
    EXPECT_TRUE(kit::waitUntil([&] { return where.load() == &worker; }));
    timer->KillTimer();
    QMetaObject::invokeMethod(
        &context, [&] { target.reset(); }, Qt::BlockingQueuedConnection);
    worker.quit();
    worker.wait();
}

} // namespace
