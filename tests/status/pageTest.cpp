// The status page as a person sees it: in a browser, after requests as phones make them.
#include "tests/server/statusOf.h"
#include <QApplication>
#include <QEventLoop>
#include <QImage>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineView>

namespace {

constexpr int kLoadMs = 60000;

// Nothing of it is kept, and what it logs is a finding.
class Page : public QWebEnginePage
{
public:
    using QWebEnginePage::QWebEnginePage;
    QStringList said;

protected:
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString& text, int,
                                  const QString&) override
    {
        said.append(text);
    }
    void javaScriptAlert(const QUrl&, const QString& text) override { said.append("alert " + text); }
};

class StatusPage : public StatusTest
{
protected:
    StatusPage() : m_view(), m_page(new Page(&m_profile, &m_view))
    {
        m_view.setPage(m_page);
        m_view.resize(1280, 800);
        m_view.show();
    }

    void load(const QByteArray& query = {})
    {
        QEventLoop loop;
        bool good = false;
        const auto connection = QObject::connect(m_page, &QWebEnginePage::loadFinished, &loop, [&](bool ok) {
            good = ok;
            loop.quit();
        });
        QTimer::singleShot(kLoadMs, &loop, &QEventLoop::quit);
        m_page->load(QUrl("http://127.0.0.1:" + QByteArray::number(m_port) + "/status" + query));
        loop.exec();
        QObject::disconnect(connection);
        ASSERT_TRUE(good);
    }
    // Runs in a world of its own, which the page's policy does not reach.
    QVariant run(const QString& script)
    {
        QEventLoop loop;
        QVariant value;
        m_page->runJavaScript(script, QWebEngineScript::ApplicationWorld, [&](const QVariant& result) {
            value = result;
            loop.quit();
        });
        QTimer::singleShot(kLoadMs, &loop, &QEventLoop::quit);
        loop.exec();
        return value;
    }
    QStringList texts(const QString& selector)
    {
        return run("[...document.querySelectorAll('" + selector + "')].map(e => e.textContent)")
            .toStringList();
    }
    // As soon as the engine has drawn in the size that the view has.
    QImage shot()
    {
        QImage image;
        soon([&] {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
            image = m_view.grab().toImage();
            // The bar on top reaches from one side to the other, but for what scrolls.
            return image.pixelColor(3, 3) != image.pixelColor(3, image.height() - 3) &&
                   image.pixelColor(3, 3) == image.pixelColor(image.width() - 30, 3);
        });
        if (const QByteArray folder = qgetenv("HX_SHOTS"); !folder.isEmpty())
            image.save(QString("%1/status-%2.png").arg(QString::fromLocal8Bit(folder)).arg(image.width()));
        return image;
    }
    // All kinds of displays at once.
    void startShow();

    QWebEngineProfile m_profile; // without a name: nothing is stored
    QWebEngineView m_view;
    Page* m_page;
};

