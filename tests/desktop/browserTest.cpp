#include "support/host/browser.h"
#include "host/desktop/dlgBrowser.h"
#include "tests/desktop/desktopTest.h"
#include "tests/services/httpServer.h"
#include <QTextBrowser>

namespace {

class Browser : public DesktopTest
{
protected:
    Browser()
    {
        server.onRequest = [](QTcpSocket& socket, const QByteArray& path) {
            if (path == "/page")
                socket.write(httpServer::answer("<html><head><title>News</title></head><body><p>Hello "
                                                "phone</p><script>no()</script></body></html>"));
            else
                socket.write(httpServer::answer("", "404 Gone"));
        };
        browserLoad();
    }
    QWidget* page() { return kit::windows().value(0); }
    QString shownText() { return page()->findChild<QTextBrowser*>()->toPlainText(); }
    bool waitForNotice(const std::string& text)
    {
        return kit::waitUntil([&] { return labelText(page(), "labNotice") == text; });
    }
    httpServer server;
};

} // namespace

TEST_F(Browser, IsMadeReadyHidden)
{
    EXPECT_TRUE(kit::windows().isEmpty());
}

TEST_F(Browser, ShowsThePageWithItsTitle)
{
    browserShow(server.url("/page").constData());
    kit::settle();
    ASSERT_NE(qobject_cast<dlgBrowser*>(page()), nullptr);
    ASSERT_TRUE(kit::waitUntil([&] { return shownText().contains("Hello phone"); }));
    EXPECT_FALSE(shownText().contains("no()"));
    EXPECT_EQ(pageTitle(page()), "News");
    kit::shot("browser");
    tapSoftKey(page(), 3);
    EXPECT_TRUE(kit::windows().isEmpty());
}

TEST_F(Browser, SaysWhenThePageCannotBeLoaded)
{
    browserShow(server.url("/gone").constData());
    EXPECT_TRUE(waitForNotice("The page cannot be loaded."));
}

TEST_F(Browser, OpensNoFileAndNoOtherScheme)
{
    writeFile("/rundata/data/secret.txt", "secret");
    for (const QString& address :
         {QString("file://") + hostPath("/rundata/data/secret.txt"), QString("ftp://127.0.0.1/x"),
          QString("javascript:alert(1)"), QString("qrc://x/y"), QString("/rundata/data/secret.txt")}) {
        browserShow(address.toUtf8().constData());
        EXPECT_TRUE(waitForNotice("This address cannot be opened.")) << qPrintable(address);
        EXPECT_FALSE(shownText().contains("secret"));
    }
}
