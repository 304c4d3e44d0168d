#include "support/host/task.h"
#include "tests/kit/phoneTest.h"
#include <QSemaphore>
#include <QThread>
#include <atomic>
#include <memory>
#include <new>

namespace {

class Listener : public ActionCallback
{
public:
    void OnCallback(taskAction* action) override
    {
        actions.append(action);
        where = QThread::currentThread();
        if (then)
            then(action);
    }
    QList<taskAction*> actions;
    QThread* where = nullptr;
    std::function<void(taskAction*)> then;
};

class Work : public taskAction
{
public:
    ~Work() override
    {
        if (deletedOn)
            *deletedOn = QThread::currentThread();
    }
    int exec() override
    {
        where = QThread::currentThread();
        if (work)
            work();
        ++runs;
        return result;
    }
    std::function<void()> work;
    std::atomic<QThread*> where{nullptr};
    std::atomic<int> runs{0};
    int result = 1;
    std::atomic<QThread*>* deletedOn = nullptr;
};

Work* create()
{
    Work* work = new Work;
    work->AddRef();
    work->SetCreatFlag(1);
    return work;
}

class Tasks : public PhoneTest
{
protected:
    Listener callback;
};

TEST_F(Tasks, WorkRunsElsewhereAndItsCallbackHere)
{
    Work work;
    work.SetCallback(&callback);
    EXPECT_EQ(work.GetCallback(), &callback);
    EXPECT_EQ(PostAction(work), 1);
    EXPECT_TRUE(callback.actions.isEmpty());
    EXPECT_TRUE(kit::waitUntil([&] { return !callback.actions.isEmpty(); }));
    EXPECT_EQ(callback.actions, QList<taskAction*>{&work});
    EXPECT_EQ(callback.where, QThread::currentThread());
    EXPECT_NE(work.where, QThread::currentThread());
    EXPECT_EQ(work.GetRefCount(), 0);
}

TEST_F(Tasks, ActionThatItsMakerGaveUpLivesUntilItsCallbackWasTold)
{
    std::atomic<QThread*> deletedOn{nullptr};
    Work* work = create();
    work->deletedOn = &deletedOn;
    work->SetCallback(&callback);
    callback.then = [&](taskAction*) { EXPECT_EQ(deletedOn, nullptr); };
    PostAction(*work);
    work->DestroyObject();
    EXPECT_TRUE(kit::waitUntil([&] { return deletedOn != nullptr; }));
    EXPECT_EQ(callback.actions.size(), 1);
    EXPECT_EQ(deletedOn, QThread::currentThread());
}

TEST_F(Tasks, ActionWithoutCallbackIsLetGoOnTheThreadThatPostedIt)
{
    std::atomic<QThread*> deletedOn{nullptr};
    Work* work = create();
    work->deletedOn = &deletedOn;
    PostAction(*work);
    work->DestroyObject();
    EXPECT_TRUE(kit::waitUntil([&] { return deletedOn != nullptr; }));
    EXPECT_EQ(deletedOn, QThread::currentThread());
}

TEST_F(Tasks, DestroyedCallbackHearsNothingAndTheActionIsLetGo)
{
    std::atomic<QThread*> deletedOn{nullptr};
    QSemaphore go;
    auto gone = std::make_unique<Listener>();
    bool told = false;
    gone->then = [&](taskAction*) { told = true; };
    Work* work = create();
    work->deletedOn = &deletedOn;
    work->work = [&] { go.acquire(); };
    work->SetCallback(gone.get());
    PostAction(*work);
    work->DestroyObject();
    gone.reset();
    go.release();
    EXPECT_TRUE(kit::waitUntil([&] { return deletedOn != nullptr; }));
    EXPECT_FALSE(told);
    EXPECT_EQ(deletedOn, QThread::currentThread());
}

TEST_F(Tasks, CallbackDestroyedWhileTheNewsIsOnItsWayHearsNothing)
{
    auto gone = std::make_unique<Listener>();
    Work work;
    QSemaphore done;
    work.work = [&] { done.release(); };
    work.SetCallback(gone.get());
    PostAction(work);
    done.acquire();
    gone.reset();
    EXPECT_TRUE(kit::waitUntil([&] { return work.GetRefCount() == 0; }));
}

TEST_F(Tasks, AnotherCallbackAtTheSamePlaceHearsNothing)
{
    alignas(Listener) unsigned char place[sizeof(Listener)];
    Listener* first = new (place) Listener;
    Work work;
    work.SetCallback(first);
    first->~Listener();
    Listener* second = new (place) Listener;
    PostAction(work);
    EXPECT_TRUE(kit::waitUntil([&] { return work.runs == 1 && work.GetRefCount() == 0; }));
    EXPECT_TRUE(second->actions.isEmpty());
    second->~Listener();
}

TEST_F(Tasks, CallbackIsToldForEachPosting)
{
    Work work;
    work.SetCallback(&callback);
    for (int i = 0; i < 5; ++i)
        PostAction(work);
    EXPECT_TRUE(kit::waitUntil([&] { return callback.actions.size() == 5; }));
    EXPECT_EQ(work.runs, 5);
    EXPECT_EQ(work.GetRefCount(), 0);
}

TEST_F(Tasks, ActionMayBePostedAgainFromItsCallback)
{
    Work work;
    work.SetCallback(&callback);
    callback.then = [&](taskAction* action) {
        if (callback.actions.size() < 3)
            PostAction(*action);
    };
    PostAction(work);
    EXPECT_TRUE(kit::waitUntil([&] { return callback.actions.size() == 3; }));
}

TEST_F(Tasks, TwoRunAtATime)
{
    std::atomic<int> running{0};
    std::atomic<int> most{0};
    QSemaphore go;
    std::vector<std::unique_ptr<Work>> works;
    for (int i = 0; i < 6; ++i) {
        works.push_back(std::make_unique<Work>());
        works.back()->work = [&] {
            most = std::max<int>(most, ++running);
            go.acquire();
            --running;
        };
        works.back()->SetCallback(&callback);
        PostAction(*works.back());
    }
    EXPECT_TRUE(kit::waitUntil([&] { return running == 2; }));
    go.release(6);
    EXPECT_TRUE(kit::waitUntil([&] { return callback.actions.size() == 6; }));
    EXPECT_EQ(most, 2);
}

TEST_F(Tasks, ActionDestroyedBeforeItsTurnIsNotRun)
{
    QSemaphore go;
    Work first;
    Work second;
    first.work = second.work = [&] { go.acquire(); };
    std::atomic<bool> ran{false};
    auto waiting = std::make_unique<Work>();
    waiting->work = [&] { ran = true; };
    waiting->SetCallback(&callback);
    PostAction(first);
    PostAction(second);
    PostAction(*waiting);
    waiting.reset();
    go.release(2);
    EXPECT_TRUE(kit::waitUntil([&] { return first.GetRefCount() == 0 && second.GetRefCount() == 0; }));
    Work last;
    last.SetCallback(&callback);
    PostAction(last);
    EXPECT_TRUE(kit::waitUntil([&] { return callback.actions.size() == 1; }));
    EXPECT_FALSE(ran);
}

// Touches nothing of its own once it has told.
class BriefWork : public taskAction
{
public:
    explicit BriefWork(QSemaphore& done) : m_done(done) {}
    int exec() override
    {
        m_done.release();
        return 1;
    }

private:
    QSemaphore& m_done;
};

TEST_F(Tasks, NewsOfAnActionThatWasDestroyedMeanwhileIsNotTold)
{
    QSemaphore done;
    auto work = std::make_unique<BriefWork>(done);
    work->SetCallback(&callback);
    PostAction(*work);
    done.acquire();
    work.reset();
    Work last;
    last.SetCallback(&callback);
    PostAction(last);
    EXPECT_TRUE(kit::waitUntil([&] { return callback.actions.contains(&last); }));
    EXPECT_EQ(callback.actions.size(), 1);
}

TEST_F(Tasks, ActionThatEndsLaterIsHeldUntilItsCallbackIsTold)
{
    std::atomic<QThread*> deletedOn{nullptr};
    Work* work = create();
    work->result = 0;
    work->deletedOn = &deletedOn;
    work->SetCallback(&callback);
    PostAction(*work);
    EXPECT_TRUE(kit::waitUntil([&] { return work->runs == 1; }));
    work->DestroyObject();
    kit::settle();
    EXPECT_TRUE(callback.actions.isEmpty());
    EXPECT_EQ(deletedOn, nullptr);
    work->GetCallback()->Callback(work);
    kit::settle();
    EXPECT_EQ(callback.actions.size(), 1);
    EXPECT_EQ(deletedOn, QThread::currentThread());
}

TEST_F(Tasks, NewsMayBePassedOnToAnotherCallback)
{
    Listener other;
    callback.then = [&](taskAction* action) { other.Callback(action); };
    std::atomic<QThread*> deletedOn{nullptr};
    Work* work = create();
    work->deletedOn = &deletedOn;
    work->SetCallback(&callback);
    other.then = [&](taskAction*) { EXPECT_EQ(deletedOn, nullptr); };
    PostAction(*work);
    work->DestroyObject();
    EXPECT_TRUE(kit::waitUntil([&] { return deletedOn != nullptr; }));
    EXPECT_EQ(other.actions.size(), 1);
}

TEST_F(Tasks, CallbackOfNoActionIsDelivered)
{
    callback.Callback(nullptr);
    EXPECT_TRUE(callback.actions.isEmpty());
    kit::settle();
    EXPECT_EQ(callback.actions, QList<taskAction*>{nullptr});
}

TEST_F(Tasks, CallbackIsToldOnItsThreadAndTheActionLetGoOnThePosters)
{
    QThread worker;
    QObject context;
    context.moveToThread(&worker);
    worker.start();
    std::unique_ptr<Listener> elsewhere;
    std::atomic<bool> told{false};
    QMetaObject::invokeMethod(
        &context,
        [&] {
            elsewhere = std::make_unique<Listener>();
            elsewhere->then = [&](taskAction*) { told = true; };
        },
        Qt::BlockingQueuedConnection);
    std::atomic<QThread*> deletedOn{nullptr};
    Work* work = create();
    work->deletedOn = &deletedOn;
    work->SetCallback(elsewhere.get());
    PostAction(*work);
    work->DestroyObject();
    EXPECT_TRUE(kit::waitUntil([&] { return told && deletedOn != nullptr; }));
    EXPECT_EQ(deletedOn, QThread::currentThread());
    EXPECT_EQ(elsewhere->where, &worker);
    QMetaObject::invokeMethod(
        &context, [&] { elsewhere.reset(); }, Qt::BlockingQueuedConnection);
    worker.quit();
    worker.wait();
}

TEST_F(Tasks, MadeUpMessageTellsNothing)
{
    Work work;
    work.result = 0;
    work.SetCallback(&callback);
    PostAction(work);
    for (unsigned int number = 0; number < 50; ++number) {
        msgObject msg(0xFFFF3001, number, 0);
        EXPECT_EQ(callback.TryThreadMessage(msg), 0);
    }
    EXPECT_TRUE(callback.actions.isEmpty());
    EXPECT_TRUE(kit::waitUntil([&] { return work.runs == 1; }));
}

} // namespace
