#include "host/web/sandbox.h"
#include <cerrno>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

bool hasUserNamespaces()
{
    const pid_t child = fork();
    if (child == 0)
        _exit(unshare(CLONE_NEWUSER) == 0 ? 0 : 1);
    int status = 1;
    while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return child > 0 && status == 0;
}

} // namespace

SANDBOX_STATE sandboxState()
{
    if (geteuid() == 0)
        return SANDBOX_OFF;
    return hasUserNamespaces() ? SANDBOX_ON : SANDBOX_MISSING;
}
