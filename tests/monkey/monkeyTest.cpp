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
constexpr double kAnswerMs = kIsSanitized ? 1000 : 200;
constexpr double kSlowShare = 0.01;     // of actions: what the machine does besides
constexpr double kBusyShare = 0.001;    // of actions: its own time tells the phone apart from the machine
constexpr double kGrowthMegabytes = 40; // pages that only chance finds, fonts and pictures up to their bounds
constexpr int kGrowthWidgets = 120;
constexpr int kGrowthFiles = 6;

struct tagSize
{
    double megabytes = 0;
    int widgets = 0;
    int files = 0;
};

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
        for (int backs = 0; backs < kMostBacks && m_link.isOpen(); ++backs) {
            if (screen()["top"] == "frmDesktop" && m_link.isOpen())
                return true;
            m_link.ask({"key", "F4"});
        }
        return m_link.isOpen() && screen()["top"] == "frmDesktop";
    }

    // Everything once, so that all that is kept for good is there before anything is measured.
    void visitAll(const QStringList& names, const QStringList& menus)
    {
        for (const char* language : {"German", "French", "Spanish", "Chinese", "English"}) {
            m_link.ask({"set", "language", language});
            for (const QString& menu : menus)
                act({{"menu", menu}});
            ASSERT_TRUE(goHome()) << report();
            for (const QString& name : names) {
                act({{"open", name}});
                ASSERT_TRUE(goHome()) << qPrintable(name) << report();
            }
        }
        for (const QString& name : names)
            ASSERT_NO_FATAL_FAILURE(visitButtons(name));
    }

    // What a page opens by itself: further pages, and lists.
    void visitButtons(const QString& name)
    {
        act({{"open", name}});
        const QJsonArray windows = m_link.ask({"tree"}).toObject()["windows"].toArray();
        for (const QJsonValue& value : windows.first().toObject()["widgets"].toArray()) {
            const QJsonObject widget = value.toObject();
            const QString type = widget["class"].toString();
            if (!widget["visible"].toBool() || !(type.endsWith("PushButton") || type == "QComboBox"))
                continue;
            act({{"open", name}});
            act({{"touch", QString::number(widget["x"].toInt() + widget["w"].toInt() / 2),
                  QString::number(widget["y"].toInt() + widget["h"].toInt() / 2)}});
            ASSERT_TRUE(goHome()) << qPrintable(name) << report();
        }
        ASSERT_TRUE(goHome()) << qPrintable(name) << report();
    }

    // After a reset to the factory's settings the phone has started anew.
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
        ASSERT_NO_FATAL_FAILURE(visitAll(names, menus));
        m_first = size();
    }

    tagSize size()
    {
        m_link.ask({"wait", "idle", "2000"});
        const double megabytes = double(kit::statusKiB(pid(), "VmRSS")) / 1024;
        const QDir files(QString("/proc/%1/fd").arg(pid()));
        return {megabytes, screen()["widgets"].toInt(),
                int(files.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size())};
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
    tagSize m_first;
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
    for (const char* name : {"WAN", "Directory", "Date & Time", "Version Detail", "Reboot", "Weather"})
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
    while (ran.elapsed() < m_nMs) {
        for (int i = 0; i < kActionsToHome && m_link.isOpen(); ++i)
            act(hand.next());
        const bool isHome = m_link.isOpen() && goHome();
        if (m_link.isOpen()) {
            ASSERT_TRUE(isHome) << report();
        } else {
            ASSERT_TRUE(hasRestarted()) << report();
            ASSERT_NO_FATAL_FAILURE(settleDown(names, menus));
        }
    }
    const tagSize last = size();
    printf("%d actions, worst %.0f ms, %d slow, %d busy; %.1f to %.1f MB, %d to %d widgets, %d to %d files\n",
           m_nActions, m_worstMs, m_nSlow, m_nBusy, m_first.megabytes, last.megabytes, m_first.widgets,
           last.widgets, m_first.files, last.files);
    EXPECT_LE(m_nSlow, m_nActions * kSlowShare) << report();
    EXPECT_LE(m_nBusy, m_nActions * kBusyShare) << report();
    EXPECT_LE(last.widgets, m_first.widgets + kGrowthWidgets) << report();
    EXPECT_LE(last.files, m_first.files + kGrowthFiles) << report();
    // What is freed stays with the sanitizer.
    if (!kIsSanitized) {
        EXPECT_LE(last.megabytes, m_first.megabytes + kGrowthMegabytes) << report();
    }
}
