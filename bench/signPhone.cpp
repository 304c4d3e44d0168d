#include "bench/signPhone.h"
#include "host/look/look.h"
#include "host/services/system/netWorld.h"
#include "signage/nDeckDisplay.h"
#include "signage/nDeckFileManager.h"
#include "signage/nDeckFolder.h"
#include "signage/nDeckFrame.h"
#include "signage/nDeckRegister.h"
#include "signage/nDeckWindow.h"
#include "support/file/deviceRoot.h"
#include "support/host/net.h"
#include "support/host/registry.h"
#include "tests/kit/plain/deviceFolder.h"
#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>

namespace {

void configure(const char* key, const QByteArray& value)
{
    nuxSetRegistryString("/rundata/config/system.ini", "nDeck", key, value);
}

} // namespace

SignPhone::SignPhone(int& argc, char** argv, const QString& server)
{
    kit::fillDeviceFolder(root(), kit::Firmware::Link);
    deviceSetRoot(root().toUtf8().constData());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_NO_GLIB", "1"); // the event loop of a phone without a desktop
    hostPrepareFonts();
    m_application = std::make_unique<QApplication>(argc, argv);
    hostApplyLook(*m_application);
    netWorld().state = NET_UP;
    configure("bEnable", "1");
    configure("strServerURL", server.toUtf8());
    configure("strServerKey", "hall");
    configure("strServerPwd", "secret");
    configure("strDisplayName", "Lobby");
    configure("nUpdateInteval", "3600000");
}

SignPhone::~SignPhone() = default;

bool SignPhone::enter()
{
    nDeckRegisterDisplay();
    return runUntil([] { return GetNDeckRegister().GetRegisterStatus() == 1; }, 10000);
}

bool SignPhone::takeUp(int layouts, int medias)
{
    nDeckFileManager& files = GetNDeckFileManager();
    files.DownloadDisplayFrame();
    const auto isThere = [](const _nDeckFileNode& node) {
        return !nDeckHasSuffix(node.path, NDECK_FETCHING);
    };
    const bool done = runUntil(
        [&] {
            const nDeckNodeList& list = files.GetFileList();
            return list.size() == layouts + medias && std::all_of(list.begin(), list.end(), isThere);
        },
        20000);
    msgObject tick;
    GetNDeckDispaly().OnTimerLoadNextLayout(tick);
    return done;
}

void SignPhone::show()
{
    nDeckWindowDisplay(1, NDECK_WINDOW_PAGE, nullptr, QRect(0, 0, NDECK_WIDTH, NDECK_HEIGHT));
}

bool runUntil(const std::function<bool()>& condition, int ms)
{
    QElapsedTimer timer;
    timer.start();
    QTimer wake; // a condition may hold without an event
    wake.start(20);
    while (!condition()) {
        if (timer.elapsed() > ms)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}
