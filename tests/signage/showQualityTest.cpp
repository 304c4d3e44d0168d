// What a passer-by sees and what the show costs.
#include "host/widgets/webPlugin.h"
#include "support/host/webview.h"
#include "tests/signage/displayFixture.h"
#include <QApplication>
#include <QEventLoop>
#include <QFile>
#include <QLabel>
#include <QTimer>
#include <ctime>

namespace {

// The sanitizers keep freed memory on purpose, and take about four times as long. Percent of a core.
#if defined(__SANITIZE_ADDRESS__)
constexpr int kManyChanges = 1000;
constexpr double kGrowth = 1;
constexpr double kStillLoad = 20;
constexpr double kQuickLoad = 60;
#else
constexpr int kManyChanges = 10000;
constexpr double kGrowth = 0.02;
constexpr double kStillLoad = 5;
constexpr double kQuickLoad = 15;
#endif

// Looks at the frame whenever it is painted.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(std::function<void(QObject*)> look) : m_look(look) { qApp->installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            m_look(watched);
        return false;
    }

private:
    std::function<void(QObject*)> m_look;
};

double cpuMs()
{
    timespec now;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1000 + double(now.tv_nsec) / 1e6;
}

// Share of one core that the event loop uses in that time, in percent.
double load(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    const double before = cpuMs();
    loop.exec();
    return (cpuMs() - before) * 100 / ms;
}

long residentKb()
{
    QFile file("/proc/self/statm");
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll().split(' ').value(1).toLong() * 4;
}

void nextLayout()
{
    msgObject tick;
    GetNDeckDispaly().OnTimerLoadNextLayout(tick);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

} // namespace

class ShowQuality : public DisplayTest
{
    // What a show costs is measured in real time.
    kit::RunningClocks m_running;
};

TEST_F(ShowQuality, EachOfAThousandChangesTakesOneFrameWithoutAGap)
{
    addFile("red.png", picture(Qt::red));
    addFile("green.png", picture(Qt::green));
    addLayout("a.xml", layout(region(image("red.png", "5"))));
    addLayout("b.xml", layout(region(image("green.png", "5"))));
    takeUp();
    show();
    int paints = 0;
    int gaps = 0;
    PaintWatch watch([&](QObject* painted) {
        if (painted == &frame() && panels().size() != 1)
            ++gaps;
        auto* label = qobject_cast<QLabel*>(painted);
        if (!label)
            return;
        ++paints;
        const QLabel* shown = qobject_cast<QLabel*>(panels().value(0)->GetContent());
        if (shown != label || !label->isVisible() || label->pixmap().isNull())
            ++gaps;
    });
    for (int i = 0; i < 1000; ++i) {
        nextLayout();
        ASSERT_EQ(paints, i + 1);
    }
    EXPECT_EQ(gaps, 0);
    EXPECT_EQ(pixel(300, 240), qRgb(255, 0, 0));
}

TEST_F(ShowQuality, OldPictureStaysUntilTheTextIsThere)
{
    addFile("red.png", picture(Qt::red));
    addLayout("a.xml", layout(region(image("red.png", "5")), "bgcolor=\"#ffffff\""));
    addLayout("b.xml",
              layout(region(text("<p style=\"color:black\">hello</p>", "60")), "bgcolor=\"#ffffff\""));
    takeUp();
    show();
    EXPECT_EQ(pixel(300, 240), qRgb(255, 0, 0));
    nextLayout();
    auto* view = frame().findChild<QWebView*>();
    ASSERT_NE(view, nullptr);
    ASSERT_EQ(frame().findChildren<nDeckCover*>().size(), 1);
    EXPECT_EQ(pixel(300, 240), qRgb(255, 0, 0));
    emit view->loadFinished(true);
    kit::settle();
    EXPECT_EQ(pixel(300, 240), qRgb(255, 0, 0));
    kit::stepTime(100);
    EXPECT_TRUE(frame().findChildren<nDeckCover*>().isEmpty());
    EXPECT_EQ(pixel(300, 400), qRgb(255, 255, 255));
}

