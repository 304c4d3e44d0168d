// A monkey at finger and keys, with hosts' entries and the world's changes between: whatever it does, the
// phone lives, answers, comes home by "Back" alone, and does not grow.
//   HX_MONKEY_SECONDS  how long (60)
//   HX_MONKEY_SEED     of the run to repeat
#include "places.h"
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/controlLink.h"
#include "tests/kit/plain/processes.h"
#include "tests/monkey/monkeyHand.h"
#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <algorithm>
#include <cstdio>

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

constexpr int kSeconds = 60;
constexpr int kActionsToHome = 150; // between two ways home
constexpr int kMostBacks = 60;      // a window each
constexpr int kRemembered = 60;     // actions in the report
constexpr int kScreenWidth = 800;
constexpr int kScreenHeight = 480;
constexpr int kTouchStep = 40; // between the touches of the tour
constexpr int kMostTours = 4;
constexpr int kKeys = 20; // that are programmable
constexpr int kDoors = 4;
constexpr int kLines = 4;
constexpr int kTabHeight = 40;
constexpr int kLineStates = 7;
constexpr int kNetStates = 3;
constexpr double kAnswerMs = kIsSanitized ? 1000 : 200;
constexpr double kSlowShare = 0.01;  // of actions: what the machine does besides
constexpr double kBusyShare = 0.001; // of actions: its own time tells the phone apart from the machine
constexpr int kParts = 4;            // of a run: what chance alone finds comes in the first
constexpr int kLooksAtLeast = 10 * kParts;
constexpr double kGrowthKiB = 1536; // three lists of choices that were first opened late: 100 bytes an action
constexpr double kMostPicturesKiB = // the wallpaper too, and what pages hold of backgrounds
    (16 << 10) + 4 * kScreenWidth * kScreenHeight * 4 / 1024.0;
constexpr double kGrowthWidgets = 4;
constexpr double kGrowthFiles = 1;

// What the phone holds while it shows its home screen.
struct tagSize
{
    double heapKiB = 0; // without the pictures, of which any may be read late
    double picturesKiB = 0;
    double widgets = 0;
    double files = 0;
};

// The middle one of a part's looks: one that saw a box's picture on its way out counts for nothing.
double middle(const QVector<tagSize>& looks, int part, double tagSize::*value)
{
    QVector<double> values;
    for (qsizetype i = looks.size() * part / kParts; i < looks.size() * (part + 1) / kParts; ++i)
        values.append(looks[i].*value);
    if (values.isEmpty())
        return 0;
    std::nth_element(values.begin(), values.begin() + values.size() / 2, values.end());
    return values[values.size() / 2];
}

class Monkey : public LivePhone
{
protected:
    void SetUp() override
    {
        LivePhone::SetUp();
        ASSERT_TRUE(m_link.open(root() + "/control", 5000));
        m_nSeed = qEnvironmentVariableIsSet("HX_MONKEY_SEED") ? qgetenv("HX_MONKEY_SEED").toULongLong()
                                                              : std::random_device()();
        const int seconds = qEnvironmentVariableIntValue("HX_MONKEY_SECONDS");
        m_nMs = qint64(seconds > 0 ? seconds : kSeconds) * 1000;
        printf("HX_MONKEY_SEED=%llu HX_MONKEY_SECONDS=%lld\n", static_cast<unsigned long long>(m_nSeed),
               static_cast<long long>(m_nMs / 1000));
        fflush(stdout);
    }

    QJsonObject screen() { return m_link.ask({"screen"}).toObject(); }

    // Runs one action, and holds what it took against the clock and against the phone's own time.
    void act(const MonkeyHand::Action& action)
    {
        const double before = m_busyMs;
        double took = 0;
        for (const QStringList& words : action) {
            m_last.append(words.join(' '));
            m_link.ask(words);
            took += m_link.tookMs();
        }
        m_last = m_last.mid(qMax<qsizetype>(0, m_last.size() - kRemembered));
        const double busy = screen()["busy"].toDouble();
        if (!m_link.isOpen())
            return;
        m_busyMs = busy;
        took += m_link.tookMs();
        ++m_nActions;
        m_nSlow += took > kAnswerMs * double(action.size());
        if (m_busyMs - before > kAnswerMs * double(action.size())) {
            ++m_nBusy;
            printf("busy for %.0f ms: %s\n", m_busyMs - before, qPrintable(action.last().join(' ')));
        }
        m_worstMs = qMax(m_worstMs, took);
    }

