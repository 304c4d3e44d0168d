// What a passer-by sees when one layout follows another, and whether the show could go on for years: frames
// at each change, and memory over many of them. The phone runs in this process.
#include "bench/phoneBench.h"
#include "bench/runningPhone.h"
#include "bench/signPhone.h"
#include "bench/threadWatch.h"
#include "host/services/messages/messageBus.h"
#include "places.h"
#include "signage/nDeckCover.h"
#include "signage/nDeckDisplay.h"
#include "signage/nDeckFileManager.h"
#include "signage/nDeckFrame.h"
#include "signage/nDeckWindow.h"
#include "support/host/webview.h"
#include "tests/kit/plain/deviceFolder.h"
#include "tests/kit/plain/processes.h"
#include "tests/kit/plain/signServer.h"
#include "tests/kit/plain/signTexts.h"
#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QFile>
#include <QProcess>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <unistd.h>

using namespace kit;

namespace {

constexpr int kChanges = 1000;
constexpr int kTextChanges = 100;
constexpr int kManyChanges = 10000;
constexpr int kFirstChanges = 100;
constexpr int kTurns = 3; // of the event loop, for a layout that goes at once
constexpr int kWhole = 20;
constexpr double kMostGrowth = 2; // percent

const QColor kRed(220, 30, 30), kGreen(30, 180, 60), kBlue(30, 60, 200), kOrange(240, 150, 20);

bool isLike(QRgb left, const QColor& right)
{
    const int apart = qAbs(qRed(left) - right.red()) + qAbs(qGreen(left) - right.green()) +
                      qAbs(qBlue(left) - right.blue());
    return apart < 12;
}

// The layout whose colours the whole picture shows: 0 or 1; -1 for anything else.
int layoutOf(const QImage& image, const QList<QList<QColor>>& layouts)
{
    for (int i = 0; i < layouts.size(); ++i) {
        bool isIts = true;
        for (int x = 20; x < image.width(); x += 40) {
            const QColor& wanted = layouts[i][x < image.width() / 2 ? 0 : 1];
            for (int y : {20, 240, 460})
                isIts = isIts && isLike(image.pixel(x, y), wanted);
        }
        if (isIts)
            return i;
    }
    return -1;
}

void nextLayout()
{
    msgObject tick;
    GetNDeckDispaly().OnTimerLoadNextLayout(tick);
    // What a phone's own event loop does, and turns of it from outside do not.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QByteArray halves(const QByteArray& left, const QByteArray& right)
{
    return signLayout(signRegion(QRect(0, 0, 400, 480), left) + signRegion(QRect(400, 0, 400, 480), right));
}

QByteArray textOn(const QColor& colour)
{
    return signText("<body style=\"margin:0;background:" + colour.name().toLatin1() + "\"></body>", 600);
}

struct tagFigures
{
    int gaps = 0;
    int mostFrames = 0; // until the new layout was there
};

// The changes, one after the other; each waits for its new layout.
tagFigures change(int count, const QList<QList<QColor>>& layouts)
{
    tagFigures figures;
    int shown = -1, frames = 0;
    FrameWatch watch([&](const QImage& image) {
        shown = layoutOf(image, layouts);
        ++frames;
        figures.gaps += shown < 0;
    });
    GetnDeckWindow().installEventFilter(&watch);
    GetnDeckWindow().update();
    runUntil([&] { return shown >= 0; }, 2000);
    for (int i = 0; i < count; ++i) {
        const int before = shown;
        frames = 0;
        nextLayout();
        runUntil([&] { return shown >= 0 && shown != before; }, 5000);
        figures.mostFrames = std::max(figures.mostFrames, frames);
        figures.gaps += shown < 0 || shown == before;
    }
    GetnDeckWindow().removeEventFilter(&watch);
    return figures;
}

void start(SignPhone& phone, int medias)
{
    phone.show();
    if (!phone.enter() || !phone.takeUp(2, medias))
        fprintf(stderr, "the layouts did not come\n");
    runUntil([] { return false; }, 1500);
}

// Prints gaps and frames for pictures, and for texts.
int runChanges(int argc, char** argv, bool text)
{
    SignServer server;
    const QSize half(400, 480);
    server.putMedia("red.png", signPicture(kRed, half));
    server.putMedia("green.png", signPicture(kGreen, half));
    server.putMedia("blue.png", signPicture(kBlue, half));
    server.putMedia("orange.png", signPicture(kOrange, half));
    server.putLayout("a.xml", text ? halves(textOn(kRed), textOn(kGreen))
                                   : halves(signImage("red.png", 600), signImage("green.png", 600)));
    server.putLayout("b.xml", text ? halves(textOn(kBlue), textOn(kOrange))
                                   : halves(signImage("blue.png", 600), signImage("orange.png", 600)));
    if (!server.start())
        return 1;
    SignPhone phone(argc, argv, server.url());
    start(phone, text ? 0 : 4);
    const QList<QList<QColor>> layouts = {{kRed, kGreen}, {kBlue, kOrange}};
    change(4, layouts);
    const tagFigures figures = change(text ? kTextChanges : kChanges, layouts);
    printf("%d %d\n", figures.gaps, figures.mostFrames);
    fflush(stdout);
    _exit(0);
}

// ---- Memory

// Now and then a layout stays until its texts are there; the others go before.
void runMany(int count)
{
    for (int i = 0; i < count; ++i) {
        nextLayout();
        for (int turn = 0; turn < kTurns; ++turn)
            QCoreApplication::processEvents();
        if (i % kWhole == 0)
            runUntil([] { return GetnDeckFrame().findChildren<nDeckCover*>().isEmpty(); }, 1000);
    }
}

int runMemory(int argc, char** argv)
{
    SignServer server;
    const QByteArray film = HX_BUILD_DIR "/signageDemo/media/day.mp4";
    for (int i = 0; i < 3; ++i)
        server.putMedia("photo" + QByteArray::number(i) + ".jpg", signPhoto(i, 64 << 10));
    server.copyMedia("film.mp4", film);
    server.putLayout("a.xml", signLayout(signRegion(QRect(0, 0, 400, 240), signImage("photo0.jpg", 600)) +
                                             signRegion(QRect(400, 0, 400, 240), signText("<b>one</b>", 600)),
                                         "background=\"photo1.jpg\""));
    server.putLayout("b.xml", signLayout(signRegion(QRect(0, 0, 400, 480), signVideo("film.mp4", 600)) +
                                         signRegion(QRect(400, 0, 400, 240), signImage("photo2.jpg", 600)) +
                                         signRegion(QRect(400, 240, 400, 240), signText("<i>two</i>", 600))));
    if (!server.start())
        return 1;
    SignPhone phone(argc, argv, server.url());
    messageServiceStart("app_hxPhone");
    QProcess movie, media;
    endWithUs(movie);
    endWithUs(media);
    movie.start(program("hxMovie"), {"--sysroot", phone.root()});
    media.start(program("hxMedia"), {"--sysroot", phone.root()});
    runUntil([] { return msgGetThreadByName("app_hxMovie") && msgGetThreadByName("app_hxMedia"); }, 10000);
    start(phone, 4);
    runUntil([] { return false; }, 2000); // the film has played
    runMany(kFirstChanges);
    const double first = residentMegabytes(getpid());
    QElapsedTimer timer;
    timer.start();
    for (int i = 1; i < 10; ++i) {
        runMany((kManyChanges - kFirstChanges) / 9);
        fprintf(stderr, "after %5d changes: %.2f MB, %.0f s\n",
                kFirstChanges + i * ((kManyChanges - kFirstChanges) / 9), residentMegabytes(getpid()),
                double(timer.elapsed()) / 1000);
    }
    printf("%f %f\n", first, residentMegabytes(getpid()));
    fflush(stdout);
    for (QProcess* player : {&movie, &media}) {
        player->terminate();
        player->waitForFinished(2000);
    }
    server.stop();
    _exit(0);
}

// ---- All

// Each in a process of its own: a phone is made once.
QList<double> figuresOfChild(const char* program, const char* what)
{
    QProcess child;
    endWithUs(child);
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(program, {what});
    child.waitForFinished(-1);
    QList<double> figures;
    for (const QByteArray& figure : child.readAllStandardOutput().simplified().split(' '))
        figures.append(figure.toDouble());
    return figures.size() == 2 ? figures : QList<double>{HUGE_VAL, HUGE_VAL};
}

} // namespace

int main(int argc, char** argv)
{
    const char* what = argc == 2 ? argv[1] : "";
    if (strcmp(what, "--pictures") == 0)
        return runChanges(argc, argv, false);
    if (strcmp(what, "--texts") == 0)
        return runChanges(argc, argv, true);
    if (strcmp(what, "--memory") == 0)
        return runMemory(argc, argv);
    RatioTable table;
    const QList<double> pictures = figuresOfChild(argv[0], "--pictures");
    table.add(QString("frames until the next layout is there, most of %1").arg(kChanges), pictures[1], 1, "");
    table.add("frames that show neither the old nor the new layout", pictures[0], 0, "");
    const QList<double> texts = figuresOfChild(argv[0], "--texts");
    table.add(QString("the same of %1 changes from rich text to rich text").arg(kTextChanges), texts[0], 0,
              "");
    const QList<double> memory = figuresOfChild(argv[0], "--memory");
    table.add(QString("memory grown over %1 layout changes").arg(kManyChanges),
              100 * (memory[1] / memory[0] - 1), kMostGrowth, "%");
    return table.print() ? 0 : 1;
}
