// The page "Stock" on a running phone, with the demonstration server as the public feed and as the signage
// server.
#include "places.h"
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/processes.h"
#include "tests/kit/plain/signServer.h"
#include <QFile>
#include <QJsonArray>

namespace {

constexpr int kWaitMs = 20000;

class StockStory : public LivePhone
{
protected:
    void SetUp() override
    {
        server.copyFile("stock.xml", HX_SOURCE_DIR "/tools/signDemo/content/stock.xml");
        ASSERT_TRUE(server.start());
        startWith("/phone/resource/StockSource.xml", "<StockSource><source title=\"Google\" address=\"" +
                                                         server.url().toUtf8() +
                                                         "/ig/api?stock=\"/></StockSource>");
    }
    QByteArray list()
    {
        QFile file(root() + "/rundata/data/stockData.xml");
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QString text(const char* name) { return widget(name)["text"].toString(); }
    bool shows(const char* name, const QString& wanted)
    {
        return kit::waits([&] { return topWindow()["class"] == "dlgStock" && text(name) == wanted; },
                          kWaitMs);
    }
    void answerYes()
    {
        waitPage("dlgMessageBox");
        tap("btnYes");
        waitPage("dlgStock");
    }
    void openFromHome()
    {
        tap("tileApplication");
        waitPage("dlgIconviewForm");
    }

    SignServer server;
};

} // namespace

TEST_F(StockStory, ByFingerFromThePublicFeedAndByKeysFromTheSignageServer)
{
    openFromHome();
    waitIdle();
    tap(395, 120);
    waitPage("dlgStock");
    EXPECT_EQ(text("labDenominator"), "0/0");
    tap("editSearch");
    ctl({"type", "HRBR"});
    softKey(0);
    answerYes();
    ASSERT_TRUE(shows("labStockName", "Harbour House Group"));
    EXPECT_TRUE(list().contains("<item name=\"HRBR\"/>"));
    ctl({"type", "TIDE"});
    softKey(0);
    EXPECT_NE(topWindow()["class"], "dlgStock");
    tap("btnNo");
    shot("stock");
    writeFile("/rundata/data/stockData.xml", list().replace("<item name=\"\"/>", "<item name=\"QUAY\"/>"));
    EXPECT_EQ(ctl({"refresh", "stockData.xml"}).toInt(), 1);
    ASSERT_TRUE(shows("labDenominator", "1/10"));
    softKey(3);
    waitPage("dlgIconviewForm");

    joinSignage(server.url());
    EXPECT_TRUE(kit::waits([&] { return server.requestsFor("/service/register.htm") > 0; }, kWaitMs));
    key("Return");
    waitPage("dlgStock");
    key("Up");
    key("Right");
    ASSERT_TRUE(shows("labStockName", "Quay Logistics"));
    EXPECT_GT(server.requestsFor("/service/stock.htm"), 0);
    const QString time = text("labTime").section(' ', 1);
    EXPECT_EQ(time.left(time.size() / 2), time.right(time.size() / 2)) << qPrintable(time);
    key("F2");
    waitPage("dlgMessageBox");
    key("Return");
    EXPECT_TRUE(kit::waits([&] { return text("labDenominator") == "2/9"; }, kWaitMs));
    waitPage("dlgStock");
    waitIdle();
    server.stop();
    key("Right");
    const QString note = "Note|Unable connect to Stock server, please check network.";
    EXPECT_TRUE(kit::waits([&] { return logOf("box").contains(note); }, kWaitMs));
    EXPECT_TRUE(kit::waits([&] { return topWindow()["class"] == "dlgStock"; }, kWaitMs))
        << "closes by itself";
    // The note of a slow network may come after the first one.
    const auto leaves = [&] {
        if (topWindow()["class"] == "dlgStock")
            key("F4");
        return topWindow()["class"] == "dlgIconviewForm";
    };
    EXPECT_TRUE(kit::waits(leaves, kWaitMs));
}
