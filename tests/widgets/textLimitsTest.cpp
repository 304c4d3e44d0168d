// What a text may cost the phone: nothing when nobody sees it, and some of the processor and of the memory
// while it is shown. In real time: the engine's processes have clocks that the kit does not reach.
#include "host/widgets/webPlugin.h"
#include "tests/kit/plain/processes.h"
#include "tests/widgets/webViewStand.h"
#include <QDir>
#include <QElapsedTimer>
#include <algorithm>
#include <ostream>
#include <sys/resource.h>

namespace {

constexpr int kWindowMs = 400;
constexpr double kRests = 0.05; // of a processor
constexpr double kIsAtIt = 0.1; // seconds of a processor
// A script that takes all that it gets has taken this soon, on a busy machine too.
constexpr tagTextBudget kSmall = {30, 1000};
constexpr double kUntilLookSeconds = 2; // what two processors do until the next look
constexpr qint64 kMiB = 1024 * 1024;

// A script that takes all that it gets, and the text beside it.
struct Greedy
{
    const char* name;
    const char* script;
};

void PrintTo(const Greedy& greedy, std::ostream* stream)
{
    *stream << greedy.name;
}

QString textOf(const Greedy& greedy)
{
    return box("linear-gradient(red,red)") + "<p style='color:yellow;font-size:40px'>Hello</p><script>" +
           greedy.script + "</script>";
}

const Greedy kSpins[] = {
    {"loop", "setTimeout(() => { for (;;) ; }, 300)"},
    {"timers", "setInterval(() => { const end = Date.now() + 45; while (Date.now() < end) ; }, 50)"},
    {"workers", "const url = URL.createObjectURL(new Blob(['for (;;) ;']));"
                "for (let i = 0; i < 3; ++i) new Worker(url)"},
    {"frames", "const frame = document.createElement('iframe'); document.body.append(frame);"
               "frame.contentWindow.setTimeout('for (;;) ;', 300)"},
};

const Greedy kHogs[] = {
    {"objects",
     "const all = []; setInterval(() => { for (let i = 0; i < 50000; ++i) all.push({a: [i]}) }, 5)"},
    {"buffers", "const all = []; setInterval(() => { all.push(new Uint8Array(8 << 20).fill(7)) }, 5)"},
    {"canvases",
     "const all = []; setInterval(() => { const c = document.createElement('canvas');"
     "c.width = c.height = 2000; c.getContext('2d').fillRect(0, 0, 2000, 2000); all.push(c) }, 5)"},
    {"nodes", "setInterval(() => { for (let i = 0; i < 2000; ++i) {"
              "const p = document.createElement('p'); p.textContent = 'x'.repeat(1000);"
              "p.style.display = 'none'; document.body.append(p) } }, 5)"},
    {"blobs",
     "const all = []; setInterval(() => { all.push(new Blob([new Uint8Array(4 << 20).fill(7)])) }, 5)"},
    {"atonce",
     "setTimeout(() => { const all = []; for (;;) all.push(new Uint8Array(64 << 20).fill(7)) }, 300)"},
    {"workers", "const url = URL.createObjectURL(new Blob(["
                "'const all = []; for (;;) all.push(new Uint8Array(1 << 20).fill(7))']));"
                "for (let i = 0; i < 3; ++i) new Worker(url)"},
};

// Bytes that a process has for itself.
qint64 ownMemory(pid_t process)
{
    return (kit::statusKiB(process, "RssAnon") + kit::statusKiB(process, "RssShmem")) * 1024;
}

// Others use the machine of a test too: where the system allows it, the process goes before them.
void hurry(pid_t process)
{
    for (const QString& thread : QDir(QString("/proc/%1/task").arg(process)).entryList(QDir::Dirs))
        setpriority(PRIO_PROCESS, id_t(thread.toUInt()), -20);
}

class TextLimits : public WebView
{
protected:
    TextLimits() { webPlugin::instance().setBudget({}); }
    // A share of one processor over the next moment; 0 for a process that is gone.
    static double share(pid_t process)
    {
        const double before = kit::cpuSeconds(process);
        QElapsedTimer timer;
        timer.start();
        kit::waitUntil([&] { return timer.elapsed() >= kWindowMs; }, 2 * kWindowMs);
        return std::max(0.0, kit::cpuSeconds(process) - before) * 1000 / double(timer.elapsed());
    }
    bool rests(pid_t process, int ms = 15000)
    {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < ms) {
            hurry(process);
            if (share(process) < kRests)
                return true;
        }
        return false;
    }
    // What begins late.
    static bool isAtIt(pid_t process)
    {
        const double before = kit::cpuSeconds(process);
        hurry(process);
        return kit::waitUntil([&] { return kit::cpuSeconds(process) > before + kIsAtIt; }, kEngineMs);
    }
    bool isTraced(const char* line) const { return traced().find(line) != std::string::npos; }
    void showNext(const char* colour)
    {
        view->setHtml(box(colour));
        view->show();
        EXPECT_TRUE(shows(QColor(colour))) << traced();
        EXPECT_EQ(whereIs(QColor(colour)), QRect(120, 130, 50, 40)) << "in the engine";
    }
};

