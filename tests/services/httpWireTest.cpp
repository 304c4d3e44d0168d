// What goes over the wire between a transfer and its server, and what the next transfer finds of it.
#include "host/services/system/hostLog.h"
#include "support/host/http.h"
#include "tests/kit/phoneTest.h"
#include "tests/services/httpServer.h"
#include <QSet>
#include <QTcpSocket>
#include <atomic>
#include <sys/resource.h>
#include <unistd.h>

namespace {

const char* const kTarget = "/rundata/data/got";

class Listener : public ActionCallback
{
public:
    void OnCallback(taskAction*) override { ++ends; }
    int ends = 0;
};

class CountingAction : public HttpAction
{
public:
    void httpFinished(QNetworkReply* reply) override
    {
        HttpAction::httpFinished(reply);
        nice = getpriority(PRIO_PROCESS, id_t(gettid()));
        ++finished;
    }
    std::atomic<int> finished{0};
    std::atomic<int> nice{0}; // of the thread that transfers
};

class HttpWire : public PhoneTest
{
protected:
    HttpWire() { action.SetCallback(&listener); }
    // The result; -1 when there was none in time.
    int fetch(const QByteArray& url)
    {
        const int before = listener.ends;
        action.strRemoteUrl = url.constData();
        action.strLocalFile = kTarget;
        PostAction(action);
        return kit::waitUntil([&] { return listener.ends > before; }, 10000) ? action.nResult : -1;
    }
    QByteArray urlWith(const QByteArray& nameAndPassword) const
    {
        return server.url("/x").replace("http://", "http://" + nameAndPassword + "@");
    }
    // Answers those who know the password only, and asks the others for it.
    void askForPassword()
    {
        server.onRequest = [this](QTcpSocket& socket, const QByteArray&) {
            const QByteArray question = "WWW-Authenticate: Basic realm=\"house\"";
            const bool isKnown = server.requests.last().contains("Authorization: Basic " + kCode);
            socket.write(isKnown
                             ? httpServer::answer("here")
                             : httpServer::head("401 Unauthorized", {question, "Content-Length: 2"}) + "no");
        };
    }

    // Begins so, and goes on for as long as somebody takes it.
    void endlessAfter(const QByteArray& begin)
    {
        server.onRequest = [this, begin](QTcpSocket& socket, const QByteArray&) {
            QTcpSocket* const out = &socket;
            QObject::connect(out, &QTcpSocket::bytesWritten, out, [this, out](qint64 count) {
                taken += count;
                if (taken < kGivenUp && out->bytesToWrite() == 0)
                    out->write(QByteArray(64 << 10, 'e'));
            });
            out->write(begin);
        };
    }

    static constexpr qint64 kMostTaken = 64 << 20; // bytes: the buffers of two ends alone may hold 36 MiB
    static constexpr qint64 kGivenUp = 256 << 20;  // bytes
    qint64 taken = 0;
    const QByteArray kCode = QByteArray("lobby:a b").toBase64();
    Listener listener;
    CountingAction action;
    httpServer server;
};

} // namespace

TEST_F(HttpWire, NameAndPasswordOfTheAddressAreGivenWhereTheyAreAskedFor)
{
    askForPassword();
    EXPECT_EQ(fetch(urlWith("lobby:a%20b")), 1);
    EXPECT_EQ(readFile(kTarget), "here");
    ASSERT_EQ(server.requests.size(), 2);
    EXPECT_FALSE(server.requests.first().contains("Authorization"));
}

TEST_F(HttpWire, AWrongPasswordIsAFailureAndNotAFile)
{
    askForPassword();
    EXPECT_EQ(fetch(urlWith("lobby:other")), 0);
    EXPECT_EQ(readFile(kTarget), "");
    EXPECT_LE(server.requests.size(), 2);
    EXPECT_EQ(fetch(server.url("/x")), 0);
}

TEST_F(HttpWire, OneConnectionServesTransfersThatFollowEachOther)
{
    QSet<QTcpSocket*> connections;
    server.onRequest = [&connections](QTcpSocket& socket, const QByteArray&) {
        connections.insert(&socket);
        socket.write(httpServer::answer("here"));
    };
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(fetch(server.url("/x")), 1);
    EXPECT_EQ(connections.size(), 1);
    EXPECT_EQ(server.closed, 0);
}

TEST_F(HttpWire, AConnectionThatTheServerHasClosedMeanwhileIsNoFailure)
{
    server.onRequest = [](QTcpSocket& socket, const QByteArray&) {
        socket.write(httpServer::answer("here"));
        socket.disconnectFromHost();
    };
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(fetch(server.url("/x")), 1);
}

TEST_F(HttpWire, AnAnswerThatAsksToContinueIsNotTheAnswer)
{
    server.onRequest = [](QTcpSocket& socket, const QByteArray&) {
        socket.write("HTTP/1.1 100 Continue\r\nLocation: /elsewhere\r\n\r\n" + httpServer::answer("here"));
    };
    EXPECT_EQ(fetch(server.url("/x")), 1);
    EXPECT_EQ(readFile(kTarget), "here");
}

