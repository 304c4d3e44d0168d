#include "tests/kit/phoneTest.h"
#include "host/services/keyfiles/keyFileCache.h"
#include "places.h"
#include "support/file/deviceRoot.h"
#include "tests/kit/kitTime.h"
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QDirIterator>
#include <QEventLoop>
#include <QFile>
#include <QThread>
#include <algorithm>
#include <unistd.h>

namespace {

const char* const kImage = HX_BUILD_DIR "/rootfs";

void copyFolder(const QString& from, const QString& to)
{
    QDir().mkpath(to);
    QDirIterator files(from, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString source = files.next();
        const QString target = to + source.mid(from.size());
        QDir().mkpath(QFileInfo(target).path());
        QFile::copy(source, target);
        QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
    }
}

// The same files under second names: a link to the folder would lead out of the device root.
void linkFolder(const QString& from, const QString& to)
{
    QDirIterator files(from, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString source = files.next();
        const QString target = to + source.mid(from.size());
        QDir().mkpath(QFileInfo(target).path());
        if (link(source.toUtf8().constData(), target.toUtf8().constData()) != 0)
            QFile::copy(source, target);
    }
}

} // namespace

PhoneTest::PhoneTest()
{
    EXPECT_TRUE(m_dir.isValid());
    QDir here(root());
    linkFolder(QString(kImage) + "/phone", root() + "/phone");
    copyFolder(QString(kImage) + "/rundata", root() + "/rundata");
    for (const char* folder : {"rundata/run", "rundata/data", "rundata/config/user/voip", "storage", "dev"})
        here.mkpath(folder);
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
    QDeadlineTimer deadline(ms);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QThread::msleep(1);
    }
    return true;
}