class Spin : public TextLimits, public ::testing::WithParamInterface<Greedy>
{
protected:
    // Shown, and at it.
    pid_t start()
    {
        view->setHtml(textOf(GetParam()));
        EXPECT_TRUE(shows(Qt::red));
        const pid_t process = kit::textProcess();
        EXPECT_TRUE(isAtIt(process));
        return process;
    }
};

class Hog : public TextLimits, public ::testing::WithParamInterface<Greedy>
{
};

const auto nameOf = [](const auto& info) { return std::string(info.param.name); };

} // namespace

TEST_P(Spin, EndsWithTheShow)
{
    const pid_t process = start();
    view->hide();
    kit::stepTime(1100); // it is taken from the engine
    kit::stepTime(3300); // whose process is ended when it does not let go of it
    EXPECT_TRUE(rests(process));
    showNext("blue");
}

TEST_P(Spin, IsEndedAndPlainWhileItIsShown)
{
    webPlugin::instance().setBudget(kSmall);
    QElapsedTimer timer;
    timer.start();
    const pid_t process = start();
    double taken = 0;
    EXPECT_TRUE(kit::waitUntil(
        [&] {
            hurry(process);
            taken = std::max(taken, kit::cpuSeconds(process));
            return ends.contains(false);
        },
        kEngineMs));
    EXPECT_LE(taken, (kSmall.nSavedMs + kSmall.nSharePercent * double(timer.elapsed()) / 100) / 1000 +
                         kUntilLookSeconds);
    EXPECT_TRUE(rests(process));
    EXPECT_TRUE(isTraced("rich text takes too much of the processor, its process is ended")) << traced();
    EXPECT_FALSE(whereIs(Qt::yellow).isEmpty());
    EXPECT_TRUE(whereIs(Qt::red).isEmpty()) << "what only the engine draws";
    showNext("blue");
}

INSTANTIATE_TEST_SUITE_P(TextLimits, Spin, ::testing::ValuesIn(kSpins), nameOf);

TEST_P(Hog, IsEndedAndPlainBeforeItHasMuch)
{
    view->setHtml(box("red"));
    ASSERT_TRUE(shows(Qt::red));
    const qint64 phoneBefore = ownMemory(getpid());
    const pid_t process = kit::textProcess();
    view->setHtml(textOf(GetParam()));
    qint64 most = 0, phone = 0;
    ASSERT_TRUE(kit::waitUntil(
        [&] {
            most = std::max(most, ownMemory(process));
            phone = std::max(phone, ownMemory(getpid()));
            return ends.contains(false);
        },
        60000))
        << most / kMiB << " MiB " << traced();
    EXPECT_TRUE(isTraced("its process is ended") || isTraced("rich text process ended")) << traced();
    EXPECT_LT(most / kMiB, 320);
    EXPECT_LT((phone - phoneBefore) / kMiB, 300);
    EXPECT_FALSE(whereIs(Qt::yellow).isEmpty());
    showNext("blue");
    EXPECT_LT((ownMemory(getpid()) - phoneBefore) / kMiB, 100);
}

INSTANTIATE_TEST_SUITE_P(TextLimits, Hog, ::testing::ValuesIn(kHogs), nameOf);

TEST_F(TextLimits, AMarqueeThatRunsForLongIsNotEnded)
{
    // The share as it is; with less saved up, too much shows sooner.
    webPlugin::instance().setBudget({tagTextBudget().nSharePercent, 1500});
    QWebView other(&window);
    other.setGeometry(0, 250, 800, 200);
    other.show();
    view->setHtml(kMarquee);
    other.setHtml(QString(kMarquee).replace("200px", "700px"));
    ASSERT_TRUE(shows(Qt::red));
    const pid_t process = kit::textProcess();
    QElapsedTimer timer;
    timer.start();
    kit::waitUntil([&] { return timer.elapsed() > 5000; }, 10000);
    EXPECT_EQ(kit::textProcess(), process);
    EXPECT_FALSE(ends.contains(false)) << traced();
}