TEST_F(HttpWire, AHeadOfMoreThanAHundredKilobytesIsRefused)
{
    QByteArray fields;
    server.onRequest = [&fields](QTcpSocket& socket, const QByteArray&) {
        socket.write("HTTP/1.1 200 OK\r\n" + fields + "Content-Length: 4\r\n\r\nhere");
    };
    const QByteArray field = "X-More: " + QByteArray(1000, 'x') + "\r\n";
    fields = field.repeated(90);
    EXPECT_EQ(fetch(server.url("/x")), 1);
    fields = field.repeated(150);
    EXPECT_EQ(fetch(server.url("/x")), 0);
    EXPECT_TRUE(kit::waitUntil([this] { return server.closed == 1; }));
}

TEST_F(HttpWire, TheProxyOfTheEnvironmentIsNotAsked)
{
    httpServer proxy;
    proxy.onRequest = [](QTcpSocket& socket, const QByteArray&) {
        socket.write(httpServer::answer("proxy"));
    };
    server.onRequest = [](QTcpSocket& socket, const QByteArray&) {
        socket.write(httpServer::answer("here"));
    };
    for (const char* name : {"http_proxy", "all_proxy", "HTTP_PROXY", "ALL_PROXY"})
        qputenv(name, proxy.url("/"));
    EXPECT_EQ(fetch(server.url("/x")), 1);
    EXPECT_EQ(readFile(kTarget), "here");
    EXPECT_TRUE(proxy.paths.isEmpty());
}

TEST_F(HttpWire, TheActionIsToldOfTheEndOnce)
{
    server.onRequest = [](QTcpSocket& socket, const QByteArray& path) {
        socket.write(path == "/x" ? httpServer::answer("here")
                                  : httpServer::head("302 Found", {"Location: /x", "Content-Length: 0"}));
    };
    EXPECT_EQ(fetch(server.url("/")), 1);
    EXPECT_EQ(action.finished, 1);
    server.onRequest = [](QTcpSocket& socket, const QByteArray&) {
        socket.write(httpServer::answer("", "404 Not Found"));
    };
    EXPECT_EQ(fetch(server.url("/x")), 0);
    EXPECT_EQ(action.finished, 2);
}

TEST_F(HttpWire, TransfersGiveWayToTheUserInterface)
{
    server.onRequest = [](QTcpSocket& socket, const QByteArray&) { socket.write(httpServer::answer("x")); };
    EXPECT_EQ(fetch(server.url("/x")), 1);
    EXPECT_GT(action.nice, getpriority(PRIO_PROCESS, 0));
}

TEST_F(HttpWire, SmallChunksAreGood)
{
    constexpr int kChunks = 30000;
    const QByteArray all = QByteArray("8\r\n12345678\r\n").repeated(kChunks) + "0\r\n\r\n";
    server.onRequest = [&all](QTcpSocket& socket, const QByteArray&) {
        socket.write("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + all);
    };
    EXPECT_EQ(fetch(server.url("/x")), 1);
    EXPECT_EQ(readFile(kTarget).size(), 8 * kChunks);
}

TEST_F(HttpWire, ARemarkOnAChunkThatDoesNotEndEndsTheTransfer)
{
    endlessAfter("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5;");
    EXPECT_EQ(fetch(server.url("/x")), 0);
    EXPECT_TRUE(kit::waitUntil([this] { return server.closed == 1; }));
    EXPECT_LT(taken, kMostTaken);
    EXPECT_EQ(readFile(kTarget), "");
    EXPECT_TRUE(hostLogFrom(1).last().strText.endsWith("failed: there is more around it than in it"));
}

TEST_F(HttpWire, AQuestionForThePasswordThatDoesNotEndEndsTheTransfer)
{
    const QByteArray question = "HTTP/1.1 401 No\r\nWWW-Authenticate: Basic realm=\"house\"\r\n";
    for (const char* length :
         {"Content-Length: 99999999999\r\n\r\n", "Transfer-Encoding: chunked\r\n\r\n5;"}) {
        taken = 0;
        endlessAfter(question + length);
        EXPECT_EQ(fetch(urlWith("lobby:other")), 0);
        EXPECT_LT(taken, kMostTaken) << length;
    }
}

TEST_F(HttpWire, ARefusalOfAWrongPasswordThatDoesNotEndEndsTheTransfer)
{
    endlessAfter("HTTP/1.1 401 No\r\nWWW-Authenticate: Basic realm=\"house\"\r\n"
                 "Content-Length: 99999999999\r\n\r\n");
    const auto endless = server.onRequest;
    askForPassword();
    const auto question = server.onRequest;
    server.onRequest = [this, endless, question](QTcpSocket& socket, const QByteArray& path) {
        (server.requests.size() > 1 ? endless : question)(socket, path);
    };
    EXPECT_EQ(fetch(urlWith("lobby:other")), 0);
    EXPECT_EQ(server.requests.size(), 2);
    EXPECT_LT(taken, kMostTaken);
}
