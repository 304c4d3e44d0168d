// Messages between processes, over real sockets.
#include "host/services/messages/messageBus.h"
#include "host/services/messages/messageSocket.h"
#include "host/services/messages/messageWire.h"
#include "support/file/deviceRoot.h"
#include "support/host/message.h"
#include "tests/kit/phoneTest.h"
#include "tests/services/peerProcess.h"
#include "tests/services/recorder.h"
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

class MessageProcesses : public PhoneTest
{
protected:
    MessageProcesses()
    {
        kit::settle(); // what other tests have left lying
        EXPECT_EQ(messageServiceStart("app_test"), 1);
    }
    ~MessageProcesses() override { messageServiceStop(); }
    chThreadBase* peerThread() const { return msgGetThreadByName("app_peer"); }

    // A connection to our socket that speaks no language yet.
    int rawConnection() const
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, hostPath("/rundata/run/app_test.sock").toUtf8(), sizeof address.sun_path);
        const int fd = socket(AF_UNIX, SOCK_STREAM, 0);
        EXPECT_EQ(connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        return fd;
    }
};

// True when the other end closes within a while.
bool isClosedByPeer(int fd)
{
    pollfd look = {fd, POLLRDHUP, 0};
    return poll(&look, 1, 5000) > 0;
}

bool isClosedNow(int fd)
{
    pollfd look = {fd, POLLRDHUP, 0};
    return poll(&look, 1, 0) > 0;
}

TEST_F(MessageProcesses, PostedMessageReachesAnotherProcessWithItsBlock)
{
    peerProcess peer("app_peer");
    ASSERT_TRUE(peer.isReady());
    EXPECT_EQ(msgPostMsgToThreadEx(peerThread(), PEER_SAY, 1, 0xFFFFFFFF, 5, "block"), 1);
    EXPECT_TRUE(peer.hasSaid("said 1 4294967295 block"));
}

TEST_F(MessageProcesses, SentMessageBringsTheResultOfTheOtherProcess)
{
    peerProcess peer("app_peer");
    ASSERT_TRUE(peer.isReady());
    EXPECT_EQ(msgSendMsgToThread(peerThread(), PEER_ADD, 20, 22), 42);
    EXPECT_EQ(msgSendMsgToThreadEx(peerThread(), PEER_ADD, 20, 22, 3, "abc"), 45);
    EXPECT_EQ(msgSendMsgToThread(peerThread(), 0x7777, 20, 22), 0);
}

TEST_F(MessageProcesses, SentMessageBringsTheBlockOfTheOtherProcess)
{
    peerProcess peer("app_peer");
    ASSERT_TRUE(peer.isReady());
    for (const int size : {0, 452, int(messageWire::MAX_EXTRA)}) {
        msgObject* msg = peerThread()->AllocThreadMessage(PEER_BLOCK, true, 8, "question");
        msg->wParam = unsigned(size);
        msg->lParam = 'r';
        EXPECT_EQ(peerThread()->EmitThreadMessage(*msg), 1);
        EXPECT_EQ(peerThread()->WaitThreadMessageReply(*msg, -1), 1);
        ASSERT_EQ(msg->GetExtraSize(), size);
        EXPECT_EQ(QByteArray(static_cast<const char*>(msg->GetExtraData()), size), QByteArray(size, 'r'));
        peerThread()->CloseSendMessage(*msg);
    }
}

TEST_F(MessageProcesses, TenThousandMessagesArriveInOrder)
{
    peerProcess peer("app_peer");
    ASSERT_TRUE(peer.isReady());
    for (unsigned int i = 0; i < 10000; ++i)
        ASSERT_EQ(msgPostMsgToThread(peerThread(), PEER_COUNT, i, 0), 1);
    EXPECT_EQ(msgSendMsgToThread(peerThread(), PEER_REPORT, 0, 0), 10000);
}

TEST_F(MessageProcesses, TenThousandMessagesOfAnotherProcessArriveInOrder)
{
    peerProcess peer("app_peer");
    ASSERT_TRUE(peer.isReady());
    Recorder recorder;
    msgPostMsgToThread(peerThread(), PEER_POST_BACK, 10000, 0);
    EXPECT_TRUE(kit::waitUntil([&] { return recorder.received.size() == 10000; }, 20000));
    for (int i = 0; i < recorder.received.size(); ++i)
        ASSERT_EQ(recorder.received[i].wParam, unsigned(i));
}

