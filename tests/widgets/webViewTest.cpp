#include "host/look/look.h"
#include "host/widgets/webPlugin.h"
#include "tests/kit/eventCounter.h"
#include "tests/kit/plain/processes.h"
#include "tests/widgets/webViewStand.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QPainter>
#include <csignal>
#include <unistd.h>

TEST_F(WebView, TextIsWhereItBelongsAndTheRestIsTransparent)
{
    view->setHtml(box("red") +
                  "<p style='position:absolute;left:100px;top:0;color:yellow;font-size:40px'>Hxg</p>");
    ASSERT_TRUE(shows(Qt::red));
    EXPECT_EQ(whereIs(Qt::red), QRect(120, 130, 50, 40));
    ASSERT_TRUE(shows(Qt::yellow));
    EXPECT_TRUE(QRect(190, 110, 120, 90).contains(whereIs(Qt::yellow)));
    EXPECT_TRUE(isNear(kit::screen().pixelColor(450, 180), QColor(0, 128, 0)));
    EXPECT_EQ(ends, QList<bool>{true});
    kit::shot("rich-text");
    // Another text, another size; then nothing.
    view->setGeometry(200, 200, 200, 50);
    view->setHtml(box("blue", "right:0;bottom:0;width:30px;height:20px"));
    ASSERT_TRUE(shows(Qt::blue));
    ASSERT_TRUE(kit::waitUntil([&] { return whereIs(Qt::blue) == QRect(370, 230, 30, 20); }));
    EXPECT_TRUE(whereIs(Qt::red).isEmpty());
    view->setHtml(QString());
    EXPECT_TRUE(isEmpty());
    EXPECT_EQ(view->html(), "");
}

TEST_F(WebView, AViewOfAPoolGoesOnInAnotherPanel)
{
    // As the panels do it.
    view->setStyleSheet("background-color: rgba(255, 255, 255, 0%);");
    view->setHtml(box("red"));
    ASSERT_TRUE(shows(Qt::red));
    EXPECT_EQ(whereIs(Qt::red), QRect(120, 130, 50, 40));
    view->setHtml(QString());
    view->hide();
    view->setParent(nullptr);
    QWidget panel(&window);
    panel.setGeometry(300, 200, 300, 200);
    panel.show();
    view->setParent(&panel);
    view->setGeometry(0, 0, 300, 200);
    view->setHtml(box("blue"));
    view->show();
    ASSERT_TRUE(shows(Qt::blue));
    EXPECT_EQ(whereIs(Qt::blue), QRect(320, 230, 50, 40));
    EXPECT_TRUE(whereIs(Qt::red).isEmpty());
    EXPECT_TRUE(isNear(kit::screen().pixelColor(550, 380), QColor(0, 128, 0)));
    view->setParent(&window);
}

TEST_F(WebView, AScaledFrameHasItsTextScaled)
{
    QWebView other(&window);
    other.setGeometry(500, 300, 200, 100);
    other.setHtml(box("yellow"));
    other.show();
    view->setZoomFactor(0.5);
    view->setHtml(box("red"));
    ASSERT_TRUE(shows(Qt::red));
    ASSERT_TRUE(kit::waitUntil([&] { return whereIs(Qt::red) == QRect(110, 115, 25, 20); }, kEngineMs));
    view->setHtml(box("blue"));
    ASSERT_TRUE(shows(Qt::blue));
    EXPECT_TRUE(kit::waitUntil([&] { return whereIs(Qt::blue) == QRect(110, 115, 25, 20); }, kEngineMs));
    view->setZoomFactor(1);
    EXPECT_TRUE(kit::waitUntil([&] { return whereIs(Qt::blue) == QRect(120, 130, 50, 40); }, kEngineMs));
    EXPECT_EQ(whereIs(Qt::yellow), QRect(520, 330, 50, 40)) << "each view has its own";
    view->setZoomFactor(0.1);
    EXPECT_EQ(view->zoomFactor(), 0.25);
}

