#include "bench/callPhone.h"
#include "applets/appletPages.h"
#include "bench/threadWatch.h"
#include "calibration/calibrationPages.h"
#include "frame/moduleEntries.h"
#include "host/desktop/boot.h"
#include "host/look/look.h"
#include "host/services/keyfiles/deviceFiles.h"
#include "host/services/messages/messageBus.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/realLines.h"
#include "host/services/players/playerProcesses.h"
#include "host/touch/finger.h"
#include "media/mediaPages.h"
#include "settings/call/callPages.h"
#include "settings/call/dlgDssKeySetting.h"
#include "settings/personal/personalPages.h"
#include "settings/system/systemPages.h"
#include "support/file/deviceRoot.h"
#include "support/host/desktop.h"
#include "support/host/screen.h"
#include "tests/kit/plain/deviceFolder.h"
#include <QApplication>
#include <QDir>

namespace {

constexpr int kSoftKeyWidth = look::kScreenWidth / 4;

void wireModule()
{
    settingsCallPages();
    settingsSystemPages();
    settingsPersonalPages();
    calibrationPages();
    mediaPages();
    appletPages();
    tagModuleEntries entries = settingEntries();
    entries.editDssKey = [](int index) { GetDssKeySetting()->ShowByDsskeyIndex(index); };
    hostSetModule(entries);
}

} // namespace

CallPhone::CallPhone(int& argc, char** argv)
    : m_root(QDir("/dev/shm").exists() ? "/dev/shm/hxBenchXXXXXX" : QString())
{
    if (!kit::fillDeviceFolder(root(), kit::Firmware::Link))
        qFatal("no device root");
    deviceSetRoot(root().toUtf8().constData());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_NO_GLIB", "1"); // the event loop of a phone without a desktop
    hostPrepareFonts();
    m_application = std::make_unique<QApplication>(argc, argv);
    deviceFilesStart();
    messageServiceStart("app_hxPhone");
    hostApplyLook(*m_application);
    wireModule();
}

CallPhone::~CallPhone() = default;

bool CallPhone::boot(TurnWatch& turns)
{
    auto lines = std::make_unique<NotedSimulation>();
    m_pLines = lines.get();
    phoneService::instance().setBackend(std::move(lines));
    for (int line = 0; line < PHONE_ACCOUNT_COUNT; ++line) {
        tagLineSetting setting;
        setting.state = LINE_REGISTERED;
        setting.user = QString("100%1").arg(line + 1);
        setting.server = "pbx.test";
        m_pLines->setLine(line, setting);
    }
    playerProcessesStart();
    return comeUp(turns);
}

bool CallPhone::bootReal(TurnWatch& turns)
{
    playerProcessesStart();
    realLinesStart(true);
    return comeUp(turns);
}

bool CallPhone::comeUp(TurnWatch& turns)
{
    hostBoot();
    const frmDesktop* home = frmDesktop::GetInstance();
    return turns.turnUntil(
        [home] { return !home->m_pLoading && QWSServer::clientWindows().value(0) == home; });
}

void inNextTurn(const std::function<void()>& work)
{
    QMetaObject::invokeMethod(qApp, work, Qt::QueuedConnection);
}

void touchAt(const QPoint& screen)
{
    fingerTouch(screen, FINGER_DOWN);
    fingerTouch(screen, FINGER_UP);
}

void touchSoftKey(int index)
{
    touchAt({index * kSoftKeyWidth + kSoftKeyWidth / 2, look::kScreenHeight - look::kSoftKeyHeight / 2});
}
