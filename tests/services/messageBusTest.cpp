// Messages inside one process.
#include "host/services/messages/messageBus.h"
#include "host/services/system/hostLog.h"
#include "support/host/message.h"
#include "tests/kit/phoneTest.h"
#include "tests/services/recorder.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QSemaphore>
#include <QThread>
#include <QTimer>
#include <atomic>
#include <future>
#include <memory>
#include <thread>

namespace {

enum : unsigned int { HELLO = 0x4001, OTHER = 0x4002 };

class MessageBus : public PhoneTest
{
protected:
    MessageBus()
    {
        kit::settle(); // what other tests have left lying
        EXPECT_EQ(messageServiceStart("app_test"), 1);
    }
    ~MessageBus() override { messageServiceStop(); }
    chThreadBase* own() const { return msgGetThreadByName("app_test"); }
};

TEST_F(MessageBus, PostedMessageArrivesLaterWithItsBlock)
{
    Recorder recorder;
    char block[] = "abc";
    EXPECT_EQ(msgPostMsgToThreadEx(own(), HELLO, 1, 2, 3, block), 1);
    block[0] = 'x';
    EXPECT_TRUE(recorder.received.isEmpty());
    kit::settle();
    ASSERT_EQ(recorder.received.size(), 1);
    EXPECT_EQ(recorder.received[0].message, HELLO);
    EXPECT_EQ(recorder.received[0].wParam, 1u);
    EXPECT_EQ(recorder.received[0].lParam, 2u);
    EXPECT_EQ(recorder.received[0].extra, "abc");
}

TEST_F(MessageBus, AMessageWithoutBlockHasNone)
{
    const msgObject none(HELLO, 0, 0);
    EXPECT_EQ(none.GetExtraData(), nullptr);
    EXPECT_EQ(none.GetExtraSize(), 0);
    const msgObject negative(HELLO, 0, 0, "abc", -1);
    EXPECT_EQ(negative.GetExtraData(), nullptr);
    EXPECT_EQ(negative.GetExtraSize(), 0);
    const msgObject null(HELLO, 0, 0, nullptr, 3);
    EXPECT_EQ(null.GetExtraSize(), 0);
}

TEST_F(MessageBus, MessageIsOfferedInOrderOfConstructionUntilOneTakesIt)
{
    Recorder first(false);
    Recorder second(true);
    Recorder third(true);
    msgPostMsgToThread(own(), HELLO, 0, 0);
    kit::settle();
    EXPECT_EQ(first.received.size(), 1);
    EXPECT_EQ(second.received.size(), 1);
    EXPECT_EQ(third.received.size(), 0);
}

TEST_F(MessageBus, BroadcastIsOfferedToAllEvenWhenTaken)
{
    Recorder first(true);
    Recorder second(true);
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, 3, 7);
    EXPECT_TRUE(first.received.isEmpty());
    kit::settle();
    ASSERT_EQ(first.received.size(), 1);
    ASSERT_EQ(second.received.size(), 1);
    EXPECT_EQ(second.received[0].wParam, 3u);
    EXPECT_EQ(second.received[0].lParam, 7u);
}

TEST_F(MessageBus, WhatOneReceiverChangesInABroadcastNoOtherSees)
{
    Recorder first;
    Recorder second;
    first.onMessage = [](msgObject& msg) { msg.wParam = 99; };
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, 3, 0);
    kit::settle();
    ASSERT_EQ(second.received.size(), 1);
    EXPECT_EQ(second.received[0].wParam, 3u);
}

TEST_F(MessageBus, BroadcastIsLogged)
{
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, 0x1A, 2);
    const tagLogEntry last = hostLogFrom(1).last();
    EXPECT_EQ(last.strKind, "broadcast");
    EXPECT_EQ(last.strText, "0x10007 26 2");
}

TEST_F(MessageBus, MissingThreadGivesANullHandleAndItsMessagesAreLost)
{
    EXPECT_EQ(msgGetThreadByName("app_nobody"), nullptr);
    EXPECT_EQ(msgGetThreadByName(nullptr), nullptr);
    EXPECT_EQ(msgGetThreadByName(""), nullptr);
    EXPECT_EQ(msgGetThreadByName("../app_test"), nullptr);
    EXPECT_EQ(msgPostMsgToThread(nullptr, HELLO, 0, 0), 0);
    EXPECT_EQ(msgPostMsgToThreadEx(nullptr, HELLO, 0, 0, 1, "a"), 0);
    EXPECT_EQ(msgSendMsgToThread(nullptr, HELLO, 0, 0), 0);
    EXPECT_EQ(msgSendMsgToThreadEx(nullptr, HELLO, 0, 0, 1, "a"), 0);
}