TEST_F(WebView, TextIsDrawnInThePhonesOwnFont)
{
    view->setHtml("<div style='position:absolute;left:0;top:0;color:yellow;font-size:40px'>Wide mmmmm</div>");
    ASSERT_TRUE(shows(Qt::yellow));
    const QImage engine = kit::screen();
    QImage own(400, 100, QImage::Format_RGB32);
    own.fill(Qt::black);
    QPainter painter(&own);
    painter.setFont(look::font(40));
    painter.setPen(Qt::yellow);
    painter.drawText(0, 50, "Wide mmmmm");
    painter.end();
    EXPECT_NEAR(extent(engine, Qt::yellow).width(), extent(own, Qt::yellow).width(), 4);
    EXPECT_NEAR(extent(engine, Qt::yellow).height(), extent(own, Qt::yellow).height(), 3);
}

TEST_F(WebView, AMarqueeMoves)
{
    view->setHtml("<body style='margin:0'><marquee direction=left scrollamount=3 height='100%'>"
                  "<div style='background:red;width:20px;height:20px'></div></marquee></body>");
    ASSERT_TRUE(shows(Qt::red));
    ASSERT_TRUE(kit::waitUntil([&] { return whereIs(Qt::red).width() == 20; }, kEngineMs));
    const int before = whereIs(Qt::red).left();
    EXPECT_TRUE(kit::waitUntil([&] { return whereIs(Qt::red).left() < before - 10; }, kEngineMs));
}

TEST_F(WebView, NothingOfThePhonesFilesIsRead)
{
    QImage secret(60, 60, QImage::Format_RGB32);
    secret.fill(Qt::red);
    ASSERT_TRUE(secret.save(root() + "/secret.png"));
    writeFile("/secret.html", "<body bgcolor=red>secret</body>");
    writeFile("/secret.css", "body { background: red }");
    const QString base = "file://" + root() + '/';
    const QString html = R"(<script>
        let left = 4;
        function no() { if (--left == 0) done.style.background = 'blue'; }
        function yes() { document.body.style.background = 'red'; }
        </script><body><div id=done style='position:absolute;left:200px;top:30px;width:30px;height:30px'></div>
        <link rel=stylesheet href='%1secret.css' onload=yes() onerror=no()>
        <img src='%1secret.png' onload=yes() onerror=no()>
        <iframe width=60 height=40 src='%1secret.html'></iframe>
        <script>
        let request = new XMLHttpRequest; request.onload = yes; request.onerror = no;
        try { request.open('GET', '%1secret.html'); request.send(); } catch (e) { no(); }
        fetch('%1secret.html').then(yes, no);
        </script></body>)";
    view->setHtml(html.arg(base), QUrl(base));
    ASSERT_TRUE(shows(Qt::blue));
    EXPECT_TRUE(whereIs(Qt::red).isEmpty());
}

TEST_F(WebView, ATextGoesNowhereByItselfAndOpensNothing)
{
    WebServer server;
    mayReach(server);
    const QString html = R"(<meta http-equiv=refresh content='0;url=%1refreshed'><img src='%1picture.png'>
        <form id=form action='%1sent'></form><a id=link href='%1followed'>x</a><script>
        window.open('%1opened'); alert('x'); form.submit(); link.click(); location = '%1moved';
        setTimeout(() => fetch('%1last'), 300);
        </script>)";
    view->setHtml(html.arg(server.address()) + box("blue"));
    ASSERT_TRUE(shows(Qt::blue));
    ASSERT_TRUE(kit::waitUntil([&] { return server.asked.contains("GET /last HTTP/1.1"); }, kEngineMs));
    server.asked.removeAll("GET /favicon.ico HTTP/1.1");
    EXPECT_EQ(server.asked, (QByteArrayList{"GET /picture.png HTTP/1.1", "GET /last HTTP/1.1"}));
    EXPECT_FALSE(whereIs(Qt::blue).isEmpty());
    EXPECT_EQ(kit::windows(), QList<QWidget*>{&window});
}

