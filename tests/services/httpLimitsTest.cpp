// What an action may ask of its transfer: a limit, a check sum; and how many transfers share their turns.
#include "host/services/transfers/checkSums.h"
#include "host/services/transfers/httpService.h"
#include "host/services/transfers/taskBook.h"
#include "support/file/fileTools.h"
#include "support/host/checksum.h"
#include "support/host/createObject.h"
#include "support/host/http.h"
#include "tests/kit/phoneTest.h"
#include "tests/services/httpServer.h"
#include <QCryptographicHash>
#include <QPointer>

namespace {

const char* const kTarget = "/rundata/data/got.bin";

class Listener : public ActionCallback
{
public:
    void OnCallback(taskAction* action) override
    {
        const HttpAction* http = static_cast<HttpAction*>(action);
        results.append(http->nResult);
        checkSums.append(http->strCheckSum.GetText());
        files.append(http->strLocalFile.GetText());
    }
    QList<int> results;
    QList<QByteArray> checkSums;
    QList<QByteArray> files;
};

class HttpLimits : public PhoneTest
{
protected:
    HttpAction& make(httpServer& its, const char* file = kTarget)
    {
        HttpAction& action = CreateObject<HttpAction>();
        action.strRemoteUrl = its.url("/x").constData();
        action.strLocalFile = file;
        action.SetCallback(&listener);
        return action;
    }
    void post(HttpAction& action)
    {
        PostAction(action);
        action.Release();
    }
    bool answered(int count = 1)
    {
        return kit::waitUntil([&] { return listener.results.size() >= count; }, 10000);
    }
    void answerWith(const QByteArray& bytes, bool close = false)
    {
        server.onRequest = [bytes, close](QTcpSocket& socket, const QByteArray&) {
            socket.write(bytes);
            if (close)
                socket.disconnectFromHost();
        };
    }

    Listener listener;
    httpServer server;
};

} // namespace

TEST_F(HttpLimits, AnAnswerOfExactlyTheLimitArrives)
{
    answerWith(httpServer::answer("12345678"));
    HttpAction& action = make(server);
    action.nSizeLimit = 8;
    post(action);
    ASSERT_TRUE(answered());
    EXPECT_EQ(listener.results, QList<int>{1});
    EXPECT_EQ(readFile(kTarget), "12345678");
}

TEST_F(HttpLimits, AnAnswerThatAnnouncesMoreFailsBeforeItsBody)
{
    answerWith(httpServer::head("200 OK", {"Content-Length: 9"}));
    HttpAction& action = make(server);
    action.nSizeLimit = 8;
    post(action);
    ASSERT_TRUE(answered());
    EXPECT_EQ(listener.results, QList<int>{0});
    EXPECT_EQ(readFile(kTarget), "");
}

TEST_F(HttpLimits, AnAnswerThatGrowsBeyondTheLimitFails)
{
    answerWith(httpServer::head("200 OK", {"Connection: close"}) + "123456789", true);
    HttpAction& action = make(server);
    action.nSizeLimit = 8;
    post(action);
    ASSERT_TRUE(answered());
    EXPECT_EQ(listener.results, QList<int>{0});
    EXPECT_EQ(readFile(kTarget), "");
}

TEST_F(HttpLimits, WithoutALimitOfItsOwnTheHostsHolds)
{
    answerWith(httpServer::head("200 OK", {"Content-Length: 268435457"}));
    post(make(server));
    ASSERT_TRUE(answered());
    EXPECT_EQ(listener.results, QList<int>{0});
}

TEST_F(HttpLimits, TheCheckSumIsThatOfTheFile)
{
    answerWith(httpServer::answer(QByteArray(200000, 'x')));
    HttpAction& action = make(server);
    action.bCheckSum = 1;
    post(action);
    ASSERT_TRUE(answered());
    EXPECT_EQ(listener.checkSums, QList<QByteArray>{md5GetFileCheckSum(kTarget).GetText()});
}

// More than is written at once, and more than waits to be counted, with and without a length in the head.
TEST_F(HttpLimits, TheCheckSumIsThatOfALargeFileToo)
{
    QByteArray body(3 * checkSums::MOST_BYTES + 12345, '\0');
    for (qsizetype i = 0; i < body.size(); ++i)
        body[i] = char(i * 2654435761u >> 21);
    const QByteArray sum = QCryptographicHash::hash(body, QCryptographicHash::Md5).toHex();
    for (const QByteArray& answer :
         {httpServer::answer(body), QByteArray("HTTP/1.1 200 OK\r\n\r\n" + body)}) {
        answerWith(answer, true);
        HttpAction& action = make(server);
        action.bCheckSum = 1;
        post(action);
        ASSERT_TRUE(answered(int(listener.checkSums.size()) + 1));
        EXPECT_EQ(listener.checkSums.last(), sum);
        EXPECT_EQ(readFile(kTarget), body);
    }
}

