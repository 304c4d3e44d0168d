#include "host/services/system/hostLog.h"
#include "host/services/system/netWorld.h"
#include "host/services/system/shellCommand.h"
#include "host/services/system/thisDevice.h"
#include "support/host/net.h"
#include "support/host/trace.h"
#include <cerrno>
#include <cstring>
#include <sys/reboot.h>
#include <unistd.h>

namespace {

void (*g_pRestart)() = nullptr;

} // namespace

void netWorldSetRestart(void (*restart)())
{
    g_pRestart = restart;
}

void sysreboot(int mode)
{
    hostLog("reboot", QString::number(mode));
    if (!isThisDevice()) {
        nuxTrace(TRACE_NOTE, "The phone restarts, the machine does not");
        if (g_pRestart)
            g_pRestart();
        return;
    }
    sync();
    if (reboot(RB_AUTOBOOT) != 0)
        nuxTrace(TRACE_NOTE, "The phone cannot be restarted: %s", strerror(errno));
}

int sysCommand(const char* command)
{
    if (!command || !*command)
        return -1;
    hostLog("command", QString::fromUtf8(command));
    if (!isThisDevice() && shellCommand::stopsMachine(command)) {
        nuxTrace(TRACE_NOTE, "\"%s\" would stop or restart the phone now", command);
        return 0;
    }
    return shellCommand::run(command);
}