void StatusPage::startShow()
{
    write("server.ini", "[server]\nkey=key\npassword=word\n[displays]\nReception=*\nCanteen=*\nLibrary=*\n"
                        "Workshop=*\nConference room=0015652b77d0\n<script>alert(1)</script>=*\n"
                        "[status]\ninterval=60\n");
    write("schedule.xml", "<schedule><layout file='welcome.xml'/><layout file='lunch.xml'/></schedule>");
    write("layouts/welcome.xml", "<layout background='harbour.jpg'/>");
    write("layouts/lunch.xml",
          "<layout background='menu.jpg'><region left='0' top='0' width='1400' height='480'>"
          "<media type='video' path='day.mp4'/></region></layout>");
    for (const char* name : {"harbour.jpg", "menu.jpg", "day.mp4"})
        write("media/" + QByteArray(name), noise(200000, unsigned(name[0])));
    start();
    const auto come = [this](const QByteArray& name, const QByteArray& key, const QByteArrayList& files) {
        EXPECT_EQ(resultOf(enroll(name, key).body), "registered");
        schedule(key);
        for (const QByteArray& file : files)
            fetch(file, file.endsWith(".xml") ? "layout" : "media", key);
    };
    const QByteArrayList all = {"welcome.xml", "lunch.xml", "harbour.jpg", "menu.jpg", "day.mp4"};
    come("Library", "0015652b4f02", all);
    stop();
    age(1000);
    start();
    come("Reception", "0015652b4f11", all);
    come("<script>alert(1)</script>", "0015652b4f15", all);
    come("Canteen", "0015652b4f0c", all.mid(0, 4));
    Wire wire(m_port);
    wire.send("GET /service/getfile.htm?serverKey=key&hardwareKey=0015652b4f0c&clientType=hx7206&version=2.0"
              "&language=en&fileType=media&filePath=day.mp4 HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_GE(wire.readFor(1000).size(), 1000);
    enroll("Workshop", "0015652b4f33", "key", "wrong");
}

TEST_F(StatusPage, ShowsTheLateOnesFirstAndEachInItsState)
{
    startShow();
    ASSERT_TRUE(soon([this] { return names("cut", "0015652b4f0c").size() == 1; }));
    load();
    EXPECT_EQ(texts("article h3"), QStringList({"Conference room", "Library", "Workshop", "Canteen",
                                                "<script>alert(1)</script>", "Reception"}));
    EXPECT_EQ(texts(".state b"),
              QStringList({"Late", "Late", "Refused", "Incomplete", "In step", "In step"}));
    EXPECT_EQ(texts(".counts b"), QStringList({"2", "1", "1", "2"}));
    EXPECT_EQ(texts("article.incomplete .notes li"), QStringList("day.mp4 cut off"));
    EXPECT_TRUE(texts("article.refused .notes li").value(0).startsWith("registration: wrong password"));
    // The page lies right under the title, from top to bottom in that order.
    EXPECT_TRUE(run("[...document.querySelectorAll('article')].every((a, i, all) => i == 0 || "
                    "a.getBoundingClientRect().top >= all[i - 1].getBoundingClientRect().bottom - 1)")
                    .toBool());
    EXPECT_EQ(run("getComputedStyle(document.querySelector('header')).color").toString(),
              "rgb(255, 255, 255)")
        << "the style was refused";
}

TEST_F(StatusPage, ANameThatIsAScriptIsAName)
{
    startShow();
    load();
    load("?display=0015652b4f15");
    EXPECT_EQ(texts("h3"), QStringList("<script>alert(1)</script>"));
    EXPECT_EQ(run("document.scripts.length").toInt(), 0);
    EXPECT_EQ(
        run("document.querySelectorAll('article *').length - "
            "document.querySelectorAll('article :is(div,svg,path,h3,a,p,b,span,progress,ul,li,em)').length")
            .toInt(),
        0);
    EXPECT_NE(m_page->title(), "1");
    EXPECT_EQ(m_page->said, QStringList());
    // Even a script that got in would not run.
    run("const s = document.createElement('script'); s.textContent = 'document.title = 1'; "
        "document.body.append(s); 0");
    EXPECT_NE(run("document.title").toString(), "1");
    EXPECT_EQ(texts(".notes li").size(), 5) << "each file of the schedule";
}

TEST_F(StatusPage, FitsAHandAndAWall)
{
    startShow();
    for (const QSize size : {QSize(390, 800), QSize(1280, 800), QSize(1920, 1080), QSize(3840, 2160)}) {
        m_view.resize(size);
        load();
        const QImage image = shot();
        EXPECT_EQ(image.size(), size);
        EXPECT_LE(run("document.documentElement.scrollWidth").toInt(), size.width());
        // No text lies outside of what it stands in.
        EXPECT_EQ(run("[...document.querySelectorAll('article *, .counts *, .content *')]"
                      ".filter(e => e.scrollWidth > e.clientWidth + 1 && e.clientWidth > 0)"
                      ".map(e => e.tagName + ' ' + e.textContent)")
                      .toStringList(),
                  QStringList())
            << size.width();
    }
}

} // namespace
