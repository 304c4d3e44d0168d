// A signage update of many media files against what a shell would do: curl fetches them, md5sum proves them.
// Both ask the same demonstration server. The time of the phone runs until all files are verified and in use
// and their layout shows. Then the same with a text that runs over the screen: nobody may see it falter.
#include "bench/phoneBench.h"
#include "bench/signPhone.h"
#include "bench/threadWatch.h"
#include "host/services/transfers/httpService.h"
#include "signage/nDeckDisplay.h"
#include "signage/nDeckFileManager.h"
#include "signage/nDeckFolder.h"
#include "signage/nDeckFrame.h"
#include "signage/nDeckPicture.h"
#include "support/host/webview.h"
#include "tests/kit/plain/deviceFolder.h"
#include "tests/kit/plain/processes.h"
#include "tests/kit/plain/signServer.h"
#include "tests/kit/plain/signTexts.h"
#include <QApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStorageInfo>
#include <QThread>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <vector>

using namespace kit;

namespace {

constexpr int kFileSize = 64 << 10;
constexpr int kRounds = 10; // a neighbour on the machine disturbs some of them
constexpr int kLookMs = 1;
constexpr qint64 kMemoryBytes = 1 << 30;
constexpr int kRestMs = 3000; // between two looks of the server at its folder
constexpr int kChecksMs = 300000;
constexpr int kEager = 50; // connections that curl opens when nobody tells it
constexpr int kFilesToReach = 1000;
constexpr int kFilesWithText = 1000;
constexpr int kFirstFrames = 200; // until the text runs evenly
constexpr int kIdleMs = 4000;
constexpr double kMostRatio = 1.3;
constexpr double kMostGrowth = 1.25; // of the time of one file, from the least files to the most
const int kCounts[] = {250, 500, 1000, 2000};

QByteArray nameOf(const char* prefix, int number)
{
    return prefix + QByteArray::number(number) + ".jpg";
}

void putPhotos(SignServer& server, const char* prefix, int count)
{
    for (int i = 0; i < count; ++i)
        server.putMedia(nameOf(prefix, i), signPhoto(i, kFileSize));
}

// The whole schedule needs many files that it shows tomorrow.
void putTomorrow(SignServer& server, const char* prefix, int count)
{
    QByteArray regions;
    for (int i = 0; i < count; ++i)
        regions += signRegion(QRect(0, 0, 800, 480), signImage(nameOf(prefix, i), 1));
    server.putLayout("tomorrow.xml", signLayout(regions), "fromdt=\"2035-01-01 00:00:00\"");
}

void ask(const SignServer& server, const QString& what)
{
    QProcess::execute("curl", {"--silent", "--output", "/dev/null",
                               server.url() + "/service/" + what + "serverKey=hall&hardwareKey=shell"});
}

bool hasChildren(qint64 pid)
{
    const QDir tasks(QString("/proc/%1/task").arg(pid));
    for (const QString& task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile children(tasks.filePath(task + "/children"));
        if (children.open(QIODevice::ReadOnly) && !children.readAll().isEmpty())
            return true;
    }
    return false;
}

// A server keeps the sums of files that it has seen unchanged for a while, and looks into each that is new in
// a process of its own, which would take turns with what is measured.
void warm(const SignServer& server)
{
    QThread::msleep(kRestMs);
    ask(server, "register.htm?password=secret&clientName=shell&");
    for (int i = 0; i < 2; ++i)
        ask(server, "getschedule.htm?");
    QElapsedTimer all, rest;
    all.start();
    rest.start();
    while (!rest.hasExpired(kRestMs) && !all.hasExpired(kChecksMs)) {
        if (hasChildren(server.pid()))
            rest.start();
        QThread::msleep(1);
    }
}

// ---- The shell

void writeLists(const SignServer& server, const QString& folder, int count, const QStringList& sums)
{
    QFile list(folder + "/list"), check(folder + "/sums");
    if (!list.open(QIODevice::WriteOnly) || !check.open(QIODevice::WriteOnly))
        return;
    for (int i = 0; i < count; ++i) {
        const QByteArray name = nameOf("f", i);
        list.write("url=\"" + server.url().toUtf8() +
                   "/service/getfile.htm?serverKey=hall&hardwareKey=shell&fileType=media&filePath=" + name +
                   "\"\noutput=\"" + name + "\"\n");
        check.write(sums[i].toUtf8() + "  " + name + "\n");
    }
}

double secondsOfShell(const SignServer& server, int count, const QStringList& sums, int parallel)
{
    QTemporaryDir folder;
    writeLists(server, folder.path(), count, sums);
    QProcess shell;
    endWithUs(shell);
    shell.setWorkingDirectory(folder.path());
    QElapsedTimer timer;
    timer.start();
    shell.start("sh", {"-c", QString("curl --silent --parallel --parallel-max %1 -K list && "
                                     "md5sum --status -c sums")
                                 .arg(parallel)});
    shell.waitForFinished(-1);
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    return shell.exitStatus() == QProcess::NormalExit && shell.exitCode() == 0 ? seconds : HUGE_VAL;
}

// ---- The phone

bool has(const chString& path, std::initializer_list<const char*> suffixes)
{
    return std::any_of(suffixes.begin(), suffixes.end(),
                       [&path](const char* suffix) { return nDeckHasSuffix(path, suffix); });
}

bool isNoneLeft(int count, std::initializer_list<const char*> suffixes)
{
    const nDeckNodeList& list = GetNDeckFileManager().GetFileList();
    const auto isLeft = [&](const _nDeckFileNode& node) { return has(node.path, suffixes); };
    return list.size() == count && !isLeft(list.back()) && std::none_of(list.begin(), list.end(), isLeft);
}

bool isAllVerified(int count)
{
    return isNoneLeft(count, {NDECK_FETCHING});
}

bool isAllInUse(int count)
{
    return isNoneLeft(count, {NDECK_FETCHING, NDECK_WAITING});
}

// To go through the list after each event would cost more than the sync.
std::function<bool()> sometimes(std::function<bool()> condition)
{
    QElapsedTimer since;
    return [since, condition = std::move(condition)]() mutable {
        if (since.isValid() && !since.hasExpired(kLookMs))
            return false;
        since.start();
        return condition();
    };
}

bool isPictureShown()
{
    const auto* picture = GetnDeckFrame().findChild<nDeckPicture*>();
    return picture && picture->isVisible() && !picture->pixmap().isNull();
}

// One sync in a process of its own, so that each begins with an empty folder and an empty list.
int runSync(int argc, char** argv)
{
    const int count = atoi(argv[3]);
    SignPhone phone(argc, argv, argv[2]);
    phone.show();
    if (!phone.enter())
        return 1;
    ThreadWatch watch;
    QElapsedTimer timer;
    timer.start();
    GetNDeckFileManager().DownloadDisplayFrame();
    bool done = runUntil(sometimes([count] { return isAllVerified(count + 1); }), 120000);
    msgObject tick; // the change of layouts puts into use what has come
    GetNDeckDispaly().OnTimerLoadNextLayout(tick);
    done = done && runUntil(sometimes([count] { return isAllInUse(count + 1) && isPictureShown(); }), 10000);
    printf("%f %f\n", done ? double(timer.nsecsElapsed()) / 1e9 : 0, watch.longestStall());
    return 0;
}

QList<double> figuresOfChild(const char* program, const QStringList& arguments)
{
    QProcess child;
    endWithUs(child);
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(program, arguments);
    child.waitForFinished(-1);
    QList<double> figures;
    for (const QByteArray& figure : child.readAllStandardOutput().simplified().split(' '))
        figures.append(figure.toDouble());
    return figures;
}

// ---- With a running text

int runUnderText(int argc, char** argv)
{
    SignServer server;
    const QByteArray text = "<span style=\"font-size:40px\">Welcome to the house of telephones, "
                            "where the kettle is always on</span>";
    server.putLayout("now.xml",
                     signLayout(signRegion(QRect(0, 380, 800, 100),
                                           signText(text, 3, "direction=\"left\" scrollamount=\"6\"")),
                                "bgcolor=\"#a0c0e0\""));
    if (!server.start())
        return 1;
    SignPhone phone(argc, argv, server.url());
    phone.show();
    if (!phone.enter())
        return 1;
    GetNDeckFileManager().DownloadDisplayFrame();
    PaintWatch paints([](const QWidget* widget) {
        for (; widget; widget = widget->parentWidget()) {
            if (qobject_cast<const QWebView*>(widget))
                return true;
        }
        return false;
    });
    if (!runUntil([&] { return paints.count() > kFirstFrames; }, 60000))
        return 1;
    paints.begin();
    runUntil([] { return false; }, kIdleMs);
    const double alone = paints.percentile(0.99);
    putPhotos(server, "f", kFilesWithText);
    putTomorrow(server, "f", kFilesWithText);
    warm(server);
    ThreadWatch watch;
    paints.begin();
    GetNDeckFileManager().DownloadDisplayFrame();
    QElapsedTimer timer;
    timer.start();
    const bool done = runUntil(sometimes([] { return isAllInUse(kFilesWithText + 1); }), 60000);
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    runUntil([] { return false; }, 5000); // the new pictures are read into the cache
    printf("%f %f %f %f %f %d\n", done ? seconds : 0, watch.longestStall(), paints.percentile(0.99),
           paints.percentile(1), alone, paints.count());
    return 0;
}

void benchUnderText(RatioTable& table, const char* program)
{
    const QList<double> figures = figuresOfChild(program, {"--text"});
    if (figures.size() < 6 || figures[0] <= 0) {
        fprintf(stderr, "the sync under a running text did not end\n");
        return table.add("sync under a running text", HUGE_VAL, 1, "s");
    }
    printf("sync of %d files under a running text: %.2f s, %.0f frames, longest interval %.1f ms; "
           "99th percentile without a sync %.1f ms\n",
           kFilesWithText, figures[0], figures[5], figures[3], figures[4]);
    table.add("longest stall of the user interface under it", figures[1], 33, "ms");
    table.add("99th percentile of its frame intervals", figures[2], 17, "ms");
}

// ---- Both

QStringList sumsOf(int count)
{
    QStringList sums;
    for (int i = 0; i < count; ++i)
        sums.append(QCryptographicHash::hash(signPhoto(i, kFileSize), QCryptographicHash::Md5).toHex());
    return sums;
}

double middleOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// The seconds of the fastest sync.
double benchCount(RatioTable& table, const char* program, int count)
{
    SignServer server;
    putPhotos(server, "f", count);
    putTomorrow(server, "f", count);
    server.putLayout("now.xml",
                     signLayout(signRegion(QRect(0, 0, 800, 480), signImage(nameOf("f", count - 1), 600))));
    if (!server.start())
        return HUGE_VAL;
    warm(server);
    const QStringList sums = sumsOf(count);
    double sync = HUGE_VAL, shell = HUGE_VAL, eager = HUGE_VAL;
    std::vector<double> stalls;
    for (int round = 0; round < kRounds; ++round) {
        const QList<double> figures =
            figuresOfChild(program, {"--sync", server.url(), QString::number(count)});
        sync = std::min(sync, figures.value(0) > 0 ? figures.value(0) : HUGE_VAL);
        stalls.push_back(figures.value(1));
        shell = std::min(shell, secondsOfShell(server, count, sums, httpService::CONNECTIONS));
        eager = std::min(eager, secondsOfShell(server, count, sums, kEager));
    }
    printf("%5d files: %.3f ms a file; curl and md5sum %.3f ms, with %d connections %.3f ms\n", count,
           1000 * sync / count, 1000 * shell / count, kEager, 1000 * eager / count);
    if (count == kFilesToReach)
        table.add(QString("sync of %1 files of 64 KB, against curl and md5sum").arg(count), sync,
                  shell * kMostRatio, "s");
    table.add(QString("longest stall of the user interface, %1 files").arg(count), middleOf(stalls), 33,
              "ms");
    return sync;
}

// Only these numbers of files, and no running text, where some are given.
std::vector<int> countsOf(int argc, char** argv)
{
    std::vector<int> counts;
    for (int i = 1; i < argc; ++i)
        counts.push_back(std::max(1, atoi(argv[i])));
    return counts.empty() ? std::vector<int>(std::begin(kCounts), std::end(kCounts)) : counts;
}

// Both write into memory where there is some: on a disk, what was written and removed in the minutes before
// decides more than either of them.
void useMemory()
{
    const QStorageInfo memory("/dev/shm");
    if (memory.isValid() && memory.bytesAvailable() > kMemoryBytes && QFileInfo("/dev/shm").isWritable())
        qputenv("TMPDIR", "/dev/shm");
}

} // namespace

int main(int argc, char** argv)
{
    useMemory();
    if (argc == 4 && strcmp(argv[1], "--sync") == 0)
        return runSync(argc, argv);
    if (argc == 2 && strcmp(argv[1], "--text") == 0)
        return runUnderText(argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    RatioTable table;
    std::map<int, double> seconds;
    for (int count : countsOf(argc, argv))
        seconds[count] = benchCount(table, argv[0], count);
    const auto [least, first] = *seconds.begin();
    const auto [most, last] = *seconds.rbegin();
    table.add(QString("time of one file of %1, against one of %2").arg(most).arg(least), 1000 * last / most,
              kMostGrowth * 1000 * first / least, "ms");
    if (argc == 1)
        benchUnderText(table, argv[0]);
    return table.print() ? 0 : 1;
}