TEST_F(MessageBus, RemoteHandleTellsWhetherTheThreadIsThere)
{
    chThreadRemote remote;
    EXPECT_EQ(remote.CreateRemoteThread("app_nobody"), 0);
    EXPECT_EQ(remote.CreateRemoteThread("app_test"), 1);
    EXPECT_EQ(remote.GetThread(), own());
    remote.DestroyRemoteThread();
    EXPECT_EQ(remote.GetThread(), nullptr);
}

TEST_F(MessageBus, SendToTheOwnThreadIsDeliveredAtOnceAndBringsTheResult)
{
    Recorder recorder;
    recorder.onMessage = [](msgObject& msg) { msg.nResult = int(msg.wParam) * 2; };
    EXPECT_EQ(msgSendMsgToThread(own(), HELLO, 21, 0), 42);
    EXPECT_EQ(recorder.received.size(), 1);
}

TEST_F(MessageBus, SendToTheOwnThreadComesAfterWhatItHasPosted)
{
    Recorder recorder;
    msgPostMsgToThread(own(), HELLO, 1, 0);
    msgBroadpostThreadMsg(OTHER, 2, 0);
    msgSendMsgToThread(own(), HELLO, 3, 0);
    EXPECT_EQ(recorder.wParams(), (QList<unsigned int>{1, 2, 3}));
    kit::settle();
    EXPECT_EQ(recorder.received.size(), 3);
}

TEST_F(MessageBus, SentMessageThatNobodyTakesHasNoResult)
{
    Recorder recorder(false);
    recorder.onMessage = [](msgObject& msg) { msg.nResult = 5; };
    EXPECT_EQ(msgSendMsgToThread(own(), HELLO, 0, 0), 0);
}

TEST_F(MessageBus, AllocatedMessageCarriesItsResult)
{
    Recorder recorder;
    recorder.onMessage = [](msgObject& msg) { msg.nResult = msg.GetExtraSize(); };
    msgObject* msg = own()->AllocThreadMessage(int(HELLO), true, 4, "data");
    msg->wParam = 9;
    EXPECT_EQ(own()->EmitThreadMessage(*msg), 1);
    EXPECT_EQ(own()->WaitThreadMessageReply(*msg, -1), 1);
    EXPECT_EQ(msg->nResult, 4);
    own()->CloseSendMessage(*msg);
    EXPECT_EQ(recorder.wParams(), QList<unsigned int>{9});
}

TEST_F(MessageBus, ReplyBringsTheBlockOfTheReceiverInThePlaceOfTheSenders)
{
    Recorder recorder;
    recorder.onMessage = [](msgObject& msg) { msg.SetReplyData("answer", 6); };
    msgObject* msg = own()->AllocThreadMessage(int(HELLO), true, 8, "question");
    EXPECT_EQ(own()->EmitThreadMessage(*msg), 1);
    EXPECT_EQ(own()->WaitThreadMessageReply(*msg, -1), 1);
    EXPECT_EQ(QByteArray(static_cast<const char*>(msg->GetExtraData()), msg->GetExtraSize()), "answer");
    own()->CloseSendMessage(*msg);
    EXPECT_EQ(recorder.received[0].extra, "question");
}

TEST_F(MessageBus, ReplyWithoutABlockLeavesNone)
{
    Recorder recorder;
    recorder.onMessage = [](msgObject& msg) {
        EXPECT_EQ(msg.SetReplyData("answer", 6), 1);
        EXPECT_EQ(msg.SetReplyData(nullptr, 6), 1);
    };
    msgObject* msg = own()->AllocThreadMessage(int(HELLO), true, 8, "question");
    own()->EmitThreadMessage(*msg);
    EXPECT_EQ(own()->WaitThreadMessageReply(*msg, -1), 1);
    EXPECT_EQ(msg->GetExtraData(), nullptr);
    own()->CloseSendMessage(*msg);
}

TEST_F(MessageBus, ReplyBlockIsNoLargerThanAMessagesMayBe)
{
    const QByteArray block((1 << 20) + 1, 'x');
    msgObject msg;
    EXPECT_EQ(msg.SetReplyData(block.constData(), 1 << 20), 1);
    EXPECT_EQ(msg.GetReplyData().size(), 1 << 20);
    EXPECT_EQ(msg.SetReplyData(block.constData(), int(block.size())), 0);
    EXPECT_TRUE(msg.GetReplyData().isEmpty());
}

