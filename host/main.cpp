// hxPhone: the phone's main process. Wires the module to the reference host and runs it.
#include "applets/stockEntry.h"
#include "frame/moduleEntries.h"
#include "host/control/controlServer.h"
#include "host/desktop/boot.h"
#include "host/desktop/restart.h"
#include "host/look/look.h"
#include "host/services/keyfiles/deviceFiles.h"
#include "host/services/messages/messageBus.h"
#include "host/services/phone/realLines.h"
#include "host/services/players/playerProcesses.h"
#include "host/services/system/endOnSignals.h"
#include "host/touch/mousePanel.h"
#include "media/mediaShows.h"
#include "settings/call/dlgDialPlan.h"
#include "settings/call/dlgDssKeySetting.h"
#include "settings/call/dlgPictureDialSetting.h"
#include "settings/call/dlgSpeedDial.h"
#include "signage/nDeckDisplay.h"
#include "signage/nDeckRegister.h"
#include "signage/nDeckVideoManager.h"
#include "signage/nDeckWindow.h"
#include "support/file/deviceRoot.h"
#include "support/host/screen.h"
#include <QApplication>
#include <QCommandLineParser>
#include <cstdio>
#include <unistd.h>

namespace {

struct Options
{
    QString control;
    bool players = true;
    bool rawTouch = false;
    bool sip = false;
};

Options parseOptions(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription("The phone's main process.");
    parser.addHelpOption();
    const QCommandLineOption sysroot("sysroot", "Folder that stands for the device's file system.", "DIR");
    const QCommandLineOption control("control", "Socket on which hxctl may drive the phone.", "SOCKET");
    const QCommandLineOption noPlayers("no-players", "Starts neither movie player nor media server.");
    const QCommandLineOption rawTouch("raw-touch", "The mouse is the finger on a simulated touch panel.");
    const QCommandLineOption sip("sip", "Registers the accounts at their servers; else lines are simulated.");
    parser.addOptions({sysroot, control, noPlayers, rawTouch, sip});
    parser.process(arguments);
    return {parser.value(control), !parser.isSet(noPlayers), parser.isSet(rawTouch), parser.isSet(sip)};
}

// The device root is needed for the fonts, which are needed before the application object.
void setDeviceRoot(int argc, char** argv)
{
    for (int i = 1; i + 1 < argc; ++i) {
        if (qstrcmp(argv[i], "--sysroot") == 0)
            deviceSetRoot(argv[i + 1]);
    }
    for (int i = 1; i < argc; ++i) {
        if (qstrncmp(argv[i], "--sysroot=", 10) == 0)
            deviceSetRoot(argv[i] + 10);
    }
}

void wireSignage(tagModuleEntries& entries)
{
    entries.registerDisplay = nDeckRegisterDisplay;
    entries.unLaunchDisplay = OnUnLaunchNDeck;
    entries.windowDisplay = nDeckWindowDisplay;
    entries.isDisplayEnabled = [] { return GetNDeckDispaly().IsNdeckEnable(); };
    entries.isDisplaySaverEnabled = [] { return GetNDeckDispaly().IsScreenSaverEnable(); };
    entries.isDisplayTalkEnabled = [] { return GetNDeckDispaly().IsVoiceTalkEnable(); };
    entries.isDisplayRingBackEnabled = [] { return GetNDeckDispaly().IsRingBackEnable(); };
    entries.setPlayParam = [](VOICE_PARAM* param, int session) {
        return GetNDeckVideoManager().SetPlayParam(param, session);
    };
    entries.onMovieMessage = [](msgObject& msg) { return GetNDeckVideoManager().OnMovieAdMessage(msg); };
}

void wireSavers(tagModuleEntries& entries)
{
    entries.startPhotoSaver = StartScreenSaver_ImageView;
    entries.stopPhotoSaver = StopScreenSaver_ImageView;
    entries.startFilmSaver = StartScreenSaver_VideoView;
    entries.stopFilmSaver = StopScreenSaver_VideoView;
    entries.openSleep = OpenScreenSleepDlg;
    entries.closeSleep = CloseScreenSleepDlg;
}

void wireKeys(tagModuleEntries& entries)
{
    entries.editDssKey = [](int index) { GetDssKeySetting()->ShowByDsskeyIndex(index); };
    entries.openSpeedDials = [](int index) {
        dlgSpeedDial* page = getSpeedDialDialog();
        screenBringUp(page);
        page->SetTabWgtRow(index);
    };
}

void wireModule()
{
    tagModuleEntries entries = settingEntries();
    entries.makeDialPlan = [](tagLeftBarInfo* info) -> QDialog* { return new dlgDialPlan(nullptr, info); };
    entries.editPictureDial = [](PicDialIconViewItem* item) {
        GetdlgPictureDialSetting()->ShowByIconViewItem(item);
    };
    entries.updateStockData = UpdataStockData;
    wireKeys(entries);
    wireSavers(entries);
    wireSignage(entries);
    hostSetModule(entries);
}

int run(QApplication& application, const Options& options)
{
    controlServer control;
    if (!options.control.isEmpty() && !control.listen(options.control)) {
        fprintf(stderr, "hxPhone: cannot open the control socket %s\n", qPrintable(options.control));
        return 1;
    }
    endOnSignals();
    hostFollowFactoryReset();
    hostFollowRestarts();
    if (options.players)
        playerProcessesStart();
    if (options.sip)
        realLinesStart(options.players);
    hostBoot();
    if (options.rawTouch && !MousePanel::start(&application))
        fprintf(stderr, "hxPhone: no simulated touch panel without a device root of its own\n");
    return application.exec();
}

} // namespace

int main(int argc, char** argv)
{
    // All of them: the toolkit takes its own out.
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    setDeviceRoot(argc, argv);
    hostPrepareFonts();
    QApplication application(argc, argv);
    application.setApplicationName("hxPhone");
    application.setQuitOnLastWindowClosed(false);
    const Options options = parseOptions(application.arguments());

    deviceFilesStart();
    const int isNamed = messageServiceStart("app_hxPhone");
    if (!isNamed && messageServiceIsTaken("app_hxPhone")) {
        fprintf(stderr, "hxPhone: another phone already runs on this device root\n");
        return 1;
    }
    if (!isNamed)
        fprintf(stderr, "hxPhone: no messages between processes, so films do not play\n");
    hostApplyLook(application);
    wireModule();
    const int result = run(application, options);
    messageServiceStop();
    deviceFilesStop();
    hostStartAnew(arguments, result);
    // Cached pages live as long as the process: none is taken down against a toolkit that is gone already.
    fflush(nullptr);
    _exit(result);
}
