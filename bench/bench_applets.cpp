// What the pages "Weather" and "Stock" and the card of the home screen cost: how soon an answer of a feed is
// on the screen, whether a day of questions leaves anything behind, and what the card takes while nobody asks
// anything.
#include "applets/appletPages.h"
#include "bench/phoneBench.h"
#include "bench/signPhone.h"
#include "bench/threadWatch.h"
#include "bench/usedPhone.h"
#include "frame/moduleEntries.h"
#include "host/desktop/boot.h"
#include "host/look/look.h"
#include "host/services/system/netWorld.h"
#include "host/services/transfers/taskBook.h"
#include "support/file/deviceRoot.h"
#include "support/host/desktop.h"
#include "support/host/http.h"
#include "support/host/net.h"
#include "support/host/picture.h"
#include "support/host/screen.h"
#include "tests/kit/plain/deviceFolder.h"
#include "tests/kit/plain/signServer.h"
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QThread>
#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <pthread.h>
#include <utility>
#include <vector>

namespace {

constexpr int kAnswers = 100;
constexpr double kFrameMs = 1000.0 / 60;
constexpr int kAnswerMs = 5000;
constexpr int kTurnMs = 30;
constexpr int kQuestions = 24 * 60; // of a day, one a minute, at each of the pages
constexpr int kFirstQuestions = 100;
constexpr int kAtOnce = 20;      // before somebody leaves the page
constexpr int kQuietSeconds = 3; // then the phone has given back what its windows took
constexpr double kMostGrowth = 2;
constexpr int kCardSeconds = 300;
constexpr int kCardComesSeconds = 20; // after the boot, with the looks for its picture
constexpr int kRefreshes = 5;
constexpr int kRefreshSeconds = 15; // a refresh and the looks for its picture
constexpr int kHalfHourSeconds = 30 * 60;
constexpr double kMostOfACore = 0.05;

const char* const kCities[] = {"London",     "Paris",      "Berlin",     "Madrid",    "Lisbon",
                               "Porto",      "Barcelona",  "Valencia",   "Seville",   "Bilbao",
                               "Dublin",     "Cork",       "Belfast",    "Edinburgh", "Glasgow",
                               "Manchester", "Birmingham", "Cardiff",    "Amsterdam", "Rotterdam",
                               "Brussels",   "Antwerp",    "Luxembourg", "New York",  "Rome"};
const QStringList kCodes = {"HRBR", "NRV", "TIDE", "LARK", "QUAY", "ALDR", "AMBR", "ANVL", "ARCA", "BEAC"};

QString cityOf(int question)
{
    return kCities[size_t(question) % std::size(kCities)];
}

qint64 nsOf(clockid_t clock)
{
    timespec now = {};
    clock_gettime(clock, &now);
    return qint64(now.tv_sec) * 1000000000 + now.tv_nsec;
}

// ---- From the last byte to the frame

// A moment by the clock and by the processor time of the user-interface thread; 0 while it has not come.
struct tagMoment
{
    std::atomic<qint64> atNs{0};
    std::atomic<qint64> workedNs{0};
};

clockid_t g_userInterface;
tagMoment g_answerCame;
tagMoment g_pictureCame; // the last one so far

void note(tagMoment& moment)
{
    moment.workedNs = nsOf(g_userInterface);
    moment.atNs = nsOf(CLOCK_MONOTONIC);
}

} // namespace

// All bytes are there, and nothing else has happened yet. On the network thread.
extern "C" void __wrap__ZN10HttpAction12httpFinishedEP13QNetworkReply(HttpAction* action,
                                                                      QNetworkReply* reply);

void __wrap__ZN10HttpAction12httpFinishedEP13QNetworkReply(HttpAction* action, QNetworkReply*)
{
    note(action->bGivesWay ? g_pictureCame : g_answerCame);
}