    // False with the report of a failure when "Back" alone does not lead home.
    bool goHome()
    {
        int calls = 0; // in a row
        for (int backs = 0; backs < kMostBacks && m_link.isOpen(); ++backs) {
            if (screen()["top"] == "frmDesktop" && m_link.isOpen())
                return true;
            calls = screen()["top"] == "frmCall" ? calls + 1 : 0;
            if (calls > 2) // another call has come up
                letPressesCount();
            m_link.ask({"key", "F4"});
        }
        return m_link.isOpen() && screen()["top"] == "frmDesktop";
    }

    // The phone starts anew when it is asked to, and where its language was changed: the tour does, too.
    bool goHomeUnlessGone() { return goHome() || !m_link.isOpen(); }

    // Everything once, so that all that is kept for good is there before anything is measured.
    void visitAll(const QStringList& names, const QStringList& menus)
    {
        for (const char* language : {"German", "French", "Spanish", "Chinese", "English"}) {
            m_link.ask({"set", "language", language});
            for (const QString& menu : menus)
                act({{"menu", menu}});
            ASSERT_TRUE(goHomeUnlessGone()) << report();
            for (const QString& name : names) {
                act({{"open", name}});
                ASSERT_TRUE(goHomeUnlessGone()) << qPrintable(name) << report();
            }
        }
        for (const QString& name : names)
            ASSERT_NO_FATAL_FAILURE(visitWays({{{"open", name}}}));
    }

    // What the window at the end of the way leads to by itself: lists, boxes and further pages, and what
    // these lead to, each class of windows once.
    void visitWays(const QVector<MonkeyHand::Action>& way)
    {
        go(way);
        if (!m_link.isOpen())
            return;
        for (const MonkeyHand::Action& onwards : waysOn()) {
            go(way);
            act(onwards);
            if (!m_link.isOpen())
                return;
            const QString top = screen()["top"].toString();
            if (!m_seen.contains(top)) {
                m_seen.append(top);
                ASSERT_NO_FATAL_FAILURE(visitWays(way + QVector<MonkeyHand::Action>{onwards}));
            }
            ASSERT_TRUE(goHomeUnlessGone()) << report();
        }
        ASSERT_TRUE(goHomeUnlessGone()) << report();
    }

    void go(const QVector<MonkeyHand::Action>& way)
    {
        for (const MonkeyHand::Action& action : way) {
            if (m_link.isOpen())
                act(action);
        }
    }

    QVector<MonkeyHand::Action> waysOn()
    {
        QVector<MonkeyHand::Action> ways{{{"key", "F1"}}, {{"key", "F2"}}, {{"key", "F3"}}};
        const QJsonArray windows = m_link.ask({"tree"}).toObject()["windows"].toArray();
        const QJsonArray widgets = windows.first().toObject()["widgets"].toArray();
        const QVector<QStringList> tabs = tabsOf(widgets);
        for (const QJsonValue& value : widgets) {
            const QJsonObject widget = value.toObject();
            const QString type = widget["class"].toString();
            if (!widget["visible"].toBool() || !(type.endsWith("PushButton") || type == "QComboBox"))
                continue;
            const QStringList touch = touchAt(widget["x"].toInt() + widget["w"].toInt() / 2,
                                              widget["y"].toInt() + widget["h"].toInt() / 2);
            ways.append({touch});
            // Each line has lists of its own.
            for (qsizetype tab = 0; tab < tabs.size() && type == "QComboBox"; ++tab)
                ways.append({tabs[tab], touch});
        }
        return ways;
    }

    static QStringList touchAt(int x, int y) { return {"touch", QString::number(x), QString::number(y)}; }

    // Those of the lines behind the first one.
    static QVector<QStringList> tabsOf(const QJsonArray& widgets)
    {
        QVector<QStringList> tabs;
        for (const QJsonValue& value : widgets) {
            const QJsonObject widget = value.toObject();
            if (widget["class"] != "qLinePages" || !widget["visible"].toBool())
                continue;
            const int width = widget["w"].toInt() / kLines;
            for (int line = 1; line < kLines; ++line)
                tabs.append(touchAt(widget["x"].toInt() + line * width + width / 2,
                                    widget["y"].toInt() + kTabHeight / 2));
        }
        return tabs;
    }

