// An import of 200 MB from a mounted disk, against what would be used on a shell: "cp". How long it takes,
// and what becomes of the user-interface thread meanwhile.
#include "bench/phoneBench.h"
#include "bench/threadWatch.h"
#include "host/look/look.h"
#include "host/services/storage/storageWorld.h"
#include "media/dlgVideoImport.h"
#include "support/file/deviceRoot.h"
#include "support/host/screen.h"
#include "tests/kit/plain/deviceFolder.h"
#include "tests/kit/plain/processes.h"
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr qint64 kBytes = 200 << 20;
constexpr int kRounds = 15;
constexpr double kMostRatio = 1.2;
constexpr double kMostStallMs = 33;
const char* const kSource = "/storage/uDisk1/film.mp4";
const char* const kTarget = "/rundata/media/video/film.mp4";

void writeFilm(const QString& path)
{
    QFile file(path);
    QByteArray block(1 << 20, '\0');
    for (qsizetype i = 0; i < block.size(); ++i)
        block[i] = char(i * 2654435761u >> 24);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("no room for the film");
    for (qint64 done = 0; done < kBytes; done += block.size()) {
        if (file.write(block) != block.size())
            qFatal("no room for the film");
    }
}

double copyMs(const QString& from, const QString& to)
{
    QFile::remove(to);
    QElapsedTimer timer;
    timer.start();
    if (QProcess::execute("cp", {from, to}) != 0)
        qFatal("cp failed");
    return double(timer.nsecsElapsed()) / 1e6;
}

double importMs(const dlgVideoImport& page, const QString& target)
{
    QFile::remove(target);
    QElapsedTimer timer;
    timer.start();
    if (!page.ImportFile(kSource, kTarget))
        qFatal("the import failed");
    return double(timer.nsecsElapsed()) / 1e6;
}

// Of rounds in turns: what else the machine does meets both.
double middle(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// The watch looks once more.
void rest()
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 50)
        QCoreApplication::processEvents();
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir root;
    // A file system of its own, in memory where the machine has one: what is measured is not its disk.
    const QTemporaryDir disk(QDir("/dev/shm").exists() ? "/dev/shm/hxBenchXXXXXX" : QString());
    if (!kit::fillDeviceFolder(root.path(), kit::Firmware::Link) ||
        !QDir(root.path()).mkpath("rundata/media/video"))
        qFatal("no device root");
    deviceSetRoot(root.path().toUtf8().constData());
    hostPrepareFonts();
    QApplication application(argc, argv);
    hostApplyLook(application);
    writeFilm(disk.path() + "/film.mp4");
    storageWorldPlug(STORAGE_USB, disk.path());
    dlgVideoImport page("video", nullptr);
    screenBringUp(&page);
    rest();
    const QString target = root.path() + kTarget;
    std::vector<double> imports, copies, stalls;
    for (int round = 0; round < kRounds; ++round) {
        copies.push_back(copyMs(disk.path() + "/film.mp4", target));
        ThreadWatch watch;
        imports.push_back(importMs(page, target));
        rest();
        stalls.push_back(watch.longestStall());
    }
    const double ours = middle(imports);
    const double theirs = middle(copies);
    printf("import %.1f ms, cp %.1f ms: %.2f times\n", ours, theirs, ours / theirs);
    RatioTable table;
    table.add("200 MB from a mounted disk, against cp", ours, kMostRatio * theirs, "ms");
    table.add("the thread stands still meanwhile", middle(stalls), kMostStallMs, "ms");
    return table.print() ? 0 : 1;
}
