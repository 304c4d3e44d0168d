// What weather and stock share: the files that name a feed, and transfers into files whose names were typed.
#include "applets/feed.h"
#include "tests/kit/phoneTest.h"
#include "tests/services/httpServer.h"
#include <QDir>
#include <QFile>

namespace {

const char* const kSources = "/rundata/sources.xml";

class Listener : public ActionCallback
{
public:
    void OnCallback(taskAction* action) override
    {
        ++calls;
        url = static_cast<HttpAction*>(action)->strRemoteUrl;
    }
    int calls = 0;
    chString url;
};

class Feed : public PhoneTest
{
protected:
    Feed()
    {
        server.onRequest = [this](QTcpSocket& socket, const QByteArray&) {
            socket.write(httpServer::answer(body));
        };
        writeFile("/tmp/keep", "old");
        writeFile("/rundata/config/x.xml", "old");
        action.SetCallback(&callback);
    }
    // What became of a transfer into "/tmp/Weather-" + city + ".xml".
    int resultFor(const QByteArray& city)
    {
        action.nResult = -1;
        callback.calls = 0;
        action.strRemoteUrl = server.url("/x").constData();
        action.strLocalFile = chString("/tmp/Weather-") + city.constData() + ".xml";
        feedPost(action, "/tmp/", FEED_ANSWER_LIMIT);
        EXPECT_EQ(action.nResult, -1) << "it never ends within the call";
        EXPECT_TRUE(kit::waitUntil([this] { return callback.calls > 0; }, 20000));
        return action.nResult;
    }
    FEED_SOURCE find(const char* element)
    {
        address = "as before";
        return feedSourceAddress(kSources, "Sources", element, "Google", address);
    }

    QByteArray body = "<a/>";
    httpServer server;
    Listener callback;
    HttpAction action;
    chString address;
};

} // namespace

TEST_F(Feed, TheAddressIsThatOfTheFirstSourceOfItsTitle)
{
    writeFile(kSources,
              "<Sources><other title='Google' address='http://o/'/><source title='Yes' address='http://y/'/>"
              "<source title='Google' address='http://g/?w=#city'/>"
              "<source title='Google' address='http://late/'/></Sources>");
    EXPECT_EQ(find("source"), FEED_SOURCE_FOUND);
    EXPECT_STREQ(address.GetText(), "http://g/?w=#city");
    EXPECT_EQ(find(nullptr), FEED_SOURCE_FOUND);
    EXPECT_STREQ(address.GetText(), "http://o/");
}

TEST_F(Feed, WithoutTheSourceTheAddressStaysAsItWas)
{
    EXPECT_EQ(find("source"), FEED_SOURCE_NO_FILE);
    writeFile(kSources, "<Sources><source title='google' address='http://g/'/></Sources>");
    EXPECT_EQ(find("source"), FEED_SOURCE_NO_TITLE);
    writeFile(kSources, "<Others><source title='Google' address='http://g/'/></Others>");
    EXPECT_EQ(find("source"), FEED_SOURCE_NO_FILE);
    writeFile(kSources, "<Sources><source title='Google' addr");
    EXPECT_EQ(find("source"), FEED_SOURCE_NO_FILE);
    EXPECT_STREQ(address.GetText(), "as before");
}

TEST_F(Feed, AValueTakesThePlaceOfEachPlaceholderAsItStands)
{
    EXPECT_STREQ(feedFillIn("http://h/?a=#city&b=#city", "#city", "S\xc3\xa3o #city&").GetText(),
                 "http://h/?a=S\xc3\xa3o #city&&b=S\xc3\xa3o #city&");
    EXPECT_STREQ(feedFillIn("\xe4\xba\xac#city\xc3\xa3#cit", "#city", "x").GetText(),
                 "\xe4\xba\xacx\xc3\xa3#cit");
    EXPECT_STREQ(feedFillIn("", "#city", "x").GetText(), "");
}

TEST_F(Feed, AnAnswerIsStoredUnderTheNameAsItWasTyped)
{
    EXPECT_NE(resultFor("S\xc3\xa3o Paulo"), 0);
    EXPECT_EQ(readFile("/tmp/Weather-S\xc3\xa3o Paulo.xml"), "<a/>");
    EXPECT_NE(resultFor(".."), 0);
    EXPECT_EQ(readFile("/tmp/Weather-...xml"), "<a/>");
}

TEST_F(Feed, ANameThatLeadsOutOfTheFolderFailsAndWritesNothing)
{
    QDir(root()).mkpath("tmp/Weather-a");
    QDir(root()).mkpath("tmp/Weather-");
    QDir(root()).mkpath("tmp/Weather-..");
    for (const char* city : {"a/b", "/../../rundata/config/x", "../config/x", "a\nb", "/", "a/../keep"}) {
        EXPECT_EQ(resultFor(city), 0) << city;
        EXPECT_STREQ(callback.url.GetText(), server.url("/x").constData())
            << "the action says what was asked";
    }
    EXPECT_EQ(resultFor(QByteArray(250, 'x')), 0);
    EXPECT_EQ(readFile("/rundata/config/x.xml"), "old");
    EXPECT_EQ(readFile("/tmp/keep"), "old");
    EXPECT_TRUE(QDir(hostPath("/tmp/Weather-a")).isEmpty());
    EXPECT_EQ(server.paths.size(), 0);
}

TEST_F(Feed, AnAnswerBeyondTheLimitFailsAndIsNotRead)
{
    body = QByteArray(10 << 20, 'x');
    EXPECT_EQ(resultFor("Paris"), 0);
    EXPECT_FALSE(QFile::exists(hostPath("/tmp/Weather-Paris.xml")));
    writeFile("/tmp/large.xml", "<a>" + QByteArray(FEED_ANSWER_LIMIT, ' ') + "</a>");
    xmlFile answer;
    EXPECT_EQ(feedLoadAnswer(answer, "/tmp/large.xml"), 0);
    writeFile("/tmp/small.xml", "<a/>");
    EXPECT_EQ(feedLoadAnswer(answer, "/tmp/small.xml"), 1);
}

TEST_F(Feed, ALinkInTheFolderIsReplacedAndNotFollowed)
{
    ASSERT_TRUE(QFile::link(hostPath("/rundata/config/x.xml"), hostPath("/tmp/Weather-Paris.xml")));
    resultFor("Paris");
    EXPECT_EQ(readFile("/rundata/config/x.xml"), "old");
}
