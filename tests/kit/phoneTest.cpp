#include "tests/kit/phoneTest.h"
#include "host/services/keyfiles/keyFileCache.h"
#include "support/file/deviceRoot.h"
#include "tests/kit/kitTime.h"
#include "tests/kit/plain/deviceFolder.h"
#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <algorithm>
#include <ctime>

namespace {

constexpr double kRestAtMostMs = 30;

double msOf(clockid_t clock)
{
    timespec now = {};
    clock_gettime(clock, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

// Processor time of this thread so far: a clock that no test moves.
double busyMs()
{
    return msOf(CLOCK_THREAD_CPUTIME_ID);
}

// ms: by that clock.
bool waitBy(clockid_t clock, const std::function<bool()>& condition, int ms)
{
    const double end = msOf(clock) + ms;
    for (;;) {
        const double before = busyMs();
        if (condition())
            return true;
        if (msOf(clock) > end)
            return false;
        // A look that takes long, at the whole screen, leaves the processor to those that are waited for.
        const double rested = msOf(clock) + std::clamp(2 * (busyMs() - before), 1.0, kRestAtMostMs);
        do {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
            QThread::msleep(1);
        } while (msOf(clock) < rested);
    }
}

} // namespace

PhoneTest::PhoneTest()
{
    EXPECT_TRUE(m_dir.isValid());
    EXPECT_TRUE(kit::fillDeviceFolder(root(), kit::Firmware::HardLinks));
    deviceSetRoot(root().toUtf8().constData());
}

PhoneTest::~PhoneTest() = default;

QByteArray PhoneTest::readFile(const char* devicePath) const
{
    QFile file(hostPath(devicePath));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void PhoneTest::writeFile(const char* devicePath, const QByteArray& content) const
{
    const QString path = hostPath(devicePath);
    QDir().mkpath(QFileInfo(path).path());
    QFile::remove(path); // it may be linked to the image
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(path);
    ASSERT_EQ(file.write(content), content.size());
    file.close();
    // The registry finds changes of other programs a few milliseconds late.
    keyFileCache::GetInstance().LookAgain();
}

void PhoneTest::replaceFirmwareFile(const char* devicePath, const QByteArray& content) const
{
    // The firmware is a link to the built image: its folders on the way become folders of this test.
    const QStringList parts = QString(devicePath).split('/', Qt::SkipEmptyParts);
    QString path = root();
    for (int i = 0; i + 1 < parts.size(); ++i) {
        path += "/" + parts[i];
        const QString image = QFileInfo(path).symLinkTarget();
        if (image.isEmpty())
            continue;
        QFile::remove(path);
        QDir().mkpath(path);
        for (const QFileInfo& entry : QDir(image).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot))
            QFile::link(entry.filePath(), path + "/" + entry.fileName());
    }
    QFile::remove(hostPath(devicePath));
    writeFile(devicePath, content);
}

void kit::settle()
{
    for (int round = 0; round < 20; ++round) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents(QEventLoop::AllEvents);
    }
}

void kit::stepTime(int ms)
{
    const int step = ms > 10000 ? 50 : 10;
    while (ms > 0) {
        const int now = std::min(ms, step);
        moveClocks(now);
        ms -= now;
        QCoreApplication::processEvents(QEventLoop::AllEvents);
    }
    settle();
}

bool kit::waitUntil(const std::function<bool()>& condition, int ms)
{
    const RunningClocks running;
    return waitBy(CLOCK_MONOTONIC, condition, ms);
}

bool kit::waitUntilHeld(const std::function<bool()>& condition, int ms)
{
    return waitBy(CLOCK_MONOTONIC_RAW, condition, ms); // which nobody moves
}
