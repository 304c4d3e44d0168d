#include "host/desktop/boot.h"
#include "host/desktop/callMedia.h"
#include "host/desktop/displayClient.h"
#include "host/desktop/frmCall.h"
#include "support/host/desktop.h"
#include "support/host/module.h"
#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {

int g_signalPipe[2] = {-1, -1};

void onSignal(int)
{
    const char byte = 1;
    if (write(g_signalPipe[0], &byte, 1) < 0)
        _exit(1);
}

// One step a turn of the event loop, so that the loading screen moves on between them.
void bootStep(int index)
{
    const auto cacheWindows = hostModule().cacheWindows;
    if (cacheWindows && cacheWindows(index)) {
        QTimer::singleShot(0, qApp, [index] { bootStep(index + 1); });
        return;
    }
    frmDesktop::GetInstance()->FinishLoading();
    displayClient::instance().start();
}

} // namespace

void hostBoot()
{
    // In this order they hear of a call: the home screen lets go of the signage frame, the call screen takes
    // it.
    callMediaInstall();
    frmDesktop* desktop = frmDesktop::GetInstance();
    callScreenInstall();
    desktop->m_pLoading = new frmLoading;
    desktop->m_pLoading->show();
    QTimer::singleShot(0, qApp, [] { bootStep(0); });
}

void hostEndOnSignals()
{
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, g_signalPipe) != 0)
        return;
    auto* notifier = new QSocketNotifier(g_signalPipe[1], QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, qApp, &QCoreApplication::quit);
    struct sigaction action = {};
    action.sa_handler = onSignal;
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        sigaction(number, &action, nullptr);
}
