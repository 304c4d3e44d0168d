// A picture of a camera on a small screen: time, memory and what becomes of the user-interface thread,
// against reading it whole and scaling it down there. Each in a process of its own.
#include "bench/phoneBench.h"
#include "bench/threadWatch.h"
#include "support/file/deviceRoot.h"
#include "support/host/picture.h"
#include "tests/kit/plain/pictureFiles.h"
#include "tests/kit/plain/processes.h"
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QImageReader>
#include <QProcess>
#include <QTemporaryDir>
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
        return runOne(argc, argv);
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
    return table.print() ? 0 : 1;
}