namespace {

const tagCost kNever = {HUGE_VAL, HUGE_VAL};

tagCost between(const tagMoment& first, const tagMoment& last)
{
    return {double(last.atNs - first.atNs) / 1e6, double(last.workedNs - first.workedNs) / 1e6};
}

void addDelays(RatioTable& table, const QString& what, const std::vector<tagCost>& delays)
{
    table.add(what + ", 99th percentile", percentile99(delays, &tagCost::waited), kFrameMs, "ms");
    table.add("processor time of it, 99th percentile", percentile99(delays, &tagCost::worked), kFrameMs,
              "ms");
}

bool isAllDone()
{
    return taskPendingCount() == 0 && picturePending() == 0;
}

// The open page, and the frames at whose ends an answer and its pictures are on the screen.
class AnsweredPage
{
public:
    AnsweredPage(QWidget* page, const char* label, const char* nothing)
        : m_pLabel(page->findChild<QLabel*>(label)), m_strNothing(nothing),
          m_frames([this](const QImage&) { look(); })
    {
        page->installEventFilter(&m_frames);
    }
    // Asks, and waits until all of it is there. False when it does not come.
    bool await(const std::function<void()>& ask)
    {
        for (tagMoment* moment : {&g_answerCame, &g_pictureCame, &m_shown, &m_allShown})
            moment->atNs = 0;
        ask();
        const bool isShown = runUntil([this] { return m_shown.atNs != 0 && isAllDone(); }, kAnswerMs);
        runUntil([] { return false; }, kTurnMs); // the last frame
        return isShown;
    }
    tagCost delay() const { return between(g_answerCame, m_shown); }
    // None where all of them stood there when the last one came.
    tagCost pictureDelay() const
    {
        return m_allShown.atNs != 0 ? between(g_pictureCame, m_allShown) : tagCost{0, 0};
    }

private:
    void look()
    {
        if (m_shown.atNs == 0 && g_answerCame.atNs != 0 && m_pLabel->text() != m_strNothing)
            note(m_shown);
        if (m_allShown.atNs == 0 && m_shown.atNs != 0 && g_pictureCame.atNs != 0 && isAllDone())
            note(m_allShown);
    }

