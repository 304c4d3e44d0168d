#include "host/services/system/endOnSignals.h"
#include <QCoreApplication>
#include <QSocketNotifier>
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

} // namespace

void endOnSignals()
{
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, g_signalPipe) != 0)
        return;
    auto* notifier = new QSocketNotifier(g_signalPipe[1], QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, qApp, &QCoreApplication::quit);
    struct sigaction action = {};
    action.sa_handler = onSignal;
    for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGQUIT})
        sigaction(number, &action, nullptr);
}
