// A picture of a camera on a small screen: time, memory and what becomes of the user-interface thread,
// against reading it whole and scaling it down there. Each in a process of its own.
#include "bench/phoneBench.h"
#include "bench/threadWatch.h"
#include "media/photoAssistant.h"
#include "support/file/deviceRoot.h"
#include "support/host/picture.h"
#include "tests/kit/plain/pictureFiles.h"
#include "tests/kit/plain/processes.h"
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QImageReader>
#include <QLabel>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <cmath>
#include <cstring>
#include <unistd.h>

namespace {

constexpr int kWidth = 800;
constexpr int kHeight = 480;
constexpr double kMostMs = 400; // until the picture is on the screen
constexpr double kMostStallMs = 33;
constexpr double kMostMiB = 60;
constexpr int kTimes = 3;
constexpr int kShown = 3;
constexpr double kTurnMs = 3000; // of a slide show
constexpr double kFrameMs = 16;

struct tagFigures
{
    double ms = HUGE_VAL;
    double stallMs = HUGE_VAL;
    double mostMiB = HUGE_VAL;
    double keptMiB = HUGE_VAL;
};

double megabytes(const char* name)
{
    return double(kit::statusKiB(getpid(), name)) / 1024;
}

QPixmap readByService(const char* path)
{
    QPixmap read;
    bool told = false;
    tagPictureWish wish;
    wish.strPath = path;
    wish.nWidth = kWidth;
    wish.nHeight = kHeight;
    pictureRequest(wish, qApp, [&](PICTURE_RESULT, const QPixmap& picture) {
        told = true;
        read = picture;
    });
    while (!told)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return read;
}

QPixmap readWhole(const char* path)
{
    QImageReader::setAllocationLimit(0);
    const QImage image(devicePath(path).GetText());
    return QPixmap::fromImage(image.scaled(kWidth, kHeight, Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

int runOne(int argc, char** argv)
{
    deviceSetRoot(argv[2]);
    QApplication application(argc, argv);
    const bool isOurs = strcmp(argv[1], "--service") == 0;
    const double before = megabytes("VmRSS");
    ThreadWatch watch;
    QCoreApplication::processEvents();
    QElapsedTimer timer;
    timer.start();
    QPixmap picture = isOurs ? readByService(argv[3]) : readWhole(argv[3]);
    const double ms = double(timer.nsecsElapsed()) / 1e6;
    // The watch looks once more.
    for (QElapsedTimer rest; !rest.isValid() || rest.elapsed() < 50;) {
        if (!rest.isValid())
            rest.start();
        QCoreApplication::processEvents();
    }
    const double most = megabytes("VmHWM") - before;
    printf("%f %f %f %f %d\n", ms, watch.longestStall(), most, megabytes("VmRSS") - before, picture.width());
    fflush(stdout);
    _exit(0);
}

// Three of the picture as a slide show: how long before its turn the next is ready, and what the change
// costs.
int runShow(int argc, char** argv)
{
    deviceSetRoot(argv[2]);
    QApplication application(argc, argv);
    QWidget dialog;
    dialog.resize(kWidth, kHeight);
    dialog.show();
    photoAssistant show(&dialog);
    photoAssistant::FileList files;
    for (int i = 0; i < kShown; ++i)
        files.push_back(chString(QByteArray(argv[3]) + QByteArray::number(i)));
    double readyMs = 0, changeMs = 0;
    QElapsedTimer timer;
    for (int turn = 0; turn <= 2 * kShown; ++turn) {
        timer.start();
        if (turn == 0)
            show.LoadFileList(files);
        else
            show.PlayNext();
        dialog.repaint();
        if (turn > 0)
            changeMs = std::max(changeMs, double(timer.nsecsElapsed()) / 1e6);
        // Nothing tells that one was read ahead.
        while (picturePending() > 0) {
            QCoreApplication::processEvents();
            QThread::msleep(1);
        }
        readyMs = std::max(readyMs, double(timer.nsecsElapsed()) / 1e6);
    }
    const bool isShown = show.GetLabel()->pixmap(Qt::ReturnByValue).width() > 0;
    printf("%f %f %d\n", readyMs, changeMs, isShown);
    fflush(stdout);
    _exit(0);
}

void addShow(RatioTable& table, const char* program, const QString& root)
{
    QProcess child;
    kit::endWithUs(child);
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(program, {"--show", root, "/photo.jpg"});
    child.waitForFinished(-1);
    const QList<QByteArray> figures = child.readAllStandardOutput().simplified().split(' ');
    const bool isGood = figures.size() == 3 && figures[2] == "1";
    const QString what = "slide show of 24 megapixels";
    table.add(what + ": the next picture is ready", isGood ? figures[0].toDouble() : HUGE_VAL, kTurnMs, "ms");
    table.add(what + ": the change", isGood ? figures[1].toDouble() : HUGE_VAL, kFrameMs, "ms");
}

// The best of some.
tagFigures figuresOf(const char* program, const char* way, const QString& root, const char* path)
{
    tagFigures best;
    for (int i = 0; i < kTimes; ++i) {
        QProcess child;
        kit::endWithUs(child);
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.start(program, {way, root, path});
        child.waitForFinished(-1);
        const QList<QByteArray> figures = child.readAllStandardOutput().simplified().split(' ');
        if (figures.size() != 5 || figures[4].toInt() < kHeight)
            continue;
        best.ms = std::min(best.ms, figures[0].toDouble());
        best.stallMs = std::min(best.stallMs, figures[1].toDouble());
        best.mostMiB = std::min(best.mostMiB, figures[2].toDouble());
        best.keptMiB = std::min(best.keptMiB, figures[3].toDouble());
    }
    return best;
}

void write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("no room for the pictures");
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 4)
        return strcmp(argv[1], "--show") == 0 ? runShow(argc, argv) : runOne(argc, argv);
    const QTemporaryDir root;
    write(root.path() + "/photo.jpg", kit::jpegPhoto({6000, 4000}));
    write(root.path() + "/photo.png", kit::pngPhoto({10000, 6000}));
    RatioTable table;
    const struct
    {
        const char* path;
        const char* what;
    } pictures[] = {{"/photo.jpg", "JPEG of 24 megapixels"}, {"/photo.png", "PNG of 60 megapixels"}};
    for (const auto& one : pictures) {
        const tagFigures ours = figuresOf(argv[0], "--service", root.path(), one.path);
        const tagFigures whole = figuresOf(argv[0], "--whole", root.path(), one.path);
        const QString what = one.what;
        table.add(what + ": until it is there", ours.ms, kMostMs, "ms");
        table.add(what + ": the same against reading it whole", ours.ms, whole.ms, "ms");
        table.add(what + ": the thread stands still", ours.stallMs, kMostStallMs, "ms");
        table.add(what + ": the same against reading it whole", ours.stallMs, whole.stallMs, "ms");
        table.add(what + ": most memory", ours.mostMiB, kMostMiB, "MB");
        table.add(what + ": the same against reading it whole", ours.mostMiB, whole.mostMiB, "MB");
        table.add(what + ": memory left in use", ours.keptMiB, kMostMiB / 4, "MB");
    }
    for (int i = 0; i < kShown; ++i)
        QFile::copy(root.path() + "/photo.jpg", root.path() + QString("/photo.jpg%1").arg(i));
    addShow(table, argv[0], root.path());
    return table.print() ? 0 : 1;
}