TEST_F(WebView, ATouchGoesToTheViewAndNotIntoTheText)
{
    WebServer server;
    mayReach(server);
    view->setHtml(
        QString("<a href='%1followed' style='position:absolute;left:0;top:0;width:400px;height:90px;"
                "background:blue'></a><script>onmousedown = onmousemove = () => "
                "document.body.style.background = 'red'</script>")
            .arg(server.address()));
    ASSERT_TRUE(shows(Qt::blue));
    EventCounter counter(QEvent::MouseButtonPress);
    view->installEventFilter(&counter);
    kit::tap(QPoint(200, 140));
    EXPECT_EQ(counter.count, 1);
    // The answer to a text that comes after the touch shows that the touch had its time.
    view->setHtml(box("yellow"));
    ASSERT_TRUE(shows(Qt::yellow));
    EXPECT_TRUE(server.asked.isEmpty());
}

TEST_F(WebView, AKilledProcessCostsTheTextItsLooksUntilTheNext)
{
    view->setHtml("<p style='color:yellow;font-size:40px'>Hello</p>" + box("linear-gradient(blue,blue)"));
    ASSERT_TRUE(shows(Qt::blue));
    const pid_t process = kit::textProcess();
    ASSERT_NE(process, 0);
    kill(process, SIGKILL);
    ASSERT_TRUE(kit::waitUntil([&] { return ends.contains(false); }, kEngineMs));
    EXPECT_NE(traced().find("rich text process ended, status "), std::string::npos) << traced();
    EXPECT_TRUE(whereIs(Qt::blue).isEmpty()) << "what only the engine draws";
    EXPECT_FALSE(whereIs(Qt::yellow).isEmpty());
    view->setHtml(box("blue"));
    ASSERT_TRUE(shows(Qt::blue));
    EXPECT_EQ(whereIs(Qt::blue), QRect(120, 130, 50, 40));
    EXPECT_TRUE(whereIs(Qt::yellow).isEmpty());
}

TEST_F(WebView, ATextThatHangsIsEndedForTheOnesAfterIt)
{
    view->setHtml("<script>for (;;) ;</script>");
    // It has begun and never comes to its end, or did not even come so far.
    ASSERT_TRUE(kit::waitUntil(
        [&] {
            const QWidget* drawing = view->findChild<QWidget*>();
            return (drawing && drawing->isVisible()) || !ends.isEmpty();
        },
        kEngineMs));
    view->setHtml("<p style='color:yellow;font-size:40px'>Hello</p>");
    kit::stepTime(9000);
    EXPECT_EQ(traced().find("rich text process hangs"), std::string::npos) << traced();
    kit::stepTime(2000);
    EXPECT_NE(traced().find("rich text process hangs"), std::string::npos) << traced();
    ASSERT_TRUE(shows(Qt::yellow));
    view->setHtml(box("blue"));
    EXPECT_TRUE(shows(Qt::blue));
}

TEST_F(WebView, AViewWithoutTextStartsNoEngine)
{
    view->setHtml(QString());
    kit::settle();
    EXPECT_EQ(webPlugin::instance().state(), webPlugin::IDLE);
    EXPECT_TRUE(isEmpty());
}

TEST_F(WebView, WithoutTheEngineTheTextIsPlain)
{
    QImage secret(60, 60, QImage::Format_RGB32);
    secret.fill(Qt::red);
    ASSERT_TRUE(secret.save(root() + "/secret.png"));
    webPlugin::instance().setFile(root() + "/libhxWeb.so");
    view->setHtml(QString("<p style='color:yellow;font-size:40px'>Hello</p><img src='%1/secret.png'>"
                          "<img src='file://%1/secret.png'>")
                      .arg(root()));
    ASSERT_TRUE(kit::waitUntil([&] { return ends == QList<bool>{false}; }));
    EXPECT_NE(traced().find("rich text engine not loaded: "), std::string::npos) << traced();
    EXPECT_FALSE(whereIs(Qt::yellow).isEmpty());
    EXPECT_TRUE(kView.contains(whereIs(Qt::yellow)));
    EXPECT_TRUE(whereIs(Qt::red).isEmpty());
    kit::shot("rich-text-plain");
    const int whole = whereIs(Qt::yellow).width();
    view->setZoomFactor(0.5);
    EXPECT_NEAR(whereIs(Qt::yellow).width(), whole / 2, 3);
    view->setHtml(QString());
    EXPECT_TRUE(isEmpty());
}

