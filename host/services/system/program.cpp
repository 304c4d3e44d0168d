#include "support/host/program.h"
#include "host/services/system/hostLog.h"
#include "host/services/system/shellCommand.h"
#include "support/file/deviceRoot.h"
#include "support/host/trace.h"
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int kLookMs = 20; // between two looks at a cancel

std::vector<char*> pointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

bool start(const tagProgram& program, pid_t& child)
{
    const std::string path = devicePathFollow(program.strPath.c_str()).GetText();
    std::vector<std::string> words = {program.strPath};
    words.insert(words.end(), program.lstArguments.begin(), program.lstArguments.end());
    std::vector<std::string> variables = shellCommand::environment(deviceGetRoot().GetText());
    variables.insert(variables.begin(), program.lstVariables.begin(), program.lstVariables.end());
    // A group of its own: the keys of a terminal are the phone's.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    const int error = posix_spawn(&child, path.c_str(), nullptr, &attributes, pointersTo(words).data(),
                                  pointersTo(variables).data());
    posix_spawnattr_destroy(&attributes);
    if (error != 0)
        nuxTrace(TRACE_NOTE, "%s cannot be started: %s", program.strPath.c_str(), strerror(error));
    return error == 0;
}

long long nowMs()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * 1000LL + now.tv_nsec / 1000000;
}

// False when it has to be killed.
bool waitForEnd(const tagProgram& program, pid_t child)
{
    const int handle = int(syscall(SYS_pidfd_open, child, 0));
    const long long end = nowMs() + program.nTimeoutMs;
    siginfo_t info = {};
    for (;;) {
        if (waitid(P_PID, id_t(child), &info, WEXITED | WNOHANG | WNOWAIT) != 0 || info.si_pid == child)
            break;
        if (nowMs() >= end || (program.pCancel && *program.pCancel))
            break;
        pollfd wait = {handle, POLLIN, 0};
        poll(&wait, handle >= 0 ? 1 : 0, kLookMs);
    }
    if (handle >= 0)
        close(handle);
    return info.si_pid == child;
}

int statusOf(pid_t child)
{
    int status = 0;
    pid_t done;
    do
        done = waitpid(child, &status, 0);
    while (done < 0 && errno == EINTR);
    return done == child && WIFEXITED(status) ? WEXITSTATUS(status) : PROGRAM_KILLED;
}

} // namespace

int sysProgram(const tagProgram& program)
{
    QString line = QString::fromStdString(program.strPath);
    for (const std::string& argument : program.lstArguments)
        line += QLatin1Char(' ') + QString::fromStdString(argument);
    hostLog("command", line);
    pid_t child = 0;
    if (!start(program, child))
        return PROGRAM_NOT_STARTED;
    if (!waitForEnd(program, child)) {
        nuxTrace(TRACE_NOTE, "%s is given up", program.strPath.c_str());
        kill(-child, SIGKILL);
    }
    return statusOf(child);
}