TEST_F(MessageBus, AllocatedMessageWithoutReplyIsPosted)
{
    Recorder recorder;
    msgObject* msg = own()->AllocThreadMessage(int(HELLO), false, 0, nullptr);
    EXPECT_EQ(own()->EmitThreadMessage(*msg), 1);
    EXPECT_EQ(own()->WaitThreadMessageReply(*msg, -1), 0);
    own()->CloseSendMessage(*msg);
    kit::settle();
    EXPECT_EQ(recorder.received.size(), 1);
}

TEST_F(MessageBus, DestroyedReceiverGetsNothingThatWaitsForIt)
{
    auto gone = std::make_unique<Recorder>();
    Recorder stays;
    msgPostMsgToThread(own(), HELLO, 1, 0);
    gone.reset();
    kit::settle();
    EXPECT_EQ(stays.received.size(), 1);
}

TEST_F(MessageBus, ReceiverMayDestroyItselfAndOthersDuringDelivery)
{
    auto* suicide = new Recorder(false);
    auto victim = std::make_unique<Recorder>(false);
    Recorder last;
    suicide->onMessage = [&](msgObject&) {
        victim.reset();
        delete suicide;
    };
    msgPostMsgToThread(own(), HELLO, 1, 0);
    msgPostMsgToThread(own(), HELLO, 2, 0);
    kit::settle();
    EXPECT_EQ(last.wParams(), (QList<unsigned int>{1, 2}));
}

TEST_F(MessageBus, ReceiverMadeDuringDeliveryGetsOnlyLaterMessages)
{
    Recorder first(false);
    std::unique_ptr<Recorder> fresh;
    first.onMessage = [&](msgObject&) {
        if (!fresh)
            fresh = std::make_unique<Recorder>();
    };
    msgPostMsgToThread(own(), HELLO, 1, 0);
    msgPostMsgToThread(own(), HELLO, 2, 0);
    kit::settle();
    ASSERT_TRUE(fresh);
    EXPECT_EQ(fresh->wParams(), QList<unsigned int>{2});
}

TEST_F(MessageBus, MessagesGoOnInAnEventLoopThatAHandlerRuns)
{
    Recorder recorder;
    bool nested = false;
    recorder.onMessage = [&](msgObject& msg) {
        if (msg.wParam == 1)
            nested = kit::waitUntil([&] { return recorder.received.size() == 3; });
    };
    for (unsigned int i = 1; i <= 3; ++i)
        msgPostMsgToThread(own(), HELLO, i, 0);
    kit::settle();
    EXPECT_TRUE(nested);
    EXPECT_EQ(recorder.wParams(), (QList<unsigned int>{1, 2, 3}));
}

TEST_F(MessageBus, AFloodOfMessagesLeavesTimersTheirTurn)
{
    Recorder recorder;
    bool fired = false;
    recorder.onMessage = [&](msgObject&) {
        if (!fired)
            msgPostMsgToThread(own(), HELLO, 0, 0);
    };
    QTimer timer;
    timer.callOnTimeout([&] { fired = true; });
    timer.start(1);
    msgPostMsgToThread(own(), HELLO, 0, 0);
    EXPECT_TRUE(kit::waitUntil([&] { return fired; }));
}

TEST_F(MessageBus, MessagesThatBegetMessagesTakeNoMoreOfEachTurnOfTheLoop)
{
    Recorder recorder;
    int handled = 0;
    recorder.onMessage = [&](msgObject&) {
        QElapsedTimer busy;
        busy.start();
        while (busy.elapsed() < 3) {
        }
        ++handled;
        msgPostMsgToThread(own(), HELLO, 0, 0);
    };
    msgPostMsgToThread(own(), HELLO, 0, 0);
    for (int turn = 0; turn < 20; ++turn) {
        handled = 0;
        QCoreApplication::processEvents();
        EXPECT_LE(handled, 8) << "in turn " << turn;
    }
    recorder.onMessage = nullptr;
}

TEST_F(MessageBus, ReceiverOnAnotherThreadIsCalledThere)
{
    QThread worker;
    std::unique_ptr<Recorder> recorder;
    std::atomic<QThread*> where{nullptr};
    QObject context;
    context.moveToThread(&worker);
    worker.start();
    QMetaObject::invokeMethod(
        &context,
        [&] {
            recorder = std::make_unique<Recorder>();
            recorder->onMessage = [&](msgObject&) { where = QThread::currentThread(); };
        },
        Qt::BlockingQueuedConnection);
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, 3, 0);
    EXPECT_TRUE(kit::waitUntil([&] { return where.load() == &worker; }));
    QMetaObject::invokeMethod(
        &context, [&] { recorder.reset(); }, Qt::BlockingQueuedConnection);
    worker.quit();
    worker.wait();
}