TEST_F(WebView, ATextThatIsTooLongForTheEngineIsPlain)
{
    view->setHtml("<p style='color:yellow;font-size:40px'>Hello</p>" + QString(2 * 1024 * 1024, 'x'));
    ASSERT_TRUE(kit::waitUntil([&] { return ends.contains(false); }, kEngineMs));
    EXPECT_FALSE(whereIs(Qt::yellow).isEmpty());
}

namespace {

// Counts what the engine paints in a view, and in which turn of the window.
class EnginePaints : public QObject
{
public:
    EnginePaints(QWidget* window, QWidget* view) : m_pWindow(window), m_pView(view)
    {
        QCoreApplication::instance()->installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::UpdateRequest && watched == m_pWindow)
            ++m_nTurn;
        if (event->type() == QEvent::Paint && watched->inherits("QQuickWidget") &&
            m_pView->isAncestorOf(static_cast<QWidget*>(watched))) {
            turns.append(m_nTurn);
            since.start();
        }
        return false;
    }
    bool reach(int count)
    {
        return kit::waitUntil([&] { return turns.size() >= count; }, kEngineMs);
    }
    // Until the view has stood still for that long.
    bool rest(int ms)
    {
        since.start();
        return kit::waitUntil([&] { return since.hasExpired(ms); }, kEngineMs);
    }
    QList<int> turns;
    QElapsedTimer since;

private:
    QWidget* m_pWindow;
    QWidget* m_pView;
    int m_nTurn = 0;
};

} // namespace

TEST_F(WebView, ARunningTextHasNoMoreFramesThanItNeeds)
{
    EnginePaints paints(&window, view);
    view->setHtml(kMarquee);
    ASSERT_TRUE(paints.reach(50));
    paints.turns.clear();
    QElapsedTimer timer;
    timer.start();
    ASSERT_TRUE(paints.reach(150));
    EXPECT_GE(timer.elapsed(), 1700) << "more than 88 frames in a second";
}

TEST_F(WebView, RunningTextsArePaintedInTheSameTurns)
{
    QWebView other(&window);
    other.setGeometry(100, 300, 400, 100);
    other.show();
    EnginePaints first(&window, view), second(&window, &other);
    view->setHtml(kMarquee);
    other.setHtml(kMarquee);
    ASSERT_TRUE(first.reach(50) && second.reach(50));
    first.turns.clear();
    second.turns.clear();
    ASSERT_TRUE(first.reach(150));
    qsizetype both = 0;
    for (const int turn : std::as_const(first.turns))
        both += second.turns.contains(turn);
    EXPECT_GT(both, first.turns.size() * 7 / 10);
}

TEST_F(WebView, AStandingTextIsPaintedOnce)
{
    EnginePaints paints(&window, view);
    view->setHtml(box("red"));
    ASSERT_TRUE(shows(Qt::red));
    ASSERT_TRUE(paints.rest(1000));
    const qsizetype before = paints.turns.size();
    EXPECT_LT(before, 20);
    ASSERT_TRUE(paints.rest(1000));
    EXPECT_EQ(paints.turns.size(), before);
}

TEST_F(WebView, AHiddenTextCostsNothingAndRunsOnWhenItIsShown)
{
    EnginePaints paints(&window, view);
    view->setHtml(kMarquee);
    ASSERT_TRUE(paints.reach(50));
    const pid_t process = kit::textProcess();
    view->hide();
    ASSERT_TRUE(paints.rest(500));
    const qsizetype before = paints.turns.size();
    const double phone = kit::cpuSeconds(getpid()), engine = kit::cpuSeconds(process);
    ASSERT_TRUE(paints.rest(1000));
    EXPECT_EQ(paints.turns.size(), before);
    EXPECT_LT(kit::cpuSeconds(getpid()) - phone, 0.5);
    EXPECT_LT(kit::cpuSeconds(process) - engine, 0.1);
    view->show();
    EXPECT_TRUE(paints.reach(int(before) + 50));
}
