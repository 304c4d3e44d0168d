// What somebody waits for a call, and whether the phone loses anything while much happens: the time until a
// call rings and until it talks on the screen, dials through the dial plan, changes of the keys while their
// lamps change, and thousands of calls on the running phone.
//   bench_calls [screen] [plan] [keys] [many]   these parts alone
//   HX_CALLS_SEED                               of the run to repeat
#include "bench/callPhone.h"
#include "bench/callScreen.h"
#include "bench/heldThings.h"
#include "bench/keyReader.h"
#include "bench/manyCalls.h"
#include "bench/phoneBench.h"
#include "bench/threadWatch.h"
#include "host/desktop/dssKeyBoard.h"
#include "host/desktop/dssKeyStrip.h"
#include "host/desktop/frmDial.h"
#include "host/services/phone/phoneService.h"
#include "settings/call/dlgDssKeySetting.h"
#include "support/file/atomicSave.h"
#include "support/host/desktop.h"
#include "support/host/message.h"
#include "support/host/screen.h"
#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fcntl.h>
#include <random>
#include <unistd.h>

namespace {

constexpr int kCalls = 200;
constexpr int kDials = 1000;
constexpr int kRules = 20;
constexpr int kRounds = 5;
constexpr int kDialsOfAPlan = 10; // until the plan is another one
constexpr int kChanges = 1000;
constexpr int kLampMs = 100;
constexpr int kManyCalls = 5000;
constexpr int kFirstCalls = 500;
constexpr int kSpreadCalls = 2000; // until what is in use lies as scattered as it gets
constexpr double kFrameMs = 1000.0 / 60;
constexpr double kTurnMs = 16;
constexpr double kMostGrowth = 1; // percent
constexpr int kRestMs = 50;
constexpr int kSaveKey = 0;
const char* const kPlan = "/rundata/data/dialplan.xml";

// What is long for the phone's own sake is so in every round; what the machine does besides is not.
class Rounds
{
public:
    void add(const TurnWatch& turns)
    {
        m_best.waited = std::min(m_best.waited, turns.longest().waited);
        m_best.worked = std::min(m_best.worked, turns.longest().worked);
    }
    void addTo(RatioTable& table, const QString& what) const
    {
        table.add(QString("%1: longest turn, best of %2 rounds").arg(what).arg(kRounds), m_best.waited,
                  kTurnMs, "ms");
        table.add("processor time of the turn that works longest", m_best.worked, kTurnMs, "ms");
    }

private:
    tagCost m_best{HUGE_VAL, HUGE_VAL};
};

// The phone's log tells of each key that is read.
class LogInFile
{
public:
    explicit LogInFile(const QString& file) : m_nBefore(dup(STDERR_FILENO))
    {
        const int log = open(file.toUtf8().constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
        dup2(log, STDERR_FILENO);
        close(log);
    }
    ~LogInFile()
    {
        dup2(m_nBefore, STDERR_FILENO);
        close(m_nBefore);
    }
    LogInFile(const LogInFile&) = delete;
    LogInFile& operator=(const LogInFile&) = delete;

private:
    int m_nBefore;
};

// ---- The call screen

void addCosts(RatioTable& table, const QString& what, const std::vector<tagCost>& costs)
{
    table.add(QString("%1, 99th percentile of %2").arg(what).arg(costs.size()),
              percentile99(costs, &tagCost::waited), kFrameMs, "ms");
    table.add("processor time of it", percentile99(costs, &tagCost::worked), kFrameMs, "ms");
}

void benchScreen(RatioTable& table, CallPhone& phone, TurnWatch& turns)
{
    const CallScreen screen;
    std::vector<tagCost> rings, talks;
    int wrong = 0;
    for (int i = 0; i < kCalls; ++i) {
        tagCaller caller;
        caller.strNumber = QString::number(4700 + i);
        caller.strName = QString("Caller %1").arg(i);
        caller.nLine = i % PHONE_ACCOUNT_COUNT;
        rings.push_back(untilPainted(
            screen, turns, [&] { phone.lines().ringFrom(caller); },
            [&] { return screen.rings(caller.strName); }));
        wrong += !screen.hasAnswerKey();
        turns.turnFor(kRestMs);
        talks.push_back(untilPainted(
            screen, turns, [&] { touchAt(screen.answerKey()); }, [&] { return screen.talks(); }));
        wrong += screen.hasAnswerKey() || !phone.lines().isInTalk();
        turns.turnFor(kRestMs);
        endCall(screen, turns);
    }
    addCosts(table, "incoming call to ringing on the screen", rings);
    addCosts(table, "touch on the answer key to talking", talks);
    table.add("pictures of these that do not show it", wrong, 0, "");
}

// ---- The dial plan

using Plan = QList<QPair<QString, QString>>; // prefix, replacement

class PlanDraw
{
public:
    explicit PlanDraw(unsigned seed) : m_random(seed) {}
    QString digits(int most) { return digits(1, most); }
    QString digits(int fewest, int most)
    {
        QString all;
        for (int count = fewest + int(m_random() % unsigned(most - fewest + 1)); count > 0; --count)
            all += QChar(char('0' + m_random() % 10));
        return all;
    }
    // Prefixes of prefixes, too.
    Plan plan()
    {
        Plan rules;
        while (rules.size() < kRules) {
            const bool isLonger = !rules.isEmpty() && m_random() % 2;
            const QString prefix =
                isLonger ? rules[qsizetype(m_random() % size_t(rules.size()))].first + digits(1) : digits(2);
            const auto isSame = [&](const auto& rule) { return rule.first == prefix; };
            if (std::none_of(rules.begin(), rules.end(), isSame))
                rules.append({prefix, m_random() % 4 ? digits(4) : "+" + digits(3)});
        }
        return rules;
    }
    // Most begin with a prefix of the plan.
    QString number(const Plan& plan)
    {
        const QString prefix = plan[qsizetype(m_random() % size_t(plan.size()))].first;
        return (m_random() % 8 ? prefix : QString()) + digits(3, 8);
    }

private:
    std::mt19937 m_random;
};

QString rewritten(const Plan& plan, const QString& number)
{
    QPair<QString, QString> longest;
    for (const auto& rule : plan) {
        if (number.startsWith(rule.first) && rule.first.size() > longest.first.size())
            longest = rule;
    }
    return longest.second + number.mid(longest.first.size());
}

// As the page stores it, and tells it.
void storePlan(const Plan& plan)
{
    QByteArray rules;
    for (const auto& rule : plan)
        rules += "<Data Prefix=\"" + rule.first.toUtf8() + "\" Replace=\"" + rule.second.toUtf8() + "\"/>\n";
    const QByteArray text = "<DialRule>\n" + rules + "</DialRule>\n";
    if (!fileSaveAtomic(kPlan, text.constData(), size_t(text.size())))
        qFatal("the dial plan cannot be stored");
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_DIAL_PLAN, 0);
}

// Types it on the dial screen, calls, and ends the call.
void dialByFinger(const QString& number, TurnWatch& turns)
{
    inNextTurn([number] { dialScreenOpen(number, -1); });
    turns.turnUntil([] { return topWindow() && topWindow()->inherits("frmDial"); });
    touchAt(middleOf(topWindow()->findChild<QWidget*>("btnCall")));
    turns.turnUntil([] { return topWindow()->inherits("frmCall"); });
    for (int touch = 0; touch < 2; ++touch) {
        touchSoftKey(CallScreen::END_KEY);
        turns.turnUntil([] { return phoneService::instance().calls().isEmpty(); });
    }
    turns.turnUntil([] { return topWindow() == frmDesktop::GetInstance(); });
}

// How many have not gone out as the rules say.
int lostDials(CallPhone& phone, PlanDraw& draw, TurnWatch& turns)
{
    Plan plan;
    int lost = 0;
    for (int i = 0; i < kDials; ++i) {
        if (i % kDialsOfAPlan == 0) {
            plan = draw.plan();
            storePlan(plan);
        }
        const QString number = draw.number(plan);
        phone.lines().dialled.clear();
        dialByFinger(number, turns);
        lost += phone.lines().dialled != QStringList{rewritten(plan, number)};
    }
    return lost;
}

void benchPlan(RatioTable& table, CallPhone& phone, unsigned seed)
{
    PlanDraw draw(seed);
    Rounds rounds;
    int lost = 0;
    for (int round = 0; round < kRounds; ++round) {
        TurnWatch turns;
        lost += lostDials(phone, draw, turns);
        rounds.add(turns);
    }
    rounds.addTo(table, QString("%1 dials, %2 rules").arg(kDials).arg(kRules));
    table.add("dials that did not go out as the rules say", lost, 0, "");
}

// ---- The keys

LAMP_STATE lampAt(int beat, int key)
{
    const LAMP_STATE states[] = {LAMP_RINGING, LAMP_BUSY, LAMP_IDLE};
    return states[(beat + key) % 3];
}

// Of the keys, how many are other than after the change, or show another lamp than after the beat.
int differences(int change, int beat)
{
    auto* strip = frmDesktop::GetInstance()->findChild<dssKeyStrip*>();
    int wrong = KeyReader::changeOfFile() != change;
    for (int key = 0; key < DSS_KEYS_MAX; ++key) {
        const tagDssKey known = dssKeys().value(key);
        const tagDssKeyLook look = DssKeyBoard::instance().look(key);
        const int column = key % dssKeyStrip::KEYS;
        const QString label = changedLabel(key, change);
        wrong += known.eType != tagDssKey::BLF || known.strLabel != label ||
                 known.strNumber != changedValue(key, change) || known.strWatched != watchedExtension(key);
        wrong += look.strLabel != label || !look.bLamp || look.eLamp != lampAt(beat, key);
        wrong += strip->page() != key / dssKeyStrip::KEYS || strip->button(column)->text() != label;
        if (column == dssKeyStrip::KEYS - 1)
            strip->turn();
    }
    return wrong;
}

// By finger, in the key's editor. False when the board does not take it over.
bool changeKey(int change, TurnWatch& turns)
{
    const int key = (change - 1) % DSS_KEYS_MAX;
    dlgDssKeySetting* editor = GetDssKeySetting();
    inNextTurn([key] { DssKeyBoard::instance().edit(key); });
    turns.turnUntil([editor] { return topWindow() == editor; });
    inNextTurn([=] {
        editor->findChild<QLineEdit*>("editLabel")->setText(changedLabel(key, change));
        editor->findChild<QLineEdit*>("editValue")->setText(changedValue(key, change));
        touchSoftKey(kSaveKey);
    });
    return turns.turnUntil([=] {
        return topWindow() == frmDesktop::GetInstance() &&
               DssKeyBoard::instance().look(key).strLabel == changedLabel(key, change);
    });
}

// All lamps change ten times a second.
class Lamps
{
public:
    explicit Lamps(simulatedLamps& extensions) : m_extensions(extensions)
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { beat(); });
        m_timer.start(kLampMs);
    }
    void stop() { m_timer.stop(); }
    int beats() const { return m_nBeat; }
    // Of all changes, how many their keys have not shown.
    int dark() const { return m_nDark; }

