// How long a transfer may drip, and why one that came to its end is refused all the same.
#include "host/services/system/hostLog.h"
#include "host/services/transfers/httpService.h"
#include "support/file/deviceRoot.h"
#include "support/host/createObject.h"
#include "support/host/http.h"
#include "tests/kit/phoneTest.h"
#include "tests/services/httpServer.h"
#include "tests/services/networkLook.h"
#include <QFileInfo>
#include <QPointer>
#include <QThread>

namespace {

class Listener : public ActionCallback
{
public:
    void OnCallback(taskAction* action) override
    {
        results.append(static_cast<HttpAction*>(action)->nResult);
    }
    QList<int> results;
};

class TransferTime : public PhoneTest
{
protected:
    TransferTime() { writeFile("/rundata/data/here", ""); }

    void post(int timeLimit = 0)
    {
        HttpAction& action = CreateObject<HttpAction>();
        action.strRemoteUrl = server.url("/x").constData();
        action.strLocalFile = "/rundata/data/got.bin";
        action.nTimeLimit = timeLimit;
        action.SetCallback(&listener);
        PostAction(action);
        action.Release();
    }
    void answerWith(const QByteArray& bytes, bool close = false)
    {
        server.onRequest = [this, bytes, close](QTcpSocket& socket, const QByteArray&) {
            connection = &socket;
            socket.write(bytes);
            if (close)
                socket.disconnectFromHost();
        };
    }
    bool answered()
    {
        return kit::waitUntil([&] { return !listener.results.isEmpty(); }, 10000);
    }
    // Lets the clocks run, and the network thread see it.
    void pass(int ms)
    {
        kit::stepTime(ms);
        letNetworkLook();
    }
    // Until so many bytes are stored beside the target.
    bool stored(qint64 bytes)
    {
        return kit::waitUntil(
            [&] { return QFileInfo(hostPath("/rundata/data/.got.bin.save0")).size() == bytes; });
    }
    // One byte every so often; false when the transfer ended meanwhile.
    bool drip(int bytes, int everyMs)
    {
        for (int byte = 0; byte < bytes; ++byte) {
            pass(everyMs);
            if (!listener.results.isEmpty() || !connection)
                return false;
            connection->write("y");
            connection->flush();
            if (!stored(++m_nSent))
                return false;
        }
        return true;
    }
    bool startDrip(int timeLimit)
    {
        answerWith(httpServer::head("200 OK", {"Content-Length: 1000"}) + "x");
        post(timeLimit);
        m_nSent = 1;
        return stored(1);
    }

    Listener listener;
    httpServer server;
    QPointer<QTcpSocket> connection;
    int m_nSent = 0;
};

} // namespace

TEST_F(TransferTime, ADripFailsAtItsLimit)
{
    ASSERT_TRUE(startDrip(90000));
    ASSERT_TRUE(drip(4, 20000));
    pass(6000);
    EXPECT_TRUE(listener.results.isEmpty());
    pass(8000);
    ASSERT_TRUE(answered());
    EXPECT_EQ(listener.results, QList<int>{0});
    EXPECT_TRUE(lastTransferFailure().endsWith("failed: it takes too long"))
        << qPrintable(lastTransferFailure());
    EXPECT_EQ(readFile("/rundata/data/got.bin"), "");
    EXPECT_FALSE(QFileInfo::exists(hostPath("/rundata/data/.got.bin.save0")));
}

TEST_F(TransferTime, WithoutALimitOfItsOwnADripFailsAfterHalfAnHour)
{
    ASSERT_TRUE(startDrip(0));
    ASSERT_TRUE(drip(70, 25000)); // 29 minutes and 10 seconds
    pass(20000);
    EXPECT_TRUE(listener.results.isEmpty());
    ASSERT_TRUE(drip(1, 1000));
    pass(29500);
    ASSERT_TRUE(answered());
    EXPECT_EQ(listener.results, QList<int>{0});
    EXPECT_TRUE(lastTransferFailure().endsWith("failed: it takes too long"))
        << qPrintable(lastTransferFailure());
}

TEST_F(TransferTime, ALimitBeyondHalfAnHourIsHalfAnHour)
{
    ASSERT_TRUE(startDrip(2 * 60 * 60 * 1000));
    ASSERT_TRUE(drip(71, 25000));
    pass(28000);
    ASSERT_TRUE(answered());
    EXPECT_TRUE(lastTransferFailure().endsWith("failed: it takes too long"))
        << qPrintable(lastTransferFailure());
}

TEST_F(TransferTime, ARefusalNamesItsReason)
{
    answerWith(httpServer::answer("none", "404 Not Found"));
    post();
    ASSERT_TRUE(answered());
    EXPECT_EQ(listener.results, QList<int>{0});
    EXPECT_TRUE(lastTransferFailure().endsWith("failed: the server refuses it"))
        << qPrintable(lastTransferFailure());
}

TEST_F(TransferTime, APackedBodyOfUnknownLengthIsRefused)
{
    answerWith(httpServer::head("200 OK", {"Content-Encoding: br", "Connection: close"}) + "abc", true);
    post();
    ASSERT_TRUE(answered());
    EXPECT_EQ(listener.results, QList<int>{0});
    EXPECT_TRUE(lastTransferFailure().endsWith("failed: the server has packed it"))
        << qPrintable(lastTransferFailure());
}

TEST_F(TransferTime, ABodyThatSaysItIsAsItIsIsTaken)
{
    answerWith(httpServer::head("200 OK", {"Content-Encoding: Identity", "Content-Length: 3"}) + "abc");
    post();
    ASSERT_TRUE(answered());
    EXPECT_EQ(listener.results, QList<int>{1});
    EXPECT_EQ(readFile("/rundata/data/got.bin"), "abc");
}

TEST_F(TransferTime, ChunksThatDisagreeWithTheAnnouncedLengthAreNotTaken)
{
    answerWith(httpServer::head("200 OK", {"Transfer-Encoding: chunked", "Content-Length: 10"}) +
               "3\r\nabc\r\n4\r\ndefg\r\n0\r\n\r\n");
    post();
    ASSERT_TRUE(answered());
    EXPECT_EQ(listener.results, QList<int>{0});
    EXPECT_TRUE(lastTransferFailure().endsWith("failed: it is not complete"))
        << qPrintable(lastTransferFailure());
}

TEST_F(TransferTime, ThePhoneTellsItsName)
{
    answerWith(httpServer::answer("x"));
    post();
    ASSERT_TRUE(answered());
    EXPECT_TRUE(server.requests.last().contains("User-Agent: hxPhone"));
}

TEST_F(TransferTime, ADiskThatFillsUpMeanwhileEndsTheTransferBeforeItsReserve)
{
    ASSERT_TRUE(startDrip(0));
    deviceSetRoot("/sys"); // has no room at all
    connection->write(QByteArray(999, 'y'));
    connection->flush();
    ASSERT_TRUE(answered());
    EXPECT_EQ(listener.results, QList<int>{1}) << "what was granted may be used";
    listener.results.clear();
    deviceSetRoot(root().toUtf8());
    answerWith(httpServer::head("200 OK", {"Connection: close"}) + "x");
    post();
    ASSERT_TRUE(stored(1));
    deviceSetRoot("/sys");
    connection->write(QByteArray(512 << 10, 'y'));
    ASSERT_TRUE(answered());
    deviceSetRoot(root().toUtf8());
    EXPECT_EQ(listener.results, QList<int>{0});
    EXPECT_TRUE(lastTransferFailure().endsWith("failed: it cannot be stored"))
        << qPrintable(lastTransferFailure());
}