TEST_F(TextLimits, AHiddenTextGivesItsMemoryBack)
{
    view->setHtml(box("red") + "<script>all = []; for (let i = 0; i < 80; ++i)"
                               "all.push(new Uint8Array(1 << 20).fill(7))</script>");
    ASSERT_TRUE(shows(Qt::red));
    const pid_t process = kit::textProcess();
    ASSERT_GT(ownMemory(process), 80 * kMiB);
    view->hide();
    EXPECT_TRUE(kit::waitUntil([&] { return ownMemory(process) < 64 * kMiB; }, 15000))
        << ownMemory(process) / kMiB;
}

TEST_F(TextLimits, AHiddenTextIsUnloadedAndLoadedAgainWhenItIsShown)
{
    view->setHtml(box("red") + "<script>if (window.was) document.body.innerHTML = ''; was = 1</script>");
    ASSERT_TRUE(shows(Qt::red));
    EXPECT_TRUE(view->isLoaded());
    view->hide();
    kit::stepTime(500);
    EXPECT_TRUE(view->isLoaded()) << "a layout that goes on at once";
    view->show();
    kit::stepTime(2000);
    EXPECT_TRUE(view->isLoaded());
    view->hide();
    kit::stepTime(1500);
    EXPECT_FALSE(view->isLoaded());
    EXPECT_FALSE(view->html().isEmpty());
    ends.clear();
    view->show();
    EXPECT_TRUE(view->isLoaded());
    ASSERT_TRUE(shows(Qt::red));
    EXPECT_TRUE(kit::waitUntil([&] { return ends == QList<bool>{true}; }));
}

TEST_F(TextLimits, ATextThatIsNeverShownIsUnloadedToo)
{
    ASSERT_TRUE(kit::waitUntil([] { return !webPlugin::instance().warmStep(); }, kEngineMs));
    view->hide();
    view->setHtml(textOf(kSpins[1]));
    const pid_t process = kit::textProcess();
    EXPECT_TRUE(kit::waitUntil([&] { return !view->isLoaded(); }, kEngineMs));
    EXPECT_TRUE(rests(process));
}

TEST_F(TextLimits, ATextThatIsHiddenBeforeTheEngineIsThereIsNotGivenToIt)
{
    view->hide();
    view->setHtml(box("red"));
    ASSERT_EQ(webPlugin::instance().state(), webPlugin::LOADING);
    kit::stepTime(1100);
    EXPECT_FALSE(view->isLoaded());
    ASSERT_TRUE(kit::waitUntil([] { return webPlugin::instance().state() == webPlugin::READY; }, kEngineMs));
    kit::settle();
    EXPECT_TRUE(view->findChildren<QWidget*>().isEmpty()) << "nothing draws";
    view->show();
    EXPECT_TRUE(shows(Qt::red));
}

TEST_F(TextLimits, AFailedTextIsPlainAtOnceForAWhile)
{
    const QString bad = textOf(kHogs[5]);
    view->setHtml(bad);
    ASSERT_TRUE(kit::waitUntil([&] { return ends.contains(false); }, 60000));
    view->setHtml(bad);
    // Ended by the system and not by us: it may have been an accident, once.
    kit::waitUntil([&] { return ends.count(false) > 1; }, 60000);
    showNext("blue");
    mark();
    ends.clear();
    view->setHtml(bad);
    kit::settle();
    EXPECT_EQ(ends, QList<bool>{false});
    EXPECT_TRUE(isTraced("rich text took too much before, it is shown plainly")) << traced();
    EXPECT_FALSE(whereIs(Qt::yellow).isEmpty());
    EXPECT_TRUE(whereIs(Qt::blue).isEmpty()) << "the text before it is gone";
    kit::stepTime(11 * 60000);
    mark();
    view->setHtml(bad);
    EXPECT_FALSE(isTraced("rich text took too much before")) << traced();
}

TEST_F(TextLimits, ATextBesideOneThatHangsAndGoesIsLoadedAgain)
{
    QWebView other(&window);
    other.setGeometry(100, 300, 400, 100);
    other.setHtml(box("yellow"));
    other.show();
    ASSERT_TRUE(shows(Qt::yellow));
    view->setHtml(textOf(kSpins[0]));
    ASSERT_TRUE(shows(Qt::red));
    const pid_t process = kit::textProcess();
    EXPECT_TRUE(isAtIt(process));
    view->setHtml(QString());
    kit::stepTime(2500);
    EXPECT_FALSE(isTraced("rich text process hangs, it is ended"));
    kit::stepTime(800);
    EXPECT_TRUE(isTraced("rich text process hangs, it is ended"));
    ASSERT_TRUE(
        kit::waitUntil([&] { return kit::textProcess() != process && kit::textProcess() != 0; }, kEngineMs));
    EXPECT_TRUE(kit::waitUntil([&] { return whereIs(Qt::yellow) == QRect(120, 330, 50, 40); }, kEngineMs));
}