private:
    void beat()
    {
        ++m_nBeat;
        for (int key = 0; key < DSS_KEYS_MAX; ++key)
            m_extensions.set(watchedExtension(key), lampAt(m_nBeat, key));
        for (int key = 0; key < DSS_KEYS_MAX; ++key)
            m_nDark += DssKeyBoard::instance().look(key).eLamp != lampAt(m_nBeat, key);
    }

    simulatedLamps& m_extensions;
    QTimer m_timer;
    int m_nBeat = 0;
    int m_nDark = 0;
};

void benchKeys(RatioTable& table, CallPhone& phone)
{
    const LogInFile log(phone.root() + "/log");
    KeyReader reader;
    Lamps lamps(phone.lines().extensions());
    Rounds rounds;
    int unseen = 0, change = 0;
    for (int round = 0; round < kRounds; ++round) {
        TurnWatch turns;
        for (int i = 0; i < kChanges; ++i) {
            ++change;
            const bool isTaken = changeKey(change, turns);
            unseen += !isTaken || !turns.turnUntil([&] { return reader.seen() == change; });
        }
        rounds.add(turns);
    }
    lamps.stop();
    TurnWatch().turnFor(kRestMs);
    printf("%d changes of keys, %d beats of all lamps, %d reads of the file\n", change, lamps.beats(),
           reader.reads());
    rounds.addTo(table, QString("%1 changes of keys").arg(kChanges));
    table.add("changes that a reader has not seen whole", unseen + reader.broken(), 0, "");
    table.add("changes of lamps that a key has not shown", lamps.dark(), 0, "");
    table.add("keys that file, strip or manager has otherwise", differences(change, lamps.beats()), 0, "");
}

