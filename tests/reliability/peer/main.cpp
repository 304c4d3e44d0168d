// syncPeer ROOT [DISK]: the phone's signage client by itself, with nothing around it, so that it can be
// started and killed many times. ROOT is its device root. DISK makes it believe in a disk of that many bytes,
// of which only the signage folder uses any. It prints "up", and then the colour in the middle of the screen
// at each change ("shows #rrggbb").
#include "host/desktop/displayClient.h"
#include "host/services/system/netWorld.h"
#include "signage/nDeckDisplay.h"
#include "signage/nDeckFileManager.h"
#include "signage/nDeckRegister.h"
#include "signage/nDeckWindow.h"
#include "support/file/deviceRoot.h"
#include "support/host/module.h"
#include "support/host/net.h"
#include <QApplication>
#include <QColor>
#include <QDir>
#include <QFileInfo>
#include <QTimer>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <sys/prctl.h>
#include <sys/statvfs.h>

namespace {

constexpr int kLookMs = 40;
long long g_diskBytes = 0;

long long usedBytes(const char* folder)
{
    long long used = 0;
    for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files | QDir::Hidden))
        used += file.size();
    return used;
}

void say(const QString& line)
{
    printf("%s\n", qPrintable(line));
    fflush(stdout);
}

void tellWhatShows()
{
    static QString last;
    const QImage middle = GetnDeckWindow().grab(QRect(400, 240, 1, 1)).toImage();
    const QString now = "shows " + middle.pixelColor(0, 0).name();
    if (now != last)
        say(now);
    last = now;
}

} // namespace

extern "C" int __real_statvfs(const char* path, struct statvfs* info);
extern "C" int __wrap_statvfs(const char* path, struct statvfs* info);

int __wrap_statvfs(const char* path, struct statvfs* info)
{
    const int result = __real_statvfs(path, info);
    if (result == 0 && g_diskBytes > 0) {
        const long long free = std::max(0LL, g_diskBytes - usedBytes(path));
        info->f_bavail = static_cast<fsblkcnt_t>(free) / info->f_frsize;
    }
    return result;
}

int main(int argc, char** argv)
{
    // It ends with the test that started it.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (argc < 2)
        return 2;
    if (argc > 2)
        g_diskBytes = atoll(argv[2]);
    deviceSetRoot(argv[1]);
    QApplication application(argc, argv);
    netWorld().state = NET_UP;
    netWorld().mac = "00:11:22:33:44:55";

    tagModuleEntries entries;
    entries.registerDisplay = nDeckRegisterDisplay;
    entries.isDisplayEnabled = [] { return GetNDeckDispaly().IsNdeckEnable(); };
    hostSetModule(entries);
    displayClient::instance().start();
    nDeckWindowDisplay(1, NDECK_WINDOW_PAGE, nullptr, QRect(QPoint(0, 0), QPoint(799, 479)));
    GetNDeckFileManager().DownloadDisplayFrame();
    say("up");
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, tellWhatShows);
    look.start(kLookMs);
    return application.exec();
}