TEST_F(MessageBus, WorkerThreadThatSendsGetsTheResultOfTheUserInterface)
{
    Recorder recorder;
    QThread* where = nullptr;
    recorder.onMessage = [&](msgObject& msg) {
        where = QThread::currentThread();
        msg.nResult = 7;
    };
    std::atomic<int> result{-1};
    std::thread worker([&] { result = msgSendMsgToThread(own(), HELLO, 0, 0); });
    EXPECT_TRUE(kit::waitUntil([&] { return result != -1; }));
    worker.join();
    EXPECT_EQ(result, 7);
    EXPECT_EQ(where, QThread::currentThread());
}

// A named thread that ends without having looked at its messages.
class BusyThread : public QThread
{
public:
    QSemaphore named;
    QSemaphore end;

protected:
    void run() override
    {
        EXPECT_EQ(messageServiceStart("app_test"), 1);
        named.release();
        end.acquire();
    }
};

TEST_F(MessageBus, MessagesToAThreadThatEndedAreRefusedAndItsWaitersTold)
{
    messageServiceStop();
    BusyThread worker;
    worker.start();
    worker.named.acquire();
    chThreadBase* thread = own();
    ASSERT_NE(thread, nullptr);
    msgObject* msg = thread->AllocThreadMessage(int(HELLO), true, 0, nullptr);
    EXPECT_EQ(thread->EmitThreadMessage(*msg), 1);
    worker.end.release();
    EXPECT_EQ(thread->WaitThreadMessageReply(*msg, -1), 0);
    thread->CloseSendMessage(*msg);
    worker.wait();
    EXPECT_EQ(msgPostMsgToThread(thread, HELLO, 0, 0), 0);
    EXPECT_EQ(msgSendMsgToThread(thread, HELLO, 0, 0), 0);
}

TEST_F(MessageBus, AReceiverThatNeverDeliversCollectsABoundedNumber)
{
    std::unique_ptr<Recorder> deaf;
    std::promise<void> ready, end;
    std::thread worker([&] {
        deaf = std::make_unique<Recorder>();
        ready.set_value();
        end.get_future().wait();
        deaf.reset();
    });
    ready.get_future().wait();
    mark();
    Recorder recorder;
    for (int i = 0; i < 100100; ++i) {
        msgBroadpostThreadMsg(OTHER, 0, 0);
        if (i % 1000 == 0)
            kit::settle();
    }
    kit::settle();
    end.set_value();
    worker.join();
    EXPECT_EQ(recorder.received.size(), 100100);
    EXPECT_EQ(traces().filter("more are dropped").size(), 1);
}

TEST_F(MessageBus, ProcessHasOneNameAtATime)
{
    EXPECT_EQ(messageServiceStart("app_test"), 0);
    EXPECT_EQ(messageServiceStart("app_other"), 0);
    messageServiceStop();
    EXPECT_EQ(msgGetThreadByName("app_test"), nullptr);
    EXPECT_EQ(messageServiceStart("app_other"), 1);
    EXPECT_NE(msgGetThreadByName("app_other"), nullptr);
}

TEST_F(MessageBus, NamesThatAreNoFileNamesAreRefused)
{
    messageServiceStop();
    for (const char* name : {"", "a/b", "..", ".hidden", "a b", "name\n"})
        EXPECT_EQ(messageServiceStart(name), 0) << name;
    EXPECT_EQ(messageServiceStart(nullptr), 0);
    EXPECT_EQ(messageServiceStart(QByteArray(65, 'a').constData()), 0);
    EXPECT_EQ(messageServiceStart(QByteArray(64, 'a').constData()), 1);
}

TEST_F(MessageBus, EndOfTheServiceLeavesNoSocket)
{
    EXPECT_TRUE(QFile::exists(hostPath("/rundata/run/app_test.sock")));
    messageServiceStop();
    EXPECT_FALSE(QFile::exists(hostPath("/rundata/run/app_test.sock")));
}

TEST_F(MessageBus, HandleOfAnEndedServiceSendsNowhere)
{
    chThreadBase* old = own();
    Recorder recorder;
    messageServiceStop();
    EXPECT_EQ(msgPostMsgToThread(old, HELLO, 0, 0), 0);
    EXPECT_EQ(messageServiceStart("app_test"), 1);
    EXPECT_EQ(msgPostMsgToThread(old, HELLO, 0, 0), 1);
    kit::settle();
    EXPECT_EQ(recorder.received.size(), 1);
}

} // namespace