// ---- Many calls

void benchMany(RatioTable& table, unsigned seed)
{
    ManyCalls calls(seed);
    if (!calls.start())
        qFatal("the phone did not start");
    calls.play(kFirstCalls);
    const tagHeld first = calls.look();
    const int files = calls.files();
    calls.play(kSpreadCalls - kFirstCalls);
    const tagHeld spread = calls.look();
    calls.play(kManyCalls - kSpreadCalls);
    const tagHeld last = calls.look();
    calls.printActs();
    table.add(QString("%1 calls: memory in use grown since %2").arg(kManyCalls).arg(kFirstCalls),
              grownBy(last.usedKiB, first.usedKiB), kMostGrowth, "%");
    table.add(QString("private memory grown since %1").arg(kSpreadCalls),
              grownBy(last.dirtyKiB, spread.dirtyKiB), kMostGrowth, "%");
    table.add("handles grown", last.handles - first.handles, 0, "");
    table.add("files below its root grown", calls.files() - files, 0, "");
    table.add("acts that have done something else", calls.wrongs(), 0, "");
}

void benchHere(RatioTable& table, int& argc, char** argv, const QStringList& parts, unsigned seed)
{
    CallPhone phone(argc, argv);
    KeyReader::putFirst();
    TurnWatch turns;
    if (!phone.boot(turns))
        qFatal("the phone did not start");
    turns.turnFor(1000);
    if (parts.contains("screen"))
        benchScreen(table, phone, turns);
    if (parts.contains("plan"))
        benchPlan(table, phone, seed);
    if (parts.contains("keys"))
        benchKeys(table, phone);
}

} // namespace

int main(int argc, char** argv)
{
    const QStringList parts = benchParts(argc, argv, {"screen", "plan", "keys", "many"});
    const unsigned seed = benchSeed();
    RatioTable table;
    if (parts != QStringList{"many"})
        benchHere(table, argc, argv, parts, seed);
    if (parts.contains("many"))
        benchMany(table, seed);
    return table.print() ? 0 : 1;
}