    // The box for the administrator's password over its menu, and the note over that box.
    void visitPassword()
    {
        act({{"menu", "setting.xml"}, {"key", "F1"}, {"touch", "719", "130"}});
        act({{"wait", "page", "dlgPassWord", "5000"}, {"type", "x"}, {"key", "Return"}});
        act({{"wait", "page", "dlgMessageBox", "5000"}});
        ASSERT_TRUE(goHomeUnlessGone()) << report();
    }

    // The pages that have no name: their menu makes them.
    void visitMade()
    {
        const struct
        {
            const char* page;
            QStringList touch;
        } made[] = {{"dlgDialPlan", touchAt(557, 120)}, {"dlgSpeedDial", touchAt(233, 300)}};
        for (const auto& icon : made) {
            if (!m_link.isOpen())
                return;
            const MonkeyHand::Action way{{"menu", "callfeature.xml"}, {"key", "F1"}, icon.touch};
            act(way);
            m_link.ask({"wait", "page", icon.page, "5000"});
            ASSERT_EQ(screen()["top"].toString(), QString(icon.page)) << report();
            ASSERT_TRUE(goHomeUnlessGone()) << report();
            ASSERT_NO_FATAL_FAILURE(visitWays({way}));
        }
    }

    // The lists that only the home screen leads to, a call, and every state of the lines and the network.
    void visitWorld()
    {
        for (int y = kTouchStep / 2; y < kScreenHeight; y += kTouchStep) {
            for (int x = kTouchStep / 2; x < kScreenWidth; x += kTouchStep) {
                act({{"touch", QString::number(x), QString::number(y)}});
                ASSERT_TRUE(goHomeUnlessGone()) << x << ',' << y << report();
            }
        }
        act({{"frame", "Directory"}});
        for (int key = 1; key <= kKeys; ++key) {
            act({{"dsskey", QString::number(key)}});
            ASSERT_TRUE(goHomeUnlessGone()) << report();
        }
        for (int door = 1; door <= kDoors; ++door) {
            act({{"open", "Door Phone" + QString::number(door)}});
            ASSERT_TRUE(goHomeUnlessGone()) << report();
        }
        act({{"ring", "4711"}});
        ASSERT_TRUE(goHomeUnlessGone()) << report();
        for (int state = 0; state < kLineStates; ++state)
            act({{"set", "line", "0", "state=" + QString::number(state), "user=4711", "server=pbx",
                  "new=1"}});
        for (int state = 0; state < kNetStates; ++state)
            act({{"set", "net", "state=" + QString::number(state)}});
    }

    // Whoever asked for it: within a moment the phone is there again.
    bool hasRestarted()
    {
        if (!m_link.open(root() + "/control", 10000))
            return false;
        const QJsonObject waited = m_link.ask({"wait", "page", "frmDesktop", "10000"}).toObject();
        m_busyMs = screen()["busy"].toDouble();
        return m_link.isOpen() && !waited.contains("error");
    }

    // From here on it must not grow any more.
    void settleDown(const QStringList& names, const QStringList& menus)
    {
        for (int tour = 0; tour == 0 || !m_link.isOpen(); ++tour) {
            ASSERT_LT(tour, kMostTours) << report();
            ASSERT_TRUE(m_link.isOpen() || hasRestarted()) << report();
            m_seen.clear();
            ASSERT_NO_FATAL_FAILURE(visitAll(names, menus));
            ASSERT_NO_FATAL_FAILURE(visitPassword());
            ASSERT_NO_FATAL_FAILURE(visitMade());
            ASSERT_NO_FATAL_FAILURE(visitWorld());
        }
        m_looks.clear();
        look();
        printf("after the tour: %.0f KiB, %.0f widgets\n", m_looks[0].heapKiB, m_looks[0].widgets);
    }