TEST_F(MessageProcesses, LargestBlockTravelsAndALargerOneIsRefused)
{
    peerProcess peer("app_peer");
    ASSERT_TRUE(peer.isReady());
    const QByteArray block(messageWire::MAX_EXTRA + 1, 'x');
    EXPECT_EQ(msgSendMsgToThreadEx(peerThread(), PEER_ADD, 0, 0, messageWire::MAX_EXTRA, block.constData()),
              messageWire::MAX_EXTRA);
    EXPECT_EQ(msgPostMsgToThreadEx(peerThread(), PEER_SAY, 0, 0, int(block.size()), block.constData()), 0);
}

TEST_F(MessageProcesses, KilledPeerEndsTheWaitAtOnce)
{
    peerProcess peer("app_peer");
    ASSERT_TRUE(peer.isReady());
    QElapsedTimer clock;
    clock.start();
    msgObject* msg = peerThread()->AllocThreadMessage(PEER_DIE, true, 0, nullptr);
    chThreadBase* thread = peerThread();
    EXPECT_EQ(thread->EmitThreadMessage(*msg), 1);
    EXPECT_EQ(thread->WaitThreadMessageReply(*msg, -1), 0);
    thread->CloseSendMessage(*msg);
    EXPECT_LT(clock.elapsed(), 1500);
    EXPECT_EQ(msgSendMsgToThread(thread, PEER_ADD, 1, 1), 0);
    EXPECT_EQ(msgGetThreadByName("app_peer"), nullptr);
}

TEST_F(MessageProcesses, EndOfTheServiceEndsTheWaitOfAnotherThread)
{
    peerProcess peer("app_peer");
    ASSERT_TRUE(peer.isReady());
    chThreadBase* thread = peerThread();
    std::atomic<int> answered{-1};
    std::atomic<bool> sent{false};
    std::thread worker([&] {
        msgObject* msg = thread->AllocThreadMessage(PEER_HANG, true, 0, nullptr);
        sent = thread->EmitThreadMessage(*msg);
        answered = thread->WaitThreadMessageReply(*msg, -1);
        thread->CloseSendMessage(*msg);
    });
    EXPECT_TRUE(kit::waitUntil([&] { return sent.load(); }));
    messageServiceStop();
    worker.join();
    EXPECT_EQ(answered, 0);
}

TEST_F(MessageProcesses, UserInterfaceWaitsTwoSecondsForAHangingPeer)
{
    peerProcess peer("app_peer");
    ASSERT_TRUE(peer.isReady());
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(msgSendMsgToThread(peerThread(), PEER_HANG, 0, 0), 0);
    EXPECT_GE(clock.elapsed(), 1900);
    EXPECT_LT(clock.elapsed(), 4000);
}

TEST_F(MessageProcesses, WaitEndsWithItsTime)
{
    peerProcess peer("app_peer");
    ASSERT_TRUE(peer.isReady());
    chThreadBase* thread = peerThread();
    msgObject* msg = thread->AllocThreadMessage(PEER_HANG, true, 0, nullptr);
    EXPECT_EQ(thread->EmitThreadMessage(*msg), 1);
    EXPECT_EQ(thread->WaitThreadMessageReply(*msg, 50), 0);
    thread->CloseSendMessage(*msg);
}

TEST_F(MessageProcesses, TwoProcessesThatSendToEachOtherBothGoOn)
{
    peerProcess peer("app_peer");
    ASSERT_TRUE(peer.isReady());
    Recorder recorder;
    recorder.onMessage = [](msgObject& msg) { msg.nResult = int(msg.wParam + msg.lParam); };
    EXPECT_EQ(msgSendMsgToThread(peerThread(), PEER_ASK_BACK, 20, 21), 42);
    EXPECT_EQ(recorder.received.size(), 1);
}

TEST_F(MessageProcesses, HandleOfADeadProcessReachesItsSuccessor)
{
    auto peer = std::make_unique<peerProcess>("app_peer");
    ASSERT_TRUE(peer->isReady());
    chThreadBase* thread = peerThread();
    EXPECT_EQ(msgSendMsgToThread(thread, PEER_ADD, 1, 2), 3);
    peer->kill();
    EXPECT_EQ(msgPostMsgToThread(thread, PEER_SAY, 1, 1), 0);
    EXPECT_TRUE(QFile::exists(hostPath("/rundata/run/app_peer.sock")));
    peer = std::make_unique<peerProcess>("app_peer");
    ASSERT_TRUE(peer->isReady());
    EXPECT_EQ(msgSendMsgToThread(thread, PEER_ADD, 3, 4), 7);
    EXPECT_EQ(peerThread(), thread);
}