TEST_F(HttpLimits, AnActionThatGoesWhileItsSumIsCountedIsNotTold)
{
    answerWith(httpServer::answer(QByteArray(2 * checkSums::MOST_BYTES, 'x')));
    {
        HttpAction gone;
        gone.strRemoteUrl = server.url("/x").constData();
        gone.strLocalFile = kTarget;
        gone.bCheckSum = 1;
        gone.SetCallback(&listener);
        PostAction(gone);
        ASSERT_TRUE(kit::waitUntil([] { return fileSize(kTarget) > 0; }, 10000)); // perhaps still counted
    }
    answerWith(httpServer::answer("next"));
    post(make(server));
    ASSERT_TRUE(answered());
    EXPECT_EQ(listener.results.size(), 1);
}

TEST_F(HttpLimits, TheCheckSumIsEmptyWhereItIsNotWantedOrTheTransferFails)
{
    answerWith(httpServer::answer("x"));
    post(make(server));
    ASSERT_TRUE(answered());
    answerWith(httpServer::answer("x", "404 Not Found"));
    HttpAction& action = make(server);
    action.bCheckSum = 1;
    post(action);
    ASSERT_TRUE(answered(2));
    EXPECT_EQ(listener.checkSums, (QList<QByteArray>{"", ""}));
}

TEST_F(HttpLimits, AFileThatIsNotFlushedArrivesWholeAllTheSame)
{
    answerWith(httpServer::answer("whole"));
    HttpAction& action = make(server);
    action.bFlush = 0;
    post(action);
    ASSERT_TRUE(answered());
    EXPECT_EQ(readFile(kTarget), "whole");
}

TEST_F(HttpLimits, AFileWhoseNameSaysThatItIsOnItsWayGrowsUnderItAndIsGoneWhenItFails)
{
    for (const int unfinished : {0, 1}) {
        QPointer<QTcpSocket> held;
        server.onRequest = [&held](QTcpSocket& socket, const QByteArray&) {
            held = &socket;
            socket.write(httpServer::head("200 OK", {"Content-Length: 10"}) + "12345");
        };
        HttpAction& action = make(server, "/rundata/data/got.part");
        action.bUnfinished = unfinished;
        post(action);
        ASSERT_TRUE(kit::waitUntil([&] { return held && held->bytesToWrite() == 0; }));
        const bool grows = kit::waitUntil([&] { return readFile("/rundata/data/got.part") == "12345"; },
                                          unfinished ? 5000 : 200);
        EXPECT_EQ(grows, unfinished == 1);
        held->disconnectFromHost();
        ASSERT_TRUE(answered(unfinished + 1));
        EXPECT_EQ(fileSize("/rundata/data/got.part"), -1) << unfinished;
    }
    EXPECT_EQ(listener.results, (QList<int>{0, 0}));
    answerWith(httpServer::answer("whole"));
    HttpAction& action = make(server, "/rundata/data/got.part");
    action.bUnfinished = 1;
    post(action);
    ASSERT_TRUE(answered(3));
    EXPECT_EQ(readFile("/rundata/data/got.part"), "whole");
}

TEST_F(HttpLimits, TransfersOfOneServerWaitForTheirTurnAndThoseOfAnotherDoNot)
{
    QList<QPointer<QTcpSocket>> held;
    server.onRequest = [&held](QTcpSocket& socket, const QByteArray&) { held.append(&socket); };
    for (int i = 0; i < 40; ++i)
        post(make(server, ("/rundata/data/" + QByteArray::number(i)).constData()));
    ASSERT_TRUE(kit::waitUntil([&] { return held.size() == httpService::CONNECTIONS; }));
    httpServer other;
    other.onRequest = [](QTcpSocket& socket, const QByteArray&) { socket.write(httpServer::answer("o")); };
    post(make(other));
    ASSERT_TRUE(answered());
    EXPECT_EQ(listener.files, QList<QByteArray>{kTarget});
    EXPECT_EQ(held.size(), httpService::CONNECTIONS);
    server.onRequest = [](QTcpSocket& socket, const QByteArray&) { socket.write(httpServer::answer("x")); };
    for (const QPointer<QTcpSocket>& socket : held)
        socket->write(httpServer::answer("x"));
    ASSERT_TRUE(answered(41));
    EXPECT_EQ(listener.results.count(1), 41);
    EXPECT_TRUE(kit::waitUntil([] { return taskPendingCount() == 0; }));
}