    void look()
    {
        m_link.ask({"wait", "idle", "2000"});
        const QJsonObject memory = m_link.ask({"memory"}).toObject();
        const double heap = memory["heap"].toDouble() / 1024;
        const double pictures = memory["pictures"].toDouble() / 1024;
        EXPECT_LE(pictures, kMostPicturesKiB) << report();
        const QDir files(QString("/proc/%1/fd").arg(pid()));
        const auto kinds = QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot;
        m_looks.append({heap > 0 ? heap - pictures : 0, pictures, screen()["widgets"].toDouble(),
                        double(files.entryList(kinds).size())});
    }

    void expectNoGrowth(const char* what, double tagSize::*value, double most)
    {
        const double before = middle(m_looks, 1, value);
        const double after = middle(m_looks, kParts - 1, value);
        printf("%s: %.0f, then %.0f, %.0f and %.0f at last\n", what, middle(m_looks, 0, value), before,
               middle(m_looks, 2, value), after);
        EXPECT_LE(after, before + most) << what << report();
    }

    std::string report()
    {
        QString text = QString("\nseed %1, action %2\n").arg(m_nSeed).arg(m_nActions);
        if (m_link.isOpen()) {
            for (const QJsonValue& window : m_link.ask({"tree"}).toObject()["windows"].toArray()) {
                const QJsonObject entry = window.toObject();
                text += entry["class"].toString() + " \"" + entry["title"].toString() + "\"" +
                        (entry["active"].toBool() ? " active\n" : "\n");
            }
            QDir().mkpath(HX_BUILD_DIR "/shots");
            m_link.ask({"shot", HX_BUILD_DIR "/shots/monkey.png"});
        } else {
            text += "the phone does not answer\n";
        }
        return (text + m_last.join('\n')).toStdString();
    }

    ControlLink m_link;
    QVector<tagSize> m_looks; // since the phone last started
    QStringList m_seen;       // classes of windows
    quint64 m_nSeed = 0;
    qint64 m_nMs = 0;
    QStringList m_last;
    double m_busyMs = 0;
    double m_worstMs = 0;
    int m_nActions = 0;
    int m_nSlow = 0;
    int m_nBusy = 0;
};

} // namespace

TEST(MonkeyNames, AreThoseOfMenusAndPageTable)
{
    const QStringList names = monkeyPageNames();
    for (const char* name : {"WAN", "Directory", "Date & Time", "Version Detail", "Personalize", "Weather"})
        EXPECT_TRUE(names.contains(name)) << name;
    EXPECT_GE(names.size(), 40);
    EXPECT_TRUE(monkeyMenuFiles().contains("setting.xml"));
}

TEST_F(Monkey, NeverLocksThePhone)
{
    const QStringList names = monkeyPageNames();
    const QStringList menus = monkeyMenuFiles();
    MonkeyHand hand(m_nSeed, names, menus);
    ASSERT_NO_FATAL_FAILURE(settleDown(names, menus));
    QElapsedTimer ran;
    ran.start();
    while (ran.elapsed() < m_nMs || m_looks.size() < kLooksAtLeast) {
        for (int i = 0; i < kActionsToHome && m_link.isOpen(); ++i)
            act(hand.next());
        const bool isHome = m_link.isOpen() && goHome();
        if (m_link.isOpen()) {
            ASSERT_TRUE(isHome) << report();
            look();
        } else {
            ASSERT_TRUE(hasRestarted()) << report();
            ASSERT_NO_FATAL_FAILURE(settleDown(names, menus));
        }
    }
    printf("%d actions, worst %.0f ms, %d slow, %d busy, %lld looks, %.1f MB\n", m_nActions, m_worstMs,
           m_nSlow, m_nBusy, static_cast<long long>(m_looks.size()),
           double(kit::statusKiB(pid(), "VmRSS")) / 1024);
    EXPECT_LE(m_nSlow, m_nActions * kSlowShare) << report();
    EXPECT_LE(m_nBusy, m_nActions * kBusyShare) << report();
    printf("pictures in KiB: %.0f, then %.0f at last\n", middle(m_looks, 1, &tagSize::picturesKiB),
           middle(m_looks, kParts - 1, &tagSize::picturesKiB));
    // A sanitizer's heap answers 0.
    expectNoGrowth("heap in KiB", &tagSize::heapKiB, kGrowthKiB);
    expectNoGrowth("widgets", &tagSize::widgets, kGrowthWidgets);
    expectNoGrowth("files", &tagSize::files, kGrowthFiles);
}
