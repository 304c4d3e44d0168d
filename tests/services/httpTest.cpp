// Transfers from a real server that misbehaves in every way.
#include "support/host/http.h"
#include "host/services/system/hostLog.h"
#include "host/services/transfers/httpService.h"
#include "host/services/transfers/httpTransfer.h"
#include "support/file/deviceRoot.h"
#include "tests/kit/phoneTest.h"
#include "tests/services/httpServer.h"
#include "tests/services/networkLook.h"
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPointer>
#include <QSemaphore>
#include <QThread>
#include <atomic>
#include <memory>

namespace {

const char* const kTarget = "/rundata/data/got.xml";

class Listener : public ActionCallback
{
public:
    void OnCallback(taskAction* action) override
    {
        ++calls;
        where = QThread::currentThread();
        if (then)
            then(dynamic_cast<HttpAction*>(action));
    }
    int calls = 0;
    QThread* where = nullptr;
    std::function<void(HttpAction*)> then;
};

// As the module makes one: its maker holds the first reference.
HttpAction* create(const QByteArray& url, const char* file, ActionCallback* callback)
{
    HttpAction* action = new HttpAction;
    action->AddRef();
    action->SetCreatFlag(1);
    action->strRemoteUrl = url.constData();
    action->strLocalFile = file;
    action->SetCallback(callback);
    return action;
}

class Http : public PhoneTest
{
protected:
    Http()
    {
        action.strLocalFile = kTarget;
        action.SetCallback(&callback);
        writeFile(kTarget, "old");
    }

    void post(const QByteArray& url)
    {
        action.nResult = -1;
        action.strRemoteUrl = url.constData();
        PostAction(action);
    }
    // The result; -1 when there was none in time.
    int fetch(const QByteArray& url)
    {
        const int before = callback.calls;
        post(url);
        return kit::waitUntil([&] { return callback.calls > before; }, 10000) ? action.nResult : -1;
    }
    void answerWith(const QByteArray& bytes, bool close = false)
    {
        server.onRequest = [bytes, close](QTcpSocket& socket, const QByteArray&) {
            socket.write(bytes);
            if (close)
                socket.disconnectFromHost();
        };
    }
    // The old file, and nothing beside it.
    void expectUntouched()
    {
        EXPECT_EQ(readFile(kTarget), "old");
        const QDir folder(hostPath("/rundata/data"));
        for (const QString& name : folder.entryList(QDir::Files | QDir::Hidden))
            EXPECT_FALSE(name.contains("got.xml.")) << qPrintable(name);
    }
    // Size of the file that is being written beside the target; -1 when there is none.
    qint64 arrivedBytes() const
    {
        const QDir folder(hostPath("/rundata/data"));
        for (const QFileInfo& file : folder.entryInfoList(QDir::Files | QDir::Hidden)) {
            if (file.fileName().contains("got.xml."))
                return file.size();
        }
        return -1;
    }
    bool requestArrived(int count = 1)
    {
        return kit::waitUntil([&] { return server.paths.size() >= count; });
    }