TEST_F(MessageProcesses, PostRightAfterAPeerHasGoneIsNotTakenForSent)
{
    const QByteArray path = hostPath("/rundata/run/app_raw.sock").toUtf8();
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, path, sizeof address.sun_path);
    for (int round = 0; round < 200; ++round) {
        const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
        ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        ASSERT_EQ(listen(listener, 1), 0);
        chThreadBase* thread = msgGetThreadByName("app_raw");
        ASSERT_NE(thread, nullptr);
        const int connection = accept(listener, nullptr, nullptr);
        ::close(listener);
        ::close(connection);
        ASSERT_EQ(msgPostMsgToThread(thread, PEER_SAY, 0, 0), 0) << round;
        ASSERT_EQ(unlink(path), 0);
    }
}

TEST_F(MessageProcesses, LiveOwnerKeepsItsNameAndADeadOneLosesIt)
{
    peerProcess first("app_peer");
    ASSERT_TRUE(first.isReady());
    peerProcess second("app_peer");
    EXPECT_TRUE(second.isRefused());
    EXPECT_EQ(msgSendMsgToThread(peerThread(), PEER_ADD, 1, 1), 2);
    peerProcess ours("app_test");
    EXPECT_TRUE(ours.isRefused());
    first.kill();
    peerProcess third("app_peer");
    EXPECT_TRUE(third.isReady());
}

TEST_F(MessageProcesses, BroadcastReachesAllProcessesOnceAndIsLoggedByItsSender)
{
    peerProcess peer("app_peer");
    peerProcess other("app_other");
    ASSERT_TRUE(peer.isReady());
    ASSERT_TRUE(other.isReady());
    Recorder recorder;
    mark();
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, 3, 1);
    EXPECT_TRUE(peer.hasSaid("broadcast 3 1"));
    EXPECT_TRUE(other.hasSaid("broadcast 3 1"));
    msgPostMsgToThread(peerThread(), PEER_BROADCAST, 4, 2);
    EXPECT_TRUE(peer.hasSaid("broadcast 4 2"));
    EXPECT_TRUE(other.hasSaid("broadcast 4 2"));
    EXPECT_TRUE(kit::waitUntil([&] { return recorder.received.size() == 2; }));
    EXPECT_EQ(recorder.wParams(), (QList<unsigned int>{3, 4}));
    EXPECT_EQ(logged("broadcast").size(), 1);
}

TEST_F(MessageProcesses, BroadcastPassesOverTheSocketOfADeadProcess)
{
    peerProcess dead("app_dead");
    ASSERT_TRUE(dead.isReady());
    dead.kill();
    peerProcess peer("app_peer");
    ASSERT_TRUE(peer.isReady());
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, 5, 6);
    EXPECT_TRUE(peer.hasSaid("broadcast 5 6"));
}

TEST_F(MessageProcesses, PeerThatDoesNotReadGetsABoundedQueueAndIsReachedAgainLater)
{
    peerProcess peer("app_peer");
    ASSERT_TRUE(peer.isReady());
    chThreadBase* thread = peerThread();
    ASSERT_EQ(msgSendMsgToThread(thread, PEER_ADD, 1, 1), 2);
    peer.stop();
    mark();
    const QByteArray block(64 << 10, 'x');
    int taken = 0;
    QElapsedTimer clock;
    clock.start();
    while (taken < 1000 && msgPostMsgToThreadEx(thread, 0x7777, 0, 0, int(block.size()), block.constData()))
        ++taken;
    EXPECT_LT(clock.elapsed(), 2000);
    EXPECT_GE(taken, 60);
    EXPECT_LE(taken, 200);
    // Of which the socket may still take some; the rest are dropped, and that is told once.
    for (int i = 0; i < 100; ++i)
        msgPostMsgToThreadEx(thread, 0x7777, 0, 0, int(block.size()), block.constData());
    EXPECT_EQ(msgPostMsgToThreadEx(thread, 0x7777, 0, 0, int(block.size()), block.constData()), 0);
    EXPECT_GE(traces().filter("does not read its messages").size(), 1);
    EXPECT_LE(traces().filter("does not read its messages").size(), 3);
    peer.resume();
    EXPECT_TRUE(kit::waitUntil([&] { return msgSendMsgToThread(thread, PEER_ADD, 2, 2) == 4; }, 20000));
}