TEST_F(ShowQuality, TouchReachesTheButtonBelowTheOldPicture)
{
    addFile("red.png", picture(Qt::red));
    addLayout("a.xml", layout(region(image("red.png", "5"))));
    addLayout("b.xml", layout(region(text("hello", "60", "phoneNum=\"123\""))));
    takeUp();
    show();
    nextLayout();
    ASSERT_EQ(frame().findChildren<nDeckCover*>().size(), 1);
    mark();
    kit::tap(QPoint(400, 460));
    EXPECT_EQ(logged("dial").size(), 1);
}

TEST_F(ShowQuality, OldPictureGoesWhenTheFrameGetsAnotherSize)
{
    addFile("red.png", picture(Qt::red));
    addLayout("a.xml", layout(region(image("red.png", "5"))));
    addLayout("b.xml", layout(region(text("hello", "60"))));
    takeUp();
    show();
    nextLayout();
    ASSERT_EQ(frame().findChildren<nDeckCover*>().size(), 1);
    frame().resize(400, 240);
    kit::settle();
    EXPECT_TRUE(frame().findChildren<nDeckCover*>().isEmpty());
}

TEST_F(ShowQuality, NeitherTextIsEverMissing)
{
    const char* const left = "<div style=\"background:#000;height:400px\">one</div>";
    const char* const right = "<div style=\"background:#00f;height:400px\">two</div>";
    addLayout("a.xml", layout(region(text(left, "60")), "bgcolor=\"#ffffff\""));
    addLayout("b.xml", layout(region(text(right, "60")), "bgcolor=\"#ffffff\""));
    takeUp();
    show();
    ASSERT_TRUE(kit::waitUntil([] { return pixel(300, 240) == qRgb(0, 0, 0); }, 20000));
    for (int i = 0; i < 10; ++i) {
        const QRgb wanted = i % 2 ? qRgb(0, 0, 0) : qRgb(0, 0, 255);
        int gaps = 0;
        nextLayout();
        EXPECT_TRUE(kit::waitUntil(
            [&] {
                const QRgb now = pixel(300, 240);
                gaps += now == qRgb(255, 255, 255) ? 1 : 0;
                return now == wanted;
            },
            20000));
        EXPECT_EQ(gaps, 0);
        kit::waitUntil([] { return frame().findChildren<nDeckCover*>().isEmpty(); });
        EXPECT_EQ(pixel(300, 240), wanted);
    }
}

TEST_F(ShowQuality, OldPictureGoesWhenTheTextNeverComes)
{
    addFile("red.png", picture(Qt::red));
    addLayout("a.xml", layout(region(image("red.png", "5")), "bgcolor=\"#ffffff\""));
    addLayout("b.xml", layout(region(text("hello", "60")), "bgcolor=\"#ffffff\""));
    takeUp();
    show();
    nextLayout();
    ASSERT_EQ(frame().findChildren<nDeckCover*>().size(), 1);
    kit::stepTime(11000);
    EXPECT_TRUE(frame().findChildren<nDeckCover*>().isEmpty());
}

TEST_F(ShowQuality, TextsThatTakeTurnsLeaveNoGap)
{
    webPlugin::instance().setFile("/none");
    addLayout("a.xml",
              layout(region(QRect(0, 0, 400, 240), text("<b>one</b>", "2") + text("<b>two</b>", "2"))));
    takeUp();
    show();
    auto* view = frame().findChild<QWebView*>();
    kit::waitUntil([view] { return !view->property("loading").toBool(); });
    EXPECT_EQ(view->html(), "<b>one</b>");
    bool covered = false;
    PaintWatch watch([&](QObject* painted) { covered |= qobject_cast<nDeckCover*>(painted) != nullptr; });
    msgObject tick;
    const_cast<nDeckRegion&>(*display().GetCurrentLayout()->GetRegions().begin()).OnTimerLoadNextMedia(tick);
    ASSERT_EQ(frame().findChildren<nDeckCover*>().size(), 1);
    EXPECT_EQ(frame().findChild<nDeckCover*>()->geometry(), QRect(0, 0, 400, 240));
    EXPECT_EQ(frame().findChild<QWebView*>()->html(), "<b>two</b>");
    kit::waitUntil([] { return frame().findChildren<nDeckCover*>().isEmpty(); });
    EXPECT_TRUE(frame().findChildren<nDeckCover*>().isEmpty());
}