    httpServer server;
    Listener callback;
    HttpAction action;
};

TEST_F(Http, FileIsInPlaceBeforeTheCallbackIsToldOnItsThread)
{
    const QByteArray body(300000, 'x');
    answerWith(httpServer::answer(body));
    callback.then = [&](HttpAction* told) {
        EXPECT_EQ(told, &action);
        EXPECT_EQ(told->nResult, 1);
        EXPECT_EQ(readFile(kTarget), body);
    };
    EXPECT_EQ(fetch(server.url("/a?b=c")), 1);
    EXPECT_EQ(callback.where, QThread::currentThread());
    EXPECT_EQ(server.paths, QList<QByteArray>{"/a?b=c"});
    EXPECT_EQ(callback.calls, 1);
}

TEST_F(Http, RefusedConnectionFails)
{
    const QByteArray url = server.url("/");
    server.close();
    EXPECT_EQ(fetch(url), 0);
    expectUntouched();
}

TEST_F(Http, AnyOtherStatusFails)
{
    for (const char* status :
         {"404 Not Found", "500 Broken", "201 Created", "204 No Content", "206 Partial Content",
          "304 Not Modified", "401 Unauthorized", "300 Choices"}) {
        answerWith(httpServer::answer("new", status), true);
        EXPECT_EQ(fetch(server.url("/")), 0) << status;
        expectUntouched();
    }
}

TEST_F(Http, AnswerThatIsNoHttpFails)
{
    answerWith("this is no answer\r\n\r\n", true);
    EXPECT_EQ(fetch(server.url("/")), 0);
    answerWith("", true);
    EXPECT_EQ(fetch(server.url("/")), 0);
    expectUntouched();
}

TEST_F(Http, ShorterBodyThanAnnouncedFails)
{
    answerWith(httpServer::head("200 OK", {"Content-Length: 10"}) + "123456789", true);
    EXPECT_EQ(fetch(server.url("/")), 0);
    expectUntouched();
}

TEST_F(Http, BodyInChunksIsPutTogether)
{
    answerWith(httpServer::head("200 OK", {"Transfer-Encoding: chunked"}) +
               "3\r\nabc\r\n4\r\ndefg\r\n0\r\n\r\n");
    EXPECT_EQ(fetch(server.url("/")), 1);
    EXPECT_EQ(readFile(kTarget), "abcdefg");
}

TEST_F(Http, BodyWithoutALengthEndsWithItsConnection)
{
    answerWith(httpServer::head("200 OK", {"Connection: close"}) + "all of it", true);
    EXPECT_EQ(fetch(server.url("/")), 1);
    EXPECT_EQ(readFile(kTarget), "all of it");
}

TEST_F(Http, EmptyBodyMakesAnEmptyFile)
{
    answerWith(httpServer::answer(""));
    EXPECT_EQ(fetch(server.url("/")), 1);
    EXPECT_EQ(readFile(kTarget), "");
}

TEST_F(Http, PackedBodyIsNeitherAskedForNorTaken)
{
    answerWith(httpServer::head("200 OK", {"Content-Length: 3", "Content-Encoding: gzip"}) + "abc");
    EXPECT_EQ(fetch(server.url("/")), 0);
    EXPECT_TRUE(server.requests.last().toLower().contains("accept-encoding: identity"));
    expectUntouched();
}

TEST_F(Http, ServerThatNeverAnswersFailsAfterThirtySeconds)
{
    post(server.url("/"));
    ASSERT_TRUE(requestArrived());
    kit::stepTime(29000);
    letNetworkLook();
    EXPECT_EQ(callback.calls, 0);
    kit::stepTime(1100);
    letNetworkLook();
    EXPECT_TRUE(kit::waitUntil([&] { return callback.calls == 1; }));
    EXPECT_EQ(action.nResult, 0);
    expectUntouched();
}

TEST_F(Http, TransferThatStallsInItsMiddleFailsThirtySecondsLater)
{
    QPointer<QTcpSocket> connection;
    server.onRequest = [&](QTcpSocket& socket, const QByteArray&) {
        connection = &socket;
        socket.write(httpServer::head("200 OK", {"Content-Length: 100"}) + "x");
    };
    post(server.url("/"));
    ASSERT_TRUE(requestArrived());
    letNetworkLook();
    for (int drop = 0; drop < 5; ++drop) {
        kit::stepTime(25000);
        letNetworkLook();
        ASSERT_EQ(callback.calls, 0) << "a byte every 25 seconds is no stall";
        ASSERT_TRUE(connection);
        connection->write("y");
        connection->flush();
        // The byte has arrived when the file that is being written has grown.
        ASSERT_TRUE(kit::waitUntil([&] { return arrivedBytes() == drop + 2; }));
    }
    kit::stepTime(30100);
    letNetworkLook();
    EXPECT_TRUE(kit::waitUntil([&] { return callback.calls == 1; }));
    EXPECT_EQ(action.nResult, 0);
    expectUntouched();
}

TEST_F(Http, RedirectsAreFollowedFiveTimes)
{
    server.onRequest = [&](QTcpSocket& socket, const QByteArray& path) {
        const int left = path.mid(1).toInt();
        const QByteArray next = "Location: /" + QByteArray::number(left - 1);
        socket.write(left > 0 ? httpServer::head("302 Found", {next, "Content-Length: 0"})
                              : httpServer::answer("arrived"));
    };
    EXPECT_EQ(fetch(server.url("/5")), 1);
    EXPECT_EQ(readFile(kTarget), "arrived");
    writeFile(kTarget, "old");
    EXPECT_EQ(fetch(server.url("/6")), 0);
    expectUntouched();
}

TEST_F(Http, EveryStatusThatNamesAnotherPlaceIsFollowed)
{
    QByteArray status;
    server.onRequest = [&](QTcpSocket& socket, const QByteArray& path) {
        socket.write(path == "/there" ? httpServer::answer(status)
                                      : httpServer::head(status, {"Location: /there", "Content-Length: 0"}));
    };
    for (const char* one :
         {"301 Moved", "302 Found", "303 See", "305 Proxy", "307 For now", "308 For ever"}) {
        status = one;
        EXPECT_EQ(fetch(server.url("/")), 1) << one;
        EXPECT_EQ(readFile(kTarget), one);
    }
}

TEST_F(Http, RedirectToSomethingElseThanHttpFails)
{
    for (const char* place : {"file:///etc/passwd", "ftp://127.0.0.1/x", "data:,hello"}) {
        answerWith(httpServer::head("302 Found", {QByteArray("Location: ") + place, "Content-Length: 0"}));
        EXPECT_EQ(fetch(server.url("/")), 0) << place;
        expectUntouched();
    }
}

TEST_F(Http, AddressesThatAreNotHttpFail)
{
    for (const char* url :
         {"", "http://", "file:///etc/passwd", "ftp://127.0.0.1/x", "/just/a/path", "http://:80/"})
        EXPECT_EQ(fetch(url), 0) << url;
    expectUntouched();
}

TEST_F(Http, RawTextInTheAddressIsSentAsAServerReadsIt)
{
    answerWith(httpServer::answer("new"));
    EXPECT_EQ(fetch(server.url("/a b?name=M\xC3\xBCller 100%")), 1);
    EXPECT_EQ(server.paths.last(), "/a%20b?name=M%C3%BCller%20100%25");
}

TEST_F(Http, BodyThatIsAnnouncedTooLargeIsNotFetched)
{
    const QByteArray size = QByteArray::number(httpTransfer::MAX_SIZE + 1);
    answerWith(httpServer::head("200 OK", {"Content-Length: " + size}) + "x");
    EXPECT_EQ(fetch(server.url("/")), 0);
    EXPECT_TRUE(lastTransferFailure().contains("too large"));
    expectUntouched();
}

TEST_F(Http, BodyThatWouldEatTheReserveIsNotFetched)
{
    // The kernel's own file system has no room at all.
    deviceSetRoot("/sys");
    action.strLocalFile = "/fs/got.xml";
    answerWith(httpServer::answer("new"));
    EXPECT_EQ(fetch(server.url("/")), 0);
    deviceSetRoot(root().toUtf8());
    EXPECT_TRUE(lastTransferFailure().contains("no room"));
}

TEST_F(Http, TargetThatCannotBeWrittenFails)
{
    answerWith(httpServer::answer("new"));
    for (const char* file : {"/rundata/missing/got.xml", "", "/rundata/data"}) {
        action.strLocalFile = file;
        EXPECT_EQ(fetch(server.url("/")), 0) << file;
    }
}

TEST_F(Http, PasswordInAnAddressIsNotTraced)
{
    answerWith(httpServer::answer("", "404 Not Found"));
    for (const char* where : {"http://", "http://lobby:secret@"}) {
        const QByteArray url = server.url("/service?password=secret").replace("http://", where);
        EXPECT_EQ(fetch(url), 0);
        EXPECT_TRUE(lastTransferFailure().contains("127.0.0.1")) << where;
        EXPECT_FALSE(lastTransferFailure().contains("secret")) << where;
    }
}

TEST_F(Http, ActionPostedAgainAnswersForItsLastPostingOnly)
{
    server.onRequest = [](QTcpSocket& socket, const QByteArray& path) {
        if (path == "/second")
            socket.write(httpServer::answer("second"));
    };
    post(server.url("/first"));
    ASSERT_TRUE(requestArrived());
    action.strLocalFile = "/rundata/data/second.xml";
    EXPECT_EQ(fetch(server.url("/second")), 1);
    EXPECT_EQ(readFile("/rundata/data/second.xml"), "second");
    EXPECT_TRUE(kit::waitUntil([&] { return server.closed >= 1; }));
    kit::settle();
    EXPECT_EQ(callback.calls, 1);
    expectUntouched();
}

TEST_F(Http, NewsOnItsWayIsNotToldWhenTheActionIsPostedAgain)
{
    server.onRequest = [&](QTcpSocket& socket, const QByteArray& path) {
        socket.write(httpServer::answer(path == "/first" ? "first" : "second"));
        socket.flush();
        if (path != "/first")
            return;
        // The first transfer ends while this thread does not look at its messages.
        QElapsedTimer clock;
        clock.start();
        while (readFile(kTarget) != "first" && clock.elapsed() < 5000)
            QThread::yieldCurrentThread();
        QMetaObject::invokeMethod(
            &httpService::instance(), [] {}, Qt::BlockingQueuedConnection);
        action.strLocalFile = "/rundata/data/second.xml";
        post(server.url("/second"));
    };
    callback.then = [&](HttpAction*) { EXPECT_EQ(readFile("/rundata/data/second.xml"), "second"); };
    EXPECT_EQ(fetch(server.url("/first")), 1);
    letNetworkLook();
    EXPECT_EQ(callback.calls, 1);
    EXPECT_EQ(readFile(kTarget), "first");
}

TEST_F(Http, TwoQuickPostingsTellTheirCallbackOnce)
{
    answerWith(httpServer::answer("new"));
    post(server.url("/first"));
    action.strLocalFile = "/rundata/data/second.xml";
    EXPECT_EQ(fetch(server.url("/second")), 1);
    EXPECT_EQ(readFile("/rundata/data/second.xml"), "new");
    letNetworkLook();
    EXPECT_EQ(callback.calls, 1);
}

TEST_F(Http, ActionMayBePostedAgainFromItsCallback)
{
    answerWith(httpServer::answer("new"));
    callback.then = [&](HttpAction* told) {
        if (callback.calls < 3)
            PostAction(*told);
    };
    post(server.url("/"));
    EXPECT_TRUE(kit::waitUntil([&] { return callback.calls == 3; }));
    EXPECT_EQ(server.paths.size(), 3);
}

TEST_F(Http, TextsMayBeWrittenAgainWhileTheTransferRuns)
{
    answerWith(httpServer::answer("new"));
    action.strLocalFile = kTarget;
    post(server.url("/asked"));
    action.strRemoteUrl = "http://127.0.0.1:1/other";
    action.strLocalFile = "/rundata/data/other.xml";
    EXPECT_TRUE(kit::waitUntil([&] { return callback.calls == 1; }));
    EXPECT_EQ(action.nResult, 1);
    EXPECT_EQ(readFile(kTarget), "new");
    EXPECT_EQ(server.paths, QList<QByteArray>{"/asked"});
}

TEST_F(Http, ShortLivedActionLivesUntilItsCallbackWasTold)
{
    answerWith(httpServer::answer("new"));
    HttpAction* own = create(server.url("/"), kTarget, &callback);
    QPointer<HttpAction> alive = own;
    callback.then = [&](HttpAction* told) { EXPECT_EQ(told, alive.data()); };
    PostAction(*own);
    own->DestroyObject();
    EXPECT_TRUE(kit::waitUntil([&] { return callback.calls == 1; }));
    EXPECT_TRUE(kit::waitUntil([&] { return alive.isNull(); }));
    EXPECT_EQ(readFile(kTarget), "new");
}

TEST_F(Http, DestroyedCallbackHearsNothingAndTheFileComesAllTheSame)
{
    auto gone = std::make_unique<Listener>();
    answerWith(httpServer::answer("new"));
    HttpAction* own = create(server.url("/"), kTarget, gone.get());
    QPointer<HttpAction> alive = own;
    PostAction(*own);
    own->DestroyObject();
    gone.reset();
    EXPECT_TRUE(kit::waitUntil([&] { return alive.isNull(); }));
    EXPECT_EQ(readFile(kTarget), "new");
}

TEST_F(Http, ResultIsSetWithoutACallbackToo)
{
    answerWith(httpServer::answer("new"));
    auto gone = std::make_unique<Listener>();
    action.SetCallback(gone.get());
    gone.reset();
    post(server.url("/"));
    EXPECT_TRUE(kit::waitUntil([&] { return action.nResult == 1; }));
    action.SetCallback(nullptr);
    post(server.url("/"));
    EXPECT_TRUE(kit::waitUntil([&] { return action.nResult == 1; }));
}

TEST_F(Http, ActionDestroyedDuringItsTransferEndsIt)
{
    auto own = std::make_unique<HttpAction>();
    own->strRemoteUrl = server.url("/").constData();
    own->strLocalFile = kTarget;
    own->SetCallback(&callback);
    PostAction(*own);
    ASSERT_TRUE(requestArrived());
    own.reset();
    EXPECT_TRUE(kit::waitUntil([&] { return server.closed == 1; }));
    letNetworkLook();
    EXPECT_EQ(callback.calls, 0);
    expectUntouched();
}

TEST_F(Http, ActionDestroyedBeforeItsTurnIsNeverAskedFor)
{
    QList<QTcpSocket*> open;
    server.onRequest = [&](QTcpSocket& socket, const QByteArray&) { open.append(&socket); };
    for (int i = 0; i < httpService::CONNECTIONS; ++i) {
        HttpAction* own = create(server.url("/slow"), "/rundata/data/slow", &callback);
        PostAction(*own);
        own->Release();
    }
    ASSERT_TRUE(requestArrived(httpService::CONNECTIONS));
    auto own = std::make_unique<HttpAction>();
    own->strRemoteUrl = server.url("/waiting").constData();
    own->strLocalFile = kTarget;
    own->SetCallback(&callback);
    PostAction(*own);
    letNetworkLook();
    own.reset();
    letNetworkLook();
    for (QTcpSocket* socket : open)
        socket->write(httpServer::answer("body"));
    EXPECT_TRUE(kit::waitUntil([&] { return callback.calls == httpService::CONNECTIONS; }));
    answerWith(httpServer::answer("new"));
    EXPECT_EQ(fetch(server.url("/last")), 1);
    EXPECT_FALSE(server.paths.contains("/waiting"));
}

// Its first thread does the work of both its postings, and then waits.
class EagerAction : public HttpAction
{
public:
    int exec() override
    {
        if (runs++ > 0)
            return 0;
        HttpAction::exec();
        HttpAction::exec();
        gate.acquire();
        return 0;
    }
    QSemaphore gate;
    std::atomic<int> runs{0};
};

class BusyThread : public taskAction
{
public:
    int exec() override
    {
        gate.acquire();
        return 1;
    }
    QSemaphore gate;
};

TEST_F(Http, WhatEndsBeforeItsOwnThreadHasTakenItUpIsOver)
{
    answerWith(httpServer::answer("new"));
    BusyThread busy; // one of the two threads
    PostAction(busy);
    EagerAction eager;
    eager.strRemoteUrl = server.url("/twice").constData();
    eager.strLocalFile = kTarget;
    eager.SetCallback(&callback);
    PostAction(eager);
    PostAction(eager);
    EXPECT_TRUE(kit::waitUntil([&] { return callback.calls == 1; }));
    EXPECT_EQ(eager.runs, 1);
    eager.gate.release();
    busy.gate.release();
    EXPECT_TRUE(kit::waitUntil([&] { return eager.runs == 2; }));
    EXPECT_TRUE(kit::waitUntil([] { return taskPendingCount() == 0; }));
    EXPECT_TRUE(kit::waitUntil([&] { return eager.GetRefCount() == 0; }));
}

TEST_F(Http, WhatIsAbandonedUnderWayTellsNobodyAndLeavesNothing)
{
    server.onRequest = [](QTcpSocket&, const QByteArray&) {};
    post(server.url("/silent"));
    ASSERT_TRUE(requestArrived());
    action.Abandon();
    EXPECT_TRUE(kit::waitUntil([&] { return server.closed == 1; }));
    EXPECT_TRUE(kit::waitUntil([] { return taskPendingCount() == 0; }));
    EXPECT_EQ(callback.calls, 0);
    expectUntouched();
    answerWith(httpServer::answer("new"));
    EXPECT_EQ(fetch(server.url("/again")), 1) << "it may be posted again";
    EXPECT_EQ(readFile(kTarget), "new");
}

// Its owner alone knows by then whether another file of that name is under way.
TEST_F(Http, AnUnfinishedFileThatHadComeWholeIsToldOfThoughItWasAbandoned)
{
    const QString target = hostPath("/rundata/data/got.ing");
    action.strLocalFile = "/rundata/data/got.ing";
    action.bUnfinished = 1;
    action.bCheckSum = 1;
    server.onRequest = [&](QTcpSocket& socket, const QByteArray&) {
        socket.write(httpServer::answer("whole"));
        socket.flush();
        for (int i = 0; i < 2000 && QFileInfo(target).size() != 5; ++i)
            QThread::msleep(1);
        QThread::msleep(200); // its end is on its way to this thread
        action.Abandon();
    };
    post(server.url("/late"));
    EXPECT_TRUE(kit::waitUntil([&] { return callback.calls == 1; }));
    EXPECT_EQ(action.nResult, 1);
    EXPECT_EQ(readFile("/rundata/data/got.ing"), "whole");
    EXPECT_TRUE(kit::waitUntil([] { return taskPendingCount() == 0; }));
}

TEST_F(Http, WhatIsAbandonedBeforeItBeganIsNotAskedFor)
{
    answerWith(httpServer::answer("new"));
    EXPECT_EQ(fetch(server.url("/first")), 1);
    std::vector<std::unique_ptr<HttpAction>> many;
    for (int i = 0; i < 100; ++i) {
        many.push_back(std::make_unique<HttpAction>());
        many.back()->strRemoteUrl = server.url("/never").constData();
        many.back()->strLocalFile = "/rundata/data/never.xml";
        many.back()->SetCallback(&callback);
        PostAction(*many.back());
        many.back()->Abandon();
    }
    letNetworkLook();
    EXPECT_TRUE(kit::waitUntil([] { return taskPendingCount() == 0; }));
    EXPECT_EQ(callback.calls, 1);
    EXPECT_FALSE(QFile::exists(hostPath("/rundata/data/never.xml")));
    action.Abandon();
    EXPECT_EQ(fetch(server.url("/again")), 1);
    EXPECT_EQ(callback.calls, 2);
}

TEST_F(Http, WhoWaitsForTransfersThatAreGivenUpHasTheirTurn)
{
    server.onRequest = [](QTcpSocket& socket, const QByteArray& path) {
        if (path == "/waiting")
            socket.write(httpServer::answer("body"));
    };
    std::vector<std::unique_ptr<HttpAction>> silent;
    for (int i = 0; i < httpService::CONNECTIONS; ++i) {
        silent.push_back(std::make_unique<HttpAction>());
        silent.back()->strRemoteUrl = server.url("/silent").constData();
        silent.back()->strLocalFile = "/rundata/data/silent";
        PostAction(*silent.back());
    }
    ASSERT_TRUE(requestArrived(httpService::CONNECTIONS));
    post(server.url("/waiting"));
    letNetworkLook();
    EXPECT_EQ(callback.calls, 0);
    silent.clear();
    EXPECT_TRUE(kit::waitUntil([&] { return callback.calls == 1; }));
    EXPECT_EQ(action.nResult, 1);
}

TEST_F(Http, ManyTransfersToOneServerAllArriveAFewAtATime)
{
    QList<QTcpSocket*> open;
    int most = 0;
    server.onRequest = [&](QTcpSocket& socket, const QByteArray&) {
        open.append(&socket);
        most = std::max<int>(most, int(open.size()));
    };
    std::vector<QByteArray> files;
    for (int i = 0; i < 30; ++i) {
        files.push_back("/rundata/data/file" + QByteArray::number(i));
        HttpAction* own =
            create(server.url("/" + QByteArray::number(i)), files.back().constData(), &callback);
        PostAction(*own);
        own->Release();
    }
    ASSERT_TRUE(kit::waitUntil([&] { return open.size() == httpService::CONNECTIONS; }));
    letNetworkLook();
    EXPECT_TRUE(kit::waitUntil([&] {
        for (QTcpSocket* socket : std::exchange(open, {}))
            socket->write(httpServer::answer("body"));
        return callback.calls == 30;
    }));
    EXPECT_EQ(most, int(httpService::CONNECTIONS));
    for (const QByteArray& file : files)
        EXPECT_EQ(readFile(file.constData()), "body") << file.constData();
}

TEST_F(Http, TransferThatWaitsForItsTurnDoesNotStall)
{
    for (int i = 0; i < httpService::CONNECTIONS; ++i) {
        HttpAction* own = create(server.url("/slow"), "/rundata/data/slow", nullptr);
        PostAction(*own);
        own->Release();
    }
    ASSERT_TRUE(requestArrived(httpService::CONNECTIONS));
    server.onRequest = [](QTcpSocket& socket, const QByteArray&) { socket.write(httpServer::answer("new")); };
    post(server.url("/"));
    letNetworkLook();
    kit::stepTime(30100);
    letNetworkLook();
    EXPECT_TRUE(kit::waitUntil([&] { return callback.calls == 1; }));
    EXPECT_EQ(action.nResult, 1);
}

TEST_F(Http, PostingDoesNotKeepTheUserInterfaceWaiting)
{
    answerWith(httpServer::answer("new"));
    EXPECT_EQ(fetch(server.url("/")), 1);
    QElapsedTimer clock;
    clock.start();
    post(server.url("/"));
    EXPECT_LT(clock.elapsed(), 16);
    EXPECT_TRUE(kit::waitUntil([&] { return callback.calls == 2; }));
}

TEST_F(Http, FinishedReplyOfNobodyIsIgnored)
{
    action.httpFinished(nullptr);
    EXPECT_EQ(callback.calls, 0);
}

} // namespace