TEST_F(MessageProcesses, AFloodFromAnotherProcessIsHeldBackUntilTheThreadHasRoom)
{
    // While this thread does nothing, the other process keeps what it cannot deliver.
    Recorder recorder;
    const int fd = rawConnection();
    messageWire::tagFrame frame;
    frame.message = 0x7777;
    frame.extra = QByteArray(1 << 20, 'x');
    const QByteArray bytes = messageWire::encode(frame);
    qint64 written = 0;
    pollfd room = {fd, POLLOUT, 0};
    while (written < (40 << 20) && poll(&room, 1, 500) > 0) {
        const qint64 start = written % bytes.size();
        written +=
            send(fd, bytes.constData() + start, size_t(bytes.size() - start), MSG_DONTWAIT | MSG_NOSIGNAL);
    }
    EXPECT_LT(written, 16 << 20);
    EXPECT_GT(written, 4 << 20);
    EXPECT_TRUE(kit::waitUntil([&] { return recorder.received.size() >= written / bytes.size(); }));
    ::close(fd);
}

TEST_F(MessageProcesses, ManyConnectionsDoNotTakeEveryDescriptorAndAPeerIsStillHeard)
{
    const auto openHere = [] {
        return QDir("/proc/self/fd").entryList(QDir::NoDotAndDotDot | QDir::AllEntries).size();
    };
    peerProcess peer("app_peer");
    ASSERT_TRUE(peer.isReady());
    Recorder recorder;
    msgPostMsgToThread(peerThread(), PEER_POST_BACK, 1, 0);
    ASSERT_TRUE(kit::waitUntil([&] { return recorder.received.size() == 1; }));
    const qsizetype before = openHere();
    QList<int> flood;
    for (int i = 0; i < 300; ++i)
        flood.append(rawConnection());
    EXPECT_TRUE(kit::waitUntil([&] { return isClosedNow(flood.first()); }));
    EXPECT_LE(openHere(), before + flood.size() + 64);
    // The peer connects again where its connection had to go.
    EXPECT_TRUE(kit::waitUntil([&] {
        msgPostMsgToThread(peerThread(), PEER_POST_BACK, 1, 0);
        kit::settle();
        return recorder.received.size() > 1;
    }));
    for (const int fd : flood)
        ::close(fd);
}

TEST_F(MessageProcesses, SocketOfADeadProcessIsRemovedAndThatOfALiveOneIsNot)
{
    const QString socket = hostPath("/rundata/run/app_peer.sock");
    peerProcess peer("app_peer");
    ASSERT_TRUE(peer.isReady());
    messageServiceRemoveDead("app_peer");
    EXPECT_TRUE(QFile::exists(socket));
    EXPECT_TRUE(messageServiceIsTaken("app_peer"));
    peer.kill();
    EXPECT_FALSE(messageServiceIsTaken("app_peer"));
    EXPECT_TRUE(QFile::exists(socket));
    messageServiceRemoveDead("app_peer");
    EXPECT_FALSE(QFile::exists(socket));
}