TEST_F(ShowQuality, StaticLayoutCostsNothing)
{
    addFile("red.png", picture(Qt::red));
    addLayout("a.xml", layout(region(image("red.png", "600", "123"))));
    takeUp();
    show();
    load(300);
    const double used = load(2000);
    RecordProperty("percent", QByteArray::number(used).constData());
    EXPECT_LT(used, 1.0);
}

TEST_F(ShowQuality, LayoutWithoutADurationCostsLittle)
{
    webPlugin::instance().setFile("/none");
    addFile("red.png", picture(Qt::red, "JPG", QSize(800, 480)));
    addLayout("a.xml", layout(region(QRect(0, 0, 400, 480), image("red.png", "", "123")) +
                              region(QRect(400, 0, 400, 480), text("hello", ""))));
    takeUp();
    show();
    load(500);
    int paints = 0;
    PaintWatch watch([&](QObject*) { ++paints; });
    const double used = load(2000);
    RecordProperty("percent", QByteArray::number(used).constData());
    EXPECT_EQ(paints, 0);
    EXPECT_LT(used, kStillLoad);
}

TEST_F(ShowQuality, LayoutsWithoutADurationCostLittle)
{
    webPlugin::instance().setFile("/none");
    addFile("red.png", picture(Qt::red, "JPG", QSize(800, 480)));
    addFile("green.png", picture(Qt::green, "JPG", QSize(800, 480)));
    addLayout("a.xml", layout(region(image("red.png", ""))));
    addLayout("b.xml", layout(region(image("green.png", ""))));
    addLayout("c.xml", layout(region(text("hello", ""))));
    takeUp();
    show();
    load(500);
    const double used = load(2000);
    RecordProperty("percent", QByteArray::number(used).constData());
    EXPECT_LT(used, kQuickLoad);
}

TEST_F(ShowQuality, MissingLayoutFileCostsLittle)
{
    addLayout("gone.xml", "");
    takeUp();
    show();
    load(500);
    int paints = 0;
    PaintWatch watch([&](QObject*) { ++paints; });
    const double used = load(2000);
    RecordProperty("percent", QByteArray::number(used).constData());
    EXPECT_EQ(paints, 0);
    EXPECT_LT(used, kStillLoad);
}

TEST_F(ShowQuality, SeveralMissingLayoutFilesCostLittle)
{
    addLayout("gone.xml", "");
    addLayout("away.xml", "");
    takeUp();
    show();
    load(500);
    int paints = 0;
    PaintWatch watch([&](QObject*) { ++paints; });
    const double used = load(2000);
    RecordProperty("percent", QByteArray::number(used).constData());
    EXPECT_EQ(paints, 0);
    EXPECT_LT(used, kQuickLoad);
}

TEST_F(ShowQuality, MemoryDoesNotGrowOverTenThousandChanges)
{
    webPlugin::instance().setFile("/none");
    addFile("red.png", picture(Qt::red));
    addFile("green.png", picture(Qt::green));
    addFile("film.mp4", "film");
    addLayout("a.xml", layout(region(QRect(0, 0, 200, 120), image("red.png", "5", "123")) +
                              region(QRect(200, 0, 200, 120), text("<b>one</b>", "5"))));
    addLayout("b.xml", layout(region(QRect(0, 0, 160, 120), video("film.mp4", "5", "123")) +
                              region(QRect(160, 0, 100, 120), image("green.png", "5")) +
                              region(QRect(260, 0, 140, 120), text("<i>two</i>", "5"))));
    takeUp();
    std::unique_ptr<QWidget> home(new QWidget);
    home->resize(400, 240);
    home->show();
    nDeckWindowDisplay(1, NDECK_WINDOW_IDLE, home.get(), QRect(0, 0, 400, 240));
    kit::settle();
    for (int i = 0; i < kManyChanges / 4;
         ++i) // readers that start late on a busy machine take their room once
        nextLayout();
    const long before = residentKb();
    const int widgets = GetNdeckWidgetPoolManager().GetCount();
    for (int i = kManyChanges / 4; i < kManyChanges; ++i)
        nextLayout();
    const long after = residentKb();
    RecordProperty("beforeKb", QByteArray::number(int(before)).constData());
    RecordProperty("afterKb", QByteArray::number(int(after)).constData());
    EXPECT_LT(double(after - before), double(before) * kGrowth);
    EXPECT_EQ(GetNdeckWidgetPoolManager().GetCount(), widgets);
}
