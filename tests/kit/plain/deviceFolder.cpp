#include "tests/kit/plain/deviceFolder.h"
#include "places.h"
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <filesystem>
#include <functional>
#include <unistd.h>

namespace {

using Take = std::function<bool(const QString& source, const QString& target)>;

// A link to a folder would lead out of the device root, so it goes file by file.
bool takeFolder(const QString& from, const QString& to, const Take& take)
{
    bool done = QDir(from).exists() && QDir().mkpath(to);
    for (QDirIterator files(from, QDir::Files, QDirIterator::Subdirectories); files.hasNext();) {
        const QString source = files.next();
        const QString target = to + source.mid(from.size());
        done = QDir().mkpath(QFileInfo(target).path()) && take(source, target) && done;
    }
    return done;
}

// The toolkit's copy would wait for the disk, which is most of what a short test takes.
bool copyOne(const QString& source, const QString& target)
{
    namespace fs = std::filesystem;
    std::error_code failed;
    fs::copy_file(source.toStdString(), target.toStdString(), failed);
    const fs::perms kept = fs::status(source.toStdString(), failed).permissions() & fs::perms::owner_exec;
    if (!failed)
        fs::permissions(target.toStdString(),
                        fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read | kept,
                        failed);
    return !failed;
}

// A test asks nobody on the network, unless it says so.
bool leaveTimeServersAlone(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite))
        return false;
    const QByteArray text = file.readAll().replace("bNTPEnable=1", "bNTPEnable=0");
    return file.seek(0) && file.write(text) == text.size();
}

bool linkOne(const QString& source, const QString& target)
{
    return link(source.toUtf8().constData(), target.toUtf8().constData()) == 0 || copyOne(source, target);
}

} // namespace

bool kit::fillDeviceFolder(const QString& folder, Firmware firmware)
{
    // ./test may keep a copy of it where the tests work.
    const QString image = qEnvironmentVariable("HX_TEST_IMAGE", HX_BUILD_DIR "/rootfs");
    bool done = true;
    for (const char* part : {"/phone", "/mini-boot"})
        done = (firmware == Firmware::Link ? QFile::link(image + part, folder + part)
                                           : takeFolder(image + part, folder + part, linkOne)) &&
               done;
    done = takeFolder(image + "/rundata", folder + "/rundata", copyOne) && done;
    done = leaveTimeServersAlone(folder + "/rundata/config/system.ini") && done;
    for (const char* path : {"rundata/run", "rundata/data", "rundata/config/user/voip", "storage", "dev"})
        done = QDir(folder).mkpath(path) && done;
    return done;
}

bool kit::replaceImageFile(const QString& folder, const QString& devicePath, const QByteArray& content)
{
    // Writing into it would write into everybody's.
    QFile file(folder + devicePath);
    return file.remove() && file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QString kit::program(const char* name)
{
    return QString(HX_BUILD_DIR "/bin/") + name;
}