TEST_F(MessageProcesses, RunFolderThatWasOpenIsClosedToOthers)
{
    messageServiceStop();
    const QByteArray folder = hostPath("/rundata/run").toUtf8();
    ASSERT_EQ(chmod(folder, 0755), 0);
    ASSERT_EQ(messageServiceStart("app_test"), 1);
    struct stat info = {};
    ASSERT_EQ(stat(folder, &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0700u);
}

TEST_F(MessageProcesses, BytesThatAreNoMessageCloseTheirConnectionOnly)
{
    peerProcess peer("app_peer");
    ASSERT_TRUE(peer.isReady());
    Recorder recorder;
    QRandomGenerator random(1);
    for (int round = 0; round < 50; ++round) {
        QByteArray bytes(1 + random.bounded(4000), Qt::Uninitialized);
        for (char& byte : bytes)
            byte = char(random.bounded(256));
        const int fd = rawConnection();
        EXPECT_GT(send(fd, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL), 0);
        EXPECT_TRUE(bytes.size() < messageWire::HEAD_SIZE || isClosedByPeer(fd));
        ::close(fd);
    }
    msgPostMsgToThread(peerThread(), PEER_POST_BACK, 3, 0);
    EXPECT_TRUE(kit::waitUntil([&] { return recorder.received.size() == 3; }));
    EXPECT_EQ(recorder.wParams(), (QList<unsigned int>{0, 1, 2}));
}

TEST_F(MessageProcesses, AnswerThatNobodyAskedForClosesItsConnection)
{
    Recorder recorder;
    messageWire::tagFrame frame;
    frame.eKind = messageWire::KIND_REPLY;
    frame.nTicket = 1;
    const QByteArray bytes = messageWire::encode(frame);
    const int fd = rawConnection();
    send(fd, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL);
    EXPECT_TRUE(isClosedByPeer(fd));
    ::close(fd);
    EXPECT_TRUE(recorder.received.isEmpty());
}

TEST_F(MessageProcesses, MessageInPiecesIsPutTogetherAndOneCutShortIsDropped)
{
    Recorder recorder;
    messageWire::tagFrame frame;
    frame.message = 0x7777;
    frame.extra = "hello";
    const QByteArray bytes = messageWire::encode(frame);
    const int fd = rawConnection();
    for (const char byte : bytes) {
        send(fd, &byte, 1, MSG_NOSIGNAL);
        kit::settle();
    }
    EXPECT_TRUE(kit::waitUntil([&] { return recorder.received.size() == 1; }));
    send(fd, bytes.constData(), size_t(bytes.size() - 1), MSG_NOSIGNAL);
    ::close(fd);
    msgBroadpostThreadMsg(1, 0, 0);
    EXPECT_TRUE(kit::waitUntil([&] { return recorder.received.size() == 2; }));
    EXPECT_EQ(recorder.received[0].extra, "hello");
    EXPECT_EQ(recorder.received[1].message, 1u);
}

TEST_F(MessageProcesses, SenderThatIsGoneWhenItsAnswerComesDoesNoHarm)
{
    Recorder recorder;
    messageWire::tagFrame frame;
    frame.eKind = messageWire::KIND_SEND;
    frame.nTicket = 7;
    frame.message = 0x7777;
    const QByteArray bytes = messageWire::encode(frame);
    const int fd = rawConnection();
    send(fd, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL);
    ::close(fd);
    EXPECT_TRUE(kit::waitUntil([&] { return recorder.received.size() == 1; }));
}

TEST_F(MessageProcesses, DeepFolderIsNoObstacle)
{
    messageServiceStop();
    QString deep = root();
    while (deep.size() < 300)
        deep += "/a_rather_long_folder_name_0123456789";
    ASSERT_TRUE(QDir().mkpath(deep));
    deviceSetRoot(deep.toUtf8());
    ASSERT_EQ(messageServiceStart("app_test"), 1);
    peerProcess peer("app_peer");
    ASSERT_TRUE(peer.isReady());
    EXPECT_EQ(msgSendMsgToThread(peerThread(), PEER_ADD, 1, 2), 3);
    messageServiceStop();
    deviceSetRoot(root().toUtf8());
}

TEST_F(MessageProcesses, RunFolderAndSocketAreForTheirOwnerOnly)
{
    messageServiceStop();
    ASSERT_TRUE(QDir(hostPath("/rundata/run")).removeRecursively());
    ASSERT_EQ(messageServiceStart("app_test"), 1);
    struct stat info = {};
    ASSERT_EQ(stat(hostPath("/rundata/run").toUtf8(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0700u);
    ASSERT_EQ(stat(hostPath("/rundata/run/app_test.sock").toUtf8(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);
}

TEST_F(MessageProcesses, PeerOfTheSameUserIsKnownAsOne)
{
    int pair[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, pair), 0);
    EXPECT_TRUE(messageSocket::isSameUser(pair[0]));
    ::close(pair[0]);
    ::close(pair[1]);
    EXPECT_FALSE(messageSocket::isSameUser(-1));
}

// Plays another user, which only the superuser can. Exit 0: the connection was closed.
int connectAsNobody(const QByteArray& folder)
{
    const uid_t nobody = 65534;
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, "app_test.sock", sizeof address.sun_path);
    const int fd = socket(AF_UNIX, SOCK_STREAM, 0);
    if (chdir(folder.constData()) != 0 || setresuid(nobody, nobody, nobody) != 0)
        return 2;
    if (connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        return 3;
    char byte = 0;
    return recv(fd, &byte, 1, 0) <= 0 ? 0 : 4;
}

TEST_F(MessageProcesses, AnotherUserIsTurnedAway)
{
    const QByteArray folder = hostPath("/rundata/run").toUtf8();
    ASSERT_EQ(chmod(folder, 0777), 0);
    ASSERT_EQ(chmod(folder + "/app_test.sock", 0777), 0);
    const pid_t child = fork();
    if (child == 0)
        _exit(connectAsNobody(folder));
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    const int expected = geteuid() == 0 ? 0 : 2;
    EXPECT_EQ(WEXITSTATUS(status), expected);
}

} // namespace
