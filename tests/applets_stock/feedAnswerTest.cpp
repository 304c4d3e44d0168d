// The files that answers are fetched into, whatever a person typed for their names.
#include "applets/feed.h"
#include "host/services/system/netWorld.h"
#include "host/services/transfers/taskBook.h"
#include "support/host/http.h"
#include "support/host/net.h"
#include "tests/kit/phoneTest.h"
#include "tests/services/httpServer.h"
#include <QDir>
#include <QFileInfo>
#include <unistd.h>

namespace {

const char* const kData = "/rundata/data/";

class AnswerFile : public PhoneTest, public ActionCallback
{
protected:
    AnswerFile()
    {
        netWorld().state = NET_UP;
        QDir().mkpath(hostPath("/tmp"));
        QDir().mkpath(hostPath("/rundata/data"));
        server.onRequest = [this](QTcpSocket& socket, const QByteArray&) {
            socket.write(httpServer::answer(body));
        };
        action.SetCallback(this);
    }
    void OnCallback(taskAction*) override { results.append(action.nResult); }
    void ask(const char* file, const char* folder = kData)
    {
        action.strRemoteUrl = server.url("/feed").constData();
        action.strLocalFile = file;
        action.nResult = -1;
        const auto told = results.size();
        feedPost(action, folder, FEED_ANSWER_LIMIT);
        EXPECT_EQ(results.size(), told) << "told later, as of every transfer";
        ASSERT_TRUE(kit::waitUntil([&] { return results.size() > told; }, 20000));
    }
    bool isThere(const char* path) const { return QFileInfo::exists(hostPath(path)); }

    httpServer server;
    QByteArray body = "<reply/>";
    HttpAction action;
    QList<int> results;
};

} // namespace

TEST_F(AnswerFile, APlainNameIsFetchedFoundReadAndRemoved)
{
    const char* const file = "/rundata/data/New York-download.xml";
    ask(file);
    EXPECT_EQ(results.last(), 1);
    EXPECT_TRUE(feedAnswerIsThere(file, kData));
    xmlFile document(nullptr);
    EXPECT_TRUE(feedLoadAnswer(document, file));
    feedRemoveAnswer(file, kData);
    EXPECT_FALSE(isThere(file));
    EXPECT_FALSE(feedAnswerIsThere(file, kData));
}

TEST_F(AnswerFile, ANameThatLeadsElsewhereFailsAndNobodyIsAsked)
{
    writeFile("/rundata/config/x-download.xml", "<kept/>");
    writeFile("/rundata/data/sub/x-download.xml", "<kept/>");
    for (const char* file : {"/rundata/data/../config/x-download.xml", "/rundata/data/sub/x-download.xml",
                             "/rundata/data//x-download.xml", "/tmp/x-download.xml",
                             "/rundata/data/a\nb-download.xml", "/rundata/config/x-download.xml", ""}) {
        ask(file);
        EXPECT_EQ(results.last(), 0) << file;
        EXPECT_FALSE(feedAnswerIsThere(file, kData)) << file;
        feedRemoveAnswer(file, kData);
    }
    EXPECT_TRUE(server.paths.isEmpty());
    EXPECT_EQ(readFile("/rundata/config/x-download.xml"), "<kept/>");
    EXPECT_EQ(readFile("/rundata/data/sub/x-download.xml"), "<kept/>");
}

TEST_F(AnswerFile, ANameThatIsTooLongForADiskFailsAsWell)
{
    ask(("/rundata/data/" + QByteArray(255, 'A') + "-download.xml").constData());
    EXPECT_EQ(results.last(), 0);
    EXPECT_TRUE(server.paths.isEmpty());
}

TEST_F(AnswerFile, ALinkInItsPlaceIsNeitherWrittenThroughNorRead)
{
    writeFile("/rundata/config/secret.xml", "<secret/>");
    const char* const file = "/rundata/data/HBR-download.xml";
    ASSERT_EQ(symlink("../config/secret.xml", qPrintable(hostPath(file))), 0);
    xmlFile document(nullptr);
    EXPECT_FALSE(feedLoadAnswer(document, file));
    ask(file);
    EXPECT_EQ(results.last(), 1);
    EXPECT_FALSE(QFileInfo(hostPath(file)).isSymLink());
    EXPECT_EQ(readFile(file), body);
    EXPECT_EQ(readFile("/rundata/config/secret.xml"), "<secret/>");
}