    QLabel* m_pLabel;
    QString m_strNothing;
    FrameWatch m_frames;
    tagMoment m_shown;
    tagMoment m_allShown;
};

// Null when another window is on top of it.
QWidget* openPage(const char* name, const char* className)
{
    settingOpenPage(chString(name), nullptr);
    runUntil([] { return false; }, kTurnMs);
    runUntil(isAllDone, kAnswerMs);
    QWidget* const top = QWSServer::clientWindows().value(0);
    return top && top->inherits(className) ? top : nullptr;
}

bool benchWeatherAnswers(RatioTable& table)
{
    QWidget* const page = openPage("Weather", "dlgWeather");
    if (!page)
        return false;
    AnsweredPage answered(page, "labTemperature3", "");
    std::vector<tagCost> texts, pictures;
    for (int i = 0; i < kAnswers; ++i) {
        page->findChild<QLineEdit*>("editSearch")->setText(cityOf(i));
        const bool isThere = answered.await([page] { page->findChild<QPushButton*>("btnSearch")->click(); });
        texts.push_back(isThere ? answered.delay() : kNever);
        pictures.push_back(isThere ? answered.pictureDelay() : kNever);
    }
    page->close();
    addDelays(table, QString("Weather: %1 answers, last byte to painted").arg(kAnswers), texts);
    addDelays(table, "the last of their pictures, last byte to painted", pictures);
    return true;
}

// The same quote again changes nothing: each update is that of another stock.
bool benchStockAnswers(RatioTable& table)
{
    QWidget* const page = openPage("Stock", "dlgStock");
    if (!page)
        return false;
    AnsweredPage answered(page, "labStockName", "N/A");
    auto* const list = page->findChild<QComboBox*>("cmbStockList");
    std::vector<tagCost> quotes;
    for (int i = 0; i < kAnswers; ++i) {
        const int next = (list->currentIndex() + 1) % list->count();
        const bool isThere = answered.await([list, next] { list->setCurrentIndex(next); });
        quotes.push_back(isThere ? answered.delay() : kNever);
    }
    page->close();
    addDelays(table, QString("Stock: %1 answers, last byte to painted").arg(kAnswers), quotes);
    return true;
}

bool benchAnswers(RatioTable& table)
{
    appletPages();
    hostSetModule(settingEntries());
    netWorld().state = NET_UP;
    frmDesktop::GetInstance()->m_pLoading = new frmLoading;
    frmDesktop::GetInstance()->m_pLoading->show();
    QCoreApplication::processEvents();
    frmDesktop::GetInstance()->FinishLoading();
    return benchWeatherAnswers(table) && benchStockAnswers(table);
}

// ---- A day

struct tagHeld
{
    double privateKiB = 0;
    qsizetype handles = 0;
    qsizetype files = 0;
};

double privateKiB(qint64 pid)
{
    QFile maps(QString("/proc/%1/smaps_rollup").arg(pid));
    if (!maps.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : maps.readAll().split('\n')) {
        if (line.startsWith("Private_Dirty:"))
            return line.simplified().split(' ').value(1).toDouble();
    }
    return 0;
}

// The phone's own, and what it would leave in this machine's "/tmp" if it took that for its own.
qsizetype filesOf(const QString& root)
{
    qsizetype count = 0;
    for (QDirIterator files(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                            QDirIterator::Subdirectories);
         files.hasNext(); files.next())
        ++count;
    return count + QDir("/tmp").entryList({"Weather-*", "*.gif", "*-download.xml*"}, QDir::Files).size();
}

tagHeld heldBy(const UsedPhone& phone)
{
    QThread::sleep(kQuietSeconds);
    const QDir handles(QString("/proc/%1/fd").arg(phone.pid()));
    return {privateKiB(phone.pid()),
            handles.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size(),
            filesOf(phone.root())};
}

// The page opens at the first stock: from there to the last and one back; every other time the same again.
UsedPhone::REFRESH refreshOf(int question)
{
    const int step = question % kAtOnce / 2;
    if (question % 2)
        return UsedPhone::REFRESH_SAME;
    return step % kCodes.size() < kCodes.size() - 1 ? UsedPhone::REFRESH_NEXT : UsedPhone::REFRESH_PREVIOUS;
}

bool tellMissing(UsedPhone& phone, const char* page, int question)
{
    printf("question %d at \"%s\" has no answer, on top is \"%s\"\n", question, page,
           qPrintable(phone.top()));
    return false;
}

// The questions of that page from the first number up to the last; false at one that has no answer.
bool useWeather(UsedPhone& phone, int first, int last)
{
    if (!phone.open("Weather", "dlgWeather"))
        return tellMissing(phone, "Weather", first);
    for (int i = first; i < last; ++i) {
        if (!phone.search(cityOf(i)))
            return tellMissing(phone, "Weather", i);
    }
    return phone.goHome();
}

bool useStock(UsedPhone& phone, int first, int last)
{
    if (!phone.open("Stock", "dlgStock"))
        return tellMissing(phone, "Stock", first);
    for (int i = first; i < last; ++i) {
        if (!phone.refresh(refreshOf(i)))
            return tellMissing(phone, "Stock", i);
    }
    return phone.goHome();
}

// What it holds then.
bool useUntil(UsedPhone& phone, int& asked, int last, tagHeld& held)
{
    while (asked < last) {
        const int next = std::min(asked + kAtOnce, last);
        if (!useWeather(phone, asked, next) || !useStock(phone, asked, next))
            return false;
        asked = next;
    }
    held = heldBy(phone);
    printf("after %4d questions at each page: %.0f KiB, %d handles, %d files\n", asked, held.privateKiB,
           int(held.handles), int(held.files));
    return true;
}

bool benchDay(RatioTable& table, const SignServer& server)
{
    UsedPhone phone(server, kCodes);
    const std::pair<int, int> before(server.requestsFor("weather="), server.requestsFor("stock="));
    tagHeld first, last;
    int asked = 0;
    if (!phone.start() || !useUntil(phone, asked, kFirstQuestions, first))
        return false;
    for (int hour = 4; hour <= 24; hour += 4) {
        if (!useUntil(phone, asked, kQuestions * hour / 24, last))
            return false;
    }
    // Each page asks once more when it opens.
    const int opened = kQuestions / kAtOnce;
    const int searches = server.requestsFor("weather=") - before.first;
    const int quotes = server.requestsFor("stock=") - before.second;
    printf("%d searches and %d quotes were asked for, %d of each by opening a page\n", searches, quotes,
           opened);
    if (std::min(searches, quotes) < kQuestions + opened)
        return false;
    table.add(QString("private memory grown over %1 searches and quotes").arg(kQuestions),
              100 * (last.privateKiB / first.privateKiB - 1), kMostGrowth, "%");
    table.add("handles grown", double(last.handles - first.handles), 0, "");
    table.add("files grown", double(last.files - first.files), 0, "");
    return true;
}

// ---- The card

// Up again with that card, or without one. No screen saver ever covers it: what is not in sight asks for
// nothing.
bool startWithCard(UsedPhone& phone, bool hasCard)
{
    if (!phone.start() || !phone.setKey("Weather", "bDesktop", hasCard ? "1" : "0") ||
        !phone.setKey("ScreenSaver", "nTimeout", "0"))
        return false;
    phone.end();
    return phone.start();
}

bool isCardShown(UsedPhone& phone)
{
    const QJsonObject card = phone.widget("weatherCard");
    return card["visible"].toBool() && !card["text"].toString().isEmpty();
}

// Processor time that one refresh takes beyond what goes by anyway: the middle one of some. What changes the
// unit has a page that follows it, and its file to be written, so it is more than the half hour's own.
double msOfRefresh(UsedPhone& phone, double idleMs)
{
    std::vector<double> costs;
    for (int i = 0; i < kRefreshes; ++i) {
        const double before = processorMs(phone.pid());
        phone.setKey("Weather", "nUnit", i % 2 ? "0" : "1");
        QThread::sleep(kRefreshSeconds);
        costs.push_back(processorMs(phone.pid()) - before - idleMs * kRefreshSeconds);
    }
    std::sort(costs.begin(), costs.end());
    return costs[costs.size() / 2];
}

// Both phones stand beside each other, so that whatever else the machine does is the same to them.
bool benchCard(RatioTable& table, const SignServer& server)
{
    UsedPhone with(server, kCodes), without(server, kCodes);
    if (!startWithCard(with, true) || !startWithCard(without, false))
        return false;
    QThread::sleep(kCardComesSeconds);
    if (!isCardShown(with) || isCardShown(without))
        return false;
    QThread::sleep(1); // what was asked for that
    const double withBefore = processorMs(with.pid()), withoutBefore = processorMs(without.pid());
    QThread::sleep(kCardSeconds);
    const double withMs = (processorMs(with.pid()) - withBefore) / kCardSeconds;
    const double withoutMs = (processorMs(without.pid()) - withoutBefore) / kCardSeconds;
    const int asked = server.requestsFor("weather=");
    const double refreshMs = msOfRefresh(with, withMs);
    if (!isCardShown(with) || server.requestsFor("weather=") != asked + kRefreshes)
        return false;
    // A millisecond of each second is a tenth of a percent.
    const double standing = (withMs - withoutMs) / 10, refreshing = refreshMs / kHalfHourSeconds / 10;
    printf("idle home screen over %d s: %.4f %% of a core with the card, %.4f %% without; a refresh takes "
           "%.1f ms, "
           "%.4f %% in half an hour\n",
           kCardSeconds, withMs / 10, withoutMs / 10, refreshMs, refreshing);
    table.add("the card, share of one core, with its refreshes", standing + refreshing, kMostOfACore, "%");
    return true;
}

// All three where none is named: "answers", "day", "card".
bool isWanted(const char* part)
{
    const QStringList named = QCoreApplication::arguments().mid(1);
    return named.isEmpty() || named.contains(part);
}

// One that cannot be measured is over its limit.
void require(RatioTable& table, const QString& what, bool isMeasured)
{
    if (!isMeasured)
        table.add(what + " did not come to its end", HUGE_VAL, 0, "");
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    setvbuf(stdout, nullptr, _IOLBF, 0); // a day is long
    // Here and in the phones that are started, each request is told there.
    if (!qEnvironmentVariableIsSet("HX_TRACE") && !freopen("/dev/null", "w", stderr))
        return 1;
    qputenv("QT_NO_GLIB", "1"); // the event loop of a phone without a desktop
    QTemporaryDir root;
    kit::fillDeviceFolder(root.path(), kit::Firmware::HardLinks);
    deviceSetRoot(root.path().toUtf8().constData());
    hostPrepareFonts();
    QApplication application(argc, argv);
    hostApplyLook(application);
    pthread_getcpuclockid(pthread_self(), &g_userInterface);
    SignServer server;
    server.copyFeeds();
    if (!server.start()) {
        printf("the server of the feeds did not start\n");
        return 1;
    }
    putFeeds(root.path(), server, kCodes);
    QDir(root.path()).mkpath("tmp");
    RatioTable table;
    if (isWanted("answers"))
        require(table, "the answers", benchAnswers(table));
    if (isWanted("day"))
        require(table, "the day", benchDay(table, server));
    if (isWanted("card"))
        require(table, "the card", benchCard(table, server));
    return table.print() ? 0 : 1;
}
